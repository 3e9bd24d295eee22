"""What the module is compiled for, and how."""

from dataclasses import dataclass

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror",
            "-Wunguarded-availability"]


@dataclass(frozen=True)
class Target:
    triple: str
    platform: str
    minimum: str


DEVICE = Target("arm64-apple-ios13.0", "ios", "13.0")
TARGETS = [
    DEVICE,
    # There are no arm64 simulators before iOS 14, and compilers say so in what they make.
    Target("arm64-apple-ios13.0-simulator", "iossimulator", "14.0"),
    Target("x86_64-apple-ios13.0-simulator", "iossimulator", "13.0"),
]
# No target of the module: pointers are signed there, and blocks that C++ makes are not.
SIGNED_POINTERS = Target("arm64e-apple-ios14.0", "ios", "14.0")
# Nor this one, but the only one where BOOL is no bool.
SIGNED_BOOL_TRIPLE = "x86_64-apple-macos10.15"


@dataclass(frozen=True)
class Configuration:
    """What is built and measured: a target and how it is optimised."""

    name: str
    target: Target
    flags: tuple

    @property
    def folder(self):
        """Of what is made, below the build folder."""
        return str(CONFIGURATIONS.index(self))

    @property
    def is_machine_code(self):
        return "-flto" not in self.flags


CHECKED = ("-Os", "-DZIB_CHECKS_SENDS")
# Nothing of the module asks an object for its type.
RELEASE = ("-Oz", "-flto", "-fno-rtti")
SMALLEST = Configuration("device, -Oz, LTO, release", DEVICE, RELEASE)
CONFIGURATIONS = [
    Configuration("device, -Os", DEVICE, CHECKED),
    Configuration("arm64 simulator, -Os", TARGETS[1], CHECKED),
    Configuration("x86_64 simulator, -Os", TARGETS[2], CHECKED),
    SMALLEST,
    Configuration("x86_64 simulator, -Oz, LTO, release", TARGETS[2], RELEASE),
]
