#include "VXDirectoryConfig.h"

#include "VXDeploymentConfig.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <QtCore/QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// A name that cannot be made by any asset: no file name may hold a NUL, so this one is reserved.
constexpr auto refusedName = "/.refused"_L1;

QString key(VXDirectoryConfig::Root theRoot)
{
    switch (theRoot) {
    case VXDirectoryConfig::Root::OAuthSupport:
        return u"Assets/oAuthSupport"_s;
    case VXDirectoryConfig::Root::QrUpload:
        return u"Assets/qrUpload"_s;
    case VXDirectoryConfig::Root::StartScreen:
        return u"Assets/startScreen"_s;
    case VXDirectoryConfig::Root::Html:
        return u"Assets/html"_s;
    case VXDirectoryConfig::Root::BookProposals:
        return u"Assets/bookProposals"_s;
    case VXDirectoryConfig::Root::Icons:
        return u"Assets/icons"_s;
    }
    return {};
}

// Empty sections, "." and "..", and hidden files are all refused: none of our assets needs them.
bool isPlainSection(const QString& theSection)
{
    return !theSection.isEmpty() && !theSection.startsWith(u'.');
}

bool isPlain(const QString& theRelativePath)
{
    // Qt reads ":" and "prefix:" at the beginning as the mark of a resource or of a search path.
    const auto isForbidden = [](QChar theChar) {
        return theChar.isNull() || theChar == u'\\' || theChar == u':';
    };
    return std::ranges::none_of(theRelativePath, isForbidden) &&
           std::ranges::all_of(theRelativePath.split(u'/'), isPlainSection);
}

bool isBelow(const QString& thePath, const QString& theFolder)
{
    return !theFolder.isEmpty() && thePath.startsWith(theFolder + u'/');
}

// The readable regular file of that name below the folder, else empty.
QString assetBelow(const QString& theFolder, const QString& theRelativePath)
{
    if (!isPlain(theRelativePath))
        return {};
    const QFileInfo file(theFolder + u'/' + theRelativePath);
    if (!file.isFile() || !file.isReadable())
        return {};
    const QString path = file.canonicalFilePath(); // links are followed here
    return isBelow(path, QFileInfo(theFolder).canonicalFilePath()) ? path : QString();
}

QString withoutSlash(const QString& thePath)
{
    return thePath.startsWith(u'/') ? thePath.sliced(1) : thePath;
}

// The path of a file below the folder, whether it exists or not.
QString pathBelow(const QString& theFolder, const QString& thePath)
{
    const QString relative = withoutSlash(thePath);
    QString path = theFolder + u'/' + relative;
    const bool exists = QFileInfo::exists(path);
    if (!isPlain(relative) || (exists && assetBelow(theFolder, relative).isEmpty()))
        return theFolder + refusedName;
    return path;
}

QString downloadedStartScreen()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
           "/startscreen/html"_L1;
}

} // namespace

VXDirectoryConfig::VXDirectoryConfig() = default;
VXDirectoryConfig::~VXDirectoryConfig() = default;

void VXDirectoryConfig::setRoot(Root theRoot, const QString& theFolder)
{
    VXDeploymentConfig::instance()->setValue(key(theRoot), theFolder);
}

QString VXDirectoryConfig::root(Root theRoot) const
{
    return VXDeploymentConfig::instance()->text(key(theRoot));
}

QString VXDirectoryConfig::oAuthSupportAsset(const QString& theName) const
{
    return assetBelow(root(Root::OAuthSupport), theName);
}

QString VXDirectoryConfig::qrUploadAsset(const QString& theRelativePath) const
{
    return assetBelow(root(Root::QrUpload), theRelativePath);
}

QString VXDirectoryConfig::findBookProposalFile(const QString& theName) const
{
    return assetBelow(root(Root::BookProposals), withoutSlash(theName));
}

QString VXDirectoryConfig::startScreenHtmlPath(const QString& thePath, bool theIsDownloaded) const
{
    const QString relative = withoutSlash(thePath);
    if (theIsDownloaded) {
        QString downloaded = assetBelow(downloadedStartScreen(), relative);
        if (!downloaded.isEmpty())
            return downloaded;
    }
    return pathBelow(root(Root::StartScreen), thePath);
}

QString VXDirectoryConfig::htmlPath(const QString& thePath) const
{
    return pathBelow(root(Root::Html), thePath);
}
