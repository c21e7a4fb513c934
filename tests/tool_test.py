"""End-to-end tests of the zemtime command: tool_test.py PROGRAM VERSION."""
import json, os, pathlib, random, subprocess, sys, tempfile, unittest

PROGRAM, VERSION = os.path.abspath(sys.argv[1]), sys.argv[2]
ENV = dict(os.environ, TZ="CET-1CEST,M3.5.0,M10.5.0/3", LC_ALL="C", COLUMNS="70")


# The exit status, the output and the complaints of one run.
def run(*args, stdin=b"", program=(PROGRAM,)):
    stdin = stdin if isinstance(stdin, bytes) else stdin.encode()
    p = subprocess.run([*program, *args], input=stdin, capture_output=True, env=ENV)
    return p.returncode, p.stdout.decode(), p.stderr.decode()


# The objects that spans --json prints, the last of them the summary; the status if it is not 0.
def spans(*args, stdin=b""):
    status, out, _ = run("spans", "--json", *args, stdin=stdin)
    return [json.loads(line) for line in out.splitlines()] if status == 0 else status


MARCH = 1709294400  # 2024-03-01 12:00:00 UTC
LINES = {  # line: seconds after MARCH, None where refused; two values: without and with --assume -01:00
    "2024-03-01T12:00:01Z": 1, "2024-03-01 12:00:02.25 +00:00 text": 2.25, "[2024-03-01 13:00:03 +0100] text": 3,
    "[2024-03-01T12:00:04.5Z INFO] text": 4.5, "2024-03-01T13:30:06+01:30:00: text": 6, "2024-03-01T12:00:08Z\r": 8,
    "2024-03-01T12:00:05.1234567899999999999999999999999999999999999999-00|": 5.123456789,
    "2024-03-01T12:00:07.+000000,5": 7, "2024-03-01T11:59:60Z": 0, "2024-03-01T12:00:09,5Z": None,
    "2024-03-01T12:00:09Zulu": None, "2024-03-01T12:00:09+01000": None, "2024-03-01T12:00:09+01:0": None,
    "2024-02-30T12:00:09Z": None, "9999-03-01T12:00:09Z": None, "2024-03-01T12:00:0\0Z": None, "2024-03-01T12:00Z": None,
    "2024-03-01T12:00:09": (None, 3609), "2024-03-01 11:00:10.5 - text": (None, 10.5), "2024-03-01 11:00:11, x": (None, 11),
    "[2024-03-01 11:00:12.75]": (None, 12.75), "2024-03-01 11:00:09,5": (None, None), "text": None,
    "2024-03-01 11:00:09 +1:00": (None, None), "2024-03-01 11:00:09:55": (None, None), "2024-03-01 11:00:09AM": (None, None),
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

#                                                                    -
2024-03-31 01:59:59.000 +01:00          2024-03-31 03:10:00.000 +02:00
one column: 8.58 s, at most 3 events
"""

CONVERT = {  # text: seconds, ntp, local
    "2024-03-01 12:30:45.250 +01:00": ("1709292645.25", "e98c3ae540000000", "2024-03-01 12:30:45.250 +01:00"),
    "@-0.000000001": ("-0.000000001", "83aa7e7ffffffffb", "1970-01-01 00:59:59.999 +01:00"),
    "@+1.9999999999": ("1.999999999", "83aa7e81fffffffb", "1970-01-01 01:00:01.999 +01:00"),
    "ntp:0x0": ("-2208988800", "0000000000000000", "1900-01-01 01:00:00.000 +01:00"),
    "@9223372036.854775807": ("9223372036.854775807", "a96bfb84dad29658", "2262-04-12 01:47:16.854 +02:00"),
    "@-9223372036.854775808": ("-9223372036.854775808", "5de9017b252d69a3", "1677-09-21 01:12:43.145 +01:00"),
}
NOT_CONVERTED = ["", "@", "@-", "@.5", "@1.5x", "@1e5", "@9223372036.854775808", "@-9223372036.854775809", "@ 1", "ntp:0xg",
                 "@99999999999999999999", "ntp:0x", "ntp:0x10000000000000000", "2024-03-01T12:30:45"]

STATUS = {  # status: command lines
    2: ["", "span", "spans --gap 0s", "spans --gap 5", "spans --gap 106752d", "spans --utc --local", "spans --json --chart",
        "spans --offset utc", "spans --assume GMT", "convert --to x", "measure", "measure -n 0 -- true"],
    1: ["spans", "spans /", "spans /no/such", "convert x"], 0: ["convert x @1", "now", "measure -n 3 -- true"],
    127: ["measure /no/such"], 3: ["measure -- sh -c exit${IFS}3"], 143: ["measure sh -c kill${IFS}$$"],
}


# Begin, end and count of the spans of `times`.
def model(times, gap):
    result = []
    for t in sorted(times):
        if result and t - result[-1][1] < gap:
            result[-1][1:] = [t, result[-1][2] + 1]
        else:
            result.append([t, t, 1])
    return result


class Tool(unittest.TestCase):
    def test_lines(self):
        for column, options in enumerate([[], ["--assume", "-01:00"]]):
            for line, expected in LINES.items():
                after = expected[column] if isinstance(expected, tuple) else expected
                result = spans(*options, stdin="\n" + line)
                ns = result[0]["begin_ns"] if result != 1 else None
                self.assertEqual(ns, after if after is None else MARCH * 10**9 + round(after * 1e9), (line, options))
        self.assertEqual(spans("--assume", "local", stdin="2024-07-01 14:00:00")[0]["begin"], "2024-07-01 14:00:00.000 +02:00")
        # Lines longer than a block, and more without a timestamp than are shown.
        lines = [b"x" * 300000, b"2024-03-01T12:00:01Z " + b"y" * 999999, *[b"\x1b[1m"] * 5, b"2024-03-01T12:00:02Z"]
        _, out, err = run("spans", "--json", stdin=b"\n".join(lines))
        self.assertIn('"events":2', out)
        shown = ["-:1: no timestamp: " + "x" * 60 + "...", *[f"-:{n}: no timestamp: ?[1m" for n in range(3, 7)]]
        self.assertEqual(err.splitlines(), [*shown, "zemtime: 1 more without a timestamp"])

    def test_report(self):
        times = "2024-03-31T01:10:00Z\n2024-03-31T01:00:00Z\n2024-03-31T00:59:59Z\n2024-03-31T01:00:00Z"
        self.assertEqual(run("spans", "--chart", "--gap", "9m60s", stdin=times), (0, TEXT, ""))
        out = run("spans", "--gap", "10m1ns", "--offset", "-05:30", stdin=times)[1]
        self.assertIn("2024-03-30 19:29:59.000 -05:30  2024-03-30 19:40:00.000 -05:30    10 m 1 s           4\n", out)
        ends = "1677-09-21T00:12:43.145224192Z\n2262-04-11T23:47:16.854775806Z"
        self.assertEqual([s["events"] for s in spans("--gap", "106751d", stdin=ends)], [1, 1, 2])
        self.assertEqual(spans("--offset", "-23:00", stdin=ends)[0]["begin"], "1677-09-21 00:12:43.145 +00:00")

    def test_random_files(self):
        rng = random.Random(1)
        folder = self.enterContext(tempfile.TemporaryDirectory())
        for count, width, gap in [(9000, 10**9, 3), (9000, 10**6, 50), (40, 500, 9)]:
            files = {f'{folder}/{n} "': [rng.randrange(width) for _ in range(count)] for n in range(3)}
            for name, times in files.items():
                pathlib.Path(name).write_text("".join("1970-01-01T00:00:00.%09dZ\n" % t for t in times))
            result = spans("--overlap", "--gap", f"{gap}ns", *files)
            found = [[s["begin_ns"], s["end_ns"], s["events"]] for s in result if s["type"] == "span"]
            self.assertEqual(found, model(sum(files.values(), []), gap))
        # Of the last and smallest: every instant at which two files or more were active.
        active = {}
        for name, times in files.items():
            for begin, end, _ in model(times, gap):
                for t in range(begin, end + 1):
                    active.setdefault(t, set()).add(name)
        overlaps = [(range(o["begin_ns"], o["end_ns"] + 1), o["files"]) for o in result if o["type"] == "overlap"]
        self.assertEqual([t for times, _ in overlaps for t in times], sorted(t for t in active if len(active[t]) > 1))
        for times, names in overlaps:
            self.assertEqual(set(names), set().union(*(active[t] for t in times)))

    def test_convert(self):
        for text, (seconds, ntp, local) in CONVERT.items():
            forms = dict(line.split(None, 1) for line in run("convert", text)[1].splitlines())
            self.assertEqual((forms["seconds"], forms["ntp"][6:], forms["local"]), (seconds, ntp, local), text)
            self.assertEqual(run("convert", "--to", "seconds", stdin="@" + seconds)[1], seconds + "\n")
        for text in NOT_CONVERTED:
            self.assertEqual(run("convert", "--to", "utc", text)[:2], (1, ""), text)

    def test_command_lines(self):
        for status, lines in STATUS.items():
            for line in lines:
                self.assertEqual(run(*line.split())[0], status, line)
        for command in [], ["spans"], ["convert"], ["now"], ["measure"]:
            self.assertEqual(run(*command, "--version"), (0, f"zemtime {VERSION}\n", ""))
            self.assertIn("Usage: zemtime", run(*command, "--help")[1])
        self.assertRegex(run("measure", "-n", "3", "--", "true")[2], "^3 runs: minimum .*, median .*, maximum .*\n$")
        shell = ["bash", "-c"]
        self.assertEqual(run("yes @1 2>&- | $0 convert | head -n 1", PROGRAM, program=shell)[2], "")
        self.assertEqual(run("$0 now >/dev/full", PROGRAM, program=shell)[0], 1)


unittest.main(argv=sys.argv[:1])
