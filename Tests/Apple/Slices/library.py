"""Makes an ELF library of a slice: the converted image, the shims for what Linux has not, and those
parts of the image's C++ library that it imports. Exports what the slice exports, and no more."""

import subprocess
from dataclasses import dataclass, field
from pathlib import Path

from elf import ElfWriter, PREFIX_OF_SHIMS, c_name, linker_script
from mach_o import MachOFile

SHIMS = Path(__file__).parent / "Shims"
SHIM_FLAGS = ["-O2", "-fPIC", "-fvisibility=hidden", "-std=c++20", "-Wall", "-Wextra", "-Werror"]

# Before the C++ library of the image comes the one of the host: an exception is the same on both
# sides, as it is on a device, and only what is not there is taken from the other.
LIBRARIES = ["-lBlocksRuntime", "-lobjc", "-lstdc++", "-l:libc++.a", "-lgcc_s"]


# What a library for tests exports beside the C surface; a shim gives it to the others.
SEAM = "zib_testing_"


class LinkFailure(Exception):
    """What the tools said."""


@dataclass(frozen=True)
class System:
    """The Linux that a slice is brought to."""

    architecture: str
    triple: str
    page: int  # of the slice's own segments
    flags: tuple = field(default=())  # where headers and libraries are, if not at /
    emulator: tuple = field(default=())
    cxx_library: Path = None  # the folder of libc++.a


class LibraryMaker:
    def __init__(self, toolchain, cxx_headers, build):
        self.toolchain = toolchain
        self.cxx_headers = cxx_headers
        self.build = build
        self.shims = {}  # the objects of each system's shims

    def run(self, tool, *arguments):
        result = subprocess.run([self.toolchain / tool, *arguments], text=True,
                                capture_output=True)
        if result.returncode != 0:
            raise LinkFailure(f"{tool}: {result.stderr.strip()}")
        return result.stdout

    def read(self, image):
        return MachOFile(image, self.toolchain / "llvm-objdump")

    def compiled_shims(self, system):
        """Compiled once for each system."""
        if system.architecture in self.shims:
            return self.shims[system.architecture]
        folder = self.build / "shims" / system.architecture
        folder.mkdir(parents=True, exist_ok=True)
        objects = []
        for source in [*sorted(SHIMS.glob("*.cpp")), SHIMS / f"Calls_{system.architecture}.S"]:
            flags = [f"--target={system.triple}", *system.flags]
            if source.suffix == ".cpp":
                flags += SHIM_FLAGS
            if source.stem == "Strings":
                flags += ["-nostdinc++", "-isystem", self.cxx_headers]
            made = folder / (source.stem + ".o")
            self.run("clang++", *flags, "-c", source, "-o", made)
            objects.append(made)
        self.shims[system.architecture] = objects
        return objects

    def shimmed(self, objects):
        """The imports that are bound to a function of another name."""
        names = self.run("llvm-nm", "--defined-only", "--just-symbol-name", *objects).split()
        return {name.removeprefix(PREFIX_OF_SHIMS) for name in names
                if name.startswith(PREFIX_OF_SHIMS)}

    def make(self, image, system, folder, change=lambda assembly: assembly):
        """Makes `folder`/libZibMessaging.so of `image`. `change` is for tests that break it."""
        folder.mkdir(parents=True, exist_ok=True)
        shims = self.compiled_shims(system)
        file = self.read(image)
        binary = folder / "image.bin"
        binary.write_bytes(file.memory)
        assembly = folder / "image.s"
        writer = ElfWriter(file, binary.absolute(), self.shimmed(shims))
        assembly.write_text(change(writer.assembly()))
        (folder / "image.ld").write_text(linker_script(file))
        names = "".join(f'  "{c_name(name)}";\n' for name in file.exports)
        (folder / "exports").write_text(
            f"{{\nglobal:\n{names}  {SEAM}*;\nlocal:\n  *;\n}};\n")
        self.run("clang", f"--target={system.triple}", "-c", assembly, "-o", folder / "image.o")
        library = folder / image.with_suffix(".so").name
        has_seam = any(c_name(name).startswith(SEAM) for name in file.exports)
        self.link(library, system, folder, has_seam)
        return library

    def link(self, library, system, folder, has_seam=False):
        shims = [shim for shim in self.compiled_shims(system)
                 if not (has_seam and shim.stem == "Seam")]
        self.run("clang++", f"--target={system.triple}", *system.flags, "-fuse-ld=lld", "-shared",
                 "-nostdlib++", f"-Wl,-soname,{library.name}", f"-Wl,-T,{folder / 'image.ld'}",
                 f"-Wl,--version-script={folder / 'exports'}",
                 f"-Wl,-z,max-page-size={system.page:#x}", "-Wl,-z,now",
                 f"-L{system.cxx_library}", "-o", library, folder / "image.o",
                 *shims, *LIBRARIES)
