#include "VXHttpRangeHeaderInfo.h"

#include <QtCore/QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

// A copy for each caller: matching through one shared object is not promised to be thread-safe.
QRegularExpression rangeExpression()
{
    static const QRegularExpression expression(uR"(bytes=(\d+)-(\d+)?)"_s);
    return expression;
}

} // namespace

VXHttpRangeHeaderInfo::VXHttpRangeHeaderInfo(const QString& theRangeHeader, qint64 theTotal)
    : myTotal(theTotal)
{
    const QRegularExpressionMatch match = rangeExpression().match(theRangeHeader);
    if (!match.hasMatch())
        return;

    myStart = match.capturedView(1).toLongLong();
    const QStringView end = match.capturedView(2);
    // Unsigned: the smallest number less one would overflow.
    const auto last = static_cast<qint64>(static_cast<quint64>(theTotal) - 1);
    myEnd = end.isEmpty() ? last : end.toLongLong();
}

VXHttpRangeHeaderInfo::~VXHttpRangeHeaderInfo() = default;

qint64 VXHttpRangeHeaderInfo::size() const noexcept
{
    // Unsigned: a client may send "bytes=0-9223372036854775807".
    return static_cast<qint64>(static_cast<quint64>(myEnd) - static_cast<quint64>(myStart) + 1);
}

QString VXHttpRangeHeaderInfo::rangeResponse() const
{
    return u"bytes %1-%2/%3"_s.arg(QString::number(myStart), QString::number(myEnd),
                                   QString::number(myTotal));
}
