#include "VXSampleContext.h"

#include "VXSampleOutput.h"
#include "VXSampleSimulator.h"

#include <QtCore/QUrl>

using namespace Qt::StringLiterals;

bool VXSampleContext::resolve(const QString& theText, QUrl* theUrl) const
{
    if (theText.startsWith(u'/') && !simulator.open()) {
        output.message(u"vx-sample: %1"_s.arg(simulator.errorText()));
        return false;
    }
    *theUrl = simulator.address(theText);
    return true;
}
