#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <memory>

class QFileInfo;
class VXWifiNameQuery;

/// What the application asks of the platform it runs on. The answers come from the deployment
/// configuration; a host with other wishes installs a subclass with setInstance().
///
/// Thread-safe, unless an operation says otherwise.
class VXCORE_EXPORT VXPlatformIndependent : public VXSingleton<VXPlatformIndependent>
{
    Q_DISABLE_COPY_MOVE(VXPlatformIndependent)

public:
    VXPlatformIndependent();
    ~VXPlatformIndependent() override;

    /// True: the lists of CA certificates are left as the platform has them, nothing is merged.
    [[nodiscard]] virtual bool usesPlatformCertificatesOnly() const;

    /// True: "http" addresses are asked by "https".
    [[nodiscard]] virtual bool forcesHttps() const;

    /// True: HTTP/2 may be used over TLS. It knows no "Connection" header.
    [[nodiscard]] virtual bool allowsHttp2() const;

    /// A part of the names of map-tile hosts, whose queries are decoded once more; empty: none.
    [[nodiscard]] virtual QString mapTileHostFragment() const;

    /// A part of the names of the analytics hosts, noted in the log only; empty: there are none.
    [[nodiscard]] virtual QString analyticsHostFragment() const;

    /// The address of the download server, for the host's own use; empty when there is none.
    [[nodiscard]] virtual QUrl downloadServerUrl() const;

    /// Called, in its thread, with a file after a result was written into it. Does nothing here.
    virtual void fileWritten(const QFileInfo& theFile);

    /// Called, in its thread, with the target after writing a download failed. Does nothing here.
    virtual void fileWriteFailed(const QFileInfo& theFile);

    /// Shows the address in the user's browser, or hands it, percent-encoded, to the program that
    /// the deployment names ("Platform/urlOpener"). True when that could be started. GUI thread.
    virtual bool openUrl(const QUrl& theUrl);

    /// The name of the wireless network that the network interface has joined; empty for a wired
    /// or unknown one. Names given by the deployment ("Platform/wifiNames", items
    /// "interface=network") come first; then NetworkManager, iwd and the kernel are asked. Blocks
    /// at most 300 ms for a service that does not answer, and that at most once a minute.
    [[nodiscard]] virtual QString wifiNameForInterface(const QString& theInterfaceName) const;

    /// Waits so many milliseconds. In the GUI thread events run meanwhile, but no user input; the
    /// wait is cut short when the application quits. Zero and less return at once.
    virtual void sleep(int theMilliseconds);

private:
    mutable QMutex myWifiMutex;
    mutable std::unique_ptr<VXWifiNameQuery> myWifiNames; // guarded by myWifiMutex; made when asked
};
