"""Finds methods that no protocol and no interface declares.

A framework calls an optional delegate method only if its name is right, and the compiler cannot tell a
mistyped name from a new method. Every method of our classes must therefore be declared by a protocol
that the class adopts, by a superclass or by the class's own interface.

usage: undeclared_methods.py SOURCE DECLARATIONS COMPILER ARGUMENT...

SOURCE is a source file or one that includes source files. DECLARATIONS is the folder that holds the
frameworks, each as X/X.h.
"""

import os
import pathlib
import re
import subprocess
import sys

# Lines of clang's AST dump: a class, protocol or category, its superclass and protocols, its methods.
TYPE = re.compile(r"^[|`]?-?ObjC(Interface|Protocol|Category|Implementation)Decl .* (\w+)$")
PARENT = re.compile(r"^[| ]*[|`]-(?:super )?ObjC(?:Interface|Protocol) 0x\w+ '(\w+)'")
METHOD = re.compile(r"^[| ]*[|`]-ObjCMethodDecl .*?(implicit )?([-+] [\w:]+) '")

# Most of our classes have this prefix, so that one dump shows them all.
PREFIX = "Navora"


class Type:
    def __init__(self):
        self.declared = set()
        self.implemented = set()
        self.parents = set()


def dump(compiler, source, text=None, name=None):
    """Returns the lines of the AST of `source`, or only of declarations whose name contains `name`."""
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


def implemented_classes(source):
    text = source.read_text(encoding="utf-8")
    classes = re.findall(r"^@implementation (\w+)", text, re.MULTILINE)
    for included in re.findall(r'^#include "(.+\.mm)"$', text, re.MULTILINE):
        classes += implemented_classes(source.parent / included)
    return classes


def main():
    source, declarations, *compiler = sys.argv[1:]
    classes = implemented_classes(pathlib.Path(source))
    frameworks = [f"{folder.name}/{folder.name}.h" for folder in pathlib.Path(declarations).iterdir()]
    imports = [f"#import <{header}>\n" for header in sorted(frameworks)]
    types = {}
    read_types(dump(compiler, "-", "".join(imports)), types)

    unprefixed = [name for name in classes if not name.startswith(PREFIX)]
    if len(unprefixed) < len(classes):
        read_types(dump(compiler, source, name=PREFIX), types)
    if unprefixed:
        read_types(dump(compiler, source, name=os.path.commonprefix(unprefixed)), types)

    checked = 0
    undeclared = []
    for name in classes:
        methods = types[name].implemented
        checked += len(methods)
        undeclared += [(name, m) for m in sorted(methods - all_declared(name, types, set()))]

    for name, method in undeclared:
        print(f"{name}: {method} is declared nowhere")
    print(f"{checked} methods of {len(classes)} classes checked")
    sys.exit(1 if undeclared or not checked else 0)


main()
