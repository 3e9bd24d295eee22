"""Reads a Mach-O dynamic library: what it maps, which pointers in it the loader fills in, and how
each of its functions is unwound. The compressed tables are read by LLVM's own tool."""

import re
import struct
import subprocess
from dataclasses import dataclass
from functools import cached_property
from pathlib import Path

MAGIC, DYNAMIC_LIBRARY = 0xFEEDFACF, 6
LC_SYMTAB, LC_SEGMENT_64, LC_DYLD_CHAINED_FIXUPS = 0x2, 0x19, 0x80000034
ARCHITECTURES = {0x01000007: "x86_64", 0x0100000C: "arm64"}

# Kinds of sections.
S_ZEROFILL, S_MOD_INIT_FUNC_POINTERS, S_MOD_TERM_FUNC_POINTERS = 0x1, 0x9, 0xA
S_THREAD_LOCAL_REGULAR, S_THREAD_LOCAL_ZEROFILL, S_INIT_FUNC_OFFSETS = 0x11, 0x12, 0x16
THREAD_LOCAL = {S_THREAD_LOCAL_REGULAR, S_THREAD_LOCAL_ZEROFILL}

# Of a symbol's type: for debuggers, visible outside of its file, visible outside but not of the
# library, and defined in a section.
N_STAB, N_EXT, N_PEXT, N_TYPE, N_SECT = 0xE0, 0x01, 0x10, 0x0E, 0x0E

# On arm64 the C++ library marks a type's name that other libraries may have too with the top bit.
# The runtime here compares all types by name, which is what the mark asks for.
NAME_IS_NOT_UNIQUE = 1 << 63


class NotConvertible(Exception):
    """What the file has that this tool does not know how to bring to Linux."""


@dataclass(frozen=True)
class Segment:
    name: str
    address: int
    size: int
    offset: int
    file_size: int


@dataclass(frozen=True)
class Section:
    segment: str
    name: str
    address: int
    size: int
    alignment: int
    kind: int

    @property
    def end(self):
        return self.address + self.size


@dataclass(frozen=True)
class Symbol:
    name: str
    address: int
    is_exported: bool


@dataclass(frozen=True)
class Pointer:
    """Eight bytes that the loader fills in: with an import, or with a place in the image."""

    symbol: str
    addend: int


@dataclass(frozen=True)
class Function:
    start: int
    end: int
    encoding: int
    personality: int  # the address of the pointer to it, or None
    lsda: int  # or None


def read_leb(data, at, signed=False):
    value = shift = 0
    while True:
        byte = data[at]
        at += 1
        value |= (byte & 0x7F) << shift
        shift += 7
        if not byte & 0x80:
            return (value - (1 << shift) if signed and byte & 0x40 else value), at


def text_at(data, at):
    return data[at:data.index(b"\0", at)].decode()


