"""Compiles and links the module for iOS and holds the result against the lists in this folder.

Called by script/check-apple, which provides the compilers and the headers. Stops at the first part
that fails, since the later ones build on it.
"""

import argparse
import hashlib
import json
import os
import re
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

HERE = Path("Tests/Apple")
TEXT_BUDGET = 96 * 1024
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
SIGNED_BOOL_TRIPLE = "x86_64-apple-macos10.15"


@dataclass(frozen=True)
class Configuration:
    """What is built and measured: a target and how it is optimised."""

    name: str
    target: Target
    flags: tuple

    @property
    def is_machine_code(self):
        return "-flto" not in self.flags


SMALLEST = Configuration("device, -Oz, LTO, release", DEVICE, ("-Oz", "-flto", "-DNDEBUG"))
CONFIGURATIONS = [
    Configuration("device, -Os", DEVICE, ("-Os",)),
    Configuration("arm64 simulator, -Os", TARGETS[1], ("-Os",)),
    Configuration("x86_64 simulator, -Os", TARGETS[2], ("-Os",)),
    SMALLEST,
]

# Classes with a header of their own that are not for hosts.
INTERNAL_CLASSES = {"ZibSwizzleManager"}

# What nothing verifies: files, how their lines are told from the others, and the reason.
NAMES = "names of a framework that is found by name, and whose headers cannot be had"
UNVERIFIED = [
    ("Sources/ZibPlatform/UIKit/Application.cpp", r'selector<"|classNamed<"', NAMES),
    ("Sources/ZibPlatform/UIKit/Scenes.cpp", r'selector<"|classNamed<"', NAMES),
    ("Sources/ZibPlatform/UserNotifications/UserNotifications.cpp", r'selector<"|classNamed<"', NAMES),
    ("Sources/ZibPlatform/FirebaseMessaging/FirebaseMessaging.cpp", r'selector<"|classNamed<"', NAMES),
    ("Sources/ZibMessaging/Private/MessagingFace.cpp", r'\.method\("\w+:', NAMES),
    ("Sources/ZibMessaging/Private/Interception.h", r'^\s*\{"\w+:', NAMES),
    ("Sources/ZibPlatform/UserNotifications/UserNotifications.h", r"^inline constexpr objc::UInteger",
     "numbers out of the same headers"),
]

# Part of the language's ownership rules and in no header: PlatformAbi.cpp holds them against the
# calls that the compiler makes.
RUNTIME_WITHOUT_HEADER = {"objc_retain", "objc_release", "objc_autoreleasePoolPush",
                          "objc_autoreleasePoolPop"}

# Of GCC's runtime.
NOT_OF_THE_PLATFORM = {"objc_msg_lookup"}

# A declaration that is given a symbol by hand.
ASM_LABEL = r"[\w)\]]\s+(?:asm|__asm__)\s*\(\s*\"_?\w+\"|ZIB_SYMBOL"

# What a host's Objective-C++ includes before the module's headers.
HEADER_ORDERS = {
    "module-first": (),
    "platform-first": ("-include", "UIKit/UIKit.h", "-include", "objc/runtime.h", "-include",
                       "dispatch/dispatch.h", "-include", "Block.h"),
}


class Failure(Exception):
    """What is wrong, for the one who changed the tree."""


def require(problems, headline):
    if problems:
        raise Failure("\n".join([headline + ":"] + ["  " + line for line in problems]))


def list_entries(path):
    """The lines of a list and their reasons; a line without a reason is a mistake."""
    entries = {}
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        symbol, _, reason = line.partition(" # ")
        if not reason.strip():
            raise Failure(f"{path}:{number}: a line is a symbol, ' # ' and a reason")
        entries[symbol.strip()] = reason.strip()
    return entries


def is_named_by(entry, symbol):
    """Whether the entry is the symbol's whole signature, or its name without the arguments."""
    return symbol == entry or symbol.startswith(entry + "(")


def json_values(text):
    decoder = json.JSONDecoder()
    at = text.find("{")
    while at >= 0:
        value, at = decoder.raw_decode(text, at)
        yield value
        at = text.find("{", at)


