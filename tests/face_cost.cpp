// Pairs of functions that do the same, by the calls of C and by the C++ headers: scripts/check-face
// compares what compilers make of them. Those of SAME must come to the same instructions; those of
// CALL, single calls whose results are what C++ has, may run four more.

#include "Zem/Os/ZemTime.hpp"

#define ZEM_APART extern "C" __attribute__((noinline))
#define SAME(name, Result, ...) ZEM_APART Result same_##name##_c(__VA_ARGS__)
#define SAME_CPP(name, Result, ...) ZEM_APART Result same_##name##_cpp(__VA_ARGS__)
#define CALL(name, Result, ...) ZEM_APART Result call_##name##_c(__VA_ARGS__)
#define CALL_CPP(name, Result, ...) ZEM_APART Result call_##name##_cpp(__VA_ARGS__)

#pragma GCC diagnostic ignored "-Wmissing-declarations"

using CVector = ZemVector_ZemTimeRange;
using zem::RangeSet;
using zem::RangeVector;

// ---------------------------------------------------------------------------------------------
// Conversions
// ---------------------------------------------------------------------------------------------

SAME(instant, ZemTime, ZemTime t)
{
    return t;
}
SAME_CPP(instant, ZemTime, ZemTime t)
{
    return zem::FromChrono(zem::ToInstant(t));
}

SAME(system, ZemTime, ZemTime t)
{
    return t;
}
SAME_CPP(system, ZemTime, ZemTime t)
{
    return zem::FromChrono(zem::ToSystem(t));
}

SAME(difference, ZemTime, ZemTime a, ZemTime b)
{
    return (ZemTime)((ZemUint64)a - (ZemUint64)b);
}
SAME_CPP(difference, ZemTime, ZemTime a, ZemTime b)
{
    return zem::FromChrono(zem::ToMonotonic(a) - zem::ToMonotonic(b));
}

SAME(less, bool, ZemTime a, ZemTime b)
{
    return a < b;
}
SAME_CPP(less, bool, ZemTime a, ZemTime b)
{
    return zem::ToInstant(a) < zem::ToInstant(b);
}

CALL(seconds, ZemTime, std::chrono::seconds s)
{
    return ZemTimeSecs(s.count());
}
CALL_CPP(seconds, ZemTime, std::chrono::seconds s)
{
    return zem::FromChrono(s);
}

CALL(now, ZemTime)
{
    return ZemTimeGetCurrentMonotonicTime();
}
CALL_CPP(now, zem::MonotonicClock::time_point)
{
    return zem::MonotonicClock::now();
}

// ---------------------------------------------------------------------------------------------
// Iteration and elements
// ---------------------------------------------------------------------------------------------

static inline ZemUint64 SumByCalls(const CVector* v)
{
    ZemUint64 sum = 0;
    ZemVector_ZemTimeRangeConstIterator it = ZemVector_ZemTimeRangeBeginConst(v);
    ZemVector_ZemTimeRangeConstIterator end = ZemVector_ZemTimeRangeEndConst(v);
    for (; it != end; ZemVector_ZemTimeRangeConstIteratorIncrement(&it)) {
        sum += (ZemUint64)ZemTimeRangeEnd(it);
    }
    return sum;
}
template <class Ranges>
static inline ZemUint64 SumByLoop(const Ranges& v)
{
    ZemUint64 sum = 0;
    for (const ZemTimeRange& range : v) {
        sum += (ZemUint64)zem::Lower(range);
    }
    return sum;
}

SAME(sum, ZemUint64, const CVector* v)
{
    return SumByCalls(v);
}
SAME_CPP(sum, ZemUint64, const RangeVector& v)
{
    return SumByLoop(v);
}

SAME(sum_set, ZemUint64, const CVector* v)
{
    return SumByCalls(v);
}
SAME_CPP(sum_set, ZemUint64, const RangeSet& v)
{
    return SumByLoop(v);
}

SAME(move_all, void, CVector* v, ZemTime by)
{
    ZemVector_ZemTimeRangeIterator it = ZemVector_ZemTimeRangeBegin(v);
    ZemVector_ZemTimeRangeIterator end = ZemVector_ZemTimeRangeEnd(v);
    for (; it != end; ZemVector_ZemTimeRangeIteratorIncrement(&it)) {
        *it = ZemTimeRange{by, by};
    }
}
SAME_CPP(move_all, void, RangeVector& v, ZemTime by)
{
    for (ZemTimeRange& range : v) {
        range = zem::MakeRange(by, by);
    }
}

SAME(size, ZemSizeT, const CVector* v)
{
    return ZemVector_ZemTimeRangeSize(v);
}
SAME_CPP(size, ZemSizeT, const RangeVector& v)
{
    return v.size();
}

SAME(element, ZemTime, const CVector* v, ZemSizeT i)
{
    return ZemTimeRangeBegin(ZemVector_ZemTimeRangeAtConst(v, i));
}
SAME_CPP(element, ZemTime, const RangeVector& v, ZemSizeT i)
{
    return zem::Upper(v[i]);
}

SAME(back, const ZemTimeRange*, const CVector* v)
{
    return ZemVector_ZemTimeRangeBackConst(v);
}
SAME_CPP(back, const ZemTimeRange*, const RangeVector& v)
{
    return &v.back();
}

SAME(equal, bool, const ZemTimeRange& a, const ZemTimeRange& b)
{
    return ZemTimeRangeEqual(&a, &b);
}
SAME_CPP(equal, bool, const ZemTimeRange& a, const ZemTimeRange& b)
{
    return a == b;
}

