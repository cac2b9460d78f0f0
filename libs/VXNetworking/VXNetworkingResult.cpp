#include "VXNetworkingResult.h"

#include "VXWholeFile.h"

#include <VXCore/VXPlatformIndependent.h>

#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>

using namespace Qt::StringLiterals;

VXNetworkingResult::VXNetworkingResult(const QDomDocument& theAnswer)
    : myDocument(theAnswer)
{
    myError.raiseXTCIError(theAnswer);
}

VXNetworkingResult::VXNetworkingResult(VXNetworkingErrorCode theCode)
    : myError(theCode)
{
    if (theCode == NoError)
        myDocument = QDomDocument(u"emptyDocument"_s);
}

VXNetworkingResult::~VXNetworkingResult() = default;

bool VXNetworkingResult::isAbortSituation() const
{
    return myDocument.isNull() || myError.errorOccurred();
}

QDomElement VXNetworkingResult::contentNode() const
{
    return myDocument.lastChild().firstChildElement(u"content"_s);
}

QString VXNetworkingResult::serverTimeStamp() const
{
    return myDocument.lastChildElement().attribute(u"server_timestamp"_s);
}

QString VXNetworkingResult::documentToString() const
{
    return myDocument.toString(1);
}

void VXNetworkingResult::raiseError(VXNetworkingErrorCode theCode)
{
    myError.raise(theCode);
}

void VXNetworkingResult::raiseFileError(const QFileInfo& theFile)
{
    myError.checkFileError(theFile);
}

void VXNetworkingResult::saveContentToFile(const QFileInfo& theFile)
{
    if (isAbortSituation() || contentNode().isNull())
        return;

    const QString path = theFile.absoluteFilePath();
    if (writeContent(path)) {
        QFileInfo written(theFile);
        written.refresh(); // it may remember the file before
        VXPlatformIndependent::instance()->fileWritten(written);
        return;
    }
    qWarning().noquote() << u"could not write to file %1"_s.arg(path);
    raiseFileError(theFile);
}

bool VXNetworkingResult::writeContent(const QString& thePath) const
{
    QByteArray bytes;
    QTextStream stream(&bytes); // UTF-8, whatever the answer's own encoding was
    stream << uR"(<?xml version="1.0" encoding="UTF-8"?>)"_s << '\n';
    contentNode().save(stream, 1);
    stream.flush();
    QString reason;
    return VXWholeFile::write(thePath, bytes, reason);
}
