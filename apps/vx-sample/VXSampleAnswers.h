#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QObject>
#include <QtCore/QRegularExpression>

#include <optional>

class QAuthenticator;
class QUrl;
class VXSampleOutput;

/// Answers the library's questions (server login, proxy login, TLS problems) from a list, where
/// an application would show dialogs. Each question is printed as an event, without passwords.
///
/// It lives in the main thread and must outlive the exchanges. A question that no entry matches
/// is refused, and the event says so.
class VXSampleAnswers : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleAnswers)

public:
    /// Connects itself to the library's dispatcher. `theOutput` must outlive this object.
    explicit VXSampleAnswers(VXSampleOutput& theOutput);
    ~VXSampleAnswers() override;

    /// Reads a JSON list from a file; the error text names file and entry, empty on success.
    QString readFile(const QString& theFile);

    /// Takes the entries over, in front of the ones before: {"kind":"serverLogin", "proxyLogin"
    /// or "sslErrors", "host":pattern with * and ?, "user", "password", "answer":true or false}.
    /// The error text names the entry, empty on success; after an error nothing has changed.
    QString add(const QJsonArray& theEntries);

    void clear();

    /// How many questions came so far.
    [[nodiscard]] int questions() const { return myQuestions; }

private:
    void answerServerLogin(const QUrl& theUrl, QAuthenticator* theAuthenticator);
    void answerProxyLogin(const QUrl& theUrl, QAuthenticator* theAuthenticator,
                          const QString& theProxyHost);
    void answerSslErrors(const QString& theHost, const QList<QString>& theErrorList,
                         bool* theResult);

    struct Entry
    {
        QString kind;
        QRegularExpression host;
        QString user;
        QString password;
        bool answer = false;
    };

    static QString read(const QJsonValue& theValue, Entry* theEntry);
    [[nodiscard]] std::optional<Entry> find(const QString& theKind, const QString& theHost) const;
    void answer(const QString& theKind, const QString& theHost, QAuthenticator* theAuthenticator);
    void announce(const QString& theKind, const QString& theHost,
                  const std::optional<Entry>& theEntry, const QStringList& theErrors = {});

    VXSampleOutput& myOutput;
    QList<Entry> myEntries;
    int myQuestions = 0;
};
