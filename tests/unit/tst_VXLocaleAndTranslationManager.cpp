#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXLocaleAndTranslationManager.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

void setLanguage(const QString& theTag)
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Program/language"_s, theTag));
}

} // namespace

class tst_VXLocaleAndTranslationManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameIsThatOfTheDeployment_data();
    void nameIsThatOfTheDeployment();
    void withoutALanguageTheTextsStayGerman();
    void germanBringsQtsOwnCatalogue();
    void englishBringsTheOwnCatalogue_data();
    void englishBringsTheOwnCatalogue();
    void languageWithoutCatalogueIsNoHarm();
};

void tst_VXLocaleAndTranslationManager::nameIsThatOfTheDeployment_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("name");

    QTest::newRow("language") << u"de"_s << u"de"_s;
    QTest::newRow("with country") << u"en-GB"_s << u"en-GB"_s;
    QTest::newRow("with underscore") << u"de_AT"_s << u"de-AT"_s;
    QTest::newRow("with script") << u"zh-Hant-TW"_s << u"zh-TW"_s;
}

void tst_VXLocaleAndTranslationManager::nameIsThatOfTheDeployment()
{
    QFETCH(QString, tag);
    QFETCH(QString, name);
    setLanguage(tag);
    QCOMPARE(VXLocaleAndTranslationManager::instance()->bcp47Name(), name);
}

void tst_VXLocaleAndTranslationManager::germanBringsQtsOwnCatalogue()
{
    setLanguage(u"de"_s);
    QVERIFY2(VXLocaleAndTranslationManager::instance()->installTranslators(),
             "Qt's catalogues are missing: qt6-translations-l10n");
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"Abbrechen"_s);
}

// The process runs in the "C" locale.
void tst_VXLocaleAndTranslationManager::withoutALanguageTheTextsStayGerman()
{
    const VXDeploymentConfig untouched;
    QCOMPARE(untouched.text(u"Program/language"_s), u"de"_s);
}

void tst_VXLocaleAndTranslationManager::englishBringsTheOwnCatalogue_data()
{
    QTest::addColumn<QString>("tag");

    QTest::newRow("language") << u"en"_s;
    QTest::newRow("Great Britain") << u"en-GB"_s;
    QTest::newRow("United States") << u"en_US"_s;
}

void tst_VXLocaleAndTranslationManager::englishBringsTheOwnCatalogue()
{
    QFETCH(QString, tag);
    setLanguage(tag);
    QVERIFY(VXLocaleAndTranslationManager::instance()->installTranslators());
    QCOMPARE(QCoreApplication::translate("VXRequest", "Achtung"), u"Warning"_s);
    setLanguage(u"de"_s);
    QVERIFY(VXLocaleAndTranslationManager::instance()->installTranslators());
    QCOMPARE(QCoreApplication::translate("VXRequest", "Achtung"), u"Achtung"_s);
}

void tst_VXLocaleAndTranslationManager::languageWithoutCatalogueIsNoHarm()
{
    setLanguage(u"de"_s);
    QVERIFY(VXLocaleAndTranslationManager::instance()->installTranslators());
    setLanguage(u"gsw"_s);
    QVERIFY(!VXLocaleAndTranslationManager::instance()->installTranslators());
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"Cancel"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXLocaleAndTranslationManager)

#include "tst_VXLocaleAndTranslationManager.moc"
