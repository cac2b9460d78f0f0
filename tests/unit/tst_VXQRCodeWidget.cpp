#include <VXCore/VXDeploymentConfig.h>
#include <VXGUIWidgets/VXQRCodeWidget.h>

#include "VXTestMain.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

const QString outputFolder = u"" VX_BINARY_DIR "/tests-output/tst_VXQRCodeWidget"_s;

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::Base, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Text, Qt::white);
    return palette;
}

/// The widget as it would stand on a screen of that scale.
QImage picture(QWidget& theWidget, qreal theScale)
{
    QImage image((QSizeF(theWidget.size()) * theScale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(theScale);
    image.fill(Qt::darkRed); // whatever the widget leaves unpainted shows
    theWidget.render(&image);
    return image;
}

} // namespace

/// The pictures are read by zbar, a decoder that knows nothing of the encoder.
class tst_VXQRCodeWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aNewWidgetShowsThePlaceholder();
    void theDecoderReadsTheAddress_data();
    void theDecoderReadsTheAddress();
    void theGrabbedPictureIsReadable();
    void everyPixelIsBlackOrWhite_data();
    void everyPixelIsBlackOrWhite();
    void aQuietZoneOfFourModulesSurroundsTheCode();
    void theSmallestSizeIsReadable();
    void aStyleSheetDoesNotReachTheCode();
    void anUnusableAddressShowsThePlaceholder_data();
    void anUnusableAddressShowsThePlaceholder();
    void theSecondAddressReplacesTheFirst();
    void theToolTipIsTheAddress();
    void screenReadersHearNameAddressAndNetwork();
    void theEntryGrowsFromNothingToTheWholeCode();
    void withoutAnimationsTheCodeIsThereAtOnce();
    void deploymentWithoutAnimationsShowsTheCodeAtOnce();

private:
    QString decoded(const QImage& theImage);

    QTemporaryDir myFolder;
};

void tst_VXQRCodeWidget::initTestCase()
{
    QVERIFY(myFolder.isValid());
    QVERIFY(QDir().mkpath(outputFolder));
}

QString tst_VXQRCodeWidget::decoded(const QImage& theImage)
{
    // A scanner needs something that is no code around the code, as it stands on a screen.
    QImage desk(theImage.size() + QSize(40, 40), QImage::Format_RGB32);
    desk.fill(Qt::darkGray);
    QImage code = theImage;
    code.setDevicePixelRatio(1);
    QPainter(&desk).drawImage(20, 20, code);

    const QString file = myFolder.filePath(u"code.png"_s);
    if (!desk.save(file))
        return u"<not saved>"_s;

    QProcess zbar;
    zbar.start(u"zbarimg"_s, {u"-q"_s, u"--raw"_s, u"--nodbus"_s, file});
    if (!zbar.waitForFinished(30000))
        return u"<zbarimg (Debian package zbar-tools) did not run>"_s;
    return QString::fromUtf8(zbar.readAllStandardOutput()).trimmed();
}

void tst_VXQRCodeWidget::aNewWidgetShowsThePlaceholder()
{
    VXQRCodeWidget widget;
    widget.resize(widget.sizeHint());

    QVERIFY(!widget.hasCode());
    QCOMPARE(widget.url(), QUrl());
    const QImage image = picture(widget, 1);
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    QVERIFY(image.save(outputFolder + u"/placeholder.png"_s));
    QCOMPARE(decoded(image), QString());
}

void tst_VXQRCodeWidget::theDecoderReadsTheAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<bool>("dark");

    const QString usual = u"http://192.168.178.123:45678/?AB+-."_s;
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        QTest::addRow("light, scale %.2f", scale) << usual << scale << false;
        QTest::addRow("dark, scale %.2f", scale) << usual << scale << true;
    }
    QTest::newRow("shortest") << u"http://1.1.1.1:1/?AAAAA"_s << 1.0 << false;
    QTest::newRow("port of a failed listen") << u"http://10.0.0.1:0/?ABCDE"_s << 1.0 << false;
    QTest::newRow("a long one") << u"http://10.0.0.1:1/?"_s + QString(120, u'x') << 1.0 << false;
    QTest::newRow("a host with umlauts") << u"http://b\u00fccher.example/"_s << 1.0 << false;
}

