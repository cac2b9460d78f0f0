#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QFileInfo>
#include <QtCore/QString>
#include <QtCore/QUrl>

/// What the application's own scheme "tov" means: which file answers a path, and which addresses
/// are commands. Knows no web engine and has no state. GUI thread.
///
/// Every page of every view may ask, pages of the web as well. What it may read is guarded by
/// VXDirectoryConfig; see docs/url-scheme.md.
class VXNETWORKING_EXPORT VXUrlSchemeHandler
{
public:
    /// The MIME type by the file's suffix, compared exactly: "text/plain" for "HTML" or "htm".
    [[nodiscard]] QString contentType(const QFileInfo& theFile) const;

    /// Carries out a command address; true if it was one. "tov://localhost/openUrl?url=..." opens
    /// the address in the query with the desktop's program for it, without asking. One warning
    /// goes to the log when that is neither http nor https nor mailto. What begins with "-" is no
    /// address but an option of the program, and not opened.
    bool commandFilter(const QUrl& theUrl);

    /// The local file for the decoded path of a request; it need not exist.
    [[nodiscard]] QFileInfo fileInfo(const QString& thePath) const;
};
