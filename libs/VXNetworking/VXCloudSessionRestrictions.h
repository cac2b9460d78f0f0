#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QDateTime>

/// What the cloud restricts in a session. A value; reentrant.
class VXNETWORKING_EXPORT VXCloudSessionRestrictions
{
public:
    VXCloudSessionRestrictions();

    ///@{
    /// Moving carries all seven fields over.
    VXCloudSessionRestrictions(const VXCloudSessionRestrictions&) = default;
    VXCloudSessionRestrictions(VXCloudSessionRestrictions&& theOther) noexcept;
    VXCloudSessionRestrictions& operator=(const VXCloudSessionRestrictions&) = default;
    VXCloudSessionRestrictions& operator=(VXCloudSessionRestrictions&& theOther) noexcept;
    ///@}

    virtual ~VXCloudSessionRestrictions();

    /// The earliest time at which a refused login may be tried again; invalid = at once.
    [[nodiscard]] QDateTime waitUntilRetry() const { return myWaitUntilRetry; }

    /// An invalid time takes the waiting back.
    void setWaitUntilRetry(const QDateTime& theTime) { myWaitUntilRetry = theTime; }

    /// The end of the session as the service reported it.
    [[nodiscard]] QDateTime sessionValidUntil() const { return mySessionValidUntil; }

    /// An invalid time means that the end is unknown.
    void setSessionValidUntil(const QDateTime& theTime) { mySessionValidUntil = theTime; }

    /// Whether the service grants only a restricted session.
    [[nodiscard]] bool sessionRestricted() const { return mySessionRestricted; }

    /// Off at the start.
    void setSessionRestricted(bool theIsRestricted) { mySessionRestricted = theIsRestricted; }

    /// Whether the terms of use changed and must be accepted again.
    [[nodiscard]] bool termsUpdated() const { return myTermsUpdated; }

    /// Off at the start.
    void setTermsUpdated(bool theIsUpdated) { myTermsUpdated = theIsUpdated; }

    /// The same for the privacy statement.
    [[nodiscard]] bool privacyStatementUpdated() const { return myPrivacyStatementUpdated; }

    /// Off at the start.
    void setPrivacyStatementUpdated(bool theIsUpdated) { myPrivacyStatementUpdated = theIsUpdated; }

    /// The version number of the current terms.
    [[nodiscard]] int termsVersion() const { return myTermsVersion; }

    /// 0 at the start; not checked.
    void setTermsVersion(int theVersion) { myTermsVersion = theVersion; }

    /// The version number of the current privacy statement.
    [[nodiscard]] int privacyStatementVersion() const { return myPrivacyStatementVersion; }

    /// 0 at the start; not checked.
    void setPrivacyStatementVersion(int theVersion) { myPrivacyStatementVersion = theVersion; }

    /// Milliseconds until 15 minutes before the session's end; never less than 100, also when the
    /// end is past or unknown, so that it always suits a timer.
    [[nodiscard]] qint64 expiresInMSec() const;

private:
    QDateTime myWaitUntilRetry;
    QDateTime mySessionValidUntil;
    bool mySessionRestricted = false;
    bool myTermsUpdated = false;
    bool myPrivacyStatementUpdated = false;
    qint32 myTermsVersion = 0;
    qint32 myPrivacyStatementVersion = 0;
};
