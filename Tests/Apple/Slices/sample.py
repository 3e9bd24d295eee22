"""Builds the sample library for Apple, converts it, and calls it from a test on Linux."""

import os
import re
import subprocess
from pathlib import Path

from library import LinkFailure

SOURCES = Path(__file__).parent / "Sample"
PAGE_OF_DEVICES = "16384"


class Sample:
    def __init__(self, arguments, maker, target, system, build):
        self.arguments = arguments
        self.maker = maker
        self.target = target
        self.system = system
        self.folder = build / system.architecture

    def image(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        image = self.folder / "libSample.dylib"
        library = self.arguments.library
        self.maker.run(
            "clang++", f"--target={self.target.triple}", "-isysroot", self.arguments.sdk,
            "-nostdinc++", "-isystem", library / "cfg", "-isystem", library / "v1", "-std=c++20",
            "-Os", "-Wall", "-Wextra", "-Werror", "-fuse-ld=lld", "-dynamiclib", "-nostdlib",
            "-Wl,-undefined,dynamic_lookup", "-Wl,-dead_strip", "-Wl,-exported_symbol,_sample_*",
            "-install_name", "@rpath/libSample.dylib", SOURCES / "Image.cpp", "-o", image)
        return image

    def host(self, library):
        host = self.folder / "SampleTest"
        self.maker.run(
            "clang++", f"--target={self.system.triple}", *self.system.flags, "-fuse-ld=lld",
            "-std=c++20", "-O1", "-g", "-Wall", "-Wextra", "-Werror", SOURCES / "SampleTest.cpp",
            "-o", host, library, "-Wl,-rpath,$ORIGIN", "-Wl,--no-as-needed", "-lBlocksRuntime",
            "-lobjc", "-lgtest", "-lgtest_main")
        return host

    def run(self, host, *emulator_options):
        """(exit status, what it said)."""
        command = [*self.system.emulator[:1], *emulator_options, *self.system.emulator[1:], host]
        result = subprocess.run([str(part) for part in command], text=True, timeout=120,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=os.environ)
        return result.returncode, result.stdout

    def check(self):
        host = self.host(self.maker.make(self.image(), self.system, self.folder))
        variants = [(), ("-p", PAGE_OF_DEVICES)] if self.system.emulator else [()]
        for options in variants:
            status, output = self.run(host, *options)
            if status != 0:
                raise LinkFailure(f"{host} {' '.join(options)}\n{output}")
        return re.search(r"(\d+ tests) from", output)[1]
