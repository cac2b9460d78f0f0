#include <VXNetworking/VXCredentials.h>

#include <VXCore/VXCrypto.h>
#include <VXCore/VXEncoder.h>
#include <VXCore/VXSettings.h>
#include <VXCore/VXSettingsLock.h>
#include <VXCore/VXSingleton.h>

#include "VXFileSizeLimit.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr auto group = "Cloud";

QDateTime inDays(int theDays)
{
    return QDateTime::currentDateTime().addDays(theDays);
}

VXCredentials weak(int theDays = 10)
{
    return VXCredentials(u"karl"_s, u"token-1"_s, inDays(theDays));
}

void store(const QString& theKey, const QString& theValue)
{
    const VXSettingsLock lock;
    VXSettings settings;
    settings.beginGroup(QString::fromLatin1(group));
    settings.writeEntry(theKey, theValue);
}

bool has(const QString& theKey)
{
    VXSettings settings;
    settings.beginGroup(QString::fromLatin1(group));
    return settings.doesEntryExist(theKey);
}

QString stored(const QString& theKey)
{
    VXSettings settings;
    settings.beginGroup(QString::fromLatin1(group));
    return settings.value(theKey, QString()).toString();
}

} // namespace

class tst_VXCredentials : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aFreshRecordIsEmpty();
    void aPasswordIsHeldEncipheredOnly();
    void anEmptyPasswordIsEncipheredToo();
    void extrasAreToldByTheirPresence();
    void theRecordIsStrongWithNameAndPassword();
    void aTokenNeedsTwoCalendarDays_data();
    void aTokenNeedsTwoCalendarDays();
    void daysAreThoseOfTheCalendar();
    void aTokenWithoutTimeoutIsInvalid();
    void clearLeavesTimeoutAndExtras();
    void strippedForRefreshKeepsNameTokenAndTimeout();
    void extrasTakeNoPartInTheComparison();
    void everythingElseDoes();
    void aDeepLinkIsReadPrettyDecoded();
    void aDeepLinkWithoutQueryGivesAnEmptyRecord();
    void aValidTokenDrivesTheStoredPasswordOut();
    void aPasswordKeepsStaleTokenEntries();
    void neitherRemovesAllButTheName();
    void extrasAreNeverStored();
    void aStoredTokenIsLoadedAndThePasswordNotLookedAt();
    void anEmptyStoredTokenCountsToo();
    void aStoredPasswordIsLoadedUnchanged();
    void theOldPasswordIsMigrated();
    void theOldPasswordStaysUntilTheNewFormIsStored();
    void anEmptyGroupIsMigratedToo();
    void aMalformedTimeoutGivesTheEpoch();
    void fieldsThatAreNotReadKeepTheirValues();
    void groupsOfTwoThreadsDoNotMix();
};

void tst_VXCredentials::init()
{
    const VXSettingsLock lock;
    VXSettings settings;
    settings.beginGroup(QString::fromLatin1(group));
    for (const char* key : {"username", "refreshToken", "refreshTimeout", "pwd", "password"})
        settings.deleteEntry(QString::fromLatin1(key));
}

void tst_VXCredentials::aFreshRecordIsEmpty()
{
    const VXCredentials credentials;
    QVERIFY(!credentials.hasUserName());
    QVERIFY(!credentials.hasPassword());
    QVERIFY(credentials.encryptedPassword().isEmpty());
    QVERIFY(credentials.refreshTimeout().isNull());
    QVERIFY(!credentials.isValid());
}

void tst_VXCredentials::aPasswordIsHeldEncipheredOnly()
{
    VXCredentials credentials(u"karl"_s, u"geheim"_s);
    QVERIFY(!credentials.encryptedPassword().contains(u"geheim"_s));
    QCOMPARE(credentials.password(), u"geheim"_s);
    QCOMPARE(credentials.encryptedPassword(), VXCrypto().encryptDES(u"geheim"_s));
    credentials.setPassword(u"anders"_s);
    QCOMPARE(credentials.decrypt(credentials.encryptedPassword()), u"anders"_s);
    credentials.setEncryptedPassword(credentials.encrypt(u"dritte"_s));
    QCOMPARE(credentials.password(), u"dritte"_s);
}

void tst_VXCredentials::anEmptyPasswordIsEncipheredToo()
{
    const VXCredentials credentials(u"karl"_s, QString());
    QCOMPARE(credentials.encryptedPassword(), VXCrypto().encryptDES(QString()));
    QVERIFY(!credentials.hasPassword());
    QVERIFY(!credentials.isStrong());
}

