"""What a dynamic library of the module offers: the functions of zib.h, and nothing else."""

import re
from pathlib import Path

from checks.outcome import Outcome, require
from checks.sources import HERE
from checks.targets import DEVICE

LIST = HERE / "exports.txt"


def listed():
    return set(LIST.read_text().split())


def declared():
    header = re.sub(r"//.*", "", Path("Sources/ZibC/zib.h").read_text())
    return set(re.findall(r"^ZIB_API [^(;]*?(\w+)\(", header, re.M))


def exports(compiler, builds, hosts):
    require(sorted(declared() - listed()), f"functions of zib.h that {LIST} does not list")
    require(sorted(listed() - declared()), f"{LIST} lists what zib.h does not declare")
    for build in builds:
        exported = compiler.symbols(build.image, "--extern-only", "--defined-only").values()
        require(sorted(set(exported) ^ listed()), f"{build.image} exports other than {LIST}")
    require_that_hosts_link(compiler, builds[0].library, hosts)
    return Outcome(f"{len(listed())} functions, all of zib.h")


def require_that_hosts_link(compiler, library, hosts):
    """Hosts in C++ and Objective-C++, which link the static library."""
    defined = compiler.symbols(library, "--extern-only", "--defined-only")
    [host] = compiler.compile_all([HERE / "HostUse.cpp"], "host", compiler.flags(DEVICE) + ["-O0"])
    for file in [host, *hosts]:
        needed = compiler.symbols(file, "--undefined-only")
        require(sorted(name for symbol, name in needed.items()
                       if symbol not in defined and re.match(r"Zib|zib", name)),
                f"{file} asks for what the module does not define")
