#include "VXFileContent.h"
#include "VXSampleRun.h"
#include "VXSimulatorProcess.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSemaphore>
#include <QtGui/QImage>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <atomic>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

QStringList tour(const QString& theFolder, const QStringList& theOptions = {},
                 const QStringList& theArguments = {})
{
    return QStringList{u"--offscreen"_s} + theOptions + QStringList{u"tour"_s, theFolder} +
           theArguments;
}

/// Stands before the simulator's control port and alters what it tells, byte for byte.
class FalsifyingControl
{
    Q_DISABLE_COPY_MOVE(FalsifyingControl)

public:
    /// `theFalse` must be as long as `theTrue`.
    FalsifyingControl(quint16 theRealPort, const QByteArray& theTrue, const QByteArray& theFalse)
        : myThread(
              [this, theRealPort, theTrue, theFalse] { serve(theRealPort, theTrue, theFalse); })
    {
        myIsListening.acquire();
    }
    ~FalsifyingControl()
    {
        myIsEnding = true;
        myThread.join();
    }

    [[nodiscard]] int port() const { return myPort; }

private:
    void serve(quint16 theRealPort, const QByteArray& theTrue, const QByteArray& theFalse)
    {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        myPort = server.serverPort();
        myIsListening.release();
        while (!myIsEnding) {
            if (!server.waitForNewConnection(20))
                continue;
            const std::unique_ptr<QTcpSocket> client(server.nextPendingConnection());
            QTcpSocket real;
            real.connectToHost(QHostAddress::LocalHost, theRealPort);
            real.waitForConnected();
            while (!myIsEnding && client->state() == QTcpSocket::ConnectedState) {
                client->waitForReadyRead(5);
                real.write(client->readAll());
                real.waitForReadyRead(5);
                client->write(real.readAll().replace(theTrue, theFalse));
                client->flush();
            }
        }
    }

    std::atomic<int> myPort = 0;
    std::atomic<bool> myIsEnding = false;
    QSemaphore myIsListening;
    std::thread myThread; // last: it uses the others
};

} // namespace

class tst_tour : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRowIsWhatTheSimulatorRecorded();
    void tourStartsItsOwnSimulator();
    void falsifiedAnswerEndsTourWithStatus5_data();
    void falsifiedAnswerEndsTourWithStatus5();
    void otherRecordEndsTourWithStatus5_data();
    void otherRecordEndsTourWithStatus5();
    void nothingSecretIsWritten();
    void unknownGroupIsWrongUsage();
    void folderThatCannotBeMadeIsWrongUsage();
};

void tst_tour::everyRowIsWhatTheSimulatorRecorded()
{
    const VXSimulatorProcess simulator;
    QVERIFY2(simulator.errorText().isEmpty(), qPrintable(simulator.errorText()));
    const QTemporaryDir folder;
    const VXSampleRun run(tour(folder.path(), {u"--simulator"_s, simulator.readyFile()}));

    QVERIFY2(run.exitCode() == 0, qPrintable(run.standardError()));
    QVERIFY(run.isJson());
    QCOMPARE(run.result(), (QJsonObject{{u"steps"_s, 85}, {u"failed"_s, 0}}));
    QCOMPARE(run.events(u"step"_s).size(), 85);

    const QJsonObject tourJson =
        QJsonDocument::fromJson(VXFileContent::of(folder.filePath(u"tour.json"_s))).object();
    QCOMPARE(tourJson.value(u"steps"_s).toInt(), 85);
    QCOMPARE(tourJson.value(u"rows"_s).toArray().size(), 85);
    QVERIFY(VXFileContent::of(folder.filePath(u"tour.log"_s)).contains("TOV NETREQUEST OFFBYMS:"));
    QVERIFY(VXFileContent::of(folder.filePath(u"index.html"_s))
                .contains("Der Gutscheincode ist nicht g\xC3\xBCltig."));
    const QImage picture(folder.filePath(u"01-tour.png"_s));
    QVERIFY(picture.width() > 1000);
    QVERIFY(picture.height() > 1000);
    QVERIFY(run.standardError().contains(u"Der Gutscheincode ist nicht gültig."_s));
}

void tst_tour::tourStartsItsOwnSimulator()
{
    const QTemporaryDir folder;
    const VXSampleRun run(tour(folder.path(), {}, {u"--only"_s, u"order,tls"_s}));
    QVERIFY2(run.exitCode() == 0, qPrintable(run.standardError()));
    QCOMPARE(run.result(), (QJsonObject{{u"steps"_s, 10}, {u"failed"_s, 0}}));
}

