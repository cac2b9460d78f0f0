#include "VXRequest.h"

#include "VXAutoCloseMessageBox.h"
#include "VXExclusiveChoiceDialog.h"
#include "VXMessageBox.h"
#include "VXPasswordDialog.h"

#include <QtCore/QPointer>

namespace {

VXDialogQuestion messageOf(QMessageBox::Icon theIcon, const QString& theTitle,
                           const QString& theText, const QString& theDetails, QWidget* theParent)
{
    VXDialogQuestion question;
    question.icon = theIcon;
    question.title = theTitle;
    question.text = theText;
    question.details = theDetails;
    question.buttons = QMessageBox::Ok;
    question.defaultButton = QMessageBox::Ok;
    question.escapeButton = QMessageBox::Ok;
    question.parent = theParent;
    return question;
}

// On the heap and watched: the box dies with its parent when that goes while exec() runs.
QMessageBox::StandardButton run(const QPointer<VXMessageBox>& theBox)
{
    const int result = theBox->exec();
    if (!theBox)
        return QMessageBox::NoButton;
    delete theBox;
    return static_cast<QMessageBox::StandardButton>(result);
}

} // namespace

VXRequest::VXRequest(QObject* theParent)
    : QObject(theParent)
{
}

VXRequest::~VXRequest() = default;

void VXRequest::information(const QString& theTitle, const QString& theText,
                            const QString& theDetails, QWidget* theParent)
{
    ask(messageOf(QMessageBox::Information, theTitle, theText, theDetails, theParent));
}

void VXRequest::warning(const QString& theTitle, const QString& theText, const QString& theDetails,
                        QWidget* theParent)
{
    ask(messageOf(QMessageBox::Warning, theTitle, theText, theDetails, theParent));
}

void VXRequest::critical(const QString& theTitle, const QString& theText, const QString& theDetails,
                         QWidget* theParent)
{
    ask(messageOf(QMessageBox::Critical, theTitle, theText, theDetails, theParent));
}

bool VXRequest::question(const QString& theTitle, const QString& theText, bool theDefaultIsYes,
                         QWidget* theParent)
{
    VXDialogQuestion question =
        messageOf(QMessageBox::Question, theTitle, theText, QString(), theParent);
    question.kind = VXDialogKind::Question;
    question.buttons = QMessageBox::Yes | QMessageBox::No;
    question.defaultButton = theDefaultIsYes ? QMessageBox::Yes : QMessageBox::No;
    question.escapeButton = QMessageBox::No;
    return ask(question) == QMessageBox::Yes;
}

QMessageBox::StandardButton
VXRequest::messageBox(QMessageBox::Icon theIcon, const QString& theTitle, const QString& theText,
                      const QString& theDetails, QMessageBox::StandardButtons theButtons,
                      QMessageBox::StandardButton theDefault, QMessageBox::StandardButton theEscape,
                      const QString& theObjectName, QWidget* theParent)
{
    VXDialogQuestion question = messageOf(theIcon, theTitle, theText, theDetails, theParent);
    question.objectName = theObjectName;
    question.buttons = theButtons;
    question.defaultButton = theDefault;
    question.escapeButton = theEscape;
    return ask(question);
}

QMessageBox::StandardButton VXRequest::autoCloseMessageBox(
    QMessageBox::Icon theIcon, const QString& theTitle, const QString& theText,
    const QString& theDetails, int theSeconds, QMessageBox::StandardButtons theButtons,
    QMessageBox::StandardButton theDefault, QMessageBox::StandardButton theEscape,
    const QString& theObjectName, QWidget* theParent)
{
    VXDialogQuestion question = messageOf(theIcon, theTitle, theText, theDetails, theParent);
    question.kind = VXDialogKind::AutoClose;
    question.objectName = theObjectName;
    question.buttons = theButtons;
    question.defaultButton = theDefault;
    question.escapeButton = theEscape;
    question.seconds = theSeconds;
    return ask(question);
}

std::optional<int> VXRequest::choose(const QString& theTitle, const QString& theText,
                                     const QList<VXDialogChoice>& theChoices, QWidget* theParent)
{
    VXDialogQuestion question = VXExclusiveChoiceDialog::question(theTitle, theText);
    question.choices = theChoices;
    question.parent = theParent;
    if (const auto answer = VXDialogDriver::askCurrent(question))
        return answer->choice;

    const QPointer dialog = new VXExclusiveChoiceDialog(theTitle, theText, theParent);
    for (const VXDialogChoice& choice : theChoices)
        dialog->addChoice(choice.value, choice.title, choice.description);
    dialog->QDialog::exec(); // the driver was asked already
    if (!dialog)
        return std::nullopt; // went with its parent
    const std::optional<int> value = dialog->chosenValue();
    delete dialog;
    return value;
}

VXDialogAnswer VXRequest::askForLogin(const QString& theText, QWidget* theParent)
{
    VXDialogQuestion question = VXPasswordDialog::question(theText);
    question.parent = theParent;
    if (const auto answer = VXDialogDriver::askCurrent(question))
        return *answer;

    const QPointer dialog = new VXPasswordDialog(theText, theParent);
    const int result = dialog->QDialog::exec(); // the driver was asked already
    if (!dialog)
        return {}; // went with its parent
    VXDialogAnswer answer;
    answer.button = result == QDialog::Accepted ? QMessageBox::Ok : QMessageBox::Cancel;
    if (result == QDialog::Accepted) {
        answer.userName = dialog->userName();
        answer.password = dialog->password();
    }
    delete dialog;
    return answer;
}

QString VXRequest::attentionString()
{
    return tr("Achtung");
}

QString VXRequest::hintString()
{
    return tr("Hinweis");
}

VXDialogDriver* VXRequest::setDialogDriver(VXDialogDriver* theDriver)
{
    return VXDialogDriver::setCurrent(theDriver);
}

QMessageBox::StandardButton VXRequest::ask(const VXDialogQuestion& theQuestion)
{
    if (const auto answer = VXDialogDriver::askCurrent(theQuestion))
        return answer->button;
    if (theQuestion.kind == VXDialogKind::AutoClose)
        return run(new VXAutoCloseMessageBox(theQuestion)); // run() deletes it
    return run(new VXMessageBox(theQuestion));
}
