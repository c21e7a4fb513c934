"""zemtime spans --merge: spans of parts are those of the whole, and nothing else is taken for spans."""
import gzip, json, pathlib, random, tempfile, unittest

from support import main, run

ENDS = [-2**63, -2**63 + 1, 2**63 - 2, 2**63 - 3]  # of what an event can have


def stamps(times):
    """Lines with these times."""
    texts = run("convert", "--to", "rfc3339", stdin="".join(f"@{t}ns\n" for t in times))[1]
    return dict(zip(times, texts.splitlines()))


def split(rng, items, parts):
    cuts = sorted(rng.randrange(len(items) + 1) for _ in range(parts - 1))
    return [items[a:b] for a, b in zip([0, *cuts], [*cuts, len(items)])]


def changed(line, **members):
    """A line with other members, or without those that are None."""
    row = {**json.loads(line), **members}
    return json.dumps({name: value for name, value in row.items() if value is not None})


EVENTS = "2024-03-01T12:00:00Z\n2024-03-01T12:00:05.5Z\n2024-03-01T13:00:00Z\n"
SPAN, OTHER, SUMMARY = run("spans", "--json", "--utc", stdin=EVENTS)[1].splitlines()
BEGIN = 1709294400 * 10**9
SAME = [  # what comes to the same
    f"{SPAN}\n{OTHER}\n{SUMMARY}", f"{OTHER}\n{SPAN}\n{SUMMARY}\n", f"\r\n{SPAN}\r\n \n{OTHER}\r\n\t{SUMMARY} ",
    "\n".join(json.dumps(json.loads(line), indent=None, sort_keys=True) for line in (SPAN, OTHER, SUMMARY)),
    SPAN + "\n" + changed(OTHER, begin='é"\\\b\U0001f550') + "\n" + SUMMARY,
]
NO_OBJECT = "no JSON object; --merge reads what zemtime spans --json prints"
WRONG = {  # a line in place of the first: what is said of it
    SPAN[:-1]: "no } where one belongs", SPAN[:40]: "a string without an end", SPAN + "}": "more behind the object",
    SPAN + SPAN: "more behind the object", f"[{SPAN}]": NO_OBJECT, "null": NO_OBJECT, EVENTS[:20]: NO_OBJECT,
    SPAN + "\0": "more behind the object", "{}": 'no "type"', '{"type":5}': '"type" is no string',
    changed(SPAN, type="spam"): 'no such "type": "spam"', changed(SPAN, type="\x1b"): 'no such "type": "\\x1b"',
    changed(SPAN, more=1): '"more" is not known here', changed(SPAN, type="active"): 'no "file"',
    SPAN.replace('"events":2', '"events":2,"events":2'): 'more than one "events"',
    SPAN.replace('"events":2', '"events":02'): "a value that is no string, whole number or array of strings",
    SPAN.replace('"events":2', '"events":2.0'): "no } where one belongs",
    SPAN.replace('"events":2', '"events":2e0'): "no } where one belongs",
    SPAN.replace('"events":2', '"events":2,'): 'no " where one belongs',
    SPAN.replace('"events":2', "'events':2"): 'no " where one belongs',
    SPAN.replace("12:00", "12\t00"): "a control character in a string",
    SPAN.replace("12:00", "12\\x00"): "an escape that is none", SPAN.replace("12:00", "\\ud83d"): "an escape that is none",
    SPAN.replace("12:00", "\\ud83d\\u0041"): "an escape that is none", SPAN.replace("12:00", "\\u00g0"): "an escape that is none",
    **{changed(SPAN, **{name: None}): f'no "{name}"' for name in json.loads(SPAN)},
    changed(SPAN, events=0): "a span without events", changed(SPAN, events=-1): '"events" is -1, and no count',
    changed(SPAN, events=2**64): f'"events" is {2**64}, and no count', changed(SPAN, events="2"): '"events" is no count',
    changed(SPAN, events=True): "a value that is no string, whole number or array of strings",
    changed(SPAN, events=2**64 - 1): (2, "more events than can be counted"),
    changed(SPAN, begin_ns=2**63): f'"begin_ns" is {2**63}, and no whole number of 64 bits',
    changed(SPAN, begin_ns=-2**63 - 1): f'"begin_ns" is {-2**63 - 1}, and no whole number of 64 bits',
    changed(SPAN, end_ns=BEGIN - 1): '"begin_ns" and "end_ns" are no range of times',
    changed(SPAN, begin_ns=2**63 - 1, end_ns=2**63 - 1, length_ns=0): '"begin_ns" and "end_ns" are no range of times',
    # Readers that keep numbers as floating point lose their last digits.
    changed(SPAN, end_ns=BEGIN + 5500000000 + 256): '"length_ns" is not "end_ns" less "begin_ns"',
    changed(SPAN, events=3): (3, "the summary counts other spans or events than there are before it"),
    OTHER + "\n" + SPAN: (4, "the summary counts other spans or events than there are before it"),
    "": (3, "the summary counts other spans or events than there are before it"),
    SUMMARY: "the summary counts other spans or events than there are before it",
}
WRONG_SUMMARIES = {
    changed(SUMMARY, gap_ns=None): 'a summary without "gap_ns": printed by an older zemtime',
    changed(SUMMARY, gap_ns=0): '"gap_ns" is no gap', changed(SUMMARY, gap_ns=2**63 - 1): '"gap_ns" is no gap',
    changed(SUMMARY, unread=None): 'no "unread"', changed(SUMMARY, unread=-1): '"unread" is -1, and no count',
    changed(SUMMARY, active=0): 'no "overlapping_ns"', changed(SUMMARY, overlapping_ns=0): '"overlapping_ns" is not known here',
    changed(SUMMARY, active=1): "the summary counts other times of files than there are before it",
}


