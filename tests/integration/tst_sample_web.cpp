// The sample host's command for web pages as a black box, with the real engine.

#include "VXRawPeer.h"
#include "VXSampleRun.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>

using namespace Qt::StringLiterals;

namespace {

// The program inherits it: root may not use the engine's sandbox.
const bool isPrepared = qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox");

const QByteArray page = "<html><head><meta charset='utf-8'><title>Beleg für Größe</title></head>"
                        "<body style='background:#00ff00'><h1>Summe</h1></body></html>";

VXSampleRun show(const QString& theUrl, const QStringList& theOptions = {})
{
    return VXSampleRun(
        QStringList{u"--offscreen"_s, u"--simulator"_s, u"none"_s, u"web"_s, theUrl} + theOptions);
}

QString fileWith(const QTemporaryDir& theFolder, const QByteArray& theHtml)
{
    QFile file(theFolder.filePath(u"page.html"_s));
    if (!file.open(QFile::WriteOnly) || file.write(theHtml) < 0)
        qFatal("cannot write the page");
    return QUrl::fromLocalFile(file.fileName()).toString();
}

} // namespace

class tst_sample_web : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theResultHasTitleAddressAndResults();
    void thePageIsSavedAsPdf();
    void aPictureShowsThePage();
    void theDarkSkinReachesThePage_data();
    void theDarkSkinReachesThePage();
    void thePageComesByTheUsersProxy();
    void aFailedLoadIsALibraryError();
    void aPdfThatCannotBeWrittenIsALibraryError();
    void aSilentServerEndsWithStatus4();
    void keepLeavesThePageOpen();
    void wrongUsageEndsWithStatus2();
};

void tst_sample_web::theResultHasTitleAddressAndResults()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, page, {"Content-Type: text/html"}));
    const VXSampleRun run = show(peer.url(u"/a"_s).toString(),
                                 {u"--script"_s, u"1 + 1"_s, u"--script"_s, u"['ä', null]"_s,
                                  u"--script"_s, u"1 + 1"_s, u"--script"_s, u"undefined"_s});
    QVERIFY2(run.exitCode() == 0, qPrintable(run.standardError()));
    QVERIFY(run.isJson());
    QCOMPARE(
        run.result(),
        (QJsonObject{{u"title"_s, u"Beleg für Größe"_s},
                     {u"url"_s, peer.url(u"/a"_s).toString()},
                     {u"results"_s, QJsonArray{2, QJsonArray{u"ä"_s, {}}, 2, QJsonValue::Null}}}));
}

void tst_sample_web::thePageIsSavedAsPdf()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"a.pdf"_s);
    const VXSampleRun run = show(fileWith(folder, page), {u"--pdf"_s, file});
    QVERIFY2(run.exitCode() == 0, qPrintable(run.standardError()));
    QProcess reader;
    reader.start(u"pdftotext"_s, {file, u"-"_s});
    QVERIFY(reader.waitForFinished());
    QCOMPARE(reader.readAllStandardOutput().trimmed(), "Summe");
}

void tst_sample_web::aPictureShowsThePage()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"a.png"_s);
    const VXSampleRun run = show(fileWith(folder, page), {u"--png"_s, file});
    QVERIFY2(run.exitCode() == 0, qPrintable(run.standardError()));
    const QImage picture(file);
    QCOMPARE(picture.size(), QSize(900, 700));
    QCOMPARE(picture.pixelColor(450, 400), QColor(0, 255, 0));
}

void tst_sample_web::theDarkSkinReachesThePage_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("scheme");

    QTest::newRow("dark") << QStringList{u"--dark"_s} << u"dark only"_s;
    QTest::newRow("light") << QStringList() << u"normal"_s;
}

void tst_sample_web::theDarkSkinReachesThePage()
{
    QFETCH(QStringList, options);
    QFETCH(QString, scheme);

    const QTemporaryDir folder;
    const VXSampleRun run =
        show(fileWith(folder, page),
             options + QStringList{u"--script"_s,
                                   u"getComputedStyle(document.documentElement).colorScheme"_s});
    QVERIFY2(run.exitCode() == 0, qPrintable(run.standardError()));
    QCOMPARE(run.result().value(u"results"_s).toArray(), QJsonArray{scheme});
}

// Only the proxy knows the name. Nothing else in this run makes the network settings.
void tst_sample_web::thePageComesByTheUsersProxy()
{
    VXRawPeer proxy;
    proxy.setAnswer(VXRawAnswer::http(200, page, {"Content-Type: text/html"}));
    const QTemporaryDir folder;
    const QStringList common{u"--offscreen"_s, u"--settings"_s, folder.filePath(u"settings.ini"_s),
                             u"--simulator"_s, u"none"_s};
    const VXSampleRun choice(common + QStringList{u"proxy"_s, u"set"_s, u"my"_s, u"--host"_s,
                                                  u"127.0.0.1"_s, u"--port"_s,
                                                  QString::number(proxy.url().port())});
    QVERIFY2(choice.exitCode() == 0, qPrintable(choice.standardError()));

    const VXSampleRun run(common + QStringList{u"web"_s, u"http://photos.test/a"_s});
    QVERIFY2(run.exitCode() == 0, qPrintable(run.standardError()));
    QCOMPARE(run.result().value(u"title"_s).toString(), u"Beleg für Größe"_s);
}

void tst_sample_web::aFailedLoadIsALibraryError()
{
    const VXSampleRun run = show(u"file:///nowhere/at/all.html"_s, {u"--script"_s, u"1"_s});
    QCOMPARE(run.exitCode(), 1);
    QCOMPARE(run.result().value(u"results"_s).toArray(), QJsonArray());
}

void tst_sample_web::aPdfThatCannotBeWrittenIsALibraryError()
{
    const QTemporaryDir folder;
    QCOMPARE(show(fileWith(folder, page), {u"--pdf"_s, u"/nowhere/at/all/a.pdf"_s}).exitCode(), 1);
}

void tst_sample_web::aSilentServerEndsWithStatus4()
{
    VXRawPeer peer;
    VXRawAnswer silence;
    peer.setAnswer(silence.stall());
    const VXSampleRun run({u"--offscreen"_s, u"--exit-after"_s, u"3"_s, u"--simulator"_s, u"none"_s,
                           u"web"_s, peer.url().toString()});
    QCOMPARE(run.exitCode(), 4);
}

/// The other tests show that it ends by itself without the option.
void tst_sample_web::keepLeavesThePageOpen()
{
    const QTemporaryDir folder;
    const VXSampleRun kept({u"--offscreen"_s, u"--exit-after"_s, u"12"_s, u"--simulator"_s,
                            u"none"_s, u"web"_s, fileWith(folder, page), u"--keep"_s});
    QCOMPARE(kept.exitCode(), 4);
    QVERIFY(kept.result().contains(u"title"_s));
}

void tst_sample_web::wrongUsageEndsWithStatus2()
{
    QCOMPARE(VXSampleRun({u"--offscreen"_s, u"web"_s}).exitCode(), 2);
    QCOMPARE(VXSampleRun({u"--offscreen"_s, u"web"_s, u"a"_s, u"b"_s}).exitCode(), 2);
    QCOMPARE(VXSampleRun({u"--offscreen"_s, u"web"_s, u"a"_s, u"--unknown"_s}).exitCode(), 2);
}

VX_TEST_MAIN(QCoreApplication, tst_sample_web)

#include "tst_sample_web.moc"
