#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// One row of the tour's table: what was done, what came back, and what is wrong with it.
struct VXTourRow
{
    QString group; ///< one word, for --only
    QString what;
    QString answer;
    QStringList complaints; ///< empty: everything is as the simulator recorded it
    QList<QJsonObject> recorded;
    QStringList pictures; ///< file names in the tour's folder
    qint64 milliseconds = 0;

    [[nodiscard]] bool isGood() const { return complaints.isEmpty(); }
    [[nodiscard]] QJsonObject toJson() const;
};
