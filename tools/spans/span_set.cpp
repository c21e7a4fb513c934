#include "tools/spans/span_set.hpp"

#include <algorithm>

void SpanSet::Append(const Span& span)
{
    MergeIfDoubled();
    spans_.push_back(span);
}

void SpanSet::AddAll(SpanSet other)
{
    if (spans_.empty()) {
        spans_.swap(other.spans_);
        merged_ = other.merged_;
        return;
    }
    spans_.insert(spans_.end(), other.spans_.begin(), other.spans_.end());
    MergeIfDoubled();
}

void SpanSet::MergeIfDoubled()
{
    // Fewer are not worth a sort.
    constexpr size_t kAtLeast = 1024;

    if (Size() >= std::max(kAtLeast, 2 * merged_)) {
        Merge();
    }
}

void SpanSet::Merge()
{
    auto firstNew = spans_.begin() + static_cast<ptrdiff_t>(merged_);
    if (!std::is_sorted(spans_.begin(), spans_.end(), IsBefore)) {
        std::sort(firstNew, spans_.end(), IsBefore);
        std::inplace_merge(spans_.begin(), firstNew, spans_.end(), IsBefore);
    }
    size_t kept = 0;
    for (const Span& span : spans_) {
        if (kept == 0 || !Extend(spans_[kept - 1], span)) {
            spans_[kept++] = span;
        }
    }
    spans_.resize(kept);
    merged_ = kept - std::min<size_t>(kept, 1);
}
