#include <VXNetworking/VXCertificateBundle.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

QString file(const QByteArray& theName)
{
    return u"" VX_SOURCE_DIR "/tests/fuzz/corpus/certificate_bundle/"_s +
           QString::fromUtf8(theName);
}

} // namespace

class tst_VXCertificateBundle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCertificateOfTheFileIsRead();
    void whatIsNoCertificateIsPassedOver_data();
    void whatIsNoCertificateIsPassedOver();
    void aMissingFileHasNone();
    void aListKeepsItsOrderAndEachOnce();
};

void tst_VXCertificateBundle::everyCertificateOfTheFileIsRead()
{
    const QList<QSslCertificate> read = VXCertificateBundle::read(file("two"_ba));
    QCOMPARE(read.size(), 2);
    QCOMPARE(read.at(0).subjectInfo(QSslCertificate::CommonName), QStringList{u"fuzz"_s});
    QCOMPARE(read.at(1).subjectInfo(QSslCertificate::CommonName), QStringList{u"b"_s});
}

void tst_VXCertificateBundle::whatIsNoCertificateIsPassedOver_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("count");

    QTest::newRow("empty") << "empty"_ba << 0;
    QTest::newRow("noise") << "noise"_ba << 0;
    QTest::newRow("nothing inside") << "nothing-inside"_ba << 0;
    QTest::newRow("cut short") << "short"_ba << 0;
    QTest::newRow("line ends of another system") << "crlf"_ba << 1;
}

void tst_VXCertificateBundle::whatIsNoCertificateIsPassedOver()
{
    QFETCH(QByteArray, name);
    QFETCH(int, count);

    QCOMPARE(VXCertificateBundle::read(file(name)).size(), count);
}

void tst_VXCertificateBundle::aMissingFileHasNone()
{
    QCOMPARE(VXCertificateBundle::read(u"/nowhere/bundle.pem"_s).size(), 0);
}

void tst_VXCertificateBundle::aListKeepsItsOrderAndEachOnce()
{
    const QList<QSslCertificate> two = VXCertificateBundle::read(file("two"_ba));
    const QList<QSslCertificate> twice = VXCertificateBundle::read(file("same-twice"_ba));
    QCOMPARE(two.size(), 2);
    QCOMPARE(twice.size(), 2);

    const QList<QSslCertificate> second{two.at(1)};
    QCOMPARE(VXCertificateBundle::merged(second, two),
             (QList<QSslCertificate>{two.at(1), two.at(0)}));
    QCOMPARE(VXCertificateBundle::merged({}, twice), QList<QSslCertificate>{two.at(0)});
}

VX_TEST_MAIN(QCoreApplication, tst_VXCertificateBundle)

#include "tst_VXCertificateBundle.moc"
