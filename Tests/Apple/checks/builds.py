"""The module as a static library and as a linked image, for each configuration."""

import re
from dataclasses import dataclass
from pathlib import Path

from checks import exports
from checks.outcome import Failure, Outcome, require
from checks.sources import units
from checks.targets import CONFIGURATIONS, TARGETS, Configuration


@dataclass(frozen=True)
class Build:
    configuration: Configuration
    library: Path
    image: Path

    @property
    def machine_code(self):
        """The files that hold code rather than what a linker would make code of."""
        return [self.image, self.library] if self.configuration.is_machine_code else [self.image]


def compile_and_link(compiler):
    builds = [build(compiler, configuration) for configuration in CONFIGURATIONS]
    return Outcome(f"{len(units())} sources, {len(builds)} configurations", builds)


def build(compiler, configuration):
    folder = configuration.folder
    flags = compiler.flags(configuration.target) + list(configuration.flags)
    # The first does without, which sees a missing #include.
    if configuration != CONFIGURATIONS[0]:
        flags += compiler.precompiled(folder, flags)
    objects = compiler.compile_all(units(), folder, flags)
    library = compiler.build / folder / "libZibMessaging.a"
    compiler.run("llvm-libtool-darwin", "-static", "-D", "-o", library, *objects)
    if configuration.is_machine_code:
        require_no_linker_options(compiler, library)
    return Build(configuration, library, link(compiler, configuration, library))


def require_no_linker_options(compiler, library):
    headers = compiler.run("llvm-objdump", "--macho", "--private-headers", library)
    options = re.findall(r"cmd LC_LINKER_OPTION.*?(?=Load command|\Z)", headers, re.S)
    require([" ".join(re.findall(r"string #\d+ (\S+)", option)) for option in options],
            f"{library} asks the linker for more than it contains")


def link(compiler, configuration, library):
    defined = compiler.symbols(library, "--extern-only", "--defined-only")
    require(sorted(exports.listed() - set(defined.values())),
            f"{exports.LIST} names what the module does not define")
    image = library.parent / "libZibMessaging.dylib"
    return link_image(compiler, configuration, [f"-Wl,-force_load,{library}"], exports.listed(),
                      image)


def link_image(compiler, configuration, inputs, exported, image):
    names = image.parent / "exports"
    names.write_text("".join(f"_{name}\n" for name in sorted(exported)))
    compiler.run(
        "clang++", f"--target={configuration.target.triple}", "-isysroot", compiler.sdk,
        "-fuse-ld=lld", "-dynamiclib", "-nostdlib", "-Wl,-undefined,dynamic_lookup",
        # Functions that are alike are folded, as Apple's linker does of its own accord.
        "-Wl,-dead_strip", "-Wl,--icf=safe", f"-Wl,-exported_symbols_list,{names}",
        "-Wl,-fatal_warnings",
        "-install_name", "@rpath/libZibMessaging.dylib", *configuration.flags, *inputs, "-o", image)
    return image


def slices(compiler, builds):
    for build in builds:
        for file in build.machine_code:
            require_platform(compiler, file, build.configuration.target)
    return Outcome(", ".join(f"{t.triple.split('-')[0]} {t.platform} {t.minimum}" for t in TARGETS))


def require_platform(compiler, file, target):
    headers = compiler.run("llvm-objdump", "--macho", "--private-headers", file)
    versions = re.findall(r"platform (\S+)\s+sdk \S+\s+minos (\S+)", headers)
    members = max(1, len(re.findall(r"^\S+\.a\(", headers, re.M)))
    require([" ".join(version) for version in set(versions) - {(target.platform, target.minimum)}],
            f"{file} is not for {target.platform} {target.minimum} alone")
    if len(versions) != members:
        raise Failure(f"{file}: {members} files, {len(versions)} with a platform")
