#include "VXSampleAnswers.h"

#include "VXSampleOutput.h"

#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QTimer>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct KindRow
{
    VXDialogKind kind;
    QLatin1StringView name;
};

constexpr std::array kindRows{
    KindRow{VXDialogKind::Message, "message"_L1},
    KindRow{VXDialogKind::Question, "question"_L1},
    KindRow{VXDialogKind::AutoClose, "autoClose"_L1},
    KindRow{VXDialogKind::Choice, "choice"_L1},
    KindRow{VXDialogKind::Password, "password"_L1},
};

struct ButtonRow
{
    QMessageBox::StandardButton button;
    QLatin1StringView name;
};

constexpr std::array buttonRows{
    ButtonRow{QMessageBox::Ok, "Ok"_L1},       ButtonRow{QMessageBox::Cancel, "Cancel"_L1},
    ButtonRow{QMessageBox::Yes, "Yes"_L1},     ButtonRow{QMessageBox::No, "No"_L1},
    ButtonRow{QMessageBox::Retry, "Retry"_L1},
};

QString nameOf(VXDialogKind theKind)
{
    return std::ranges::find(kindRows, theKind, &KindRow::kind)->name;
}

QString nameOf(QMessageBox::StandardButton theButton)
{
    const auto row = std::ranges::find(buttonRows, theButton, &ButtonRow::button);
    return row == buttonRows.end() ? QString() : QString(row->name);
}

/// The button that gives up: the escape button, or the only one there is.
QMessageBox::StandardButton escapeOf(const VXDialogQuestion& theQuestion)
{
    if (theQuestion.escapeButton != QMessageBox::NoButton)
        return theQuestion.escapeButton;
    const auto row = std::ranges::find_if(buttonRows, [&theQuestion](const ButtonRow& theRow) {
        return theQuestion.buttons == theRow.button;
    });
    return row == buttonRows.end() ? QMessageBox::Cancel : row->button;
}

std::optional<VXDialogAnswer> pressed(QMessageBox::StandardButton theButton,
                                      const VXDialogQuestion& theQuestion)
{
    if (!theQuestion.buttons.testFlag(theButton))
        return std::nullopt;
    return VXDialogAnswer{theButton, std::nullopt, {}, {}};
}

// Qt's own wildcards stop at slashes, which texts contain.
QRegularExpression pattern(const QJsonValue& theValue)
{
    QString text = QRegularExpression::escape(theValue.toString(u"*"_s));
    text.replace(u"\\*"_s, u".*"_s).replace(u"\\?"_s, u"."_s);
    return QRegularExpression(QRegularExpression::anchoredPattern(text),
                              QRegularExpression::CaseInsensitiveOption |
                                  QRegularExpression::DotMatchesEverythingOption);
}

