#include "VXTourLog.h"

#include <VXCore/VXLogger.h>

VXTourLog::VXTourLog()
{
    // Direct: the record belongs to the row during which it was written.
    connect(
        VXLogger::instance(), &VXLogger::recordWritten, this,
        [this](const QString& /*theChannel*/, const QString& theText) { note(theText); },
        Qt::DirectConnection);
}

VXTourLog::~VXTourLog() = default;

void VXTourLog::note(const QString& theLine)
{
    const QMutexLocker locker(&myMutex);
    myLines << theLine;
}

qsizetype VXTourLog::size() const
{
    const QMutexLocker locker(&myMutex);
    return myLines.size();
}

QStringList VXTourLog::linesFrom(qsizetype theFirst) const
{
    const QMutexLocker locker(&myMutex);
    return myLines.sliced(theFirst);
}
