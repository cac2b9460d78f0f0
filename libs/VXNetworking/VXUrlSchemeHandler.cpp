#include "VXUrlSchemeHandler.h"

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXDirectoryConfig.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QUrlQuery>
#include <QtGui/QDesktopServices>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct TypeRow
{
    QLatin1StringView suffix;
    QLatin1StringView type;
};

constexpr std::array types{
    TypeRow{"html"_L1, "text/html"_L1},    TypeRow{"js"_L1, "application/javascript"_L1},
    TypeRow{"jpg"_L1, "image/jpeg"_L1},    TypeRow{"png"_L1, "image/png"_L1},
    TypeRow{"svg"_L1, "image/svg+xml"_L1}, TypeRow{"css"_L1, "text/css"_L1},
    TypeRow{"mp4"_L1, "video/mp4"_L1},     TypeRow{"webp"_L1, "image/webp"_L1},
    TypeRow{"webm"_L1, "video/webm"_L1},
};

// What a link in a page usually leads to. Anything else may start a program of the desktop's, so
// the log says so; it is opened nevertheless.
bool isUsualTarget(const QUrl& theTarget)
{
    static constexpr std::array usual{"http"_L1, "https"_L1, "mailto"_L1};
    const QString scheme = theTarget.scheme();
    return std::ranges::any_of(
        usual, [&scheme](QLatin1StringView theScheme) { return scheme == theScheme; });
}

void openOutside(const QUrl& theTarget)
{
    // The scheme alone: the rest may be a secret, and is as long as a page likes.
    if (!isUsualTarget(theTarget))
        qWarning().noquote() << u"a page opens an address of the scheme \"%1\""_s.arg(
            theTarget.scheme().left(64));
    // The desktop's program would take it for one of its options.
    if (!theTarget.toEncoded().startsWith('-'))
        QDesktopServices::openUrl(theTarget);
}

// The picture that the application has rendered for its 3D page.
QString scenePicture()
{
    return u"%1/scene-%2.png"_s.arg(VXBasisSettings::instance()->temporaryDirectory(),
                                    QString::number(QCoreApplication::applicationPid()));
}

QFileInfo sceneFile(const QString& thePath)
{
    const QFileInfo page(VXDirectoryConfig::instance()->htmlPath(thePath));
    return page.exists() ? page : QFileInfo(scenePicture());
}

QString fromLastSlash(const QString& thePath)
{
    return thePath.sliced(std::max<qsizetype>(thePath.lastIndexOf(u'/'), 0));
}

} // namespace

QString VXUrlSchemeHandler::contentType(const QFileInfo& theFile) const
{
    const auto row = std::ranges::find(types, theFile.suffix(), &TypeRow::suffix);
    return row == types.end() ? u"text/plain"_s : QString(row->type);
}

bool VXUrlSchemeHandler::commandFilter(const QUrl& theUrl)
{
    if (theUrl.scheme() != "tov"_L1 || theUrl.path(QUrl::FullyDecoded) != "/openUrl"_L1)
        return false;

    // Decoded once only: what is encoded in the address itself belongs to it.
    openOutside(QUrl(QUrlQuery(theUrl).queryItemValue(u"url"_s, QUrl::FullyDecoded)));
    return true;
}

QFileInfo VXUrlSchemeHandler::fileInfo(const QString& thePath) const
{
    const VXDirectoryConfig* directories = VXDirectoryConfig::instance();
    const QFileInfo startScreen(directories->startScreenHtmlPath(thePath, false));
    if (startScreen.exists())
        return startScreen;
    if (thePath.startsWith("/threejs"_L1))
        return sceneFile(thePath);
    if (thePath.contains("autoBookProposal"_L1))
        return QFileInfo(directories->findBookProposalFile(fromLastSlash(thePath)));
    return startScreen;
}
