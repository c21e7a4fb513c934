"""The manual and the completions know the options that the help shows, and no others; what the manual
shows runs."""
import os, pathlib, re, shutil, subprocess, sys, tempfile, unittest

from support import ENV, PROGRAM, run

TOOLS = pathlib.Path(__file__).resolve().parents[2] / "tools"
COMMANDS = ["spans", "lines", "convert", "now", "measure"]
LOG_FORMS = re.search(r"one of ([^']+), not", run("spans", "--input", "x")[2])[1].split(", ")
FORMS = [line.split()[0] for line in run("convert", "@0", "0s")[1].splitlines() if line]

EXAMPLE_LOGS = {"web.log": ["12:00:00", "12:30:45", "14:00:00"], "worker.log": ["12:29:00", "12:31:00"]}


# The options that a text names, -x and --word.
def names(text):
    return set(re.findall(r"(?<![-\w])--?[a-z][a-z-]*", text))


# The options that the help of a command shows.
def helped(command):
    rows = re.findall(r"^  (?:-\w, |    )--\S+", run(command, "--help")[1], re.M)
    return names("\n".join(rows))


def words(options):
    return {name for name in options if name.startswith("--")}


class Completion(unittest.TestCase):
    def test_manual(self):
        pages = {page.stem: page.read_text() for page in (TOOLS / "manual").iterdir()}
        self.assertEqual(set(pages), {"zemtime", *(f"zemtime-{command}" for command in COMMANDS)})
        for command in COMMANDS:
            text = pages[f"zemtime-{command}"].replace("\\-", "-")
            described = names("\n".join(re.findall(r"^\.T[PQ]\n(.*)", text, re.M)))
            self.assertEqual(described, helped(command), command)
            purpose = re.search(rf"^  {command} +(.*)", run("--help")[1], re.M)[1]
            self.assertIn(f"zemtime-{command} - {purpose}\n", text)
        described = re.findall(r"^\.TP\n\.B (\w+)", pages["zemtime"].split(".SH FORMS")[1].split(".SH")[0], re.M)
        self.assertEqual(described, LOG_FORMS)
        shown = " ".join(run("spans", "--help")[1].split())
        self.assertIn(" ".join(LOG_FORMS), shown)
        for name in FORMS:
            self.assertRegex(pages["zemtime-convert"], rf"\n\.BR? {name}\b")
            self.assertIn(name, run("convert", "--help")[1])

    def test_examples_of_the_manual(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (folder / "zemtime").symlink_to(PROGRAM)
        for name, times in EXAMPLE_LOGS.items():
            (folder / name).write_text("".join(f"2024-03-01 {t}Z text\n\tmore\n" for t in times))
        for page in (TOOLS / "manual").iterdir():
            text = page.read_text().replace("\\-", "-").replace("\\e", "\\")
            examples = re.findall(r"^\.EX\n(.*?)^\.EE", text, re.M | re.S)
            self.assertTrue(examples, page)
            for example in examples:
                script = "set -eu -o pipefail; PATH=.:$PATH\n" + example
                p = subprocess.run(["bash", "-c", script], cwd=folder, capture_output=True, text=True, env=ENV)
                self.assertEqual((p.returncode, bool(p.stdout or p.stderr)), (0, True), (example, p.stderr))

    def test_bash(self):
        script = f"source {TOOLS}/completions/zemtime.bash" """
            COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)); _zemtime; printf '%s\\n' "${COMPREPLY[@]}" """

        def complete(*line):
            p = subprocess.run(["bash", "-c", script, "-", *line], capture_output=True, text=True)
            self.assertEqual(p.stderr, "")
            return set(p.stdout.split())

        self.assertEqual(complete("zemtime", ""), {*COMMANDS, "--help", "--version"})
        for command in COMMANDS:
            dashes = {"--"} if command == "measure" else set()
            self.assertEqual(complete("zemtime", command, "-"), words(helped(command)) | dashes)
        self.assertEqual(complete("zemtime", "spans", "--input", ""), set(LOG_FORMS))
        for line in ["--to", ""], ["--to", "="], ["--to", "=", ""]:
            self.assertEqual(complete("zemtime", "convert", *line), set(FORMS))
        for line in [""], ["--", ""], ["-n", "3", ""], ["--runs", "=", "3", "--", ""], ["-n3", ""]:
            self.assertLess({"bash", "cat", "for"}, complete("zemtime", "measure", *line), line)
        for line in ["-n", ""], ["--runs", "=", ""], ["cat", ""], ["--", "cat", "-"]:
            self.assertEqual(complete("zemtime", "measure", *line), set(), line)

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish(self):
        script = f"source {TOOLS}/completions/zemtime.fish; complete -C $argv[1]"

        def complete(line):
            p = subprocess.run(["fish", "--no-config", "-c", script, line], capture_output=True,
                               text=True, env={**ENV, "HOME": os.devnull})
            self.assertEqual(p.stderr, "")
            return {candidate.split("\t")[0] for candidate in p.stdout.splitlines()}

        self.assertEqual(complete("zemtime "), set(COMMANDS))
        for command in COMMANDS:
            self.assertEqual(complete(f"zemtime {command} --"), words(helped(command)), command)
            self.assertEqual(complete(f"zemtime {command} -"), helped(command), command)
        self.assertEqual(complete("zemtime convert --to "), set(FORMS))
        self.assertEqual(complete("zemtime spans --input "), set(LOG_FORMS))
        for line in "ca", "-- ca", "-n 3 ca", "--runs=3 -- ca":
            self.assertIn("cat", complete(f"zemtime measure {line}"), line)
        self.assertEqual(complete("zemtime measure -- cat /et"), {"/etc/"})
        self.assertEqual(complete("zemtime convert /et"), set())

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_zsh(self):
        subprocess.run(["zsh", "-n", TOOLS / "completions/zemtime.zsh"], check=True)

    def test_zsh_names(self):
        text = (TOOLS / "completions/zemtime.zsh").read_text()
        blocks = dict(re.findall(r"^    (\w+)\)\n(.*?);;", text, re.M | re.S))
        self.assertEqual(list(blocks), COMMANDS)
        common, times = text[: text.index("_arguments")].split("local -a times=")
        for command, block in blocks.items():
            self.assertEqual(words(names(common + block.replace("$times", times))), words(helped(command)), command)
        self.assertIn(f"({' '.join(FORMS)})", blocks["convert"])
        self.assertIn(f"({' '.join(LOG_FORMS)})", times)


result = unittest.main(argv=sys.argv[:1], exit=False).result
sys.exit(1 if not result.wasSuccessful() else 77 if result.skipped else 0)  # 77: a shell is missing
