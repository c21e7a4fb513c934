"""The options of every command and its help."""
import datetime, json, os, pathlib, re, tempfile, unittest

from support import PROGRAM, VERSION, main, run

COMMANDS = ["spans", "lines", "convert", "now", "measure"]
EVENT = "2024-03-01T12:00:00Z\n"
GAP = "a duration such as 90s, 1.5h or '1h 30m' (ns us ms s m h d w), above 0 and below 292 years"
OFFSET = "Z or +hh, +hhmm, +hh:mm, +hh:mm:ss (or with -), at most 23:59:59"

WRONG = {  # what is said: command lines
    "no COMMAND: spans, lines, convert, now or measure": [[], ["--"]],
    "no such command: span": [["span"], ["--", "span", "--utc"]],
    "no such option: --utc": [["--utc", "spans"], ["now", "--utc"]],
    "no such command: \\x1b[1m": [["\x1b[1m"]],
    "no such option: -5": [["convert", "-5"], ["spans", "-", "-5"]],
    "no such option: --gapp=1h": [["spans", "--gapp=1h"]],
    "--o is short for several (--overlap, --offset)": [["spans", "--o=+01"]],
    "--json takes no argument": [["spans", "--json=1"]],
    "no DURATION behind --gap": [["spans", "--gap"], ["spans", "x", "--gap"]],
    "no N behind -j": [["spans", "-j"]],
    "no COMMAND to measure": [["measure"], ["measure", "-n", "3"], ["measure", "--"]],
    "no time is in the window: --from is not before --to":
        [["lines", "--from", "now", "--to", "-1ns"], ["lines", "--from", "12:00", "--to", "12:00"]],
    "--key wants the name of a key, not ''": [["spans", "--key", ""], ["lines", "--key=", "--input=json"]],
    "now takes options alone, not 'x'": [["now", "x"], ["now", "--", "x"]],
    "--json prints no chart: leave out --json or --chart":
        [["spans", "--json", "--chart"], ["spans", "--no-chart", "--chart", "--json"]],
    "--to wants one of rfc3339, text, utc, local, seconds, nanoseconds, ntp, duration, compact, or a zone such as Europe/Berlin, not 'x'":
        [["convert", "--to", "x"], ["convert", "--to=utc", "--to=x"]],
    **{f"--gap wants {GAP}, not '{gap}'": [["spans", "--gap", gap]] for gap in
       ["", "0s", "0.9ns", "5", "-5s", "1.h", ".5h", "1..5h", "1h30", "1 h m", "h", "1x", " 1h",
        "106752d", "9223372036.9s", "99999999999999999999s", "15251w", "2562047h 47m 17s"]},
    **{f"--offset wants {OFFSET}, not '{offset}'": [["spans", "--offset", offset]] for offset in
       ["", "+", "+5", "5", "01:00", "+99:99", "+24", "+23:60", "+23:59:60", "+1:00", "+01:",
        "+010", "+01:3", "+01:0000", "+0100:00", "+01:00:00:00", "+0100000", "+-1:00", "utc", "z",
        " +01"]},
    **{f"--assume wants utc, local, a zone's name such as Europe/Berlin, {OFFSET}, not '{zone}'":
       [["spans", "--assume", zone]] for zone in ("Mars/Olympus", "../Berlin", "/etc/localtime", "+99:99", "")},
    **{f"{name} wants a number from 1 to {most}, not '{n}'": [[command, name, n, "x"]]
       for command, name, most in [("measure", "-n", 1000000), ("measure", "--runs", 1000000),
                                   ("spans", "--jobs", 1024), ("spans", "-j", 1024)]
       for n in ["0", str(most + 1), "-1", "1.5", "x", "", "18446744073709551617"]},
}

HOUR = 3600 * 10**9
GAPS = {  # in nanoseconds
    "1ns": 1, "90s": 90 * 10**9,
    "1h30m": HOUR * 3 // 2, "1h 30m": HOUR * 3 // 2, "1.5h": HOUR * 3 // 2,
    "1 h 30 m": HOUR * 3 // 2, "1h1h": HOUR * 2, "1w": HOUR * 168, "2.5d1us": HOUR * 60 + 1000,
    "0.000000001w": 604800, "1.1s": 11 * 10**8, "0.0019ms": 1900, "1.0009us": 1000, "1.9ns": 1,
    "0.1234567899s": 123456789,
}
OFFSETS = {
    "Z": "12:00:00.000 +00:00", "-00": "12:00:00.000 +00:00", "+05": "17:00:00.000 +05:00",
    "-0530": "06:30:00.000 -05:30", "+05:30": "17:30:00.000 +05:30",
    "+00:00:01": "12:00:01.000 +00:00:01", "-115959": "00:00:01.000 -11:59:59",
    "+11:59:59": "23:59:59.000 +11:59:59",
}
LAST_WINS = {  # options: what they come to
    "--utc --local": "--local", "--local --utc": "--utc", "--utc --offset +05": "--offset=+05",
    "--offset +05 --offset -03 ": "--offset=-03", "--offset +05 --utc": "--utc",
    "--chart --no-chart": "--no-chart", "--no-chart --chart": "--chart",
    "--json --no-chart": "--json", "--json --chart --no-chart": "--json", "--ov --ov": "--overlap",
    "--gap 1h --gap 1m": "--gap=1m", "--gap=1m --gap=1h": "--gap=1h", "-j1 --jobs 2": "-j2",
}


