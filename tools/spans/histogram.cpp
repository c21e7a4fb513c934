#include "tools/spans/histogram.hpp"

#include <algorithm>

Histogram::Histogram() : counts_(kSlots) {}

// The least shift that brings `low` and `high` within half of the slots.
unsigned Histogram::ShiftToHold(ZemUint64 low, ZemUint64 high)
{
    unsigned shift = 0;
    while ((high >> shift) - (low >> shift) >= kSlots / 2) {
        ++shift;
    }
    return shift;
}

// Widens the slots until the counted events and `t` lie within half of them, places those in the
// middle, and returns the slot of `t`. Room on both sides keeps this rare whichever way time runs.
ZemUint64 Histogram::MakeRoomFor(ZemTime t)
{
    ZemUint64 low = OrderOf(t) >> shift_;
    ZemUint64 high = low;
    for (ZemUint64 i = 0; i < kSlots; ++i) {
        if (counts_[i] != 0) {
            low = std::min(low, first_ + i);
            high = std::max(high, first_ + i);
        }
    }
    unsigned widen = ShiftToHold(low, high);
    ZemUint64 middle = (low >> widen) + ((high >> widen) - (low >> widen)) / 2;
    ZemUint64 newFirst = middle < kSlots / 2 ? 0 : middle - kSlots / 2;

    std::vector<ZemUint64> wider(kSlots);
    for (ZemUint64 i = 0; i < kSlots; ++i) {
        if (counts_[i] != 0) {
            wider[((first_ + i) >> widen) - newFirst] += counts_[i];
        }
    }
    counts_.swap(wider);
    first_ = newFirst;
    shift_ += widen;
    return (OrderOf(t) >> shift_) - first_;
}

void Histogram::AddAll(const Histogram& other)
{
    for (ZemUint64 i = 0; i < kSlots; ++i) {
        if (other.counts_[i] != 0) {
            AddEvents(TimeOf(other.MiddleOf(i)), other.counts_[i]);
        }
    }
}

std::vector<ZemUint64> Histogram::Columns(const ZemTimeRange& range, size_t columns) const
{
    ZemUint64 begin = OrderOf(ZemTimeRangeEnd(&range));
    ZemUint64 end = OrderOf(ZemTimeRangeBegin(&range));
    ZemUint64 length = end - begin;
    // How wide the slots are depends on the order of the events; this is as wide as they can be.
    unsigned shift = ShiftToHold(begin, end);
    double scale = static_cast<double>(columns) / (static_cast<double>(length) + 1);

    std::vector<ZemUint64> result(columns);
    for (ZemUint64 i = 0; i < kSlots; ++i) {
        if (counts_[i] == 0) {
            continue;
        }
        ZemUint64 middle = ((MiddleOf(i) >> shift) << shift) + (ZemUint64{1} << shift) / 2;
        ZemUint64 position = middle > begin ? std::min(middle - begin, length) : 0;
        auto column = static_cast<size_t>(static_cast<double>(position) * scale);
        result[std::min(column, columns - 1)] += counts_[i];
    }
    return result;
}

std::string DrawColumns(const std::vector<ZemUint64>& columns, bool blocks)
{
    const char* const kBlocks[] = {" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    const char* const kAscii[] = {" ", ".", ":", "-", "=", "+", "*", "%", "#"};

    ZemUint64 most = *std::max_element(columns.begin(), columns.end());
    std::string line;
    for (ZemUint64 count : columns) {
        // Any event shows; only the most reach the top.
        auto level = static_cast<size_t>(
            count == 0 ? 0 : 1 + 7 * static_cast<double>(count) / static_cast<double>(most));
        line += blocks ? kBlocks[level] : kAscii[level];
    }
    return line;
}
