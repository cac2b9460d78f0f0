#pragma once

#include <VXNetworking/VXEnumWrapper.h>

/// Flags of a host program, known to it and to a library of its own.
enum Q_DECL_EXPORT VXFlagEnum : int
{
    FlagNone = 0,
    FlagRead = 1,
    FlagWrite = 2,
    FlagRun = 4,
};

/// Counts its fillings, to tell one table from two.
class Q_DECL_EXPORT VXFlag : public VXEnumWrapper<VXFlagEnum>
{
public:
    using VXEnumWrapper::VXEnumWrapper;

    void fillTable(VXEnumToStringTable<VXFlagEnum>* theTable) const override;

    [[nodiscard]] static int fillings();
};

/// The table as the library sees it.
Q_DECL_EXPORT const void* tableInTheLibrary();

/// The library's own look-up in it.
Q_DECL_EXPORT QString encodedInTheLibrary(VXFlagEnum theFlag);
