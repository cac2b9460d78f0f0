#pragma once

#include "VXEnumWrapper.h"
#include "VXNetworkingExport.h"

/// Where a connection finds its proxy.
enum VXNETWORKING_EXPORT VXProxyChoiceEnum : int
{
    ProxyChoiceNone = 0,   ///< none: connect directly
    ProxyChoiceSystem = 1, ///< the operating system's configuration
    ProxyChoiceManual = 2, ///< the proxy that the user entered
};

/// The user's proxy preference. Its texts are those of the settings: "no", "sys" and "my".
/// A value; reentrant.
class VXNETWORKING_EXPORT VXProxyChoice : public VXEnumWrapper<VXProxyChoiceEnum>
{
public:
    /// Implicitly from a value; ProxyChoiceNone by default.
    using VXEnumWrapper::VXEnumWrapper;

    void fillTable(VXEnumToStringTable<VXProxyChoiceEnum>* theTable) const override;
};
