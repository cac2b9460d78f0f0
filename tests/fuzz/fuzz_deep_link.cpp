#include "VXFuzzTarget.h"

#include <VXNetworking/VXCredentials.h>

#include <QtCore/QUrl>

/// A link from outside that logs somebody in once.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    const QUrl link(QString::fromUtf8(VXFuzzTarget::input(theData, theSize)));
    VXCredentials credentials = VXCredentials::fromZelDeeplink(link);
    VXFuzzTarget::check(!credentials.hasPassword(), "a link brings no password");
    VXFuzzTarget::check(!credentials.isValid(), "a link alone is no login");
    VXFuzzTarget::check(credentials.refreshToken().isEmpty(), "a link brings no refresh token");
    VXFuzzTarget::check(link.hasQuery() || !credentials.hasAuthOnceToken(),
                        "the token stands in the query");
    VXFuzzTarget::saw("valid", link.isValid());
    VXFuzzTarget::saw("scheme", link.scheme().size());
    VXFuzzTarget::saw("host", link.host().size());
    VXFuzzTarget::saw("user", credentials.username().size());
    VXFuzzTarget::saw("token", credentials.authOnceToken().size());
    VXFuzzTarget::planted(credentials.hasUserName() && credentials.authOnceToken().size() > 5);
    const VXCredentials stripped = credentials.strippedForRefresh();
    VXFuzzTarget::check(!stripped.hasAuthOnceToken(), "a refresh needs no link");
    credentials.clear();
    VXFuzzTarget::check(!credentials.hasUserName(), "cleared");
    return 0;
}
