#include "VXSamplePkce.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QRandomGenerator>

namespace {

constexpr int verifierBytes = 32; // RFC 7636, 4.1
constexpr auto urlSafe = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

} // namespace

VXSamplePkce::VXSamplePkce()
    : myVerifier(randomText(verifierBytes))
{
}

QByteArray VXSamplePkce::challenge() const
{
    return QCryptographicHash::hash(myVerifier, QCryptographicHash::Sha256).toBase64(urlSafe);
}

QByteArray VXSamplePkce::randomText(int theBytes)
{
    QByteArray bytes;
    while (bytes.size() < theBytes)
        bytes += static_cast<char>(QRandomGenerator::system()->bounded(256));
    return bytes.toBase64(urlSafe);
}
