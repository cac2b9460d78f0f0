#include "VXDialogDriver.h"

#include <utility>

VXDialogDriver* VXDialogDriver::ourCurrent = nullptr;

VXDialogDriver::~VXDialogDriver()
{
    if (ourCurrent == this)
        ourCurrent = nullptr;
}

VXDialogDriver* VXDialogDriver::setCurrent(VXDialogDriver* theDriver) noexcept
{
    return std::exchange(ourCurrent, theDriver);
}

std::optional<VXDialogAnswer> VXDialogDriver::askCurrent(const VXDialogQuestion& theQuestion)
{
    if (ourCurrent == nullptr)
        return std::nullopt;
    return ourCurrent->ask(theQuestion);
}
