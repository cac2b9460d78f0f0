#include "VXLogCapture.h"

#include <utility>

QMutex VXLogCapture::ourMutex;
VXLogCapture* VXLogCapture::ourCurrent = nullptr;

VXLogCapture::VXLogCapture()
{
    const QMutexLocker locker(&ourMutex);
    myOuter = std::exchange(ourCurrent, this);
    myPrevious = qInstallMessageHandler(&VXLogCapture::handle);
}

VXLogCapture::~VXLogCapture()
{
    const QMutexLocker locker(&ourMutex);
    qInstallMessageHandler(myPrevious);
    ourCurrent = myOuter;
}

QList<VXLogCapture::Line> VXLogCapture::lines() const
{
    const QMutexLocker locker(&ourMutex);
    return myLines;
}

QStringList VXLogCapture::texts() const
{
    return textsWith({});
}

QStringList VXLogCapture::texts(QtMsgType theType) const
{
    QStringList result;
    for (const Line& line : lines()) {
        if (line.type == theType)
            result.append(line.text);
    }
    return result;
}

QStringList VXLogCapture::textsWith(const QString& theFragment) const
{
    QStringList result;
    for (const Line& line : lines()) {
        if (line.text.contains(theFragment))
            result.append(line.text);
    }
    return result;
}

void VXLogCapture::clear()
{
    const QMutexLocker locker(&ourMutex);
    myLines.clear();
}

void VXLogCapture::handle(QtMsgType theType, const QMessageLogContext& theContext,
                          const QString& theText)
{
    QtMessageHandler previous = nullptr;
    {
        const QMutexLocker locker(&ourMutex);
        if (!ourCurrent)
            return; // a message of another thread that was under way when the capture ended
        ourCurrent->myLines.append({theType, theText});
        previous = ourCurrent->myPrevious;
        // An inner capture's predecessor is this function: go to the outermost predecessor.
        for (const VXLogCapture* outer = ourCurrent->myOuter; outer; outer = outer->myOuter)
            previous = outer->myPrevious;
    }
    if (previous)
        previous(theType, theContext, theText);
}
