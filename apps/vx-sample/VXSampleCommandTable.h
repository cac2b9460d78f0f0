#pragma once

#include <QtCore/QStringList>

#include <memory>
#include <span>

class VXSampleCommand;

/// What an application object a command needs.
enum class VXSampleApplication
{
    Core,    ///< QCoreApplication; works without a display
    Widgets, ///< QApplication; --offscreen replaces the display
};

/// Whether a command comes to an end, or serves until --exit-after, a signal or the user ends it.
enum class VXSampleDuration
{
    Finite,
    Service,
};

/// One row of the table of commands.
struct VXSampleCommandRow
{
    QLatin1StringView name;
    QLatin1StringView arguments; ///< as the help shows them
    QLatin1StringView help;
    QLatin1StringView example; ///< what stands behind "vx-sample "
    int fewestArguments;
    int mostArguments; ///< -1: no limit
    VXSampleApplication application;
    VXSampleDuration duration;
    std::unique_ptr<VXSampleCommand> (*create)();
};

/// The commands of the program, in the order of the help. A new command is a class and a row.
class VXSampleCommandTable
{
public:
    static std::span<const VXSampleCommandRow> rows();

    /// The row of that name, or null.
    static const VXSampleCommandRow* find(const QString& theName);
};
