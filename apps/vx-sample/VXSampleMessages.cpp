#include "VXSampleMessages.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/qlogging.h>

#include <atomic>
#include <cstdio>

namespace {

std::atomic<bool> isQuiet = false;

void showWarnings(QtMsgType theType, const QMessageLogContext& theContext,
                  const QString& theMessage)
{
    const bool isWarning = theType == QtWarningMsg;
    if (theType == QtDebugMsg || theType == QtInfoMsg || (isWarning && isQuiet))
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
