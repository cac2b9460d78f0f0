#include "VXDialogBase.h"

#include "VXDialogConfig.h"
#include "VXMessageBox.h"

#include <QtCore/QVariant>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyle>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

VXDialogBase::VXDialogBase(QWidget* theParent)
    : QDialog(theParent)
    , myLayout(new QVBoxLayout(this))
    , myUsableWidget(new QWidget(this))
    , myButtons(new QDialogButtonBox(this))
{
    myUsableWidget->setObjectName(u"usableWidget"_s);
    myLayout->addWidget(myUsableWidget, 1);
    myLayout->addWidget(myButtons);
    connect(myButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(myButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

VXDialogBase::~VXDialogBase() = default;

void VXDialogBase::setupDialog(const VXDialogConfig& theConfig)
{
    setProperty("dialogKind", theConfig.kind);
    setWindowIcon(theConfig.icon);
    myButtons->setStandardButtons(theConfig.standardButtons);
    myButtons->setVisible(theConfig.standardButtons != QDialogButtonBox::NoButton);
    labelButtons();
    // Return presses the default button only, not the one that happens to have been added first.
    const auto buttons = myButtons->buttons();
    for (QAbstractButton* button : buttons) {
        if (auto* pushButton = qobject_cast<QPushButton*>(button))
            pushButton->setAutoDefault(false);
    }
    if (QPushButton* button = standardButton(theConfig.defaultButton))
        button->setDefault(true);
}

void VXDialogBase::labelButtons()
{
    const auto buttons = myButtons->buttons();
    for (QAbstractButton* button : buttons) {
        const auto number = static_cast<int>(myButtons->standardButton(button));
        // Both classes give the same buttons the same numbers.
        const QString text =
            VXMessageBox::buttonText(static_cast<QMessageBox::StandardButton>(number));
        if (!text.isEmpty())
            button->setText(text);
    }
}

void VXDialogBase::renameOkButton(const QString& theText)
{
    rename(QDialogButtonBox::Ok, theText);
}

void VXDialogBase::renameCancelButton(const QString& theText)
{
    rename(QDialogButtonBox::Cancel, theText);
}

void VXDialogBase::rename(StandardButton theButton, const QString& theText)
{
    if (QPushButton* button = standardButton(theButton))
        button->setText(theText);
}

void VXDialogBase::setButtonVisible(StandardButton theButton, bool theIsVisible)
{
    if (QPushButton* button = standardButton(theButton))
        button->setVisible(theIsVisible);
}

void VXDialogBase::setPropertyToStandardButton(StandardButton theButton, const char* theName,
                                               const QVariant& theValue)
{
    QPushButton* button = standardButton(theButton);
    if (button == nullptr)
        return;
    button->setProperty(theName, theValue);
    // A style sheet reads properties when a widget is polished; it may have been already.
    button->style()->unpolish(button);
    button->style()->polish(button);
}

QPushButton* VXDialogBase::standardButton(StandardButton theButton) const
{
    return myButtons->button(theButton);
}

void VXDialogBase::addAboveUsableWidget(QWidget* theWidget)
{
    myLayout->insertWidget(myLayout->indexOf(myUsableWidget), theWidget);
}
