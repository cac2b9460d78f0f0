#include "VXSampleOutput.h"

#include <QtCore/QJsonDocument>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void writeLine(std::FILE* theStream, const QByteArray& theLine)
{
    // A reader that went away is no reason to fail: the exit status still tells the outcome.
    std::fwrite(theLine.constData(), 1, static_cast<size_t>(theLine.size()), theStream);
    std::fputc('\n', theStream);
    std::fflush(theStream);
}

} // namespace

void VXSampleOutput::event(const QString& theName, QJsonObject theFields)
{
    theFields.insert(u"event"_s, theName);
    const QMutexLocker locker(&myMutex);
    write(theFields);
}

void VXSampleOutput::result(const QJsonObject& theResult)
{
    const QMutexLocker locker(&myMutex);
    myLastResult = theResult;
    write(theResult);
}

QJsonObject VXSampleOutput::lastResult() const
{
    const QMutexLocker locker(&myMutex);
    return myLastResult;
}

void VXSampleOutput::forgetResult()
{
    const QMutexLocker locker(&myMutex);
    myLastResult = {};
}

void VXSampleOutput::write(const QJsonObject& theLine)
{
    writeLine(stdout, QJsonDocument(theLine).toJson(QJsonDocument::Compact));
}

void VXSampleOutput::message(const QString& theText)
{
    const QMutexLocker locker(&myMutex);
    writeLine(stderr, theText.toUtf8());
}

void VXSampleOutput::text(const QString& theText)
{
    const QMutexLocker locker(&myMutex);
    writeLine(stdout, theText.toUtf8());
}
