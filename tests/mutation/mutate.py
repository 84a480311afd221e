#!/usr/bin/env python3
"""Breaks one token of the core at a time and checks that a unit test fails.

    tests/mutation/mutate.py [--sample COUNT] [--seed N] [--jobs N] [FILE...]

FILE is a source below src/ (by default every source of the core). A change is killed if a unit test
of its module or of `app` fails, crashes or takes longer than a minute, and survives otherwise; one
that does not compile does not count. Survivors that change nothing are listed in equivalent.txt with
the reason. Exits with 1 if fewer than 95 % of the others were killed. Builds with the preset dev,
whose archive of the core has an object per source; a mutated object takes the place of its original.
"""
import argparse
import concurrent.futures
import json
import os
import pathlib
import random
import re
import shlex
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parents[2]
build = root / "build" / "dev"
modules = ["support", "platform", "origin", "locale", "navigation", "capture", "notifications", "updates", "app"]
time_limit = 60
required_share = 0.95

swaps = {" == ": [" != "], " != ": [" == "], " < ": [" <= "], " <= ": [" < "], " > ": [" >= "], " >= ": [" > "],
         " && ": [" || "], " || ": [" && "], " + ": [" - "], " - ": [" + "], " * ": [" / "], " / ": [" * "],
         "++": ["--"], "--": ["++"], " += ": [" -= "], " -= ": [" += "], "true": ["false"], "false": ["true"]}
# clang-format writes binary operators with spaces, and template brackets, pointers and references without.
operator = re.compile("|".join(re.escape(token) for token in sorted(swaps, key=len, reverse=True)
                               if not token.isalpha()) + r"|\btrue\b|\bfalse\b")
number = re.compile(r"(?<![\w.'])(\d[\d']*)(?![\w.'])")
negation = re.compile(r"!(?=[\w(*])")
condition = re.compile(r"\b(?:if|while) \((?=.*\S)")
call = re.compile(r"^\s+(?!return\b|co_return\b|co_await\b|const\b|auto\b)[\w:.>*\-\[\]()]*[\w\]]\(.*\);$")


def is_code(line, in_comment):
    return not (in_comment or line.lstrip().startswith(("//", "#", "*", "/*")))


def without_texts(line):
    """Blanks out strings, characters and comments; positions stay."""
    line = re.sub(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)\'', lambda found: "\0" * len(found[0]), line)
    return re.sub(r"//.*", lambda found: "\0" * len(found[0]), line)


def closing(line, opening):
    depth = 0
    for index in range(opening, len(line)):
        depth += {"(": 1, ")": -1}.get(line[index], 0)
        if depth == 0:
            return index
    return None


def changes_of(line):
    """Yields the changed lines, each with one token broken."""
    code = without_texts(line)
    for found in operator.finditer(code):
        for other in swaps[found[0]]:
            yield line[:found.start()] + other + line[found.end():]
    for found in number.finditer(code):
        value = int(found[0].replace("'", ""))
        yield line[:found.start()] + str(value + 1) + line[found.end():]
    for found in negation.finditer(code):
        yield line[:found.start()] + line[found.end():]
    for found in condition.finditer(code):
        begin = found.end() - 1
        end = closing(code, begin)
        if end is not None and ";" not in code[begin:end]:
            yield line[:begin] + "(!" + line[begin:end + 1] + ")" + line[end + 1:]
    if call.match(code) and closing(code, code.index("(")) is not None:
        yield re.match(r"\s*", line)[0] + ";"


def mutations_of(path):
    lines = path.read_text().split("\n")
    in_comment = False
    for index, line in enumerate(lines):
        in_comment = in_comment or "/*" in line
        if is_code(line, in_comment) and "R\"" not in line:
            for changed in changes_of(line):
                if changed != line:
                    yield index, line, changed
        in_comment = in_comment and "*/" not in line


def run(command, **options):
    return subprocess.run(command, cwd=build, capture_output=True, text=True, **options)


class Core:
    def __init__(self):
        tests = [f"navora_{module}_tests" for module in modules]
        subprocess.run(["cmake", "--preset", "dev"], cwd=root, check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", "--preset", "dev", "--target", *tests], cwd=root, check=True,
                       stdout=sys.stderr)
        self.compilations = {pathlib.Path(entry["file"]): shlex.split(entry["command"])
                             for entry in json.loads((build / "compile_commands.json").read_text())}
        self.links = {test: run(["ninja", "-t", "commands", f"tests/unit/{test}"], check=True).stdout.splitlines()[-1]
                      for test in tests}
        # A test that fails anyway would seem to notice every change.
        for test in tests:
            run([f"tests/unit/{test}"], check=True)

    def compile(self, path, source, result):
        words = self.compilations[path]
        return run([*words[:words.index("-o")], "-o", str(result), "-c", str(source)]).returncode == 0

    def link(self, test, mutant, result):
        """Links the test with the object in front of the archive that has the original."""
        output = f"-o tests/unit/{test} "
        command = self.links[test].replace(output, f"-o {result} {mutant} ", 1)
        return run(["sh", "-c", command], check=True)


def is_killed(core, tests, mutant, folder):
    for test in tests:
        program = folder / test
        core.link(test, mutant, program)
        try:
            if run([str(program), "--gtest_fail_fast", "--gtest_brief=1"], timeout=time_limit).returncode:
                return True
        except subprocess.TimeoutExpired:
            return True
        finally:
            program.unlink()
    return False


def attempt(core, path, index, changed):
    """Returns True if the change is killed, False if it survives, None if it does not compile."""
    module = path.relative_to(root / "src").parts[0]
    tests = [f"navora_{module}_tests"] + ([] if module == "app" else ["navora_app_tests"])
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        lines = path.read_text().split("\n")
        lines[index] = changed
        source = folder / path.name
        source.write_text("\n".join(lines))
        mutant = folder / "mutant.o"
        if not core.compile(path, source, mutant):
            return None
        return is_killed(core, tests, mutant, folder)


def read_equivalent():
    """Each line: the source, the line of code, the changed line and the reason, separated by tabs."""
    listed = {}
    file = pathlib.Path(__file__).with_name("equivalent.txt")
    for line in file.read_text().splitlines() if file.exists() else []:
        path, code, changed, reason = line.split("\t")
        listed[path, code, changed] = reason
    return listed


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("files", nargs="*", type=pathlib.Path)
    parser.add_argument("--sample", type=int)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    options = parser.parse_args()
    files = [file.resolve() for file in options.files] or \
        sorted(file for module in modules for file in (root / "src" / module).glob("*.cpp"))
    equivalent = read_equivalent()
    changes = [(path, *change) for path in files for change in mutations_of(path)
               if (str(path.relative_to(root)), change[1].strip(), change[2].strip()) not in equivalent]
    if options.sample:
        changes = random.Random(options.seed).sample(changes, min(options.sample, len(changes)))
    core = Core()
    killed = survived = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        jobs = [(path, index, line, changed, pool.submit(attempt, core, path, index, changed))
                for path, index, line, changed in changes]
        for path, index, line, changed, job in jobs:
            outcome = job.result()
            killed += outcome is True
            survived += outcome is False
            if outcome is False:
                print(f"{path.relative_to(root)}:{index + 1}\t{line.strip()}\t{changed.strip()}", flush=True)
    compiled = killed + survived
    share = killed / compiled if compiled else 0
    print(f"{len(changes)} changes, {compiled} compile, {killed} killed, {survived} survive: {share:.1%}")
    return 0 if share >= required_share else 1


if __name__ == "__main__":
    sys.exit(main())
