#!/usr/bin/env python3
"""usage: report.py RESULTS.json
Prints the results of a benchmark run as Markdown: a table of ratios, then every column."""

import json
import statistics
import sys

# Bounds on the ratio of ours to a column ("hand kernel", a peer's name, "best peer").
SETS = {
    **{
        f"{operation}, {kind}": targets
        for kind, targets in {
            "10 and 10": {"hand kernel": 0.75, "Boost.ICL interval_set": 0.083},
            "1,000 and 1,000": {"hand kernel": 0.75, "Boost.ICL interval_set": 0.05},
            "100,000 and 100,000": {"hand kernel": 0.75, "Boost.ICL interval_set": 0.05},
            "10,000 each in runs of 4": {"hand kernel": 1.3},
            "10,000 each in runs of 16": {"hand kernel": 1.3},
            "10,000 each in runs of 1,000": {"hand kernel": 1.3},
        }.items()
        for operation in ("union", "intersection", "difference")
    },
    "union, 1,000,000 and 100": {"memcpy of the larger": 1.4},
    "intersection, 1,000,000 and 100": {"hand kernel": 0.05},
    "difference, 1,000,000 and 100": {"memcpy of the larger": 1.4},
    "find in 10": {"std::lower_bound": 0.6},
    "find in 1,000": {"std::lower_bound": 0.6},
    "find in 1,000,000": {"std::lower_bound": 1},
}
# All bounds, in the order of the table. "1 thread" is ours in the job of the same name without
# threads.
TARGETS = {
    "parse, fixed form": {"best peer": 0.8, "hand kernel": 1.1},
    "parse, mixed forms": {"best peer": 0.9, "hand kernel": 1.05},
    "parse with a size, fixed form": {"hand kernel": 0.9},
    "parse with a size, mixed forms": {"hand kernel": 0.75},
    "parse from a line, fixed form": {"hand kernel": 0.75},
    "parse from a line, mixed forms": {"hand kernel": 0.75},
    "print with offset": {"best peer": 0.15, "hand kernel": 1.3},
    "print without offset": {"best peer": 0.15, "hand kernel": 1.3},
    "instant to RFC 3339, UTC, 0 digits": {"hand kernel": 1.1},
    "instant to RFC 3339, 3 digits": {"hand kernel": 1.1},
    "instant to RFC 3339, 9 digits": {"hand kernel": 1.1},
    "record to RFC 3339, 3 digits": {"hand kernel": 1.1},
    "UTC breakdown": {"hand kernel": 1.1},
    "UTC breakdown, 2 threads": {"1 thread": 1.05},
    "UTC composition": {"hand kernel": 1.1},
    "local breakdown": {"hand kernel": 1.05},
    "local composition": {"hand kernel": 1.05},
    "local composition, TZ unset": {"hand kernel": 1.05},
    "zone breakdown": {"UTC breakdown": 1.6, "best peer": 1},
    "zone breakdown, 2 threads": {"1 thread": 1.05, "best peer": 1},
    "zone breakdown, one decade": {"UTC breakdown": 1.6, "best peer": 1},
    "zone breakdown, 16 zones": {"UTC breakdown": 1.9, "best peer": 1},
    "zone composition": {"UTC composition": 1.8, "best peer": 1},
    "zone composition, 2 threads": {"1 thread": 1.05, "best peer": 1},
    "zone composition, one decade": {"UTC composition": 1.8, "best peer": 1},
    "zone composition, 16 zones": {"best peer": 1},
    "zone resolve": {"UTC composition": 2.5, "best peer": 1},
    "zone load": {"best peer": 1},
    "monotonic reading": {"steady_clock": 1.1},
    "wall reading": {"hand kernel": 1.05},
    "compact duration": {"best peer": 0.5, "hand kernel": 1.1},
    "exact duration": {"best peer": 1},
    "parse a duration": {"best peer": 1},
    "range intersection": {"hand kernel": 1.05},
    "range containment": {"hand kernel": 1.05},
    **SETS,
    "append 1,000 records, each": {"std::vector": 1},
    "iterate and sum, each": {"hand kernel": 1.05},
    "insert in the middle of 1,000": {"hand kernel": 1.05, "std::vector": 1.05},
    "time value to NTP": {"hand kernel": 1.05},
    "NTP to time value": {"hand kernel": 1.05},
}
# The libraries that people choose among, with the beginnings of their columns' names.
LIBRARIES = {
    "<chrono>": ["<chrono>", "steady_clock"],
    "Abseil": ["Abseil"],
    "cctz": ["cctz"],
    "date": ["date"],
    "C library": ["strptime", "gmtime_r", "timegm", "localtime_r", "mktime", "setenv", "snprintf",
                  "clock_gettime"],
}
COMPARED = {
    "parse with a size, fixed form": "text to an instant",
    "parse with a size, mixed forms": "text to an instant, many forms",
    "instant to RFC 3339, 3 digits": "instant to text",
    "UTC breakdown": "UTC calendar",
    "UTC composition": "UTC calendar, back",
    "zone breakdown": "calendar of a zone",
    "zone composition": "calendar of a zone, back",
    "zone resolve": "skipped and repeated times",
    "zone load": "loading a zone",
    "compact duration": "duration for people",
    "monotonic reading": "reading the clock",
}
FACE = "C++ face"
NO_PEERS = {"ours inline", "ours exported", "hand kernel", "hand kernel, called", FACE}


