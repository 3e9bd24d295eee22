"""What a dynamic library of the module offers: what the public headers declare, and no more."""

import json
import re
from pathlib import Path

from checks.lists import is_named_by, list_entries
from checks.outcome import Outcome, require
from checks.sources import HERE
from checks.targets import DEVICE

# Classes with a header of their own that are not for hosts.
INTERNAL_CLASSES = {"ZibSwizzleManager"}


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


def exports(compiler, builds, hosts):
    listed = list_entries(HERE / "exports.txt")
    defined = compiler.symbols(builds[0].library, "--extern-only", "--defined-only")
    declared = declared_public(compiler, listed, set(defined.values()))
    needed = needed_by_hosts(compiler, defined, hosts)
    for build in builds:
        exported = set(compiler.symbols(build.image, "--extern-only", "--defined-only").values())
        require(sorted(name for name in exported
                       if not any(is_named_by(entry, name) for entry in listed)),
                f"{build.image} exports what exports.txt does not list")
        require(sorted(exported - declared - needed),
                "exports that no public header offers to hosts")
        require(sorted((declared | needed) - exported),
                "public functions that exports.txt does not list")
    return Outcome(f"{len(exported)} public functions")


def needed_by_hosts(compiler, defined, hosts):
    """What hosts in C++ and Objective-C++ ask of the library."""
    [host] = compiler.compile_all([HERE / "HostUse.cpp"], "host", compiler.flags(DEVICE) + ["-O0"])
    needed = set()
    for file in [host, *hosts]:
        symbols = {symbol: name
                   for symbol, name in compiler.symbols(file, "--undefined-only").items()
                   if symbol in defined or re.match(r"Zib|zib::", name)}
        require(sorted(name for symbol, name in symbols.items() if symbol not in defined),
                f"{file} asks for what the module does not define")
        needed |= set(symbols.values())
    return needed


def declared_public(compiler, listed, defined):
    """What public headers declare and leave to the library: the public members of the module's
    classes, and of those platform values that are exported at all, and free functions."""
    headers = [path for path in sorted(Path("Sources").glob("*/Zib*.h"))
               if path.stem not in INTERNAL_CLASSES]
    unit = compiler.build / "PublicHeaders.cpp"
    unit.write_text("".join(f'#include "{path.relative_to("Sources")}"\n'
                            for path in headers))
    symbols = set()
    for scope, prefix in [("Zib", ""), ("zib::", "zib::")]:
        dump = compiler.run(
            "clang++", *compiler.flags(DEVICE), "-fsyntax-only", "-Xclang",
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
    return free | set(compiler.readable(sorted(symbols)).values())
