"""zemtime convert and now."""
import json, random, unittest

from support import PROGRAM, main, run

CONVERTED = {  # text: seconds, ntp, local
    "2024-03-01 12:30:45.250 +01:00":
        ("@1709292645.25", "ntp:0xe98c3ae540000000", "2024-03-01 12:30:45.250000000 +01:00"),
    "@-0.000000001":
        ("@-0.000000001", "ntp:0x83aa7e7ffffffffb", "1970-01-01 00:59:59.999999999 +01:00"),
    "1969-12-31T23:59:59Z": ("@-1", "ntp:0x83aa7e7f00000000", "1970-01-01 00:59:59.000000000 +01:00"),
    "@+1.9999999999":
        ("@1.999999999", "ntp:0x83aa7e81fffffffb", "1970-01-01 01:00:01.999999999 +01:00"),
    "@+5ns":
        ("@0.000000005", "ntp:0x83aa7e8000000015", "1970-01-01 01:00:00.000000005 +01:00"),
    "ntp:0x0":
        ("@-2208988800", "ntp:0x0000000000000000", "1900-01-01 01:00:00.000000000 +01:00"),
    "ntp:+1:0x1":
        ("@2085978496", "ntp:1:0x0000000000000000", "2036-02-07 07:28:16.000000000 +01:00"),
    "@-2208988800.000000001":
        ("@-2208988800.000000001", "ntp:-1:0xfffffffffffffffb",
         "1900-01-01 00:59:59.999999999 +01:00"),
    "@9223372036854775807ns": ("@9223372036.854775807", "ntp:2:0xa96bfb84dad29658",
                              "2262-04-12 01:47:16.854775807 +02:00"),
    "ntp:-2:0x5de9017b252d69a3": ("@-9223372036.854775808", "ntp:-2:0x5de9017b252d69a3",
                                  "1677-09-21 02:12:43.145224192 +02:00"),
}
NOT_CONVERTED = [
    "", "@", "@-", "@.5", "@1.5x", "@1e5", "@ 1", "@9223372036.854775808", "@99999999999999999999",
    "@-9223372036.854775809", "5", "@ns", "@-ns", "@+-5ns", "@1.5ns", "@5 ns",
    "@9223372036854775808ns", "@-9223372036854775809ns", "5ns", "9999-01-01T00:00:00Z",
    "2262-04-11T23:47:16.854775808Z", "ntp:0xg", "ntp:", "ntp:0x", "ntp:0x10000000000000000", "ntp::0x0",
    "ntp:1:0", "ntp:2:0xa96bfb84dad2965d", "ntp:-2:0x5de9017b252d699f", "ntp:3:0x0", "[@1,@2]",
    "ntp:9223372036854775808:0x0", "2024-03-01T12:30:45",
]

# text: options, RFC 3339 or None
LOG_FORMS = {
    "1709292645": ("", "2024-03-01T11:30:45.000000000Z"), "1709292645.25": ("", "2024-03-01T11:30:45.250000000Z"),
    "1709292645250": ("", "2024-03-01T11:30:45.250000000Z"), "1709292645250000": ("", "2024-03-01T11:30:45.250000000Z"),
    "1709292645250000000": ("", "2024-03-01T11:30:45.250000000Z"), "17092926450": ("", None), "-1709292645": ("", None),
    "[01/Mar/2024:12:30:45 +0100]": ("", "2024-03-01T12:30:45.000000000+01:00"),
    "[Fri Mar 01 12:30:45.25 2024]": ("--assume Europe/Berlin", "2024-03-01T12:30:45.250000000+01:00"),
    "Fri, 01 Mar 2024 12:30:45 GMT": ("", "2024-03-01T12:30:45.000000000Z"),
    "Fri Mar  1 12:30:45 2024 -0530": ("", "2024-03-01T12:30:45.000000000-05:30"),
    "Mar  1 12:30:45": ("--assume utc --year 2024", "2024-03-01T12:30:45.000000000Z"),
    "2024-03-01 12:30:45.25": ("--assume -01:00", "2024-03-01T12:30:45.250000000-01:00"),
    "2024-03-01 12:30:45 CET": ("--assume Europe/Berlin", "2024-03-01T12:30:45.000000000+01:00"),
    "2024-03-01 12:30:45 EST": ("--assume Europe/Berlin", None), "Mar  1 12:30:45 x": ("--assume utc", None),
    '{"x":1,"ts":1709292645.25}': ("", "2024-03-01T11:30:45.250000000Z"), "[01/Mar/2024:12:30:45 +0100] x": ("", None),
    "2024-03-01 12:30:45 x": ("--assume utc", None), "level=info ts=1709292645": ("", "2024-03-01T11:30:45.000000000Z"),
    "x ts=2024-03-01T12:30:45Z": ("", "2024-03-01T12:30:45.000000000Z"), "x 2024-03-01T12:30:45Z": ("", None),
}


