"""What is shown on a terminal, and nowhere else."""
import os, pty, subprocess, tempfile, time, unittest

from support import ENV, PROGRAM, main

EVENTS = b"2024-03-01T12:00:00Z\n2024-03-01T13:00:00Z\n"


def on_terminal(*args, stream, stdin, env=None, others=subprocess.DEVNULL):
    """What is written to a terminal as standard output (1) or standard error (2)."""
    ours, theirs = pty.openpty()
    outputs = {"stdout": others, "stderr": others, {1: "stdout", 2: "stderr"}[stream]: theirs}
    p = subprocess.Popen([PROGRAM, *args], stdin=subprocess.PIPE, env={**ENV, "TERM": "xterm", **(env or {})}, **outputs)
    os.close(theirs)
    for i, part in enumerate(stdin):
        time.sleep(1.2 if i > 0 else 0)
        p.stdin.write(part)
        p.stdin.flush()
    p.stdin.close()
    text = b""
    try:
        while more := os.read(ours, 65536):
            text += more
    except OSError:  # the other end is closed
        pass
    os.close(ours)
    assert p.wait() == 0
    return text.decode()


class Terminal(unittest.TestCase):
    def test_colours(self):
        shown = on_terminal("spans", stream=1, stdin=[EVENTS])
        self.assertIn("\x1b[1mbegin ", shown)
        self.assertRegex(shown, r"events over time: a column is .*\r\n\x1b\[36m#")
        for env in {"NO_COLOR": "1"}, {"TERM": "dumb"}:
            plain = on_terminal("spans", stream=1, stdin=[EVENTS], env=env)
            self.assertEqual(plain, shown.replace("\x1b[1m", "").replace("\x1b[36m", "").replace("\x1b[0m", ""))
        self.assertEqual(on_terminal("spans", stream=1, stdin=[EVENTS], env={"NO_COLOR": ""}), shown)
        self.assertNotIn("\x1b", on_terminal("spans", "--json", stream=1, stdin=[EVENTS]))

    def test_progress(self):
        """After a second, on standard error, and gone in the end; lines that are printed stand alone."""
        many = EVENTS * 40000
        for command in "spans", "lines":
            shown = on_terminal(command, stream=2, stdin=[many, many])
            self.assertRegex(shown, r"^(\r\x1b\[K-: \d MiB|\r\x1b\[K)*-: \d MiB\r\x1b\[K$", command)
        self.assertEqual(on_terminal("spans", stream=2, stdin=[EVENTS]), "")
        for env in {"TERM": "dumb"}, {"TERM": ""}:
            self.assertEqual(on_terminal("lines", stream=2, stdin=[many, many], env=env), "")
        with tempfile.TemporaryFile() as output:
            p = subprocess.run([PROGRAM, "spans"], input=many, stdout=output, stderr=subprocess.STDOUT, env=ENV, check=True)
            output.seek(0)
            self.assertNotIn(b"\x1b", output.read())


main()
