#pragma once

#include <VXNetworking/VXNetworkingErrorSeverity.h>

#include <QtCore/QJsonObject>

class VXNetworkingError;

/// An error value as the program prints it.
class VXSampleErrorJson
{
public:
    /// The keys "code", "severity", "severityName", "message" (HTML) and "details".
    static QJsonObject fromError(const VXNetworkingError& theError);

    /// "UserInput" for SeverityUserInput, and so on.
    static QString severityName(VXNetworkingErrorSeverity theSeverity);
};