class MachOFile:
    def __init__(self, path, objdump):
        self.path = Path(path)
        self.objdump = objdump
        self.data = self.path.read_bytes()
        self.segments, self.sections, self.symbols = [], [], []
        self.read_load_commands()
        self.memory = self.mapped()

    # Structure.

    def read_load_commands(self):
        magic, cpu, _, kind, count, *_ = struct.unpack_from("<8I", self.data)
        if magic != MAGIC or kind != DYNAMIC_LIBRARY or cpu not in ARCHITECTURES:
            raise NotConvertible(f"{self.path}: allowed is a dynamic library of one slice, "
                                 f"{' or '.join(ARCHITECTURES.values())}")
        self.architecture = ARCHITECTURES[cpu]
        at = 32
        for _ in range(count):
            command, size = struct.unpack_from("<2I", self.data, at)
            if command == LC_DYLD_CHAINED_FIXUPS:
                raise NotConvertible(f"{self.path}: has chained fixups; link with "
                                     "-Wl,-no_fixup_chains")
            if command == LC_SEGMENT_64:
                self.read_segment(at)
            if command == LC_SYMTAB:
                self.read_symbols(*struct.unpack_from("<3I", self.data, at + 8))
            at += size

    def read_segment(self, at):
        name, address, size, offset, file_size, _, _, count, _ = struct.unpack_from(
            "<16s4Q4I", self.data, at + 8)
        segment = name.rstrip(b"\0").decode()
        if segment != "__LINKEDIT":
            self.segments.append(Segment(segment, address, size, offset, file_size))
        for i in range(count):
            name, _, address, size, _, alignment, _, _, flags, *_ = struct.unpack_from(
                "<16s16s2Q8I", self.data, at + 72 + 80 * i)
            section = Section(segment, name.rstrip(b"\0").decode(), address, size,
                              1 << alignment, flags & 0xFF)
            if section.name.startswith("__objc_") or section.kind == S_MOD_TERM_FUNC_POINTERS:
                raise NotConvertible(f"{self.path}: section {section.name}: allowed are libraries "
                                     "without Objective-C metadata and without terminators")
            self.sections.append(section)

    def read_symbols(self, offset, count, strings):
        for i in range(count):
            name, kind, _, _, address = struct.unpack_from("<IBBHQ", self.data, offset + 16 * i)
            if not kind & N_STAB and kind & N_TYPE == N_SECT:
                self.symbols.append(Symbol(text_at(self.data, strings + name), address,
                                           bool(kind & N_EXT) and not kind & N_PEXT))

    def mapped(self):
        memory = bytearray(max(segment.address + segment.size for segment in self.segments))
        for segment in self.segments:
            memory[segment.address:segment.address + segment.file_size] = self.data[
                segment.offset:segment.offset + segment.file_size]
        return memory

    def section(self, name):
        return next((each for each in self.sections if each.name == name), None)

    # What the loader fills in.

    def table(self, option, row):
        """The rows of a table that LLVM's tool prints; a row of another form is an error."""
        output = subprocess.run([self.objdump, "--macho", option, self.path], text=True, check=True,
                                capture_output=True).stdout
        lines = [line for line in output.splitlines()[1:] if line.strip()
                 and not line.endswith("table:") and not line.startswith("segment ")]
        for line in lines:
            match = re.fullmatch(row, line)
            if not match:
                raise NotConvertible(f"{self.path}: {option}: {line}")
            yield match

    @cached_property
    def pointers(self):
        """The pointers by their addresses. Those that are bound at their first use are bound like
        the others."""
        place = r"\S+ +\S+ +0x(?P<address>\w+)"
        filled = {}
        for row in self.table("--rebase", place + r" +pointer"):
            address = int(row["address"], 16)
            target, = struct.unpack_from("<Q", self.memory, address)
            filled[address] = Pointer(None, target & ~NAME_IS_NOT_UNIQUE)
        with_addend = r" +pointer +(?P<addend>-?\d+)"
        for option, columns in [("--bind", with_addend + r" +\S+"), ("--lazy-bind", r" +\S+"),
                                ("--weak-bind", with_addend)]:
            for row in self.table(option, place + columns + r" +(?P<symbol>\S+)"):
                addend = int(row.groupdict().get("addend", 0))
                filled[int(row["address"], 16)] = Pointer(row["symbol"], addend)
        for address in filled:
            if self.segment_at(address).name == "__TEXT":
                raise NotConvertible(f"{self.path}: a pointer in __TEXT at {address:#x}: allowed "
                                     "are pointers in data, since text is not writable")
        return dict(sorted(filled.items()))

    def segment_at(self, address):
        return next(each for each in self.segments
                    if each.address <= address < each.address + each.size)

    @property
    def imports(self):
        return sorted({pointer.symbol for pointer in self.pointers.values() if pointer.symbol})

    @property
    def exports(self):
        return sorted(symbol.name for symbol in self.symbols if symbol.is_exported)

    # How functions are unwound.

    @cached_property
    def functions(self):
        if not self.section("__unwind_info"):
            return []
        output = subprocess.run([self.objdump, "--macho", "--unwind-info", self.path], text=True,
                                check=True, capture_output=True).stdout
        personalities = [int(value, 16)
                         for value in re.findall(r"personality\[\d+\]: 0x(\w+)", output)]
        lsdas = {int(function, 16): int(lsda, 16) for function, lsda in re.findall(
            r"function offset=0x(\w+), LSDA offset=0x(\w+)$", output, re.M)}
        ends = re.findall(r"^ +\[\d+\]: function offset=0x(\w+), 2nd level page offset=0x0+,",
                          output, re.M)
        entries = [(int(start, 16), int(encoding, 16)) for start, encoding in re.findall(
            r"function offset=0x(\w+), encoding(?:\[\d+\])?=0x(\w+)$", output, re.M)]
        starts = [start for start, _ in entries] + [int(ends[-1], 16)]
        functions = []
        for (start, encoding), end in zip(entries, starts[1:]):
            number = encoding >> 28 & 3
            functions.append(Function(
                start, end, encoding, personalities[number - 1] if number else None,
                lsdas[start] if encoding & 0x40000000 else None))
        return functions
