#include "VXHeaderField.h"

#include <QtCore/QDebug>

namespace {

bool breaksLine(const QString& theText)
{
    return theText.contains(u'\r') || theText.contains(u'\n') || theText.contains(QChar::Null);
}

} // namespace

bool VXHeaderField::isSound(const QString& theName, const QString& theValue)
{
    if (!breaksLine(theName) && !breaksLine(theValue))
        return true;
    qWarning() << "-- Header dropped, a line break or NUL is in it:" << theName;
    return false;
}