class Column:
    """The runs of one column, as nanoseconds an operation."""

    def __init__(self):
        self.times = []
        self.remark = ""

    def add(self, run):
        threads = run["threads"]
        # With threads the clock on the wall counts: a thread that waits for a lock uses no
        # processor. The program reports it divided by their number.
        time = run["real_time"] * threads if threads > 1 else run["cpu_time"]
        self.times.append(time / run["elements"])
        self.remark = run.get("label", "")

    def median(self):
        return statistics.median(self.times)

    def spread(self):
        """Half of the runs lie within this part of the median, to either side."""
        middle = self.median()
        return statistics.median(abs(time - middle) for time in self.times) / middle


def load(name):
    with open(name, encoding="utf-8") as file:
        return json.load(file)


def read(results):
    jobs = {}
    for run in results["benchmarks"]:
        if run["run_type"] == "iteration":
            job, column = run["run_name"].split("/")[:2]
            if job not in TARGETS:
                raise SystemExit(f"A job without a target: {job}")
            jobs.setdefault(job, {}).setdefault(column, Column()).add(run)
    return jobs


def ours(columns):
    return columns.get("ours inline", columns.get("ours exported"))


def best_peer(columns):
    peers = [name for name in columns if name not in NO_PEERS and not columns[name].remark]
    return min(peers, key=lambda name: columns[name].median(), default=None)


def base(jobs, job, name):
    """The figure that a target of a job compares ours with."""
    columns = jobs[job]
    if name == "1 thread":
        return ours(jobs[job.rsplit(", ", 1)[0]]).median()
    return columns[best_peer(columns) if name == "best peer" else name].median()


def number(value):
    return f"{value:.2f}" if value < 10 else f"{value:.1f}" if value < 100 else f"{value:.0f}"


def figure(columns, name):
    return number(columns[name].median()) if name in columns else "-"


def ratio(columns, our, name):
    return f"{our / columns[name].median():.2f}" if name in columns else "-"


def table_row(jobs, job):
    columns = jobs[job]
    our = ours(columns).median()
    peer = best_peer(columns)
    targets = []
    missed = []
    for name, bound in TARGETS[job].items():
        part = our / base(jobs, job, name)
        targets.append(f"{bound} of {name}")
        if part > bound:
            missed.append(f"{part:.2f} of {name}")
    return [
        job,
        figure(columns, "ours inline"),
        figure(columns, "ours exported"),
        f"{figure(columns, peer)} {peer}" if peer else "-",
        figure(columns, "hand kernel"),
        ratio(columns, our, peer),
        ratio(columns, our, "hand kernel"),
        ", ".join(targets),
        "no: " + ", ".join(missed) if missed else "yes",
    ]