void tst_tour::falsifiedAnswerEndsTourWithStatus5_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QJsonObject>("behaviour");

    const QString order = u"<answer server_timestamp=\"2026\"><head><errorcode>0</errorcode></head>"
                          "<content><name>other</name></content></answer>"_s;
    QTest::newRow("other content of an order")
        << u"order"_s
        << QJsonObject{
               {u"path"_s, u"/xtci/cart"_s}, {u"body"_s, order}, {u"type"_s, u"text/xml"_s}};
    QTest::newRow("other JSON") << u"json"_s
                                << QJsonObject{{u"path"_s, u"/json/good"_s},
                                               {u"body"_s, u"{\"message\":\"Gruesse\"}"_s},
                                               {u"type"_s, u"application/json"_s}};
    QTest::newRow("other echo") << u"methods"_s
                                << QJsonObject{{u"path"_s, u"/echo"_s},
                                               {u"method"_s, u"POST"_s},
                                               {u"body"_s, u"{\"method\":\"GET\"}"_s}};
    QTest::newRow("other status") << u"methods"_s
                                  << QJsonObject{{u"path"_s, u"/echo"_s},
                                                 {u"method"_s, u"DELETE"_s},
                                                 {u"status"_s, 201}};
    QTest::newRow("other bytes") << u"transfer"_s
                                 << QJsonObject{{u"path"_s, u"/bytes/*"_s}, {u"body"_s, u"x"_s}};
    QTest::newRow("other parts") << u"transfer"_s
                                 << QJsonObject{{u"path"_s, u"/multipart"_s},
                                                {u"body"_s, u"{\"parts\":[]}"_s}};
    QTest::newRow("answer where there was none")
        << u"faults"_s << QJsonObject{{u"path"_s, u"/never"_s}, {u"status"_s, 200}};
    QTest::newRow("server that is gone")
        << u"probe"_s << QJsonObject{{u"path"_s, u"/echo"_s}, {u"status"_s, 503}};
    QTest::newRow("other answer behind the proxy")
        << u"proxy"_s
        << QJsonObject{{u"path"_s, u"/echo"_s}, {u"body"_s, u"{}"_s}, {u"times"_s, 9}};
}

void tst_tour::falsifiedAnswerEndsTourWithStatus5()
{
    QFETCH(QString, group);
    QFETCH(QJsonObject, behaviour);

    const VXSimulatorProcess simulator({{u"behaviours"_s, QJsonArray{behaviour}}});
    QVERIFY2(simulator.errorText().isEmpty(), qPrintable(simulator.errorText()));
    const QTemporaryDir folder;
    const VXSampleRun run(
        tour(folder.path(), {u"--simulator"_s, simulator.readyFile()}, {u"--only"_s, group}));
    QCOMPARE(run.exitCode(), 5);
    QVERIFY(run.result().value(u"failed"_s).toInt() > 0);
    QVERIFY(run.standardError().contains(u"  NO"_s));
    QVERIFY(VXFileContent::of(folder.filePath(u"index.html"_s)).contains("class=\"bad\""));
}

void tst_tour::otherRecordEndsTourWithStatus5_data()
{
    QTest::addColumn<QByteArray>("truth");
    QTest::addColumn<QByteArray>("lie");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("nothing altered") << QByteArray("nowhere") << QByteArray("nowhere") << 0;
    QTest::newRow("header") << QByteArray("disable-keep-alive") << QByteArray("disable-keep-alivf")
                            << 5;
    QTest::newRow("method") << QByteArray("\"POST\"") << QByteArray("\"PULL\"") << 5;
    QTest::newRow("address") << QByteArray("/echo") << QByteArray("/ecco") << 5;
    QTest::newRow("body") << QByteArray("bodySha256") << QByteArray("bodySha257") << 5;
}

void tst_tour::otherRecordEndsTourWithStatus5()
{
    QFETCH(QByteArray, truth);
    QFETCH(QByteArray, lie);
    QFETCH(int, exitCode);

    const VXSimulatorProcess simulator;
    QVERIFY2(simulator.errorText().isEmpty(), qPrintable(simulator.errorText()));
    const FalsifyingControl control(static_cast<quint16>(simulator.port(u"control"_s)), truth, lie);
    const QTemporaryDir folder;
    QJsonObject ready = simulator.ready();
    ready.insert(u"control"_s, control.port());
    QFile readyFile(folder.filePath(u"ready.json"_s));
    QVERIFY(readyFile.open(QIODevice::WriteOnly));
    readyFile.write(QJsonDocument(ready).toJson());
    readyFile.close();

    const VXSampleRun run(
        tour(folder.path(), {u"--simulator"_s, readyFile.fileName()}, {u"--only"_s, u"methods"_s}));
    QVERIFY2(run.exitCode() == exitCode, qPrintable(run.standardError()));
}

void tst_tour::nothingSecretIsWritten()
{
    const QTemporaryDir folder;
    const VXSampleRun run(tour(folder.path(), {}, {u"--only"_s, u"proxy"_s}));
    QVERIFY2(run.exitCode() == 0, qPrintable(run.standardError()));

    const QByteArray password = "tour-geheim";
    const QByteArray login = ("kunde:" + password).toBase64();
    QByteArray written = run.standardOutput() + run.standardError().toUtf8();
    for (const QString& name : {u"tour.json"_s, u"tour.log"_s, u"index.html"_s})
        written += VXFileContent::of(folder.filePath(name));
    QVERIFY(written.contains("Proxy-Authorization"));
    QVERIFY(!written.contains(password));
    QVERIFY(!written.contains(login));
}

void tst_tour::unknownGroupIsWrongUsage()
{
    const QTemporaryDir folder;
    const VXSampleRun run(tour(folder.path(), {}, {u"--only"_s, u"order,nonsense"_s}));
    QCOMPARE(run.exitCode(), 2);
    QVERIFY(run.standardError().contains(u"\"nonsense\""_s));
}

void tst_tour::folderThatCannotBeMadeIsWrongUsage()
{
    const VXSampleRun run(tour(u"/proc/nowhere"_s));
    QCOMPARE(run.exitCode(), 2);
    QVERIFY(run.standardError().contains(u"\"/proc/nowhere\""_s));
}

VX_TEST_MAIN(QCoreApplication, tst_tour)
#include "tst_tour.moc"
