#include "VXSampleBasket.h"

#include <QtCore/QJsonArray>
#include <QtCore/QLocale>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Article
{
    const char* name;
    int count;
    int cents; // of one
};

constexpr std::array articles{
    Article{QT_TRANSLATE_NOOP("VXSampleBasket", "Fotobuch „Sommer am See“, A4, 48 Seiten"), 1,
            3995},
    Article{QT_TRANSLATE_NOOP("VXSampleBasket", "Abzüge 10 x 15 cm, glänzend"), 50, 15},
};
constexpr int usualShipping = 499;

struct Coupon
{
    QLatin1StringView code;
    int percent; // of the goods
    int cents;   // off the goods
    bool freesShipping;
    int leastGoods; // cents
    bool hasExpired;
};

constexpr std::array coupons{
    Coupon{"SOMMER10"_L1, 10, 0, false, 2000, false},
    Coupon{"WILLKOMMEN5"_L1, 0, 500, false, 3000, false},
    Coupon{"VERSANDFREI"_L1, 0, 0, true, 0, false},
    Coupon{"GROSS100"_L1, 25, 0, false, 10000, false},
    Coupon{"FRUEHLING"_L1, 15, 0, false, 0, true},
};

const Coupon* find(const QString& theCode)
{
    const auto* row = std::ranges::find_if(
        coupons, [&theCode](const Coupon& theRow) { return theCode == theRow.code; });
    return row == coupons.end() ? nullptr : row;
}

QJsonArray row(const QString& theName, int theCents)
{
    return {theName, VXSampleBasket::price(theCents)};
}

} // namespace

VXSampleBasket::CouponAnswer VXSampleBasket::applyCoupon(const QString& theCode)
{
    myCoupon.clear();
    const QString code = theCode.trimmed().toUpper();
    if (code.isEmpty())
        return CouponAnswer::Removed;
    const Coupon* coupon = find(code);
    if (coupon == nullptr)
        return CouponAnswer::Unknown;
    if (coupon->hasExpired)
        return CouponAnswer::Expired;
    if (goods() < coupon->leastGoods)
        return CouponAnswer::BasketTooSmall;

    myCoupon = code;
    return CouponAnswer::Accepted;
}

int VXSampleBasket::goods() const
{
    int cents = 0;
    for (const Article& article : articles)
        cents += article.count * article.cents;
    return cents;
}

int VXSampleBasket::discount() const
{
    const Coupon* coupon = find(myCoupon);
    if (coupon == nullptr)
        return 0;
    return std::min(goods(), coupon->cents + (goods() * coupon->percent + 50) / 100);
}

int VXSampleBasket::shipping() const
{
    const Coupon* coupon = find(myCoupon);
    return coupon != nullptr && coupon->freesShipping ? 0 : usualShipping;
}

QJsonObject VXSampleBasket::summary() const
{
    QJsonArray rows;
    for (const Article& article : articles)
        rows << QJsonArray{tr(article.name), QString::number(article.count),
                           price(article.count * article.cents)};
    QJsonArray sums{row(tr("Zwischensumme"), goods())};
    if (discount() > 0)
        sums << row(tr("Gutschein %1").arg(myCoupon), -discount());
    sums << row(tr("Versand"), shipping());
    return {{u"articles"_s, rows}, {u"sums"_s, sums}, {u"total"_s, price(total())}};
}

QString VXSampleBasket::text(CouponAnswer theAnswer, const QString& theCode)
{
    const QString code = theCode.trimmed().toUpper();
    switch (theAnswer) {
    case CouponAnswer::Accepted:
        return tr("Der Gutschein „%1“ wurde eingelöst.").arg(code);
    case CouponAnswer::Removed:
        return {};
    case CouponAnswer::Unknown:
        return tr("Den Gutschein „%1“ gibt es nicht. Bitte prüfen Sie die Schreibweise.").arg(code);
    case CouponAnswer::Expired:
        return tr("Der Gutschein „%1“ ist abgelaufen.").arg(code);
    case CouponAnswer::BasketTooSmall:
        return tr("Für den Gutschein „%1“ ist der Bestellwert zu niedrig.").arg(code);
    }
    return {};
}

QString VXSampleBasket::price(int theCents)
{
    // The page is German, whatever the computer's language is.
    return QLocale(QLocale::German).toString(theCents / 100.0, 'f', 2) + u" €"_s;
}