void wait(int theMilliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(theMilliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

VXSampleAnswers::VXSampleAnswers(VXSampleOutput& theOutput)
    : myOutput(theOutput)
{
}

VXSampleAnswers::~VXSampleAnswers() = default;

QString VXSampleAnswers::readFile(const QString& theFile)
{
    QFile file(theFile);
    if (!file.open(QIODevice::ReadOnly))
        return u"%1: %2"_s.arg(theFile, file.errorString());

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        return u"%1: %2 at offset %3"_s.arg(theFile, error.errorString(),
                                            QString::number(error.offset));
    if (!document.isArray())
        return u"%1: must be a list"_s.arg(theFile);
    const QString complaint = add(document.array());
    return complaint.isEmpty() ? QString() : u"%1: %2"_s.arg(theFile, complaint);
}

QString VXSampleAnswers::add(const QJsonArray& theEntries)
{
    QList<Entry> entries;
    for (const auto value : theEntries) {
        Entry entry;
        const QString complaint = read(value, &entry);
        if (!complaint.isEmpty())
            return u"entry %1: %2"_s.arg(QString::number(entries.size() + 1), complaint);
        entries << entry;
    }
    myEntries = entries + myEntries;
    return {};
}

void VXSampleAnswers::clear()
{
    myEntries.clear();
}

QString VXSampleAnswers::read(const QJsonValue& theValue, Entry* theEntry)
{
    const QJsonObject object = theValue.toObject();
    static const QStringList texts{u"kind"_s, u"objectName"_s, u"title"_s,
                                   u"text"_s, u"user"_s,       u"password"_s};
    for (const QString& key : object.keys()) {
        const QJsonValue value = object.value(key);
        if (texts.contains(key) && !value.isString())
            return u"\"%1\" must be a text"_s.arg(key);
        if (key == u"afterMs"_s && value.toInt(-1) < 0)
            return u"\"afterMs\" must be a number of milliseconds"_s;
        if (!texts.contains(key) && key != u"afterMs"_s && key != u"answer"_s)
            return u"unknown key \"%1\""_s.arg(key);
    }
    theEntry->kind = object.value(u"kind"_s).toString();
    if (!theEntry->kind.isEmpty() &&
        std::ranges::find(kindRows, theEntry->kind, &KindRow::name) == kindRows.end())
        return u"\"kind\" must be one of message, question, autoClose, choice, password"_s;

    theEntry->answer = object.value(u"answer"_s);
    if (theEntry->answer.isString() && std::ranges::find(buttonRows, theEntry->answer.toString(),
                                                         &ButtonRow::name) == buttonRows.end())
        return u"\"answer\" must be one of Ok, Cancel, Yes, No, Retry, a number, true or false"_s;

    theEntry->objectName = object.value(u"objectName"_s).toString();
    theEntry->title = pattern(object.value(u"title"_s));
    theEntry->text = pattern(object.value(u"text"_s));
    theEntry->user = object.value(u"user"_s).toString();
    theEntry->password = object.value(u"password"_s).toString();
    theEntry->milliseconds = object.value(u"afterMs"_s).toInt();
    return {};
}

bool VXSampleAnswers::matches(const Entry& theEntry, const VXDialogQuestion& theQuestion)
{
    return (theEntry.kind.isEmpty() || theEntry.kind == nameOf(theQuestion.kind)) &&
           (theEntry.objectName.isEmpty() || theEntry.objectName == theQuestion.objectName) &&
           theEntry.title.match(theQuestion.title).hasMatch() &&
           theEntry.text.match(theQuestion.text).hasMatch() &&
           answerOf(theEntry, theQuestion).has_value();
}

/// Empty when the dialog has no such button or choice.
std::optional<VXDialogAnswer> VXSampleAnswers::answerOf(const Entry& theEntry,
                                                        const VXDialogQuestion& theQuestion)
{
    if (theEntry.answer.isDouble()) {
        const int value = theEntry.answer.toInt();
        const bool isThere = std::ranges::find(theQuestion.choices, value,
                                               &VXDialogChoice::value) != theQuestion.choices.end();
        if (!isThere)
            return std::nullopt;
        return VXDialogAnswer{QMessageBox::Ok, value, {}, {}};
    }
    if (theEntry.answer.isString()) {
        const auto row =
            std::ranges::find(buttonRows, theEntry.answer.toString(), &ButtonRow::name);
        auto answer = pressed(row->button, theQuestion);
        if (answer && answer->button == QMessageBox::Ok) {
            answer->userName = theEntry.user;
            answer->password = theEntry.password;
        }
        return answer;
    }
    if (theEntry.answer.isBool() && !theEntry.answer.toBool())
        return VXDialogAnswer{escapeOf(theQuestion), std::nullopt, {}, {}};
    if (theQuestion.kind == VXDialogKind::Choice)
        return VXDialogAnswer{QMessageBox::Ok, theQuestion.choices.constFirst().value, {}, {}};
    if (theQuestion.kind == VXDialogKind::Question)
        return VXDialogAnswer{QMessageBox::Yes, std::nullopt, {}, {}};
    const auto button = theQuestion.defaultButton != QMessageBox::NoButton
                            ? theQuestion.defaultButton
                            : escapeOf(theQuestion);
    return VXDialogAnswer{button, std::nullopt, theEntry.user, theEntry.password};
}

const VXSampleAnswers::Entry* VXSampleAnswers::find(const VXDialogQuestion& theQuestion) const
{
    const auto entry = std::ranges::find_if(myEntries, [&theQuestion](const Entry& theEntry) {
        return matches(theEntry, theQuestion);
    });
    return entry == myEntries.end() ? nullptr : &*entry;
}

std::optional<VXDialogAnswer> VXSampleAnswers::ask(const VXDialogQuestion& theQuestion)
{
    ++myQuestions;
    if (const Entry* entry = find(theQuestion)) {
        auto answer = answerOf(*entry, theQuestion);
        const QString text =
            answer->choice ? QString::number(*answer->choice) : nameOf(answer->button);
        announce(theQuestion, text, true, answer->userName);
        if (entry->milliseconds > 0)
            wait(entry->milliseconds);
        return answer;
    }
    if (myUserIsThere) {
        announce(theQuestion, u"user"_s, false, {});
        return std::nullopt;
    }
    ++myUnanswered;
    const VXDialogAnswer refusal{escapeOf(theQuestion), std::nullopt, {}, {}};
    announce(theQuestion, nameOf(refusal.button), false, {});
    myOutput.message(u"vx-sample: no answer for the dialog \"%1\": %2"_s.arg(
        theQuestion.title, nameOf(refusal.button)));
    return refusal;
}

void VXSampleAnswers::announce(const VXDialogQuestion& theQuestion, const QString& theAnswerText,
                               bool theIsMatched, const QString& theUser)
{
    QJsonObject dialog{{u"kind"_s, nameOf(theQuestion.kind)},
                       {u"title"_s, theQuestion.title},
                       {u"text"_s, theQuestion.text},
                       {u"answer"_s, theAnswerText},
                       {u"matched"_s, theIsMatched}};
    if (!theQuestion.objectName.isEmpty())
        dialog.insert(u"objectName"_s, theQuestion.objectName);
    if (!theQuestion.details.isEmpty())
        dialog.insert(u"details"_s, theQuestion.details);
    if (theQuestion.seconds > 0)
        dialog.insert(u"seconds"_s, theQuestion.seconds);
    if (!theUser.isEmpty())
        dialog.insert(u"user"_s, theUser);
    QJsonArray choices;
    for (const VXDialogChoice& choice : theQuestion.choices)
        choices.append(QJsonObject{{u"value"_s, choice.value}, {u"title"_s, choice.title}});
    if (!choices.isEmpty())
        dialog.insert(u"choices"_s, choices);
    myOutput.event(u"dialog"_s, dialog);
}
