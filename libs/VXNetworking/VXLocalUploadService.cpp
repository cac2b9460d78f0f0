#include "VXLocalUploadService.h"

#include "VXUploadAdmission.h"
#include "VXUploadFileName.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXLogger.h>
#include <VXCore/VXPlatformIndependent.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDate>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QJsonObject>
#include <QtCore/QMetaEnum>
#include <QtCore/QPointer>
#include <QtCore/QRandomGenerator>
#include <QtCore/QSaveFile>
#include <QtCore/QStandardPaths>
#include <QtCore/QUrlQuery>
#include <QtHttpServer/QHttpServer>
#include <QtHttpServer/QHttpServerRequest>
#include <QtHttpServer/QHttpServerResponse>
#include <QtNetwork/QHostInfo>
#include <QtNetwork/QNetworkInterface>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using StatusCode = QHttpServerResponse::StatusCode;

void logAction(const QString& theAction)
{
    VXLogger::instance()->logQRUpload(u"ACTION:"_s + theAction);
}

QHttpServerResponse forbidden()
{
    return {"text/html", "403: Forbidden", StatusCode::Forbidden};
}

QHttpServerResponse notFound()
{
    return {"text/html", "404: Resource not Found :-(", StatusCode::NotFound};
}

bool isUsable(const QNetworkInterface& theInterface)
{
    const QNetworkInterface::InterfaceFlags flags = theInterface.flags();
    return flags.testFlag(QNetworkInterface::IsRunning) &&
           !flags.testFlag(QNetworkInterface::IsLoopBack) &&
           !flags.testFlag(QNetworkInterface::IsPointToPoint);
}

std::optional<QNetworkAddressEntry> firstIpv4Entry(const QNetworkInterface& theInterface)
{
    const QList<QNetworkAddressEntry> entries = theInterface.addressEntries();
    const auto entry = std::ranges::find_if(entries, [](const QNetworkAddressEntry& theEntry) {
        return theEntry.ip().protocol() == QAbstractSocket::IPv4Protocol;
    });
    if (entry == entries.end())
        return std::nullopt;
    return *entry;
}

/// Replaces the file as a whole or leaves it alone. Failures are the business of those who get
/// filesUploaded(); here they are only logged.
void save(const QString& thePath, const QByteArray& theData)
{
    QSaveFile file(thePath);
    // A full disk shows by the flush or not at all: a commit would succeed with what found room.
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           file.write(theData) == theData.size() && file.flush() && file.commit();
    if (!isWritten)
        qWarning().noquote() << u"Writing the file \"%1\" failed: %2"_s.arg(thePath,
                                                                            file.errorString());
}

} // namespace

VXLocalUploadService::VXLocalUploadService(QObject* theParent)
    : QObject(theParent)
{
    qRegisterMetaType<QFileInfo>();
    generateToken();
    setupServer();
}

VXLocalUploadService::~VXLocalUploadService() = default;

bool VXLocalUploadService::start()
{
    log(u"QR Upload Service starting"_s);
    logAction(u"startService"_s);
    nextConnection();
    // Listens a second time on purpose: the published port is the second one.
    return startListen();
}

int VXLocalUploadService::selectedConnection() const
{
    return static_cast<int>(myAddresses.indexOf(mySelectedAddress));
}

QUrl VXLocalUploadService::url() const
{
    return QUrl(
        u"http://%1:%2/?%3"_s.arg(mySelectedAddress.toString(), QString::number(myPort), myToken));
}

