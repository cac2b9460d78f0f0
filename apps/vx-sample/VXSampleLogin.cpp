#include "VXSampleLogin.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"

#include <VXNetworking/VXOAuth2ExternalLoginDialog.h>

#include <QtCore/QCommandLineParser>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpServer>

using namespace Qt::StringLiterals;

void VXSampleLogin::addOptions(QCommandLineParser& theParser)
{
    theParser.addOptions({
        {u"token-url"_s, u"The provider's address for tokens."_s, u"URL"_s, u"/oauth2/token"_s},
        {u"authorize-url"_s, u"The provider's login page."_s, u"URL"_s, u"/oauth2/authorize"_s},
        {u"revoke-url"_s, u"The provider's address for giving tokens back."_s, u"URL"_s,
         u"/oauth2/revoke"_s},
        {u"client-id"_s, u"The name of this program at the provider."_s, u"ID"_s, u"vx-sample"_s},
        {u"scope"_s, u"What the login shall allow."_s, u"TEXT"_s},
        {u"user"_s, u"The customer's user name."_s, u"NAME"_s},
        {u"password-stdin"_s, u"Read the password from the first line of standard input."_s},
    });
}

bool VXSampleLogin::read(const QCommandLineParser& theArguments, const VXSampleContext& theContext)
{
    clientId = theArguments.value(u"client-id"_s);
    scope = theArguments.value(u"scope"_s);
    user = theArguments.value(u"user"_s);
    if (theArguments.isSet(u"password-stdin"_s))
        password = VXSampleArguments::lineFromStandardInput();
    return theContext.resolve(theArguments.value(u"token-url"_s), &tokenUrl) &&
           theContext.resolve(theArguments.value(u"authorize-url"_s), &authorizeUrl) &&
           theContext.resolve(theArguments.value(u"revoke-url"_s), &revokeUrl);
}

QString VXSampleLogin::complaintAbout(const QString& theOption, const QUrl& theUrl)
{
    const bool isAddress = theUrl.isValid() && !theUrl.host().isEmpty() &&
                           (theUrl.scheme() == "http"_L1 || theUrl.scheme() == "https"_L1);
    return isAddress ? QString()
                     : u"--%1: \"%2\" is no http or https address"_s.arg(
                           theOption, theUrl.toString(QUrl::RemovePassword));
}

bool VXSampleLogin::isRedirectPortFree()
{
    QTcpServer listener;
    listener.setProxy(QNetworkProxy::NoProxy);
    return listener.listen(QHostAddress::Any, VXOAuth2ExternalLoginDialog::defaultListeningPort());
}
