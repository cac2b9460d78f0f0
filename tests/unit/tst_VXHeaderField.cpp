#include <VXNetworking/VXHeaderField.h>

#include "VXLogCapture.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXHeaderField : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void soundLinesPassInSilence_data();
    void soundLinesPassInSilence();
    void brokenLinesAreRefusedByName_data();
    void brokenLinesAreRefusedByName();
};

void tst_VXHeaderField::soundLinesPassInSilence_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("text") << u"image/jpeg"_s;
    QTest::newRow("nothing") << QString();
    QTest::newRow("tab and umlaut") << u"a\tä"_s;
    QTest::newRow("backslash") << u"a\\nb"_s;
}

void tst_VXHeaderField::soundLinesPassInSilence()
{
    QFETCH(QString, value);
    const VXLogCapture log;
    QVERIFY(VXHeaderField::isSound(u"X-Name"_s, value));
    QCOMPARE(log.texts(), QStringList());
}

void tst_VXHeaderField::brokenLinesAreRefusedByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("shown");

    QTest::newRow("LF in the value") << u"X-Name"_s << u"geheim\n"_s << u"\"X-Name\""_s;
    QTest::newRow("CR in the value") << u"X-Name"_s << u"\rgeheim"_s << u"\"X-Name\""_s;
    QTest::newRow("NUL in the value")
        << u"X-Name"_s << u"geheim"_s + QChar::Null << u"\"X-Name\""_s;
    QTest::newRow("LF in the name") << u"X\nName"_s << u"geheim"_s << u"\"X\\nName\""_s;
}

void tst_VXHeaderField::brokenLinesAreRefusedByName()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QString, shown);
    const VXLogCapture log;
    QVERIFY(!VXHeaderField::isSound(name, value));
    QCOMPARE(log.texts(QtWarningMsg),
             QStringList{u"-- Header dropped, a line break or NUL is in it: "_s + shown});
}

VX_TEST_MAIN(QCoreApplication, tst_VXHeaderField)

#include "tst_VXHeaderField.moc"
