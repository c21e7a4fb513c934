// Spans of activity: events gathered into time ranges, with the number of events in each.

#ifndef ZEMTIME_TOOLS_SPAN_SET_HPP
#define ZEMTIME_TOOLS_SPAN_SET_HPP

#include <deque>

#include "tools/common/text.hpp"

// Memory grows with the spans: an event near the last one extends its span, and whenever the spans
// have doubled because events come out of order, those that belong together are merged.
class SpanSet {
  public:
    // Events less than `gap`, at least 1 ns, apart belong to one span.
    explicit SpanSet(ZemTime gap) : reach_(gap - 1) {}

    // `t` is not ZEM_TIME_INFINITE.
    void AddEvent(ZemTime t)
    {
        ZemTimeRange range;
        AddSpan(*ZemTimeRangeConstruct(&range, t, t), 1);
    }

    // A valid range that ends before ZEM_TIME_INFINITE, and its events.
    void AddSpan(const ZemTimeRange& range, ZemUint64 events)
    {
        Span span{range, events};
        if (spans_.empty() || !Extend(spans_.back(), span)) {
            Append(span);
        }
    }

    // Adds the spans of another set, which gives up its storage.
    void AddAll(SpanSet other);

    // Puts the spans in order and merges those that belong together.
    void Merge();

    [[nodiscard]] size_t Size() const
    {
        return spans_.size();
    }

    // After Merge the spans are in order and at least the gap apart.
    [[nodiscard]] const ZemTimeRange& At(size_t i) const
    {
        return spans_[i].range;
    }

    [[nodiscard]] ZemUint64 EventsAt(size_t i) const
    {
        return spans_[i].events;
    }

  private:
    // Range and count together, so that they are sorted where they stand.
    struct Span {
        ZemTimeRange range;
        ZemUint64 events;
    };

    // Adds `next` to `span` if it is near enough.
    [[nodiscard]] bool Extend(Span& span, const Span& next) const
    {
        ZemTimeRange near;
        ZemTimeRangeConstruct(&near, AddSaturating(ZemTimeRangeBegin(&span.range), reach_),
                              AddSaturating(ZemTimeRangeEnd(&span.range), -reach_));
        if (!ZemTimeRangeIntersects(&near, &next.range)) {
            return false;
        }
        ZemTimeRangeUnion(&span.range, &next.range, &span.range);
        span.events += next.events;
        return true;
    }

    static bool IsBefore(const Span& a, const Span& b)
    {
        return ZemTimeRangeLess(&a.range, &b.range) != 0;
    }

    void Append(const Span& span);
    void MergeIfDoubled();

    std::deque<Span> spans_;  // grows without a copy: half the memory of a vector at its largest
    size_t merged_ = 0;       // so many of the first are in order; the last span may still grow
    ZemTime reach_;           // the largest distance that still joins
};

// The length of a span; ZEM_TIME_INFINITE when it does not fit.
inline ZemTime LengthOf(const ZemTimeRange& span)
{
    return ZemTimeGetElapsedRelativeTo(ZemTimeRangeBegin(&span), ZemTimeRangeEnd(&span));
}

#endif
