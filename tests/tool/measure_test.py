"""zemtime measure."""
import os, pathlib, signal, subprocess, tempfile, unittest

from support import ENV, PROGRAM, main, run

STATUS = {  # arguments: exit status
    ("-n", "3", "--", "true"): 0, ("sh", "-c", "exit 3"): 3, ("sh", "-c", "kill $$"): 143,
    ("sh", "-c", "kill -INT $$"): 130, ("/no/such",): 127, ("no such command",): 127,
    ("/",): 126, ("./not executable",): 126, ("./no program",): 126,
}

# What options and patterns look like.
ODD = ["[0-9]", "[a,b]", "a,b", "--", "-n", "2", "", "--help", "--version", "{x}", "'q'", "-"]

FIRST = "mkdir made 2>&- && exit; echo ready; exec sleep 60"  # ends at once the first time
CATCHES = "trap 'exit 5' INT; echo ready; while true; do sleep 0.01; done"
INTERRUPTED = [  # runs, script, exit status and complaints at Ctrl-C
    (9, FIRST, -signal.SIGINT, r"[\d.]+ .?s\ninterrupted in run 2 of 9, after [\d.]+ .?s\n"),
    (1, FIRST, -signal.SIGINT, r"interrupted in run 1 of 1, after [\d.]+ .?s\n"),
    (9, CATCHES, -signal.SIGINT, r"[\d.]+ .?s\n"),
    (1, CATCHES, 5, r"[\d.]+ .?s\n"),
]


class Measure(unittest.TestCase):
    def setUp(self):
        before = os.getcwd()
        os.chdir(self.enterContext(tempfile.TemporaryDirectory()))
        self.addCleanup(os.chdir, before)

    def test_status(self):
        pathlib.Path("not executable").touch()
        pathlib.Path("no program").touch(0o755)
        pathlib.Path("no program").write_text("text")
        for arguments, status in STATUS.items():
            self.assertEqual(run("measure", *arguments)[0], status, arguments)
        self.assertEqual(run("measure", "no\x1b[m")[2],
                         "zemtime: no\\x1b[m: No such file or directory\n")

    def test_times(self):
        self.assertRegex(run("measure", "true")[2], r"^[\d.]+ .?s\n$")
        runs = r"^3 runs: minimum [\d.]+ .?s, median [\d.]+ .?s, maximum [\d.]+ .?s\n$"
        for options in ["-n3"], ["--runs", "3"], ["--runs=3", "--"]:
            self.assertRegex(run("measure", *options, "true")[2], runs, options)

    def test_the_command_runs_as_written(self):
        for program in [PROGRAM], ["env", "POSIXLY_CORRECT=1", PROGRAM]:
            for options in [], ["--"], ["-n", "1"], ["-n", "1", "--"]:
                out = run("measure", *options, "printf", "%s|", *ODD, program=program)[1]
                self.assertEqual(out, "".join(f"{word}|" for word in ODD), options)

    def test_interrupt(self):
        for runs, script, status, complaints in INTERRUPTED:
            # A terminal sends the signal to the whole group.
            p = subprocess.Popen([PROGRAM, "measure", "-n", str(runs), "--", "sh", "-c", script],
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                 env=ENV, start_new_session=True)
            self.assertEqual(p.stdout.readline(), "ready\n")
            os.killpg(p.pid, signal.SIGINT)
            self.assertRegex(p.communicate(timeout=30)[1], f"^{complaints}$")
            self.assertEqual(p.returncode, status, (runs, script))

    # Parents may ignore signals: the end of a child is told all the same, Ctrl-C stays ignored.
    def test_ignored_signals(self):
        ignoring = lambda name: ["env", f"--ignore-signal={name}", PROGRAM]
        self.assertEqual(run("measure", "sh", "-c", "exit 3", program=ignoring("CHLD"))[0], 3)
        kill = "kill -INT $PPID; kill -INT $$; exit 3"
        self.assertEqual(run("measure", "sh", "-c", kill, program=ignoring("INT"))[0], 3)


main()