void tst_VXCredentials::extrasAreToldByTheirPresence()
{
    VXCredentials credentials;
    QVERIFY(!credentials.hasAuthOnceToken());
    QVERIFY(!credentials.hasTwoFactorAuthentificationCode());
    credentials.setAuthOnceToken(u"once"_s);
    credentials.setTwoFactorAuthentificationCode(u"123456"_s);
    QVERIFY(credentials.hasAuthOnceToken());
    QVERIFY(credentials.hasTwoFactorAuthentificationCode());
    QCOMPARE(credentials.authOnceToken(), u"once"_s);
    QCOMPARE(credentials.twoFactorAuthentificationCode(), u"123456"_s);
}

void tst_VXCredentials::theRecordIsStrongWithNameAndPassword()
{
    QVERIFY(VXCredentials(u"karl"_s, u"geheim"_s).isStrong());
    QVERIFY(VXCredentials(u"karl"_s, u"geheim"_s).isValid());
    QVERIFY(!VXCredentials(QString(), u"geheim"_s).isStrong());
    QVERIFY(!VXCredentials(u"karl"_s, u"geheim"_s).isWeak());
}

void tst_VXCredentials::aTokenNeedsTwoCalendarDays_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<bool>("expected");

    QTest::newRow("yesterday") << -1 << false;
    QTest::newRow("today") << 0 << false;
    QTest::newRow("exactly one day ahead") << 1 << false;
    QTest::newRow("two days ahead") << 2 << true;
}

void tst_VXCredentials::aTokenNeedsTwoCalendarDays()
{
    QFETCH(int, days);
    QFETCH(bool, expected);

    const VXCredentials credentials = weak(days);
    QCOMPARE(credentials.refreshTokenIsValid(), expected);
    QCOMPARE(credentials.isWeak(), expected);
    QCOMPARE(credentials.isValid(), expected);
}

/// Neither 24 nor 48 hours decide.
void tst_VXCredentials::daysAreThoseOfTheCalendar()
{
    const QDate today = QDate::currentDate();
    const QDateTime lateTomorrow(today.addDays(1), QTime(23, 59, 59, 999));
    QVERIFY(!VXCredentials(u"karl"_s, u"token"_s, lateTomorrow).isWeak());
    const QDateTime theDayAfter = today.addDays(2).startOfDay();
    QVERIFY(VXCredentials(u"karl"_s, u"token"_s, theDayAfter).isWeak());
}

void tst_VXCredentials::aTokenWithoutTimeoutIsInvalid()
{
    QVERIFY(!VXCredentials(u"karl"_s, u"token"_s, QDateTime()).isWeak());
    QVERIFY(!VXCredentials(u"karl"_s, QString(), inDays(10)).isWeak());
    QVERIFY(!VXCredentials(QString(), u"token"_s, inDays(10)).isWeak());
}

void tst_VXCredentials::clearLeavesTimeoutAndExtras()
{
    VXCredentials credentials = weak();
    const QDateTime timeout = credentials.refreshTimeout();
    credentials.setPassword(u"geheim"_s);
    credentials.setAuthOnceToken(u"once"_s);
    credentials.setTwoFactorAuthentificationCode(u"123456"_s);
    credentials.clear();
    QVERIFY(credentials.username().isEmpty());
    QVERIFY(credentials.encryptedPassword().isEmpty());
    QVERIFY(credentials.refreshToken().isEmpty());
    QCOMPARE(credentials.refreshTimeout(), timeout);
    QCOMPARE(credentials.authOnceToken(), u"once"_s);
    QCOMPARE(credentials.twoFactorAuthentificationCode(), u"123456"_s);
}

void tst_VXCredentials::strippedForRefreshKeepsNameTokenAndTimeout()
{
    VXCredentials credentials = weak();
    credentials.setPassword(u"geheim"_s);
    credentials.setAuthOnceToken(u"once"_s);
    credentials.setTwoFactorAuthentificationCode(u"123456"_s);
    const VXCredentials stripped = credentials.strippedForRefresh();
    QCOMPARE(stripped.username(), u"karl"_s);
    QCOMPARE(stripped.refreshToken(), u"token-1"_s);
    QCOMPARE(stripped.refreshTimeout(), credentials.refreshTimeout());
    QVERIFY(stripped.encryptedPassword().isEmpty());
    QVERIFY(!stripped.hasAuthOnceToken());
    QVERIFY(!stripped.hasTwoFactorAuthentificationCode());
}

void tst_VXCredentials::extrasTakeNoPartInTheComparison()
{
    const VXCredentials one = weak();
    VXCredentials other = one;
    other.setAuthOnceToken(u"once"_s);
    other.setTwoFactorAuthentificationCode(u"123456"_s);
    QVERIFY(one == other);
}