def left_to_the_library(declaration):
    """The symbols of a class's public functions that have no body in the header."""
    if declaration["kind"] != "CXXRecordDecl" or not declaration.get("completeDefinition"):
        return set()
    symbols = set()
    access = "private" if declaration["tagUsed"] == "class" else "public"
    for member in declaration["inner"]:
        if member["kind"] == "AccessSpecDecl":
            access = member["access"]
        if member["kind"] == "FriendDecl":
            [member] = member.get("inner", [{"kind": "none"}])
        elif access != "public":
            continue
        is_elsewhere = "mangledName" in member and not any(
            member.get(each) for each in ["isImplicit", "explicitlyDefaulted", "explicitlyDeleted",
                                          "pure"])
        has_body = any(part["kind"] == "CompoundStmt" for part in member.get("inner", []))
        is_function = member["kind"] in ["CXXMethodDecl", "CXXConstructorDecl",
                                         "CXXDestructorDecl", "FunctionDecl"]
        if is_function and is_elsewhere and not has_body:
            symbols.add(member["mangledName"])
        symbols |= left_to_the_library(member)
    return symbols


class Compiler:
    """Runs the tools, and compiles only what has changed since it was compiled last."""

    def __init__(self, arguments, build):
        self.toolchain = arguments.toolchain
        self.sdk = arguments.sdk
        self.library = arguments.library
        self.build = build
        self.hashes = {}

    def run(self, tool, *arguments, text=None):
        result = subprocess.run([self.toolchain / tool, *arguments], text=True, input=text,
                                capture_output=True)
        if result.returncode != 0:
            raise Failure(f"{tool} {arguments[-1]}\n{result.stderr.strip()}")
        return result.stdout

    def flags(self, target):
        return [f"--target={target.triple}", "-isysroot", self.sdk, "-nostdinc++",
                "-isystem", self.library / "cfg", "-isystem", self.library / "v1",
                "-std=c++20", "-ISources", *WARNINGS]

    def hash_of(self, path):
        if path not in self.hashes:
            self.hashes[path] = hashlib.sha256(Path(path).read_bytes()).hexdigest()
        return self.hashes[path]

    def compile(self, source, output, flags):
        """Makes `output`, or with -fsyntax-only an empty file that says that it compiles."""
        output.parent.mkdir(parents=True, exist_ok=True)
        record = output.with_suffix(".json")
        command = [str(flag) for flag in flags]
        if output.exists() and record.exists():
            made_from = json.loads(record.read_text())
            if made_from["flags"] == command and all(
                    Path(path).exists() and self.hash_of(path) == value
                    for path, value in made_from["inputs"].items()):
                return output
        dependencies = output.with_suffix(".d")
        is_check = "-fsyntax-only" in flags
        self.run("clang++", *command, "-MMD", "-MT", "x", "-MF", dependencies,
                 *([] if is_check else ["-c", "-o", output]), source)
        if is_check:
            output.touch()
        inputs = dependencies.read_text().replace("\\\n", " ").split()[1:]
        record.write_text(json.dumps(
            {"flags": command, "inputs": {path: self.hash_of(path) for path in inputs}}))
        return output

    def precompiled(self, folder, flags, first=()):
        """Flags that put `first` and the standard headers before a source, parsed once. Hides a
        missing #include of one of these, so one configuration has to do without."""
        included = set()
        for path in source_files():
            included |= set(re.findall(r"^#include (<\w+>)", path.read_text(), re.M))
        header = self.build / folder / "precompiled.h"
        header.parent.mkdir(parents=True, exist_ok=True)
        text = "".join(f"#include {name}\n" for name in [*first, *sorted(included)])
        if not header.exists() or header.read_text() != text:
            header.write_text(text)
        output = self.compile(header, header.with_suffix(".pch"),
                              [flag for flag in flags if flag != "-fsyntax-only"] +
                              ["-x", "c++-header"])
        return ["-include-pch", output]

    def compile_all(self, sources, folder, flags):
        def compile_one(source):
            name = "-".join(source.with_suffix(".o").parts)
            try:
                return self.compile(source, self.build / folder / name, flags)
            except Failure as failure:
                return failure

        with ThreadPoolExecutor(os.cpu_count()) as pool:
            results = list(pool.map(compile_one, sources))
        failures = [str(result) for result in results if isinstance(result, Failure)]
        if failures:
            raise Failure("\n".join(failures))
        return results

    def readable(self, symbols):
        """The symbols by their demangled names, in the C++ library's usual words."""
        plain = [symbol.removeprefix("_") for symbol in symbols]
        names = self.run("llvm-cxxfilt", "--no-strip-underscore", text="\n".join(plain))
        names = names.replace("std::__1::", "std::").replace("> >", ">>")
        names = names.replace(
            "std::basic_string<char, std::char_traits<char>, std::allocator<char>>", "std::string")
        names = names.replace("std::basic_string_view<char, std::char_traits<char>>",
                              "std::string_view")
        return dict(zip(symbols, names.splitlines()))

    def symbols(self, file, *selection):
        output = self.run("llvm-nm", "--just-symbol-name", "--quiet", *selection, file)
        found = {line for line in output.split("\n") if line and not line.endswith(":")}
        return self.readable(sorted(found))