def stamp(ns):
    second = datetime.datetime(1970, 1, 1) + datetime.timedelta(seconds=ns // 10**9)
    return f"{second.isoformat()}.{ns % 10**9:09}Z\n"


class Options(unittest.TestCase):
    def setUp(self):
        before = os.getcwd()
        os.chdir(self.enterContext(tempfile.TemporaryDirectory()))
        self.addCleanup(os.chdir, before)

    def test_wrong_lines(self):
        for message, lines in WRONG.items():
            for line in lines:
                command = line[0] + " " if line and line[0] in COMMANDS else ""
                said = f"zemtime: {message}\nRun zemtime {command}--help for more.\n"
                self.assertEqual(run(*line), (2, "", said), line)

    def test_gaps(self):
        for gap, ns in GAPS.items():
            events = stamp(0) + stamp(ns - 1) + stamp(2 * ns - 1)
            out = run("spans", "--json", "--gap", gap, stdin=events)[1]
            counts = [json.loads(line)["events"] for line in out.splitlines()]
            self.assertEqual(counts, [2, 1, 3], gap)

    def test_offsets(self):
        for offset, shown in OFFSETS.items():
            begin = "2024-03-01 " + shown
            out = run("spans", "--offset", offset, stdin=EVENT)[1]
            self.assertEqual(out.splitlines()[1].split("  ")[0].strip(), begin, offset)
            local, zone = shown.split(".000 ")
            out = run("spans", "--utc", "--assume", offset, stdin="2024-03-01 " + local)[1]
            self.assertIn("2024-03-01 12:00:00.000 +00:00", out, zone)

    def test_the_last_option_wins(self):
        events = EVENT + EVENT.replace("12:", "11:") + EVENT.replace("12:00", "11:59")
        for options, meant in LAST_WINS.items():
            found = run("spans", *options.split(), stdin=events)
            self.assertEqual(found, run("spans", meant, stdin=events), options)
            self.assertEqual(found[::2], (0, ""), options)
        self.assertEqual(run("convert", "--to", "ntp", "--to", "seconds", "@5")[1], "@5\n")

    # Files and options stand in any order, and what is behind -- is no option.
    def test_words(self):
        files = ["a", "[x]", "x,y", "--json", "-j"]
        for name in files:
            pathlib.Path(name).write_text(EVENT)
        for program in [PROGRAM], ["env", "POSIXLY_CORRECT=1", PROGRAM]:
            for line, events in {
                "--json a": 1, "a --json": 1, "a --json [x] --gap 1h x,y": 3, "--json": 1,
                "--json -- a --json": 2, "a --json -- a -- -j": 3, "--json a - [x]": 3,
                "- --json": 1, "--json -- - -j": 2, "--json -- - --": 1, "--json --": 1,
            }.items():
                out = run("spans", *line.split(), stdin=EVENT, program=program)[1]
                summary = json.loads(out.splitlines()[-1])
                self.assertEqual(summary["events"], events, line)
        for words in ["convert"], ["--", "convert"]:
            out = run(*words, "--to", "duration", "--", "-5000000000ns")[1]
            self.assertEqual(out, "-5s\n")

    def test_help(self):
        for command in [], *([name] for name in COMMANDS):
            self.assertEqual(run(*command, "--version"), (0, f"zemtime {VERSION}\n", ""))
            status, text, complaints = run(*command, "--help", "--no-such-option")
            self.assertEqual((status, complaints), (0, ""))
            self.assertTrue(text.startswith(" ".join(["Usage: zemtime", *command])), text)
            self.assertLessEqual(max(map(len, text.splitlines())), 80)
            self.assertEqual(run(*command, "-h")[1], text)
        overview = run("--help")[1]
        self.assertEqual(re.findall(r"^  (\w+) ", overview, re.M), COMMANDS)

    def test_full_disk(self):
        for line in "--help", "spans --help", "--version", "now", "convert @1":
            status, _, complaints = run(f"$0 {line} >/dev/full", PROGRAM, program=["bash", "-c"])
            said = "zemtime: standard output: No space left on device\n"
            self.assertEqual((status, complaints), (1, said), line)


main()
