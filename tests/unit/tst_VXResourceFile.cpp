#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXResourceFile.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXResourceFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bundleIsKindBit27();
    void bundleIsTheFileOfTheDeployment();
    void unknownKindIsNoFile();
};

void tst_VXResourceFile::bundleIsKindBit27()
{
    QCOMPARE(static_cast<int>(ResourceFileCaBundle), 134217728);
    QCOMPARE(static_cast<int>(ResourceFileCaBundle), 1 << 27);
    QVERIFY(VXResourceFile(ResourceFileCaBundle)
                .fileInfo()
                .absoluteFilePath()
                .endsWith(u"/assets/ca-bundle.pem"_s));
}

void tst_VXResourceFile::bundleIsTheFileOfTheDeployment()
{
    QVERIFY(
        VXDeploymentConfig::instance()->setValue(u"Resources/caBundle"_s, u"/nowhere/ca.pem"_s));
    const QFileInfo file = VXResourceFile(ResourceFileCaBundle).fileInfo();
    QCOMPARE(file.absoluteFilePath(), u"/nowhere/ca.pem"_s);
    QVERIFY(!file.exists());
}

void tst_VXResourceFile::unknownKindIsNoFile()
{
    QCOMPARE(VXResourceFile(static_cast<VXResourceFileTypeEnum>(1)).fileInfo().filePath(),
             QString());
}

VX_TEST_MAIN(QCoreApplication, tst_VXResourceFile)

#include "tst_VXResourceFile.moc"