void tst_VXQRCodeWidget::theDecoderReadsTheAddress()
{
    QFETCH(QString, address);
    QFETCH(qreal, scale);
    QFETCH(bool, dark);

    VXQRCodeWidget widget;
    if (dark)
        widget.setPalette(darkPalette());
    widget.resize(widget.sizeHint());
    widget.setUrl(QUrl(address), u"WLAN"_s);

    QVERIFY(widget.hasCode());
    QCOMPARE(widget.url(), QUrl(address));
    const QImage image = picture(widget, scale);
    QVERIFY(image.save(u"%1/%2.png"_s.arg(
        outputFolder, QString::fromLatin1(QTest::currentDataTag()).replace(u' ', u'-'))));
    QCOMPARE(decoded(image), QString::fromLatin1(QUrl(address).toEncoded()));
}

void tst_VXQRCodeWidget::theGrabbedPictureIsReadable()
{
    // Inside a dialog and on the screen of this run, whose scale the environment may set.
    QWidget window;
    window.setPalette(darkPalette());
    QVBoxLayout layout(&window);
    VXQRCodeWidget widget;
    layout.setContentsMargins(7, 11, 5, 3);
    layout.addWidget(&widget, 0, Qt::AlignCenter);
    widget.setUrl(QUrl(u"http://10.77.0.1:40001/?Q-W.E"_s), {});
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const QImage image = widget.grab().toImage();
    QCOMPARE(image.devicePixelRatio(), widget.devicePixelRatio());
    QCOMPARE(decoded(image), u"http://10.77.0.1:40001/?Q-W.E"_s);
    QCOMPARE(decoded(window.grab().toImage()), u"http://10.77.0.1:40001/?Q-W.E"_s);
}

void tst_VXQRCodeWidget::everyPixelIsBlackOrWhite_data()
{
    QTest::addColumn<qreal>("scale");
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0, 2.75})
        QTest::addRow("scale %.2f", scale) << scale;
}

void tst_VXQRCodeWidget::everyPixelIsBlackOrWhite()
{
    QFETCH(qreal, scale);

    VXQRCodeWidget widget;
    widget.resize(widget.sizeHint());
    widget.setUrl(QUrl(u"http://192.168.178.123:45678/?ABCDE"_s), {});

    // A grey pixel would be a module that ends between two device pixels.
    const QImage image = picture(widget, scale);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb color = image.pixel(x, y) | 0xff000000;
            QVERIFY2(color == 0xff000000 || color == 0xffffffff,
                     qPrintable(u"%1,%2 is %3"_s.arg(x).arg(y).arg(color, 0, 16)));
        }
    }
}

void tst_VXQRCodeWidget::aQuietZoneOfFourModulesSurroundsTheCode()
{
    VXQRCodeWidget widget;
    widget.resize(222, 222);
    widget.setPalette(darkPalette());
    widget.setUrl(QUrl(u"http://192.168.178.123:45678/?ABCDE"_s), {});
    const QImage image = picture(widget, 1);

    QRect dark;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128)
                dark |= QRect(x, y, 1, 1);
        }
    }
    // 35 bytes make a code of 29 modules; 222 pixels hold 29 + 8 modules of 6 pixels.
    QCOMPARE(dark, QRect(24, 24, 174, 174));
}

void tst_VXQRCodeWidget::theSmallestSizeIsReadable()
{
    VXQRCodeWidget widget;
    widget.resize(widget.minimumSizeHint());
    widget.setUrl(QUrl(u"http://192.168.178.123:45678/?ABCDE"_s), {});
    QCOMPARE(decoded(picture(widget, 1)), u"http://192.168.178.123:45678/?ABCDE"_s);
}

void tst_VXQRCodeWidget::aStyleSheetDoesNotReachTheCode()
{
    QWidget window;
    window.setStyleSheet(u"* { background: #202020; color: #eeeeee; border: 3px solid red; }"_s);
    QVBoxLayout layout(&window);
    VXQRCodeWidget widget;
    layout.addWidget(&widget);
    window.resize(400, 400);
    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?ABCDE"_s), {});
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QCOMPARE(decoded(window.grab().toImage()), u"http://10.0.0.1:40000/?ABCDE"_s);
}