def table_rows(jobs):
    """A row for each job. Says which have none, as a filter left out what they are compared with."""
    for job in TARGETS:
        try:
            yield table_row(jobs, job)
        except KeyError:
            print(f"Not in the table: {job}", file=sys.stderr)


def print_table(head, rows):
    print("| " + " | ".join(head) + " |")
    print("|" + " --- |" * len(head))
    for row in rows:
        print("| " + " | ".join(cell.replace("<", "&lt;") for cell in row) + " |")


def print_remarks(jobs):
    print(
        "\nHand kernel: the same job by plain code written by hand for it alone; for clocks and local"
        " time the platform's call, for appending an array of the right size from the start."
        " Inline: what has a body in the inline header, and the rest called. Ratios and targets"
        " take the inline column where there is one: the exported copies cost what their column"
        " says. A ratio below 1 to the hand kernel means that it is not the best there is. The"
        " best peer is the best of those measured here, which are Debian's packages."
    )
    alone = jobs.get("UTC breakdown", {})
    both = jobs.get("UTC breakdown, 2 threads", {})
    slower = [
        f"{name} {both[name].median() / alone[name].median():.2f}"
        for name in ("ours inline", "ours exported", "hand kernel", "gmtime_r")
        if name in alone and name in both
    ]
    if slower:
        print(f"Two threads, an operation, to one thread: {', '.join(slower)}.")
    columns = [column for job in jobs.values() for column in job.values()]
    noisy = sum(column.spread() > 0.05 for column in columns)
    if noisy:
        print(f"Noisy (half of the runs differ by more than 5 %): {noisy} of {len(columns)} columns.")


def times_as_long(columns, beginnings):
    """The least time of a library's columns, as a multiple of ours."""
    times = [column.median() for name, column in columns.items()
             if any(name.startswith(beginning) for beginning in beginnings)]
    return f"{min(times) / ours(columns).median():.1f}" if times else "-"


def print_libraries(jobs):
    print("\nTimes as long as ours, the quickest way of each library:\n")
    print_table(["job", "ours, ns", *LIBRARIES],
                [[label, number(ours(jobs[job]).median()),
                  *(times_as_long(jobs[job], names) for names in LIBRARIES.values())]
                 for job, label in COMPARED.items() if job in jobs])


def print_face(jobs):
    """The C++ headers do the job by the calls of C: what they add to it."""
    rows = [[job, number(ours(columns).median()), figure(columns, FACE),
             f"{columns[FACE].median() / ours(columns).median():.2f}"]
            for job, columns in jobs.items() if FACE in columns]
    if rows:
        print("\nThe C++ headers beside the calls of C:\n")
        print_table(["job", "C, ns", "C++, ns", "ratio"], rows)


def print_sizes(context):
    if "zone_bytes" in context:
        print(f"Bytes of a zone, of all on the machine: {context['zone_bytes']}.")


def processor():
    with open("/proc/cpuinfo", encoding="ascii") as info:
        names = [line.split(":")[1].strip() for line in info if line.startswith("model name")]
    return names[0] if names else "unknown processor"


def main():
    results = load(sys.argv[1])
    jobs = read(results)
    repetitions = max(len(c.times) for columns in jobs.values() for c in columns.values())

    print(f"### Measured {results['context']['date'][:10]} on {processor()}\n")
    print(
        f"Nanoseconds an operation, medians of {repetitions} repetitions in one process;"
        f" {results['context']['compiler']}.\n"
    )
    print_table(
        ["job", "ours inline", "ours exported", "best peer", "hand kernel", "ours / best peer",
         "ours / hand kernel", "target: at most", "met"],
        table_rows(jobs),
    )
    print_remarks(jobs)
    print_libraries(jobs)
    print_face(jobs)
    print_sizes(results["context"])
    print("\n### Every column\n")
    print_table(
        ["job", "column", "ns", "±", "remark"],
        [
            [job, name, figure(columns, name), f"{100 * columns[name].spread():.0f} %",
             columns[name].remark]
            for job, columns in sorted(jobs.items())
            for name in sorted(columns, key=lambda name: columns[name].median())
        ],
    )


if __name__ == "__main__":
    main()
