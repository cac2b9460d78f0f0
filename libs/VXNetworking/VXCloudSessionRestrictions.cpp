#include "VXCloudSessionRestrictions.h"

namespace {

constexpr qint64 safetyMarginInMs = 900'000;
constexpr qint64 shortestDelayInMs = 100;

} // namespace

VXCloudSessionRestrictions::VXCloudSessionRestrictions() = default;

VXCloudSessionRestrictions::VXCloudSessionRestrictions(
    VXCloudSessionRestrictions&& theOther) noexcept
{
    *this = std::move(theOther);
}

VXCloudSessionRestrictions&
VXCloudSessionRestrictions::operator=(VXCloudSessionRestrictions&& theOther) noexcept
{
    myWaitUntilRetry.swap(theOther.myWaitUntilRetry);
    mySessionValidUntil.swap(theOther.mySessionValidUntil);
    mySessionRestricted = theOther.mySessionRestricted;
    myTermsUpdated = theOther.myTermsUpdated;
    myPrivacyStatementUpdated = theOther.myPrivacyStatementUpdated;
    myTermsVersion = theOther.myTermsVersion;
    myPrivacyStatementVersion = theOther.myPrivacyStatementVersion;
    return *this;
}

VXCloudSessionRestrictions::~VXCloudSessionRestrictions() = default;

qint64 VXCloudSessionRestrictions::expiresInMSec() const
{
    const qint64 remaining = QDateTime::currentDateTime().msecsTo(mySessionValidUntil);
    return qMax(shortestDelayInMs, remaining - safetyMarginInMs);
}
