#pragma once

#include <QtCore/QDir>
#include <QtCore/QList>
#include <QtCore/QString>

class VXTourLog;
struct VXTourRow;

/// The tour's results for readers: a table for the terminal and the files of its folder.
class VXTourReport
{
    Q_DISABLE_COPY_MOVE(VXTourReport)

public:
    /// `theRows` must outlive this object.
    explicit VXTourReport(const QList<VXTourRow>& theRows);

    /// The table in plain text.
    [[nodiscard]] QString table() const;

    /// Writes "tour.json", "tour.log", "index.html" and "01-tour.png". Returns what went wrong,
    /// empty on success. A QApplication must exist.
    QString write(const QDir& theFolder, const VXTourLog& theLog) const;

private:
    [[nodiscard]] QByteArray json() const;
    [[nodiscard]] QByteArray html() const;

    const QList<VXTourRow>& myRows;
};
