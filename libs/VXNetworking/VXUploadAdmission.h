#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Which of a client's tokens a request shows. Not exported. Static operations only; reentrant.
class VXUploadAdmission
{
public:
    /// Name and value of each header line, in the order in which they came.
    using Headers = QList<QPair<QByteArray, QByteArray>>;

    VXUploadAdmission() = delete;

    /// The token among theTokens that is theQuery as a whole, else the first that stands in a
    /// cookie "sid" of a header "Cookie"; empty when there is none. Headers are taken in the
    /// sender's spelling: "cookie" is not recognised, on purpose.
    [[nodiscard]] static QString token(const QStringList& theTokens, const QString& theQuery,
                                       const Headers& theHeaders);

    /// The values of all cookies named "sid" in one Cookie header, RFC 6265, 4.2.1. Every pair is
    /// read: another server on our address may have put its cookies in front of ours.
    [[nodiscard]] static QStringList sessionIds(const QByteArray& theHeader);
};
