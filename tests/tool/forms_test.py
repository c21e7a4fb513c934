"""The forms of times in logs: what is read, where it is found, and which year and zone it gets."""
import datetime, json, os, pathlib, random, re, tempfile, unittest

from support import main, run

NOON = datetime.datetime(2024, 3, 1, 12, 30, 45)
ZONED = 0         # read as 2024-03-01T12:30:45Z
LOCAL = -3600     # read as of the assumed +01:00

# form: lines with this very time, each in one of its ways; seconds behind NOON in UTC
READ = {
    "iso": {
        "2024-03-01T13:30:45.250+01:00 x": 0.25, "2024/03/01 12:30:45 [error] 7#7: x": LOCAL,
        "2024.03.01 12:30:45 LOG3[28:14]: x": LOCAL, "2024-03-01_12:30:45.5 x": LOCAL + 0.5,
        "2024-03-01\t12:30:45\tx": LOCAL, "2024:03:01-12:30:45: x": LOCAL,
        "<34>1 2024-03-01T12:30:45Z host app - - - x": ZONED, "[2024-03-01 12:30:45 GMT] x": ZONED,
        "2024-03-01 12:30:45.250 UTC [123] LOG:  x": 0.25, "2024-03-01 12:30:45,250 INFO x": LOCAL + 0.25,
        "WARN: [2024-03-01 12:30:45] x": LOCAL, "web_1  | 2024-03-01T12:30:45Z x": ZONED,
        "[Name] 7  - 2024/03/01, x 2024-03-01T12:30:45Z": ZONED, "# Time: 2024-03-01T12:30:45.000000Z": ZONED,
        "--2024-03-01 12:30:45--  http://x/": LOCAL, "Fri 2024-03-01 12:30:45 UTC host x": ZONED,
        "\x1b[32m2024-03-01\x1b[0m 12:30:45 \x1b[1mx": LOCAL, "app.log:2024-03-01T12:30:45Z x": ZONED,
        "\"2024-03-01 12:30:45\",\"x\"": LOCAL, "2024-03-01  1:30:45 139845235329792 [Warning] x": LOCAL - 39600,
        "a/2023-11-16.log 2024-03-01T12:30:45Z x": ZONED, "2024-03-01 12:30:45 PM x": LOCAL,
        "2024-03-01 12:30:45 AM UTC x": -43200, "2024-03-01 1:30:45 p.m. x": LOCAL + 3600, "2024/03/01 12:30:45.25 Z x": 0.25, "2024-03-01 12:30:45 [UTC] x": ZONED,
        "2024 Mar  1 12:30:45 x": LOCAL, "2024-Mar-01 12:30:45.25 x": LOCAL + 0.25, "2024-03-01 12:30:45 [Main] x": LOCAL,
    },
    "ctime": {
        "[Fri Mar 01 12:30:45.250000 2024] [core:error] x": LOCAL + 0.25, "Fri Mar  1 12:30:45 UTC 2024": ZONED,
        "Fri Mar  1 12:30:45 PM UTC 2024": ZONED,
        "Date:   Fri Mar 1 12:30:45 2024 -0500": 18000, "Mar 1 2024 12:30:45 host x": LOCAL,
        "March 01, 2024 1:30:45 PM x": LOCAL + 3600, "Mon Mar 01 12:30:45 2024 [pid 7] x": LOCAL,
        "Mar-01-24 12:30:45 x": LOCAL, "Fri Mar  1 12:30:45 2024 - [7] x": LOCAL,
    },
    "syslog": {
        "<13>Mar  1 12:30:45 host x": LOCAL, "Mar 1 12:30:45 host x[7]: 2023-01-01T00:00:00Z": LOCAL,
        "[Mar 01 12:30:45.250] x": LOCAL + 0.25, "*Mar  1 12:30:45.250 UTC: %SYS-5: x": 0.25,
    },
    "access": {
        '1.2.3.4 - - [01/Mar/2024:12:30:45 +0000] "GET /2023-01-01T00:00:00Z"': ZONED,
        "10.0.0.1 [01/Mar/2024:12:30:45.250] main": LOCAL + 0.25, "1.2.3.4 - [01/Mar/2024:12:30:45 GMT] x": ZONED,
    },
    "dmy": {
        "1234:M 01 Mar 2024 12:30:45.250 * Ready": LOCAL + 0.25, "Fri, 01 Mar 2024 12:30:45 GMT": ZONED,
        "01-Mar-2024 12:30:45.250 client x": LOCAL + 0.25, "[01-Mar-2024 12:30:45 +0000]: x": ZONED,
        "[1/Mar/2024 12:30:45] x": LOCAL,
    },
    "klog": {"I0301 12:30:45.250000       1 x.go:7] x": LOCAL + 0.25, "E20240301 12:30:45.250000 7 x": LOCAL + 0.25},
    "audit": {"type=X msg=audit(1709296245.250:4063): x": 0.25},
    "logcat": {"03-01 12:30:45.250  1  2 I x": LOCAL + 0.25},
    "spark": {"24/03/01 12:30:45 INFO x": LOCAL},
    "compact": {"240301 12:30:45 [Warning] x": LOCAL, "240301 123045 148 INFO x": LOCAL},
    "epoch": {
        "1709296245.250      4 1.2.3.4 TCP_DENIED/403": 0.25, "[1709296245] nsd[7]: x": ZONED, "1709296245250": 0.25,
        "1709296245250000 x": 0.25, "1709296245250000000 x": 0.25, "[pid  7] 1709296245.250000 x(": 0.25,
        "1234  1709296245.250000 x(": 0.25,
    },
    "json": {
        '{"level":"x","expires":"2023-01-01T00:00:00Z","ts":1709296245.25}': 0.25,
        '{"a":{"time":"2023-01-01T00:00:00Z","b":[{}]},"time":"2024-03-01T12:30:45Z","c":"\\""}': ZONED,
        '{"t":{"$date":"2024-03-01T12:30:45.250+00:00"},"s":"I"}': 0.25, '{"t":{"$date":{"$numberLong":"1709296245250"}}}': 0.25,
        '{"timestamp":"1709296245250000000","x":1}': 0.25, '{ "@timestamp" : "2024-03-01 12:30:45,250" }': LOCAL + 0.25,
        '{"__REALTIME_TIMESTAMP":"1709296245250000"}': 0.25, 'app-1  | {"time":1709296245250.0}': 0.25,
        'app-1  | {"expires":"2023-01-01T00:00:00Z","ts":"2024-03-01T12:30:45Z"}': ZONED,
        '{"msg":"' + "x" * 3900 + '","time":"Fri, 01 Mar 2024 12:30:45 GMT"}': ZONED,
    },
    "logfmt": {
        'level=info msg="ts=1" ts=2024-03-01T12:30:45Z x': ZONED, 'time="2024-03-01T12:30:45Z" level=info': ZONED,
        'msg="at ts=2023-01-01T00:00:00Z" ts=2024-03-01T12:30:45Z': ZONED, "a='at \\' 2023-01-01T00:00:00Z' ts=2024-03-01T12:30:45Z": ZONED,
        't=1709296245 x=2': ZONED, '<co ts="2024-03-01T12:30:45.25" pi="x">': LOCAL + 0.25,
    },
}

