#include "VXProgramUpdateDescriptionDialog.h"

#include "VXWebView.h"

#include <VXGUIWidgets/VXDialogConfig.h>

#include <QtCore/QVariant>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize firstSize(826, 600); // pixels
constexpr auto styleProperty = "cssstyle";

} // namespace

VXProgramUpdateDescriptionDialog::VXProgramUpdateDescriptionDialog(QWidget* theParent,
                                                                   const QString& theDescription,
                                                                   bool theIsMandatory)
    : VXDialogBase(theParent)
{
    setupDialog(createConfig());
    createContent(theDescription);
    labelButtons(theIsMandatory);
    setObjectName(u"programUpdateDescriptionDialog"_s);
    setWindowTitle(tr("Aktualisierung gefunden"));
    setPropertyToStandardButton(QDialogButtonBox::Ok, styleProperty, u"RegularPushButton"_s);
    setPropertyToStandardButton(QDialogButtonBox::Cancel, styleProperty, u"RegularPushButton"_s);
    resize(firstSize);
}

VXProgramUpdateDescriptionDialog::~VXProgramUpdateDescriptionDialog() = default;

VXDialogConfig VXProgramUpdateDescriptionDialog::createConfig() const
{
    VXDialogConfig config;
    config.standardButtons = QDialogButtonBox::Ok | QDialogButtonBox::Cancel;
    config.defaultButton = QDialogButtonBox::Ok;
    return config;
}

void VXProgramUpdateDescriptionDialog::createContent(const QString& theDescription)
{
    auto* const layout = new QVBoxLayout(usableWidget());
    layout->setContentsMargins(QMargins());
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    layout->addWidget(createUpdateDescription(usableWidget(), theDescription), 1);
}

void VXProgramUpdateDescriptionDialog::labelButtons(bool theIsMandatory)
{
    renameOkButton(tr("Jetzt aktualisieren", "BUTTON 'update' instead of 'install'"));
    renameCancelButton(tr("Später erinnern", "BUTTON"));
    setButtonVisible(QDialogButtonBox::Cancel, !theIsMandatory);
}

QWidget* VXProgramUpdateDescriptionDialog::createUpdateDescription(QWidget* theParent,
                                                                   const QString& theHtml)
{
    VXWebView* const view = VXWebView::createWebView(theParent, true);
    view->setParent(theParent); // goes with its widget, which no member has to remember
    QWidget* const widget = view->nativeWidget();
    widget->setProperty(styleProperty, u"defaultTextBrowser"_s);
    view->setHtml(theHtml);
    return widget;
}

QWidget* VXProgramUpdateDescriptionDialog::createIntroLabel(QWidget* theParent,
                                                            const QString& theText)
{
    auto* const label = new QLabel(theText, theParent);
    label->setWordWrap(true);
    return label;
}
