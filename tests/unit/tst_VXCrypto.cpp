#include <VXCore/VXCrypto.h>
#include <VXCore/VXDeploymentConfig.h>

#include "VXCoreProcess.h"
#include "VXFileContent.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include <atomic>
#include <numeric>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions foreign = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                       QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

QByteArray countingKey()
{
    QByteArray key(32, '\0');
    std::iota(key.begin(), key.end(), 0);
    return key;
}

QString keyFile()
{
    return VXDeploymentConfig::instance()->text(u"Crypto/keyFile"_s);
}

void setKeyFile(const QString& theFile)
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Crypto/keyFile"_s, theFile));
}

} // namespace

class tst_VXCrypto : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void textComesBack_data();
    void textComesBack();
    void sameTextGivesTheSameCipher();
    void cipherIsAesSivOfTheDerivedKey_data();
    void cipherIsAesSivOfTheDerivedKey();
    void cipherFitsSettingsFiles();
    void cipherDoesNotShowTheText();
    void emptyCipherIsTheEmptyText();
    void changedCipherGivesNothing();
    void cutCipherGivesNothing();
    void foreignKeyGivesNothing();
    void garbageGivesNothing_data();
    void garbageGivesNothing();
    void oldFormIsRead_data();
    void oldFormIsRead();
    void oldFormNeedsItsKey();
    void keyOfAnotherLengthIsRefused();
    void keyFileLiesBesideTheSettings();
    void keyFileIsForItsOwnerOnly();
    void keyFileOpenToOthersIsClosed();
    void otherProcessReadsTheCipher();
    void processesThatStartTogetherAgreeOnTheKey();
    void unusableKeyFileIsPutAside();
    void keyWithoutAFileLastsAsLongAsTheProcess();
    void threadsMayWorkAtOnce();

private:
    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_VXCrypto::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    VXDeploymentConfig* deployment = VXDeploymentConfig::instance();
    QVERIFY(deployment->setValue(u"Paths/settingsFile"_s, myFolder->filePath(u"settings.ini"_s)));
    setKeyFile(myFolder->filePath(u"crypto.key"_s));
    QVERIFY(deployment->setValue(u"Crypto/legacyDesKey"_s, u"0123456789abcdef"_s));
}

void tst_VXCrypto::textComesBack_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << u""_s;
    QTest::newRow("one letter") << u"a"_s;
    QTest::newRow("4 KB") << QString(4096, u'x');
    QTest::newRow("umlauts") << u"Größe"_s;
    QTest::newRow("emoji") << u"😀🔑"_s;
    QTest::newRow("lone surrogate") << QString(QChar(0xd83d));
    QTest::newRow("NUL") << u"a\0b"_s;
    QTest::newRow("looks enciphered") << u"$2$abc"_s;
}

void tst_VXCrypto::textComesBack()
{
    QFETCH(QString, text);
    const VXCrypto crypto;
    QCOMPARE(crypto.decryptDES(crypto.encryptDES(text)), text);
}

void tst_VXCrypto::sameTextGivesTheSameCipher()
{
    QCOMPARE(VXCrypto().encryptDES(u"geheim"_s), VXCrypto().encryptDES(u"geheim"_s));
    QVERIFY(VXCrypto().encryptDES(u"geheim"_s) != VXCrypto().encryptDES(u"geheiM"_s));
}

// Made with another implementation: Python's "cryptography", AESSIV and HKDF.
void tst_VXCrypto::cipherIsAesSivOfTheDerivedKey_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cipher");

    QTest::newRow("empty") << u""_s << u"$2$Uty1B9u6OBzH6AL6Ekk8zpg"_s;
    QTest::newRow("word") << u"geheim"_s << u"$2$RjZu2hRvmmFIRldrK3aU9BV3Jmy3IJFOcLxftko"_s;
}

void tst_VXCrypto::cipherIsAesSivOfTheDerivedKey()
{
    QFETCH(QString, text);
    QFETCH(QString, cipher);
    VXCrypto crypto;
    crypto.setKey(countingKey());
    QCOMPARE(crypto.encryptDES(text), cipher);
    QCOMPARE(crypto.decryptDES(cipher), text);
}

void tst_VXCrypto::cipherFitsSettingsFiles()
{
    static const QRegularExpression allowed(u"^\\$2\\$[A-Za-z0-9_-]+$"_s);
    for (int length = 0; length < 70; ++length)
        QVERIFY(allowed.match(VXCrypto().encryptDES(QString(length, u'ü'))).hasMatch());
}

