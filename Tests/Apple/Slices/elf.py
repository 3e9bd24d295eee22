"""Writes a Mach-O file's image as assembly and a linker script that make an ELF library of it. The
bytes and the layout stay; what the platform's loader does is put in terms of Linux's: pointers that
it fills in are relocations, exports are symbols, unwind entries are call frame information,
initialisers are in .init_array, thread-local variables in .tdata."""

import re
import struct

from mach_o import (NotConvertible, S_INIT_FUNC_OFFSETS, S_MOD_INIT_FUNC_POINTERS,
                    S_THREAD_LOCAL_ZEROFILL, THREAD_LOCAL)
from unwinding import Unwinding

IMAGE = "zib_image"
THREAD_LOCALS = "zib_image_thread_locals"
PAGE = 0x4000  # of the devices

# The directives at one place, in the order in which they have to come.
END_OF_FUNCTION, LABEL, START_OF_FUNCTION, POINTER = range(4)

PREFIX_OF_SHIMS = "zib_shim_"

# On arm64 their arguments lie elsewhere than here: without a shim they would read garbage.
VARIADIC = {prefix + "printf" for prefix in ["", "as", "d", "f", "s", "sn"]} | {
    "scanf", "fscanf", "sscanf", "open", "fcntl", "ioctl", "syslog"}


def c_name(symbol):
    """Without the underscore that the platform puts before a C name."""
    return symbol.removeprefix("_") if symbol != "dyld_stub_binder" else symbol


class ElfWriter:
    def __init__(self, file, binary, shims=()):
        self.file = file
        self.binary = binary
        self.shims = set(shims)  # imports that are bound to zib_shim_NAME
        self.unwinding = Unwinding(file)
        self.places = {}
        self.labels = {}
        self.thunks = {}

    def put(self, address, order, *lines):
        self.places.setdefault(address, []).append((order, lines))

    def label(self, address):
        """For those directives that take a name and no expression."""
        return self.labels.setdefault(address, f".Lat_{address:x}")

    def assembly(self):
        self.put_functions()
        self.put_symbols()
        self.put_pointers()
        return "\n".join([
            *self.segments(), *self.initialisers(), *self.thread_locals(),
            *self.thunks_that_return_this(),
            *[f".set {name}, {IMAGE}+{address:#x}" for address, name in self.labels.items()],
            '.section .note.GNU-stack, "", @progbits', ""])

    # What lies where.

    def put_functions(self):
        for function in self.file.functions:
            lines = [".cfi_startproc", *self.unwinding.directives(function)]
            if function.personality is not None:
                lines.append(f".cfi_personality 0x9b, {self.label(function.personality)}")
            if function.lsda is not None:
                lines.append(f".cfi_lsda 0x1b, {self.label(function.lsda)}")
            self.put(function.start, START_OF_FUNCTION, *lines)
            self.put(function.end, END_OF_FUNCTION, ".cfi_endproc")

    def put_symbols(self):
        """The exports, and for debuggers the names of functions."""
        text = self.file.section("__text")
        seen = set()
        for symbol in sorted(self.file.symbols, key=lambda each: (each.address, each.name)):
            is_function = text.address <= symbol.address < text.end
            name = c_name(symbol.name)
            if name in seen or not (symbol.is_exported or is_function and "_" == symbol.name[0]):
                continue
            seen.add(name)
            kind = "function" if is_function else "object"
            self.put(symbol.address, LABEL, *[f'.globl "{name}"'] * symbol.is_exported,
                     f'.type "{name}", @{kind}', f'"{name}":')

    def put_pointers(self):
        for address, pointer in self.file.pointers.items():
            target = self.bound_to(pointer.symbol) if pointer.symbol else IMAGE
            self.put(address, POINTER, f'.quad "{target}"{pointer.addend:+#x}')

    def bound_to(self, symbol):
        name = c_name(symbol)
        if name in self.shims:
            return PREFIX_OF_SHIMS + name
        if self.file.architecture == "arm64" and name in VARIADIC:
            raise NotConvertible(f"{self.file.path}: {name} has variable arguments and no shim")
        # Constructors and destructors return their object on arm64, and callers rely on it.
        if self.file.architecture == "arm64" and re.match(r"_ZN\w*[CD][12]E", name):
            return self.thunks.setdefault(name, f"zib_thunk_{len(self.thunks)}")
        return name

    # Segments.

    def segments(self):
        lines = []
        for segment in self.file.segments:
            flags = "ax" if segment.name == "__TEXT" else "aw"
            lines += [f'.section {section_of(segment)}, "{flags}", @progbits']
            if not segment.address:
                lines += [f".hidden {IMAGE}", f".globl {IMAGE}", f"{IMAGE}:"]
            lines += self.content(segment.address, segment.address + segment.size)
        return lines

    def content(self, start, end):
        """The bytes from `start` to `end`, and the directives at their places."""
        lines, at = [], start
        for address in sorted(each for each in self.places if start <= each < end):
            lines += self.bytes(at, address)
            at = address
            for order, text in sorted(self.places[address], key=lambda each: each[0]):
                lines += text
                at += 8 if order == POINTER else 0
        return lines + self.bytes(at, end)

    def bytes(self, start, end):
        return [f'.incbin "{self.binary}", {start}, {end - start}'] if end > start else []

    # What runs first, and what each thread has of its own.

    def initialisers(self):
        offsets = []
        for section in self.file.sections:
            if section.kind == S_MOD_INIT_FUNC_POINTERS:
                offsets += [self.file.pointers[address].addend
                            for address in range(section.address, section.end, 8)]
            if section.kind == S_INIT_FUNC_OFFSETS:
                content = self.file.memory[section.address:section.end]
                offsets += [offset for offset, in struct.iter_unpack("<I", content)]
        if not offsets:
            return []
        return ['.section .init_array, "aw", @init_array',
                *[f".quad {IMAGE}+{offset:#x}" for offset in offsets]]

    def thread_locals(self):
        sections = sorted((each for each in self.file.sections if each.kind in THREAD_LOCAL),
                          key=lambda each: each.address)
        if not sections:
            return []
        start, end = sections[0].address, sections[-1].end
        content = bytearray(self.file.memory[start:end])
        for section in sections:
            if section.kind == S_THREAD_LOCAL_ZEROFILL:
                content[section.address - start:section.end - start] = bytes(section.size)
        for address in self.file.pointers:
            if start <= address < end:
                raise NotConvertible(f"a pointer in a thread-local variable at {address:#x}")
        return ['.section .tdata, "awT", @progbits',
                f".balign {max(each.alignment for each in sections)}",
                f".hidden {THREAD_LOCALS}", f".globl {THREAD_LOCALS}",
                f".type {THREAD_LOCALS}, @object", f".size {THREAD_LOCALS}, {end - start}",
                f"{THREAD_LOCALS}:", ".byte " + ", ".join(map(str, content))]

    def thunks_that_return_this(self):
        lines = []
        for target, thunk in self.thunks.items():
            lines += [
                ".text", f".type {thunk}, @function", f"{thunk}:", ".cfi_startproc",
                "stp x29, x30, [sp, #-32]!", ".cfi_def_cfa_offset 32", ".cfi_offset x29, -32",
                ".cfi_offset x30, -24", "mov x29, sp", "str x0, [sp, #16]", f'bl "{target}"',
                "ldr x0, [sp, #16]", "ldp x29, x30, [sp], #32", ".cfi_def_cfa_offset 0",
                ".cfi_restore x29", ".cfi_restore x30", "ret", ".cfi_endproc"]
        return lines


