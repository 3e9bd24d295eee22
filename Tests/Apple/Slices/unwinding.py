"""Turns an entry of the compact unwind table into call frame information, as directives of the
assembler. Like the table itself it is right at calls, not inside of prologues."""

import struct

from mach_o import NotConvertible, read_leb

HAS_FRAME = 0x0F000000


class Unwinding:
    """How the functions of one file are unwound."""

    def __init__(self, file):
        self.file = file
        self.forms = {
            "x86_64": {1: self.frame_pointer_x86_64, 2: self.frameless_x86_64,
                       3: self.frameless_x86_64, 4: self.dwarf},
            "arm64": {2: self.frameless_arm64, 3: self.dwarf, 4: self.frame_pointer_arm64},
        }[file.architecture]

    def directives(self, function):
        mode = function.encoding >> 24 & 0xF
        if not mode:
            return []
        if mode not in self.forms:
            raise NotConvertible(f"function at {function.start:#x}: unwind mode {mode}")
        return self.forms[mode](function)

    def dwarf(self, function):
        """Instructions of the function's own entry in __eh_frame, as they are."""
        memory = self.file.memory
        at = self.file.section("__eh_frame").address + (function.encoding & 0xFFFFFF)
        length, back_to_common = struct.unpack_from("<2I", memory, at)
        end, common = at + 4 + length, at + 4 - back_to_common
        after_augmentation = memory.index(b"\0", common + 9) + 1
        code_factor, after = read_leb(memory, after_augmentation)
        data_factor, _ = read_leb(memory, after, signed=True)
        if (code_factor, data_factor) != (1, -8):
            raise NotConvertible(f"function at {function.start:#x}: alignment factors "
                                 f"{code_factor} and {data_factor}; allowed are 1 and -8")
        size, at = read_leb(memory, at + 24)  # two pointers of eight bytes are before it
        return [".cfi_escape " + ", ".join(map(str, memory[at + size:end]))]

    # x86_64.

    REGISTERS_X86_64 = [None, "%rbx", "%r12", "%r13", "%r14", "%r15", "%rbp"]

    def frame_pointer_x86_64(self, function):
        lines = [".cfi_def_cfa %rbp, 16", ".cfi_offset %rbp, -16"]
        lowest = -16 - 8 * (function.encoding >> 16 & 0xFF)
        for i in range(5):
            register = self.REGISTERS_X86_64[function.encoding >> 3 * i & 7]
            if register:
                lines.append(f".cfi_offset {register}, {lowest + 8 * i}")
        return lines

    def frameless_x86_64(self, function):
        encoding = function.encoding
        size = encoding >> 16 & 0xFF
        if encoding >> 24 & 0xF == 2:
            size *= 8
        else:  # the size is inside of the instruction that makes room
            subtracted, = struct.unpack_from("<I", self.file.memory, function.start + size)
            size = subtracted + 8 * (encoding >> 13 & 7)
        registers = self.saved_registers_x86_64(encoding >> 10 & 7, encoding & 0x3FF)
        return [f".cfi_def_cfa %rsp, {size}"] + [
            f".cfi_offset {register}, {-16 - 8 * i}"
            for i, register in enumerate(reversed(registers))]

    def saved_registers_x86_64(self, count, permutation):
        """The table has the number of their permutation, each digit in a base of its own."""
        bases = {6: [120, 24, 6, 2, 1], 5: [120, 24, 6, 2, 1], 4: [60, 12, 3, 1], 3: [20, 4, 1],
                 2: [5, 1], 1: [1], 0: []}[count]
        left = self.REGISTERS_X86_64[1:]
        chosen = []
        for base in bases:
            chosen.append(left.pop(permutation // base))
            permutation %= base
        if count == 6:
            chosen += left
        return chosen

    # arm64.

    PAIRS_ARM64 = [(f"x{n}", f"x{n + 1}") for n in range(19, 29, 2)] + [
        (f"d{n}", f"d{n + 1}") for n in range(8, 16, 2)]
    PAIR_BITS_ARM64 = [0, 1, 2, 3, 4, 8, 9, 10, 11]

    def saved_pairs_arm64(self, encoding, offset):
        lines = []
        for bit, pair in zip(self.PAIR_BITS_ARM64, self.PAIRS_ARM64):
            for register in pair if encoding >> bit & 1 else []:
                lines.append(f".cfi_offset {register}, {offset}")
                offset -= 8
        return lines

    def frame_pointer_arm64(self, function):
        return [".cfi_def_cfa x29, 16", ".cfi_offset x29, -16", ".cfi_offset x30, -8",
                *self.saved_pairs_arm64(function.encoding, -24)]

    def frameless_arm64(self, function):
        size = 16 * (function.encoding >> 12 & 0xFFF)
        return [f".cfi_def_cfa sp, {size}", *self.saved_pairs_arm64(function.encoding, -8)]
