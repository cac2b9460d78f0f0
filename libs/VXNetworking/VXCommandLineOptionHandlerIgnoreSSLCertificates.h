#pragma once

#include "VXNetworkingExport.h"

#include <VXCore/VXCommandLineOptionHandlerAbstract.h>

/// Switches the check of certificates off for the whole process. For developers only: everybody on
/// the way can then read and change what is sent.
class VXNETWORKING_EXPORT VXCommandLineOptionHandlerIgnoreSSLCertificates
    : public VXCommandLineOptionHandlerAbstract
{
    Q_DISABLE_COPY_MOVE(VXCommandLineOptionHandlerIgnoreSSLCertificates)

public:
    VXCommandLineOptionHandlerIgnoreSSLCertificates();
    ~VXCommandLineOptionHandlerIgnoreSSLCertificates() override;

    /// theValue is ignored.
    void optionUsed(const QString& theValue) override;
};
