// Intersection and containment of two ranges of instants.

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/icl/closed_interval.hpp>
#include <boost/icl/discrete_interval.hpp>
#include <vector>

#include "Zem/Os/ZemTimeInline.h"
#include "limit.h"
#include "values.h"

namespace bench {

namespace {

using Closed = boost::icl::closed_interval<ZemTime>;
using Discrete = boost::icl::discrete_interval<ZemTime>;
using Period = boost::posix_time::time_period;

// The two ranges of each value, in the form that each peer takes.
struct Pair {
    ZemTimeRange x;
    ZemTimeRange y;
};
Pair g_ours[kValues];
std::vector<std::pair<Closed, Closed>> g_closed;
std::vector<std::pair<Discrete, Discrete>> g_discrete;
std::vector<std::pair<Period, Period>> g_periods;

struct Common {
    bool empty;
    ZemTime begin;
    ZemTime end;

    bool operator==(const Common& other) const
    {
        return empty == other.empty && (empty || (begin == other.begin && end == other.end));
    }
};

const boost::posix_time::ptime kEpoch(boost::gregorian::date(1970, 1, 1));

// Boost's periods count microseconds and end before their end.
Period PeriodOf(const ZemTimeRange& r)
{
    auto at = [](ZemTime t) { return kEpoch + boost::posix_time::microseconds(t / 1000); };
    return Period(at(r.end), at(r.begin) + Period::duration_type::unit());
}

ZemTime InstantOf(const boost::posix_time::ptime& t)
{
    return (t - kEpoch).total_microseconds() * 1000;
}

// Whole microseconds of one day; about half of the pairs meet, a quarter of them contain.
void MakeValues()
{
    auto draw = [] {
        ZemTime a = Between(0, 86400000000) * 1000;
        ZemTime b = a + Between(0, 43200000000) * 1000;
        return ZemTimeRange{b, a};
    };
    for (auto& pair : g_ours) {
        pair = {draw(), draw()};
        if (Between(0, 3) == 0) {
            ZemTime middle = (pair.x.begin + pair.x.end) / 2000 * 1000;
            pair.y = {middle, pair.x.end};
        }
        g_closed.push_back({{pair.x.end, pair.x.begin}, {pair.y.end, pair.y.begin}});
        using boost::icl::interval_bounds;
        g_discrete.push_back({{pair.x.end, pair.x.begin, interval_bounds::closed()},
                              {pair.y.end, pair.y.begin, interval_bounds::closed()}});
        g_periods.push_back({PeriodOf(pair.x), PeriodOf(pair.y)});
    }
}

// The reference looks where each bound of one range lies in the other.
bool Holds(const ZemTimeRange& r, ZemTime t)
{
    return r.end <= t && t <= r.begin;
}

Common CommonOf(std::size_t i)
{
    const auto& [x, y] = g_ours[i];
    Common common = {true, INT64_MIN, INT64_MAX};
    for (ZemTime bound : {x.begin, x.end, y.begin, y.end}) {
        if (Holds(x, bound) && Holds(y, bound)) {
            common.empty = false;
            common.begin = std::max(common.begin, bound);
            common.end = std::min(common.end, bound);
        }
    }
    return common;
}

void RegisterIntersection()
{
    Job job("range intersection", CommonOf);
    auto add = [&](const char* column, auto op) {
        job.Add(column, op, [](const ZemTimeRange& r) {
            return Common{r.begin < r.end, r.begin, r.end};
        });
    };
    add("ours inline", [](std::size_t i) {
        ZemTimeRange r;
        ZemTimeRangeIntersection(&g_ours[i].x, &g_ours[i].y, &r);
        return r;
    });
    add("ours exported", [](std::size_t i) {
        ZemTimeRange r;
        Exported(ZemTimeRangeIntersection)(&g_ours[i].x, &g_ours[i].y, &r);
        return r;
    });
    add("hand kernel", [](std::size_t i) {
        const auto& [x, y] = g_ours[i];
        return ZemTimeRange{std::min(x.begin, y.begin), std::max(x.end, y.end)};
    });
    add("hand kernel, called", [](std::size_t i) {
        ZemTimeRange r;
        limit::Intersect(&g_ours[i].x, &g_ours[i].y, &r);
        return r;
    });
    auto viewInterval = [](const auto& r) {
        return Common{boost::icl::is_empty(r), r.upper(), r.lower()};
    };
    job.Add(
        "Boost.ICL closed_interval",
        [](std::size_t i) { return g_closed[i].first & g_closed[i].second; }, viewInterval);
    job.Add(
        "Boost.ICL discrete_interval",
        [](std::size_t i) { return g_discrete[i].first & g_discrete[i].second; }, viewInterval);
    job.Add(
        "Boost.DateTime",
        [](std::size_t i) { return g_periods[i].first.intersection(g_periods[i].second); },
        [](const Period& r) {
            return Common{r.is_null(), InstantOf(r.last()), InstantOf(r.begin())};
        });
}

void RegisterContainment()
{
    Job job("range containment", [](std::size_t i) {
        return Holds(g_ours[i].x, g_ours[i].y.begin) && Holds(g_ours[i].x, g_ours[i].y.end);
    });
    auto add = [&](const char* column, auto op) {
        job.Add(column, op, [](auto contains) { return contains != 0; });
    };
    add("ours inline",
        [](std::size_t i) { return ZemTimeRangeSubsumes(&g_ours[i].x, &g_ours[i].y); });
    add("ours exported",
        [](std::size_t i) { return Exported(ZemTimeRangeSubsumes)(&g_ours[i].x, &g_ours[i].y); });
    add("hand kernel", [](std::size_t i) {
        const auto& [x, y] = g_ours[i];
        return (x.begin >= y.begin) & (x.end <= y.end);
    });
    add("hand kernel, called",
        [](std::size_t i) { return limit::Contains(&g_ours[i].x, &g_ours[i].y); });
    add("Boost.ICL closed_interval",
        [](std::size_t i) { return boost::icl::contains(g_closed[i].first, g_closed[i].second); });
    add("Boost.ICL discrete_interval", [](std::size_t i) {
        return boost::icl::contains(g_discrete[i].first, g_discrete[i].second);
    });
    add("Boost.DateTime",
        [](std::size_t i) { return g_periods[i].first.contains(g_periods[i].second); });
}

}  // namespace

void RegisterRanges()
{
    MakeValues();
    RegisterIntersection();
    RegisterContainment();
}

}  // namespace bench
