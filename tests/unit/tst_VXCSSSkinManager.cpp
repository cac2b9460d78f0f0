#include <VXGUIWidgets/VXCSSSkinManager.h>

#include <VXCore/VXDeploymentConfig.h>

#include "VXTestMain.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

VXCSSSkinManager* skin()
{
    return VXCSSSkinManager::instance();
}

void configure(const QString& theMode)
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Gui/skinMode"_s, theMode));
}

// WCAG 2.1, relative luminance and contrast ratio.
double luminance(const QColor& theColor)
{
    const auto linear = [](double theValue) {
        return theValue <= 0.03928 ? theValue / 12.92 : std::pow((theValue + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(theColor.redF()) + 0.7152 * linear(theColor.greenF()) +
           0.0722 * linear(theColor.blueF());
}

double contrast(const QColor& theOne, const QColor& theOther)
{
    const double one = luminance(theOne) + 0.05;
    const double other = luminance(theOther) + 0.05;
    return qMax(one, other) / qMin(one, other);
}

/// The colour in the middle of a widget without text, as it is painted.
QColor paintedBackground(const char* theStyle)
{
    QWidget window;
    window.resize(120, 60);
    QWidget pane(&window);
    pane.setAttribute(Qt::WA_StyledBackground);
    pane.setProperty("cssstyle", QString::fromLatin1(theStyle));
    pane.setGeometry(10, 10, 100, 40);
    window.show();
    return window.grab().toImage().pixelColor(60, 30);
}

} // namespace

class tst_VXCSSSkinManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void atFirstNoSkinIsSet();
    void modesHaveTheirNumbers();
    void theDeploymentDecides_data();
    void theDeploymentDecides();
    void autoFollowsTheDesktop_data();
    void autoFollowsTheDesktop();
    void unsetGivesTheDesktopBack();
    void anUnknownModeChangesNothing();
    void textsAreReadableInBothSkins_data();
    void textsAreReadableInBothSkins();
    void stylesAreKeyedOnTheProperty_data();
    void stylesAreKeyedOnTheProperty();
    void servicesShareTheirStyle();
    void aLinkButtonHasTheLinksColour();
    void theBoldLabelIsBold();
    void changingTheModeReachesShownWidgets();
    void aSheetNamesPicturesBesideItself();
    void aMissingSheetIsReported();
};

void tst_VXCSSSkinManager::init()
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(
        u"Assets/skin"_s, QStringLiteral(VX_SOURCE_DIR "/assets/skin.qss")));
    skin()->setMode(VXCSSSkinManager::Unset);
}

void tst_VXCSSSkinManager::atFirstNoSkinIsSet()
{
    QCOMPARE(VXCSSSkinManager().currentMode(), 0);
}

void tst_VXCSSSkinManager::modesHaveTheirNumbers()
{
    skin()->setMode(1);
    QCOMPARE(skin()->currentMode(), 1);
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 200);
    skin()->setMode(2);
    QCOMPARE(skin()->currentMode(), 2);
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 60);
}

void tst_VXCSSSkinManager::theDeploymentDecides_data()
{
    QTest::addColumn<QString>("configured");
    QTest::addColumn<int>("mode");

    QTest::newRow("light") << u"light"_s << 1;
    QTest::newRow("dark") << u"dark"_s << 2;
}

void tst_VXCSSSkinManager::theDeploymentDecides()
{
    QFETCH(QString, configured);
    QFETCH(int, mode);

    configure(configured);
    skin()->applyConfiguredMode();
    QCOMPARE(skin()->currentMode(), mode);
}

void tst_VXCSSSkinManager::autoFollowsTheDesktop_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<int>("mode");

    QTest::newRow("light desktop") << QColor(Qt::white) << QColor(Qt::black) << 1;
    QTest::newRow("dark desktop") << QColor(Qt::black) << QColor(Qt::white) << 2;
}

void tst_VXCSSSkinManager::autoFollowsTheDesktop()
{
    QFETCH(QColor, window);
    QFETCH(QColor, text);
    QFETCH(int, mode);

    const QPalette before = QApplication::palette();
    QPalette desktop = before;
    desktop.setColor(QPalette::Window, window);
    desktop.setColor(QPalette::WindowText, text);
    QApplication::setPalette(desktop);
    configure(u"auto"_s);
    VXCSSSkinManager manager; // sees this desktop
    manager.applyConfiguredMode();
    QCOMPARE(manager.currentMode(), mode);

    // Once more, with the skin's own palette in force: still the desktop's.
    manager.setMode(mode == 1 ? 2 : 1);
    manager.applyConfiguredMode();
    QCOMPARE(manager.currentMode(), mode);
    manager.setMode(0);
    QApplication::setPalette(before);
}

void tst_VXCSSSkinManager::unsetGivesTheDesktopBack()
{
    const QColor before = QApplication::palette().color(QPalette::Window);
    skin()->setMode(2);
    QVERIFY(!qApp->styleSheet().isEmpty());
    skin()->setMode(0);
    QCOMPARE(QApplication::palette().color(QPalette::Window), before);
    QVERIFY(qApp->styleSheet().isEmpty());
}

void tst_VXCSSSkinManager::anUnknownModeChangesNothing()
{
    skin()->setMode(2);
    skin()->setMode(3);
    QCOMPARE(skin()->currentMode(), 2);
    skin()->setMode(-1);
    QCOMPARE(skin()->currentMode(), 2);
}

