#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QString>

/// One file of a multipart upload. A plain value; reentrant.
class VXNETWORKING_EXPORT VXUploadFile
{
public:
    /// theType is the form field's name or the kind of the part, theFile the path on disk.
    /// An empty theMimeType is found out from the file.
    VXUploadFile(const QString& theType, const QString& theFile, const QString& theMimeType);

    /// The name of the form field, or the kind of the part.
    [[nodiscard]] QString type() const { return myType; }

    /// The path as given; the file may be missing.
    [[nodiscard]] QString file() const { return myFile; }

    /// The given MIME type; without one, that of the file.
    [[nodiscard]] QString mimeType() const;

    /// The MIME type by name and content of the file at this path, which is read for it.
    [[nodiscard]] static QString mimeType(const QString& theFile);

private:
    QString myType;
    QString myFile;
    QString myMimeType;
};
