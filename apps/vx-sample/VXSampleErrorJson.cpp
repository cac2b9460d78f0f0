#include "VXSampleErrorJson.h"

#include <VXNetworking/VXNetworkingError.h>

#include <array>

using namespace Qt::StringLiterals;

QJsonObject VXSampleErrorJson::fromError(const VXNetworkingError& theError)
{
    return {
        {u"code"_s, static_cast<int>(theError.errorCode())},
        {u"severity"_s, static_cast<int>(theError.severity())},
        {u"severityName"_s, severityName(theError.severity())},
        {u"message"_s, theError.errorMessage()},
        {u"details"_s, theError.errorDetails()},
    };
}

QString VXSampleErrorJson::severityName(VXNetworkingErrorSeverity theSeverity)
{
    static constexpr std::array names{"NoError"_L1,   "Unrecoverable"_L1,    "ProgramError"_L1,
                                      "UserInput"_L1, "RemoteSystem"_L1,     "NoNetwork"_L1,
                                      "Temporary"_L1, "OrderDeclaration"_L1, "AutoRecover"_L1,
                                      "Payment"_L1};
    const auto index = static_cast<size_t>(theSeverity);
    return index < names.size() ? QString(names.at(index)) : QString();
}
