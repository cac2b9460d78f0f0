#include "VXFuzzTarget.h"

#include <VXNetworking/VXUrlSchemeHandler.h>

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXDirectoryConfig.h>

#include <QtCore/QDir>
#include <QtCore/QFile>

using namespace Qt::StringLiterals;

namespace {

using Root = VXDirectoryConfig::Root;

void write(const QString& theFile)
{
    QFile file(theFile);
    VXFuzzTarget::check(file.open(QFile::WriteOnly) && file.write("x") == 1, "room for a file");
}

/// Each kind of asset has a folder with a file and a subfolder; beside them lies what nobody may
/// get, and links lead there.
bool makeFolders()
{
    const QDir base(VXFuzzTarget::folder());
    write(base.filePath(u"secret"_s));
    for (const Root root :
         {Root::OAuthSupport, Root::QrUpload, Root::StartScreen, Root::Html, Root::BookProposals}) {
        const QString name = u"root%1"_s.arg(static_cast<int>(root));
        base.mkpath(name + "/css"_L1);
        write(base.filePath(name + "/a"_L1));
        write(base.filePath(name + "/css/b.css"_L1));
        QFile::link(base.filePath(u"secret"_s), base.filePath(name + "/out"_L1));
        QFile::link(base.path(), base.filePath(name + "/up"_L1));
        VXDirectoryConfig::instance()->setRoot(root, base.filePath(name));
    }
    return true;
}

void checkBelow(const QString& thePath, Root theRoot)
{
    const QString root = VXDirectoryConfig::instance()->root(theRoot) + u'/';
    VXFuzzTarget::check(thePath.startsWith(root), "an asset lies below its root");
    VXFuzzTarget::check(!thePath.contains(u"/../"_s) && !thePath.endsWith(u"/.."_s),
                        "no path climbs");
    const QFileInfo file(thePath);
    VXFuzzTarget::check(!file.exists() || file.canonicalFilePath().startsWith(root),
                        "no link leads out");
}

void checkFound(const QString& thePath, Root theRoot)
{
    if (thePath.isEmpty())
        return;
    checkBelow(thePath, theRoot);
    VXFuzzTarget::check(QFileInfo(thePath).isFile(), "an asset is a file");
}

/// What a page of the application's own scheme gets: a file of one of the three kinds of pages, or
/// the picture that this process renders.
void checkAnswer(const QString& thePath)
{
    const VXUrlSchemeHandler handler;
    const QFileInfo file = handler.fileInfo(thePath);
    VXFuzzTarget::check(!handler.contentType(file).isEmpty(), "every file has a type");
    if (!file.exists())
        return;
    const QString found = file.canonicalFilePath();
    const VXDirectoryConfig& assets = *VXDirectoryConfig::instance();
    const bool isPage = found.startsWith(assets.root(Root::StartScreen) + u'/') ||
                        found.startsWith(assets.root(Root::Html) + u'/') ||
                        found.startsWith(assets.root(Root::BookProposals) + u'/');
    const QString pictures = VXBasisSettings::instance()->temporaryDirectory() + u"/scene-"_s;
    VXFuzzTarget::check(isPage || found.startsWith(pictures), "a page gets pages only");
}

} // namespace

/// A path that a page or a phone asks for.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    static const bool ourIsReady = makeFolders();
    VXFuzzTarget::check(ourIsReady, "folders");
    const QString path = QString::fromUtf8(VXFuzzTarget::input(theData, theSize));

    const VXDirectoryConfig& assets = *VXDirectoryConfig::instance();
    checkFound(assets.oAuthSupportAsset(path), Root::OAuthSupport);
    checkFound(assets.qrUploadAsset(path), Root::QrUpload);
    checkBelow(assets.findBookProposalFile(path), Root::BookProposals);
    checkBelow(assets.startScreenHtmlPath(path, false), Root::StartScreen);
    checkBelow(assets.htmlPath(path), Root::Html);
    checkAnswer(path);
    VXFuzzTarget::saw("asset", assets.qrUploadAsset(path).size());
    VXFuzzTarget::saw("parts", path.count(u'/'));
    VXFuzzTarget::planted(assets.qrUploadAsset(path).endsWith(u"/a"_s));
    return 0;
}
