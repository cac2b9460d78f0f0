#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

class VXRecordedRequest;

/// A request that the simulator must have received. A plain value.
struct VXTourExpectation
{
    QString method;
    QString target; ///< second word of the request line
    QByteArray body;
    QMap<QString, QString> headers; ///< besides the ones that every request carries
    QString listener = QStringLiteral("http");
    bool isOwnRequest = true; ///< false: made by Qt (CONNECT), without the library's headers
    bool hasOwnBody = true;   ///< false: the body is not known beforehand (a multipart boundary)

    /// Whether this is the request, apart from its headers.
    [[nodiscard]] bool isSameRequest(const VXRecordedRequest& theRequest) const;

    /// What is wrong with the headers of `theRequest`.
    [[nodiscard]] QStringList headerComplaints(const VXRecordedRequest& theRequest) const;
};
