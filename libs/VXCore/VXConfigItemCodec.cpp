#include "VXConfigItemCodec.h"

#include "VXCrypto.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using namespace Qt::StringLiterals;

namespace {

constexpr int highestPort = 65535;

bool isInRange(int theValue, int theHighest)
{
    return theValue >= 0 && theValue <= theHighest;
}

} // namespace

QVariant VXConfigItemCodec<QNetworkProxy>::encode(const QNetworkProxy& theValue)
{
    const QString password = theValue.password();
    const QJsonObject record{
        {u"type"_s, static_cast<int>(theValue.type())},
        {u"host"_s, theValue.hostName()},
        {u"port"_s, static_cast<int>(theValue.port())},
        {u"user"_s, theValue.user()},
        {u"password"_s, password.isEmpty() ? QString() : VXCrypto().encryptDES(password)},
    };
    return QString::fromUtf8(QJsonDocument(record).toJson(QJsonDocument::Compact));
}

std::optional<QNetworkProxy> VXConfigItemCodec<QNetworkProxy>::decode(const QVariant& theStored)
{
    const QJsonObject record = QJsonDocument::fromJson(theStored.toString().toUtf8()).object();
    const int type = record.value("type"_L1).toInt(-1);
    const int port = record.value("port"_L1).toInt(-1);
    if (!isInRange(type, QNetworkProxy::FtpCachingProxy) || !isInRange(port, highestPort))
        return std::nullopt;
    // The capabilities follow the type by themselves only as long as nobody sets them.
    return QNetworkProxy(static_cast<QNetworkProxy::ProxyType>(type),
                         record.value("host"_L1).toString(), static_cast<quint16>(port),
                         record.value("user"_L1).toString(),
                         VXCrypto().decryptDES(record.value("password"_L1).toString()));
}
