#include "VXSampleCommandTable.h"

#include "VXSampleChannelCommand.h"
#include "VXSampleConfigCommand.h"
#include "VXSampleCredentialsCommand.h"
#include "VXSampleDownloadCommand.h"
#include "VXSampleGuiCommand.h"
#include "VXSampleHandleCommand.h"
#include "VXSampleLoginCommand.h"
#include "VXSampleMessageCommand.h"
#include "VXSampleOrderCommand.h"
#include "VXSampleProbeCommand.h"
#include "VXSampleProblemCommand.h"
#include "VXSampleProxyCommand.h"
#include "VXSampleRequestCommand.h"
#include "VXSampleSessionCommand.h"
#include "VXSampleTourCommand.h"
#include "VXSampleUpdateCommand.h"
#include "VXSampleUploadCommand.h"
#include "VXSampleUploadDialogCommand.h"
#include "VXSampleUploadServiceCommand.h"
#include "VXSampleWebCommand.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

template <typename Command>
std::unique_ptr<VXSampleCommand> make()
{
    return std::make_unique<Command>();
}

using Application = VXSampleApplication;
using Duration = VXSampleDuration;

constexpr std::array commands{
    VXSampleCommandRow{"request"_L1, "METHOD URL"_L1,
                       "Do one HTTP exchange. A URL that begins with / means the simulator."_L1,
                       "request POST /echo --json -d '{\"photo\":1}'"_L1, 2, 2, Application::Core,
                       Duration::Finite, make<VXSampleRequestCommand>},
    VXSampleCommandRow{"order"_L1, "NAME"_L1,
                       "Do one exchange of the XML order protocol with the simulator."_L1,
                       "order cart --errorcode 70 --coupon X1 --wait 5"_L1, 1, 1, Application::Core,
                       Duration::Finite, make<VXSampleOrderCommand>},
    VXSampleCommandRow{"download"_L1, "URL"_L1, "Download into a file, with progress."_L1,
                       "download /bytes/1000000?seed=7 --to photo.bin"_L1, 1, 1, Application::Core,
                       Duration::Finite, make<VXSampleDownloadCommand>},
    VXSampleCommandRow{"upload"_L1, "URL FILE..."_L1,
                       "Upload each file in a multipart form, with progress."_L1,
                       "upload /multipart photo.bin --field album=Sommer"_L1, 2, -1,
                       Application::Core, Duration::Finite, make<VXSampleUploadCommand>},
    VXSampleCommandRow{"probe"_L1, "URL"_L1, "Ask whether a server answers."_L1,
                       "probe http://127.0.0.1:8080/"_L1, 1, 1, Application::Core, Duration::Finite,
                       make<VXSampleProbeCommand>},
    VXSampleCommandRow{"message"_L1, "CODE..."_L1,
                       "Show severity, text and details of error codes."_L1,
                       "message 70 3503 20017"_L1, 1, -1, Application::Core, Duration::Finite,
                       make<VXSampleMessageCommand>},
    VXSampleCommandRow{"messages"_L1, ""_L1, "Show the whole table of error texts."_L1,
                       "messages"_L1, 0, 0, Application::Core, Duration::Finite,
                       make<VXSampleMessageCommand>},
    VXSampleCommandRow{"handle"_L1, "CODE"_L1,
                       "Let the mediator talk to the user about an error."_L1, "handle 3503"_L1, 1,
                       1, Application::Widgets, Duration::Finite, make<VXSampleHandleCommand>},
    VXSampleCommandRow{"problem"_L1, "NAME..."_L1,
                       "Cause network problems, each by a real error, and show their dialogs."_L1,
                       "problem connection login-wait"_L1, 1, -1, Application::Widgets,
                       Duration::Finite, make<VXSampleProblemCommand>},
    VXSampleCommandRow{"gui"_L1, ""_L1, "Show the main window; the same as no command at all."_L1,
                       "gui"_L1, 0, 0, Application::Widgets, Duration::Service,
                       make<VXSampleGuiCommand>},
    VXSampleCommandRow{
        "proxy"_L1, "show|set CHOICE|for URL"_L1,
        "Show or change the proxy settings (no, sys, my), or show the proxy of an address."_L1,
        "proxy set my --host proxy.test --port 3128"_L1, 1, 2, Application::Core, Duration::Finite,
        make<VXSampleProxyCommand>},
    VXSampleCommandRow{"session"_L1, "open|refresh|expire|close"_L1,
                       "Log in to the cloud, then renew the tokens, let them lapse or log out."_L1,
                       "session refresh --user demo --password-stdin"_L1, 1, 1, Application::Core,
                       Duration::Finite, make<VXSampleSessionCommand>},
    VXSampleCommandRow{"credentials"_L1, "save GROUP|load GROUP|deeplink URL"_L1,
                       "Store or read a login, or take it from a link."_L1,
                       "credentials save Cloud --user demo --password-stdin"_L1, 2, 2,
                       Application::Core, Duration::Finite, make<VXSampleCredentialsCommand>},
    VXSampleCommandRow{"login"_L1, "direct|embedded|external"_L1,
                       "Log in with a password, in a page, or in the browser, and get tokens."_L1,
                       "login embedded"_L1, 1, 1, Application::Widgets, Duration::Finite,
                       make<VXSampleLoginCommand>},
    VXSampleCommandRow{"update"_L1, ""_L1, "Announce a newer version with its release notes."_L1,
                       "update --mandatory"_L1, 0, 0, Application::Widgets, Duration::Finite,
                       make<VXSampleUpdateCommand>},
    VXSampleCommandRow{
        "config"_L1, "show"_L1, "Show the deployment configuration and where it comes from."_L1,
        "config show"_L1, 1, 1, Application::Core, Duration::Finite, make<VXSampleConfigCommand>},
    VXSampleCommandRow{"upload-service"_L1, ""_L1,
                       "Receive photos from a phone on the same network; Ctrl+C ends it."_L1,
                       "upload-service --target photos"_L1, 0, 0, Application::Core,
                       Duration::Service, make<VXSampleUploadServiceCommand>},
    VXSampleCommandRow{"upload-dialog"_L1, ""_L1,
                       "The same with the dialog that shows the QR code."_L1, "upload-dialog"_L1, 0,
                       0, Application::Widgets, Duration::Service,
                       make<VXSampleUploadDialogCommand>},
    VXSampleCommandRow{"channel"_L1, ""_L1,
                       "Open the web channel, show a page that uses it, and report its calls."_L1,
                       "channel --page ordersummary"_L1, 0, 0, Application::Widgets,
                       Duration::Service, make<VXSampleChannelCommand>},
    VXSampleCommandRow{"web"_L1, "URL"_L1,
                       "Show a page in the browser dialog, run scripts in it, save it."_L1,
                       "web /echo --script document.title --pdf page.pdf"_L1, 1, 1,
                       Application::Widgets, Duration::Finite, make<VXSampleWebCommand>},
    VXSampleCommandRow{"tour"_L1, "DIR"_L1,
                       "Do the library's main job against the simulator and check every step."_L1,
                       "tour out"_L1, 1, 1, Application::Widgets, Duration::Finite,
                       make<VXSampleTourCommand>},
};

} // namespace

std::span<const VXSampleCommandRow> VXSampleCommandTable::rows()
{
    return commands;
}

const VXSampleCommandRow* VXSampleCommandTable::find(const QString& theName)
{
    const auto row = std::ranges::find_if(
        commands, [&theName](const VXSampleCommandRow& theRow) { return theRow.name == theName; });
    return row == commands.end() ? nullptr : &*row;
}
