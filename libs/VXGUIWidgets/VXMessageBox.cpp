#include "VXMessageBox.h"

#include "VXDialogQuestion.h"
#include "VXForeignText.h"

#include <QtGui/QClipboard>
#include <QtGui/QKeyEvent>
#include <QtGui/QTextDocument>
#include <QtGui/QTextDocumentFragment>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTextEdit>

#include <algorithm>
#include <array>

namespace {

struct ButtonRow
{
    QMessageBox::StandardButton button;
    const char* text;
};

constexpr std::array buttonRows{
    ButtonRow{QMessageBox::Ok, QT_TRANSLATE_NOOP("VXMessageBox", "OK")},
    ButtonRow{QMessageBox::Retry, QT_TRANSLATE_NOOP("VXMessageBox", "Wiederholen")},
    ButtonRow{QMessageBox::Cancel, QT_TRANSLATE_NOOP("VXMessageBox", "Abbrechen")},
    ButtonRow{QMessageBox::Yes, QT_TRANSLATE_NOOP("VXMessageBox", "Ja")},
    ButtonRow{QMessageBox::No, QT_TRANSLATE_NOOP("VXMessageBox", "Nein")},
    ButtonRow{QMessageBox::Close, QT_TRANSLATE_NOOP("VXMessageBox", "Schließen")},
};

// A button that stands alone is what Return presses; else that would be the details.
QMessageBox::StandardButton defaultOf(const VXDialogQuestion& theQuestion)
{
    if (theQuestion.defaultButton != QMessageBox::NoButton)
        return theQuestion.defaultButton;
    const auto row = std::ranges::find_if(buttonRows, [&theQuestion](const ButtonRow& theRow) {
        return theQuestion.buttons == theRow.button;
    });
    return row == buttonRows.end() ? QMessageBox::NoButton : row->button;
}

} // namespace

VXMessageBox::VXMessageBox(const VXDialogQuestion& theQuestion)
    : QMessageBox(theQuestion.icon, theQuestion.title, QString(), theQuestion.buttons,
                  theQuestion.parent ? theQuestion.parent.data() : activeParent())
{
    showText(theQuestion.text);
    setObjectName(theQuestion.objectName);
    setWindowModality(Qt::ApplicationModal);
    // Texts may hold what a server sent: selectable, but no link leads anywhere.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    labelButtons();
    setDefaultButton(defaultOf(theQuestion));
    setEscapeButton(theQuestion.escapeButton);
    if (!theQuestion.details.isEmpty())
        addDetails(theQuestion.details);
}

VXMessageBox::~VXMessageBox() = default;

QString VXMessageBox::buttonText(StandardButton theButton)
{
    const auto row = std::ranges::find(buttonRows, theButton, &ButtonRow::button);
    return row == buttonRows.end() ? QString() : tr(row->text);
}

QWidget* VXMessageBox::activeParent()
{
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : QApplication::activeWindow();
}

void VXMessageBox::keyPressEvent(QKeyEvent* theEvent)
{
    if (!theEvent->matches(QKeySequence::Copy)) {
        QMessageBox::keyPressEvent(theEvent);
        return;
    }
    const QString plain = Qt::mightBeRichText(text())
                              ? QTextDocumentFragment::fromHtml(text()).toPlainText()
                              : text();
    QStringList parts{windowTitle(), plain, detailedText()};
    parts.removeAll(QString());
    QApplication::clipboard()->setText(parts.join(u'\n'));
}

void VXMessageBox::showText(const QString& theText)
{
    const VXForeignText foreign(theText);
    setTextFormat(foreign.format());
    setText(foreign.text());
}

void VXMessageBox::labelButtons()
{
    const auto ownButtons = buttons();
    for (QAbstractButton* ownButton : ownButtons) {
        const QString text = buttonText(standardButton(ownButton));
        if (!text.isEmpty())
            ownButton->setText(text);
    }
}

void VXMessageBox::addDetails(const QString& theDetails)
{
    setDetailedText(theDetails);
    const auto ownButtons = buttons();
    const auto details = std::ranges::find_if(ownButtons, [this](QAbstractButton* theButton) {
        return buttonRole(theButton) == ActionRole;
    });
    if (details == ownButtons.end())
        return;
    // Qt's button is as wide as Qt's own labels.
    (*details)->setMinimumWidth(QPushButton(tr("Details verbergen")).sizeHint().width());
    labelDetailsButton(*details);
    // Queued: Qt gives the button its own label at each click, and ours comes after that.
    connect(
        *details, &QAbstractButton::clicked, this,
        [this, button = *details] { labelDetailsButton(button); }, Qt::QueuedConnection);
}

void VXMessageBox::labelDetailsButton(QAbstractButton* theButton)
{
    const auto* text = findChild<QTextEdit*>(); // inside the frame that Qt hides and shows
    const bool isOpen = text != nullptr && !text->parentWidget()->isHidden();
    theButton->setText(isOpen ? tr("Details verbergen") : tr("Details anzeigen"));
}
