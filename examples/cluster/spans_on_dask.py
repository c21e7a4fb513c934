#!/usr/bin/python3
"""Spans of activity in a log that several machines read, each a share of it.

usage: spans_on_dask.py ZEMTIME LOG [SCHEDULER]

Each worker of Dask's distributed scheduler runs `zemtime spans --json` on its share, and
`zemtime spans --merge` makes one answer of theirs. Without the address of a SCHEDULER, a scheduler
and two workers are started on this machine. With one, ZEMTIME and LOG must be there on every worker.
"""
import os
import subprocess
import sys
import tempfile

from distributed import Client, LocalCluster


def spans_of_share(zemtime, log, begin, end):
    """What zemtime prints of the lines that begin in the bytes from `begin` to `end` of the log."""
    with open(log, "rb") as file:
        bounds = []
        for at in (begin, end):
            # The line that begins here, or behind the newline that comes next.
            file.seek(max(at - 1, 0))
            bounds.append(0 if at == 0 else at - 1 + len(file.readline()))
        file.seek(bounds[0])
        lines = file.read(bounds[1] - bounds[0])
    # A share without any event has exit status 1; what is printed says that it is whole.
    return os.getpid(), subprocess.run([zemtime, "spans", "--json"], input=lines,
                                       stdout=subprocess.PIPE, check=False).stdout


def shares_of(log, count):
    """Where `count` shares of a file begin and end."""
    bounds = [os.path.getsize(log) * i // count for i in range(count + 1)]
    return list(zip(bounds, bounds[1:]))


def zemtime_prints(zemtime, *arguments):
    return subprocess.run([zemtime, "spans", "--utc", *arguments], stdout=subprocess.PIPE,
                          check=True, text=True).stdout


def merge(zemtime, printed, *options):
    """What zemtime makes of what several runs of it have printed."""
    with tempfile.TemporaryDirectory() as folder:
        files = [os.path.join(folder, f"{i}.json") for i in range(len(printed))]
        for name, text in zip(files, printed):
            with open(name, "wb") as file:
                file.write(text)
        return zemtime_prints(zemtime, "--merge", *options, *files)


def main(zemtime, log, scheduler=None):
    zemtime, log = os.path.abspath(zemtime), os.path.abspath(log)
    with Client(scheduler or LocalCluster(n_workers=2, threads_per_worker=1, host="127.0.0.1",
                                          dashboard_address=None)) as client:
        workers = sorted(client.scheduler_info()["workers"])
        shares = shares_of(log, len(workers))
        results = client.gather([client.submit(spans_of_share, zemtime, log, *share, workers=[worker])
                                 for worker, share in zip(workers, shares)])
    for worker, (begin, end), (process, text) in zip(workers, shares, results):
        spans = text.count(b'"type":"span"')
        print(f"{worker}, process {process}: {spans} spans in {end - begin} bytes")

    printed = [text for _, text in results]
    merged, whole = merge(zemtime, printed), zemtime_prints(zemtime, log)
    summaries = [text.split("\n\n")[1].splitlines() for text in (merged, whole)]
    print(f"\n{'merged':58}  one machine")
    for one, other in zip(*summaries):
        print(f"{one:58}  {other[14:]}")
    if merged != whole or merge(zemtime, printed, "--json") != zemtime_prints(zemtime, "--json", log):
        sys.exit("They differ.")
    print("They are equal.")


if __name__ == "__main__":
    if not 3 <= len(sys.argv) <= 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
