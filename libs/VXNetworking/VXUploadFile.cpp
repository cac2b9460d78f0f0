#include "VXUploadFile.h"

#include <QtCore/QMimeDatabase>

VXUploadFile::VXUploadFile(const QString& theType, const QString& theFile,
                           const QString& theMimeType)
    : myType(theType)
    , myFile(theFile)
    , myMimeType(theMimeType)
{
}

QString VXUploadFile::mimeType() const
{
    return myMimeType.isEmpty() ? mimeType(myFile) : myMimeType;
}

QString VXUploadFile::mimeType(const QString& theFile)
{
    return QMimeDatabase().mimeTypeForFile(theFile).name();
}
