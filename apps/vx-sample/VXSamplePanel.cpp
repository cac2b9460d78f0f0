#include "VXSamplePanel.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

VXSamplePanel::VXSamplePanel(const QString& theTitle, const QString& theIntroduction,
                             QWidget* theParent)
    : QWidget(theParent)
    , myTitle(theTitle)
    , myContent(new QVBoxLayout(this))
{
    auto* headline = new QLabel(theTitle, this);
    headline->setProperty("cssstyle", u"headline"_s);
    auto* introduction = new QLabel(theIntroduction, this);
    introduction->setWordWrap(true);
    myContent->setContentsMargins(16, 12, 16, 12);
    myContent->setSpacing(10);
    myContent->addWidget(headline);
    myContent->addWidget(introduction);
}

VXSamplePanel::~VXSamplePanel() = default;

void VXSamplePanel::cancel() {}

void VXSamplePanel::activate() {}
