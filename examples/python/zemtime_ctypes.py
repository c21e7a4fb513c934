#!/usr/bin/env python3
"""Calls the shared library from Python.

usage: zemtime_ctypes.py [PATH-OF-THE-LIBRARY]
"""

import ctypes
import ctypes.util
import sys
from ctypes import POINTER, byref, c_char_p, c_int, c_int64, c_long, c_size_t, c_uint8

# The small functions are exported too, under the names that C programs inline.
path = sys.argv[1] if len(sys.argv) > 1 else ctypes.util.find_library("zemtime")
if path is None:
    sys.exit("zemtime_ctypes: no libzemtime found: give its path")
library = ctypes.CDLL(path)


class Tm(ctypes.Structure):
    """The platform's struct tm, as Linux, macOS and the BSDs have it."""

    _fields_ = [(name, c_int) for name in (
        "tm_sec", "tm_min", "tm_hour", "tm_mday", "tm_mon", "tm_year", "tm_wday", "tm_yday",
        "tm_isdst")] + [("tm_gmtoff", c_long), ("tm_zone", c_char_p)]


class ZemGregorianTime(ctypes.Structure):
    _fields_ = [("tm", Tm), ("nanosecs", c_int64)]


class ZemTimeRange(ctypes.Structure):
    _fields_ = [("begin", c_int64), ("end", c_int64)]  # the upper bound, then the lower


def function(name, result, *arguments):
    """Without its types ctypes would take every argument and result for an int."""
    f = getattr(library, name)
    f.restype = result
    f.argtypes = arguments
    return f


parse = function("ZemGregorianTimeConstructCStr", POINTER(ZemGregorianTime),
                 POINTER(ZemGregorianTime), c_char_p)
get_time = function("ZemGregorianTimeGetTime", c_int64, POINTER(ZemGregorianTime))
construct_utc = function("ZemGregorianTimeConstructUTC", POINTER(ZemGregorianTime),
                         POINTER(ZemGregorianTime), c_int64)
print_record = function("ZemGregorianTimeGetAsStringWithOffset", c_char_p,
                        POINTER(ZemGregorianTime), c_char_p, c_size_t)
print_compact = function("ZemTimePrintCompact", c_char_p, c_int64, c_char_p, c_size_t)
intersects = function("ZemTimeRangeIntersects", c_uint8, POINTER(ZemTimeRange),
                      POINTER(ZemTimeRange))
intersection = function("ZemTimeRangeIntersection", None, POINTER(ZemTimeRange),
                        POINTER(ZemTimeRange), POINTER(ZemTimeRange))

INFINITE = 2**63 - 1


def instant(text):
    """The nanoseconds since 1970 that a text with date, time and UTC offset names."""
    record = ZemGregorianTime()
    if not parse(byref(record), text.encode()):  # a null pointer is false
        raise ValueError(f"not a date and time: {text!r}")
    result = get_time(byref(record))
    if result == INFINITE:
        raise OverflowError(f"outside the years 1677 to 2262: {text!r}")
    return result


def utc(time):
    record = ZemGregorianTime()
    buffer = ctypes.create_string_buffer(40)
    construct_utc(byref(record), time)
    return print_record(byref(record), buffer, len(buffer)).decode()


def compact(duration):
    buffer = ctypes.create_string_buffer(16)
    return print_compact(duration, buffer, len(buffer)).decode()


start = instant("2024-03-01T12:30:45.250+01:00")
print(start, "ns since 1970 is", utc(start))
try:
    instant("2024-02-30T00:00:00Z")
except ValueError as error:
    print(error)

build = ZemTimeRange(instant("2024-03-01T10:15:00Z"), instant("2024-03-01T10:00:00Z"))
test = ZemTimeRange(instant("2024-03-01T10:40:00Z"), instant("2024-03-01T10:12:30Z"))
if intersects(byref(build), byref(test)):
    both = ZemTimeRange()
    intersection(byref(build), byref(test), byref(both))
    print("both at work for", compact(both.begin - both.end))
