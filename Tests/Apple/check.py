"""Compiles and links the module for iOS and holds the result against the lists in this folder.

Called by script/check-apple, which provides the compilers and the headers. Stops at the first part
that fails, since the later ones build on it. What each part does is in checks/.
"""

import argparse
import os
import sys
import time
from pathlib import Path

from checks import (abi, builds, declarations, exports, hosts, imports, lines, on_device, recorder,
                    refused, size, xcframework)
from checks.compiler import Compiler
from checks.outcome import Failure

NOTHING = frozenset()
PLATFORM = frozenset({"compilers", "platform-headers"})
EVERYTHING = PLATFORM | {"library-headers"}


class Run:
    """Runs the parts one after another and says what came of each."""

    def __init__(self, without):
        self.without = without
        self.has_skipped = False

    def part(self, name, needs, check, *arguments):
        """What the part gives to later ones; nothing when it is skipped, as they are then."""
        missing = sorted(needs & self.without)
        if missing:
            self.has_skipped = True
            print(f"check-apple: {name}: skipped, without {', '.join(missing)}")
            return None
        start = time.monotonic()
        try:
            outcome = check(*arguments)
        except Failure as failure:
            print(f"check-apple: {name}: FAILED\n{failure}")
            sys.exit(1)
        print(f"check-apple: {name}: {outcome.summary} ({time.monotonic() - start:.1f} s)")
        print(*outcome.details, sep="\n", end="\n" if outcome.details else "")
        return outcome.result


def run_parts(run, compiler):
    run.part("documented lines", NOTHING, lines.documented)
    abis = run.part("method types", PLATFORM, abi.method_types, compiler)
    run.part("declarations", EVERYTHING, declarations.declarations, compiler)
    run.part("ABI assertions", EVERYTHING, abi.assertions, compiler, abis)
    asking = run.part("Objective-C++ hosts", EVERYTHING, hosts.objective_cpp_hosts, compiler)
    run.part("Objective-C face", PLATFORM, xcframework.face, compiler)
    run.part("refused expressions", EVERYTHING, refused.refused, compiler)
    run.part("refused architecture", EVERYTHING, refused.architecture, compiler)
    run.part("on-device bundle", EVERYTHING, on_device.bundle, compiler)
    run.part("recorder", EVERYTHING, recorder.recorder, compiler)
    built = run.part("compile and link", EVERYTHING, builds.compile_and_link, compiler)
    run.part("slices", EVERYTHING, builds.slices, compiler, built)
    run.part("exports", EVERYTHING, exports.exports, compiler, built, asking)
    run.part("imports", EVERYTHING, imports.imports, compiler, built)
    run.part("XCFramework", EVERYTHING, xcframework.xcframework, compiler, built)
    run.part("size", EVERYTHING, size.size, compiler, built)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--toolchain", type=Path)
    parser.add_argument("--sdk", type=Path)
    parser.add_argument("--library", type=Path)
    parser.add_argument("--without", action="append", default=[])
    parser.add_argument("--lines", action="store_true")
    arguments = parser.parse_args()
    if arguments.lines:
        lines.write()
        return
    run = Run(set(arguments.without))
    run_parts(run, Compiler(arguments.toolchain, arguments.sdk, arguments.library,
                            Path("build/apple")))
    if run.has_skipped and os.environ.get("CI") == "true":
        print("check-apple: FAILED: in CI nothing may be skipped")
        sys.exit(1)


if __name__ == "__main__":
    main()