def source_files():
    return sorted(path for path in Path("Sources").rglob("*") if path.suffix in {".h", ".cpp"})


class Check:
    def __init__(self, arguments):
        self.arguments = arguments
        self.compiler = Compiler(arguments, Path("build/apple"))
        self.build = self.compiler.build
        self.sources = sorted(Path("Sources").rglob("*.cpp"))
        self.libraries = {}
        self.images = {}
        self.hosts = []

    # What the platform's compiler says about Methods.m.

    def method_types(self):
        text = "".join(path.read_text() for path in source_files())
        # Each by its name where it is added to a class, or, for interceptors, in their table.
        registrations = (re.findall(r'\.(?:method|classMethod)\(\s*"', text)
                         + sorted(set(re.findall(r'"zib_[\w:]+"', text))))
        for target in TARGETS:
            methods = self.emit_platform_abi(target)
            require([selector for _, selector, _ in methods if f'"{selector}"' not in text],
                    "Methods.m declares methods that no class of the module gets")
            if len(methods) != len(registrations):
                raise Failure(f"Sources register {len(registrations)} methods, Methods.m declares "
                              f"{len(methods)}: declare each there and assert its encoding")
        return f"{len(methods)} methods"

    def emit_platform_abi(self, target):
        folder = self.build / "abi" / target.triple
        folder.mkdir(parents=True, exist_ok=True)
        code = self.compiler.run(
            "clang", f"--target={target.triple}", "-isysroot", self.arguments.sdk,
            "-x", "objective-c", "-fobjc-arc", "-Wall", "-Wextra", "-Wno-unused-parameter",
            "-Werror", "-S", "-emit-llvm", "-o", "-", HERE / "Methods.m")
        strings = dict(re.findall(r'^@(\S+) = .*?constant \[\d+ x i8\] c"(.*?)\\00"', code, re.M))
        methods = []
        for class_name, table in re.findall(r'^@"_OBJC_\$_INSTANCE_METHODS_(\w+)" = (.*)$', code,
                                            re.M):
            entries = re.findall(r"%struct\._objc_method \{ ptr @(\S+), ptr @(\S+),", table)
            methods += [(class_name, strings[name], strings[types]) for name, types in entries]
        descriptor = re.search(
            r'^@"__block_descriptor.*? constant \{ (.*?) \} '
            r"\{ i64 0, i64 (\d+), .*?ptr @(\.str\S*),", code, re.M)
        literal = re.search(r"alloca <\{ (.*?) \}>", code)
        # The only large number that the code stores.
        flags = int(re.search(r"store i32 (-?\d{6,}), ptr", code).group(1)) & 0xFFFFFFFF
        fields, size, signature = descriptor.groups()
        ownership = "".join(
            f'inline constexpr std::string_view {name}Shape = "{result}({arguments})";\n'
            for result, name, arguments in re.findall(
                r"^declare (\w+) @llvm\.objc\.(retain|release|autoreleasePool\w+)\((.*?)\)",
                code.replace("ptr returned", "ptr"), re.M))
        rows = "".join(f'    {{"{a}", "{b}", "{c}"}},\n' for a, b, c in methods)
        (folder / "PlatformAbi.inc").write_text(
            f"inline constexpr PlatformMethod platformMethods[] = {{\n{rows}}};\n"
            f"inline constexpr std::size_t platformBlockSize = {size};\n"
            f'inline constexpr std::string_view platformBlockFields = "{literal.group(1)}";\n'
            f'inline constexpr std::string_view platformDescriptorFields = "{fields}";\n'
            f'inline constexpr std::string_view platformBlockSignature = "{strings[signature]}";\n'
            f"inline constexpr unsigned int platformBlockFlags = {flags}U;\n"
            + ownership)
        return methods

    def abi_assertions(self):
        units = sorted(HERE.glob("*Abi.cpp"))
        for target in TARGETS:
            flags = self.compiler.flags(target) + [
                f"-I{HERE}", "-I" + str(self.build / "abi" / target.triple), "-fsyntax-only"]
            flags += self.compiler.precompiled(f"abi/{target.triple}", flags)
            self.compiler.compile_all(units, f"abi/{target.triple}", flags)
        return f"{len(units)} units for {len(TARGETS)} targets"

    # The platform's declarations and ours.

    def declarations(self):
        native = re.sub(r"^ *(#|//).*$", "", Path("Sources/ZibPlatform/ObjectiveC/Native.h").read_text(),
                        flags=re.M)
        require([str(path) for path in source_files()
                 if path.name != "Native.h" and re.search(ASM_LABEL, path.read_text())],
                "symbols are bound outside Native.h, where nothing compares them")
        bound = re.findall(r"(\w+)(?:\([^;]*\)|\[\d+\])?\s+ZIB_SYMBOL\((\w+)\);", native)
        if len(bound) != native.count("ZIB_SYMBOL("):
            raise Failure("Native.h binds a symbol in a way that the check cannot read")
        comparable = [(name, symbol) for name, symbol in bound
                      if symbol not in RUNTIME_WITHOUT_HEADER | NOT_OF_THE_PLATFORM]
        generated = self.build / "declarations/PlatformDeclarations.inc"
        generated.parent.mkdir(parents=True, exist_ok=True)
        generated.write_text("".join(
            f"static_assert(isDeclaredAs(&zib::objc::{name}, &::{symbol}));\n"
            for name, symbol in comparable))
        flags = self.compiler.flags(DEVICE) + [f"-I{HERE}", f"-I{generated.parent}",
                                               "-fsyntax-only"]
        unit = [HERE / "PlatformDeclarations.cpp"]
        self.compiler.compile_all(unit, "declarations", flags)
        # No target of the module, but the only one where BOOL is no bool.
        self.compiler.compile_all(unit, "declarations/mac",
                                  [f"--target={SIGNED_BOOL_TRIPLE}", *flags[1:]])
        flags += self.compiler.precompiled("declarations", flags, ['"PlatformHeaders.h"'])
        self.compiler.compile_all(self.sources, "declarations", flags)
        return (f"{len(comparable)} functions and objects, "
                f"{len(self.sources)} sources after the platform's headers")

    # Hosts in Objective-C++.

    def objective_cpp_hosts(self):
        """Hosts as they are compiled, beside the platform's headers. Those of the device are kept
        for what they ask of the module."""
        examples = sorted(Path("Examples").glob("*/*.mm"))
        host = [HERE / "ObjectiveCppHost.mm"]
        variants = 0
        for target in TARGETS:
            for ownership in ["-fobjc-arc", "-fno-objc-arc"]:
                for order, first in HEADER_ORDERS.items():
                    flags = self.compiler.flags(target) + [
                        "-x", "objective-c++", ownership, "-Wno-unused-parameter", f"-I{HERE}",
                        "-IExamples", "-idirafter", "Examples/Device", *first]
                    is_kept = target is DEVICE and not first
                    flags += ["-O0"] if is_kept else ["-fsyntax-only"]
                    made = self.compiler.compile_all(
                        host + examples * is_kept,
                        f"hosts/{target.triple}{ownership}-{order}", flags)
                    self.hosts += made * is_kept
                    variants += 1
        return f"{len(host + examples)} sources, {variants} variants of the first"

    # Libraries.

    def compile_and_link(self):
        listed = list_entries(HERE / "exports.txt")
        for number, configuration in enumerate(CONFIGURATIONS):
            folder = self.build / str(number)
            flags = self.compiler.flags(configuration.target) + list(configuration.flags)
            if number > 0:
                flags += self.compiler.precompiled(str(number), flags)
            objects = self.compiler.compile_all(self.sources, str(number), flags)
            library = folder / "libZibMessaging.a"
            self.compiler.run("llvm-libtool-darwin", "-static", "-D", "-o", library, *objects)
            self.libraries[configuration] = library
            if configuration.is_machine_code:
                self.require_no_linker_options(library)
            self.images[configuration] = self.link(configuration, folder, listed)
        return f"{len(self.sources)} sources, {len(CONFIGURATIONS)} configurations"

    def require_no_linker_options(self, library):
        headers = self.compiler.run("llvm-objdump", "--macho", "--private-headers", library)
        options = re.findall(r"cmd LC_LINKER_OPTION.*?(?=Load command|\Z)", headers, re.S)
        require([" ".join(re.findall(r"string #\d+ (\S+)", option)) for option in options],
                f"{library} asks the linker for more than it contains")

    def link(self, configuration, folder, listed):
        library = self.libraries[configuration]
        defined = self.compiler.symbols(library, "--extern-only", "--defined-only")
        chosen = {symbol: name for symbol, name in defined.items()
                  if any(is_named_by(entry, name) for entry in listed)}
        require([entry for entry in listed
                 if not any(is_named_by(entry, name) for name in chosen.values())],
                "exports.txt names what the module does not define")
        exports = folder / "exports"
        exports.write_text("\n".join(sorted(chosen)) + "\n")
        image = folder / "libZibMessaging.dylib"
        self.compiler.run(
            "clang++", f"--target={configuration.target.triple}", "-isysroot", self.arguments.sdk,
            "-fuse-ld=lld", "-dynamiclib", "-nostdlib", "-Wl,-undefined,dynamic_lookup",
            "-Wl,-dead_strip", f"-Wl,-exported_symbols_list,{exports}", "-Wl,-fatal_warnings",
            "-install_name", "@rpath/libZibMessaging.dylib", *configuration.flags,
            f"-Wl,-force_load,{library}", "-o", image)
        return image

    def slices(self):
        for configuration in CONFIGURATIONS:
            files = [self.images[configuration]]
            if configuration.is_machine_code:
                files.append(self.libraries[configuration])
            target = configuration.target
            for file in files:
                headers = self.compiler.run("llvm-objdump", "--macho", "--private-headers", file)
                versions = re.findall(r"platform (\S+)\s+sdk \S+\s+minos (\S+)", headers)
                members = max(1, len(re.findall(r"^\S+\.a\(", headers, re.M)))
                wrong = set(versions) - {(target.platform, target.minimum)}
                require([" ".join(version) for version in wrong],
                        f"{file} is not for {target.platform} {target.minimum} alone")
                if len(versions) != members:
                    raise Failure(f"{file}: {members} files, {len(versions)} with a platform")
        return ", ".join(f"{t.triple.split('-')[0]} {t.platform} {t.minimum}" for t in TARGETS)

    # What goes in and out.

    def imports(self):
        allowed = list_entries(HERE / "imports.txt")
        imported = set()
        for configuration, image in self.images.items():
            commands = self.compiler.run("llvm-objdump", "--macho", "--dylibs-used", image)
            require([line.strip() for line in commands.splitlines()[1:]
                     if "libZibMessaging.dylib" not in line], f"{image} links other libraries")
            imported |= set(self.compiler.symbols(image, "--undefined-only").values())
        require(sorted(f"{name}  # why" for name in imported - set(allowed)),
                "imports that imports.txt does not allow")
        require(sorted(set(allowed) - imported), "imports.txt allows what nothing imports")
        return f"{len(imported)} allowed functions and objects"

    def exports(self):
        listed = list_entries(HERE / "exports.txt")
        library = self.libraries[CONFIGURATIONS[0]]
        defined = self.compiler.symbols(library, "--extern-only", "--defined-only")
        declared = self.declared_public(listed, set(defined.values()))
        [host] = self.compiler.compile_all([HERE / "HostUse.cpp"], "host",
                                           self.compiler.flags(DEVICE) + ["-O0"])
        needed = set()
        for file in [host, *self.hosts]:
            symbols = {symbol: name for symbol, name in
                       self.compiler.symbols(file, "--undefined-only").items()
                       if symbol in defined or re.match(r"Zib|zib::", name)}
            require(sorted(name for symbol, name in symbols.items() if symbol not in defined),
                    f"{file} asks for what the module does not define")
            needed |= set(symbols.values())
        for image in self.images.values():
            exported = set(self.compiler.symbols(image, "--extern-only",
                                                 "--defined-only").values())
            require(sorted(name for name in exported
                           if not any(is_named_by(entry, name) for entry in listed)),
                    f"{image} exports what exports.txt does not list")
            require(sorted(exported - declared - needed),
                    "exports that no public header offers to hosts")
            require(sorted((declared | needed) - exported),
                    "public functions that exports.txt does not list")
        return f"{len(exported)} public functions"

    def declared_public(self, listed, defined):
        """What public headers declare and leave to the library: the public members of the module's
        classes, and of those platform values that are exported at all, and free functions."""
        headers = [path for path in sorted(Path("Sources").glob("*/Zib*.h"))
                   if path.stem not in INTERNAL_CLASSES]
        unit = self.build / "PublicHeaders.cpp"
        unit.write_text("".join(f'#include "{path.relative_to("Sources")}"\n'
                                for path in headers))
        symbols = set()
        for scope, prefix in [("Zib", ""), ("zib::", "zib::")]:
            dump = self.compiler.run(
                "clang++", *self.compiler.flags(DEVICE), "-fsyntax-only", "-Xclang",
                "-ast-dump=json", "-Xclang", f"-ast-dump-filter={scope}", unit)
            for declaration in json_values(dump):
                name = prefix + declaration.get("name", "")
                is_public = not prefix or any(each.startswith(name + "::") for each in listed)
                if is_public and name not in INTERNAL_CLASSES:
                    symbols |= left_to_the_library(declaration)
        text = "".join(path.read_text() for path in headers)
        free = {name for name in defined if re.match(r"(?:zib::)?\w+\(", name)
                and re.search(r"\b" + re.escape(name.removeprefix("zib::").split("(")[0]) + r"\(",
                              text)}
        return free | set(self.compiler.readable(sorted(symbols)).values())

    # Size.

    def size(self):
        lines = []
        for configuration, image in self.images.items():
            sections = self.text_sections(image)
            stripped = image.with_suffix(".stripped")
            self.compiler.run("llvm-strip", "-x", image, "-o", stripped)
            total = sum(sections.values())
            lines.append(f"  {configuration.name:26} {total:7} bytes of __TEXT sections, "
                         f"{stripped.stat().st_size:7} in the stripped file")
        sections = self.text_sections(self.images[SMALLEST])
        total = sum(sections.values())
        if total > TEXT_BUDGET:
            detail = ", ".join(f"{name} {size}" for name, size in sections.items())
            raise Failure(f"{total} bytes of __TEXT sections, over the budget of {TEXT_BUDGET}: "
                          f"{detail}")
        return "\n".join([f"{total} of {TEXT_BUDGET} bytes", *lines])

    def text_sections(self, image):
        output = self.compiler.run("llvm-size", "-m", image)
        text = re.search(r"^Segment __TEXT: .*?(?=^Segment |\Z)", output, re.M | re.S).group()
        return {name: int(size) for name, size in re.findall(r"Section (\S+): (\d+)", text)}


