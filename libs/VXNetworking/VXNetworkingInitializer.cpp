#include "VXNetworkingInitializer.h"

#include "VXCommandLineOptionHandlerIgnoreSSLCertificates.h"
#include "VXQWebEngineWebView.h"
#include "VXWebEngineSettings.h"

#include <VXCore/VXCommandLineParserAbstract.h>
#include <VXCore/VXCrashDetector.h>
#include <VXCore/VXInitializer.h>
#include <VXCore/VXProgramConfig.h>

#include <QtCore/QDebug>

using namespace Qt::StringLiterals;

namespace {

// The option's number in the application.
constexpr int ignoreCertificatesType = 18;

// Crashes both ways: acceleration was not the reason, so it stays.
bool mayUseGpu()
{
    const VXCrashDetector* detector = VXCrashDetector::instance();
    return !detector->qtWebEngineDidCrashWithGpuOn() || detector->qtWebEngineDidCrashWithGpuOff();
}

void startWithGpu(bool theGpuIsOn)
{
    if (theGpuIsOn)
        qInfo("Starting QtWebEngine with GPU accel.");
    else
        qInfo("QtWebEngine previously crashed with GPU on and not with GPU off; disabling GPU "
              "accel.");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            theGpuIsOn ? "--no-sandbox" : "--disable-gpu --no-sandbox");
    VXQWebEngineWebView::haveGpuEnabled = theGpuIsOn;
}

bool hasWebContent()
{
    return VXProgramConfig::programID() != VXProgramConfig::ProgramIdNoWebContent;
}

} // namespace

// The registry makes itself when it is first asked for, so the order of static objects is no
// matter.
VXNetworkingInitializer VXNetworkingInitializer::me;

VXNetworkingInitializer::VXNetworkingInitializer()
{
    VXInitializer::instance()->registerInitializer(this);
}

VXNetworkingInitializer::~VXNetworkingInitializer() = default;

void VXNetworkingInitializer::setup(VXInitializerOption)
{
    startWithGpu(mayUseGpu());
    if (hasWebContent())
        static_cast<void>(VXWebEngineSettings::instance()); // made here, before any web view
}

void VXNetworkingInitializer::teardown()
{
    if (hasWebContent())
        VXWebEngineSettings::instance()->cleanup();
}

void VXNetworkingInitializer::addCommandLineOptionHandlers(VXCommandLineParserAbstract* theParser)
{
    theParser->addOption(ignoreCertificatesType,
                         new VXCommandLineOptionHandlerIgnoreSSLCertificates, // theParser's
                         {u"y"_s, u"Y"_s, u"acceptallcertificates"_s},
                         u"Do not validate SSL Certificates. Handle with care!!"_s, {}, {});
}
