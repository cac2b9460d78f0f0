#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QMultiHash>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtNetwork/QHostAddress>

class QHttpServer;
class QHttpServerRequest;
class QHttpServerResponse;
class QJsonObject;
class QNetworkAddressEntry;
class QNetworkInterface;

/// Receives photos from phones on the local network and writes them into a folder.
///
/// A small HTTP server listens on one local IPv4 address, on a port that the system picks. Its
/// address "http://<address>:<port>/?<token>" is published by urlChanged(), usually as a QR code.
/// The token admits one first visit; the visitor is then known by its address and a cookie, and a
/// new token is published. An admitted phone sends each photo as the raw body of a request to
/// "/upload?file=<name>"; IMG_0042.JPG is stored as IMG_0042.qrul.JPG.
///
/// Everything happens on the thread that made the object, which needs an event loop. A photo lies
/// in memory as a whole until it is written; there is no limit of its size. The traffic is plain
/// HTTP: whoever listens on the network can read it, so the debug log, which holds the tokens, is
/// confidential while the service runs.
class VXNETWORKING_EXPORT VXLocalUploadService : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXLocalUploadService)

public:
    /// Makes the first token and the server. Nothing listens before start().
    explicit VXLocalUploadService(QObject* theParent);

    /// Leaves the server alone: its ports stay open until the process ends, and from now on
    /// nobody is admitted.
    ~VXLocalUploadService() override;

    /// Listens on the first candidate address. Always true; without a usable interface nothing
    /// listens and urlChanged() carries the reason.
    bool start();

    /// Position of the address in use among the candidates, -1 while there is none.
    [[nodiscard]] int selectedConnection() const;

    /// The address for the phone's browser, with the token of this moment. Without an interface
    /// it names no host; after a failed listen its port is 0.
    [[nodiscard]] QUrl url() const;

    /// The token that admits the next first visit: 5 characters of A-Z, 0-9, "+", "-" and ".".
    [[nodiscard]] QString nextToken() const { return myToken; }

    /// The folder for received photos, which may not exist yet. The first call settles the
    /// default, "Kopierte Fotos <ISO date>" in the user's pictures folder, and announces it.
    QString targetFolder();

    /// Sets the folder for received photos; announced always, even when it is the same. It is
    /// made, with its parents, when the next photo arrives.
    void setTargetFolder(const QString& theFolder);

    /// The texts of the phone's page by their keys, translated.
    [[nodiscard]] QJsonObject translations() const;

    /// The token under which theRequest is admitted, empty if it is not. A request whose whole
    /// query is the current token redeems it: the token becomes one of the client's, and a new
    /// one is published.
    QString validToken(const QHttpServerRequest& theRequest);

    /// "<METHOD> request for <URL>".
    [[nodiscard]] static QString toString(const QHttpServerRequest& theRequest);

    /// theText between "<b>" and "</b>", otherwise as it is.
    [[nodiscard]] static QString boldify(const QString& theText);

    // Signals and slots name their arguments for whoever reads the meta-object.
    // NOLINTBEGIN(readability-identifier-naming)

    /// Writes text to the debug log and emits doLog().
    void log(const QString& text);

Q_SIGNALS:
    /// A photo was received. Emitted before the phone gets its answer and also when the photo
    /// could not be stored, so check that the file exists and how large it is.
    void filesUploaded(const QFileInfo& fileInfo);

    /// setTargetFolder() was called.
    void targetFolderChanged(const QString&);

    /// A line of the log, possibly with HTML markup.
    void doLog(const QString&);

    /// Another address is published. wifiName holds the wireless networks of this computer,
    /// joined with ", ", empty if none; index and count tell which of the candidate addresses is
    /// in use. With an empty url there is no usable interface, and wifiName is a text for the user.
    void urlChanged(const QUrl& url, const QString& wifiName, int index, int count);

    // NOLINTEND(readability-identifier-naming)

public Q_SLOTS:
    /// Moves on to the next candidate address, after the last to the first, and listens there.
    /// What listened before keeps listening.
    void nextConnection();

    /// Reads the interfaces again; keeps the address in use while it exists, else moves on.
    void updateConnections();

private:
    void findHostAddress();
    void generateToken();
    void setupServer();
    bool startListen();

    void publishUrl();
    void logInterface(const QNetworkInterface& theInterface, const QNetworkAddressEntry& theEntry,
                      const QString& theWifiName);
    [[nodiscard]] QString sessionToken(const QHttpServerRequest& theRequest,
                                       const QString& theQuery) const;
    QHttpServerResponse answerUpload(const QHttpServerRequest& theRequest);
    QHttpServerResponse answerTranslations(const QHttpServerRequest& theRequest);
    QHttpServerResponse answerAsset(const QHttpServerRequest& theRequest);
    void logHostNames(const QHttpServerRequest& theRequest);
    void logHostName(const QHostAddress& theAddress, const QString& thePrefix);
    [[nodiscard]] QHostAddress localAddress(const QHttpServerRequest& theRequest) const;
    void makeTargetFolder();

    QList<QHostAddress> myAddresses; // candidates, those on wireless networks first
    QHostAddress mySelectedAddress;  // null until the first connection is chosen
    QString myWifiName;
    quint16 myPort = 0;
    QString myTargetFolder;
    QString myToken;
    QMultiHash<QHostAddress, QString> mySessions; // tokens that each client has redeemed
    QHttpServer* myServer = nullptr;              // outlives us, see the destructor
};
