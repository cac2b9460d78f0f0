#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>

class QHttpMultiPart;
class QNetworkReply;

/// The yardstick: what a program would write with Qt alone, an access manager and an event loop.
/// Use it in the thread that made it.
class VXRawClient
{
    Q_DISABLE_COPY_MOVE(VXRawClient)

public:
    VXRawClient() = default;

    QByteArray get(const QUrl& theUrl);
    QByteArray postForm(const QUrl& theUrl, const QByteArray& theForm);
    /// theMultiPart is deleted with the reply.
    QByteArray put(const QUrl& theUrl, QHttpMultiPart* theMultiPart);

    /// HTTP status of the last answer.
    [[nodiscard]] int status() const { return myStatus; }

private:
    QByteArray wait(QNetworkReply* theReply);

    QNetworkAccessManager myManager;
    int myStatus = 0;
};
