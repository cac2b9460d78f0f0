#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>

/// Catches what the desktop would open, for the schemes named, while this object lives.
class VXOpenedUrls : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXOpenedUrls)

public:
    explicit VXOpenedUrls(const QStringList& theSchemes)
        : mySchemes(theSchemes)
    {
        for (const QString& scheme : theSchemes)
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~VXOpenedUrls() override
    {
        for (const QString& scheme : mySchemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }

    /// What came so far, in order.
    [[nodiscard]] QList<QUrl> urls() const { return myUrls; }

public Q_SLOTS:
    void open(const QUrl& theUrl)
    {
        myUrls.append(theUrl);
        Q_EMIT opening(theUrl);
    }

Q_SIGNALS:
    /// From within the call; a receiver may do what a desktop does that asks first.
    void opening(const QUrl& theUrl);

private:
    QStringList mySchemes;
    QList<QUrl> myUrls;
};
