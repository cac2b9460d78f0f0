#include "VXLogCapture.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"
#include "VXTlsPeer.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QSslSocket>
#include <QtNetwork/QTcpSocket>

#include <thread>

#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// The shared peers do what the other tests rely on.
class tst_VXRawPeer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestIsRecordedAndAnswered();
    void answersAreGivenInTurn();
    void resetReachesTheClientAsReset();
    void stalledConnectionEndsWithThePeer();
    void tlsPeerShowsItsCertificate();
    void certificatesHaveTheirDates();
    void blacklistedCertificateIsOne();
    void captureCollectsFromEveryThread();

private:
    static QByteArray talk(const VXRawPeer& thePeer, const QByteArray& theRequest);
};

QByteArray tst_VXRawPeer::talk(const VXRawPeer& thePeer, const QByteArray& theRequest)
{
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, thePeer.port());
    if (!socket.waitForConnected())
        return {};
    socket.write(theRequest);
    while (socket.waitForReadyRead(5000)) {
        if (socket.peek(1 << 20).endsWith("\r\n\r\n"))
            break;
    }
    return socket.readAll();
}

void tst_VXRawPeer::requestIsRecordedAndAnswered()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(204));
    const QByteArray bytes = "POST /a?b=c HTTP/1.1\r\nHost: x\r\nContent-Length: 3\r\n\r\nabc";

    QCOMPARE(talk(peer, bytes), "HTTP/1.1 204 Status\r\n\r\n"_ba);
    QCOMPARE(peer.connections(), QList{bytes});
    const VXRawRequest request = peer.requests().value(0);
    QCOMPARE(request.method(), "POST"_ba);
    QCOMPARE(request.target(), "/a?b=c"_ba);
    QCOMPARE(request.headerNames(), (QList{"Host"_ba, "Content-Length"_ba}));
    QCOMPARE(request.header("host"), "x"_ba);
    QCOMPARE(request.body, "abc"_ba);
}

void tst_VXRawPeer::answersAreGivenInTurn()
{
    VXRawPeer peer;
    peer.setAnswers({VXRawAnswer::http(201), VXRawAnswer::http(202)});
    for (const char* status : {"201", "202", "202"})
        QCOMPARE(talk(peer, "GET / HTTP/1.1\r\n\r\n").mid(9, 3), QByteArray(status));
}

void tst_VXRawPeer::resetReachesTheClientAsReset()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().reset());
    // Qt's socket tells no reset from an orderly end, so the system's own call asks.
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, peer.port());
    QVERIFY(socket.waitForConnected());
    const int descriptor = ::dup(static_cast<int>(socket.socketDescriptor()));
    socket.write("GET / HTTP/1.1\r\n\r\n");
    QVERIFY(socket.waitForBytesWritten());
    pollfd wait{descriptor, POLLIN, 0};
    QCOMPARE(::poll(&wait, 1, 5000), 1);
    QVERIFY(wait.revents & POLLERR);
    ::close(descriptor);
}

void tst_VXRawPeer::stalledConnectionEndsWithThePeer()
{
    QTcpSocket socket;
    {
        VXRawPeer peer;
        peer.setAnswer(VXRawAnswer().stall());
        socket.connectToHost(u"127.0.0.1"_s, peer.port());
        QVERIFY(socket.waitForConnected());
        socket.write("GET / HTTP/1.1\r\n\r\n");
        QVERIFY(socket.waitForBytesWritten());
        QVERIFY(peer.waitForRequests(1));
    }
    QVERIFY(socket.waitForDisconnected(5000));
    QCOMPARE(socket.bytesAvailable(), 0);
}

void tst_VXRawPeer::tlsPeerShowsItsCertificate()
{
    VXTestCertificates certificates;
    const VXTestCertificates::Identity leaf = certificates.leaf();
    VXTlsPeer peer(leaf);

    QSslSocket socket;
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({certificates.authority().certificate});
    socket.setSslConfiguration(configuration);
    socket.connectToHostEncrypted(u"127.0.0.1"_s, peer.port());
    QVERIFY2(socket.waitForEncrypted(), qPrintable(socket.errorString()));
    QCOMPARE(socket.peerCertificate(), leaf.certificate);
    socket.write("GET / HTTP/1.1\r\n\r\n");
    QVERIFY(socket.waitForReadyRead());
    QCOMPARE(socket.readAll(), "HTTP/1.1 200 Status\r\nContent-Length: 0\r\n\r\n"_ba);
}

void tst_VXRawPeer::certificatesHaveTheirDates()
{
    VXTestCertificates certificates;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QVERIFY(certificates.expired().certificate.expiryDate() < now);
    QVERIFY(certificates.notYetValid().certificate.effectiveDate() > now);
    const QSslCertificate leaf = certificates.leaf().certificate;
    QVERIFY(leaf.effectiveDate() < now && leaf.expiryDate() > now);
    QVERIFY(!leaf.isSelfSigned());
    QCOMPARE(leaf.subjectInfo(QSslCertificate::CommonName), QStringList{u"localhost"_s});
    QVERIFY(certificates.selfSigned().certificate.isSelfSigned());
}

void tst_VXRawPeer::blacklistedCertificateIsOne()
{
    VXTestCertificates certificates;
    QVERIFY(certificates.blacklisted().certificate.isBlacklisted());
    QVERIFY(!certificates.leaf().certificate.isBlacklisted());
}

void tst_VXRawPeer::captureCollectsFromEveryThread()
{
    VXLogCapture outer;
    {
        VXLogCapture inner;
        std::thread([] { qInfo("from a thread"); }).join();
        QCOMPARE(inner.texts(QtInfoMsg), QStringList{u"from a thread"_s});
        QCOMPARE(inner.texts(QtWarningMsg), QStringList());
    }
    QCOMPARE(outer.texts(), QStringList());
    qWarning("afterwards");
    QCOMPARE(outer.textsWith(u"after"_s), QStringList{u"afterwards"_s});
}

VX_TEST_MAIN(QCoreApplication, tst_VXRawPeer)

#include "tst_VXRawPeer.moc"