class Merge(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def merged(self, parts, *options):
        for i, part in enumerate(parts):
            (self.folder / str(i)).write_text(part, "utf-8")
        return run("spans", "--merge", *options, *map(str, range(len(parts))), cwd=self.folder)

    def test_parts(self):
        """However a log is split, and whichever way its parts are merged, the result is that of the whole."""
        for seed in range(24):
            rng = random.Random(seed)
            width, gap = rng.choice([(60, 3), (10**4, 50), (10**12, 10**10), (10**18, 2**60)])
            times = [rng.randrange(width) for _ in range(rng.choice([0, 1, 5, 300]))]
            times += rng.sample(ENDS, rng.randrange(4)) if seed % 3 == 0 else []
            times.sort() if seed % 2 == 0 else rng.shuffle(times)
            text = stamps(times)
            lines = [rng.choice(["", "x\n"]) + text[t] + "\n" for t in times]
            shares = split(rng, lines, rng.randrange(1, 9))
            rng.shuffle(shares)
            gaps = [rng.randrange(1, gap + 1) for _ in shares]
            parts = [run("spans", "--json", "--utc", "--gap", f"{gap}ns", stdin="".join(share))[1]
                     for share, gap in zip(shares, gaps)]
            for options, least in [(["--json"], max(gaps)), (["--zone", "+01:00"], max(gaps)),
                                   (["--json", "--gap", f"{gap}ns"], gap), (["--gap", f"{2 * gap}ns"], 2 * gap)]:
                whole = run("spans", "--gap", f"{least}ns", *options, stdin="".join(lines))
                self.assertEqual(self.merged(parts, *options)[:2], whole[:2], seed)
            status, some, _ = self.merged(parts[:3], "--json")
            last = self.merged([some, "".join(parts[3:])] if parts[3:] else [some], "--json")
            self.assertEqual(last, self.merged(parts, "--json"), seed)

    def test_overlap(self):
        """Files that different runs have read overlap as if one had read them."""
        for seed in range(20):
            rng = random.Random(seed)
            names = ["a", "b", "c c", "\U0001f550", "e"][:rng.randrange(1, 6)]
            for name in names:
                text = stamps([rng.randrange(60) for _ in range(rng.choice([0, 1, 9]))])
                (self.folder / name).write_text("".join(line + "\n" for line in text.values()))
            gap, more = rng.choice([1, 2, 9]), rng.randrange(5)
            one = lambda gap, *words: run("spans", "--overlap", "--json", "--gap", f"{gap}ns", *words, cwd=self.folder)
            parts = [one(gap, *share)[1] for share in split(rng, names, 3) if share]
            for wide in gap, gap + more:
                found = self.merged(parts, "--overlap", "--json", "--gap", f"{wide}ns")
                self.assertEqual(found[:2], one(wide, *names)[:2], seed)
                plain = self.merged(parts, "--json", "--gap", f"{wide}ns")
                self.assertEqual(plain[1], run("spans", "--json", "--gap", f"{wide}ns", *names, cwd=self.folder)[1])
        # Files of one name in several runs are several files.
        (self.folder / "log").write_text(EVENTS)
        part = one(10**9, "log")[1]
        rows = map(json.loads, self.merged([part, part], "--overlap", "--json")[1].splitlines())
        self.assertEqual([row["files"] for row in rows if row["type"] == "overlap"], [["0:log", "1:log"]] * 3)
        self.assertEqual(self.merged([part, f"{SPAN}\n{OTHER}\n{SUMMARY}"], "--overlap"),
                         (1, "", "zemtime: --overlap wants spans that were all printed with --overlap\n"))
        cut = part.replace(next(line for line in part.splitlines() if "active" in line) + "\n", "")
        self.assertIn("counts other times of files", self.merged([cut])[2])

    def test_wrong_lines(self):
        """What is no output of spans is named by its line, and nothing is printed."""
        expected = run("spans", "--json", "--utc", stdin=EVENTS)
        for text in SAME:
            self.assertEqual(run("spans", "--merge", "--json", "--utc", stdin=text), expected, text)
        lines = {f"{first}\n{OTHER}\n{SUMMARY}\n": (1, said) if isinstance(said, str) else said
                 for first, said in WRONG.items()}
        lines |= {f"{SPAN}\n{OTHER}\n{summary}\n": (3, said) for summary, said in WRONG_SUMMARIES.items()}
        for text, (number, said) in lines.items():
            self.assertEqual(self.merged([SUMMARY.replace(":3,", ":0,").replace(":2,", ":0,"), text]),
                             (1, "", f"zemtime: 1:{number}: {said}\n"), text)
        for text in "", "\n", SPAN, f"{SPAN}\n{OTHER}\n", f"{SPAN}\n{OTHER}\n{SUMMARY}\n{SPAN}\n":
            self.assertEqual(self.merged([text]), (1, "", "zemtime: 0: no summary at its end: cut off, "
                                                          "or not printed by zemtime spans --json\n"))
        packed = gzip.compress(SPAN.encode())
        self.assertEqual(run("spans", "--merge", stdin=packed), (1, "", "zemtime: -: compressed by gzip; read it "
                                                                 "with: zcat | zemtime spans --merge -\n"))
        self.assertEqual(run("spans", "--merge", "none"), (1, "", "zemtime: none: No such file or directory\n"))
        self.assertEqual(run("spans", "--merge", "/"), (1, "", "zemtime: /: Is a directory\n"))

    def test_what_was_not_read(self):
        """What a run left out is not forgotten."""
        (self.folder / "log").write_text("x\n" + EVENTS)
        _, part, _ = run("spans", "--json", "--utc", "log", "none", cwd=self.folder)
        status, out, err = self.merged([part, part], "--json", "--utc")
        summary = json.loads(out.splitlines()[-1])
        self.assertEqual((status, summary["unread"], summary["unparsed"], summary["events"]), (1, 2, 2, 6))
        self.assertEqual(err, "zemtime: 2 files could not be read where they were\n")

    def test_gap(self):
        part = f"{SPAN}\n{OTHER}\n{SUMMARY}"
        said = ("zemtime: --gap 29m59.999999999s is below the 30m of the spans, which cannot be taken apart: "
                "print them anew with the smaller one\n")
        self.assertEqual(self.merged([part], "--gap", "29m59.999999999s"), (1, "", said))
        self.assertEqual(self.merged([part], "--gap", "59m54.5s")[1].count("\n2024"), 2)
        self.assertEqual(self.merged([part], "--gap", "59m54.500000001s")[1].count("\n2024"), 1)


main()
