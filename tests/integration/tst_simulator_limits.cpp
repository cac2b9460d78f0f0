#include "VXSimulatorProcess.h"
#include "VXSimulatorRecorder.h"
#include "VXSimulatorThread.h"
#include "VXSimulatorWire.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QSignalSpy>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

/// What clients of the simulator can use up, and that it is given back. Where the real limit is
/// large or long, a simulator inside this process has a smaller one.
class tst_simulator_limits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void limitsAreTheDocumentedOnes();
    void headsEndAt64KiB_data();
    void headsEndAt64KiB();
    void headsHave500LinesAtMost_data();
    void headsHave500LinesAtMost();
    void bodiesEndAt256MiB_data();
    void bodiesEndAt256MiB();
    void refusalReachesAClientThatIsStillSending_data();
    void refusalReachesAClientThatIsStillSending();
    void unfinishedBodiesShareABudget_data();
    void unfinishedBodiesShareABudget();
    void eachPortServes500Clients_data();
    void eachPortServes500Clients();
    void idleClientsAreCut_data();
    void idleClientsAreCut();
    void clientsThatDoNotReadAreCut();
    void idleOptionIsInSeconds();
    void clientsOfNeverAreNotCut();
    void recorderKeeps2000Requests();
    void recorderKeepsBodiesUpTo1MiB();
    void recorderKeeps64MiBOfBodies();
    void behavioursEndAt1000();

private:
    [[nodiscard]] VXSimulator::Setup setup() const;

    QTemporaryDir myFolder; // certificates, made once
};

namespace {

using Socket = std::unique_ptr<QTcpSocket>;

Socket open(int thePort, const QByteArray& theBytes = {})
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(thePort));
    socket->write(theBytes); // goes out as soon as it is connected
    return socket;
}

bool isCut(const Socket& theSocket)
{
    return theSocket->state() == QAbstractSocket::UnconnectedState;
}

QByteArray put(const QByteArray& theTarget, const QByteArray& theHeader, qint64 theLength)
{
    return "PUT " + theTarget + " HTTP/1.1\r\n" + theHeader +
           "Content-Length: " + QByteArray::number(theLength) + "\r\n\r\n";
}

VXSimulatorRequest request(const QByteArray& theBody)
{
    VXSimulatorRequest request;
    request.method = "POST";
    request.body = theBody;
    return request;
}

constexpr int mebibyte = 1024 * 1024;

} // namespace

VXSimulator::Setup tst_simulator_limits::setup() const
{
    VXSimulator::Setup setup;
    setup.certificates = myFolder.path();
    return setup;
}

void tst_simulator_limits::limitsAreTheDocumentedOnes()
{
    const VXSimulatorLimits limits;
    QCOMPARE(limits.idle, std::chrono::seconds(300));
    QCOMPARE(limits.unfinishedBodies, 1'073'741'824);
    QCOMPARE(limits.clients, 500);
}

void tst_simulator_limits::headsEndAt64KiB_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    const QByteArray end = "\r\nConnection: close\r\n\r\n";
    QTest::newRow("target") << QByteArray("GET /echo?") << " HTTP/1.1" + end;
    QTest::newRow("header") << QByteArray("GET /echo HTTP/1.1\r\nX: ") << end;
}

