#pragma once

#include "VXCoreExport.h"

#include <QtCore/QObject>
#include <QtCore/QUrl>

/// Puts the program that the deployment names ("Platform/urlOpener") in the place of the desktop's
/// for everything that goes through QDesktopServices, such as links in pages. For hosts without a
/// desktop. GUI thread.
class VXCORE_EXPORT VXUrlOpener : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXUrlOpener)

public:
    /// Takes over http, https, mailto and file when a program is named; the instance lives until
    /// the process ends. Without one, addresses go to the desktop. True when it took over.
    static bool installConfigured();

public Q_SLOTS:
    /// Starts the program with the address, see VXPlatformIndependent::openUrl().
    void open(const QUrl& theUrl);

private:
    VXUrlOpener();
    ~VXUrlOpener() override;
};