class Convert(unittest.TestCase):
    def test_forms(self):
        for text, (seconds, ntp, local) in CONVERTED.items():
            forms = dict(line.split(None, 1) for line in run("convert", text)[1].splitlines())
            found = forms["seconds"], forms["ntp"], forms["local"]
            self.assertEqual(found, (seconds, ntp, local), text)
        for text in NOT_CONVERTED:
            self.assertEqual(run("convert", "--to", "utc", "--", text)[:2], (1, ""), text)

    # What is printed in a form is read as the same instant.
    def test_reads_back(self):
        rng = random.Random(1)
        times = [0, 1, -1, 2**63 - 1, -2**63, 2085978496 * 10**9 - 1, 2085978496 * 10**9]
        times += [rng.randrange(-2**63, 2**63) for _ in range(500)]
        lines = "".join(f"@{t}ns\n" for t in times)
        for form in "rfc3339", "text", "utc", "local", "seconds", "nanoseconds", "ntp":
            printed = run("convert", "--to", form, stdin=lines)[1]
            self.assertEqual(run("convert", "--to", "nanoseconds", stdin=printed)[1], lines, form)

    def test_durations(self):
        for text, exact, compact in [
            ("1h30m", "1h30m", "1 h 30 m"), ("2 h 5 m", "2h5m", "2 h 5 m"), ("250ns", "250ns", "250 ns"),
            ("-1.5s", "-1.5s", "-1.50 s"), ("1w", "168h", "7 d 0 h"),
            ("2562047h47m16.854775807s", "2562047h47m16.854775807s", "106751 d"),
            ("9223372036854775807ns", "2562047h47m16.854775807s", "106751 d"),
            ("-9223372036854775808ns", "-2562047h47m16.854775808s", "-106751 d"),
            ("-2562047h47m16.854775808s", "-2562047h47m16.854775808s", "-106751 d"),
        ]:
            out = run("convert", "--", text)[1].splitlines()
            self.assertEqual(out, [f"duration     {exact}", f"compact      {compact}"], text)
            self.assertEqual(run("convert", "--to", "duration", "--", exact)[1], exact + "\n")
            self.assertEqual(run("convert", "--", compact)[0], 0)
        for text in "2562047h47m16.854775808s", "9223372036854775808ns", "-9223372036854775809ns", "-293y", "106752d", "1h30", "5 x":
            self.assertEqual(run("convert", "--", text)[:2], (1, ""), text)
        self.assertEqual(run("convert", "--to", "duration", "@5")[:2], (1, ""))

    def test_input(self):
        two = "".join(f"1970-01-01 00:00:0{n}.000000000 +00:00\n" for n in (1, 2))
        for args, stdin in [("@1", "@2"), ""], [("x", "@1", "@2"), ""], [(), "@1\n\nx\n@2"], [(), "\ufeff@1\r\n\r\n@2\r\n"]:
            self.assertEqual(run("convert", "--to", "utc", *args, stdin=stdin)[:2], (0, two))
        self.assertEqual(run("convert", stdin="x")[:2], (1, ""))
        shell = ["bash", "-c"]
        self.assertEqual(run("yes @1 2>&- | $0 convert | head -n 1", PROGRAM, program=shell)[2], "")

    def test_zones(self):
        for zone, text in [
            ("Europe/Berlin", "2024-03-31T03:00:00.000000000+02:00"),
            ("Asia/Kathmandu", "2024-03-31T06:45:00.000000000+05:45"),
            ("-01:00", "2024-03-31T00:00:00.000000000-01:00"),
        ]:
            out = run("convert", "--to", "utc", "--to", zone, "2024-03-31T01:00:00Z", "1h")
            self.assertEqual(out[:2], (0, text + "\n"), zone)
            self.assertEqual(run("convert", "--to", zone, text)[1], text + "\n")
        self.assertEqual(run("convert", "--to", "Mars/Olympus", "@0")[0], 2)

    def test_log_forms(self):
        for text, (options, printed) in LOG_FORMS.items():
            out = run("convert", "--to", "rfc3339", *options.split(), "--", text)
            self.assertEqual(out[:2], (0, printed + "\n") if printed else (1, ""), text)

    def test_json(self):
        out = run("convert", "--json", "@5", "x", '"\\', "1h")[1].splitlines()
        self.assertEqual([json.loads(line)["input"] for line in out], ["@5", "1h"])
        for line in out:
            printed = json.loads(line)
            forms = dict(row.split(None, 1) for row in run("convert", printed.pop("input"))[1].splitlines())
            self.assertEqual(printed, forms)
        out = run("convert", "--json", "--to", "Europe/Berlin", "@5")[1]
        self.assertEqual(out, '{"input":"@5","rfc3339":"1970-01-01T01:00:05.000000000+01:00"}\n')

    def test_now(self):
        self.assertEqual(run("convert", "--to", "utc", "now")[1][:13], run("now")[1].splitlines()[2][13:26])
        status, out, err = run("now")
        names = [line.split()[0] for line in out.splitlines()]
        self.assertEqual((status, err, names[-2:]), (0, "", ["monotonic", "offset"]))


main()
