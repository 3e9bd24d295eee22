"""The platform's declarations of what the module calls, and the module's own."""

import re
from pathlib import Path

from checks.outcome import Failure, Outcome, require
from checks.sources import HERE, source_files, units
from checks.targets import DEVICE, SIGNED_BOOL_TRIPLE

NATIVE = Path("Sources/ZibPlatform/ObjectiveC/Native.h")

# Part of the language's ownership rules and in no header: PlatformAbi.cpp holds them against the
# calls that the compiler makes.
RUNTIME_WITHOUT_HEADER = {"objc_retain", "objc_release", "objc_autoreleasePoolPush",
                          "objc_autoreleasePoolPop"}

# Of GCC's runtime.
NOT_OF_THE_PLATFORM = {"objc_msg_lookup", "__objc_msg_forward2"}

# A declaration that is given a symbol by hand.
ASM_LABEL = r"[\w)\]]\s+(?:asm|__asm__)\s*\(\s*\"_?\w+\"|ZIB_(?:SYMBOL|NOTHROW)"


def declarations(compiler):
    require([str(path) for path in source_files()
             if path != NATIVE and re.search(ASM_LABEL, path.read_text())],
            "symbols are bound outside Native.h, where nothing compares them")
    comparable = comparable_declarations()
    generated = compiler.build / "declarations/PlatformDeclarations.inc"
    generated.parent.mkdir(parents=True, exist_ok=True)
    generated.write_text("".join(
        f"static_assert(isDeclaredAs(&zib::objc::{name}, &::{symbol}));\n"
        for name, symbol in comparable))
    flags = compiler.flags(DEVICE) + [f"-I{HERE}", f"-I{generated.parent}", "-fsyntax-only"]
    unit = [HERE / "PlatformDeclarations.cpp"]
    compiler.compile_all(unit, "declarations", flags)
    compiler.compile_all(unit, "declarations/mac",
                         [f"--target={SIGNED_BOOL_TRIPLE}", *flags[1:]])
    flags += compiler.precompiled("declarations", flags, ['"PlatformHeaders.h"'])
    compiler.compile_all(units(), "declarations", flags)
    return Outcome(f"{len(comparable)} functions and objects, "
                   f"{len(units())} sources after the platform's headers")


def comparable_declarations():
    """Our name and the platform's symbol of each declaration that a header of the platform has."""
    native = re.sub(r"^ *(#|//).*$", "", NATIVE.read_text(), flags=re.M)
    # A pointer to a function has its name in parentheses.
    bound = re.findall(r"(\w+)\)?(?:\([^;]*\)|\[\d+\])?\s+ZIB_(?:SYMBOL|NOTHROW)\((\w+)\);", native)
    if len(bound) != native.count("ZIB_SYMBOL(") + native.count("ZIB_NOTHROW("):
        raise Failure("Native.h binds a symbol in a way that the check cannot read")
    return [(name, symbol) for name, symbol in bound
            if symbol not in RUNTIME_WITHOUT_HEADER | NOT_OF_THE_PLATFORM]
