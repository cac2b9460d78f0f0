#include "VXDirectoryConfig.h"

#include "VXDeploymentConfig.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <QtCore/QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Nobody can make a file of such a name: Linux allows 255 bytes.
QString refusedBelow(const QString& theFolder)
{
    return theFolder + "/.refused"_L1 + QString(255, u'-');
}

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

// Qt reads ":" and "prefix:" at the beginning as the mark of a resource or of a search path. The
// replacement character stands for bytes that were no text.
bool isForbidden(QChar theChar)
{
    return theChar.category() == QChar::Other_Control || theChar == u'\\' || theChar == u':' ||
           theChar == QChar::ReplacementCharacter;
}

// Looks at the text alone; nothing touches the file system before this.
bool isPlain(const QString& theRelativePath)
{
    constexpr qsizetype longestPath = 4096; // PATH_MAX of Linux
    return theRelativePath.size() < longestPath &&
           std::ranges::none_of(theRelativePath, isForbidden) &&
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

// The path itself or the nearest folder above it that is there, down to theFolder. A link without
// a target is there: its target may come between this look and the next one.
QString nearestThere(const QString& thePath, const QString& theFolder)
{
    QFileInfo there(thePath);
    while (there.filePath() != theFolder && !there.exists() && !there.isSymLink())
        there.setFile(there.path());
    return there.filePath();
}

// The path of a file below the folder, whether it exists or not.
QString pathBelow(const QString& theFolder, const QString& thePath)
{
    const QString relative = withoutSlash(thePath);
    if (theFolder.isEmpty() || !isPlain(relative))
        return refusedBelow(theFolder);

    QString path = theFolder + u'/' + relative;
    const QString there = nearestThere(path, theFolder);
    const QString folder = QFileInfo(theFolder).canonicalFilePath();
    const bool isInside =
        there == path ? !assetBelow(theFolder, relative).isEmpty()
                      : QFileInfo(there).isDir() &&
                            (QFileInfo(there).canonicalFilePath() + u'/').startsWith(folder + u'/');
    const bool isMissingAltogether = there == theFolder && folder.isEmpty();
    return isInside || isMissingAltogether ? path : refusedBelow(theFolder);
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
    return pathBelow(root(Root::BookProposals), theName);
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
