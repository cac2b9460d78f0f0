#include "VXLogCapture.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"
#include "VXWorker.h"

#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkTester.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtNetwork/QTcpServer>

using namespace Qt::StringLiterals;

class tst_VXNetworkTester : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void serverThatAnswersIsReachable_data();
    void serverThatAnswersIsReachable();
    void unreachableServerIsNot_data();
    void unreachableServerIsNot();
    void serverThatAnswersAnErrorIsNot();
    void silentServerIsNotAfterTheTime();

private:
    static QString deadServer();
};

QString tst_VXNetworkTester::deadServer()
{
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost))
        return {};
    return u"http://127.0.0.1:%1/"_s.arg(server.serverPort()); // nobody listens any more
}

void tst_VXNetworkTester::serverThatAnswersIsReachable_data()
{
    QTest::addColumn<VXWhere>("where");
    QTest::newRow("GUI thread") << VXWhere::ApplicationThread;
    QTest::newRow("worker") << VXWhere::Worker;
}

void tst_VXNetworkTester::serverThatAnswersIsReachable()
{
    QFETCH(VXWhere, where);
    VXRawPeer peer;
    const bool isReachable = vxRun(where, [&] {
        const bool result = VXNetworkTester::testServer(peer.url(u"/probe"_s).toString(), 10);
        if (where == VXWhere::Worker)
            VXNetworkAccessManager::releaseThreadInstance();
        return result;
    });
    QVERIFY(isReachable);
    QCOMPARE(peer.requests().size(), 1);
    QVERIFY(peer.requests().constFirst().head.startsWith("HEAD /probe HTTP/1.1\r\n"));
    QVERIFY(!VXNetworkTester::testConnection(peer.url(), 10).errorOccurred());
}

void tst_VXNetworkTester::unreachableServerIsNot_data()
{
    QTest::addColumn<QString>("server");
    QTest::addColumn<int>("code");
    QTest::newRow("nobody listens") << deadServer() << 3501;
    QTest::newRow("empty") << QString() << 3801;
    QTest::newRow("no scheme") << u"localhost"_s << 3801;
    QTest::newRow("unknown scheme") << u"foo://localhost/"_s << 3801;
}

void tst_VXNetworkTester::unreachableServerIsNot()
{
    QFETCH(QString, server);
    QFETCH(int, code);
    QVERIFY(!VXNetworkTester::testServer(server, 10));
    QCOMPARE(static_cast<int>(VXNetworkTester::testConnection(QUrl(server), 10).errorCode()), code);
}

void tst_VXNetworkTester::serverThatAnswersAnErrorIsNot()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(404));
    QVERIFY(!VXNetworkTester::testServer(peer.url().toString(), 10));
    QCOMPARE(static_cast<int>(VXNetworkTester::testConnection(peer.url(), 10).errorCode()), 3703);
}

void tst_VXNetworkTester::silentServerIsNotAfterTheTime()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall());
    const VXLogCapture log;
    QVERIFY(!VXNetworkTester::testServer(peer.url().toString(), 1));
    QCOMPARE(log.textsWith(u"aborted: TIMEOUT after 1"_s).size(), 1);
}

VX_TEST_MAIN(QCoreApplication, tst_VXNetworkTester)

#include "tst_VXNetworkTester.moc"
