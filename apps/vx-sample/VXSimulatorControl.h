#pragma once

#include "VXRecordedRequest.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QList>
#include <QtNetwork/QNetworkAccessManager>

/// The simulator's control port: what it received, how it shall behave. Uses Qt's access manager
/// and not the library, which is the one being looked at. Main thread; the calls block.
class VXSimulatorControl
{
    Q_DISABLE_COPY_MOVE(VXSimulatorControl)

public:
    explicit VXSimulatorControl(quint16 thePort);

    /// The number of the last request so far; -1 when the simulator does not answer.
    int lastNumber();

    /// The requests with a greater number, oldest first.
    QList<VXRecordedRequest> requestsSince(int theNumber);

    /// PUTs a JSON object to "/behaviour", "/proxy", ... False when the simulator refuses it.
    bool put(const QString& thePath, const QJsonObject& theObject);

private:
    QJsonDocument finish(QNetworkReply* theReply, bool* theIsOk);
    [[nodiscard]] QNetworkRequest request(const QString& thePathAndQuery) const;

    quint16 myPort;
    QNetworkAccessManager myManager;
    int myLastNumber = 0;
};
