#include "VXCertificateBundle.h"

#include <QtCore/QSet>

QList<QSslCertificate> VXCertificateBundle::read(const QString& theFile)
{
    return QSslCertificate::fromPath(theFile, QSsl::Pem,
                                     QSslCertificate::PatternSyntax::FixedString);
}

QList<QSslCertificate> VXCertificateBundle::merged(QList<QSslCertificate> theFirst,
                                                   const QList<QSslCertificate>& theOthers)
{
    QSet<QSslCertificate> known(theFirst.cbegin(), theFirst.cend());
    for (const QSslCertificate& certificate : theOthers) {
        const qsizetype before = known.size();
        known.insert(certificate);
        if (known.size() > before)
            theFirst.append(certificate);
    }
    return theFirst;
}
