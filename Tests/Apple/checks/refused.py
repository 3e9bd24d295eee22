"""What hosts and cores cannot write, by the lists of Tests/Refused and, for what only a platform's
compiler knows, of this folder."""

import re
from pathlib import Path

from checks.outcome import Failure, Outcome, require
from checks.sources import HERE
from checks.targets import DEVICE, SIGNED_POINTERS

LISTS = [Path("Tests/Refused/refused.txt"), HERE / "refused.txt"]
LINE = re.compile(r"([a-z0-9-]+) *\| *([a-z ]*[a-z]) *\| *(.*)")


def entries():
    """The place of a line, what the compiler has to say of it, and its expression."""
    for path in LISTS:
        for number, line in enumerate(path.read_text().splitlines(), 1):
            if line.startswith("#"):
                continue
            parts = LINE.fullmatch(line)
            if not parts:
                raise Failure(f"{path}:{number}: a line is a name, what the compiler says and an "
                              "expression")
            yield f"{path}:{number}", parts[2], parts[3]


def refused(compiler):
    listed = list(entries())
    source = compiler.build / "refused.mm"
    source.parent.mkdir(parents=True, exist_ok=True)
    text = '#include "Tests/Refused/Everything.h"\n#import <Foundation/Foundation.h>\n#include "ZibPlatform/ObjectiveC/Bridge.h"\n'
    for index, (place, _, expression) in enumerate(listed):
        path, number = place.split(":")
        text += (f'#line {number} "{path}"\n'
                 f"void probe{index}() {{ static_cast<void>({expression}); }}\n")
    source.write_text(text)
    try:
        compiler.run("clang++", *compiler.flags(DEVICE), "-x", "objective-c++", "-fobjc-arc", "-I.",
                     f"-I{HERE}", "-ferror-limit=0", "-fsyntax-only", source)
        said = ""
    except Failure as failure:
        said = str(failure)
    wrong = []
    for place, expected, expression in listed:
        errors = re.findall(re.escape(place) + r":\d+: error: (.*)", said)
        if expected == "taken":
            wrong += [f"{place}: {expression} is to compile: {error}" for error in errors]
        elif not any(expected in error for error in errors):
            wrong.append(f'{place}: {expression} is to be refused with "{expected}": {errors}')
    require(wrong, "what compilers refuse, and what they take")
    return Outcome(f"{len(listed)} expressions")


def architecture(compiler):
    """Where blocks are signed the module says that it is not to be built."""
    source = "Sources/ZibPlatform/ObjectiveC/Block.h"
    try:
        compiler.run("clang++", *compiler.flags(SIGNED_POINTERS), "-x", "c++", "-fsyntax-only", source)
        said = []
    except Failure as failure:
        said = re.findall(r"error: (.*)", str(failure))
    if not any("cannot be built for arm64e" in error for error in said):
        raise Failure(f"{source} is to be refused for {SIGNED_POINTERS.triple}: {said}")
    return Outcome(SIGNED_POINTERS.triple)
