#include "VXOAuth2ExternalLoginDialog.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXKeyAccountTexts.h>
#include <VXCore/VXPlatformIndependent.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDebug>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtCore/QUrlQuery>
#include <QtHttpServer/QHttpServer>
#include <QtHttpServer/QHttpServerRequest>
#include <QtHttpServer/QHttpServerResponse>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr quint16 listeningPort = 1031;
constexpr int applicationName = 1; // number of the key account's text
constexpr std::chrono::seconds longestWrite{1};
constexpr int writeSlice = 20; // milliseconds for one socket, so that none keeps the others waiting

bool hasPendingBytes(const QTcpSocket* theSocket)
{
    return theSocket->state() == QAbstractSocket::ConnectedState && theSocket->bytesToWrite() > 0;
}

} // namespace

VXOAuth2ExternalLoginDialog::VXOAuth2ExternalLoginDialog(const QUrl& theLoginUrl,
                                                         const QString& theServiceName)
    : VXOAuth2ExternalLoginDialogBase(theLoginUrl, theServiceName)
{
    initializeHttpServer();
}

VXOAuth2ExternalLoginDialog::~VXOAuth2ExternalLoginDialog() = default;

quint16 VXOAuth2ExternalLoginDialog::defaultListeningPort()
{
    return listeningPort;
}

void VXOAuth2ExternalLoginDialog::checkAccept()
{
    if (!accessCode().isEmpty())
        accept();
}

QJsonObject VXOAuth2ExternalLoginDialog::translations() const
{
    // The only placeholder, so the name fills it although it is the third.
    return {{u"maintext"_s, tr("Sie können diese Seite jetzt schließen und zu "
                               "<strong>%3</strong> zurückkehren.")
                                .arg(VXKeyAccountTexts::instance()->text(applicationName))}};
}

int VXOAuth2ExternalLoginDialog::exec()
{
    if (!VXPlatformIndependent::instance()->openUrl(loginUrl()))
        qWarning("The browser for the login could not be started");

    const QPointer<VXOAuth2ExternalLoginDialog> guard(this);
    const int result = QDialog::exec();
    if (guard) // else our parent went away, and we with it
        writePendingAnswers();
    return result;
}

void VXOAuth2ExternalLoginDialog::initializeHttpServer()
{
    myServer = new QHttpServer(this);
    myServer->route(u"/translations.json"_s,
                    [this] { return QHttpServerResponse(translations()); });
    // Takes the path from the request: with an argument Qt would append a second group, and the
    // pattern match nothing.
    myServer->route(u"^/(.*)$"_s,
                    [this](const QHttpServerRequest& theRequest) { return answer(theRequest); });
    listen();
}

void VXOAuth2ExternalLoginDialog::listen()
{
    // Qt asks proxies for servers too, and none of them can listen on this computer for us.
    auto* const listener = new QTcpServer(this); // the server takes it over below
    listener->setProxy(QNetworkProxy::NoProxy);
    if (listener->listen(QHostAddress::Any, listeningPort)) {
        myServer->bind(listener);
        return;
    }
    qWarning("The login cannot be caught on port %u: %ls", uint{listeningPort},
             qUtf16Printable(listener->errorString()));
    delete listener;
}

QHttpServerResponse VXOAuth2ExternalLoginDialog::answer(const QHttpServerRequest& theRequest)
{
    const QString code = theRequest.query().queryItemValue(u"code"_s);
    if (!code.isEmpty()) {
        setAccessCode(code);
        checkAccept();
    }

    const QString path = theRequest.url().path(QUrl::FullyDecoded);
    const QString name = path == u"/" ? u"index.html"_s : path.mid(1);
    const QString file = VXDirectoryConfig::instance()->oAuthSupportAsset(name);
    if (file.isEmpty()) {
        qDebug("!!! 404: Resource not found");
        return QHttpServerResponse(QHttpServerResponse::StatusCode::NotFound);
    }
    return QHttpServerResponse::fromFile(file);
}

/// The answer to the redirect lies in its socket when the dialog ends, and would be lost if the
/// caller destroyed us now.
void VXOAuth2ExternalLoginDialog::writePendingAnswers() const
{
    const QDeadlineTimer deadline(longestWrite);
    const QList<QTcpSocket*> sockets = findChildren<QTcpSocket*>();
    while (std::ranges::any_of(sockets, hasPendingBytes) && !deadline.hasExpired()) {
        for (QTcpSocket* const socket : sockets) {
            if (hasPendingBytes(socket))
                socket->waitForBytesWritten(writeSlice);
        }
    }
}
