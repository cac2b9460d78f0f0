#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// What the customer is about to order, and the coupon that lowers its price. A plain value;
/// amounts are in euro cents.
class VXSampleBasket
{
    Q_DECLARE_TR_FUNCTIONS(VXSampleBasket)

public:
    /// What became of a coupon code.
    enum class CouponAnswer
    {
        Accepted,
        Removed,
        Unknown,
        Expired,
        BasketTooSmall,
    };

    /// Applies the code, which counts without regard to case and to blanks around it, in place of
    /// the one before; an empty code removes that. A refused code leaves no coupon.
    CouponAnswer applyCoupon(const QString& theCode);

    /// As it is written on the coupon; empty without one.
    [[nodiscard]] QString coupon() const { return myCoupon; }

    [[nodiscard]] int goods() const;
    [[nodiscard]] int discount() const;
    [[nodiscard]] int shipping() const;
    [[nodiscard]] int total() const { return goods() - discount() + shipping(); }

    /// Articles, sums and total with German prices, as the order summary page shows them.
    [[nodiscard]] QJsonObject summary() const;

    /// The sentence for the customer.
    [[nodiscard]] static QString text(CouponAnswer theAnswer, const QString& theCode);

    /// "29,95 €"
    [[nodiscard]] static QString price(int theCents);

private:
    QString myCoupon;
};