# Lines of each platform.

def count_lines(path):
    """Lines of code for both systems, for Apple's alone, and for the others alone."""
    counts = {"both": 0, "apple": 0, "other": 0}
    conditions = []
    for line in path.read_text().splitlines():
        directive = line.strip()
        if directive.startswith("#if"):
            is_apple = "__APPLE__" in directive
            branch = "other" if "!" in directive else "apple"
            conditions.append(branch if is_apple else "both")
        elif directive.startswith("#else") and conditions:
            conditions[-1] = {"apple": "other", "other": "apple"}.get(conditions[-1], "both")
        elif directive.startswith("#endif") and conditions:
            conditions.pop()
        elif directive and not directive.startswith("//"):
            counts[next((each for each in conditions if each != "both"), "both")] += 1
    return counts


def apple_only_table():
    rows = ["| File | Lines |", "| --- | ---: |"]
    for path in source_files():
        lines = count_lines(path)["apple"]
        if lines:
            rows.append(f"| `{path}` | {lines} |")
    return "\n".join(rows)


def executed_table():
    rows = ["| Folder | Files | Lines |", "| --- | ---: | ---: |"]
    for folder in sorted(path for path in Path("Sources").iterdir() if path.is_dir()):
        counts = [count_lines(path) for path in sorted(folder.rglob("*.*"))]
        lines = sum(each["both"] + each["other"] for each in counts)
        rows.append(f"| `{folder}` | {len(counts)} | {lines} |")
    return "\n".join(rows)


