#pragma once

/// What an error means for the user. It follows from the error code alone and selects
/// the dialog that is shown.
enum VXNetworkingErrorSeverity : int
{
    SeverityNoError = 0,          ///< not an error, also for informational server numbers
    SeverityUnrecoverable = 1,    ///< the operation cannot succeed by retrying
    SeverityProgramError = 2,     ///< everything that is not classified
    SeverityUserInput = 3,        ///< the user's data was rejected: validation, coupons, login
    SeverityRemoteSystem = 4,     ///< the server side failed
    SeverityNoNetwork = 5,        ///< no network at all
    SeverityTemporary = 6,        ///< a failure of the connection, worth retrying
    SeverityOrderDeclaration = 7, ///< the order as the client declared it is inconsistent
    SeverityAutoRecover = 8,      ///< the server is overloaded; wait, then retry
    SeverityPayment = 9,          ///< the payment method was refused
};