void tst_VXCrypto::cipherDoesNotShowTheText()
{
    const QByteArray cipher = QByteArray::fromBase64(
        VXCrypto().encryptDES(u"geheim"_s).sliced(3).toLatin1(), QByteArray::Base64UrlEncoding);
    QVERIFY(!cipher.contains("geheim"));
    QVERIFY(!cipher.contains(QByteArray("g\0e\0h\0", 6)));
}

void tst_VXCrypto::emptyCipherIsTheEmptyText()
{
    QCOMPARE(VXCrypto().decryptDES(u""_s), u""_s);
}

void tst_VXCrypto::changedCipherGivesNothing()
{
    VXCrypto crypto;
    crypto.setKey(countingKey());
    const QByteArray sealed = QByteArray::fromBase64(
        crypto.encryptDES(u"geheim"_s).sliced(3).toLatin1(), QByteArray::Base64UrlEncoding);
    for (qsizetype bit = 0; bit < sealed.size() * 8; ++bit) {
        QByteArray changed = sealed;
        changed[bit / 8] = static_cast<char>(changed.at(bit / 8) ^ (1 << (bit % 8)));
        const QString cipher =
            u"$2$"_s + QString::fromLatin1(changed.toBase64(QByteArray::Base64UrlEncoding |
                                                            QByteArray::OmitTrailingEquals));
        QVERIFY2(crypto.decryptDES(cipher).isEmpty(), qPrintable(cipher));
    }
}

void tst_VXCrypto::cutCipherGivesNothing()
{
    const QString cipher = VXCrypto().encryptDES(u"geheim"_s);
    for (qsizetype length = 0; length < cipher.size(); ++length)
        QCOMPARE(VXCrypto().decryptDES(cipher.first(length)), QString());
}

void tst_VXCrypto::foreignKeyGivesNothing()
{
    const QString cipher = VXCrypto().encryptDES(u"geheim"_s);
    VXCrypto other;
    other.setKey(countingKey());
    QCOMPARE(other.decryptDES(cipher), QString());
}

void tst_VXCrypto::garbageGivesNothing_data()
{
    QTest::addColumn<QString>("cipher");

    QTest::newRow("word") << u"garbage"_s;
    QTest::newRow("prefix only") << u"$2$"_s;
    QTest::newRow("no base64") << u"$2$!!!!"_s;
    QTest::newRow("tag only") << u"$2$AAAAAAAAAAAAAAAAAAAAAA"_s;
    QTest::newRow("other prefix") << u"$3$AAAAAAAAAAAAAAAAAAAAAA"_s;
    QTest::newRow("foreign letters") << u"ÄÖÜ😀"_s;
    QTest::newRow("NUL") << QString(QChar::Null);
    QTest::newRow("one byte of the old form") << u"AA=="_s;
    QTest::newRow("wrong padding of the old form") << u"AAAAAAAAAAA="_s;
    QTest::newRow("1 MB") << u"$2$"_s + QString(1024 * 1024, u'A');
}

void tst_VXCrypto::garbageGivesNothing()
{
    QFETCH(QString, cipher);
    QCOMPARE(VXCrypto().decryptDES(cipher), QString());
}

// Made by "openssl enc -des-cbc -provider legacy -K 0123456789abcdef -iv 0000000000000000 -base64".
void tst_VXCrypto::oldFormIsRead_data()
{
    QTest::addColumn<QString>("cipher");
    QTest::addColumn<QString>("text");

    QTest::newRow("one block") << u"pu21U2V4jTE="_s << u"geheim"_s;
    QTest::newRow("two blocks, UTF-8") << u"4vM8uTrbCXRjNM8WNOFZrQ=="_s << u"Pässwörd€"_s;
    QTest::newRow("empty text") << u"CG+aHXTJTU4="_s << u""_s;
    QTest::newRow("no UTF-8") << u"MS3YYiaugeo="_s << u""_s;
}

void tst_VXCrypto::oldFormIsRead()
{
    QFETCH(QString, cipher);
    QFETCH(QString, text);
    QCOMPARE(VXCrypto().decryptDES(cipher), text);
}

void tst_VXCrypto::oldFormNeedsItsKey()
{
    VXDeploymentConfig* deployment = VXDeploymentConfig::instance();
    for (const QString& key : {u""_s, u"fedcba9876543210"_s}) {
        QVERIFY(deployment->setValue(u"Crypto/legacyDesKey"_s, key));
        QCOMPARE(VXCrypto().decryptDES(u"pu21U2V4jTE="_s), QString());
    }
}

