#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>

/// The native object that the order summary expects; it keeps what the page asks for.
class VXWizardScreen : public QObject
{
    Q_OBJECT

public:
    QStringList coupons;
    int readyCount = 0;
    QList<bool> orders; // whether each wants the newsletter

public Q_SLOTS:
    void applyCoupon(const QString& theText) { coupons << theText; }
    void webChannelReady() { ++readyCount; }
    void placeOrder(bool theWantsNewsletter) { orders << theWantsNewsletter; }

Q_SIGNALS:
    void setCouponEditVisible(bool theIsVisible);
    void setCouponCode(const QString& theCode);
    void setNewsletterVisible(bool theIsVisible);
    void setNewsletterChecked(bool theIsChecked);
};
