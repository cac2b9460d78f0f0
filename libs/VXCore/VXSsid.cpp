#include "VXSsid.h"

#include <QtCore/QStringDecoder>

namespace {

constexpr qsizetype maximumLength = 32; // bytes

QString decoded(QByteArrayView theBytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8.decode(theBytes);
    return utf8.hasError() ? QString::fromLatin1(theBytes) : text;
}

} // namespace

QString VXSsid::text(QByteArrayView theBytes)
{
    QString name = decoded(theBytes.first(qMin(theBytes.size(), maximumLength)));
    name.removeIf(
        [](QChar theCharacter) { return theCharacter.category() == QChar::Other_Control; });
    return name;
}
