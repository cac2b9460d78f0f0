#include "VXUrlOpener.h"

#include "VXDeploymentConfig.h"
#include "VXPlatformIndependent.h"

#include <QtCore/QDebug>
#include <QtGui/QDesktopServices>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array schemes{"http"_L1, "https"_L1, "mailto"_L1, "file"_L1};

} // namespace

VXUrlOpener::VXUrlOpener() = default;
VXUrlOpener::~VXUrlOpener() = default;

bool VXUrlOpener::installConfigured()
{
    const bool isNamed = !VXDeploymentConfig::instance()->text(u"Platform/urlOpener"_s).isEmpty();
    static auto* const ourOpener = new VXUrlOpener; // the desktop services keep a pointer to it
    for (const QLatin1StringView scheme : schemes) {
        if (isNamed)
            QDesktopServices::setUrlHandler(scheme, ourOpener, "open");
        else
            QDesktopServices::unsetUrlHandler(scheme);
    }
    return isNamed;
}

void VXUrlOpener::open(const QUrl& theUrl)
{
    if (!VXPlatformIndependent::instance()->openUrl(theUrl))
        qWarning("the program that opens addresses cannot be started");
}
