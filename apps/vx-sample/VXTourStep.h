#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>

class VXTourRun;

/// One step of the tour: it fills one row of the table.
struct VXTourStep
{
    QString group; ///< one word, for --only
    QString what;  ///< what the reader sees in the table
    std::function<void(VXTourRun&)> run;
};
