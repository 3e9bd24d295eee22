"""The programs that a slice is put into: built like the project's own, without the module, for this
machine and for arm64, and run with the slice in its place."""

import os
import subprocess
from pathlib import Path

from library import LinkFailure

HERE = Path(__file__).parent
EXAMPLES = ["ObjectiveCApp", "ManualObjectiveCApp"]
OF_SLICES = ["SlicePlayer", "SliceTests"]


def quietly(*command):
    result = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if result.returncode != 0:
        raise LinkFailure(f"{' '.join(map(str, command[:3]))}\n{result.stdout[-4000:]}")


def jobs():
    return ["-j", str(os.cpu_count())]


def configure_for(system, arguments, build, *settings):
    settings = ["-DCMAKE_BUILD_TYPE=Debug", "-DZIB_INSTALL=OFF", *settings]
    if system.emulator:
        settings += [f"-DCMAKE_TOOLCHAIN_FILE={(HERE / 'arm64.cmake').absolute()}",
                     f"-DZIB_ARM64_ROOT={arguments.arm64_root}",
                     f"-DZIB_TOOLCHAIN={arguments.toolchain}",
                     f"-DZIB_QEMU={system.emulator[0]}"]
    quietly("cmake", "-G", "Ninja", "-B", build, *settings)


class NativeHosts:
    """The programs with the module as it is built for Linux."""

    # How scenarios are played.
    player = "zibsim"
    playing = ["run", "--format", "jsonl"]

    def __init__(self, build=Path("build/debug")):
        self.build = build

    @property
    def programs(self):
        return [self.player, *EXAMPLES]

    def make(self):
        quietly("cmake", "--preset", "debug")
        quietly("cmake", "--build", "--preset", "debug", *jobs(), "--target", *self.programs)

    def program(self, name):
        folder = "Simulator" if name == "zibsim" else "Examples"
        folder = "Tests/Apple/Slices" if name in OF_SLICES else folder
        return self.build / folder / name

    def play(self, scenarios):
        return self.run(self.player, *self.playing, *scenarios)

    def command(self, name, *arguments):
        return [self.program(name), *arguments]

    def run(self, name, *arguments, environment=None, timeout=1200):
        """(exit status, output, what was said beside it), the latter two as bytes."""
        result = subprocess.run(
            [str(part) for part in self.command(name, *arguments)], capture_output=True,
            timeout=timeout, env=os.environ | self.environment() | (environment or {}))
        return result.returncode, result.stdout, result.stderr

    def environment(self):
        return {}


class EmulatedHosts(NativeHosts):
    """zibsim with the module as it is built for Linux on another system, whose pages may be larger."""

    programs = [NativeHosts.player]

    def __init__(self, system, arguments, build, page=None):
        super().__init__(build)
        self.system = system
        self.arguments = arguments
        self.page = page

    def make(self):
        configure_for(self.system, self.arguments, self.build)
        quietly("cmake", "--build", self.build, *jobs(), "--target", *self.programs)

    def command(self, name, *arguments):
        emulator, *options = self.system.emulator
        pages = ["-p", str(self.page)] if self.page else []
        return [emulator, *pages, *options, self.program(name), *arguments]


class SliceHosts(NativeHosts):
    """The same for one system, and tests. They are linked against one slice and run with any."""

    player, tests = OF_SLICES
    playing = []

    def __init__(self, system, arguments, build):
        super().__init__(build)
        self.system = system
        self.arguments = arguments
        self.library = None

    def make(self, library):
        configure_for(self.system, self.arguments, self.build, f"-DZIB_SLICE={library.absolute()}")
        quietly("cmake", "--build", self.build, *jobs(), "--target", *self.programs)

    @property
    def programs(self):
        return [*OF_SLICES, *EXAMPLES]

    def use(self, library):
        self.library = library
        return self

    def command(self, name, *arguments):
        return [*self.system.emulator, self.program(name), *arguments]

    def environment(self):
        return {"LD_LIBRARY_PATH": str(self.library.parent.absolute())}
