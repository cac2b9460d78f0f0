#include "VXSampleCommandTable.h"

#include "VXSampleMessageCommand.h"

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
    VXSampleCommandRow{"message"_L1, "CODE..."_L1,
                       "Show severity, German text and details of error codes."_L1,
                       "message 70 3503 20017"_L1, 1, -1, Application::Core, Duration::Finite,
                       make<VXSampleMessageCommand>},
    VXSampleCommandRow{"messages"_L1, ""_L1, "Show the whole table of error texts."_L1,
                       "messages"_L1, 0, 0, Application::Core, Duration::Finite,
                       make<VXSampleMessageCommand>},
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
