"""What each import of a slice is bound to, as the loader reports it, and whether it is meant to."""

import re
from fnmatch import fnmatchcase

from elf import PREFIX_OF_SHIMS, c_name
from mach_o import NotConvertible

SHIM, LIBRARY_OF_THE_IMAGE, HOST = "shim {}", "libc++.a", "the host"
BINDING = re.compile(r"binding file (\S+) \[\d+\] to (\S+) \[\d+\]: normal symbol `(\S+?)'")


class Unbound(Exception):
    """Imports that nothing on Linux has."""


def listed(path):
    """[(import, what it may be bound to)]. A line in brackets names what those below are bound to; a `*` in
    an import is any text."""
    pairs, provider = [], None
    for number, line in enumerate(path.read_text().splitlines(), 1):
        line = line.split("#")[0].strip()
        if line.startswith("["):
            provider = line.strip("[]")
        elif line and provider is None:
            raise NotConvertible(f"{path}:{number}: an import before any [library]")
        elif line:
            pairs.append((line, provider))
    return pairs


def is_listed(symbol, provider, pairs):
    return any(provider == allowed and fnmatchcase(symbol, pattern) for pattern, allowed in pairs)


def unused(pairs, table):
    """Lines that no import of `table`, pairs of an import and what it is bound to, needs."""
    return [pair for pair in pairs if not any(is_listed(*each, [pair]) for each in table)]


def of_process(log):
    """{file: {symbol: file}} of what LD_DEBUG=bindings logs, by the files' names."""
    bound = {}
    for source, target, symbol in BINDING.findall(log):
        bound.setdefault(source.rsplit("/", 1)[-1], {})[symbol] = target.rsplit("/", 1)[-1]
    return bound


def of_slice(file, library, maker, system, program, log):
    """{import: what it is bound to}. What the loader does not report is inside of the library."""
    external = {symbol: HOST if target == program.name else target
                for symbol, target in of_process(log).get(library.name, {}).items()}
    inside = {}
    for shim in maker.compiled_shims(system):
        for name in maker.run("llvm-nm", "--defined-only", "--just-symbol-name", shim).split():
            inside[name.removeprefix(PREFIX_OF_SHIMS)] = SHIM.format(shim.stem.split("_")[0])
    undefined = set(re.findall(
        r" U (\w+)", maker.run("llvm-nm", "--dynamic", "--undefined-only", library)))
    table = {}
    for symbol in map(c_name, file.imports):
        if symbol in inside:
            table[symbol] = inside[symbol]
        elif symbol in external:
            table[symbol] = external[symbol]
        elif symbol in undefined:
            raise Unbound(symbol)
        else:
            table[symbol] = LIBRARY_OF_THE_IMAGE
    return table
