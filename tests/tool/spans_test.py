"""zemtime spans: what is read, how it is grouped, and what is printed."""
import gzip
import json
import os
import pathlib
import random
import re
import resource
import subprocess
import tempfile
import unittest

from support import ENV, PROGRAM, main, run

MARCH = 1709294400  # 2024-03-01 12:00:00 UTC
# line: seconds after MARCH, None where refused; two values: without and with --assume -01:00
LINES = {
    "2024-03-01T12:00:01Z": 1,
    "2024-03-01 12:00:02.25 +00:00 text": 2.25,
    "[2024-03-01 13:00:03 +0100] text": 3,
    "[2024-03-01T12:00:04.5Z INFO] text": 4.5,
    "2024-03-01T13:30:06+01:30:00: text": 6,
    "2024-03-01T12:00:08Z\r": 8,
    "2024-03-01T12:00:08Z\r\n\r\n": 8,
    "\ufeff2024-03-01T12:00:08Z": 8,
    "2024-03-01T12:00:05.1234567899999999999999999999999999999999999999-00|": 5.123456789,
    "2024-03-01T12:00:07.+000000,5": None,
    "2024-03-01t12:00:07z": 7,
    "2024-03-01T11:59:60Z": 0,
    "2024-03-01T12:00:09,5Z": 9.5,
    "2024-03-01T12:00:09Zulu": None,
    "2024-03-01T12:00:09+01000": None,
    "2024-03-01T12:00:09+01:0": None,
    "2024-02-30T12:00:09Z": None,
    "9999-03-01T12:00:09Z": None,
    "2024-03-01T12:00:0\0Z": None,
    "2024-03-01T12:00Z": None,
    "2024-03-01T12:00:09": (None, 3609),
    "2024-03-01 11:00:10.5 - text": (None, 10.5),
    "2024-03-01 11:00:11, x": (None, 11),
    "[2024-03-01 11:00:12.75]": (None, 12.75),
    "2024-03-01 11:00:13\r": (None, 13),
    "2024-03-01 11:00:09,5": (None, 9.5),
    "text": None,
    "\ufeff\ufeff2024-03-01T12:00:08Z": 8,
    "2024-03-01 11:00:09 +1:00": (None, None),
    "2024-03-01 11:00:09:55": (None, None),
    "2024-03-01 11:00:09AM": (None, None),
}

TEXT = """\
begin                           end                                 length      events
2024-03-31 01:59:59.000 +01:00  2024-03-31 03:00:00.000 +02:00      1.00 s           3
2024-03-31 03:10:00.000 +02:00  2024-03-31 03:10:00.000 +02:00        0 ns           1

events        4
spans         2
covered       1.00 s
idle          10 m 0 s
longest span  1.00 s      from 2024-03-31 01:59:59.000 +01:00
longest gap   10 m 0 s    from 2024-03-31 03:00:00.000 +02:00

events over time: a column is 8.58 s, the tallest has 3
#                                                                    -
2024-03-31 01:59:59.000 +01:00          2024-03-31 03:10:00.000 +02:00
"""

OVERLAP = """\
overlap begin                   end                                 length  files
1970-01-01 00:00:05.000 +00:00  1970-01-01 00:00:09.999 +00:00      4.99 s  A  B
1970-01-01 00:00:10.000 +00:00  1970-01-01 00:00:10.000 +00:00        0 ns  A  B  C
1970-01-01 00:00:10.000 +00:00  1970-01-01 00:00:15.000 +00:00      4.99 s  B  C
"""