QString VXLocalUploadService::targetFolder()
{
    if (myTargetFolder.isEmpty()) {
        const QDir pictures(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
        // A folder that does not exist has no canonical path.
        const QString canonical = pictures.canonicalPath();
        const QDir parent(canonical.isEmpty() ? pictures.absolutePath() : canonical);
        const QString name =
            u"%1 %2"_s.arg(tr("Kopierte Fotos"), QDate::currentDate().toString(Qt::ISODate));
        setTargetFolder(parent.absoluteFilePath(name));
    }
    return myTargetFolder;
}

void VXLocalUploadService::setTargetFolder(const QString& theFolder)
{
    myTargetFolder = theFolder;
    Q_EMIT targetFolderChanged(myTargetFolder);
}

QJsonObject VXLocalUploadService::translations() const
{
    return {
        {u"textGreeting"_s, tr("Wählen Sie Fotos von Ihrem Mobiltelefon")},
        {u"textProgress"_s, tr("Fotos werden übertragen")},
        {u"textSuccess"_s, tr("Die Fotos wurden erfolgreich übertragen")},
        {u"textNoConnect"_s, tr("Verbindung konnte nicht hergestellt werden.<br> Bitte scannen "
                                "Sie erneut den QR-Code.")},
        {u"textButton"_s, tr("Fotos auswählen")},
        {u"title"_s, tr("Norvo – Fotos übertragen")},
    };
}

QString VXLocalUploadService::validToken(const QHttpServerRequest& theRequest)
{
    QString query = theRequest.url().query(QUrl::FullyEncoded);
    if (query == myToken) {
        mySessions.insert(theRequest.remoteAddress(), query);
        generateToken();
        publishUrl();
        return query;
    }
    return sessionToken(theRequest, query);
}

QString VXLocalUploadService::sessionToken(const QHttpServerRequest& theRequest,
                                           const QString& theQuery) const
{
    return VXUploadAdmission::token(mySessions.values(theRequest.remoteAddress()), theQuery,
                                    theRequest.headers());
}

QString VXLocalUploadService::toString(const QHttpServerRequest& theRequest)
{
    const auto methods = QMetaEnum::fromType<QHttpServerRequest::Method>();
    const QString method =
        QString::fromLatin1(methods.valueToKey(static_cast<int>(theRequest.method()))).toUpper();
    return u"%1 request for %2"_s.arg(method, theRequest.url().toString());
}

QString VXLocalUploadService::boldify(const QString& theText)
{
    return u"<b>"_s + theText + u"</b>"_s;
}

void VXLocalUploadService::log(const QString& theText)
{
    qDebug().noquote() << theText;
    Q_EMIT doLog(theText);
}

void VXLocalUploadService::nextConnection()
{
    logAction(u"nextConnection"_s);
    findHostAddress();
    if (myAddresses.isEmpty()) {
        Q_EMIT urlChanged(QUrl(),
                          tr("Es konnte keine Schnittstelle für eingehende Netzwerkverbindungen "
                             "bereitgestellt werden.\nBitte überprüfen sie Ihre Firewall und "
                             "Netzwerkeinstellungen."),
                          0, 0);
        return;
    }
    const int next = selectedConnection() + 1;
    mySelectedAddress = myAddresses.at(next < myAddresses.size() ? next : 0);
    startListen();
}

void VXLocalUploadService::updateConnections()
{
    const qsizetype count = myAddresses.size();
    findHostAddress();
    if (!myAddresses.contains(mySelectedAddress))
        nextConnection();
    else if (myAddresses.size() != count)
        publishUrl();
}

void VXLocalUploadService::findHostAddress()
{
    QList<QHostAddress> addresses;
    QStringList wifiNames;
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        if (!isUsable(interface))
            continue;
        const std::optional<QNetworkAddressEntry> entry = firstIpv4Entry(interface);
        if (!entry)
            continue;

        const QString wifiName =
            VXPlatformIndependent::instance()->wifiNameForInterface(interface.name());
        if (wifiName.isEmpty()) {
            addresses.append(entry->ip());
        } else {
            addresses.prepend(entry->ip());
            wifiNames.append(wifiName);
        }
        logInterface(interface, *entry, wifiName);
    }

    myWifiName = wifiNames.join(u", "_s);
    if (addresses == myAddresses)
        return;
    myAddresses = addresses;
    log(u"HostInfo Addresses: "_s);
    // Never looked up on purpose: readers of the log know the heading without a list.
    const QHostInfo hostInfo;
    for (const QHostAddress& address : hostInfo.addresses())
        log(u"  "_s + address.toString());
}

void VXLocalUploadService::logInterface(const QNetworkInterface& theInterface,
                                        const QNetworkAddressEntry& theEntry,
                                        const QString& theWifiName)
{
    log(u"HW Address: "_s + theInterface.hardwareAddress());
    log(u"Interface Name: "_s + theInterface.name());
    log(u"IP Address: "_s + theEntry.ip().toString());
    log(u"Netmask: "_s + theEntry.netmask().toString());
    log(u"Name:"_s + theInterface.humanReadableName());
    log(u"SSID:"_s + theWifiName);
    log(u"\n"_s);
}

void VXLocalUploadService::generateToken()
{
    static const QString alphabet = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-."_s;
    static const QString pattern = u"%1%2%3%4%5"_s;

    // A bound of 64 bits: Qt draws again instead of multiplying, so every character is equally
    // likely.
    const auto draw = [] {
        const qint64 count = alphabet.size();
        return QString(alphabet.at(QRandomGenerator64::global()->bounded(count)));
    };
    const QString first = draw();
    const QString second = draw();
    const QString third = draw();
    const QString fourth = draw();
    const QString fifth = draw();
    myToken = pattern.arg(first, second, third, fourth, fifth);
}

