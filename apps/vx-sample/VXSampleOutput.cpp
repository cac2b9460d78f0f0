#include "VXSampleOutput.h"

#include <QtCore/QJsonDocument>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void write(std::FILE* theStream, const QByteArray& theLine)
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
    result(theFields);
}

void VXSampleOutput::result(const QJsonObject& theResult)
{
    const QMutexLocker locker(&myMutex);
    write(stdout, QJsonDocument(theResult).toJson(QJsonDocument::Compact));
}

void VXSampleOutput::message(const QString& theText)
{
    const QMutexLocker locker(&myMutex);
    write(stderr, theText.toUtf8());
}

void VXSampleOutput::text(const QString& theText)
{
    const QMutexLocker locker(&myMutex);
    write(stdout, theText.toUtf8());
}
