#include "VXSimulatorConnection.h"

#include "VXSimulatorFarewell.h"
#include "VXSimulatorListener.h"
#include "VXSimulatorPatience.h"

#include <QtNetwork/QHostAddress>
#include <QtNetwork/QSslSocket>
#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <chrono>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 readAtOnce = 1024 * 1024;
constexpr qint64 writeAhead = 256 * 1024;
constexpr auto paceInterval = 20ms;

} // namespace

VXSimulatorConnection::VXSimulatorConnection(QTcpSocket* theSocket,
                                             VXSimulatorListener* theListener)
    : QObject(theListener)
    , myListener(theListener)
    , mySocket(theSocket)
    , myPatience(new VXSimulatorPatience(theSocket, theListener->limits().idle))
    , myShare(theListener->budget())
{
    mySocket->setParent(this);
    mySocket->setReadBufferSize(readAtOnce);
    connect(mySocket, &QTcpSocket::readyRead, this, &VXSimulatorConnection::readMore);
    connect(mySocket, &QTcpSocket::bytesWritten, this, &VXSimulatorConnection::pump);
    if (auto* secure = qobject_cast<QSslSocket*>(mySocket)) // it reports the wire separately
        connect(secure, &QSslSocket::encryptedBytesWritten, this, &VXSimulatorConnection::pump);
    connect(mySocket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    myPace.setTimerType(Qt::PreciseTimer);
}

VXSimulatorConnection::~VXSimulatorConnection()
{
    mySocket->disconnect(this);
}

void VXSimulatorConnection::readMore()
{
    if (myIsBusy && myResponse.fault == VXSimulatorResponse::Fault::Never)
        mySocket->skip(mySocket->bytesAvailable()); // or its leaving would not be seen
    if (myIsBusy || myIsClosing)
        return; // what follows stays in the socket's bounded buffer
    myInput += mySocket->readAll();
    const auto state = myParser.feed(myInput);
    if (state == VXSimulatorRequestParser::State::Failed)
        return refuse(myParser.refusal());
    if (!myShare.resize(myParser.bodyBytes()))
        return refuse(503);
    if (myParser.expectsContinue() && !myHasContinued) {
        myHasContinued = true;
        mySocket->write("HTTP/1.1 100 Continue\r\n\r\n");
    }
    if (state == VXSimulatorRequestParser::State::Complete)
        answer();
}

void VXSimulatorConnection::answer()
{
    myIsBusy = true;
    myPatience->pause();
    VXSimulatorRequest request = myParser.take();
    request.listener = myListener->name();
    request.peer =
        mySocket->peerAddress().toString() + u':' + QString::number(mySocket->peerPort());
    myResponse = myListener->answer(request);
    if (myListener->isClosingAlways() || !request.keepsConnection())
        myResponse.isClosing = true;
    myGoal = request.method == "HEAD" || myResponse.isBodyless() ? 0 : myResponse.size();
    if (myResponse.fault != VXSimulatorResponse::Fault::None)
        myGoal = std::clamp<qint64>(myResponse.faultAfter, 0, myGoal);
    myShare.resize(0);
    if (myResponse.fault == VXSimulatorResponse::Fault::Never)
        return;
    if (myResponse.delayMs > 0)
        QTimer::singleShot(myResponse.delayMs, Qt::PreciseTimer, this,
                           &VXSimulatorConnection::begin);
    else
        begin();
}

void VXSimulatorConnection::refuse(int theStatus)
{
    myIsBusy = true;
    myParser = {}; // what came of the body is not wanted any more
    myShare.resize(0);
    myResponse = VXSimulatorResponse::error(theStatus, u"request refused"_s);
    myResponse.isClosing = true;
    myGoal = myResponse.size();
    myIsClosing = true;
    myIsRefusing = true;
    begin();
}

void VXSimulatorConnection::begin()
{
    mySent = 0;
    myIsWriting = true;
    myPatience->resume();
    if (myResponse.faultAfter >= 0)
        mySocket->write(myResponse.head());
    if (myResponse.bytesPerSecond > 0 && myGoal > 0) {
        myClock.start();
        connect(&myPace, &QTimer::timeout, this, &VXSimulatorConnection::pumpSlowly);
        myPace.start(paceInterval);
        return;
    }
    pump();
}

void VXSimulatorConnection::pump()
{
    if (!myIsWriting || myPace.isActive())
        return;
    while (mySent < myGoal && pendingBytes() < writeAhead)
        writePiece(writeAhead);
    if (mySent >= myGoal)
        finish();
}

void VXSimulatorConnection::pumpSlowly()
{
    // Computed in floating point: a rate and a long time may exceed 64 bits as a product.
    const double due =
        static_cast<double>(myResponse.bytesPerSecond) * double(myClock.elapsed()) / 1000.0;
    const qint64 allowed = due >= double(myGoal) ? myGoal : static_cast<qint64>(due);
    while (mySent < allowed && pendingBytes() < writeAhead)
        writePiece(std::min(writeAhead, allowed - mySent));
    if (mySent >= myGoal)
        finish();
}

void VXSimulatorConnection::writePiece(qint64 theCount)
{
    const QByteArray piece = myResponse.read(mySent, std::min(theCount, myGoal - mySent));
    mySent += piece.size();
    mySocket->write(piece);
}

void VXSimulatorConnection::finish()
{
    myIsWriting = false;
    myPace.stop();
    myPace.disconnect(this);
    if (myResponse.fault != VXSimulatorResponse::Fault::None)
        return finishFault();
    if (myResponse.whenSent)
        QTimer::singleShot(0, myListener, myResponse.whenSent);
    if (!myResponse.isClosing)
        return nextRequest();
    myIsClosing = true;
    if (myIsRefusing)
        new VXSimulatorFarewell(mySocket); // child of the socket
    else
        mySocket->disconnectFromHost();
}

void VXSimulatorConnection::finishFault()
{
    myIsClosing = true;
    if (myResponse.fault == VXSimulatorResponse::Fault::Truncate)
        return mySocket->disconnectFromHost();
    connect(&myPace, &QTimer::timeout, this, &VXSimulatorConnection::resetWhenDrained);
    myPace.start(1ms);
}

void VXSimulatorConnection::resetWhenDrained()
{
    // The kernel drops what it has not yet handed over when a socket with linger time 0 closes.
    const int descriptor = static_cast<int>(mySocket->socketDescriptor());
    int unsent = 0;
    if (pendingBytes() > 0 || (::ioctl(descriptor, SIOCOUTQ, &unsent) == 0 && unsent > 0))
        return;
    const ::linger hard{1, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    mySocket->abort();
}

void VXSimulatorConnection::nextRequest()
{
    myIsBusy = false;
    myHasContinued = false;
    myResponse = {};
    // Through the event loop: pipelined requests must not nest.
    QMetaObject::invokeMethod(this, &VXSimulatorConnection::readMore, Qt::QueuedConnection);
}

qint64 VXSimulatorConnection::pendingBytes() const
{
    const auto* secure = qobject_cast<const QSslSocket*>(mySocket);
    return mySocket->bytesToWrite() + (secure ? secure->encryptedBytesToWrite() : 0);
}
