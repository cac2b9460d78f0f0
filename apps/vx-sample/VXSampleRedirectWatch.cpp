#include "VXSampleRedirectWatch.h"

#include <VXNetworking/VXOAuth2LoginDialog.h>

#include <QtCore/QUrlQuery>

using namespace Qt::StringLiterals;

namespace {

/// A value as the provider meant it: in a redirect's query "+" is a blank, too.
QString valueOf(const QUrl& theUrl, const QString& theName)
{
    QString query = theUrl.query(QUrl::FullyEncoded);
    query.replace(u'+', u"%20"_s);
    return QUrlQuery(query).queryItemValue(theName, QUrl::FullyDecoded);
}

} // namespace

VXSampleRedirectWatch::VXSampleRedirectWatch(VXOAuth2LoginDialog& theDialog,
                                             const QUrl& theRedirectUri, const QString& theState)
    : myDialog(theDialog)
    , myRedirectUri(theRedirectUri)
    , myState(theState)
{
    connect(&theDialog, &VXOAuth2LoginDialog::urlHasChanged, this, &VXSampleRedirectWatch::look);
}

void VXSampleRedirectWatch::look(const QUrl& theUrl)
{
    if (myIsOver || !isRedirect(theUrl) || valueOf(theUrl, u"state"_s) != myState)
        return;
    const QString code = valueOf(theUrl, u"code"_s);
    myErrorCode = valueOf(theUrl, u"error"_s);
    if (code.isEmpty() && myErrorCode.isEmpty())
        return;

    myIsOver = true;
    if (code.isEmpty()) {
        myDialog.startRejectTimer();
        return;
    }
    myDialog.setAccessCode(code);
    myDialog.startAcceptTimer();
}

bool VXSampleRedirectWatch::isRedirect(const QUrl& theUrl) const
{
    const auto withoutQuery = QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::RemoveUserInfo;
    return theUrl.matches(myRedirectUri, withoutQuery | QUrl::NormalizePathSegments);
}
