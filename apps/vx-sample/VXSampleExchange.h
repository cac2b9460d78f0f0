#pragma once

#include "VXSampleExitCode.h"

#include <QtCore/QJsonObject>

class QByteArray;
class VXHttpOperation;
class VXNetworkingError;

/// The outcome of an exchange as the commands tell it.
class VXSampleExchange
{
public:
    /// The error's keys, "http" (status, 0 without an answer) and "bytes".
    static QJsonObject toJson(const VXHttpOperation& theOperation, const QByteArray& theBody);

    /// Adds the body: "body" when it is UTF-8 text, else "bodyBase64".
    static void addBody(QJsonObject& theObject, const QByteArray& theBody);

    /// Success, LibraryError or, for an exchange that was cut off, TimedOut: the commands
    /// themselves never cancel one.
    static VXSampleExitCode exitCode(const VXNetworkingError& theError);

    /// Lower-case hexadecimal digits.
    static QString sha256(const QByteArray& theBytes);
};
