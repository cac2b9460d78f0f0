#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// A request as the simulator received it. A plain value; reentrant.
class VXRecordedRequest
{
public:
    VXRecordedRequest() = default;

    /// Reads one object of the simulator's list.
    explicit VXRecordedRequest(const QJsonObject& theObject);

    [[nodiscard]] int number() const { return myObject.value(u"number").toInt(); }
    /// The port it came in by: "http", "proxy", ...
    [[nodiscard]] QString listener() const { return myObject.value(u"listener").toString(); }
    [[nodiscard]] QString method() const { return myObject.value(u"method").toString(); }
    /// The second word of the request line, verbatim.
    [[nodiscard]] QString target() const { return myObject.value(u"target").toString(); }
    /// Lower-case hexadecimal digits.
    [[nodiscard]] QString bodySha256() const { return myObject.value(u"bodySha256").toString(); }
    [[nodiscard]] qint64 bodySize() const { return myObject.value(u"bodySize").toInteger(); }
    /// 0 while there is no answer.
    [[nodiscard]] int status() const { return myObject.value(u"status").toInt(); }

    /// The value of the first header of that name (any case); a null text when it is absent.
    [[nodiscard]] QString header(const QString& theName) const;

    /// The record without the body itself and without the values of secret headers.
    [[nodiscard]] QJsonObject toJson() const;

private:
    QJsonObject myObject;
};
