"""A test of the check itself: plants one mistake at a time and sees the slices turn red, for that
reason and no other. Called after a check that passed: what that has built is used again."""

import contextlib
import os
import re
import shutil
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

import playing
from checks import builds
from checks.compiler import Compiler
from checks.outcome import Failure
from checks.targets import CONFIGURATIONS, DEVICE
from elf import THREAD_LOCALS
from hosts import EXAMPLES
from library import LinkFailure
from sample import Sample
from slices import SLICES

# A host that sends and receives enough to see a message that goes wrong.
HOST = EXAMPLES[0]


class NotSeen(Exception):
    """What happened instead."""


def seen(output, *expected):
    missing = [each for each in expected if each not in output]
    if missing:
        raise NotSeen(f"not said: {missing}\n{output}")
    return " ".join(expected)


# Mistakes in the conversion, in the library that has one of everything.

def without_first_values(assembly):
    """Thread-local variables all begin as nothing."""
    def zeros(match):
        return match[1] + ", ".join("0" for _ in match[2].split(","))

    changed, count = re.subn(rf"({THREAD_LOCALS}:\n\.byte )(.+)", zeros, assembly)
    assert count == 1
    return changed


def without_unwind_entry(assembly):
    """The entry of one function is gone."""
    label = assembly.index('"sample_passes":')
    start = assembly.index(".cfi_startproc", label)
    end = assembly.index(".cfi_endproc", start) + len(".cfi_endproc")
    kept = [line for line in assembly[start:end].splitlines() if not line.startswith(".cfi_")]
    return assembly[:start] + "\n".join(kept) + assembly[end:]


def with_nothing_to_bind_to(assembly):
    assert '"fputs"' in assembly
    return assembly.replace('"fputs"', '"planted"')


@dataclass(frozen=True)
class InSample:
    name: str
    change: object
    expected: tuple

    def plant(self, check, folder):
        said = []
        for target, system in check.systems.items():
            sample = Sample(check.arguments, check.maker, target, system, folder)
            library = check.maker.make(sample.image(), system, sample.folder, self.change)
            try:
                _, output = sample.run(sample.host(library))
            except LinkFailure as failure:
                output = str(failure)
            said.append(f"{system.architecture}: {seen(output, *self.expected)}")
        return "; ".join(said)


# Mistakes in the module, built for the device anew.

@contextlib.contextmanager
def changed_tree(folder, path, old, new):
    """A copy of the sources with one change in it, as the working folder."""
    shutil.copytree("Sources", folder / "Sources")
    shutil.copytree("Tests/Apple", folder / "Tests/Apple")
    shutil.copytree("build/apple", folder / "build/apple", ignore=shutil.ignore_patterns(
        "hosts", "declarations", "abi", "[1-9]"))
    text = (folder / path).read_text()
    assert text.count(old) == 1, f"{old!r} is to be planted at one place"
    (folder / path).write_text(text.replace(old, new))
    former = os.getcwd()
    os.chdir(folder)
    try:
        yield
    finally:
        os.chdir(former)


@dataclass(frozen=True)
class InModule:
    name: str
    path: str
    old: str
    new: str
    expected: tuple

    def plant(self, check, folder):
        arguments = check.arguments
        with changed_tree(folder, self.path, self.old, self.new):
            compiler = Compiler(arguments.toolchain, arguments.sdk, arguments.library,
                                Path("build/apple"))
            image = builds.build(compiler, CONFIGURATIONS[0]).image.absolute()
        library = check.maker.make(image, check.systems[DEVICE], folder / "slice")
        hosts = check.hosts[DEVICE].use(library)
        try:
            playing.compare(check.native.run(HOST), hosts.run(HOST))
        except playing.Difference as difference:
            return seen(str(difference), *self.expected)
        raise NotSeen("the slice plays as the native module does")


# Mistakes in how hosts and slices are put together.

@dataclass(frozen=True)
class ModuleFromElsewhere:
    name: str = "a host that brings the module itself"

    def plant(self, check, folder):
        try:
            check.require_module_from(Path("libZibMessaging.so"), check.native, "")
        except Failure as failure:
            return seen(str(failure), "has symbols of the module itself")
        raise NotSeen("nothing was said")


@dataclass(frozen=True)
class WritableText:
    name: str = "text that is writable"

    def plant(self, check, folder):
        [each, *_] = SLICES
        system = check.systems[each.target]
        library = check.maker.make(each.image, system, folder,
                                   lambda text: text.replace('__TEXT, "ax"', '__TEXT, "awx"'))
        script = folder / "image.ld"
        script.write_text(script.read_text().replace("image__TEXT PT_LOAD FLAGS(5)",
                                                     "image__TEXT PT_LOAD FLAGS(7)"))
        check.maker.link(library, system, folder)
        try:
            check.require_read_only_text(library, system)
        except Failure as failure:
            return seen(str(failure), "writes to its text")
        raise NotSeen("nothing was said")


PLANTS = [
    InSample("a dropped thread-local initialiser", without_first_values,
             ("ThreadLocal.BeginsWithItsFirstValueInEachThread",)),
    InSample("a missing unwind entry", without_unwind_entry, ("terminate called",)),
    InSample("an import bound to nothing", with_nothing_to_bind_to,
             ("undefined reference", "planted")),
    WritableText(),
    ModuleFromElsewhere(),
    InModule("a message sent through a variadic type", "Sources/ZibPlatform/ObjectiveC/Send.h",
             "  using Function = Result(objc::id, objc::SEL, Arguments...);\n"
             "  return objc::functionFor",
             "  using Function = Result(objc::id, objc::SEL, ...);\n  return objc::functionFor",
             ("is the first that differs", "uncaught target signal")),
    InModule("a BOOL of the wrong size", "Sources/ZibPlatform/ObjectiveC/Native.h",
             "using BOOL = bool;", "using BOOL = int;",
             ('was sent as "i16@0:8", but the method is "B16@0:8"',)),
]


def self_test(arguments, check):
    mistakes = 0
    for each in PLANTS:
        start = time.monotonic()
        with tempfile.TemporaryDirectory(prefix="check-slices-") as folder:
            try:
                outcome = f"red: {each.plant(check, Path(folder))}"
            except NotSeen as problem:
                mistakes += 1
                outcome = f"NOT SEEN: {problem}"
        print(f"check-slices: self-test: {each.name}: {outcome} "
              f"({time.monotonic() - start:.1f} s)", flush=True)
    return 1 if mistakes else 0
