#pragma once

#include "VXSampleBasket.h"

#include <QtCore/QJsonObject>
#include <QtCore/QObject>

class VXSampleOutput;

/// The native half of the order summary, published to the page as "wizardScreen": it knows the
/// basket, checks coupons and takes the order. Each call of the page becomes an event.
///
/// Pages may call the slots with anything; nothing here trusts the text. Main thread.
class VXSampleWizardScreen : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleWizardScreen)

public:
    /// theOutput must outlive this object.
    explicit VXSampleWizardScreen(VXSampleOutput& theOutput);

public Q_SLOTS:
    /// The page has the channel: it gets its first values.
    void webChannelReady();
    void applyCoupon(const QString& theText);

    /// Orders once; later calls do nothing.
    void placeOrder(bool theWantsNewsletter);

Q_SIGNALS:
    // What ordersummary.js listens to.
    void setCouponEditVisible(bool theIsVisible);
    void setCouponCode(const QString& theCode);
    void setNewsletterVisible(bool theIsVisible);
    void setNewsletterChecked(bool theIsChecked);

    /// What the page shows by its own function showSummary().
    void summaryChanged(const QJsonObject& theSummary);
    /// The sentence for showOrdered().
    void ordered(const QString& theText);

private:
    void publish();

    VXSampleOutput& myOutput;
    VXSampleBasket myBasket;
    QString myCouponText; // what stands in the page's field
    VXSampleBasket::CouponAnswer myCouponAnswer = VXSampleBasket::CouponAnswer::Removed;
    bool myIsOrdered = false;
};