SAME(order, bool, const ZemTimeRange& a, const ZemTimeRange& b)
{
    return ZemTimeRangeLess(&a, &b);
}
SAME_CPP(order, bool, const ZemTimeRange& a, const ZemTimeRange& b)
{
    return a < b;
}

// ---------------------------------------------------------------------------------------------
// Single calls
// ---------------------------------------------------------------------------------------------

CALL(try_push_back, bool, CVector* v, ZemTimeRange range)
{
    return ZemVector_ZemTimeRangePushBack(v, &range);
}
CALL_CPP(try_push_back, bool, RangeVector& v, ZemTimeRange range)
{
    return v.try_push_back(range);
}

CALL(push_back, void, CVector* v, ZemTimeRange range)
{
    if (!ZemVector_ZemTimeRangePushBack(v, &range)) {
        abort();
    }
}
CALL_CPP(push_back, void, RangeVector& v, ZemTimeRange range)
{
    v.push_back(range);
}

CALL(erase, const ZemTimeRange*, CVector* v, ZemTimeRange* position)
{
    return ZemVector_ZemTimeRangeErase(v, position);
}
CALL_CPP(erase, const ZemTimeRange*, RangeVector& v, ZemTimeRange* position)
{
    return v.erase(position);
}

CALL(find, const ZemTimeRange*, const CVector* v, ZemTime t)
{
    const ZemTimeRange* found = ZemTimeRangeSetFind(v, t);
    return found != nullptr ? found : ZemVector_ZemTimeRangeEndConst(v);
}
CALL_CPP(find, const ZemTimeRange*, const RangeSet& v, ZemTime t)
{
    return v.find(t);
}

CALL(contains, bool, const CVector* v, ZemTime t)
{
    return ZemTimeRangeSetFind(v, t) != nullptr;
}
CALL_CPP(contains, bool, const RangeSet& v, zem::Instant t)
{
    return v.contains(t);
}

CALL(unite, CVector*, CVector* a, const CVector* b)
{
    if (!ZemTimeRangeSetUnion(a, b, a)) {
        abort();
    }
    return a;
}
CALL_CPP(unite, RangeSet&, RangeSet& a, const RangeSet& b)
{
    return a |= b;
}

CALL(equal_records, bool, const ZemGregorianTime& a, const ZemGregorianTime& b)
{
    return ZemGregorianTimeEqual(&a, &b) != 0;
}
CALL_CPP(equal_records, bool, const ZemGregorianTime& a, const ZemGregorianTime& b)
{
    return a == b;
}

struct MaybeTime {
    ZemTime t;
    bool is;
};
CALL(parse, MaybeTime, const char* s, ZemSizeT size)
{
    MaybeTime result = {};
    const ZemSizeT taken = ZemTimeParse(&result.t, s, size);
    result.is = taken != 0 && taken == size && result.t != ZEM_TIME_INFINITE;
    return result;
}
CALL_CPP(parse, std::optional<zem::Instant>, const char* s, ZemSizeT size)
{
    return zem::ParseInstant(std::string_view(s, size));
}

struct Buffer {
    char chars[43];
    unsigned char size;
};
CALL(print, Buffer, ZemTime t)
{
    Buffer result;
    result.size = (unsigned char)ZemTimePrint(t, 0, 9, result.chars, sizeof result.chars);
    return result;
}
CALL_CPP(print, zem::Text<42>, ZemTime t)
{
    return zem::Print(zem::ToInstant(t));
}

CALL(record, ZemGregorianTime, const ZemTimeZone* zone, ZemTime t)
{
    ZemGregorianTime result;
    ZemGregorianTimeConstructInZone(&result, t, zone);
    return result;
}
CALL_CPP(record, ZemGregorianTime, const zem::Zone& zone, ZemTime t)
{
    return zone.record(zem::ToInstant(t));
}

// ---------------------------------------------------------------------------------------------
// Runs each call once on either side, where everything is warm
// ---------------------------------------------------------------------------------------------

int main()
{
    [[maybe_unused]] volatile ZemTime sink = 0;
    const char* const text = "2024-03-01T12:30:45.250+01:00";
    const ZemTimeRange range = zem::MakeRange(1000, 2000);
    RangeVector v(8, range);
    v.reserve(100);
    RangeSet set = {range};
    set.reserve(100);
    const std::optional<zem::Zone> zone = zem::Zone::from_rule("CET-1CEST,M3.5.0,M10.5.0/3");
    const ZemGregorianTime gt = zem::ToRecord(zem::Instant());
    (void)zem::MonotonicClock::now();
    auto* cSet = const_cast<CVector*>(set.handle());
    for (int round = 0; round < 2; ++round) {
        sink = call_seconds_c(std::chrono::seconds(round));
        sink = call_seconds_cpp(std::chrono::seconds(round));
        call_now_c();
        call_now_cpp();
        call_try_push_back_c(v.handle(), range);
        call_try_push_back_cpp(v, range);
        call_push_back_c(v.handle(), range);
        call_push_back_cpp(v, range);
        call_erase_c(v.handle(), v.end() - 1);
        call_erase_cpp(v, v.end() - 1);
        call_find_c(cSet, 1500);
        call_find_cpp(set, 1500);
        call_contains_c(cSet, 1500);
        call_contains_cpp(set, zem::Instant(std::chrono::nanoseconds(1500)));
        call_unite_c(cSet, cSet);
        call_unite_cpp(set, set);
        call_equal_records_c(gt, gt);
        call_equal_records_cpp(gt, gt);
        call_parse_c(text, 29);
        call_parse_cpp(text, 29);
        call_print_c(round);
        call_print_cpp(round);
        call_record_c(zone->handle(), round);
        call_record_cpp(*zone, round);
    }
}
