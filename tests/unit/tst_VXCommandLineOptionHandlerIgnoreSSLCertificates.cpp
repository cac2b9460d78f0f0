#include <VXNetworking/VXCommandLineOptionHandlerIgnoreSSLCertificates.h>

#include "VXTestMain.h"
#include "VXTlsPeer.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXCommandLineOptionHandlerIgnoreSSLCertificates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { VXNetworkAccessManager::setValidateSslCertificate(true); }
    void cleanup() { VXNetworkAccessManager::setValidateSslCertificate(true); }

    void makingItChangesNothing();
    void useSwitchesTheCheckOff_data();
    void useSwitchesTheCheckOff();
    void laterRequestsAcceptABadCertificate();
};

void tst_VXCommandLineOptionHandlerIgnoreSSLCertificates::makingItChangesNothing()
{
    const VXCommandLineOptionHandlerIgnoreSSLCertificates handler;
    QVERIFY(VXNetworkAccessManager::validateSslCertificate());
}

void tst_VXCommandLineOptionHandlerIgnoreSSLCertificates::useSwitchesTheCheckOff_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("no value") << QString();
    QTest::newRow("a value that says no") << u"false"_s;
}

void tst_VXCommandLineOptionHandlerIgnoreSSLCertificates::useSwitchesTheCheckOff()
{
    QFETCH(QString, value);
    VXCommandLineOptionHandlerIgnoreSSLCertificates().optionUsed(value);
    QVERIFY(!VXNetworkAccessManager::validateSslCertificate());
}

void tst_VXCommandLineOptionHandlerIgnoreSSLCertificates::laterRequestsAcceptABadCertificate()
{
    VXTestCertificates certificates;
    VXTlsPeer peer(certificates.selfSigned());
    peer.setAnswer(VXRawAnswer::http(200, "Hallo"));
    const auto get = [&peer] {
        VXHttpOperation operation =
            VXHttpOperation::create(peer.url(), QNetworkAccessManager::GetOperation);
        return operation.exec();
    };
    QCOMPARE(get(), QByteArray());
    QVERIFY(peer.requests().isEmpty());
    VXCommandLineOptionHandlerIgnoreSSLCertificates().optionUsed(QString());
    QCOMPARE(get(), QByteArray("Hallo"));
}

VX_TEST_MAIN(QCoreApplication, tst_VXCommandLineOptionHandlerIgnoreSSLCertificates)

#include "tst_VXCommandLineOptionHandlerIgnoreSSLCertificates.moc"
