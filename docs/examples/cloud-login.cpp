#include <VXCore/VXInitializer.h>
#include <VXNetworking/VXCloudSessionOAuth2.h>
#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXOAuth2LoginDialog.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QDebug>
#include <QtCore/QRandomGenerator>
#include <QtCore/QUrlQuery>
#include <QtWidgets/QApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr auto clientId = "desk"_L1;
constexpr auto redirectUri = "http://127.0.0.1:1031/"_L1; // nobody need listen there

/// 43 characters that nobody guesses (RFC 7636, 4.1).
QByteArray randomText()
{
    QByteArray bytes(32, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
    return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

QByteArray challenge(const QByteArray& theVerifier)
{
    return QCryptographicHash::hash(theVerifier, QCryptographicHash::Sha256)
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

/// A session that opens with the code of a login page instead of a password.
class Session : public VXCloudSessionOAuth2
{
public:
    Session(const QString& theProvider, const QString& theCode, const QByteArray& theVerifier)
        : myProvider(theProvider)
        , myCode(theCode)
        , myVerifier(QString::fromLatin1(theVerifier))
    {
    }

    QString clientId() const override { return ::clientId; }
    QUrl tokenUrl() const override { return QUrl(myProvider + "/oauth2/token"_L1); }
    QUrl logoutUrl() const override { return QUrl(myProvider + "/oauth2/revoke"_L1); }

    QUrlQuery buildOpenQuery(const VXCredentials&) const override
    {
        QUrlQuery query = buildBasicQuery();
        const auto add = [&query](const QString& theName, const QString& theValue) {
            query.addQueryItem(theName, QString::fromLatin1(QUrl::toPercentEncoding(theValue)));
        };
        add(u"grant_type"_s, u"authorization_code"_s);
        add(u"code"_s, myCode);
        add(u"redirect_uri"_s, redirectUri);
        add(u"code_verifier"_s, myVerifier); // RFC 7636, 4.5
        return query;
    }

private:
    const QString myProvider;
    const QString myCode;
    const QString myVerifier;
};

} // namespace

int main(int theCount, char** theArguments)
{
    const QApplication application(theCount, theArguments);
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal); // the web engine
    const QString provider = application.arguments().value(1);        // "https://cloud.example.org"

    const QByteArray verifier = randomText();
    const QString state = QString::fromLatin1(randomText());
    QUrl loginUrl(provider + "/oauth2/authorize"_L1);
    loginUrl.setQuery(QUrlQuery{{u"response_type"_s, u"code"_s},
                                {u"client_id"_s, clientId},
                                {u"redirect_uri"_s, redirectUri},
                                {u"state"_s, state},
                                {u"code_challenge"_s, QString::fromLatin1(challenge(verifier))},
                                {u"code_challenge_method"_s, u"S256"_s}});

    QString code;
    { // the dialog's page must not outlive the web engine
        VXOAuth2LoginDialog dialog(loginUrl, u"Tessarim"_s,
                                   VXOAuth2LoginDialog::CancelButtonOption);
        QObject::connect(
            &dialog, &VXOAuth2LoginDialog::urlHasChanged, &dialog, [&](const QUrl& theUrl) {
                if (!theUrl.matches(QUrl(redirectUri), QUrl::RemoveQuery))
                    return;
                const QUrlQuery query(theUrl);
                if (query.queryItemValue(u"state"_s, QUrl::FullyDecoded) != state)
                    return; // not the answer to this login (RFC 6749, 10.12)
                dialog.setAccessCode(query.queryItemValue(u"code"_s, QUrl::FullyDecoded));
                dialog.startAcceptTimer();
            });
        if (dialog.exec() == QDialog::Accepted)
            code = dialog.accessCode();
    }

    bool isOpen = false;
    if (!code.isEmpty()) {
        Session session(provider, code, verifier);
        const VXNetworkingError error = session.open({}, nullptr);
        isOpen = session.isOpen();
        qInfo().noquote() << (isOpen ? u"logged in"_s : error.errorMessage());
        session.close(); // gives the tokens back
    }
    VXInitializer::instance()->runTeardown();
    return isOpen ? 0 : 1;
}
