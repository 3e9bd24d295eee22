"""The recorder, and what a debug build of the module tells it, as far as it can be proven without a phone: both
compile."""

from pathlib import Path

from checks.outcome import Outcome
from checks.sources import units
from checks.targets import CHECKED, TARGETS

HOOKS = '#include "ZibMessaging/Private/Recording.h"'


def recorder(compiler):
    sources = sorted(Path("Recorder").glob("*.cpp"))
    sources += [unit for unit in units() if HOOKS in unit.read_text()]
    for target in TARGETS:
        flags = [*compiler.flags(target), *CHECKED, "-DZIB_RECORDS_CALLS", "-I.", "-fsyntax-only"]
        folder = f"recorder/{target.triple}"
        compiler.compile_all(sources, folder, flags + compiler.precompiled(folder, flags))
    return Outcome(f"{len(sources)} sources compile, never executed")
