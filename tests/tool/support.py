"""What the tests of the zemtime command share. Each runs as NAME_test.py PROGRAM VERSION."""
import os
import subprocess
import sys
import unittest

PROGRAM = os.path.abspath(sys.argv[1])
VERSION = sys.argv[2]
ENV = dict(os.environ, TZ="CET-1CEST,M3.5.0,M10.5.0/3", LC_ALL="C", COLUMNS="70")


def run(*args, stdin=b"", program=(PROGRAM,), env=None, **options):
    """The exit status, the output and the complaints of one run, in ENV changed by `env`."""
    stdin = stdin if isinstance(stdin, bytes) else stdin.encode()
    p = subprocess.run([*program, *args], input=stdin, capture_output=True, check=False,
                       env={**ENV, **(env or {})}, **options)
    return p.returncode, p.stdout.decode(), p.stderr.decode()


def main():
    unittest.main(argv=sys.argv[:1])
