#include "VXSampleWizardScreen.h"

#include "VXSampleOutput.h"

using namespace Qt::StringLiterals;

namespace {

using Answer = VXSampleBasket::CouponAnswer;

constexpr qsizetype longestCode = 40; // characters, as in the page's field

QString name(Answer theAnswer)
{
    switch (theAnswer) {
    case Answer::Accepted:
        return u"accepted"_s;
    case Answer::Removed:
        return u"removed"_s;
    case Answer::Unknown:
        return u"unknown"_s;
    case Answer::Expired:
        return u"expired"_s;
    case Answer::BasketTooSmall:
        return u"basketTooSmall"_s;
    }
    return {};
}

} // namespace

VXSampleWizardScreen::VXSampleWizardScreen(VXSampleOutput& theOutput)
    : myOutput(theOutput)
{
}

void VXSampleWizardScreen::webChannelReady()
{
    myOutput.event(u"pageReady"_s, {});
    Q_EMIT setCouponEditVisible(!myCouponText.isEmpty());
    Q_EMIT setCouponCode(myCouponText);
    Q_EMIT setNewsletterVisible(true);
    Q_EMIT setNewsletterChecked(false); // consent is given by the customer, never beforehand
    publish();
}

void VXSampleWizardScreen::applyCoupon(const QString& theText)
{
    if (myIsOrdered)
        return;

    const QString text = theText.left(longestCode);
    myCouponAnswer = myBasket.applyCoupon(text);
    const bool isAccepted = myCouponAnswer == Answer::Accepted;
    myCouponText = isAccepted ? myBasket.coupon() : text;
    myOutput.event(u"coupon"_s, {{u"text"_s, text},
                                 {u"answer"_s, name(myCouponAnswer)},
                                 {u"totalCents"_s, myBasket.total()}});
    Q_EMIT setCouponCode(myCouponText);
    publish();
}

void VXSampleWizardScreen::placeOrder(bool theWantsNewsletter)
{
    if (myIsOrdered)
        return;

    myIsOrdered = true;
    myOutput.event(u"ordered"_s, {{u"coupon"_s, myBasket.coupon()},
                                  {u"newsletter"_s, theWantsNewsletter},
                                  {u"totalCents"_s, myBasket.total()}});
    Q_EMIT ordered(tr("Vielen Dank für Ihre Bestellung über %1.")
                       .arg(VXSampleBasket::price(myBasket.total())));
}

void VXSampleWizardScreen::publish()
{
    const bool isWrong = myCouponAnswer != Answer::Accepted && myCouponAnswer != Answer::Removed;
    QJsonObject summary = myBasket.summary();
    summary.insert(u"couponMessage"_s, VXSampleBasket::text(myCouponAnswer, myCouponText));
    summary.insert(u"couponIsWrong"_s, isWrong);
    Q_EMIT summaryChanged(summary);
}