# what a file is named: as text, in JSON
NAMES = {
    b"a\x1b[1m\n\x7f": ("a\\x1b[1m\\x0a\\x7f", "a\x1b[1m\n\x7f"),
    b'"\\ \xc3\xa9\xe2\x82\xac\xf0\x9f\x95\x90': ('"\\ \u00e9\u20ac\U0001f550',) * 2,
    b"C1 \xc2\x9b \xc2\xa0": ("C1 \\xc2\\x9b \u00a0", "C1 \x9b \u00a0"),
    b"\xff \xc3( \xe2\x82": ("\\xff \\xc3( \\xe2\\x82", "\ufffd \ufffd( \ufffd\ufffd"),
    b"\xc1\x81 \xe0\x9f\xbf \xf0\x8f\xbf\xbf":
        ("\\xc1\\x81 \\xe0\\x9f\\xbf \\xf0\\x8f\\xbf\\xbf", "\ufffd" * 2 + (" " + "\ufffd" * 3)
         + " " + "\ufffd" * 4),
    b"\xed\xa0\x80 \xf4\x90\x80\x80 \xf5\x80":
        ("\\xed\\xa0\\x80 \\xf4\\x90\\x80\\x80 \\xf5\\x80", "\ufffd" * 3 + " " + "\ufffd" * 4
         + " " + "\ufffd" * 2),
    b"\xed\x9f\xbf\xee\x80\x80\xf4\x8f\xbf\xbf\xe0\xa0\x80\xf0\x90\x80\x80\xdf\xbf":
        ("\ud7ff\ue000\U0010ffff\u0800\U00010000\u07ff",) * 2,
}

WIDTHS = {"-3": 80, "": 80, "x": 80, "70x": 80, "0": 80, "99999999999999999999": 80, "3": 10,
          "70": 70, "5000": 1000}

UNREADABLE = {
    gzip.compress(b"2024-03-01T12:00:01Z\n" * 99): "compressed by gzip; read it with: zcat",
    b"\x28\xb5\x2f\xfd\n\n": "compressed by zstd; read it with: zstdcat",
    b"\xfd7zXZ\0\n\n": "compressed by xz; read it with: xzcat",
    b"BZh91AY&SY\n": "compressed by bzip2; read it with: bzcat",
    b"\xff\xfe" + "2024-03-01T12:00:01Z\n".encode("utf-16-le"): "text in UTF-16; read it with: iconv -f UTF-16 -t UTF-8",
}


def spans(*args, stdin=b""):
    """The objects that spans --json prints, the summary last; the status if it is not 0."""
    status, out, _ = run("spans", "--json", *args, stdin=stdin)
    return [json.loads(line) for line in out.splitlines()] if status == 0 else status


def stamp(t, *, date="1970-01-01T"):
    """The text of an instant `t` ns after the beginning of a day."""
    seconds, ns = divmod(t, 10**9)
    return f"{date}{seconds // 3600:02}:{seconds // 60 % 60:02}:{seconds % 60:02}.{ns:09}Z"


def model_spans(times, gap):
    """Begin, end and count of the spans of `times`."""
    result = []
    for t in sorted(times):
        if result and t - result[-1][1] < gap:
            result[-1][1:] = [t, result[-1][2] + 1]
        else:
            result.append([t, t, 1])
    return result


def model_run(name, data, gap):
    """The spans of a file and what is said of its lines, its times being written by stamp."""
    times, complaints = [], []
    lines = data.split(b"\n")
    for number, line in enumerate(lines, 1):
        line = line[:262144].removesuffix(b"\r")
        match = re.match(rb"1970-01-01T00:00:(\d\d)\.(\d{9})Z", line)
        if match:
            times.append(int(match[1]) * 10**9 + int(match[2]))
        elif line:
            excerpt = line[:60].decode().replace("\r", "?") + "..." * (len(line) > 60)
            complaints.append(f"{name}:{number}: no timestamp: {excerpt}")
    more = len(complaints) - 5
    complaints[5:] = [f"zemtime: {more} more without a timestamp"] if more > 0 else []
    if not times:
        complaints.append("zemtime: no line has a time that can be read (see --explain, --input and --key)")
    return model_spans(times, gap), complaints


def random_line(rng, long):
    """A line with a timestamp or without, with or without a carriage return, or an empty one."""
    size = rng.choice([0, 0, 5, 70])
    if long and rng.random() < 0.2:
        size = rng.choice([262144 - rng.randrange(60), 300000, 600000, 1100000])
    line = rng.choice([stamp(rng.randrange(10**9)).encode() + b" ", b"", b"x"])
    return line + b"y" * size + rng.choice([b"", b"", b"\r"])


