"""Finds methods that no protocol and no interface declares.

A framework calls an optional delegate method only if its name is right, and the compiler cannot
tell a mistyped name from a new method. So every method of our classes must be declared somewhere:
by a protocol that the class adopts, by a superclass or by its own interface.

usage: undeclared_methods.py SOURCE DECLARATIONS COMPILER ARGUMENT...

DECLARATIONS is the folder that holds the frameworks, each as X/X.h.
"""

import pathlib
import re
import subprocess
import sys

# Lines of clang's AST dump: a class, protocol or category, what it builds on, and its methods.
TYPE = re.compile(r"^[|`]?-?ObjC(Interface|Protocol|Category|Implementation)Decl .* (\w+)$")
PARENT = re.compile(r"^[| ]*[|`]-(?:super )?ObjC(?:Interface|Protocol) 0x\w+ '(\w+)'")
METHOD = re.compile(r"^[| ]*[|`]-ObjCMethodDecl .*?(implicit )?([-+] [\w:]+) '")


class Type:
    def __init__(self):
        self.declared = set()
        self.implemented = set()
        self.parents = set()


def dump(compiler, source, text=None, name=None):
    selection = ["-Xclang", "-ast-dump-filter=" + name] if name else []
    command = [*compiler, "-fsyntax-only", "-Xclang", "-ast-dump", *selection, source]
    result = subprocess.run(command, input=text, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        sys.exit(result.stderr)
    return result.stdout.splitlines()


def read_types(lines, types):
    current = Type()
    implementing = False
    for line in lines:
        if match := TYPE.match(line):
            implementing = match.group(1) == "Implementation"
            current = types.setdefault(match.group(2), Type())
        elif match := METHOD.match(line):
            if not implementing:
                current.declared.add(match.group(2))
            elif not match.group(1):
                current.implemented.add(match.group(2))
        elif (match := PARENT.match(line)) and not implementing:
            current.parents.add(match.group(1))


def all_declared(name, types, seen):
    if name in seen or name not in types:
        return set()
    seen.add(name)
    inherited = [all_declared(parent, types, seen) for parent in types[name].parents]
    return types[name].declared.union(*inherited)


def main():
    source, declarations, *compiler = sys.argv[1:]
    frameworks = [f"{folder.name}/{folder.name}.h" for folder in pathlib.Path(declarations).iterdir()]
    imports = [f"#import <{header}>\n" for header in sorted(frameworks)]
    types = {}
    read_types(dump(compiler, "-", "".join(imports)), types)

    text = pathlib.Path(source).read_text(encoding="utf-8")
    classes = re.findall(r"^@implementation (\w+)", text, re.MULTILINE)
    checked = 0
    undeclared = []
    for name in classes:
        read_types(dump(compiler, source, name=name), types)
        methods = types[name].implemented
        checked += len(methods)
        undeclared += [(name, m) for m in sorted(methods - all_declared(name, types, set()))]

    for name, method in undeclared:
        print(f"{name}: {method} is declared nowhere")
    print(f"{checked} methods of {len(classes)} classes checked")
    sys.exit(1 if undeclared or not checked else 0)


main()
