#include "VXExclusiveChoiceDialog.h"

#include "VXCommandLink.h"
#include "VXDialogDriver.h"
#include "VXForeignText.h"
#include "VXMessageBox.h"

#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyle>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int minimumWidthInPixels = 420;

QHBoxLayout* createMessage(const QString& theText, QWidget* theDialog)
{
    auto* icon = new QLabel(theDialog);
    const int size = theDialog->style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    icon->setPixmap(theDialog->style()
                        ->standardIcon(QStyle::SP_MessageBoxQuestion, nullptr, theDialog)
                        .pixmap(size));
    const VXForeignText foreign(theText);
    auto* text = new QLabel(theDialog);
    text->setTextFormat(foreign.format());
    text->setText(foreign.text());
    text->setObjectName(u"messageLabel"_s);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* layout = new QHBoxLayout; // the caller puts it into the dialog's layout
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addWidget(text, 1, Qt::AlignTop);
    return layout;
}

} // namespace

VXExclusiveChoiceDialog::VXExclusiveChoiceDialog(const QString& theTitle, const QString& theText,
                                                 QWidget* theParent)
    : QDialog(theParent != nullptr ? theParent : VXMessageBox::activeParent())
    , myQuestion(question(theTitle, theText))
    , myLinks(new QVBoxLayout)
{
    myQuestion.parent = parentWidget();

    setObjectName(myQuestion.objectName);
    setWindowTitle(theTitle);
    setWindowModality(Qt::ApplicationModal);
    setMinimumWidth(minimumWidthInPixels);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)
        ->setText(VXMessageBox::buttonText(QMessageBox::Cancel));
    buttons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(createMessage(theText, this));
    layout->addLayout(myLinks);
    layout->addWidget(buttons);
}

VXExclusiveChoiceDialog::~VXExclusiveChoiceDialog() = default;

VXDialogQuestion VXExclusiveChoiceDialog::question(const QString& theTitle, const QString& theText)
{
    VXDialogQuestion question;
    question.kind = VXDialogKind::Choice;
    question.objectName = u"exclusiveChoiceDialog"_s;
    question.title = theTitle;
    question.text = theText;
    question.buttons = QMessageBox::Cancel;
    question.escapeButton = QMessageBox::Cancel;
    return question;
}

void VXExclusiveChoiceDialog::addChoice(int theValue, const QString& theTitle,
                                        const QString& theDescription)
{
    QString title = theTitle;
    auto* link = new VXCommandLink(title.replace(u'&', u"&&"_s), theDescription, this);
    link->setObjectName(u"choice%1"_s.arg(QString::number(theValue)));
    link->setAccessibleName(theTitle);
    link->setAccessibleDescription(theDescription); // Qt leaves it empty
    connect(link, &QAbstractButton::clicked, this, [this, theValue] { choose(theValue); });
    if (myQuestion.choices.isEmpty()) {
        link->setDefault(true);
        link->setFocus();
    }
    myLinks->addWidget(link);
    myQuestion.choices.append({theValue, theTitle, theDescription});
}

void VXExclusiveChoiceDialog::showEvent(QShowEvent* theEvent)
{
    // Wrapped texts make a layout guess its height; now the width is known.
    if (layout()->hasHeightForWidth())
        resize(width(), layout()->totalHeightForWidth(width()));
    QDialog::showEvent(theEvent);
}

int VXExclusiveChoiceDialog::exec()
{
    myChosenValue.reset();
    myQuestion.objectName = objectName();
    if (const auto answer = VXDialogDriver::askCurrent(myQuestion)) {
        myChosenValue = answer->choice;
        return myChosenValue ? Accepted : Rejected;
    }
    return QDialog::exec();
}

void VXExclusiveChoiceDialog::choose(int theValue)
{
    myChosenValue = theValue;
    accept();
}
