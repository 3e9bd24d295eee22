"""What the conversion makes of small libraries, and what it refuses."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))

import bindings
from elf import ElfWriter, linker_script
from mach_o import Function, MachOFile, NotConvertible, Pointer, read_leb
from unwinding import Unwinding

TOOLCHAIN = Path(os.environ.get("ZIB_TOOLCHAIN", "/usr/lib/llvm-19/bin"))
TRIPLES = {"x86_64": "x86_64-apple-ios13.0-simulator", "arm64": "arm64-apple-ios13.0"}

FUNCTIONS = """
int shared(int);
int frame(int (*call)(int)) { return call(1) + shared(2); }
__attribute__((visibility("hidden"))) int table[2] = {1, 2};
int *const pointer = &table[1];
"""


def linked(folder, text, architecture="arm64", language="c", flags=()):
    """A library of `text`, built for Apple without any header."""
    source = Path(folder) / ("source." + {"c": "c", "objective-c": "m", "assembler": "s"}[language])
    source.write_text(text)
    image = Path(folder) / f"{architecture}.dylib"
    subprocess.run([TOOLCHAIN / "clang", f"--target={TRIPLES[architecture]}", "-Os", "-fuse-ld=lld",
                    "-dynamiclib", "-nostdlib", "-Wl,-undefined,dynamic_lookup", *flags, source,
                    "-o", image], check=True, capture_output=True)
    return image


class Conversion(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def read(self, text=FUNCTIONS, *arguments, **options):
        return MachOFile(linked(self.folder, text, *arguments, **options),
                         TOOLCHAIN / "llvm-objdump")

    def refused(self, reason, *arguments, **options):
        with self.assertRaises(NotConvertible) as raised:
            file = self.read(*arguments, **options)
            ElfWriter(file, "image.bin").assembly()
            linker_script(file)
        self.assertIn(reason, str(raised.exception))


class Reading(Conversion):
    def test_exports_imports_and_pointers(self):
        for architecture in TRIPLES:
            with self.subTest(architecture):
                file = self.read(FUNCTIONS, architecture)
                self.assertEqual(file.architecture, architecture)
                self.assertEqual(file.exports, ["_frame", "_pointer"])
                self.assertIn("_shared", file.imports)
                address = next(each.address for each in file.symbols if each.name == "_pointer")
                target = next(each.address for each in file.symbols if each.name == "_table")
                self.assertEqual(file.pointers[address], Pointer(None, target + 4))

    def test_addends_of_imports(self):
        file = self.read("extern char there[]; char *const pointer = there + 24;")
        self.assertIn(Pointer("_there", 24), file.pointers.values())

    def test_the_mark_of_a_name_that_is_not_unique_is_taken_off(self):
        file = self.read(".data\n.p2align 3\n.globl _pointer\n_text: .quad 0\n"
                         "_pointer: .quad _text + 0x8000000000000000\n", language="assembler")
        text = file.section("__data").address
        self.assertEqual(file.pointers[text + 8], Pointer(None, text))

    def test_functions_end_where_the_next_begins(self):
        functions = self.read().functions
        self.assertTrue(functions)
        for each, following in zip(functions, functions[1:]):
            self.assertEqual(each.end, following.start)

    def test_numbers_of_any_length(self):
        self.assertEqual(read_leb(bytes([0xE5, 0x8E, 0x26]), 0), (624485, 3))
        self.assertEqual(read_leb(bytes([0x78]), 0, signed=True), (-8, 1))


class Refusing(Conversion):
    def test_chained_fixups(self):
        self.refused("chained fixups", flags=["-Wl,-fixup_chains"])

    def test_objective_c_metadata(self):
        self.refused("Objective-C metadata", "__attribute__((objc_root_class)) @interface A\n@end\n"
                     "@implementation A\n@end\n", language="objective-c")

    def test_variable_arguments_without_a_shim(self):
        text = "int sscanf(const char*, const char*, ...); int f(void) { return sscanf(0, 0); }"
        self.refused("sscanf has variable arguments", text)

    def test_what_is_no_library(self):
        source = Path(self.folder) / "source.c"
        source.write_text(FUNCTIONS)
        made = Path(self.folder) / "source.o"
        subprocess.run([TOOLCHAIN / "clang", f"--target={TRIPLES['arm64']}", "-c", source, "-o",
                        made], check=True)
        with self.assertRaises(NotConvertible):
            MachOFile(made, TOOLCHAIN / "llvm-objdump")

    def test_rows_of_a_table_that_have_another_form(self):
        file = self.read()
        with self.assertRaises(NotConvertible):
            list(file.table("--bind", "nothing like it"))


class Layout(Conversion):
    def test_segments_keep_their_places_and_text_is_not_writable(self):
        file = self.read()
        script = linker_script(file)
        for segment in file.segments:
            self.assertIn(f". = image_start + {segment.address:#x};", script)
        self.assertIn("image__TEXT PT_LOAD FLAGS(5)", script)

    def test_what_fills_the_image_is_as_long_as_the_image(self):
        file = self.read()
        lines = ElfWriter(file, "image.bin").assembly().splitlines()
        filled = sum(int(line.rsplit(",", 1)[1]) for line in lines if line.startswith(".incbin"))
        pointers = sum(line.startswith(".quad") for line in lines)
        self.assertEqual(filled + 8 * pointers, sum(each.size for each in file.segments))

    def test_imports_with_a_shim_are_bound_to_it(self):
        text = ElfWriter(self.read(), "image.bin", {"shared"}).assembly()
        self.assertIn('.quad "zib_shim_shared"+0x0', text)
        self.assertNotIn('"shared"', text)

    def test_constructors_are_called_through_what_returns_their_object(self):
        text = 'void f(void) __asm__("__ZN4KindC1Ev"); void call(void) { f(); }'
        self.assertIn('bl "_ZN4KindC1Ev"', ElfWriter(self.read(text), "b").assembly())
        self.assertNotIn('zib_thunk', ElfWriter(self.read(text, "x86_64"), "b").assembly())


class Unwind(Conversion):
    def frame(self, encoding, architecture):
        return Unwinding(self.read(FUNCTIONS, architecture)).directives(
            Function(0, 16, encoding, None, None))

    def test_saved_registers_of_x86_64_by_the_number_of_their_permutation(self):
        saved = Unwinding(self.read(FUNCTIONS, "x86_64")).saved_registers_x86_64
        self.assertEqual(saved(0, 0), [])
        self.assertEqual(saved(1, 4), ["%r15"])
        self.assertEqual(saved(2, 0), ["%rbx", "%r12"])
        self.assertEqual(saved(3, 119), ["%rbp", "%r15", "%r14"])
        self.assertEqual(saved(6, 0), ["%rbx", "%r12", "%r13", "%r14", "%r15", "%rbp"])

    def test_frames_of_x86_64(self):
        self.assertEqual(self.frame(0x01000000, "x86_64"),
                         [".cfi_def_cfa %rbp, 16", ".cfi_offset %rbp, -16"])
        self.assertEqual(self.frame(0x02030000 | 1 << 10, "x86_64"),
                         [".cfi_def_cfa %rsp, 24", ".cfi_offset %rbx, -16"])

    def test_frames_of_arm64(self):
        self.assertEqual(self.frame(0x02002000, "arm64"), [".cfi_def_cfa sp, 32"])
        self.assertEqual(self.frame(0x04000101, "arm64")[3:], [
            ".cfi_offset x19, -24", ".cfi_offset x20, -32",
            ".cfi_offset d8, -40", ".cfi_offset d9, -48"])

    def test_modes_that_nobody_has(self):
        with self.assertRaises(NotConvertible):
            self.frame(0x07000000, "arm64")


class Bindings(unittest.TestCase):
    def test_what_the_loader_logs(self):
        log = ("  1:\tbinding file /a/host [0] to /b/libZib.so [0]: normal symbol `zib_one'\n"
               "  1:\tbinding file /b/libZib.so [0] to /lib/libc.so.6 [0]: normal symbol "
               "`memcpy' [GLIBC_2.14]\n")
        self.assertEqual(bindings.of_process(log),
                         {"host": {"zib_one": "libZib.so"}, "libZib.so": {"memcpy": "libc.so.6"}})


if __name__ == "__main__":
    unittest.main()