void VXLocalUploadService::setupServer()
{
    myServer = new QHttpServer; // without parent: see the destructor

    // The server outlives us, so its handlers ask first.
    const QPointer<VXLocalUploadService> self(this);
    myServer->route(u"/upload"_s, [self](const QHttpServerRequest& theRequest) {
        return self ? self->answerUpload(theRequest) : forbidden();
    });
    myServer->route(u"/translations.json"_s, [self](const QHttpServerRequest& theRequest) {
        return self ? self->answerTranslations(theRequest) : forbidden();
    });
    // Takes the path from the request: an argument would make Qt append a second group.
    myServer->route(u"^/(.*)$"_s, [self](const QHttpServerRequest& theRequest) {
        return self ? self->answerAsset(theRequest) : notFound();
    });
}

bool VXLocalUploadService::startListen()
{
    // Qt takes a null address for "all interfaces", VPN included.
    if (mySelectedAddress.isNull())
        return true;

    // Qt asks proxies for servers too, and none of them can listen on a local address for us.
    auto* const listener = new QTcpServer(this); // the server takes it over below
    listener->setProxy(QNetworkProxy::NoProxy);
    listener->listen(mySelectedAddress, 0);
    myPort = listener->serverPort(); // 0 if it failed
    if (listener->isListening())
        myServer->bind(listener);
    else
        delete listener;

    publishUrl();
    const QString address = url().toString();
    log(u"Server responding to <a href=\"%1\">%1</a><br>"_s.arg(address));
    return true;
}

void VXLocalUploadService::publishUrl()
{
    Q_EMIT urlChanged(url(), myWifiName, selectedConnection(),
                      static_cast<int>(myAddresses.size()));
}

QHttpServerResponse VXLocalUploadService::answerUpload(const QHttpServerRequest& theRequest)
{
    log(toString(theRequest));
    if (validToken(theRequest).isEmpty()) {
        log(u"!!! 403: Forbidden"_s);
        return forbidden();
    }
    logHostNames(theRequest);

    const QByteArray photo = theRequest.body();
    makeTargetFolder();
    const QString fileName = theRequest.query().queryItemValue(u"file"_s, QUrl::FullyDecoded);
    const QString path =
        QDir(targetFolder()).absolutePath() + u'/' + VXUploadFileName::stored(fileName);
    save(path, photo);

    // The phone hears "OK" and the application its signal whether or not the photo was stored.
    Q_EMIT filesUploaded(QFileInfo(path));
    logAction(u"saveFile VALUE:"_s + path);
    return {"text/html", "OK"};
}

void VXLocalUploadService::makeTargetFolder()
{
    const QDir folder(targetFolder());
    if (folder.exists())
        return;
    folder.mkpath(u"."_s);
    logAction(u"setTargetFolder VALUE:"_s + targetFolder());
}

QHttpServerResponse VXLocalUploadService::answerTranslations(const QHttpServerRequest& theRequest)
{
    const bool isAdmitted = !validToken(theRequest).isEmpty();
    return {translations(), isAdmitted ? StatusCode::Ok : StatusCode::Forbidden};
}

QHttpServerResponse VXLocalUploadService::answerAsset(const QHttpServerRequest& theRequest)
{
    log(toString(theRequest));
    const QString path = theRequest.url().path(QUrl::FullyDecoded);
    const QString asset = path == u"/" ? u"index.html"_s : path.mid(1);
    const QString file = VXDirectoryConfig::instance()->qrUploadAsset(asset);
    if (file.isEmpty()) {
        log(u"!!! 404: Resource not found"_s);
        return notFound();
    }
    QHttpServerResponse answer = QHttpServerResponse::fromFile(file);
    // Without a token the cookie is cleared.
    answer.addHeader("Set-Cookie", "sid=" + validToken(theRequest).toLatin1());
    return answer;
}

void VXLocalUploadService::logHostNames(const QHttpServerRequest& theRequest)
{
    logHostName(theRequest.remoteAddress(), u"  remote host "_s);
    logHostName(localAddress(theRequest), u"  local host "_s);
}

void VXLocalUploadService::logHostName(const QHostAddress& theAddress, const QString& thePrefix)
{
    const QPointer<VXLocalUploadService> self(this);
    QHostInfo::lookupHost(theAddress.toString(), QCoreApplication::instance(),
                          [self, thePrefix](const QHostInfo& theInfo) {
                              if (self)
                                  self->log(thePrefix + theInfo.hostName());
                          });
}

QHostAddress VXLocalUploadService::localAddress(const QHttpServerRequest& theRequest) const
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    return theRequest.localAddress();
#else
    // The request does not know it. Its socket is one of those that our listeners accepted.
    QHostAddress address;
    for (const QTcpServer* const listener : myServer->servers()) {
        for (const QTcpSocket* const socket : listener->findChildren<QTcpSocket*>()) {
            if (socket->peerAddress() != theRequest.remoteAddress())
                continue;
            if (!address.isNull() && address != socket->localAddress())
                return mySelectedAddress; // one client on two of our addresses
            address = socket->localAddress();
        }
    }
    return address.isNull() ? mySelectedAddress : address;
#endif
}
