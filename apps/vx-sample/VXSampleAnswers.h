#pragma once

#include <VXGUIWidgets/VXDialogDriver.h>

#include <QtCore/QJsonArray>
#include <QtCore/QRegularExpression>

#include <optional>

class VXSampleOutput;

/// Answers dialogs from a list instead of the user. Each dialog is printed as an event, without
/// passwords.
///
/// A dialog that no entry matches is shown to the user when there is one; else it gets its escape
/// button, and that counts as a failure. Main thread.
class VXSampleAnswers : public VXDialogDriver
{
    Q_DISABLE_COPY_MOVE(VXSampleAnswers)

public:
    /// `theOutput` must outlive this object.
    explicit VXSampleAnswers(VXSampleOutput& theOutput);
    ~VXSampleAnswers() override;

    /// Reads a JSON list from a file; the error text names file and entry, empty on success.
    QString readFile(const QString& theFile);

    /// Takes the entries over, in front of the ones before. An entry matches by "kind" (message,
    /// question, autoClose, choice, password), "objectName", and by "title" and "text", patterns
    /// with * and ?; what is left out matches all. It answers with "answer": the name of a button
    /// (Ok, Cancel, Yes, No, Retry), the number of a choice, or true and false for going on and
    /// giving up; with "user" and "password" where those are asked for; "afterMs" milliseconds
    /// later. The error text names the entry, empty on success; after an error nothing has changed.
    QString add(const QJsonArray& theEntries);

    void clear();

    /// Whether somebody sits before the screen; true shows dialogs that no entry matches.
    void setUserIsThere(bool theUserIsThere) { myUserIsThere = theUserIsThere; }
    [[nodiscard]] bool userIsThere() const { return myUserIsThere; }

    /// How many dialogs came so far.
    [[nodiscard]] int questions() const { return myQuestions; }

    /// How many of them nobody answered.
    [[nodiscard]] int unanswered() const { return myUnanswered; }

    std::optional<VXDialogAnswer> ask(const VXDialogQuestion& theQuestion) override;

private:
    struct Entry
    {
        QString kind; ///< empty = any, as the others
        QString objectName;
        QRegularExpression title;
        QRegularExpression text;
        QJsonValue answer;
        QString user;
        QString password;
        int milliseconds = 0;
    };

    static QString read(const QJsonValue& theValue, Entry* theEntry);
    static bool matches(const Entry& theEntry, const VXDialogQuestion& theQuestion);
    static std::optional<VXDialogAnswer> answerOf(const Entry& theEntry,
                                                  const VXDialogQuestion& theQuestion);
    [[nodiscard]] const Entry* find(const VXDialogQuestion& theQuestion) const;
    void announce(const VXDialogQuestion& theQuestion, const QString& theAnswerText,
                  bool theIsMatched, const QString& theUser);

    VXSampleOutput& myOutput;
    QList<Entry> myEntries;
    bool myUserIsThere = false;
    int myQuestions = 0;
    int myUnanswered = 0;
};
