#pragma once

#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QStringList>

/// Keeps the records that the library writes during the tour. Records may come from any thread.
class VXTourLog : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXTourLog)

public:
    VXTourLog();
    ~VXTourLog() override;

    /// Adds a line of the tour itself.
    void note(const QString& theLine);

    [[nodiscard]] qsizetype size() const;

    /// The lines from `theFirst` on.
    [[nodiscard]] QStringList linesFrom(qsizetype theFirst) const;

private:
    mutable QMutex myMutex;
    QStringList myLines; // guarded by myMutex
};
