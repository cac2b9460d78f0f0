#include "VXCertificateBundle.h"

#include <QtCore/QSet>

#include <utility>

QList<QSslCertificate> VXCertificateBundle::read(const QString& theFile)
{
    return QSslCertificate::fromPath(theFile, QSsl::Pem,
                                     QSslCertificate::PatternSyntax::FixedString);
}

QList<QSslCertificate> VXCertificateBundle::merged(QList<QSslCertificate> theFirst,
                                                   const QList<QSslCertificate>& theOthers)
{
    // By their bytes: comparing or hashing certificates makes OpenSSL read all their extensions.
    QSet<QByteArray> known;
    for (const QSslCertificate& certificate : std::as_const(theFirst))
        known.insert(certificate.toDer());
    for (const QSslCertificate& certificate : theOthers) {
        const qsizetype before = known.size();
        known.insert(certificate.toDer());
        if (known.size() > before)
            theFirst.append(certificate);
    }
    return theFirst;
}
