"""What a dynamic library of the module takes from the system."""

from checks.lists import list_entries
from checks.outcome import Outcome, require
from checks.sources import HERE


def imports(compiler, builds):
    allowed = list_entries(HERE / "imports.txt")
    imported = set()
    for build in builds:
        commands = compiler.run("llvm-objdump", "--macho", "--dylibs-used", build.image)
        require([line.strip() for line in commands.splitlines()[1:]
                 if "libZibMessaging.dylib" not in line], f"{build.image} links other libraries")
        imported |= set(compiler.symbols(build.image, "--undefined-only").values())
    require(sorted(f"{name}  # why" for name in imported - set(allowed)),
            "imports that imports.txt does not allow")
    require(sorted(set(allowed) - imported), "imports.txt allows what nothing imports")
    return Outcome(f"{len(imported)} allowed functions and objects")