void tst_VXCredentials::everythingElseDoes()
{
    const VXCredentials one = weak();
    VXCredentials other = one;
    other.setUsername(u"Karl"_s);
    QVERIFY(one != other);
    other = one;
    other.setPassword(u"geheim"_s);
    QVERIFY(one != other);
    other = one;
    other.setRefreshToken(u"token-2"_s);
    QVERIFY(one != other);
    other = one;
    other.setRefreshTimeout(one.refreshTimeout().addMSecs(1));
    QVERIFY(one != other);
}

void tst_VXCredentials::aDeepLinkIsReadPrettyDecoded()
{
    const auto credentials = VXCredentials::fromZelDeeplink(
        QUrl(u"tov://login?login=M%C3%BCller%20x&zelAuthOnceToken=a1B2"_s));
    QCOMPARE(credentials.username(), u"Müller x"_s);
    QCOMPARE(credentials.authOnceToken(), u"a1B2"_s);
    // The pretty form leaves the sign encoded; links carry it as it is.
    QCOMPARE(VXCredentials::fromZelDeeplink(QUrl(u"tov://login?login=a%40x.de"_s)).username(),
             u"a%40x.de"_s);
    QCOMPARE(VXCredentials::fromZelDeeplink(QUrl(u"tov://login?login=a@x.de"_s)).username(),
             u"a@x.de"_s);
}

void tst_VXCredentials::aDeepLinkWithoutQueryGivesAnEmptyRecord()
{
    const auto credentials = VXCredentials::fromZelDeeplink(QUrl(u"tov://login"_s));
    QVERIFY(credentials.username().isEmpty());
    QVERIFY(!credentials.hasAuthOnceToken());
    QCOMPARE(credentials.encryptedPassword(), VXCrypto().encryptDES(QString()));
    QVERIFY(!credentials.isValid());
}

void tst_VXCredentials::aValidTokenDrivesTheStoredPasswordOut()
{
    store(u"pwd"_s, u"alt"_s);
    VXCredentials credentials = weak();
    credentials.setPassword(u"geheim"_s);
    credentials.save(QString::fromLatin1(group));
    QVERIFY(!has(u"pwd"_s));
    QCOMPARE(stored(u"username"_s), u"karl"_s);
    QCOMPARE(stored(u"refreshToken"_s), u"token-1"_s);
    QCOMPARE(stored(u"refreshTimeout"_s),
             QString::number(credentials.refreshTimeout().toMSecsSinceEpoch()));
}

