#include "VXSamplePreferencesDialog.h"

#include <VXGUIWidgets/VXDialogConfig.h>
#include <VXGUIWidgets/VXPreferencesBox.h>
#include <VXNetworking/VXPreferencesProxy.h>

#include <QtWidgets/QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

VXSamplePreferencesDialog::VXSamplePreferencesDialog(QWidget* theParent)
    : VXDialogBase(theParent)
{
    VXDialogConfig config;
    config.standardButtons = QDialogButtonBox::Ok | QDialogButtonBox::Cancel;
    config.defaultButton = QDialogButtonBox::Ok;
    setupDialog(config);
    setObjectName(u"preferencesDialog"_s);
    setWindowTitle(tr("Netzwerkeinstellungen"));

    auto* layout = new QVBoxLayout(usableWidget());
    layout->setContentsMargins(0, 0, 0, 0);
    addPage(new VXPreferencesProxy(usableWidget()));
}

VXSamplePreferencesDialog::~VXSamplePreferencesDialog() = default;

void VXSamplePreferencesDialog::addPage(VXPreferencesBox* thePage)
{
    usableWidget()->layout()->addWidget(thePage);
    thePage->readFromConfig();
    myPages << thePage;
}

void VXSamplePreferencesDialog::accept()
{
    if (!std::ranges::all_of(myPages, &VXPreferencesBox::checkLeaveCondition))
        return;
    for (VXPreferencesBox* page : myPages)
        page->writeToConfig();
    VXDialogBase::accept();
}
