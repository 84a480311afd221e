"""Configures Navora.app as on a Mac and checks the generated build files. Nothing is built.

CMAKE_SYSTEM_NAME makes CMake configure for macOS with this machine's compiler, which it does not try
to run. A folder with one empty header stands for the Sparkle framework.

usage: bundle_configuration.py CASE CMAKE SOURCES FOLDER COMPILER
"""

import pathlib
import platform
import plistlib
import shutil
import subprocess
import sys

FEED = "https://updates.navora.example/appcast.xml?channel=release&kind=<app>"
KEY = "UYw0hjVTcc8wqRKq2T3pE+iL+dbpm6vHw44gTdDSv2U="

failures = []


def expect(condition, message):
    if not condition:
        failures.append(message)


def configure(cmake, sources, build, compiler, settings):
    languages = ["C", "CXX", "OBJCXX"]
    definitions = {
        "CMAKE_SYSTEM_NAME": "Darwin",
        "CMAKE_SYSTEM_VERSION": "22",
        **{f"CMAKE_{language}_COMPILER": compiler for language in languages},
        **{f"CMAKE_{language}_COMPILER_WORKS": "1" for language in languages},
        "CMAKE_HAVE_LIBC_PTHREAD": "1",
        "CMAKE_INSTALL_NAME_TOOL": shutil.which("true"),
        "CMAKE_OSX_SYSROOT": build.parent,
        # Finds the core's libraries on this machine.
        "CMAKE_PREFIX_PATH": "/usr",
        "CMAKE_LIBRARY_ARCHITECTURE": f"{platform.machine()}-linux-gnu",
        "NAVORA_BUILD_TESTS": "OFF",
        "NAVORA_BUILD_SERVICE": "OFF",
        **settings,
    }
    command = [cmake, "-S", sources, "-B", build, "-G", "Ninja"]
    command += [f"-D{name}={value}" for name, value in definitions.items()]
    return subprocess.run(command, capture_output=True, text=True, check=False)


def check_refusal(result, setting):
    output = " ".join(result.stderr.split())
    expect(result.returncode != 0, "the configuration was accepted")
    expect(f"needs {setting}" in output or f": {setting} is" in output, f"the message does not name {setting}")
    expect(f"-D{setting}=" in output, f"the message does not say how to set {setting}")


def check_bundle(result, build, sparkle, feed, key):
    expect(result.returncode == 0, "the configuration was refused: " + result.stderr)
    if failures:
        return
    contents = build / "src/hosts/macos/Navora.app/Contents"
    with open(contents / "Info.plist", "rb") as file:
        properties = plistlib.load(file)
    identifier = properties["CFBundleIdentifier"]
    expect(identifier == "example.navora.Navora", "wrong identifier: " + identifier)
    expect(properties["SUFeedURL"] == feed, "wrong feed: " + properties["SUFeedURL"])
    expect(properties["SUPublicEDKey"] == key, "wrong key: " + properties["SUPublicEDKey"])

    # The Russian interface has the Russian name in the application menu and the Dock.
    names = "Resources/ru.lproj/InfoPlist.strings"
    subprocess.run(["ninja", "-C", build, f"src/hosts/macos/Navora.app/Contents/{names}"],
                   capture_output=True, check=False)
    text = (contents / names).read_text(encoding="utf-8") if (contents / names).exists() else ""
    for key in ("CFBundleName", "CFBundleDisplayName"):
        expect(f'"{key}" = "Навора";' in text, f"no Russian {key}")

    commands = subprocess.run(["ninja", "-C", build, "-t", "commands", "navora_macos"],
                              capture_output=True, text=True, check=True).stdout.splitlines()
    compiling = [line for line in commands if "MacUpdater.mm" in line][0]
    linking = commands[-1]
    expect(f'-iframework "{sparkle.parent}"' in compiling, "no include path for the headers: " + compiling)
    copy = contents / "Frameworks/Sparkle.framework"
    for part in (f'-F "{sparkle.parent}"', "-framework Sparkle",
                 "-Xlinker -rpath -Xlinker @executable_path/../Frameworks",
                 f"-E rm -rf {copy}", f'ditto "{sparkle}" {copy}'):
        expect(part in linking, f"no {part} in {linking}")


def main():
    case, cmake, sources, folder, compiler = sys.argv[1:]
    folder = pathlib.Path(folder)
    shutil.rmtree(folder, ignore_errors=True)
    build = folder / "build"
    # The space checks the quoting; paths on a Mac often contain one.
    sparkle = folder / "Sparkle 2/Sparkle.framework"
    (sparkle / "Headers").mkdir(parents=True)
    (sparkle / "Headers/SPUUpdater.h").touch()

    settings = {"CMAKE_BUILD_TYPE": "Release", "NAVORA_FEED_URL": FEED,
                "NAVORA_UPDATE_PUBLIC_KEY": KEY, "NAVORA_SPARKLE_FRAMEWORK": sparkle}
    refused = {"without_feed": "NAVORA_FEED_URL", "without_key": "NAVORA_UPDATE_PUBLIC_KEY",
               "without_sparkle": "NAVORA_SPARKLE_FRAMEWORK"}.get(case)
    if refused:
        del settings[refused]
        check_refusal(configure(cmake, sources, build, compiler, settings), refused)
    elif case == "development":
        settings = {"CMAKE_BUILD_TYPE": "Debug", "NAVORA_SPARKLE_FRAMEWORK": sparkle}
        check_bundle(configure(cmake, sources, build, compiler, settings), build, sparkle, "", "")
    else:
        check_bundle(configure(cmake, sources, build, compiler, settings), build, sparkle, FEED, KEY)

    print("\n".join(failures) or "as expected")
    sys.exit(1 if failures else 0)


main()
