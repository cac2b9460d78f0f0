#include <VXCore/VXUrlOpener.h>

#include "VXLogCapture.h"
#include "VXTestMain.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXPlatformIndependent.h>

#include <QtGui/QDesktopServices>
#include <QtGui/QGuiApplication>

using namespace Qt::StringLiterals;

namespace {

// Notes the addresses; starts nothing.
class Platform : public VXPlatformIndependent
{
public:
    bool openUrl(const QUrl& theUrl) override
    {
        opened << theUrl;
        return canOpen;
    }

    QList<QUrl> opened;
    bool canOpen = true;
};

Platform* platform()
{
    return static_cast<Platform*>(VXPlatformIndependent::instance());
}

} // namespace

class tst_VXUrlOpener : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void withoutAProgramTheDesktopOpens();
    void programOpensEachUsualScheme_data();
    void programOpensEachUsualScheme();
    void otherSchemeStaysWithTheDesktop();
    void programThatDoesNotStartIsReported();
};

void tst_VXUrlOpener::init()
{
    VXPlatformIndependent::setInstance(std::make_unique<Platform>());
    VXDeploymentConfig::instance()->setValue(u"Platform/urlOpener"_s, u"some-program"_s);
}

void tst_VXUrlOpener::cleanup()
{
    VXDeploymentConfig::instance()->setValue(u"Platform/urlOpener"_s, QString());
    VXUrlOpener::installConfigured();
}

void tst_VXUrlOpener::withoutAProgramTheDesktopOpens()
{
    VXDeploymentConfig::instance()->setValue(u"Platform/urlOpener"_s, QString());
    QVERIFY(!VXUrlOpener::installConfigured());
    QDesktopServices::openUrl(QUrl(u"http://h.example/"_s)); // off screen there is no desktop
    QVERIFY(platform()->opened.isEmpty());
}

void tst_VXUrlOpener::programOpensEachUsualScheme_data()
{
    QTest::addColumn<QUrl>("url");

    for (const auto& url :
         {u"http://h.example/?a=%20b"_s, u"https://h.example/"_s, u"mailto:a@b"_s, u"file:///x"_s})
        QTest::newRow(qPrintable(url)) << QUrl(url);
}

void tst_VXUrlOpener::programOpensEachUsualScheme()
{
    QFETCH(QUrl, url);
    QVERIFY(VXUrlOpener::installConfigured());
    QVERIFY(VXUrlOpener::installConfigured()); // once more changes nothing
    QVERIFY(QDesktopServices::openUrl(url));
    QCOMPARE(platform()->opened, QList<QUrl>{url});
}

void tst_VXUrlOpener::otherSchemeStaysWithTheDesktop()
{
    QVERIFY(VXUrlOpener::installConfigured());
    QDesktopServices::openUrl(QUrl(u"smb://h/x"_s));
    QVERIFY(platform()->opened.isEmpty());
}

void tst_VXUrlOpener::programThatDoesNotStartIsReported()
{
    platform()->canOpen = false;
    QVERIFY(VXUrlOpener::installConfigured());
    const VXLogCapture log;
    QDesktopServices::openUrl(QUrl(u"http://h.example/?token=geheim"_s));
    QCOMPARE(log.texts(), QStringList{u"the program that opens addresses cannot be started"_s});
}

VX_TEST_MAIN(QGuiApplication, tst_VXUrlOpener)

#include "tst_VXUrlOpener.moc"