def section_of(segment):
    return ".image" + segment.name


def linker_script(file):
    """Keeps the segments in their places relative to each other. Text is never writable; what the
    platform makes read-only after filling it in (__DATA_CONST) is read-only here too."""
    headers, sections = [], []
    for segment in file.segments:
        if segment.address % 0x1000:
            raise NotConvertible(f"segment {segment.name} begins inside of a page")
        name = section_of(segment)
        is_constant = segment.name == "__DATA_CONST"
        headers += [f"  image{segment.name} PT_LOAD FLAGS({5 if segment.name == '__TEXT' else 6});"]
        sections += [f"  . = image_start + {segment.address:#x};",
                     f"  {name} : {{ *({name}) }} :image{segment.name}" +
                     (" :constant" if is_constant else "")]
        if is_constant:
            headers += ["  constant PT_GNU_RELRO;"]
    return LINKER_SCRIPT.format(page=PAGE, headers="\n".join(headers),
                                sections="\n".join(sections))


LINKER_SCRIPT = """\
PHDRS {{
  tables PT_LOAD FILEHDR PHDRS FLAGS(4);
  code PT_LOAD FLAGS(5);
{headers}
  data PT_LOAD FLAGS(6);
  thread_locals PT_TLS;
  dynamic PT_DYNAMIC;
  frames PT_GNU_EH_FRAME;
  stack PT_GNU_STACK FLAGS(6);
}}
SECTIONS {{
  . = SIZEOF_HEADERS;
  .note : {{ *(.note.*) }} :tables
  .hash : {{ *(.hash) }} :tables
  .gnu.hash : {{ *(.gnu.hash) }} :tables
  .dynsym : {{ *(.dynsym) }} :tables
  .dynstr : {{ *(.dynstr) }} :tables
  .gnu.version : {{ *(.gnu.version) }} :tables
  .gnu.version_r : {{ *(.gnu.version_r) }} :tables
  .rela.dyn : {{ *(.rela.dyn) }} :tables
  .rela.plt : {{ *(.rela.plt) }} :tables
  .rodata : {{ *(.rodata .rodata.*) }} :tables
  .gcc_except_table : {{ *(.gcc_except_table .gcc_except_table.*) }} :tables
  .eh_frame_hdr : {{ *(.eh_frame_hdr) }} :tables :frames
  .eh_frame : {{ *(.eh_frame) }} :tables
  . = ALIGN({page:#x});
  .init : {{ *(.init) }} :code
  .text : {{ *(.text .text.*) }} :code
  .fini : {{ *(.fini) }} :code
  .plt : {{ *(.plt) }} :code
  . = ALIGN({page:#x});
  image_start = .;
{sections}
  . = ALIGN({page:#x});
  .tdata : {{ *(.tdata .tdata.*) }} :data :thread_locals
  .tbss : {{ *(.tbss .tbss.*) }} :data :thread_locals
  .init_array : {{ *(SORT_BY_INIT_PRIORITY(.init_array.*)) *(.init_array) }} :data
  .fini_array : {{ *(.fini_array .dtors) }} :data
  .data.rel.ro : {{ *(.data.rel.ro .data.rel.ro.* .tm_clone_table) }} :data
  .dynamic : {{ *(.dynamic) }} :data :dynamic
  .got : {{ *(.got) }} :data
  .got.plt : {{ *(.got.plt) }} :data
  .data : {{ *(.data .data.*) }} :data
  .bss : {{ *(.bss .bss.*) }} :data
}}
"""
