#include "tools/spans/overlaps.hpp"

#include <algorithm>
#include <queue>

namespace {

// From the instant `at` on a set is active, or no longer.
struct Change {
    ZemTime at;
    bool begins;
    size_t set;
    size_t range;  // the index of the one that begins or has ended
};

struct IsLater {
    bool operator()(const Change& a, const Change& b) const
    {
        return a.at > b.at;
    }
};

using Changes = std::priority_queue<Change, std::vector<Change>, IsLater>;

void AddBegin(Changes& changes, const RangeSet& ranges, size_t set, size_t range)
{
    if (range < ranges.Size()) {
        changes.push({ZemTimeRangeEnd(&ranges.At(range)), true, set, range});
    }
}

// Applies the next change to the sets that are active and puts the one after it in its place.
void ApplyNext(Changes& changes, const std::vector<const RangeSet*>& sets,
               std::vector<size_t>& active)
{
    Change change = changes.top();
    changes.pop();
    const RangeSet& ranges = *sets[change.set];
    auto place = std::lower_bound(active.begin(), active.end(), change.set);
    if (change.begins) {
        active.insert(place, change.set);
        // The instant behind there is, as no event is at ZEM_TIME_INFINITE.
        change.at = ZemTimeRangeBegin(&ranges.At(change.range)) + 1;
        change.begins = false;
        changes.push(change);
    } else {
        active.erase(place);
        AddBegin(changes, ranges, change.set, change.range + 1);
    }
}

}  // namespace

ZemTime FindOverlaps(const std::vector<const RangeSet*>& sets, const OverlapRow& row)
{
    Changes changes;
    for (size_t i = 0; i < sets.size(); ++i) {
        AddBegin(changes, *sets[i], i, 0);
    }
    std::vector<size_t> active;
    ZemTime total = 0;
    ZemTime since = 0;
    while (!changes.empty()) {
        const ZemTime now = changes.top().at;
        if (active.size() >= 2) {
            ZemTimeRange range;
            row(*ZemTimeRangeConstruct(&range, now - 1, since), active);
            total = AddSaturating(total, LengthOf(range));
        }
        // Sets that are active before and after also were so in the nanosecond between.
        size_t throughout = active.size();
        while (!changes.empty() && changes.top().at == now) {
            throughout -= changes.top().begins ? 0U : 1U;
            ApplyNext(changes, sets, active);
        }
        total = AddSaturating(total, throughout >= 2 ? 1 : 0);
        since = now;
    }
    return total;
}
