#include "VXUrlSearchBar.h"

#include "VXGUIWidgetsConfig.h"

#include <QtCore/QUrl>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

using namespace Qt::StringLiterals;

VXUrlSearchBar::VXUrlSearchBar(QWidget* theParent)
    : QWidget(theParent)
    , myLock(new QLabel(this))
    , myUrl(new QLineEdit(this))
{
    myLock->setObjectName(u"lockLabel"_s);
    myUrl->setObjectName(u"urlEdit"_s);
    myUrl->setReadOnly(true);
    myUrl->setAccessibleName(tr("Adresse der Seite"));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(myLock);
    layout->addWidget(myUrl, 1);
    urlHasChanged(QUrl());
}

VXUrlSearchBar::~VXUrlSearchBar() = default;

void VXUrlSearchBar::urlHasChanged(const QUrl& theUrl)
{
    myUrl->setText(theUrl.toString(QUrl::RemoveUserInfo));
    myUrl->setCursorPosition(0); // the host is what counts, however long the rest

    const bool isEncrypted = theUrl.scheme() == u"https"_s;
    myLock->setPixmap(
        VXGUIWidgetsConfig::loadPixmapById(isEncrypted ? u"ico_lock"_s : u"ico_lock_open"_s));
    const QString state =
        isEncrypted ? tr("Verschlüsselte Verbindung") : tr("Unverschlüsselte Verbindung");
    myLock->setToolTip(state);
    myLock->setAccessibleName(state);
    myUrl->setAccessibleDescription(state);
}
