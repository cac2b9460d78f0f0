#include "VXDialog.h"

#include "VXDialogConfig.h"

#include <QtWidgets/QLabel>

using namespace Qt::StringLiterals;

VXDialog::VXDialog(QWidget* theParent)
    : VXDialogBase(theParent)
    , myHeadline(new QLabel(this))
{
    myHeadline->setObjectName(u"headlineLabel"_s);
    myHeadline->setProperty("cssstyle", u"headline"_s);
    myHeadline->setWordWrap(true);
    myHeadline->hide();
    addAboveUsableWidget(myHeadline);
}

VXDialog::~VXDialog() = default;

void VXDialog::setupDialog(const VXDialogConfig& theConfig)
{
    VXDialogBase::setupDialog(theConfig);
    myHeadline->setText(theConfig.headline.text);
    myHeadline->setVisible(theConfig.headline.visible);
}
