"""Runs clang-tidy over the sources of one CMake target.

Usage: check.py CLANG_TIDY BUILD_FOLDER TARGET

The checks are those of .clang-tidy. Prints the findings and exits with 1 if there are any.
"""

import json
import pathlib
import subprocess
import sys


def main():
    clang_tidy, build, target = sys.argv[1:]
    commands = json.loads((pathlib.Path(build) / 'compile_commands.json').read_text())
    folder = f'/CMakeFiles/{target}.dir/'
    sources = [entry['file'] for entry in commands
               if folder in entry['command'] and 'cmake_pch' not in entry['file']
               and not entry['file'].endswith('.S')]
    if not sources:
        sys.exit(f'{target} compiles no sources')
    failed = False
    for source in sources:
        # The commands are g++'s, whose own warnings are errors in every build: clang's are not asked for.
        run = subprocess.run(
            [clang_tidy, '-p', build, '--quiet', '--extra-arg=-w', source],
            capture_output=True, text=True, check=False)
        if run.returncode != 0:
            failed = True
            print(run.stdout)
            print(run.stderr, file=sys.stderr)
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