void tst_VXCSSSkinManager::textsAreReadableInBothSkins_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("text");
    QTest::addColumn<int>("ground");

    for (int mode : {1, 2}) {
        const auto row = [mode](const char* theName, int theText, int theGround) {
            QTest::addRow("%s, mode %d", theName, mode) << mode << theText << theGround;
        };
        row("labels", QPalette::WindowText, QPalette::Window);
        row("fields", QPalette::Text, QPalette::Base);
        row("buttons", QPalette::ButtonText, QPalette::Button);
        row("links", QPalette::Link, QPalette::Window);
        row("links on the choice", QPalette::Link, QPalette::AlternateBase);
        row("placeholders", QPalette::PlaceholderText, QPalette::Base);
        row("tool tips", QPalette::ToolTipText, QPalette::ToolTipBase);
        row("text on panes", QPalette::WindowText, QPalette::AlternateBase);
    }
}

void tst_VXCSSSkinManager::textsAreReadableInBothSkins()
{
    QFETCH(int, mode);
    QFETCH(int, text);
    QFETCH(int, ground);

    skin()->setMode(mode);
    const QPalette palette = QApplication::palette();
    const double ratio = contrast(palette.color(static_cast<QPalette::ColorRole>(text)),
                                  palette.color(static_cast<QPalette::ColorRole>(ground)));
    QVERIFY2(ratio >= 4.5, qPrintable(QString::number(ratio))); // WCAG 2.1, level AA
}

void tst_VXCSSSkinManager::stylesAreKeyedOnTheProperty_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("style");
    QTest::addColumn<int>("role");

    for (int mode : {1, 2}) {
        QTest::addRow("icon pane %d", mode)
            << mode << QByteArray("loginWithInfoDialog") << int(QPalette::AlternateBase);
        QTest::addRow("text %d", mode)
            << mode << QByteArray("defaultTextBrowser") << int(QPalette::Base);
        QTest::addRow("nothing special %d", mode)
            << mode << QByteArray("irgendwas") << int(QPalette::Window);
    }
}

void tst_VXCSSSkinManager::stylesAreKeyedOnTheProperty()
{
    QFETCH(int, mode);
    QFETCH(QByteArray, style);
    QFETCH(int, role);

    skin()->setMode(mode);
    QCOMPARE(paintedBackground(style.constData()),
             QApplication::palette().color(static_cast<QPalette::ColorRole>(role)));
}

void tst_VXCSSSkinManager::servicesShareTheirStyle()
{
    skin()->setMode(1);
    const QColor pane = QApplication::palette().color(QPalette::AlternateBase);
    QCOMPARE(paintedBackground("login_with_tessarim"), pane);
    QCOMPARE(paintedBackground("login_with_my_service"), pane);
    QVERIFY(paintedBackground("my_login_with_x") != pane);
}

void tst_VXCSSSkinManager::aLinkButtonHasTheLinksColour()
{
    skin()->setMode(2);
    QPushButton link(u"Ändern"_s);
    link.setProperty("cssstyle", u"hyperlinkStyle"_s);
    link.ensurePolished();
    QCOMPARE(link.palette().color(QPalette::ButtonText),
             QApplication::palette().color(QPalette::Link));
    QVERIFY(link.font().underline());

    QPushButton regular(u"Abbrechen"_s);
    regular.setProperty("cssstyle", u"RegularPushButton"_s);
    QPushButton plain(u"OK"_s);
    regular.ensurePolished();
    plain.ensurePolished();
    QVERIFY(regular.sizeHint().width() > plain.sizeHint().width());
}

void tst_VXCSSSkinManager::theBoldLabelIsBold()
{
    skin()->setMode(1);
    QLabel bold(u"Anmeldung mit:"_s);
    bold.setProperty("cssstyle", u"myAccountBold"_s);
    QLabel plain(u"Anmeldung mit:"_s);
    bold.ensurePolished();
    plain.ensurePolished();
    QVERIFY(bold.font().bold());
    QVERIFY(!plain.font().bold());
}

void tst_VXCSSSkinManager::changingTheModeReachesShownWidgets()
{
    skin()->setMode(1);
    QWidget window;
    window.resize(50, 50);
    window.show();
    QVERIFY(window.grab().toImage().pixelColor(25, 25).lightness() > 200);
    skin()->setMode(2);
    QVERIFY(window.grab().toImage().pixelColor(25, 25).lightness() < 60);
}

void tst_VXCSSSkinManager::aSheetNamesPicturesBesideItself()
{
    const QTemporaryDir folder;
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(folder.filePath(u"dot.png"_s)));
    QFile sheet(folder.filePath(u"skin.qss"_s));
    QVERIFY(sheet.open(QIODevice::WriteOnly));
    sheet.write("QPushButton { qproperty-icon: url(skin:dot.png); }");
    sheet.close();
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Assets/skin"_s, sheet.fileName()));
    skin()->setMode(2);
    QPushButton button;
    button.ensurePolished();
    QCOMPARE(button.icon().pixmap(8, 8).toImage().pixelColor(4, 4), QColor(Qt::red));
}

void tst_VXCSSSkinManager::aMissingSheetIsReported()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"missing.qss"_s);
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Assets/skin"_s, file));
    const QString warning =
        u"The style sheet %1 cannot be read: No such file or directory"_s.arg(file);
    QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    skin()->setMode(2);
    QCOMPARE(skin()->currentMode(), 2);
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 60);
}

VX_TEST_MAIN(QApplication, tst_VXCSSSkinManager)

#include "tst_VXCSSSkinManager.moc"
