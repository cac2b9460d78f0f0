#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QString>

/// Where the assets of the application lie ("Assets/..." of the deployment).
///
/// The look-ups get names that strangers chose, over the network or in a page: they never lead out
/// of the folder of their kind, neither by "..", nor by an absolute path, nor by a symbolic link.
/// Names are taken as they are; percent signs and the like have no meaning. Thread-safe.
class VXCORE_EXPORT VXDirectoryConfig : public VXSingleton<VXDirectoryConfig>
{
    Q_DISABLE_COPY_MOVE(VXDirectoryConfig)

public:
    /// The folders that hold assets.
    enum class Root
    {
        OAuthSupport,
        QrUpload,
        StartScreen,
        Html,
        BookProposals,
        Icons
    };

    VXDirectoryConfig();
    ~VXDirectoryConfig() override;

    /// Makes another folder the one of that kind.
    void setRoot(Root theRoot, const QString& theFolder);

    /// The folder of that kind, absolute, without a slash at its end.
    [[nodiscard]] QString root(Root theRoot) const;

    /// The full path of a file of the page that ends a login in the browser; empty when there is no
    /// readable regular file of that name.
    [[nodiscard]] virtual QString oAuthSupportAsset(const QString& theName) const;

    /// The same for the page that phones show, for example "css/page.css".
    [[nodiscard]] virtual QString qrUploadAsset(const QString& theRelativePath) const;

    // The three look-ups for pages never give an empty path or that of a folder.

    /// The full path of a file of the start screen, also when it is missing; for a path that leads
    /// out of the folder, and for a folder, that of a file that cannot exist. With theIsDownloaded
    /// a copy in "startscreen/html" of the user's data folder of the application wins.
    [[nodiscard]] virtual QString startScreenHtmlPath(const QString& thePath,
                                                      bool theIsDownloaded) const;

    /// The same for the other pages.
    [[nodiscard]] virtual QString htmlPath(const QString& thePath) const;

    /// The same for the book proposals; the name begins with a slash.
    [[nodiscard]] virtual QString findBookProposalFile(const QString& theName) const;
};
