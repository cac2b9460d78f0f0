#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>
#include <QtWebChannel/QWebChannel>

/// The way by which a page and native objects talk to each other: a web channel, and what a page
/// must be told to reach it.
///
/// Everything runs in the thread that made it.
class VXNETWORKING_EXPORT VXAbstractCommunication
{
    Q_DISABLE_COPY_MOVE(VXAbstractCommunication)

public:
    virtual ~VXAbstractCommunication();

    /// Where pages connect to; "tov://localhost:0" stands for "no server runs".
    [[nodiscard]] virtual QUrl serverUrl() const;

    /// theQuery with what a page needs appended: "webChannelBaseUrl" with serverUrl().
    [[nodiscard]] virtual QUrlQuery addServerParameter(const QUrlQuery& theQuery) const;

    /// What a page has to send first; empty where nothing has to be sent.
    [[nodiscard]] virtual QString securityToken() const;

    /// The channel that all pages of this object share. It lives as long as this object.
    [[nodiscard]] QWebChannel& webChannel() { return myWebChannel; }

    /// Publishes theObject to the pages under theName; the object stays the caller's and must
    /// outlive the channel or be taken back with QWebChannel::deregisterObject().
    void registerObject(const QString& theName, QObject* theObject);

protected:
    VXAbstractCommunication();

private:
    QWebChannel myWebChannel;
};
