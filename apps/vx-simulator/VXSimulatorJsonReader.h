#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Reads a JSON object strictly: a value of the wrong type, a number out of range and a key that
/// nobody asked for are errors that name the key. The first error stays.
class VXSimulatorJsonReader
{
public:
    /// The name tells errors apart, for example "behaviour".
    VXSimulatorJsonReader(const QString& theName, const QJsonObject& theObject);

    [[nodiscard]] bool has(const QString& theKey) const;
    qint64 number(const QString& theKey, qint64 theDefault, qint64 theLeast, qint64 theMost);
    bool flag(const QString& theKey, bool theDefault);
    QString text(const QString& theKey, const QString& theDefault = {});
    QStringList texts(const QString& theKey, const QStringList& theDefault = {});
    QJsonObject object(const QString& theKey);
    QList<QJsonObject> objects(const QString& theKey);
    /// Adds an error of the caller's own.
    void fail(const QString& theKey, const QString& theReason);
    /// The first error, or that of the first key which was never read; empty when all is well.
    [[nodiscard]] QString error() const;

private:
    QJsonValue value(const QString& theKey);

    QString myName;
    QJsonObject myObject;
    QStringList myRead;
    QString myError;
};
