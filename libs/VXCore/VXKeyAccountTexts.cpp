#include "VXKeyAccountTexts.h"

#include "VXDeploymentConfig.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int displayName = 1;

} // namespace

VXKeyAccountTexts::VXKeyAccountTexts() = default;
VXKeyAccountTexts::~VXKeyAccountTexts() = default;

QString VXKeyAccountTexts::text(int theNumber) const
{
    {
        const QMutexLocker locker(&myMutex);
        const auto text = myTexts.constFind(theNumber);
        if (text != myTexts.cend())
            return *text;
    }
    if (theNumber != displayName)
        return {};
    return VXDeploymentConfig::instance()->text(u"KeyAccount/text1"_s);
}

void VXKeyAccountTexts::setText(int theNumber, const QString& theText)
{
    const QMutexLocker locker(&myMutex);
    myTexts.insert(theNumber, theText);
}
