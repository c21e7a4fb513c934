// Events counted over time in a fixed number of slots, and drawn as one line.

#ifndef ZEMTIME_TOOLS_HISTOGRAM_HPP
#define ZEMTIME_TOOLS_HISTOGRAM_HPP

#include <string>
#include <vector>

#include "Zem/Os/ZemTimeInline.h"

// The memory is fixed: slots are 2^k ns wide, and when an event lies outside what they cover they
// are made wider, pairs of them becoming one. At least a quarter of them are in use by then, many
// for every column of a screen.
class Histogram {
  public:
    Histogram();

    void AddEvents(ZemTime t, ZemUint64 events)
    {
        ZemUint64 slot = (OrderOf(t) >> shift_) - first_;
        if (slot >= kSlots) {
            slot = MakeRoomFor(t);
        }
        counts_[slot] += events;
    }

    void AddAll(const Histogram& other);

    // The events in each of `columns` equal parts of `range`, which must be the least that holds
    // them all.
    [[nodiscard]] std::vector<ZemUint64> Columns(const ZemTimeRange& range, size_t columns) const;

  private:
    static constexpr ZemUint64 kSlots = 16384;

    // The position of `t` among all values of a ZemTime.
    static ZemUint64 OrderOf(ZemTime t)
    {
        return static_cast<ZemUint64>(t) ^ (ZemUint64{1} << 63);
    }

    static ZemTime TimeOf(ZemUint64 order)
    {
        return static_cast<ZemTime>(order ^ (ZemUint64{1} << 63));
    }

    // The position in the middle of a slot.
    [[nodiscard]] ZemUint64 MiddleOf(ZemUint64 slot) const
    {
        return ((first_ + slot) << shift_) + (ZemUint64{1} << shift_) / 2;
    }

    static unsigned ShiftToHold(ZemUint64 low, ZemUint64 high);
    ZemUint64 MakeRoomFor(ZemTime t);

    std::vector<ZemUint64> counts_;
    ZemUint64 first_ = 0;  // the number of the first slot, counted from the smallest ZemTime
    unsigned shift_ = 0;   // a slot is 2^shift_ ns wide
};

// One character a column, taller for more events: block characters, or ASCII ones.
std::string DrawColumns(const std::vector<ZemUint64>& columns, bool blocks);

#endif