UNREAD = [
    "", "x", "\0", "[", "{", '{"', "ts=", "2024-03-01", "2024-03-01 12:30", "12:30:45", "Mar 1", "17092962",
    "2024-02-30 12:30:45 x", "2024-03-01 12:30:61 x", "2024/03/01 24:30:45 x", "Feb 30 12:30:45 x", "Mar 1 12:30:83 x",
    "[32/Mar/2024:12:30:45 +0000]", "[01/Mar/2024:12:30:45 +2500]", "[00/Mar/2024:12:30:45 +0000]",
    "2024-03-01T12:30:45.667Zx", "Mar 1 12:30:45:55 x", "Mar 1 12:30:45.5.5 x", "2024/03-01 12:30:45 x",
    "2024-03-01 12:30:45 CET x", "2024-03-01 12:30:45 UTC+2", "2024-03-01 12:30:45 GMT +0200", "2024-03-01 12:30:45  PST x",
    'msg="at 2023-01-01T00:00:00Z" level=info',
    "2024-03-01 12:30:45 America/New_York", "2024-03-01T12:30:45[Asia/Tokyo]", "2024-03-01 12:30:45 EST5EDT", "2024-03-01 12:30:45 (CET)", "[CEST Mar  1 12:30:45] x", "Fri Mar  1 12:30:45 EST 2024",
    "2024-03-01 13:30:45 PM", "11-06-2013 02:09:40 x", "10/06/2013 15:50:41 x", "24/03/01 12:30:45 x", "240301 123045 x",
    "3709296245 x", "0709296245 x", "17092962450 x", "1709296245-x", "1709296245.x", "x 1709296245.250 x",
    "[pid  7] 1709296245 x", "1709296245250.25", "1709296245.250.1", "audit(1709296245)", "8-03-01 12:30:45.250",
    "J0301 12:30:45.250000 x", "I0301 12:30:45.25 x", "03-01 12:30:45 x", "x" * 128 + " 2024-03-01T12:30:45Z",
    '{"ts":1709296245', '{"ts":"2024-03-01T12:30:45Z x"}', '{"a":{"ts":1709296245}}', '{"ts":12}', '{"ts":true,"a":1}',
    '{"msg":"' + "x" * 4096 + '","time":1709296245}', 'msg="ts=1709296245', "xts=1709296245", "ts=1709296245x",
    "/2024-03-01 12:30:45", "a-2024-03-01 12:30:45", "9999-03-01T12:30:45Z",
]

