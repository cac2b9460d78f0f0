#include "VXSampleMessages.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/qlogging.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

std::atomic<bool> isQuiet = false;

/// What Qt notes when there is no display or no graphics processor; nothing is wrong then.
bool isHarmless(const QString& theMessage)
{
    static constexpr std::array texts{
        "WebEngineContext used before QtWebEngineCore::initialize()"_L1,
        "No suitable graphics backend found"_L1,
        "This plugin does not support propagateSizeHints()"_L1,
        "QStandardPaths: XDG_RUNTIME_DIR not set"_L1,
    };
    return std::ranges::any_of(
        texts, [&theMessage](QLatin1StringView theText) { return theMessage.startsWith(theText); });
}

void showWarnings(QtMsgType theType, const QMessageLogContext& theContext,
                  const QString& theMessage)
{
    const bool isWarning = theType == QtWarningMsg;
    if (theType == QtDebugMsg || theType == QtInfoMsg || (isWarning && isQuiet) ||
        isHarmless(theMessage))
        return;
    const QByteArray line = qFormatLogMessage(theType, theContext, theMessage).toLocal8Bit();
    std::fprintf(stderr, "%s\n", line.constData());
}

} // namespace

void VXSampleMessages::install()
{
    qInstallMessageHandler(showWarnings);
}

void VXSampleMessages::setQuiet(bool theIsQuiet)
{
    isQuiet = theIsQuiet;
}
