#include "VXFlagFixture.h"

#include <QtCore/QAtomicInt>

using namespace Qt::StringLiterals;

namespace {

QAtomicInt fillingsSoFar;

} // namespace

void VXFlag::fillTable(VXEnumToStringTable<VXFlagEnum>* theTable) const
{
    fillingsSoFar.ref();
    theTable->insert(u"Read"_s, FlagRead);
    theTable->insert(u"Write"_s, FlagWrite);
    theTable->insert(u"Run"_s, FlagRun);
}

int VXFlag::fillings()
{
    return fillingsSoFar.loadRelaxed();
}

const void* tableInTheLibrary()
{
    return VXFlag().enumToStringTable();
}

QString encodedInTheLibrary(VXFlagEnum theFlag)
{
    return VXFlag(theFlag).encode();
}
