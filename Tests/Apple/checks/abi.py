"""Methods, blocks and the ownership calls as a compiler of Objective-C makes them from the same
declarations, held against what the module makes."""

import re
from dataclasses import dataclass
from pathlib import Path

from checks.outcome import Failure, Outcome, require
from checks.sources import HERE, source_files
from checks.targets import TARGETS


@dataclass(frozen=True)
class PlatformAbi:
    """What the platform's compiler makes of Methods.m."""

    # Class, selector and types of each.
    methods: list
    # The same and all else as declarations for the assertions.
    folder: Path


def method_types(compiler):
    text = "".join(path.read_text() for path in source_files())
    # Each by its name where it is added to a class, or, for interceptors, in their table. All of
    # these take something, which tells their selectors from the names in zib.h.
    registrations = (re.findall(r'\.(?:method|classMethod)\(\s*"', text)
                     + sorted(set(re.findall(r'"zib_\w+:[\w:]*"', text))))
    made = {target: platform_abi(compiler, target) for target in TARGETS}
    for abi in made.values():
        require([selector for _, selector, _ in abi.methods if f'"{selector}"' not in text],
                "Methods.m declares methods that no class of the module gets")
        if len(abi.methods) != len(registrations):
            raise Failure(f"Sources register {len(registrations)} methods, Methods.m declares "
                          f"{len(abi.methods)}: declare each there and assert its encoding")
    return Outcome(f"{len(registrations)} methods",
                   {target: abi.folder for target, abi in made.items()})


def platform_abi(compiler, target):
    folder = compiler.build / "abi" / target.triple
    folder.mkdir(parents=True, exist_ok=True)
    code = compiler.run(
        "clang", f"--target={target.triple}", "-isysroot", compiler.sdk,
        "-x", "objective-c", "-fobjc-arc", "-Wall", "-Wextra", "-Wno-unused-parameter",
        "-Werror", "-S", "-emit-llvm", "-o", "-", HERE / "Methods.m")
    strings = dict(re.findall(r'^@(\S+) = .*?constant \[\d+ x i8\] c"(.*?)\\00"', code, re.M))
    methods = methods_in(code, strings)
    rows = "".join(f'    {{"{a}", "{b}", "{c}"}},\n' for a, b, c in methods)
    (folder / "PlatformAbi.inc").write_text(
        f"inline constexpr PlatformMethod platformMethods[] = {{\n{rows}}};\n"
        + block_declarations(code, strings) + ownership_declarations(code))
    return PlatformAbi(methods, folder)


def methods_in(code, strings):
    methods = []
    for class_name, table in re.findall(r'^@"_OBJC_\$_INSTANCE_METHODS_(\w+)" = (.*)$', code,
                                        re.M):
        entries = re.findall(r"%struct\._objc_method \{ ptr @(\S+), ptr @(\S+),", table)
        methods += [(class_name, strings[name], strings[types]) for name, types in entries]
    return methods


def block_declarations(code, strings):
    descriptor = re.search(
        r'^@"__block_descriptor.*? constant \{ (.*?) \} '
        r"\{ i64 0, i64 (\d+), .*?ptr @(\.str\S*),", code, re.M)
    literal = re.search(r"alloca <\{ (.*?) \}>", code)
    # The only large number that the code stores.
    flags = int(re.search(r"store i32 (-?\d{6,}), ptr", code).group(1)) & 0xFFFFFFFF
    fields, size, signature = descriptor.groups()
    return (f"inline constexpr std::size_t platformBlockSize = {size};\n"
            f'inline constexpr std::string_view platformBlockFields = "{literal.group(1)}";\n'
            f'inline constexpr std::string_view platformDescriptorFields = "{fields}";\n'
            f'inline constexpr std::string_view platformBlockSignature = "{strings[signature]}";\n'
            f"inline constexpr unsigned int platformBlockFlags = {flags}U;\n")


def ownership_declarations(code):
    calls = re.findall(r"^declare (\w+) @llvm\.objc\.(retain|release|autoreleasePool\w+)\((.*?)\)",
                       code.replace("ptr returned", "ptr"), re.M)
    return "".join(
        f'inline constexpr std::string_view {name}Shape = "{result}({arguments})";\n'
        for result, name, arguments in calls)


def assertions(compiler, declared):
    sources = sorted(HERE.glob("*Abi.cpp"))
    for target, folder in declared.items():
        flags = compiler.flags(target) + [f"-I{HERE}", f"-I{folder}", "-fsyntax-only"]
        flags += compiler.precompiled(f"abi/{target.triple}", flags)
        compiler.compile_all(sources, f"abi/{target.triple}", flags)
    return Outcome(f"{len(sources)} units for {len(declared)} targets")
