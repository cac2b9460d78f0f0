#include "VXBenchGoal.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

QLatin1StringView name(VXBenchGoal::Figure theFigure)
{
    switch (theFigure) {
    case VXBenchGoal::Figure::RatioMedian:
        return "ratio"_L1;
    case VXBenchGoal::Figure::Median:
        return "median"_L1;
    case VXBenchGoal::Figure::Percentile95:
        return "p95"_L1;
    case VXBenchGoal::Figure::Smallest:
        return "least"_L1;
    case VXBenchGoal::Figure::Largest:
        return "most"_L1;
    }
    return {};
}

} // namespace

bool VXBenchGoal::isReachedBy(double theValue, double theSlack) const
{
    switch (myKind) {
    case Kind::Reported:
        return true;
    case Kind::NoMoreThan:
        return theValue <= myLimit * theSlack; // false for NaN
    case Kind::NoLessThan:
        return theValue >= myLimit / theSlack;
    }
    return false;
}

QString VXBenchGoal::text() const
{
    if (myKind == Kind::Reported)
        return {};
    return u"%1 %2 %3"_s.arg(name(myFigure), myKind == Kind::NoMoreThan ? "<="_L1 : ">="_L1,
                             QString::number(myLimit));
}