void tst_VXCrypto::keyOfAnotherLengthIsRefused()
{
    VXCrypto crypto;
    const QString before = crypto.encryptDES(u"a"_s);
    QTest::ignoreMessage(QtWarningMsg, "VXCrypto: a key has 32 bytes");
    crypto.setKey(QByteArray(31, 'k'));
    QCOMPARE(crypto.encryptDES(u"a"_s), before);
}

void tst_VXCrypto::keyFileLiesBesideTheSettings()
{
    QCOMPARE(answerOfOtherProcess({u"encrypt"_s, u"a"_s}).first(3), u"$2$"_s);
    const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/tst_VXCrypto"_L1;
    QCOMPARE(VXFileContent::of(folder + "/crypto.key"_L1).size(), 32);
}

void tst_VXCrypto::keyFileIsForItsOwnerOnly()
{
    setKeyFile(myFolder->filePath(u"new/folder/key"_s));
    QVERIFY(!VXCrypto().encryptDES(u"a"_s).isEmpty());
    QCOMPARE(VXFileContent::of(keyFile()).size(), 32);
    QCOMPARE(QFile::permissions(keyFile()) & foreign, QFile::Permissions());
}

void tst_VXCrypto::keyFileOpenToOthersIsClosed()
{
    const QString cipher = VXCrypto().encryptDES(u"a"_s);
    QVERIFY(
        QFile::setPermissions(keyFile(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    QCOMPARE(VXCrypto().decryptDES(cipher), u"a"_s);
    QCOMPARE(QFile::permissions(keyFile()) & foreign, QFile::Permissions());
}

void tst_VXCrypto::otherProcessReadsTheCipher()
{
    const QString cipher = answerOfOtherProcess({u"encrypt"_s, u"geheim"_s});
    QVERIFY(!cipher.contains(u"geheim"_s));
    QCOMPARE(answerOfOtherProcess({u"decrypt"_s, cipher}), u"geheim"_s);
}

void tst_VXCrypto::processesThatStartTogetherAgreeOnTheKey()
{
    VXFileContent::write(myFolder->filePath(u"d.ini"_s), "[Crypto]\nkeyFile=shared.key\n");
    qputenv("VX_DEPLOYMENT_CONFIG", myFolder->filePath(u"d.ini"_s).toLocal8Bit());
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int number = 0; number < 6; ++number) {
        processes.push_back(std::make_unique<QProcess>());
        processes.back()->start(QCoreApplication::applicationDirPath() + "/VXCoreChild"_L1,
                                {u"x"_s, u"encrypt"_s, u"geheim"_s});
    }
    QStringList answers;
    for (const auto& process : processes) {
        QVERIFY(process->waitForFinished());
        answers += QString::fromUtf8(process->readAllStandardOutput());
    }
    qunsetenv("VX_DEPLOYMENT_CONFIG");
    QVERIFY(answers.constFirst().startsWith(u"$2$"_s));
    QCOMPARE(answers.removeDuplicates(), 5);
}

void tst_VXCrypto::unusableKeyFileIsPutAside()
{
    VXFileContent::write(keyFile(), "short");
    const QString cipher = VXCrypto().encryptDES(u"a"_s);
    QCOMPARE(VXCrypto().decryptDES(cipher), u"a"_s);
    QCOMPARE(VXFileContent::of(keyFile()).size(), 32);
    QCOMPARE(VXFileContent::of(keyFile() + ".unusable"_L1), "short");
}

void tst_VXCrypto::keyWithoutAFileLastsAsLongAsTheProcess()
{
    VXFileContent::write(myFolder->filePath(u"file"_s), "x");
    setKeyFile(myFolder->filePath(u"file/key"_s)); // no folder can be there
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(keyFile() +
                                    u": no place for a key; stored passwords will not be readable "
                                    "later"_s));
    const QString cipher = VXCrypto().encryptDES(u"geheim"_s);
    QVERIFY(cipher.startsWith(u"$2$"_s));
    QCOMPARE(VXCrypto().decryptDES(cipher), u"geheim"_s);
}

void tst_VXCrypto::threadsMayWorkAtOnce()
{
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&failures, thread] {
            const VXCrypto crypto;
            for (int number = 0; number < 100; ++number) {
                const QString text = u"%1-%2"_s.arg(thread).arg(number);
                if (crypto.decryptDES(crypto.encryptDES(text)) != text)
                    ++failures;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(failures.load(), 0);
}

VX_TEST_MAIN(QCoreApplication, tst_VXCrypto)

#include "tst_VXCrypto.moc"
