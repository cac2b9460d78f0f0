#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>

/// The native object that the order summary expects; it keeps what the page asks for.
class VXWizardScreen : public QObject
{
    Q_OBJECT

public:
    QStringList coupons;
    int readyCount = 0;

public Q_SLOTS:
    void applyCoupon(const QString& theText) { coupons << theText; }
    void webChannelReady() { ++readyCount; }

Q_SIGNALS:
    void setCouponEditVisible(bool theIsVisible);
    void setCouponCode(const QString& theCode);
    void setNewsletterVisible(bool theIsVisible);
    void setNewsletterChecked(bool theIsChecked);
};
