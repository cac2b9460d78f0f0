#include "VXUploadFileName.h"

using namespace Qt::StringLiterals;

QString VXUploadFileName::stored(const QString& theFileName)
{
    QString name = theFileName.sliced(theFileName.lastIndexOf(u'/') + 1);
    name.remove(QChar::Null);

    const qsizetype dot = name.lastIndexOf(u'.');
    const QString baseName = dot < 0 ? name : name.first(dot);
    const QString suffix = dot < 0 ? QString() : name.sliced(dot + 1);
    return u"%1.qrul.%2"_s.arg(baseName, suffix);
}
