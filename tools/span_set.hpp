// Spans of activity: events gathered into time ranges, with the number of events in each.

#ifndef ZEMTIME_TOOLS_SPAN_SET_HPP
#define ZEMTIME_TOOLS_SPAN_SET_HPP

#include <vector>

#include "text.hpp"

// Memory grows with the spans: an event near the last one extends its span, and whenever the spans
// have doubled because events come out of order, those that belong together are merged.
class SpanSet {
  public:
    // Events less than `gap`, at least 1 ns, apart belong to one span.
    explicit SpanSet(ZemTime gap);
    ~SpanSet();
    SpanSet(const SpanSet&) = delete;
    SpanSet& operator=(const SpanSet&) = delete;

    void AddEvent(ZemTime t)
    {
        ZemTimeRange event;
        Add(*ZemTimeRangeConstruct(&event, t, t), 1);
    }

    void Add(const ZemTimeRange& span, ZemUint64 events)
    {
        if (!Extend(span, events)) {
            Append(span, events);
        }
    }

    void AddAll(const SpanSet& other);

    // Puts the spans in order and merges those that belong together.
    void Merge();

    // After Merge the spans are in order and at least the gap apart.
    [[nodiscard]] const ZemVector_ZemTimeRange& Ranges() const
    {
        return ranges_;
    }

    [[nodiscard]] size_t Size() const
    {
        return ZemVector_ZemTimeRangeSize(&ranges_);
    }

    [[nodiscard]] const ZemTimeRange& At(size_t i) const
    {
        return *ZemVector_ZemTimeRangeAtConst(&ranges_, i);
    }

    [[nodiscard]] ZemUint64 EventsAt(size_t i) const
    {
        return events_[i];
    }

  private:
    // Adds to the last span if it is near enough.
    bool Extend(const ZemTimeRange& span, ZemUint64 events)
    {
        if (events_.empty()) {
            return false;
        }
        ZemTimeRange* last = ZemVector_ZemTimeRangeBack(&ranges_);
        ZemTimeRange near;
        ZemTimeRangeConstruct(&near, AddSaturating(ZemTimeRangeBegin(last), reach_),
                              AddSaturating(ZemTimeRangeEnd(last), -reach_));
        if (!ZemTimeRangeIntersects(&near, &span)) {
            return false;
        }
        ZemTimeRangeUnion(last, &span, last);
        events_.back() += events;
        return true;
    }

    void Append(const ZemTimeRange& span, ZemUint64 events);
    void PushBack(const ZemTimeRange& span, ZemUint64 events);

    ZemVector_ZemTimeRange ranges_;
    std::vector<ZemUint64> events_;  // of the range at the same index
    ZemTime reach_;                  // the largest distance that still joins
    size_t mergeAt_;
};

// The length of a span; ZEM_TIME_INFINITE when it does not fit.
inline ZemTime LengthOf(const ZemTimeRange& span)
{
    return ZemTimeGetElapsedRelativeTo(ZemTimeRangeBegin(&span), ZemTimeRangeEnd(&span));
}

// The instants at which two or more of the sets, all of them merged, were active.
void FindOverlaps(const std::vector<const SpanSet*>& sets, SpanSet& overlaps);

// Whether a merged set was active at some instant of `range`.
bool IsActiveIn(const SpanSet& set, const ZemTimeRange& range);

#endif
