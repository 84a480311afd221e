#!/usr/bin/env python3
"""Checks that every header of the application compiles by itself: check.py BUILD [FOLDER...]

Batches of a unity build and precompiled headers hide a missing #include. Each header is compiled with
the options of a source in its own folder, without the precompiled headers. FOLDER (by default
"src") limits the check to headers below it.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys



def options_of(entry):
    """Returns the options of a compilation without its input, output and precompiled headers."""
    words = shlex.split(entry["command"]) if "command" in entry else list(entry["arguments"])
    compiler = next(i for i, word in enumerate(words) if re.search(r"(c|g|clang)\+\+[-.\d]*$", word))
    options = []
    rest = iter(words[compiler + 1:])
    for word in rest:
        if word in ("-o", "-MT", "-MF", "-include", "-c"):
            next(rest)
        elif word not in ("-MD", "-Winvalid-pch"):
            options.append(word)
    return words[compiler], options


def folders_of(entry):
    """Returns the source folders that a compilation belongs to; a batch names its sources."""
    file = pathlib.Path(entry["file"])
    if not file.is_absolute():
        file = pathlib.Path(entry["directory"]) / file
    if "Unity" not in file.parts:
        return {file.resolve().parent}
    sources = re.findall(r'#include "([^"]+)"', file.read_text())
    return {(file.parent / source).resolve().parent for source in sources}


def check(header, compiler, options, directory):
    command = [compiler, *options, "-fsyntax-only", "-x", "c++", "-include", str(header), "/dev/null"]
    return subprocess.run(command, cwd=directory, capture_output=True, text=True)


def main():
    build = pathlib.Path(sys.argv[1])
    root = pathlib.Path(__file__).resolve().parents[2]
    wanted = [root / folder for folder in sys.argv[2:] or ["src"]]
    compilations = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        for folder in folders_of(entry):
            compilations.setdefault(folder, entry)
    headers = sorted(header for folder in wanted for header in folder.rglob("*.h")
                     if "macos" not in header.parts)
    jobs = []
    failures = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for header in headers:
            entry = next((compilations[folder] for folder in header.parents if folder in compilations), None)
            if entry is None:
                print(f"{header}: no source of its folder is compiled")
                failures += 1
                continue
            jobs.append((header, pool.submit(check, header, *options_of(entry), entry["directory"])))
        for header, job in jobs:
            result = job.result()
            if result.returncode:
                failures += 1
                print(f"{header.relative_to(root)} does not compile by itself:\n{result.stderr}")
    print(f"{len(headers)} headers, {failures} failures")
    return 1 if failures or not headers else 0


if __name__ == "__main__":
    sys.exit(main())
