#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtNetwork/QSslCertificate>

/// Certificates of a file, and how lists of them come together. Not exported. Static operations
/// only; reentrant.
class VXCertificateBundle
{
public:
    VXCertificateBundle() = delete;

    /// The certificates of a file in PEM form. What is none in between is passed over; without a
    /// readable file there are none.
    [[nodiscard]] static QList<QSslCertificate> read(const QString& theFile);

    /// theFirst and after them those of theOthers that are new, each once, in their order.
    [[nodiscard]] static QList<QSslCertificate> merged(QList<QSslCertificate> theFirst,
                                                       const QList<QSslCertificate>& theOthers);
};
