#include "VXSampleFormTypist.h"

#include <VXNetworking/VXOAuth2LoginDialog.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QPointer>
#include <QtWebEngineWidgets/QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

/// The script that fills the form in; its value is whether there was one.
QString scriptFor(const QString& theUser, const QString& thePassword)
{
    const QJsonArray values{theUser, thePassword}; // as JSON they are literals of the script, too
    return uR"((([user, password]) => {
        const secret = document.querySelector('input[type=password]');
        if (!secret || !secret.form)
            return false;
        const name = secret.form.querySelector(
            'input[type=email], input[type=text], input:not([type])');
        if (name)
            name.value = user;
        secret.value = password;
        // Not secret.form.submit(): a button of that name would stand for the function.
        HTMLFormElement.prototype.requestSubmit.call(secret.form);
        return true;
    })(%1))"_s.arg(QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact)));
}

} // namespace

VXSampleFormTypist::VXSampleFormTypist(VXOAuth2LoginDialog& theDialog, const QUrl& theProvider,
                                       const QString& theUser, const QString& thePassword)
    : myDialog(theDialog)
    , myProvider(theProvider)
    , myUser(theUser)
    , myPassword(thePassword)
{
    connect(theDialog.findChild<QWebEngineView*>(), &QWebEngineView::loadFinished, this,
            &VXSampleFormTypist::type);
}

void VXSampleFormTypist::type()
{
    if (myHasTyped || myDialog.url().scheme() != myProvider.scheme() ||
        myDialog.url().authority() != myProvider.authority())
        return;
    auto* const page = myDialog.findChild<QWebEngineView*>()->page();
    page->runJavaScript(scriptFor(myUser, myPassword),
                        [self = QPointer<VXSampleFormTypist>(this)](const QVariant& theResult) {
                            if (self)
                                self->myHasTyped = self->myHasTyped || theResult.toBool();
                        });
}
