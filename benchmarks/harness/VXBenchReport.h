#pragma once

#include "VXBenchRow.h"

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

/// All rows of a run, what could not be measured, and the judgement over them.
class VXBenchReport
{
public:
    /// theSetting says where and how it was measured ("machine", "rounds", ...), in the report's
    /// head.
    void setSetting(const QString& theName, const QString& theValue);

    void add(const VXBenchRow& theRow) { myRows.append(theRow); }
    /// A benchmark that could not be measured, or whose answers differ. It fails every check.
    void addFailure(const QString& theId, const QString& theReason);

    [[nodiscard]] const QList<VXBenchRow>& rows() const { return myRows; }
    [[nodiscard]] const QStringList& failures() const { return myFailures; }

    /// What misses its goal by more than the factor theSlack, a line each, failures included; empty
    /// when the check passes.
    [[nodiscard]] QStringList complaints(double theSlack) const;

    [[nodiscard]] QJsonObject json() const;
    [[nodiscard]] QString markdown() const;

private:
    QList<std::pair<QString, QString>> mySettings;
    QList<VXBenchRow> myRows;
    QStringList myFailures;
};
