#include <VXGUIWidgets/VXGUIWidgetsConfig.h>

#include "VXTestMain.h"

#include <VXCore/VXDirectoryConfig.h>

#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtWidgets/QApplication>

using namespace Qt::StringLiterals;

class tst_VXGUIWidgetsConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void shippedPictureHasItsSize_data();
    void shippedPictureHasItsSize();
    void unknownIdentifierGivesNoPicture();
    void brokenPictureGivesNoPicture();
    void anyFlagsLoadThePicture();
    void identifierNeverLeadsOutOfTheFolder_data();
    void identifierNeverLeadsOutOfTheFolder();
    void addedFolderIsAskedFirst();

private:
    static void draw(const QString& theFile, const QColor& theColour, int theSize = 8);

    QTemporaryDir myFolder;
};

void tst_VXGUIWidgetsConfig::init()
{
    QVERIFY(myFolder.isValid());
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::Icons,
                                           u"" VX_SOURCE_DIR "/assets/icons"_s);
}

void tst_VXGUIWidgetsConfig::draw(const QString& theFile, const QColor& theColour, int theSize)
{
    QImage image(theSize, theSize, QImage::Format_RGB32);
    image.fill(theColour);
    QVERIFY(image.save(theFile));
}

void tst_VXGUIWidgetsConfig::shippedPictureHasItsSize_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QSizeF>("size");

    QTest::newRow("hint") << u"ico_messagebox-info"_s << QSizeF(48, 48);
    QTest::newRow("logo of the simulator") << u"ico_logo_vx_simulator"_s << QSizeF(32, 32);
}

void tst_VXGUIWidgetsConfig::shippedPictureHasItsSize()
{
    QFETCH(QString, id);
    QFETCH(QSizeF, size);

    const QPixmap picture = VXGUIWidgetsConfig::loadPixmapById(id, 97);
    QCOMPARE(picture.deviceIndependentSize(), size);
    // On a dense screen it has more pixels, not larger ones; see the test's second run.
    QCOMPARE(picture.devicePixelRatio(), qGuiApp->devicePixelRatio());
    QCOMPARE(QSizeF(picture.size()), size * qGuiApp->devicePixelRatio());
    const QImage image = picture.toImage();
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QVERIFY(image.pixelColor(image.width() / 2, image.height() / 5).alpha() > 0);
}

void tst_VXGUIWidgetsConfig::unknownIdentifierGivesNoPicture()
{
    QVERIFY(VXGUIWidgetsConfig::loadPixmapById(u"ico_logo_nobody"_s, 97).isNull());
    QVERIFY(VXGUIWidgetsConfig::loadPixmapById(QString(), 97).isNull());
}

void tst_VXGUIWidgetsConfig::brokenPictureGivesNoPicture()
{
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::Icons, myFolder.path());
    QFile file(myFolder.filePath(u"broken.png"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\x89PNG and nothing else");
    file.close();

    QVERIFY(VXGUIWidgetsConfig::loadPixmapById(u"broken"_s, 97).isNull());
}

void tst_VXGUIWidgetsConfig::anyFlagsLoadThePicture()
{
    for (const int flags : {-1, 0, 1, 97, 1'000'000})
        QVERIFY(!VXGUIWidgetsConfig::loadPixmapById(u"ico_messagebox-info"_s, flags).isNull());
    QVERIFY(!VXGUIWidgetsConfig::loadPixmapById(u"ico_messagebox-info"_s).isNull());
}

void tst_VXGUIWidgetsConfig::identifierNeverLeadsOutOfTheFolder_data()
{
    QTest::addColumn<QString>("id");

    QTest::newRow("upwards") << u"../secret"_s;
    QTest::newRow("downwards") << u"sub/secret"_s;
    QTest::newRow("absolute") << myFolder.filePath(u"secret"_s);
    QTest::newRow("NUL") << u"secret.png"_s + QChar::Null;
}

void tst_VXGUIWidgetsConfig::identifierNeverLeadsOutOfTheFolder()
{
    QFETCH(QString, id);
    QVERIFY(QDir(myFolder.path()).mkpath(u"icons/sub"_s));
    for (const QString& name : {u"secret.png"_s, u"icons/sub/secret.png"_s})
        draw(myFolder.filePath(name), Qt::red);
    draw(myFolder.filePath(u"icons/secret.png"_s), Qt::green);
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::Icons,
                                           myFolder.filePath(u"icons"_s));

    QVERIFY(!VXGUIWidgetsConfig::loadPixmapById(u"secret"_s, 97).isNull()); // the folder works
    QVERIFY(VXGUIWidgetsConfig::loadPixmapById(id, 97).isNull());
}

void tst_VXGUIWidgetsConfig::addedFolderIsAskedFirst()
{
    const auto colour = [](const QString& theId) {
        return VXGUIWidgetsConfig::loadPixmapById(theId, 97).toImage().pixelColor(4, 4);
    };
    QTemporaryDir older;
    QTemporaryDir newer;
    draw(older.filePath(u"ico_messagebox-info.png"_s), Qt::red);
    draw(older.filePath(u"only-here.png"_s), Qt::red);
    draw(newer.filePath(u"ico_messagebox-info.png"_s), Qt::green);

    VXGUIWidgetsConfig::addIconPath(older.path());
    QCOMPARE(colour(u"ico_messagebox-info"_s), QColor(Qt::red));
    VXGUIWidgetsConfig::addIconPath(newer.path());
    QCOMPARE(colour(u"ico_messagebox-info"_s), QColor(Qt::green));
    QCOMPARE(colour(u"only-here"_s), QColor(Qt::red));
    QVERIFY(!VXGUIWidgetsConfig::loadPixmapById(u"ico_logo_vx_simulator"_s, 97).isNull());
}

VX_TEST_MAIN(QApplication, tst_VXGUIWidgetsConfig)

#include "tst_VXGUIWidgetsConfig.moc"