void tst_VXQRCodeWidget::anUnusableAddressShowsThePlaceholder_data()
{
    QTest::addColumn<QUrl>("url");

    QTest::newRow("empty") << QUrl();
    QTest::newRow("no host") << QUrl(u"http://:0/?ABCDE"_s);
    QTest::newRow("longer than any code") << QUrl(u"http://h/?"_s + QString(4000, u'x'));
}

void tst_VXQRCodeWidget::anUnusableAddressShowsThePlaceholder()
{
    QFETCH(QUrl, url);

    VXQRCodeWidget widget;
    widget.resize(widget.sizeHint());
    const QImage placeholder = picture(widget, 1);
    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?ABCDE"_s), u"WLAN"_s);
    QVERIFY(picture(widget, 1) != placeholder);

    widget.setUrl(url, u"Es gibt keine Schnittstelle."_s);
    QVERIFY(!widget.hasCode());
    QCOMPARE(widget.url(), url);
    QCOMPARE(widget.toolTip(), QString());
    QCOMPARE(picture(widget, 1), placeholder);
}

void tst_VXQRCodeWidget::theSecondAddressReplacesTheFirst()
{
    VXQRCodeWidget widget;
    widget.resize(widget.sizeHint());
    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?ABCDE"_s), {});
    widget.animateIn();
    widget.setUrl(QUrl(u"http://10.0.0.2:50000/?FGHIJ"_s), {});

    QTRY_COMPARE(decoded(picture(widget, 1)), u"http://10.0.0.2:50000/?FGHIJ"_s);
}

void tst_VXQRCodeWidget::theToolTipIsTheAddress()
{
    VXQRCodeWidget widget;
    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?AB+-."_s), u"<b>WLAN</b>"_s);
    QCOMPARE(widget.toolTip(), u"http://10.0.0.1:40000/?AB+-."_s);
}

void tst_VXQRCodeWidget::screenReadersHearNameAddressAndNetwork()
{
    VXQRCodeWidget widget;
    QCOMPARE(widget.accessibleName(), u"QR-Code"_s);

    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?ABCDE"_s), u"Caf\u00e9 %1"_s);
    QCOMPARE(widget.accessibleDescription(), u"http://10.0.0.1:40000/?ABCDE, Caf\u00e9 %1"_s);
    QCOMPARE(widget.wifiName(), u"Caf\u00e9 %1"_s);

    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?ABCDE"_s), {});
    QCOMPARE(widget.accessibleDescription(), u"http://10.0.0.1:40000/?ABCDE"_s);
}

void tst_VXQRCodeWidget::theEntryGrowsFromNothingToTheWholeCode()
{
    VXQRCodeWidget widget;
    widget.resize(widget.sizeHint());
    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?ABCDE"_s), {});
    const QImage whole = picture(widget, 1);

    widget.animateIn();
    QVERIFY(picture(widget, 1) != whole); // the first frame is transparent
    QTRY_COMPARE(picture(widget, 1), whole);
}

void tst_VXQRCodeWidget::withoutAnimationsTheCodeIsThereAtOnce()
{
    VXQRCodeWidget widget;
    widget.setStyleSheet(u"* { widget-animation-duration: 0; }"_s);
    widget.resize(widget.sizeHint());
    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?ABCDE"_s), {});
    const QImage whole = picture(widget, 1);

    widget.animateIn();
    QCOMPARE(picture(widget, 1), whole);
}

void tst_VXQRCodeWidget::deploymentWithoutAnimationsShowsTheCodeAtOnce()
{
    VXQRCodeWidget widget;
    widget.resize(widget.sizeHint());
    widget.setUrl(QUrl(u"http://10.0.0.1:40000/?ABCDE"_s), {});
    const QImage whole = picture(widget, 1);

    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Gui/animations"_s, u"false"_s));
    widget.animateIn();
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Gui/animations"_s, u"true"_s));
    QCOMPARE(picture(widget, 1), whole);
}

VX_TEST_MAIN(QApplication, tst_VXQRCodeWidget)
#include "tst_VXQRCodeWidget.moc"
