#!/usr/bin/env python3
"""usage: report.py RESULTS.json
Prints the results of a benchmark run as Markdown: a table of ratios, then every column."""

import json
import statistics
import sys

# Bounds on the ratio of ours to a column ("limit", a peer's name, "best peer"), in the order of the
# table. "1 thread" is ours in the job of the same name without threads.
TARGETS = {
    "parse, fixed form": {"best peer": 0.8, "limit": 1.1},
    "parse, mixed forms": {"best peer": 0.9},
    "print with offset": {"best peer": 0.35, "limit": 3},
    "UTC breakdown": {"limit": 1.1},
    "UTC breakdown, 2 threads": {"1 thread": 1.05},
    "UTC composition": {"limit": 1.1},
    "local breakdown": {"limit": 1.05},
    "local composition": {"limit": 1.05},
    "local composition, TZ unset": {"limit": 1.05},
    "monotonic reading": {"steady_clock": 1.1},
    "wall reading": {"limit": 1.05},
    "compact duration": {"best peer": 1, "limit": 1.3},
    "range intersection": {"limit": 1.05},
    "range containment": {"limit": 1.05},
    "append 1,000 records, each": {"std::vector": 1},
    "iterate and sum, each": {"limit": 1.05},
    "insert in the middle of 1,000": {"limit": 1.05, "std::vector": 1.05},
    "time value to NTP": {"limit": 1.05},
    "NTP to time value": {"limit": 1.05},
}
NO_PEERS = {"ours inline", "ours exported", "limit", "limit, called"}


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


def table_row(jobs, job):
    columns = jobs[job]
    our = ours(columns).median()
    peer = best_peer(columns)
    targets = []
    missed = []
    for name, bound in TARGETS[job].items():
        ratio = our / base(jobs, job, name)
        targets.append(f"{bound} of {name}")
        if ratio > bound:
            missed.append(f"{ratio:.2f} of {name}")
    return [
        job,
        figure(columns, "ours inline"),
        figure(columns, "ours exported"),
        f"{figure(columns, peer)} {peer}" if peer else "-",
        figure(columns, "limit"),
        f"{our / columns[peer].median():.2f}" if peer else "-",
        f"{our / columns['limit'].median():.2f}",
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
        "\nLimit: a plain hand-written kernel of the same job; for clocks and local time the"
        " platform's call, for appending an array of the right size from the start."
        " Inline: what has a body in the inline header, and the rest called. Ratios and targets"
        " take the inline column where there is one: the exported copies cost what their column"
        " says. A ratio below 1 to the limit means that the limit is not the best there is. The"
        " best peer is the best of those measured here, which are Debian's packages."
    )
    alone = jobs.get("UTC breakdown", {})
    both = jobs.get("UTC breakdown, 2 threads", {})
    slower = [
        f"{name} {both[name].median() / alone[name].median():.2f}"
        for name in ("ours inline", "ours exported", "limit", "gmtime_r")
        if name in alone and name in both
    ]
    if slower:
        print(f"Two threads, an operation, to one thread: {', '.join(slower)}.")
    columns = [column for job in jobs.values() for column in job.values()]
    noisy = sum(column.spread() > 0.05 for column in columns)
    if noisy:
        print(f"Noisy (half of the runs differ by more than 5 %): {noisy} of {len(columns)} columns.")


def processor():
    with open("/proc/cpuinfo", encoding="ascii") as info:
        names = [line.split(":")[1].strip() for line in info if line.startswith("model name")]
    return names[0] if names else "unknown processor"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        results = json.load(file)
    jobs = read(results)
    repetitions = max(len(c.times) for columns in jobs.values() for c in columns.values())

    print(f"### Measured {results['context']['date'][:10]} on {processor()}\n")
    print(
        f"Nanoseconds an operation, medians of {repetitions} repetitions in one process;"
        f" {results['context']['compiler']}.\n"
    )
    print_table(
        ["job", "ours inline", "ours exported", "best peer", "limit", "ours / best peer",
         "ours / limit", "target: at most", "met"],
        table_rows(jobs),
    )
    print_remarks(jobs)
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
