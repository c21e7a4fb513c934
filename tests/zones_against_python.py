#!/usr/bin/env python3
"""usage: zones_against_python.py LIBRARY
Holds every zone that Python's zoneinfo knows against it, with the shared library at LIBRARY: the
offset, abbreviation and daylight flag beside every transition, and what local times within two hours
of one come to, both ways of reading them. Ends with the number of comparisons, or at the first
difference."""

import ctypes
import datetime
import sys
import zoneinfo
from ctypes import POINTER, byref, c_char_p, c_int, c_int32, c_int64, c_long, c_size_t, c_uint8, c_void_p

library = ctypes.CDLL(sys.argv[1])


class Tm(ctypes.Structure):
    _fields_ = [(name, c_int) for name in (
        "tm_sec", "tm_min", "tm_hour", "tm_mday", "tm_mon", "tm_year", "tm_wday", "tm_yday",
        "tm_isdst")] + [("tm_gmtoff", c_long), ("tm_zone", c_char_p)]


class Record(ctypes.Structure):
    _fields_ = [("tm", Tm), ("nanosecs", c_int64)]


class LocalTime(ctypes.Structure):
    _fields_ = [("earlier", c_int64), ("later", c_int64), ("transition", c_int64), ("kind", c_int32)]


class Allocator(ctypes.Structure):
    _fields_ = [("allocate", c_void_p), ("deallocate", c_void_p), ("maxSize", c_size_t),
                ("userData", c_void_p)]


class Zone(ctypes.Structure):
    _fields_ = [("allocator", c_void_p), ("table", c_void_p), ("size", c_size_t)]


def function(name, result, *arguments):
    f = getattr(library, name)
    f.restype = result
    f.argtypes = arguments
    return f


construct_allocator = function("ZemAllocatorConstructMalloc", c_void_p, POINTER(Allocator), c_size_t)
construct = function("ZemTimeZoneConstruct", c_void_p, POINTER(Zone), c_char_p, POINTER(Allocator))
destruct = function("ZemTimeZoneDestruct", None, POINTER(Zone))
next_transition = function("ZemTimeZoneNextTransition", c_uint8, POINTER(Zone), c_int64,
                           POINTER(c_int64))
in_zone = function("ZemGregorianTimeConstructInZone", c_void_p, POINTER(Record), c_int64,
                   POINTER(Zone))
resolve = function("ZemGregorianTimeResolve", c_void_p, POINTER(Record), POINTER(Zone),
                   POINTER(LocalTime))
construct_fields = function("ZemGregorianTimeConstructFields", c_void_p, POINTER(Record),
                            *[c_int32] * 6, c_int64)

EPOCH = datetime.datetime(1970, 1, 1)
SECOND = 10**9
NO_MORE = 2**63 - 1
compared = 0


def require(right, *what):
    global compared
    compared += 1
    if not right:
        sys.exit(f"Differs: {what}")


def transitions(zone):
    at = c_int64(-(2**63))
    while next_transition(byref(zone), at, byref(at)):
        yield at.value // SECOND


def expect_instant(name, zone, python, second):
    ours = Record()
    in_zone(byref(ours), second * SECOND, byref(zone))
    utc = (EPOCH + datetime.timedelta(seconds=second)).replace(tzinfo=datetime.timezone.utc)
    theirs = utc.astimezone(python)
    tm = ours.tm
    require((tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec) ==
            theirs.timetuple()[:6] and tm.tm_gmtoff == theirs.utcoffset().total_seconds() and
            tm.tm_zone.decode() == theirs.tzname() and tm.tm_yday + 1 == theirs.timetuple().tm_yday and
            tm.tm_wday == theirs.isoweekday() % 7, name, second, theirs)


def expect_local(name, zone, python, second):
    """A local time, as seconds since 1970-01-01 00:00:00 by the zone's clock."""
    local = EPOCH + datetime.timedelta(seconds=second)
    ours = Record()
    result = LocalTime()
    construct_fields(byref(ours), *local.timetuple()[:6], 0)
    resolve(byref(ours), byref(zone), byref(result))
    # Python's fold 0 takes the offset before the transition, fold 1 the one after it.
    before, after = (
        second - int(local.replace(tzinfo=python, fold=fold).utcoffset().total_seconds())
        for fold in (0, 1))
    expected = (before * SECOND, before * SECOND, 0)
    if before != after:
        expected = (min(before, after) * SECOND, max(before, after) * SECOND,
                    1 if before > after else 2)
    require((result.earlier, result.later, result.kind) == expected, name, local, expected,
            (result.earlier, result.later, result.kind))


allocator = Allocator()
construct_allocator(byref(allocator), 2**64 - 1)
names = sorted(zoneinfo.available_timezones())
for name in names:
    zone = Zone()
    if not construct(byref(zone), name.encode(), byref(allocator)):
        sys.exit(f"Refused: {name}")
    python = zoneinfo.ZoneInfo(name)
    times = list(transitions(zone))
    # The rule repeats itself: after 2040 every tenth transition will do. Ends of the span: Python has
    # no times before type 0's first transition but its own guess.
    for index, at in enumerate(times):
        if at > 2208988800 and index % 10 != 0:
            continue
        for step in (-7200, -1, 0, 1, 1800, 7200):
            if index > 0 or step >= 0:
                expect_instant(name, zone, python, at + step)
        record = Record()
        in_zone(byref(record), at * SECOND, byref(zone))
        if index == 0:
            continue
        for step in (-7200, -3600, -1801, -1800, -1, 0, 1, 1799, 1800, 3599, 3600, 7200):
            expect_local(name, zone, python, at + record.tm.tm_gmtoff + step)
    destruct(byref(zone))
require(len(names) > 300, "The number of zones", len(names))
print(f"{len(names)} zones as Python's zoneinfo has them: {compared} comparisons")
