#pragma once

#include "VXNetworkingExport.h"

#include <VXCore/VXInitializerAbstract.h>

/// What the library does at the start and the end of the program. It registers itself with
/// VXInitializer when the library is loaded; the host only runs that one's steps, see
/// docs/start-up.md.
class VXNETWORKING_EXPORT VXNetworkingInitializer : public VXInitializerAbstract
{
    Q_DISABLE_COPY_MOVE(VXNetworkingInitializer)

public:
    VXNetworkingInitializer();
    ~VXNetworkingInitializer() override;

    /// Decides whether the web engine may use the graphics processor, overwrites the environment
    /// variable "QTWEBENGINE_CHROMIUM_FLAGS" accordingly, and prepares the engine; the last is left
    /// out in a program without web content. theOption is not looked at. GUI thread, after the
    /// application object and before the first object of the web engine.
    void setup(VXInitializerOption theOption) override;

    /// Clears what the web engine stored. After the last web view is gone.
    void teardown() override;

    /// Adds "-y", "-Y", "--acceptallcertificates".
    void addCommandLineOptionHandlers(VXCommandLineParserAbstract* theParser) override;

private:
    static VXNetworkingInitializer me;
};