EXPLAINED = """\
log: 4 lines
           3  syslog, at the beginning of the line: mon day hms [fr] [z]
           3  without a year: 2024 to 2025, counted back from when the file was modified
           3  without a zone: as of the one that --assume names
  2024-12-31 22:00:00.000 +00:00  Dec 31 23:00:00 h x
  2025-01-01 00:00:00.000 +00:00  Jan  1 01:00:00 h y
  2025-01-01 01:00:00.000 +00:00  <13>Jan  1 02:00:00 h z
"""


def spans(*args, stdin=b""):
    """What is said, and begin and count of each span, the begins in seconds."""
    _, out, err = run("spans", "--json", "--gap", "1ns", *args, stdin=stdin)
    rows = [json.loads(line) for line in out.splitlines()]
    return err, [(row["begin_ns"] / 10**6 / 1000, row["events"]) for row in rows if row["type"] == "span"]


def instant(*fields):
    return datetime.datetime(*fields, tzinfo=datetime.timezone.utc).timestamp()


class Forms(unittest.TestCase):
    def setUp(self):
        self.log = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())) / "log"

    def write(self, text, modified=None):
        self.log.write_text(text, "utf-8")
        if modified:
            os.utime(self.log, (modified, modified))

    def test_forms(self):
        noon = NOON.replace(tzinfo=datetime.timezone.utc).timestamp()
        for form, lines in READ.items():
            for line, after in lines.items():
                for options in [], ["--input", form]:
                    err, found = spans("--assume", "+01:00", "--year", "2024", *options, stdin=line)
                    self.assertEqual((err, found), ("", [(noon + after, 1)]), (form, line, options))
                explained = run("spans", "--explain", "--assume", "+01:00", "--year", "2024", stdin=line)[1]
                self.assertIn(f" {form}", explained.splitlines()[1], line)
        # Those of each form after another, and behind lines without a time.
        for form, lines in READ.items():
            lines = list(lines)[:4]  # as many places as a file may have
            text = "".join(f"{line}\n    at x.y(z)\r\n\n" for line in lines)
            _, found = spans("--assume", "+01:00", "--year", "2024", stdin=text)
            self.assertEqual(sum(n for _, n in found), len(lines), form)

    def test_lines_of_programs(self):
        table = pathlib.Path(__file__).resolve().parents[1] / "tables/log_lines.txt"
        lines = [line.split("\t", 2) for line in table.read_text("utf-8").splitlines() if line[:1] not in ("", "#")]
        self.assertGreater(len(lines), 25)
        for program, began, line in lines:
            year = str(datetime.datetime.fromtimestamp(int(began), datetime.timezone.utc).year)
            _, found = spans("--assume", "Europe/Berlin", "--year", year, stdin=line)
            self.assertTrue(found and -1 < found[0][0] - int(began) < 30, (program, line, found))

    def test_unread(self):
        for line in UNREAD:
            self.assertEqual(spans("--assume", "+01:00", "--year", "2024", stdin=line)[1], [], line)

    def test_places(self):
        """What stands at the beginning of most lines counts, and not the dates in others."""
        iso, inner = "2024-03-01T12:30:45Z x", "caused by 2023-01-01T00:00:00Z"
        web = '1.2.3.4 - - [01/Mar/2024:12:30:45 +0000] "GET /"'
        day = instant(2024, 3, 1, 12, 30, 45)
        for lines, expected in [
            ([iso] * 9 + [inner], [(day, 9)]), ([inner] + [iso] * 20, [(day, 20)]), ([iso, web] * 9, [(day, 18)]),
            ([inner], [(instant(2023, 1, 1), 1)]), (["1709296245"] + ["1234567 x"] * 9, []),
            (["1709296245", "1234567 x"] * 9, [(day, 9)]),
            (['{"expires":"2023-01-01T00:00:00Z","a":{}}'], []), ([web, '{"ts":"2023-01-01T00:00:00Z"}'] * 9, None),
            # Of times inside lines the leftmost, whichever form is more frequent.
            (["app | " + iso] * 9 + [web + "?t=2023-01-01T00:00:00Z"] * 5, [(day, 14)]),
            (["a=b ts=" + iso] * 9 + ["app | " + iso + " ts=2023-01-01T00:00:00Z"] * 5, [(day, 14)]),
        ]:
            for bom in "", "\ufeff":
                self.assertEqual(spans(stdin=bom + "\n".join(lines))[1],
                                 [(instant(2023, 1, 1), 9), (day, 9)] if expected is None else expected, lines)
        self.assertEqual(spans("--key", "expires", stdin='{"ts":1709296245,"expires":1709296246}')[1], [(day + 1, 1)])
        self.assertEqual(spans("--key", "when", stdin="a=b when=1709296245 c=d")[1], [(day, 1)])
        self.assertEqual(spans("--input", "epoch", stdin=iso)[1], [])
        # The samples decide, wherever they are taken: a form in the middle or at the end alone counts too.
        filler = "x" * 99 + "\n"
        self.write(filler * 700 + web + "\n" + filler * 3000)
        for options in ["--input", "access"], ["--input", "epoch"]:
            found = spans(*options, self.log)[1]
            self.assertEqual(found, [(day, 1)] if "access" in options else [], options)
        for at in 0, 2500, 5000:
            self.write(filler * at + (web + "\n") * 9 + filler * (5000 - at))
            for jobs in "1", "2", "7":
                self.assertEqual(spans("--jobs", jobs, self.log)[1], [(day, 9)], (at, jobs))

    def test_years(self):
        """Lines in their order, some of them late, up to when the file was modified."""
        rng = random.Random(1)
        for n in range(9):
            end = instant(2025, 1, 9) + rng.randrange(10**8)
            count, step = rng.choice([(3, 10**7), (400, 10**5), (200, 2 * 10**6)])
            times = sorted(end - rng.randrange(1, step) - step * i for i in range(count))
            for i in range(0, count - 1, 9):  # not across a gap that makes it another year
                if times[i + 1] - times[i] < 5 * 86400:
                    times[i : i + 2] = times[i + 1], times[i]
            stamps = [datetime.datetime.fromtimestamp(t, datetime.timezone.utc) for t in times]
            self.write("".join(f"{s:%b} {s.day:2} {s:%H:%M:%S} host x\n\tmore\n" for s in stamps), end)
            for jobs in "1", "3", "10" if n else "1024":
                for options in [], ["--year", str(stamps[0].year)]:
                    if options:
                        os.utime(self.log, (0, 0))
                    _, found = spans("--assume", "utc", "--jobs", jobs, *options, self.log)
                    self.assertEqual([t for t, _ in found], sorted(set(times)), (n, jobs, options))
                os.utime(self.log, (end, end))
        today = datetime.datetime.now(datetime.timezone.utc)
        for days in 0, 1, -2, -300:
            then = (today - datetime.timedelta(days=days)).replace(microsecond=0)
            year = then.year if days >= 0 else (then - datetime.timedelta(days=365)).year
            if (then.month, then.day) != (2, 29):
                _, found = spans("--assume", "utc", stdin=f"{then:%b %d %H:%M:%S} host x")
                self.assertEqual(found[0][0], then.replace(year=year).timestamp())
        self.write("Feb 29 12:00:00 x\n", instant(2026, 1, 1))
        self.assertEqual(spans("--assume", "utc", self.log)[1], [(instant(2024, 2, 29, 12), 1)])
        self.assertEqual(spans("--assume", "utc", "--year", "2025", self.log)[1], [])
        self.write("Dec 31 12:00:00 x\n", 10413792000)  # beyond the times that there are
        self.assertGreater(spans("--assume", "utc", self.log)[1][0][0], 0)

    def test_zones(self):
        """A zone that lacks is not guessed; the name of one must be that of the assumed one."""
        lines = {"2024-07-01 12:00:00 CEST x": instant(2024, 7, 1, 10), "2024-07-01 12:00:00 CET x": None,
                 "2024-12-01 12:00:00 CET x": instant(2024, 12, 1, 11), "2024-12-01 12:00:00 EST x": None,
                 "2024-10-27 02:30:00 CEST": instant(2024, 10, 27, 0, 30), "2024-10-27 02:30:00 CET": instant(2024, 10, 27, 1, 30),
                 "2024-03-31 02:30:00 CET": None, "Sun Dec  1 12:00:00 CET 2024": instant(2024, 12, 1, 11),
                 "[CEST Jul  1 12:00:00] x": instant(2024, 7, 1, 10), "2024-12-01 12:00:00 UTC": instant(2024, 12, 1, 12)}
        for line, expected in lines.items():
            err, found = spans("--assume", "Europe/Berlin", "--year", "2024", stdin=line)
            self.assertEqual([t for t, _ in found], [expected] if expected else [], line)
            self.assertIn("another zone" if expected is None else "", err)
        text = "2024-03-31 02:30:00 x\n2024-10-27 02:30:00 x\n2024-10-27 02:30:01 x\n2024-10-27 03:00:00 x\n"
        err, found = spans("--assume", "Europe/Berlin", stdin=text)
        self.assertEqual([t for t, _ in found][:2], [instant(2024, 3, 31, 1, 30), instant(2024, 10, 27, 0, 30)])
        self.assertIn("2 times occurring twice, read as the earlier; 1 time not occurring", err)
        err, found = spans(stdin=text)
        self.assertEqual((err.count("\n"), found), (2, []))
        self.assertRegex(err, "-: 4 times without a zone's name: --assume local")

    def test_explain(self):
        self.write("Dec 31 23:00:00 h x\nmore\nJan  1 01:00:00 h y\n<13>Jan  1 02:00:00 h z\n", instant(2025, 6, 1))
        explained = run("spans", "--explain", "--utc", "--assume", "Europe/Berlin", self.log.name, cwd=self.log.parent)[1]
        self.assertEqual(explained, EXPLAINED)
        self.assertIn("under the key ts: ", run("spans", "--explain", stdin='{"ts":1709296245}')[1])
        for wrong in ["--json"], ["--chart"], ["--merge"]:
            self.assertEqual(run("spans", "--explain", *wrong)[0], 2)
        self.assertEqual(run("spans", "--key", "x", "--input", "iso")[0], 2)

    def test_bad_input(self):
        day = instant(2024, 3, 1, 12, 30, 45)
        line = "2024-03-01T12:30:45Z x"
        for data, events in {
            b"\0" * 300000: 0, bytes(range(256)) * 999: 0, line.encode() + b"\0\xff\n" + b"\0" * 9: 1,
            (line + "y" * 10**7 + "\n" + line).encode(): 2, (line + "\r\n").encode() * 9: 9, b"\n\r\n" * 9: 0,
            ("Mar  1 12:30:45 x" + "y" * 300000 + "\n").encode() * 3: 3,
        }.items():
            self.log.write_bytes(data)
            for jobs in "1", "5":
                _, found = spans("--assume", "utc", "--year", "2024", "--jobs", jobs, self.log)
                self.assertEqual(found, [(day, events)] if events else [], (data[:30], jobs))


main()
