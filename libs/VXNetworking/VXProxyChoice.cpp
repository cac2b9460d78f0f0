#include "VXProxyChoice.h"

using namespace Qt::StringLiterals;

void VXProxyChoice::fillTable(VXEnumToStringTable<VXProxyChoiceEnum>* theTable) const
{
    theTable->insert(u"no"_s, ProxyChoiceNone);
    theTable->insert(u"sys"_s, ProxyChoiceSystem);
    theTable->insert(u"my"_s, ProxyChoiceManual);
}
