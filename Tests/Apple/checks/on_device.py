"""The test bundle for a simulator or a phone, as far as it can be proven without one: it compiles."""

from pathlib import Path

from checks.outcome import Outcome
from checks.sources import HERE
from checks.targets import TARGETS

FOLDER = HERE / "OnDevice"


def bundle(compiler):
    sources = [*sorted(FOLDER.glob("*.m")), *sorted(Path("Sources/ZibObjectiveC").glob("*.m"))]
    for target in TARGETS:
        compiler.compile_all(sources, f"on-device/{target.triple}", [
            f"--target={target.triple}", "-isysroot", compiler.sdk, "-x", "objective-c",
            "-fobjc-arc", "-Wall", "-Wextra", "-Werror", "-Wno-unused-parameter", "-fsyntax-only",
            f"-I{FOLDER}/Declarations", "-ISources", "-ISources/ZibObjectiveC", "-ISources/ZibC",
            "-idirafter", "Examples/Device"])
    return Outcome(f"{len(sources)} sources compile, never executed")
