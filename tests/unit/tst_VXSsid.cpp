#include <VXCore/VXSsid.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXSsid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesBecomeText_data();
    void bytesBecomeText();
};

void tst_VXSsid::bytesBecomeText_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("ASCII") << QByteArray("Norvo WLAN") << u"Norvo WLAN"_s;
    QTest::newRow("UTF-8") << QByteArray("Caf\xc3\xa9 \xf0\x9f\x93\xb7")
                           << u"Caf\u00e9 \U0001f4f7"_s;
    QTest::newRow("Latin-1") << QByteArray("Caf\xe9") << u"Caf\u00e9"_s;
    QTest::newRow("no text at all") << QByteArray("\xff\xfe") << u"\u00ff\u00fe"_s;
    QTest::newRow("markup stays") << QByteArray("<b>x</b>") << u"<b>x</b>"_s;
    QTest::newRow("U+0000 inside") << QByteArray("a\0b", 3) << u"ab"_s;
    QTest::newRow("zero bytes only") << QByteArray(4, '\0') << QString();
    QTest::newRow("control characters") << QByteArray("a\r\n\x1b[1m\x7f") << u"a[1m"_s;
    QTest::newRow("C1 control characters") << QByteArray("a\xc2\x85z") << u"az"_s;
    QTest::newRow("32 bytes") << QByteArray(32, 'x') << QString(32, u'x');
    QTest::newRow("33 bytes") << QByteArray(33, 'x') << QString(32, u'x');
    QTest::newRow("blanks stay") << QByteArray(" a ") << u" a "_s;
}

void tst_VXSsid::bytesBecomeText()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(VXSsid::text(bytes), text);
}

VX_TEST_MAIN(QCoreApplication, tst_VXSsid)
#include "tst_VXSsid.moc"
