#include <VXNetworking/VXUploadFileName.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXUploadFileName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNameIsMarkedAndSafe_data();
    void theNameIsMarkedAndSafe();
};

void tst_VXUploadFileName::theNameIsMarkedAndSafe_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("photo") << u"IMG_0042.JPG"_s << u"IMG_0042.qrul.JPG"_s;
    QTest::newRow("two dots") << u"a.tar.gz"_s << u"a.tar.qrul.gz"_s;
    QTest::newRow("no dot") << u"a"_s << u"a.qrul."_s;
    QTest::newRow("missing") << QString() << u".qrul."_s;
    QTest::newRow("hidden") << u".hidden"_s << u".qrul.hidden"_s;
    QTest::newRow("parent") << u".."_s << u"..qrul."_s;
    QTest::newRow("climbing") << u"../../etc/passwd"_s << u"passwd.qrul."_s;
    QTest::newRow("absolute") << u"/etc/passwd.txt"_s << u"passwd.qrul.txt"_s;
    QTest::newRow("slash at the end") << u"dir/"_s << u".qrul."_s;
    QTest::newRow("NUL") << QString(u"b\0c.jpg"_s) << u"bc.qrul.jpg"_s;
    QTest::newRow("only NUL") << QString(QChar::Null) << u".qrul."_s;
    QTest::newRow("resource") << u":foo.jpg"_s << u":foo.qrul.jpg"_s;
    QTest::newRow("backslash stays") << u"a\\b.jpg"_s << u"a\\b.qrul.jpg"_s;
    QTest::newRow("place holders stay") << u"%2.%1"_s << u"%2.qrul.%1"_s;
    QTest::newRow("newline stays") << u"a\nb.jpg"_s << u"a\nb.qrul.jpg"_s;
}

void tst_VXUploadFileName::theNameIsMarkedAndSafe()
{
    QFETCH(QString, name);

    QTEST(VXUploadFileName::stored(name), "expected");
}

VX_TEST_MAIN(QCoreApplication, tst_VXUploadFileName)

#include "tst_VXUploadFileName.moc"
