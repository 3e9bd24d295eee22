"""What is run: the slices as check-apple leaves them, the systems that they are brought to, and the
scenarios that are played."""

from dataclasses import dataclass
from pathlib import Path

from checks.targets import CONFIGURATIONS, DEVICE, TARGETS, Configuration
from library import System

SIMULATOR = TARGETS[2]
BUILD = Path("build/slices")
# But for the reports, which name the files that functions lie in: those are others here.
SCENARIOS = sorted(path for path in [*Path("Tests/Scenarios").rglob("*.json"),
                                     *Path("Examples").glob("*.json")] if "report" not in path.parts)


@dataclass(frozen=True)
class Slice:
    name: str
    configuration: Configuration
    image: Path

    @property
    def target(self):
        return self.configuration.target

    @property
    def folder(self):
        """Of the converted library."""
        return BUILD / "converted" / self.name.replace(",", "").replace(" ", "-")


SLICES = [Slice(configuration.name, configuration,
                Path("build/apple") / configuration.folder / "libZibMessaging.dylib")
          for configuration in CONFIGURATIONS
          if configuration.target in (SIMULATOR, DEVICE)]


def systems(arguments):
    root = arguments.arm64_root
    return {
        SIMULATOR: System("x86_64", "x86_64-linux-gnu", 0x1000, cxx_library=arguments.tools),
        DEVICE: System("arm64", "aarch64-linux-gnu", 0x4000, (f"--sysroot={root}",),
                       (str(arguments.tools / "qemu-aarch64"), "-L", str(root)),
                       root / "usr/lib/llvm-19/lib"),
    }
