"""Holds the Swift face of the module against what hosts in Swift rely on.

Called by script/check-swift, which provides the compiler in a root of its own. Needs the libraries
of the debug build for the part that runs.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import time
from pathlib import Path

HERE = Path("Tests/Swift")
GOLDEN = HERE / "ZibMessaging.swiftinterface"
EXPECTED = HERE / "SwiftCApp.txt"
# Where the root sees the tree and the folder that this check builds in.
TREE = Path("/tree")
WORK = Path("/work")
BUILD = Path("build/swift")
COMPILER = "/usr/libexec/swift/bin"
APPS = {
    "SwiftApp": ["Examples/SwiftApp/AppDelegate.swift", "Examples/SwiftApp/Core.swift"],
    "SwiftUIApp": ["Examples/SwiftUIApp/ShopApp.swift", "Examples/SwiftApp/Core.swift"],
}
# Objective-C on Linux, for whose sake nothing is ever linked or run.
FLAGS = ["-enable-objc-interop", "-target", "x86_64-pc-linux-gnu", "-swift-version", "6",
         "-Xcc", "-fblocks", "-module-cache-path", f"{WORK}/modules", "-I", f"{WORK}/overlay",
         "-I", f"{TREE}/{HERE}/Platform", "-I", f"{TREE}/Sources/ZibObjectiveC",
         "-I", f"{TREE}/Sources/ZibC"]


class Failure(Exception):
    """What is wrong, for the one who changed the tree."""


class Root:
    """The extracted system in which the compiler is at home."""

    def __init__(self, path):
        self.path = path

    def run(self, *command, **environment):
        """Gives the exit status and the two outputs."""
        # Runs in name spaces of its own, so that nothing of this stays behind.
        script = ('set -e; r=$1; shift; mount --make-rprivate /\n'
                  'mount --rbind /proc "$r/proc"; mount --rbind /dev "$r/dev"\n'
                  f'mount --bind . "$r{TREE}"; mount --bind {BUILD} "$r{WORK}"\n'
                  'exec chroot "$r" "$@"\n')
        unshare = ["unshare", "--mount"] + ["--map-root-user"] * (os.getuid() != 0)
        settings = {"PATH": f"{COMPILER}:/usr/sbin:/usr/bin:/sbin:/bin", "HOME": str(WORK),
                    "LC_ALL": "C.UTF-8", **environment}
        result = subprocess.run(
            [*unshare, "sh", "-c", script, "sh", self.path, *map(str, command)], text=True,
            env=settings, capture_output=True)
        return result.returncode, result.stdout, result.stderr

    def require(self, *command, **environment):
        status, output, errors = self.run(*command, **environment)
        if status != 0:
            raise Failure(f"{Path(command[0]).name} ended with {status}\n{output}{errors}".strip())
        return output

    def compile(self, *arguments):
        return self.require(f"{COMPILER}/swift-frontend", *arguments)


def overlays(root):
    """The Swift sides of the platform's frameworks, as far as the compiler asks for them."""
    for name in ["ObjectiveC", "Foundation", "SwiftUI"]:
        root.compile("-emit-module", *FLAGS, "-parse-as-library", "-module-name", name, "-o",
                     f"{WORK}/overlay/{name}.swiftmodule", f"{TREE}/{HERE}/Overlay/{name}.swift")


def names(root):
    files = ["Accepted.swift", "WithoutUIKit.swift"]
    for file in files:
        root.compile("-typecheck", *FLAGS, "-warnings-as-errors", f"{TREE}/{HERE}/{file}")
    return f"{len(files)} files in Swift 6 mode, without a warning"


def form(root):
    files = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard",
                            "*.swift"], text=True, capture_output=True, check=True).stdout.split()
    status, _, problems = root.run(f"{COMPILER}/swift-format", "lint", "--strict",
                                   *[TREE / file for file in files])
    if status != 0:
        raise Failure(problems.replace(f"{TREE}/", ""))
    return f"{len(files)} files as swift-format wants them"


def refusals(root):
    source = HERE / "Refused.swift"
    lines = source.read_text().splitlines()
    marker = re.compile(r" *// refused: (.*)")
    wanted = {number + 1: match.group(1) for number, line in enumerate(lines, 1)
              if (match := marker.match(line))}
    _, _, errors = root.run(f"{COMPILER}/swift-frontend", "-typecheck", *FLAGS,
                            "-parse-as-library", TREE / source)
    said = {}
    for line, message in re.findall(r"Refused\.swift:(\d+):\d+: error: (.*)", errors):
        said.setdefault(int(line), []).append(message)
    wrong = [f"{source}:{line}: not refused with: {text}" for line, text in wanted.items()
             if not any(text in message for message in said.get(line, []))]
    wrong += [f"{source}:{line}: refused without need: {messages}"
              for line, messages in said.items() if line not in wanted]
    if wrong or not wanted:
        raise Failure("\n".join(wrong))
    return f"{len(wanted)} mistakes refused"


