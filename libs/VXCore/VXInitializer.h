#pragma once

#include "VXCoreExport.h"
#include "VXInitializerOption.h"

#include <QtCore/QList>
#include <QtCore/QtGlobal>

class VXCommandLineParserAbstract;
class VXInitializerAbstract;

/// The registry of what the libraries do at the start and the end of the program.
///
/// Usable while static objects are made and destroyed. Libraries register before main() or on its
/// thread; the host runs the steps in the GUI thread.
class VXCORE_EXPORT VXInitializer
{
    Q_DISABLE_COPY_MOVE(VXInitializer)

public:
    /// The one registry.
    [[nodiscard]] static VXInitializer* instance();

    /// Adds an initialiser, which stays its owner's. One that is in already is not added again.
    void registerInitializer(VXInitializerAbstract* theInitializer);

    /// Takes it out. Does nothing when it is not in.
    void unregisterInitializer(VXInitializerAbstract* theInitializer);

    /// All of them, in the order in which they were registered.
    [[nodiscard]] QList<VXInitializerAbstract*> initializers() const { return myInitializers; }

    /// Lets all add their options, in that order.
    void runCommandLine(VXCommandLineParserAbstract* theParser) const;

    /// Sets all up, in that order.
    void runSetup(VXInitializerOption theOption) const;

    /// Tears all down, in the reverse order.
    void runTeardown() const;

private:
    VXInitializer() = default;
    ~VXInitializer() = default;

    QList<VXInitializerAbstract*> myInitializers;
};