void tst_VXCredentials::aPasswordKeepsStaleTokenEntries()
{
    store(u"refreshToken"_s, u"alt"_s);
    store(u"refreshTimeout"_s, u"1"_s);
    VXCredentials credentials = weak(1);
    credentials.setPassword(u"geheim"_s);
    credentials.save(QString::fromLatin1(group));
    QCOMPARE(stored(u"pwd"_s), credentials.encryptedPassword());
    QCOMPARE(stored(u"refreshToken"_s), u"alt"_s);
    QCOMPARE(stored(u"refreshTimeout"_s), u"1"_s);

    QFile file(VXSettings::storeFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(!file.readAll().contains("geheim"));
}

void tst_VXCredentials::neitherRemovesAllButTheName()
{
    store(u"pwd"_s, u"alt"_s);
    store(u"refreshToken"_s, u"alt"_s);
    store(u"refreshTimeout"_s, u"1"_s);
    VXCredentials(u"karl"_s, QString()).save(QString::fromLatin1(group));
    QVERIFY(!has(u"pwd"_s));
    QVERIFY(!has(u"refreshToken"_s));
    QVERIFY(!has(u"refreshTimeout"_s));
    QCOMPARE(stored(u"username"_s), u"karl"_s);
}

void tst_VXCredentials::extrasAreNeverStored()
{
    VXCredentials credentials = weak();
    credentials.setAuthOnceToken(u"once-token"_s);
    credentials.setTwoFactorAuthentificationCode(u"987654"_s);
    credentials.save(QString::fromLatin1(group));
    QFile file(VXSettings::storeFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY(text.contains("token-1"));
    QVERIFY(!text.contains("once-token"));
    QVERIFY(!text.contains("987654"));
}

void tst_VXCredentials::aStoredTokenIsLoadedAndThePasswordNotLookedAt()
{
    store(u"username"_s, u"karl"_s);
    store(u"refreshToken"_s, u"token-1"_s);
    store(u"refreshTimeout"_s, u"1700000000123"_s);
    store(u"pwd"_s, u"alt"_s);
    store(u"password"_s, u"noch älter"_s);
    VXCredentials credentials;
    credentials.load(QString::fromLatin1(group));
    QCOMPARE(credentials.username(), u"karl"_s);
    QCOMPARE(credentials.refreshToken(), u"token-1"_s);
    QCOMPARE(credentials.refreshTimeout().toMSecsSinceEpoch(), 1700000000123);
    QVERIFY(credentials.encryptedPassword().isEmpty());
    QVERIFY(has(u"password"_s));
}

/// That the entry is there decides, and not what it holds.
void tst_VXCredentials::anEmptyStoredTokenCountsToo()
{
    store(u"refreshToken"_s, QString());
    store(u"refreshTimeout"_s, u"1700000000123"_s);
    store(u"pwd"_s, u"alt"_s);
    VXCredentials credentials;
    credentials.load(QString::fromLatin1(group));
    QCOMPARE(credentials.refreshTimeout().toMSecsSinceEpoch(), 1700000000123);
    QVERIFY(credentials.encryptedPassword().isEmpty());
    QVERIFY(!credentials.isValid());
}

void tst_VXCredentials::aStoredPasswordIsLoadedUnchanged()
{
    store(u"pwd"_s, u"was auch immer"_s);
    VXCredentials credentials;
    credentials.load(QString::fromLatin1(group));
    QCOMPARE(credentials.encryptedPassword(), u"was auch immer"_s);
}

void tst_VXCredentials::theOldPasswordIsMigrated()
{
    store(u"password"_s, VXEncoder::encodeString(u"altes Paßwort"_s));
    VXCredentials credentials;
    credentials.load(QString::fromLatin1(group));
    QCOMPARE(credentials.password(), u"altes Paßwort"_s);
    QVERIFY(!has(u"password"_s));
    QCOMPARE(stored(u"pwd"_s), credentials.encryptedPassword());
}

void tst_VXCredentials::theOldPasswordStaysUntilTheNewFormIsStored()
{
    store(u"password"_s, VXEncoder::encodeString(u"altes Paßwort"_s));
    VXCredentials credentials;
    {
        // Room for a file that loses an entry, none for one that gets another.
        const VXFileSizeLimit limit(QFileInfo(VXSettings::storeFile()).size() + 4096);
        credentials.load(QString::fromLatin1(group));
    }
    QCOMPARE(credentials.password(), u"altes Paßwort"_s);
    QVERIFY(has(u"password"_s));
    QVERIFY(!has(u"pwd"_s));
}

void tst_VXCredentials::anEmptyGroupIsMigratedToo()
{
    VXCredentials credentials;
    credentials.load(QString::fromLatin1(group));
    QCOMPARE(stored(u"pwd"_s), VXCrypto().encryptDES(QString()));
    QVERIFY(!credentials.hasPassword());
}

void tst_VXCredentials::aMalformedTimeoutGivesTheEpoch()
{
    for (const QString& text : {u"bald"_s, u"1.7e12"_s, u""_s, u"0x12"_s}) {
        store(u"refreshToken"_s, u"token-1"_s);
        store(u"refreshTimeout"_s, text);
        VXCredentials credentials;
        credentials.load(QString::fromLatin1(group));
        QCOMPARE(credentials.refreshTimeout(), QDateTime::fromMSecsSinceEpoch(0));
        QVERIFY(!credentials.refreshTokenIsValid());
    }
}

void tst_VXCredentials::fieldsThatAreNotReadKeepTheirValues()
{
    store(u"pwd"_s, u"neu"_s);
    VXCredentials credentials = weak();
    credentials.setAuthOnceToken(u"once"_s);
    credentials.load(QString::fromLatin1(group));
    QCOMPARE(credentials.refreshToken(), u"token-1"_s);
    QCOMPARE(credentials.authOnceToken(), u"once"_s);
    QCOMPARE(credentials.encryptedPassword(), u"neu"_s);
}

void tst_VXCredentials::groupsOfTwoThreadsDoNotMix()
{
    const auto saveOften = [](const QString& theName) {
        for (int i = 0; i < 50; ++i)
            VXCredentials(theName, u"geheim"_s).save(theName);
    };
    std::thread first(saveOften, u"GroupA"_s);
    std::thread second(saveOften, u"GroupB"_s);
    first.join();
    second.join();
    for (const QString& name : {u"GroupA"_s, u"GroupB"_s}) {
        VXCredentials credentials;
        credentials.load(name);
        QCOMPARE(credentials.username(), name);
    }
}

VX_TEST_MAIN(QCoreApplication, tst_VXCredentials)

#include "tst_VXCredentials.moc"