def interface(root, is_to_be_written):
    program = BUILD / "interface"
    subprocess.run(["cc", "-std=gnu11", "-Wall", "-Wextra", "-Werror", "-o", program,
                    HERE / "interface.c", "-ldl"], check=True)
    seen = root.require(WORK / "interface", "/usr/libexec/swift/lib/libsourcekitdInProc.so",
                        "ZibMessaging", "-Xfrontend", *FLAGS)
    seen = seen.strip() + "\n"
    if is_to_be_written:
        GOLDEN.write_text(seen)
    if seen != GOLDEN.read_text():
        (BUILD / GOLDEN.name).write_text(seen)
        difference = subprocess.run(["diff", "-u", GOLDEN, BUILD / GOLDEN.name], text=True,
                                    capture_output=True).stdout
        raise Failure(f"Swift sees another interface; script/check-swift --write takes it as "
                      f"the right one\n{difference}")
    return f"{len(seen.splitlines())} lines, as in {GOLDEN}"


def apps(root):
    snippets = sorted(str(path) for path in Path("Examples/Snippets").glob("*.swift"))
    for name, files in {**APPS, **{Path(file).stem: [file] for file in snippets}}.items():
        root.compile("-typecheck", *FLAGS, "-warnings-as-errors", "-parse-as-library",
                     "-module-name", f"{name}Module", *[TREE / file for file in files])
    return f"{', '.join(APPS)} and {len(snippets)} snippets; compiled, not run"


def package(root):
    output = root.require("/usr/bin/swift-build", "--package-path", TREE, "--scratch-path",
                          WORK / "package", "--disable-sandbox")
    if "warning:" in output:
        raise Failure(output)
    return "three modules, by Swift's package manager"


def shared_libraries(program):
    """What the program needs of this system and the root lacks is put beside what it builds."""
    folder = BUILD / "libraries"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    listed = subprocess.run(["ldd", program], text=True, capture_output=True, check=True).stdout
    return folder, [Path(path) for path in re.findall(r"=> (/\S+)", listed)]


def device(root, libraries, is_to_be_written):
    program = libraries / "Examples/CppApp"
    if not program.exists():
        raise Failure(f"{program} is missing: build the preset debug first")
    folder, needed = shared_libraries(program)
    lacking = [path for path in needed
               if not (Path(root.path) / "usr/lib/x86_64-linux-gnu" / path.name).exists()]
    for path in lacking:
        shutil.copy(path, folder)
    archives = [libraries / "Examples/libExampleDevice.a", *sorted(libraries.glob(
        "Simulator/**/*.a")), *sorted(libraries.glob("Sources/*.a"))]
    inputs = ["--start-group", *[TREE / path for path in archives], "--end-group",
              *[WORK / "libraries" / path.name if path in lacking else
                f"/usr/lib/x86_64-linux-gnu/{path.name}" for path in needed],
              "/usr/lib/x86_64-linux-gnu/libcurl.so.4", "--allow-shlib-undefined"]
    root.require("/usr/bin/swiftc", "-swift-version", "6", "-warnings-as-errors", "-module-name",
                 "SwiftCApp", "-o", WORK / "SwiftCApp", "-I", TREE / "Sources/ZibC",
                 "-I", TREE / "Examples/Device", TREE / "Examples/SwiftCApp/main.swift",
                 *[part for file in inputs for part in ["-Xlinker", file]])
    output = root.require(WORK / "SwiftCApp", LD_LIBRARY_PATH=str(WORK / "libraries"))
    if is_to_be_written:
        EXPECTED.write_text(output)
    if output != EXPECTED.read_text():
        raise Failure(f"SwiftCApp does not print what {EXPECTED} says:\n{output}")
    return f"SwiftCApp ran on the simulated device, {len(output.splitlines())} lines as expected"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root")
    parser.add_argument("--libraries", type=Path, default=Path("build/debug"))
    parser.add_argument("--write", action="store_true", help="take what is seen as right")
    arguments = parser.parse_args()
    (BUILD / "overlay").mkdir(parents=True, exist_ok=True)
    root = Root(arguments.root)
    status, _, errors = root.run(f"{COMPILER}/swift-frontend", "--version")
    if status != 0:
        print(f"check-swift: skipped: the compiler does not run on this machine: {errors.strip()}")
        sys.exit(77)
    parts = [
        ("form", lambda: form(root)),
        ("names", lambda: overlays(root) or names(root)),
        ("refusals", lambda: refusals(root)),
        ("interface", lambda: interface(root, arguments.write)),
        ("apps", lambda: apps(root)),
        ("package", lambda: package(root)),
        ("device", lambda: device(root, arguments.libraries, arguments.write)),
    ]
    for name, part in parts:
        start = time.monotonic()
        try:
            outcome = part()
        except Failure as failure:
            print(f"check-swift: {name}: FAILED\n{failure}")
            return 1
        print(f"check-swift: {name}: {outcome} ({time.monotonic() - start:.1f} s)", flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