def unverified_table():
    rows = ["| File | Lines | What and why |", "| --- | ---: | --- |"]
    for path, pattern, reason in UNVERIFIED:
        lines = Path(path).read_text().splitlines()
        count = sum(1 for line in lines if re.search(pattern, line))
        rows.append(f"| `{path}` | {count} | {reason} |")
    return "\n".join(rows)


def documented_lines():
    text = Path("docs/platforms.md").read_text()
    require([table for table in [apple_only_table(), unverified_table()] if table not in text],
            "docs/platforms.md lacks")
    return "docs/platforms.md is current"


def run_parts(check, without):
    everything = {"compilers", "platform-headers", "library-headers"}
    parts = [
        ("documented lines", set(), documented_lines),
        ("method types", {"compilers", "platform-headers"}, check.method_types),
        ("declarations", everything, check.declarations),
        ("ABI assertions", everything, check.abi_assertions),
        ("Objective-C++ hosts", everything, check.objective_cpp_hosts),
        ("compile and link", everything, check.compile_and_link),
        ("slices", everything, check.slices),
        ("exports", everything, check.exports),
        ("imports", everything, check.imports),
        ("size", everything, check.size),
    ]
    skipped = []
    for name, needs, part in parts:
        missing = sorted(needs & without)
        if missing:
            skipped.append(name)
            print(f"check-apple: {name}: skipped, without {', '.join(missing)}")
            continue
        start = time.monotonic()
        try:
            outcome = part()
        except Failure as failure:
            print(f"check-apple: {name}: FAILED\n{failure}")
            return 1
        print(f"check-apple: {name}: {outcome.splitlines()[0]} ({time.monotonic() - start:.1f} s)")
        print(*outcome.splitlines()[1:], sep="\n", end="\n" if "\n" in outcome else "")
    if skipped and os.environ.get("CI") == "true":
        print("check-apple: FAILED: in CI nothing may be skipped")
        return 1
    return 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--toolchain", type=Path)
    parser.add_argument("--sdk", type=Path)
    parser.add_argument("--library", type=Path)
    parser.add_argument("--without", action="append", default=[])
    parser.add_argument("--lines", action="store_true")
    arguments = parser.parse_args()
    if arguments.lines:
        print(executed_table(), apple_only_table(), unverified_table(), sep="\n\n")
        return 0
    return run_parts(Check(arguments), set(arguments.without))


if __name__ == "__main__":
    sys.exit(main())
