#include "VXSampleProgress.h"

#include "VXSampleOutput.h"

#include <QtCore/QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

VXSampleProgress::VXSampleProgress(VXSampleOutput* theOutput)
    : myOutput(theOutput)
{
}

VXSampleProgress::~VXSampleProgress() = default;

const char* VXSampleProgress::slot()
{
    return SLOT(progress(qint64, qint64));
}

void VXSampleProgress::takeOutstanding()
{
    QCoreApplication::sendPostedEvents(this);
}

void VXSampleProgress::progress(qint64 theDone, qint64 theTotal)
{
    ++myNotices;
    myMostDone = std::max(myMostDone, theDone);
    if (myOutput)
        myOutput->event(u"progress"_s, {{u"done"_s, theDone}, {u"total"_s, theTotal}});
}