class Spans(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def write(self, files):
        """Writes files, each name with its times in seconds of 1970-01-01."""
        for name, times in files.items():
            path = os.fsencode(self.folder) + b"/" + os.fsencode(name)
            with open(path, "w", encoding="ascii") as file:
                file.writelines(stamp(t * 10**9) + "\n" for t in times)

    def test_lines(self):
        for column, options in enumerate([[], ["--assume", "-01:00"]]):
            for line, expected in LINES.items():
                after = expected[column] if isinstance(expected, tuple) else expected
                first = "" if line[0] == "\ufeff" else "\n"
                result = spans(*options, stdin=first + line)
                ns = result[0]["begin_ns"] if result != 1 else None
                in_ns = None if after is None else MARCH * 10**9 + round(after * 1e9)
                self.assertEqual(ns, in_ns, (line, options))
        summer = spans("--assume", "local", stdin="2024-07-01 14:00:00")
        self.assertEqual(summer[0]["begin"], "2024-07-01 14:00:00.000 +02:00")
        # Lines longer than a block, and more without a timestamp than are shown.
        lines = [b"x" * 300000, b"2024-03-01T12:00:01Z " + b"y" * 999999, b"\r",
                 *[b"\x1b[1m"] * 5, b"2024-03-01T12:00:02Z"]
        _, out, err = run("spans", "--json", stdin=b"\n".join(lines))
        self.assertIn('"events":2', out)
        shown = ["-:1: no timestamp: " + "x" * 60 + "...",
                 *[f"-:{n}: no timestamp: ?[1m" for n in range(4, 8)]]
        self.assertEqual(err.splitlines(), [*shown, "zemtime: 1 more without a timestamp"])

    def test_report(self):
        times = ("2024-03-31T01:10:00Z\n2024-03-31T01:00:00Z\n"
                 "2024-03-31T00:59:59Z\n2024-03-31T01:00:00Z")
        self.assertEqual(run("spans", "--chart", "--gap", "9m60s", stdin=times), (0, TEXT, ""))
        out = run("spans", "--gap", "10m1ns", "--offset", "-05:30", stdin=times)[1]
        self.assertIn("2024-03-30 19:29:59.000 -05:30  2024-03-30 19:40:00.000 -05:30    "
                      "10 m 1 s           4\n", out)
        out = run("spans", "--zone", "America/New_York", "--gap", "1d", "--json", stdin=times)[1]
        self.assertIn('"begin":"2024-03-30 20:59:59.000 -04:00"', out)
        # The hour that is skipped, and the one that is repeated, in a zone that the process is not in.
        found = spans("--assume", "America/New_York", "--gap", "1ns",
                      stdin="2024-03-10 02:30:00 x\n2024-11-03 01:30:00 x\n2024-11-03 02:30:00 x\n")
        self.assertEqual([s["begin_ns"] // 10**9 for s in found[:-1]],
                         [1710055800, 1730611800, 1730619000])
        ends = "1677-09-21T00:12:43.145224192Z\n2262-04-11T23:47:16.854775806Z"
        self.assertEqual([s["events"] for s in spans("--gap", "106751d", stdin=ends)], [1, 1, 2])
        begin = spans("--offset", "-23:00", stdin=ends)[0]["begin"]
        self.assertEqual(begin, "1677-09-21 00:12:43.145 +00:00")

    def test_random_files(self):
        """Neither the order of events nor the number of parts counts."""
        rng = random.Random(1)
        for count, width, gap in [(9000, 10**9, 3), (9000, 10**6, 50), (40, 500, 9),
                                  (90, 8 * 10**13, 10**9)]:
            pictures = set()
            files = {f"{self.folder}/{n}": [rng.randrange(width) for _ in range(count)]
                     for n in range(3)}
            for order in random.sample, sorted:
                for name, times in files.items():
                    times = sorted(times) if order == sorted else times
                    pathlib.Path(name).write_text("\n".join(map(stamp, times)), "ascii")
                for jobs in "1", "3":
                    result = spans("--jobs", jobs, "--gap", f"{gap}ns", *files)
                    found = [[s["begin_ns"], s["end_ns"], s["events"]] for s in result[:-1]]
                    self.assertEqual(found, model_spans(sum(files.values(), []), gap))
                    pictures.add(run("spans", "--chart", "--jobs", jobs, *files,
                                     env={"COLUMNS": "999"}))
            self.assertEqual(len(pictures), 1)

    def test_parts(self):
        """However many parts a file is read in, it gives what it holds."""
        rng = random.Random(2)
        path = self.folder / "log"
        for n in range(24):
            lines = [random_line(rng, long=n % 4 == 0) for _ in range(rng.randrange(12))]
            data = rng.choice([b"\n", b"\n", b"\r\n"]).join(lines) + rng.choice([b"", b"\n"])
            path.write_bytes(data)
            expected = model_run(path, data, 10**8)
            for jobs in range(1, 9):
                _, out, err = run("spans", "--json", "--gap", "100ms", "--jobs", str(jobs), path)
                result = [json.loads(line) for line in out.splitlines()]
                found = [[s["begin_ns"], s["end_ns"], s["events"]] for s in result[:-1]]
                self.assertEqual((found, err.splitlines()), expected, (n, jobs))

    def test_standard_input_in_parts(self):
        """From where it stands to its end, and once."""
        path = self.folder / "log"
        path.write_text("\n".join(stamp(t) for t in range(50)), "ascii")
        with open(path, "rb") as file:
            for jobs in "1", "4":
                file.seek(len(stamp(0)) + 10)  # in the second line
                out = subprocess.run([PROGRAM, "spans", "--json", "--jobs", jobs, "-", "-"],
                                     stdin=file, capture_output=True, check=True, env=ENV)
                self.assertEqual(json.loads(out.stdout.splitlines()[-1])["events"], 48)
                self.assertEqual(len(out.stderr.splitlines()), 1)
                self.assertEqual(file.read(), b"")

    def test_no_threads(self):
        """Where a thread cannot be started the first one reads all parts."""
        path = self.folder / "log"
        path.write_text("\n".join(stamp(t) for t in range(1000)), "ascii")

        def ask_for_stacks_that_do_not_fit():
            _, hard = resource.getrlimit(resource.RLIMIT_STACK)
            resource.setrlimit(resource.RLIMIT_STACK, (
                1 << 47 if hard == resource.RLIM_INFINITY else hard, hard))

        status, out, err = run("spans", "--json", "--jobs", "4", path,
                               preexec_fn=ask_for_stacks_that_do_not_fit)
        self.assertEqual((status, err), (0, ""))
        self.assertEqual(json.loads(out.splitlines()[-1])["events"], 1000)

    def test_little_memory(self):
        """What does not fit in parts is read in one."""
        path = self.folder / "log"
        path.write_text("\n".join(stamp(t) for t in range(0, 300000, 2)), "ascii")

        def have_little():
            resource.setrlimit(resource.RLIMIT_AS, (30 << 20, 30 << 20))

        expected, *others = [
            run("spans", "--json", "--gap", "1ns", "--jobs", jobs, path, preexec_fn=have_little)
            for jobs in ("1", "2", "1024")]
        if expected[0] != 0:
            self.skipTest("a sanitizer needs more memory than this")
        self.assertTrue(others == [expected, expected], [o[2] for o in others])

    def test_overlap(self):
        self.write({"A": [0, 10], "B": [5, 15], "C": [10, 20], "D": [30]})
        out = run("spans", "--utc", "--overlap", *"ABCD", cwd=self.folder)[1]
        self.assertIn("\n" + OVERLAP + "\n", out)
        self.assertIn("overlapping   10.0 s\n", out)

    def test_random_overlaps(self):
        """Each row names the files that are active at each of its instants, and no row is more."""
        rng = random.Random(3)
        for n in range(100):
            gap, width = rng.choice([1, 2, 9]), rng.choice([12, 60])
            files = {f"{self.folder}/{i}": rng.choices(range(width), k=rng.randrange(1, 20))
                     for i in range(rng.randrange(1, 6))}
            active = [set() for _ in range(width + 1)]
            for name, times in files.items():
                pathlib.Path(name).write_text("\n".join(map(stamp, times)), "ascii")
                for begin, end, _ in model_spans(times, gap):
                    for t in range(begin, end + 1):
                        active[t].add(name)
            expected = [[t, sorted(names)] for t, names in enumerate(active) if len(names) > 1]
            *rows, summary = spans("--overlap", "--gap", f"{gap}ns", *files)
            rows = [row for row in rows if row["type"] == "overlap"]
            found = [[t, row["files"]] for row in rows
                     for t in range(row["begin_ns"], row["end_ns"] + 1)]
            self.assertEqual(found, expected, n)
            for one, two in zip(rows, rows[1:]):
                self.assertFalse(one["end_ns"] + 1 == two["begin_ns"]
                                 and one["files"] == two["files"], n)
            between = sum(len(one & two) > 1 for one, two in zip(active, active[1:]))
            self.assertEqual(summary["overlapping_ns"], between, n)

    def test_names(self):
        self.write({os.fsdecode(name): [1] for name in NAMES})
        names = list(NAMES)
        cwd = self.folder
        status, out, _ = run("spans", "--overlap", "--json", *names, cwd=cwd)
        rows = [json.loads(line) for line in out.splitlines()]
        self.assertEqual((status, rows[1]["files"]), (0, [json for _, json in NAMES.values()]))
        _, out, _ = run("spans", "--overlap", *names, cwd=cwd)
        row = "  ".join(text for text, _ in NAMES.values())
        self.assertIn("0 ns  " + row + "\n", out)
        for name, (text, _) in NAMES.items():
            (cwd / os.fsdecode(name)).write_text("x\n", "ascii")
            self.assertEqual(run("spans", "--assume", "utc", name, cwd=cwd)[2].splitlines(),
                             [f"{text}:1: no timestamp: x",
                              "zemtime: no line has a time that can be read (see --explain, --input and --key)"])
            self.assertEqual(run("spans", b"/no/" + name)[2],
                             f"zemtime: /no/{text}: No such file or directory\n")

    def test_unread_files(self):
        """A file that cannot be read fails the run, and is said to be nothing else."""
        (self.folder / "log").write_text(stamp(0), "ascii")
        (self.folder / "empty").touch()
        missing = "zemtime: none: No such file or directory\n"
        no_line = "zemtime: no line has a time that can be read (see --explain, --input and --key)\n"
        for files, complaint in {("none",): missing, ("none", "empty"): missing + no_line,
                                 ("empty",): no_line, ("log", "none"): missing}.items():
            status, out, err = run("spans", *files, cwd=self.folder)
            self.assertEqual((status, bool(out), err), (1, "log" in files, complaint))
        for data, problem in UNREADABLE.items():
            (self.folder / "packed").write_bytes(data)
            self.assertEqual(run("spans", "packed", cwd=self.folder),
                             (1, "", f"zemtime: packed: {problem} packed | zemtime spans -\n"))
            self.assertEqual(run("spans", stdin=data),
                             (1, "", f"zemtime: -: {problem} | zemtime spans -\n"))
        for name in "a b.gz", "it's.gz", "-x.gz", "$(x).gz", "a\\b.gz":
            (self.folder / name).write_bytes(gzip.compress(b"2024-03-01T12:00:01Z\n"))
            said = run("spans", "--", name, cwd=self.folder)[2]
            command = said.split("read it with: ")[1].replace("zemtime", PROGRAM)
            self.assertEqual(run(command, program=["bash", "-c"], cwd=self.folder)[0], 0, said)

    def test_width(self):
        for columns, width in WIDTHS.items():
            out = run("spans", "--chart", stdin=stamp(0) + "\n" + stamp(1),
                      env={"COLUMNS": columns})[1]
            self.assertEqual(len(out.splitlines()[-2]), width, columns)


main()
