"""Shows the records of the time module in gdb as people read them.

gdb loads this by itself beside an installed shared library; else: source zemtime_gdb.py
"""

import datetime

import gdb
import gdb.printing

INFINITE = 2**63 - 1
EPOCH = datetime.datetime(1970, 1, 1)


def instant(nanosecs):
    """A time value in UTC, rounded down; as a number where it stands for none."""
    nanosecs = int(nanosecs)
    if nanosecs == INFINITE:
        return "infinite"
    if nanosecs == -INFINITE - 1:
        return "smallest"
    secs, fraction = divmod(nanosecs, 10**9)
    return f"{EPOCH + datetime.timedelta(seconds=secs)}.{fraction:09d} UTC"


class GregorianTime:
    """2024-03-01 12:30:45.250000000 +01:00 CET, the fields as they stand."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        tm = self.value["tm"]
        field = {name: int(tm["tm_" + name])
                 for name in ("year", "mon", "mday", "hour", "min", "sec")}
        offset = int(tm["tm_gmtoff"] if gdb.types.has_field(tm.type, "tm_gmtoff")
                     else tm["__tm_gmtoff"])
        minutes, secs = divmod(abs(offset), 60)
        zone = f"{'-' if offset < 0 else '+'}{minutes // 60:02d}:{minutes % 60:02d}"
        zone += f":{secs:02d}" if secs else ""
        nanosecs = int(self.value["nanosecs"])
        # Before 1970 they count back from the second that the fields name.
        fraction = f".{nanosecs:09d}" if nanosecs >= 0 else f" - {-nanosecs} ns"
        return (f"{field['year'] + 1900:04d}-{field['mon'] + 1:02d}-{field['mday']:02d} "
                f"{field['hour']:02d}:{field['min']:02d}:{field['sec']:02d}{fraction} {zone}")


class Range:
    """[lower, upper], whose members' names read the other way round."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        lower, upper = int(self.value["end"]), int(self.value["begin"])
        note = "" if lower <= upper else " (invalid: the lower bound is above the upper)"
        return f"[{instant(lower)}, {instant(upper)}]{note}"


class Vector:
    def __init__(self, value):
        self.value = value

    def size(self):
        return int(self.value["end"] - self.value["begin"]) if int(self.value["begin"]) else 0

    def to_string(self):
        room = int(self.value["endBuf"] - self.value["begin"]) if int(self.value["begin"]) else 0
        return f"{self.size()} ranges, room for {room}"

    def children(self):
        return ((f"[{i}]", self.value["begin"][i]) for i in range(self.size()))

    def display_hint(self):
        return "array"


class Zone:
    """How many transitions a zone has, and the times of the first and the last."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        table = self.value["table"]
        if int(table) == 0:
            return "no zone"
        try:
            segments = table.dereference()["segments"]
        except gdb.error:
            return f"a zone at {int(table):#x} (its library has no debugging information)"
        texts = table.dereference()["texts"]
        count = 0
        while int(segments[count]["last"]) != INFINITE:
            count += 1
        names = {(texts + int(segments[i]["text"])).string() for i in range(count + 1)}
        return f"a zone of {count} transitions ({', '.join(sorted(names))})"


class LocalTime:
    KINDS = {0: "unique", 1: "skipped", 2: "repeated"}

    def __init__(self, value):
        self.value = value

    def to_string(self):
        kind = self.KINDS.get(int(self.value["kind"]), "unknown")
        earlier, later = instant(self.value["earlier"]), instant(self.value["later"])
        return f"{kind}: {earlier}" + ("" if kind == "unique" else f" or {later}")


def register():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("zemtime")
    for name, printer in (("ZemGregorianTime", GregorianTime), ("ZemTimeRange", Range),
                          ("ZemVector_ZemTimeRange", Vector), ("ZemTimeZone", Zone),
                          ("ZemLocalTime", LocalTime)):
        printers.add_printer(name, f"^{name}$", printer)
    gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)


register()
