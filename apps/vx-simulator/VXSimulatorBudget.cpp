#include "VXSimulatorBudget.h"

VXSimulatorBudget::VXSimulatorBudget(qint64 theBytes)
    : myLeft(theBytes)
{
}

VXSimulatorBudget::Share::Share(VXSimulatorBudget& theBudget)
    : myBudget(theBudget)
{
}

VXSimulatorBudget::Share::~Share()
{
    resize(0);
}

bool VXSimulatorBudget::Share::resize(qint64 theBytes)
{
    const qint64 more = theBytes - myBytes;
    if (more > myBudget.myLeft)
        return false;
    myBudget.myLeft -= more;
    myBytes = theBytes;
    return true;
}
