#pragma once

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// The tables of docs/reliability.md. A test holds them against what it measures, so that the
/// document tells what is.
class VXReliabilityDocument
{
public:
    using Rows = QHash<QString, QStringList>;

    VXReliabilityDocument() = delete;

    /// The table below the heading: the first cell of each row with the others, trimmed. The row
    /// of titles is left out. Ends the test program when there is none, or a name comes twice.
    [[nodiscard]] static Rows rows(const QString& theHeading);

    /// Whether a cell allows what was measured: "a or b" allows both, "at most N" every number up
    /// to it.
    [[nodiscard]] static bool allows(const QString& theCell, const QString& theMeasured);
};
