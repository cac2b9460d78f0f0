#include "VXCommandLineOptionHandlerIgnoreSSLCertificates.h"

#include "VXNetworkAccessManager.h"

VXCommandLineOptionHandlerIgnoreSSLCertificates::VXCommandLineOptionHandlerIgnoreSSLCertificates() =
    default;

VXCommandLineOptionHandlerIgnoreSSLCertificates::
    ~VXCommandLineOptionHandlerIgnoreSSLCertificates() = default;

void VXCommandLineOptionHandlerIgnoreSSLCertificates::optionUsed(const QString&)
{
    VXNetworkAccessManager::setValidateSslCertificate(false);
}
