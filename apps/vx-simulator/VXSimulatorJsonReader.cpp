#include "VXSimulatorJsonReader.h"

#include <QtCore/QJsonArray>

#include <cmath>

using namespace Qt::StringLiterals;

VXSimulatorJsonReader::VXSimulatorJsonReader(const QString& theName, const QJsonObject& theObject)
    : myName(theName)
    , myObject(theObject)
{
}

bool VXSimulatorJsonReader::has(const QString& theKey) const
{
    return myObject.contains(theKey);
}

QJsonValue VXSimulatorJsonReader::value(const QString& theKey)
{
    myRead.append(theKey);
    return myObject.value(theKey);
}

qint64 VXSimulatorJsonReader::number(const QString& theKey, qint64 theDefault, qint64 theLeast,
                                     qint64 theMost)
{
    const QJsonValue found = value(theKey);
    if (found.isUndefined())
        return theDefault;
    const double number = found.toDouble(std::nan(""));
    if (std::trunc(number) == number && number >= double(theLeast) && number <= double(theMost))
        return static_cast<qint64>(number);
    fail(theKey, u"must be a whole number from %1 to %2"_s.arg(theLeast).arg(theMost));
    return theDefault;
}

bool VXSimulatorJsonReader::flag(const QString& theKey, bool theDefault)
{
    const QJsonValue found = value(theKey);
    if (!found.isUndefined() && !found.isBool())
        fail(theKey, u"must be true or false"_s);
    return found.toBool(theDefault);
}

QString VXSimulatorJsonReader::text(const QString& theKey, const QString& theDefault)
{
    const QJsonValue found = value(theKey);
    if (!found.isUndefined() && !found.isString())
        fail(theKey, u"must be a text"_s);
    return found.toString(theDefault);
}

QStringList VXSimulatorJsonReader::texts(const QString& theKey, const QStringList& theDefault)
{
    const QJsonValue found = value(theKey);
    if (found.isUndefined())
        return theDefault;
    if (!found.isArray())
        fail(theKey, u"must be a list of texts"_s);
    QStringList list;
    for (const QJsonValue item : found.toArray()) {
        if (!item.isString())
            fail(theKey, u"must be a list of texts"_s);
        list.append(item.toString());
    }
    return list;
}

QJsonObject VXSimulatorJsonReader::object(const QString& theKey)
{
    const QJsonValue found = value(theKey);
    if (!found.isUndefined() && !found.isObject())
        fail(theKey, u"must be an object"_s);
    return found.toObject();
}

QList<QJsonObject> VXSimulatorJsonReader::objects(const QString& theKey)
{
    const QJsonValue found = value(theKey);
    if (!found.isUndefined() && !found.isArray())
        fail(theKey, u"must be a list of objects"_s);
    QList<QJsonObject> list;
    for (const QJsonValue item : found.toArray()) {
        if (!item.isObject())
            fail(theKey, u"must be a list of objects"_s);
        list.append(item.toObject());
    }
    return list;
}

void VXSimulatorJsonReader::fail(const QString& theKey, const QString& theReason)
{
    if (myError.isEmpty())
        myError = u"%1: \"%2\" %3"_s.arg(myName, theKey, theReason);
}

QString VXSimulatorJsonReader::error() const
{
    if (!myError.isEmpty())
        return myError;
    for (auto entry = myObject.begin(); entry != myObject.end(); ++entry)
        if (!myRead.contains(entry.key()))
            return u"%1: unknown key \"%2\""_s.arg(myName, entry.key());
    return {};
}
