#include "VXFuzzTarget.h"

#include <VXNetworking/VXHttpParameter.h>
#include <VXNetworking/VXUrlQueryItemList.h>

#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

/// The query of an address, taken apart and put together again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    const QUrlQuery query(QString::fromUtf8(VXFuzzTarget::input(theData, theSize)));
    const VXUrlQueryItemList list(query);
    VXFuzzTarget::check(list.size() == query.queryItems().size(), "no item is lost");

    QUrlQuery built;
    list.addToUrlQuery(built);
    VXFuzzTarget::check(built.queryItems().size() <= list.size(), "no item is invented");
    for (const auto& [name, value] : built.queryItems(QUrl::FullyEncoded)) {
        VXFuzzTarget::check(!value.contains(u'&') && !value.contains(u'='),
                            "a value stays one value");
        VXFuzzTarget::check(!name.contains(u'&'), "a name stays one name");
    }
    for (const VXUrlQueryItem& item : list.items()) {
        const VXUrlQueryItem copy(item.name(), item.value());
        VXFuzzTarget::check(copy == item && copy.hash() == item.hash(), "equal items, equal hash");
    }
    const VXHttpParameter parameters = VXHttpParameter::createFromUrlQuery(query);
    VXFuzzTarget::check(parameters.keys().size() <= list.size(), "one value for each name");
    VXFuzzTarget::saw("items", list.size());
    VXFuzzTarget::saw("built", built.queryItems().size());
    VXFuzzTarget::saw("names", parameters.keys().size());
    VXFuzzTarget::planted(list.size() == 3 && parameters.keys().size() == 2);
    return 0;
}
