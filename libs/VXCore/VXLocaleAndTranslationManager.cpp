#include "VXLocaleAndTranslationManager.h"

#include "VXDeploymentConfig.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

using namespace Qt::StringLiterals;

VXLocaleAndTranslationManager::VXLocaleAndTranslationManager() = default;
VXLocaleAndTranslationManager::~VXLocaleAndTranslationManager() = default;

QString VXLocaleAndTranslationManager::bcp47Name() const
{
    const QString language = VXDeploymentConfig::instance()->text(u"Program/language"_s);
    return QLocale(language).bcp47Name();
}

bool VXLocaleAndTranslationManager::installTranslators()
{
    myTranslators.clear(); // a translator that is destroyed takes itself out of the application
    const QString qtFolder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    const bool hasQt = installCatalogue(u"qtbase"_s, qtFolder);
    const bool hasWebEngine = installCatalogue(u"qtwebengine"_s, qtFolder);
    const bool hasOwn =
        installCatalogue(u"VXNetworking"_s, VXDeploymentConfig::dataFolder() + "/translations"_L1);
    return hasQt || hasWebEngine || hasOwn;
}

bool VXLocaleAndTranslationManager::installCatalogue(const QString& theName,
                                                     const QString& theFolder)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(QLocale(bcp47Name()), theName, u"_"_s, theFolder))
        return false;
    QCoreApplication::installTranslator(translator.get());
    myTranslators.push_back(std::move(translator));
    return true;
}