void tst_simulator_limits::headsEndAt64KiB()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const VXSimulatorThread simulator(setup());
    const auto head = [&](qsizetype theSize) {
        return before + QByteArray(theSize - before.size() - after.size(), 'x') + after;
    };
    for (const QString& name : {u"http"_s, u"control"_s}) {
        const int port = simulator.port(name);
        const QByteArray admitted = name == u"http"_s ? "HTTP/1.1 200 " : "HTTP/1.1 404 ";
        QVERIFY(VXSimulatorWire::exchange(port, head(65'536)).startsWith(admitted));
        QVERIFY(VXSimulatorWire::exchange(port, head(65'537))
                    .startsWith("HTTP/1.1 431 Request Header Fields Too Large\r\n"));
        // Nor is a line read without end.
        QVERIFY(
            VXSimulatorWire::exchange(port, QByteArray(65'537, 'x')).startsWith("HTTP/1.1 431 "));
    }
}

void tst_simulator_limits::headsHave500LinesAtMost_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<QByteArray>("answer");

    QTest::newRow("500") << 500 << QByteArray("HTTP/1.1 200 OK\r\n");
    QTest::newRow("501") << 501 << QByteArray("HTTP/1.1 431 Request Header Fields Too Large\r\n");
}

void tst_simulator_limits::headsHave500LinesAtMost()
{
    QFETCH(int, lines);
    QFETCH(QByteArray, answer);
    const VXSimulatorThread simulator(setup());
    const QByteArray bytes = "GET /json/good HTTP/1.1\r\nConnection: close\r\n" +
                             QByteArray("A: b\r\n").repeated(lines - 1) + "\r\n";
    const QByteArray received = VXSimulatorWire::exchange(simulator.port(u"http"_s), bytes);
    QVERIFY2(received.startsWith(answer), received.constData());
}

void tst_simulator_limits::bodiesEndAt256MiB_data()
{
    QTest::addColumn<QByteArray>("framing");
    QTest::addColumn<QByteArray>("answer");

    const QByteArray chunked = "Transfer-Encoding: chunked\r\n\r\n";
    const QByteArray admitted = "HTTP/1.1 100 Continue\r\n";
    const QByteArray refused = "HTTP/1.1 413 Content Too Large\r\n";
    QTest::newRow("length") << QByteArray("Content-Length: 268435456\r\n\r\n") << admitted;
    QTest::newRow("one byte more") << QByteArray("Content-Length: 268435457\r\n\r\n") << refused;
    QTest::newRow("chunk") << chunked + "10000001\r\n" << refused;
    QTest::newRow("chunks together") << chunked + "1\r\nx\r\n10000000\r\n" << refused;
}

void tst_simulator_limits::bodiesEndAt256MiB()
{
    QFETCH(QByteArray, framing);
    QFETCH(QByteArray, answer);
    const VXSimulatorThread simulator(setup());
    const QByteArray end = "HTTP/1.1\r\nExpect: 100-continue\r\n" + framing;
    const Socket direct = open(simulator.port(u"http"_s), "PUT /echo " + end);
    const Socket proxied = open(simulator.port(u"proxy"_s), "PUT http://service.test/echo " + end);
    for (const Socket& socket : {std::cref(direct), std::cref(proxied)}) {
        QByteArray received;
        QTRY_VERIFY((received += socket->readAll()).contains(answer));
    }
}

void tst_simulator_limits::refusalReachesAClientThatIsStillSending_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("target");

    QTest::newRow("http") << u"http"_s << QByteArray("/echo");
    QTest::newRow("proxy") << u"proxy"_s << QByteArray("http://service.test/echo");
}

void tst_simulator_limits::refusalReachesAClientThatIsStillSending()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, target);
    const VXSimulatorThread simulator(setup());
    const Socket socket =
        open(simulator.port(name), put(target, "", 268'435'457) + QByteArray(16 * mebibyte, 'x'));
    const QSignalSpy errorSpy(socket.get(), &QTcpSocket::errorOccurred);
    QTRY_VERIFY(isCut(socket));
    QVERIFY(socket->readAll().startsWith("HTTP/1.1 413 "));
    QCOMPARE(errorSpy.count(), 1);
    QCOMPARE(errorSpy.at(0).at(0).value<QAbstractSocket::SocketError>(),
             QAbstractSocket::RemoteHostClosedError); // an end in order, no reset
}

void tst_simulator_limits::unfinishedBodiesShareABudget_data()
{
    QTest::addColumn<QString>("name");

    for (const char* name : {"http", "control", "proxy"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_simulator_limits::unfinishedBodiesShareABudget()
{
    QFETCH(QString, name);
    VXSimulator::Setup small = setup();
    small.limits.unfinishedBodies = 5 * mebibyte;
    const VXSimulatorThread simulator(small);
    const auto head = [](qint64 theSize) {
        return put("http://service.test/echo", "Connection: close\r\n", theSize);
    };

    // Both do not fit. Which one came too late is not ours to say; it leaves its part at once.
    std::vector<Socket> sockets;
    sockets.push_back(
        open(simulator.port(name), head(2 * mebibyte) + QByteArray(2 * mebibyte - 1, 'x')));
    sockets.push_back(
        open(simulator.port(u"http"_s), head(4 * mebibyte) + QByteArray(4 * mebibyte - 1, 'x')));
    QTRY_VERIFY(isCut(sockets[0]) || isCut(sockets[1]));
    const std::size_t refused = isCut(sockets[0]) ? 0 : 1;
    QVERIFY(sockets[refused]->readAll().startsWith("HTTP/1.1 503 Service Unavailable\r\n"));

    // The other one goes on, and afterwards all is free again. A forwarded body counts twice.
    const Socket& other = sockets[1 - refused];
    QVERIFY(!isCut(other));
    other->write("x");
    QTRY_VERIFY(isCut(other));
    QVERIFY(!other->readAll().startsWith("HTTP/1.1 503 "));
    const QByteArray whole = head(5 * mebibyte) + QByteArray(5 * mebibyte, 'x');
    QTRY_VERIFY(
        VXSimulatorWire::exchange(simulator.port(u"http"_s), whole).startsWith("HTTP/1.1 200 "));
}

void tst_simulator_limits::eachPortServes500Clients_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("hello");

    QTest::newRow("http") << u"http"_s << QByteArray("GET /json/good HTTP/1.1\r\n\r\n");
    QTest::newRow("control") << u"control"_s << QByteArray("GET /handshakes HTTP/1.1\r\n\r\n");
    QTest::newRow("proxy") << u"proxy"_s << QByteArray("CONNECT service.test:80 HTTP/1.1\r\n\r\n");
    QTest::newRow("socks") << u"socks"_s << QByteArray("\5\1\0", 3);
}

void tst_simulator_limits::eachPortServes500Clients()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, hello);
    const VXSimulatorProcess simulator;
    QCOMPARE(simulator.errorText(), QString());
    const int port = simulator.port(name);

    std::vector<Socket> sockets;
    for (int count = 0; count < 500; ++count) {
        sockets.push_back(open(port));
        QVERIFY(sockets.back()->waitForConnected());
    }
    sockets.back()->write(hello);
    QVERIFY(sockets.back()->waitForReadyRead()); // so the ones before are served, too

    const Socket late = open(port, hello);
    QTRY_VERIFY(isCut(late));
    QVERIFY(late->readAll().isEmpty());

    sockets.front()->abort();
    Socket next;
    const auto isServed = [&] {
        if (!next || isCut(next)) // it came before the other one was gone
            next = open(port, hello);
        return next->bytesAvailable() > 0;
    };
    QTRY_VERIFY(isServed());
}

void tst_simulator_limits::idleClientsAreCut_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");

    const QByteArray half = "GET /echo HTTP/1.1\r\n";
    for (const QString& name : {u"http"_s, u"control"_s, u"proxy"_s}) {
        QTest::addRow("%s, silent", qPrintable(name)) << name << QByteArray();
        QTest::addRow("%s, half a request", qPrintable(name)) << name << half;
    }
    QTest::newRow("http, between two requests") << u"http"_s << half + "\r\n";
    QTest::newRow("tls, silent") << u"trusted"_s << QByteArray();
    QTest::newRow("proxy, tunnel")
        << u"proxy"_s << QByteArray("CONNECT service.test:80 HTTP/1.1\r\n\r\n");
    QTest::newRow("socks, silent") << u"socks"_s << QByteArray();
    QTest::newRow("socks, half a greeting") << u"socks"_s << QByteArray("\5\1");
    QTest::newRow("socks, tunnel")
        << u"socks"_s << QByteArray("\5\1\0\5\1\0\3\x0cservice.test\0\x50", 22);
}

void tst_simulator_limits::idleClientsAreCut()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    VXSimulator::Setup impatient = setup();
    impatient.limits.idle = std::chrono::milliseconds(200);
    const VXSimulatorThread simulator(impatient);
    const Socket socket = open(simulator.port(name), bytes);
    QVERIFY(socket->waitForConnected());
    QTRY_VERIFY(isCut(socket));
}

void tst_simulator_limits::clientsThatDoNotReadAreCut()
{
    VXSimulator::Setup impatient = setup();
    impatient.limits.idle = std::chrono::milliseconds(200);
    const VXSimulatorThread simulator(impatient);
    const Socket socket = open(simulator.port(u"http"_s));
    socket->setReadBufferSize(1);
    socket->write("GET /bytes/8589934592 HTTP/1.1\r\n\r\n");
    QTRY_COMPARE(socket->bytesAvailable(), 1);
    const Socket later = open(simulator.port(u"http"_s));
    QVERIFY(later->waitForConnected());
    QTRY_VERIFY(isCut(later));

    // What the kernels had taken still arrives, but no more.
    socket->setReadBufferSize(0);
    qint64 received = 0;
    QTRY_VERIFY((received += socket->readAll().size(), isCut(socket)));
    QVERIFY(received < 100 * mebibyte);
}

void tst_simulator_limits::idleOptionIsInSeconds()
{
    QProcess process;
    process.start(QStringLiteral(VX_BINARY_DIR "/bin/vx-simulator"),
                  {u"--idle"_s, u"0.2"_s, u"--certs"_s, myFolder.path()});
    QTRY_VERIFY_WITH_TIMEOUT(process.canReadLine(), 30'000);
    const QJsonObject ready = QJsonDocument::fromJson(process.readLine()).object();
    const Socket socket = open(ready.value(u"socks"_s).toInt());
    QVERIFY(socket->waitForConnected());
    QTRY_VERIFY(isCut(socket));
    process.terminate();
    QVERIFY(process.waitForFinished());
}

void tst_simulator_limits::clientsOfNeverAreNotCut()
{
    VXSimulator::Setup impatient = setup();
    impatient.limits.idle = std::chrono::milliseconds(200);
    const VXSimulatorThread simulator(impatient);
    const int port = simulator.port(u"http"_s);
    const Socket waiting = open(port, "GET /never HTTP/1.1\r\n\r\n");
    const Socket slow = open(port, "GET /slow?ms=700 HTTP/1.1\r\n\r\n");
    QTRY_VERIFY(slow->bytesAvailable() > 0); // later than a cut would have come
    QVERIFY(slow->readAll().startsWith("HTTP/1.1 200 "));
    QTRY_VERIFY(isCut(slow));
    QVERIFY(!isCut(waiting));
}

void tst_simulator_limits::recorderKeeps2000Requests()
{
    VXSimulatorRecorder recorder;
    for (int count = 0; count < 2001; ++count)
        recorder.add(request("x"));
    const QJsonArray kept = recorder.since(0);
    QCOMPARE(kept.size(), 2000);
    QCOMPARE(kept.first().toObject().value(u"number"_s).toInt(), 2);
    QCOMPARE(kept.last().toObject().value(u"number"_s).toInt(), 2001);
    recorder.clear();
    QCOMPARE(recorder.since(0).size(), 0);
    QCOMPARE(recorder.add(request("x")), 2002);
}

void tst_simulator_limits::recorderKeepsBodiesUpTo1MiB()
{
    VXSimulatorRecorder recorder;
    recorder.add(request(QByteArray(1'048'576, 'x')));
    recorder.add(request(QByteArray(1'048'577, 'x')));
    const QJsonArray kept = recorder.since(0);
    QCOMPARE(kept.at(0).toObject().value(u"text"_s).toString().size(), 1'048'576);
    const QJsonObject large = kept.at(1).toObject();
    QVERIFY(!large.contains(u"body"_s));
    QVERIFY(!large.contains(u"text"_s));
    QCOMPARE(large.value(u"bodySize"_s).toInt(), 1'048'577);
    QCOMPARE(large.value(u"bodySha256"_s).toString().size(), 64);
}

void tst_simulator_limits::recorderKeeps64MiBOfBodies()
{
    VXSimulatorRecorder recorder;
    for (int count = 0; count < 66; ++count)
        recorder.add(request(QByteArray(mebibyte, 'x')));
    const QJsonArray kept = recorder.since(0);
    QCOMPARE(kept.size(), 66);
    for (qsizetype index = 0; index < kept.size(); ++index)
        QCOMPARE(kept.at(index).toObject().contains(u"body"_s), index >= 2);
}

void tst_simulator_limits::behavioursEndAt1000()
{
    VXSimulatorState state;
    const QJsonObject behaviour{{u"path"_s, u"/x"_s}};
    for (int count = 0; count < 1000; ++count)
        QCOMPARE(state.addBehaviour(behaviour), QString());
    QCOMPARE(state.addBehaviour(behaviour), u"behaviour: there are too many already"_s);
    state.clearBehaviours();
    QCOMPARE(state.addBehaviour(behaviour), QString());
}

VX_TEST_MAIN(QCoreApplication, tst_simulator_limits)

#include "tst_simulator_limits.moc"
