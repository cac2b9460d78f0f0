#include "VXErrorEvent.h"

VXErrorEvent::VXErrorEvent(int theType, const QString& theMessage, int theInternalErrorCode)
    : myType(theType)
    , myMessage(theMessage)
    , myInternalErrorCode(theInternalErrorCode)
{
}
