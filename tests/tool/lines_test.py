"""zemtime lines: what lies in a window of time, byte for byte, however it is found."""
import datetime, gzip, os, pathlib, random, re, subprocess, tempfile, unittest

from support import ENV, PROGRAM, main

SECOND, HOUR = 10**9, 3600 * 10**9
MARCH = 1709290800 * SECOND  # 2024-03-01 12:00:00 +01:00
MARK = b"\xef\xbb\xbf"


def lines(*args, stdin=b""):
    p = subprocess.run([PROGRAM, "lines", *args], capture_output=True, env=ENV, check=False,
                       **({"stdin": stdin} if hasattr(stdin, "fileno") else {"input": stdin}))
    return p.returncode, p.stdout, p.stderr.decode()


def stamp(t):
    second = datetime.datetime(1970, 1, 1) + datetime.timedelta(seconds=t // SECOND)
    return f"{second.isoformat()}.{t % SECOND:09}Z"


def model(data, begin=None, end=None):
    """The lines of the events in [begin, end), and what follows each."""
    result, inside = b"", begin is None
    for line in re.findall(rb"[^\n]*\n|[^\n]+", data):
        match = re.match(rb"(?:\xef\xbb\xbf)?(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d)\.(\d{9})Z", line)
        if match:
            seconds = datetime.datetime.fromisoformat(match[1].decode() + "+00:00").timestamp()
            t = int(seconds) * SECOND + int(match[2])
            inside = (begin is None or t >= begin) and (end is None or t < end)
        result += line if inside else b""
    return result


def random_log(rng, size, disorder):
    """Events in order but for `disorder` ns, and what stands between them."""
    t, parts, event = MARCH, [rng.choice([b"", MARK])], b""
    while size > 0 or not event:
        t += rng.choice([0, 1, SECOND, rng.randrange(HOUR)])
        text = rng.choice([b" text", b"", b" \0\0", b" \r"]) + rng.choice([b"", b" " + b"x" * 40, b" " + b"x" * 9000, b"\r"])
        part = event = stamp(t - rng.randrange(disorder + 1)).encode() + text + b"\n"
        if rng.random() < 0.3:
            event = b""
            part = rng.choice([b"\n", b"\r\n", b"  at 2024\n", b"\0\n", b"y" * rng.choice([70, 70, 400000]) + b"\n"])
        parts.append(part)
        size -= len(part)
    return b"".join(parts).removesuffix(b"\n" * rng.randrange(2)), t


INSTANTS = {  # what an instant is written as: seconds after MARCH, of 12:00 in TZ; None: refused
    "2024-03-01T11:00:05Z": 5, "2024-03-01 13:00:05.5+02:00": 5.5, "2024-03-01 12:00:05": 5, "2024-03-01T12:01": 60,
    "2024-03-02": 12 * 3600, "2024-03-01": -12 * 3600, "2024-03-01 12:00:05,25": 5.25,
    "": None, "-": None, "+": None, "x": None, "2024": None, "2024-03-01T": None, "2024-02-30": None, "12": None, "25:00": None,
    "1h": None, "-1": None, "9999-01-01": None, "9999-01-01T00:00:00Z": None, "-293y": None, "2024-03-01T12:00:05Zx": None,
    "now ": None, "2024-03-01\0": None,
}


class Lines(unittest.TestCase):
    def setUp(self):
        self.log = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())) / "log"

    def test_random_logs(self):
        """A search, a scan and a pipe give what the model gives, at every edge."""
        for seed in range(16):
            rng = random.Random(seed)
            large = seed % 2 == 0  # enough to be searched
            data, last = random_log(rng, rng.choice([1 << 20, 3 << 20]) if large else rng.randrange(3000),
                                    rng.choice([0, 0, SECOND, HOUR]))
            self.log.write_bytes(data)
            events = [line for line in re.findall(rb"^(?:\xef\xbb\xbf)?(2024[^\n]{25}Z)", data, re.M)]
            for _ in range(6):
                begin, end = sorted(rng.choice([rng.randrange(MARCH - 1, last + 2), self.time_of(rng.choice(events))]) for _ in "ab")
                end += begin == end
                begin, end = rng.choice([(begin, end), (begin, end), (begin, None), (None, end), (None, None), (begin, begin + 1)])
                window = [word for name, t in (("--from", begin), ("--to", end)) if t is not None for word in (name, stamp(t))]
                expected = model(data, begin, end)
                for found in lines(*window, self.log), lines(*window, "--scan", self.log), lines(*window, stdin=data):
                    self.assertEqual(found[1], expected, (seed, window))
                    self.assertEqual(found[::2], (0 if re.search(rb"^(\xef\xbb\xbf)?2024.{25}Z", expected, re.M) else 1, ""), (seed, window))

    @staticmethod
    def time_of(text):
        return int(datetime.datetime.fromisoformat(text[:19].decode() + "+00:00").timestamp()) * SECOND + int(text[20:29])

    def test_long_lines(self):
        """Lines much longer than a block, at both ends of the window and in it."""
        for newline in b"\n", b"\r\n", b"":
            for size in (10**7,) if newline == b"\r\n" else (262143 - 33, 262144 - 33, 262144):
                body = [stamp(MARCH + i).encode() + b" " + bytes([i]) * size for i in range(4)]
                more = b"z" * size
                data = b"".join(line + (newline or b"\n") + more + b"\n" for line in body).removesuffix(newline and b"" or b"\n")
                self.log.write_bytes(data)
                for begin, end in (0, 4), (1, 3), (3, 4):
                    window = ["--from", stamp(MARCH + begin), "--to", stamp(MARCH + end)]
                    self.assertTrue(lines(*window, self.log)[1] == model(data, MARCH + begin, MARCH + end), (newline, size, begin))

    def test_order(self):
        """What is not in order is read whole, or said to be so."""
        log = lambda times: b"".join(stamp(t).encode() + b" " + b"x" * 60 + b"\n" for t in times)
        times = [MARCH + i * 60 * SECOND for i in range(20000)]
        window = ["--from", stamp(times[9000]), "--to", stamp(times[9100])]
        for order in times[10000:] + times[:10000], times[::-1], random.Random(1).sample(times, 20000):
            self.log.write_bytes(log(order))
            found = lines(*window, self.log)
            self.assertEqual(found, (0, model(log(order), times[9000], times[9100]), ""))
        # A few lines that no sample meets.
        self.log.write_bytes(log(times[:9050] + times[1:3] + times[9050:]))
        said = f"zemtime: {self.log}: its lines are not in the order of time, so some may be missing: add --scan\n"
        self.assertEqual(lines(*window, self.log)[::2], (2, said))
        self.assertEqual(lines(*window, "--scan", self.log), (0, log(times[9000:9100]), ""))
        # One of a clock that was ahead for a moment does not end the window.
        self.log.write_bytes(log(times[:9050] + times[15000:15001] + times[9050:]))
        self.assertEqual(lines(*window, self.log), (2, log(times[9000:9100]), said))

    def test_instants(self):
        now = int(datetime.datetime.now().timestamp()) * SECOND
        for text, after in INSTANTS.items():
            if "\0" in text:
                continue
            if after is None:
                status, out, err = lines("--from", text)
                self.assertEqual((status, out, err.splitlines()[0][:33]), (2, b"", "zemtime: --from wants a time such"), text)
                continue
            t = MARCH + int(after * SECOND)
            data = f"{stamp(t - 1)}\n{stamp(t)}\n".encode()
            self.assertEqual(lines("--from", text, stdin=data)[1], data[31:], text)
            self.assertEqual(lines("--to", text, stdin=data)[1], data[:31], text)
        # Without a zone of its own it is of the zone that is assumed.
        data = b"2024-03-01 12:00:04\n2024-03-01 12:00:05\n2024-03-01 12:00:06\n"
        for zone in "utc", "America/New_York", "local":
            found = lines("--assume", zone, "--from", "2024-03-01 12:00:05", "--to", "2024-03-01 12:00:06", stdin=data)
            self.assertEqual(found[1], data[20:40], zone)
        data = "".join(stamp(now + s * SECOND) + "\n" for s in (-7200, -1800, 1800, 7200)).encode()
        for window, shown in [(["--from", "-1h"], data[31:]), (["--from", "-1h", "--to", "+1h"], data[31:93]),
                              (["--to", "now"], data[:62]), (["--from=now"], data[62:]), (["--from=+1 h"], data[93:])]:
            self.assertEqual(lines(*window, stdin=data)[1], shown, window)
        today = datetime.datetime.fromtimestamp(now // SECOND, datetime.timezone.utc).strftime("%Y-%m-%d")
        data = f"{today} 12:29:59\n{today} 12:30:00\n".encode()
        self.assertEqual(lines("--assume", "utc", "--from", "12:30", stdin=data)[1], data[20:])
        self.assertEqual(lines("--from", "now", "--to", "-1ns")[0], 2)

    def test_several_files(self):
        self.log.write_bytes(b"more\n2024-03-01T12:00:00Z a\n b\n")
        event = self.log.read_bytes()[5:]
        for name in self.log, "-":
            found = lines("--from", "2024-03-01T12:00:00Z", self.log, name, self.log, stdin=b"2024-03-01T12:00:00Z c")
            self.assertEqual(found, (0, event + (event if name != "-" else b"2024-03-01T12:00:00Z c") + event, ""))
        self.assertEqual(lines(self.log)[1], self.log.read_bytes())
        with open(self.log, "rb") as file:
            file.seek(5)
            self.assertEqual(lines("-", "-", stdin=file), (0, event, ""))
        # Years follow from the lines before.
        year = b"Dec 31 23:59:59 a x: 1\n more\nJan  1 00:00:00 a x: 2\nJul  2 00:00:00 a x: 3\n"
        self.log.write_bytes(year * 2)
        os.utime(self.log, (MARCH // SECOND,) * 2)  # in 2024
        for first in 2021, 2022:
            found = lines("--assume", "utc", "--from", f"{first}-12-31", "--to", f"{first + 1}-01-02", self.log)
            self.assertEqual(found, (0, year[:52], ""))

    def test_unread(self):
        folder = self.log.parent
        self.log.write_bytes(b"2024-03-01T12:00:00Z\n")
        status, out, err = lines(folder / "none", self.log, folder)
        self.assertEqual((status, out), (2, self.log.read_bytes()))
        self.assertEqual(err, f"zemtime: {folder}/none: No such file or directory\nzemtime: {folder}: Is a directory\n")
        for data, said in {gzip.compress(b"x" * 99): "compressed by gzip; read it with: zcat | zemtime lines -",
                           b"\0\1\n\2\xff\n" * 9: "no line has a time that can be read: zemtime spans --explain says what was looked for"}.items():
            self.assertEqual(lines(stdin=data)[::2], (2, f"zemtime: -: {said}\n"), data)
        # Cut while it is read: nobody takes what is printed before that.
        self.log.write_bytes(b"2024-03-01T12:00:00Z\n" * 99999)
        with subprocess.Popen([PROGRAM, "lines", self.log], stdout=subprocess.PIPE, stderr=subprocess.PIPE) as p:
            p.stdout.read(9)
            os.truncate(self.log, 5)
            _, err = p.communicate()
        self.assertEqual((p.returncode, err.decode()), (2, f"zemtime: {self.log}: became shorter while it was read\n"))
        self.log.write_bytes(b"2024-03-01T12:00:00Z\n")
        self.assertEqual(lines(stdin=b""), (1, b"", ""))
        self.assertEqual(lines("--to", "2024-03-01", self.log), (1, b"", ""))
        for sink, complaint in ("head -n 1", ""), ("cat >/dev/full", None):
            p = subprocess.run(["bash", "-c", f"yes 2024-03-01T12:00:00Z 2>&- | head -c 9000000 | $0 lines - | {sink}", PROGRAM],
                               capture_output=True, text=True, check=False, env=ENV)
            self.assertIn(complaint or "", p.stderr)


main()
