#include "VXEncoder.h"

#include "VXDeploymentConfig.h"

#include <QtCore/QStringDecoder>

using namespace Qt::StringLiterals;

namespace {

QByteArray combined(QByteArray theBytes)
{
    const QByteArray key =
        VXDeploymentConfig::instance()->text(u"Crypto/legacyEncoderKey"_s).toUtf8();
    if (key.isEmpty())
        return theBytes;
    for (qsizetype index = 0; index < theBytes.size(); ++index)
        theBytes[index] = static_cast<char>(theBytes.at(index) ^ key.at(index % key.size()));
    return theBytes;
}

} // namespace

QString VXEncoder::encodeString(const QString& theText)
{
    return QString::fromLatin1(combined(theText.toUtf8()).toBase64());
}

QString VXEncoder::decodeString(const QString& theText)
{
    const auto bytes =
        QByteArray::fromBase64Encoding(theText.toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
    // The decoder overlooks a letter too many at the end; encoding again shows it.
    if (!bytes || QString::fromLatin1((*bytes).toBase64()) != theText)
        return {};
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(combined(*bytes));
    return decoder.hasError() ? QString() : text;
}
