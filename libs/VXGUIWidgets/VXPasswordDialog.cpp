#include "VXPasswordDialog.h"

#include "VXDialogDriver.h"
#include "VXForeignText.h"
#include "VXMessageBox.h"
#include "VXWidgetFactory.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int minimumWidthInPixels = 380; // a URL in the text should not break at each word

QDialogButtonBox* createButtons(QDialog* theDialog)
{
    auto* buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, theDialog);
    buttons->button(QDialogButtonBox::Ok)->setText(VXMessageBox::buttonText(QMessageBox::Ok));
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)
        ->setText(VXMessageBox::buttonText(QMessageBox::Cancel));
    QObject::connect(buttons, &QDialogButtonBox::accepted, theDialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, theDialog, &QDialog::reject);
    return buttons;
}

} // namespace

VXPasswordDialog::VXPasswordDialog(const QString& theText, QWidget* theParent)
    : QDialog(theParent != nullptr ? theParent : VXMessageBox::activeParent())
    , myText(theText)
{
    setObjectName(u"passwordDialog"_s);
    setWindowTitle(tr("Anmeldung erforderlich"));
    setWindowModality(Qt::ApplicationModal);
    setMinimumWidth(minimumWidthInPixels);
    createFields(theText);
}

VXPasswordDialog::~VXPasswordDialog() = default;

void VXPasswordDialog::createFields(const QString& theText)
{
    const VXForeignText foreign(theText);
    auto* text = new QLabel(this);
    text->setTextFormat(foreign.format());
    text->setText(foreign.text());
    text->setObjectName(u"messageLabel"_s);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);

    myUserName = VXWidgetFactory::createLineEdit(this);
    myUserName->setObjectName(u"userNameEdit"_s);
    myPassword = VXWidgetFactory::createLineEdit(this, QLineEdit::Password);
    myPassword->setObjectName(u"passwordEdit"_s);
    auto* show = new QCheckBox(tr("Passwort an&zeigen"), this);
    connect(show, &QCheckBox::toggled, this, [this](bool theIsChecked) {
        myPassword->setEchoMode(theIsChecked ? QLineEdit::Normal : QLineEdit::Password);
    });

    auto* form = new QFormLayout; // part of the layout below
    form->addRow(tr("&Benutzername"), myUserName);
    form->addRow(tr("&Passwort"), myPassword);
    form->addRow(QString(), show);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addLayout(form);
    layout->addWidget(createButtons(this));
}

QString VXPasswordDialog::userName() const
{
    return myUserName->text();
}

QString VXPasswordDialog::password() const
{
    return myPassword->text();
}

void VXPasswordDialog::setUserName(const QString& theUserName)
{
    myUserName->setText(theUserName);
    (theUserName.isEmpty() ? myUserName : myPassword)->setFocus();
}

VXDialogQuestion VXPasswordDialog::question(const QString& theText)
{
    VXDialogQuestion question;
    question.kind = VXDialogKind::Password;
    question.objectName = u"passwordDialog"_s;
    question.title = tr("Anmeldung erforderlich");
    question.text = theText;
    question.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    question.defaultButton = QMessageBox::Ok;
    question.escapeButton = QMessageBox::Cancel;
    return question;
}

int VXPasswordDialog::exec()
{
    VXDialogQuestion asked = question(myText);
    asked.objectName = objectName();
    asked.title = windowTitle();
    asked.parent = parentWidget();
    if (const auto answer = VXDialogDriver::askCurrent(asked))
        return answerByDriver(*answer);
    return QDialog::exec();
}

int VXPasswordDialog::answerByDriver(const VXDialogAnswer& theAnswer)
{
    if (theAnswer.button != QMessageBox::Ok)
        return Rejected;
    myUserName->setText(theAnswer.userName);
    myPassword->setText(theAnswer.password);
    return Accepted;
}

void VXPasswordDialog::done(int theResult)
{
    if (theResult != Accepted)
        myPassword->clear();
    QDialog::done(theResult);
}
