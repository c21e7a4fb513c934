// The time module for C++: <chrono> both ways, texts, comparison and hashes of the C records,
// containers and time zones that manage their memory. Header only, over the same library; C++17,
// with additions from C++20 on. Everything is in the namespace zem but for the operators and hashes
// of the C records.
//
// Include this header, or just the part that you need:
//
//   ZemTimeChrono.hpp       time values to and from <chrono>, MonotonicClock
//   ZemTimeText.hpp         Parse..., Read..., Print, Compact, Text
//   ZemTimeOperators.hpp    ==, <=> and std::hash of ZemTimeRange and ZemGregorianTime
//   ZemTimeRangeVector.hpp  RangeVector, MakeRange, Lower, Upper
//   ZemTimeRangeSet.hpp     RangeSet
//   ZemTimeZone.hpp         Zone
//   ZemTimeMemory.hpp       (not included here) std and pmr allocators over a ZemAllocator and back
//
// A ZemTime stays an integer of 64 bits, as C has it; ToInstant, ToDuration and ToMonotonic make it
// a type of <chrono>, and FromChrono an integer again. What does not fit saturates, and Try...
// says so instead. Names of classes and functions are as elsewhere in the library; members of
// classes are named as the standard library names them.
//
// Sources with exceptions and without, and of different language versions, may be linked to one
// program: layouts are the same in all.

#ifndef ZEM_OS_ZEMTIME_HPP
#define ZEM_OS_ZEMTIME_HPP

#include "Zem/Os/ZemTimeChrono.hpp"
#include "Zem/Os/ZemTimeOperators.hpp"
#include "Zem/Os/ZemTimeRangeSet.hpp"
#include "Zem/Os/ZemTimeRangeVector.hpp"
#include "Zem/Os/ZemTimeText.hpp"
#include "Zem/Os/ZemTimeZone.hpp"

#endif
