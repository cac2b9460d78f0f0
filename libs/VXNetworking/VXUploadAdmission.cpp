#include "VXUploadAdmission.h"

QStringList VXUploadAdmission::sessionIds(const QByteArray& theHeader)
{
    QStringList ids;
    for (const QByteArray& pair : theHeader.split(';')) {
        const qsizetype equals = pair.indexOf('=');
        if (equals > 0 && pair.first(equals).trimmed() == "sid")
            ids.append(QString::fromLatin1(pair.sliced(equals + 1).trimmed()));
    }
    return ids;
}

QString VXUploadAdmission::token(const QStringList& theTokens, const QString& theQuery,
                                 const Headers& theHeaders)
{
    if (theTokens.contains(theQuery))
        return theQuery;

    for (const auto& [name, value] : theHeaders) {
        if (name != "Cookie")
            continue;
        for (const QString& id : sessionIds(value)) {
            if (theTokens.contains(id))
                return id;
        }
    }
    return {};
}
