#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>

/// An error that one part of the application hands to another. A plain value; reentrant.
///
/// No QEvent: its type holds 16 bits, and the application's event types are larger.
class VXCORE_EXPORT VXErrorEvent
{
public:
    /// Event types. Others are the application's own.
    static constexpr int NetworkError = 0x40000;

    /// theMessage is for the user or the log, as the sender and the receiver agree.
    VXErrorEvent(int theType, const QString& theMessage, int theInternalErrorCode);

    /// NetworkError or a type of the application.
    [[nodiscard]] int type() const noexcept { return myType; }

    /// Of a NetworkError the technical text, VXNetworkingError::errorDetails().
    [[nodiscard]] QString message() const { return myMessage; }

    /// Of a NetworkError the VXNetworkingErrorCode.
    [[nodiscard]] int internalErrorCode() const noexcept { return myInternalErrorCode; }

private:
    int myType = 0;
    QString myMessage;
    int myInternalErrorCode = 0;
};
