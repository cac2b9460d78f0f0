#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXEncoder.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXEncoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void oldFormIsBase64OfUtf8_data();
    void oldFormIsBase64OfUtf8();
    void keyIsCombinedByteByByte();
    void garbageGivesNothing_data();
    void garbageGivesNothing();
};

void tst_VXEncoder::init()
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Crypto/legacyEncoderKey"_s, QString()));
}

void tst_VXEncoder::oldFormIsBase64OfUtf8_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("encoded");

    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("word") << u"geheim"_s << u"Z2VoZWlt"_s;
    QTest::newRow("umlaut") << u"ä"_s << u"w6Q="_s;
}

void tst_VXEncoder::oldFormIsBase64OfUtf8()
{
    QFETCH(QString, text);
    QFETCH(QString, encoded);
    QCOMPARE(VXEncoder::encodeString(text), encoded);
    QCOMPARE(VXEncoder::decodeString(encoded), text);
}

void tst_VXEncoder::keyIsCombinedByteByByte()
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Crypto/legacyEncoderKey"_s, u"ab"_s));
    // "abc" with "aba": 00 00 02
    QCOMPARE(VXEncoder::encodeString(u"abc"_s), u"AAAC"_s);
    QCOMPARE(VXEncoder::decodeString(u"AAAC"_s), u"abc"_s);
}

void tst_VXEncoder::garbageGivesNothing_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("no base64") << u"!!!"_s;
    QTest::newRow("bad length") << u"Z2VoZ"_s;
    QTest::newRow("blank inside") << u"Z2Vo ZWlt"_s;
    QTest::newRow("no UTF-8") << u"//4="_s;
    QTest::newRow("foreign letters") << u"ÄÖÜ😀"_s;
}

void tst_VXEncoder::garbageGivesNothing()
{
    QFETCH(QString, text);
    QCOMPARE(VXEncoder::decodeString(text), QString());
}

VX_TEST_MAIN(QCoreApplication, tst_VXEncoder)

#include "tst_VXEncoder.moc"
