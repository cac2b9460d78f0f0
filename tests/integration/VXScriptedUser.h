#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

class QAuthenticator;

/// Answers the questions of the library from a script and remembers them.
///
/// Make it in the GUI thread; read it while no exchange runs.
class VXScriptedUser : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXScriptedUser)

public:
    /// A user without a name cancels.
    struct Credentials
    {
        QString user;
        QString password;
    };
    enum class Kind
    {
        ServerPassword,
        ProxyPassword,
        Certificate
    };
    struct Question
    {
        Kind kind;
        QString host; // of the proxy or the certificate
        QUrl url;     // of the server that wants a password
        QStringList errors;
        bool wasAskedInGuiThread;
    };

    explicit VXScriptedUser(QObject* theParent = nullptr);

    /// One answer for each password question, in order; the last serves all further ones. Without
    /// any, every question is cancelled.
    void setAnswers(const QList<Credentials>& theAnswers) { myAnswers = theAnswers; }
    void setAcceptsCertificates(bool theAccepts) { myAcceptsCertificates = theAccepts; }

    [[nodiscard]] QList<Question> questions() const { return myQuestions; }

private:
    void note(Kind theKind, const QString& theHost, const QUrl& theUrl,
              const QStringList& theErrors);
    void fill(QAuthenticator* theAuthenticator);

    QList<Credentials> myAnswers;
    bool myAcceptsCertificates = false;
    QList<Question> myQuestions;
};
