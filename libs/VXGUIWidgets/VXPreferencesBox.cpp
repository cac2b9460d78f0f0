#include "VXPreferencesBox.h"

VXPreferencesBox::VXPreferencesBox(const QString& theTitle, QWidget* theParent)
    : QGroupBox(theTitle, theParent)
{
}

VXPreferencesBox::~VXPreferencesBox() = default;

void VXPreferencesBox::readFromConfig() {}

void VXPreferencesBox::writeToConfig() {}

bool VXPreferencesBox::checkLeaveCondition()
{
    return true;
}
