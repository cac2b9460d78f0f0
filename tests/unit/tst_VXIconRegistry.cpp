#include <VXGUIWidgets/VXIconRegistry.h>

#include <VXCore/VXDirectoryConfig.h>

#include "VXTestMain.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtWidgets/QApplication>
#include <QtWidgets/QToolButton>

using namespace Qt::StringLiterals;

class tst_VXIconRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theButtonGetsTheApplicationsIcon_data();
    void theButtonGetsTheApplicationsIcon();
    void withoutOneTheThemeServes();
    void anUnknownIdTakesTheIconAway();
};

void tst_VXIconRegistry::init()
{
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::Icons,
                                           QStringLiteral(VX_SOURCE_DIR "/assets/icons"));
}

void tst_VXIconRegistry::theButtonGetsTheApplicationsIcon_data()
{
    QTest::addColumn<QString>("id");

    QTest::newRow("print") << u"ico_print"_s;
    QTest::newRow("save") << u"ico_save"_s;
}

void tst_VXIconRegistry::theButtonGetsTheApplicationsIcon()
{
    QFETCH(QString, id);
    QToolButton button;
    VXIconRegistry::setIcon(&button, id);
    QVERIFY(!button.icon().isNull());
    QCOMPARE(button.icon().pixmap(24, 24).toImage(),
             QIcon(QStringLiteral(VX_SOURCE_DIR "/assets/icons/") + id + u".png"_s)
                 .pixmap(24, 24)
                 .toImage());
}

void tst_VXIconRegistry::withoutOneTheThemeServes()
{
    // A small icon theme of our own: which one is installed here does not matter.
    const QTemporaryDir themes;
    const QString folder = themes.filePath(u"probe/16x16"_s);
    QDir().mkpath(folder);
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(Qt::magenta);
    QVERIFY(image.save(folder + u"/document-print.png"_s));
    QFile index(themes.filePath(u"probe/index.theme"_s));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=probe\nDirectories=16x16\n[16x16]\nSize=16\nType=Fixed\n");
    index.close();
    QIcon::setThemeSearchPaths({themes.path()});
    QIcon::setThemeName(u"probe"_s);
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::Icons, themes.path());

    QToolButton button;
    VXIconRegistry::setIcon(&button, u"ico_print"_s);
    QCOMPARE(button.icon().pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::magenta));
    VXIconRegistry::setIcon(&button, u"ico_save"_s); // this theme has none
    QVERIFY(button.icon().pixmap(16, 16).isNull());
}

void tst_VXIconRegistry::anUnknownIdTakesTheIconAway()
{
    QToolButton button;
    VXIconRegistry::setIcon(&button, u"ico_print"_s);
    VXIconRegistry::setIcon(&button, u"ico_niemand"_s);
    QVERIFY(button.icon().isNull());
}

VX_TEST_MAIN(QApplication, tst_VXIconRegistry)

#include "tst_VXIconRegistry.moc"
