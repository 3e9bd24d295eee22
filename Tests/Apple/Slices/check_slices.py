"""Runs the slices that check-apple built, converted, in the simulated device, and holds what happens
against the native run.

Called by script/check-slices, which provides the compilers, the emulator and a root of Debian for
arm64. Stops at the first part that fails, since the later ones build on it.
"""

import argparse
import os
import re
import subprocess
import sys
import time
from pathlib import Path

HERE = Path(__file__).parent
sys.path.append(str(HERE.parent))

import benchmark
import bindings
import playing
import seam
import surface_tests
from checks import exports
from checks.compiler import Compiler
from checks.outcome import Failure, require
from checks.targets import DEVICE
from hosts import EXAMPLES, EmulatedHosts, NativeHosts, SliceHosts
from library import LibraryMaker, LinkFailure
from mach_o import NotConvertible
from sample import Sample
from slices import BUILD, SCENARIOS, SLICES, systems


class CheckSlices:
    def __init__(self, arguments):
        self.arguments = arguments
        self.systems = systems(arguments)
        self.maker = LibraryMaker(arguments.toolchain, arguments.library / "v1", BUILD)
        self.native = NativeHosts()
        self.hosts = {target: SliceHosts(system, arguments, BUILD / "hosts" / system.architecture)
                      for target, system in self.systems.items()}
        self.libraries = {}

    def of(self, each):
        return self.hosts[each.target].use(self.libraries[each])

    # The tool.

    def unit_tests(self):
        result = subprocess.run([sys.executable, "-m", "unittest", "discover", "-s", HERE, "-p",
                                 "*_test.py"], text=True, capture_output=True,
                                env=os.environ | {"ZIB_TOOLCHAIN": str(self.arguments.toolchain)})
        if result.returncode != 0:
            raise Failure(result.stderr)
        return re.search(r"Ran (\d+ tests)", result.stderr)[1]

    def sample(self):
        tests = []
        for target, system in self.systems.items():
            sample = Sample(self.arguments, self.maker, target, system, BUILD / "sample")
            tests.append(f"{sample.check()} on {system.architecture}")
        return ", ".join(tests)

    # The slices.

    def convert(self):
        lines = []
        for each in SLICES:
            start = time.monotonic()
            system = self.systems[each.target]
            self.libraries[each] = self.maker.make(each.image, system, each.folder)
            self.require_read_only_text(self.libraries[each], system)
            file = self.maker.read(each.image)
            lines.append(f"  {each.name:35} {len(file.pointers)} pointers, {len(file.imports)} "
                         f"imports, {len(file.exports)} exports, {len(file.functions)} functions "
                         f"({time.monotonic() - start:.1f} s)")
        return "\n".join([f"{len(SLICES)} slices", *lines])

    def require_read_only_text(self, library, system):
        """Also while the loader works: no relocation is in text, and a page of the device's size
        holds text or data, never both."""
        output = self.maker.run("llvm-readelf", "--wide", "--program-headers", "--dynamic", library)
        loads = re.findall(r"^ +LOAD +\S+ (\S+) \S+ \S+ (\S+) (.{3}) (\S+)$", output, re.M)
        require([f"{address}: {flags}" for address, _, flags, _ in loads
                 if "W" in flags and "E" in flags] + ["TEXTREL"] * ("TEXTREL" in output),
                f"{library} writes to its text")
        require([f"{address}: {page}" for address, _, _, page in loads
                 if int(page, 16) != system.page], f"{library} is not made for pages of "
                f"{system.page:#x} bytes")

    def build_hosts(self):
        self.native.make()
        for target, hosts in self.hosts.items():
            hosts.make(next(self.libraries[each] for each in SLICES if each.target is target))
        return f"{len(self.hosts)} systems"

    def bound(self):
        """What the loader binds imports to is what bindings.txt says, and the host takes nothing of
        the module's from anywhere but the slice."""
        listed = bindings.listed(HERE / "bindings.txt")
        seen = set()
        for each in SLICES:
            library = self.libraries[each]
            file = self.maker.read(each.image)
            hosts = self.of(each)
            _, _, errors = hosts.run(hosts.player, SCENARIOS[0], environment={
                "LD_DEBUG": "bindings", "LD_BIND_NOW": "1"})
            log = errors.decode(errors="replace")
            try:
                table = bindings.of_slice(file, library, self.maker, hosts.system,
                                          hosts.program(hosts.player), log)
            except bindings.Unbound as symbol:
                raise Failure(f"{each.name}: an import that is bound to nothing: {symbol}\n"
                              + log[-1000:])
            require(sorted(f"{symbol}: {provider}" for symbol, provider in table.items()
                           if not bindings.is_listed(symbol, provider, listed)),
                    f"{each.name}: imports that are not bound as bindings.txt says")
            seen |= set(table.items())
            self.require_module_from(library, hosts, log)
        require([f"{symbol}: {provider}" for symbol, provider in bindings.unused(listed, seen)],
                "bindings.txt has what nothing imports")
        return f"{len({symbol for symbol, _ in seen})} imports, each as listed; the module from the slice alone"

    def require_module_from(self, library, hosts, log):
        for name in hosts.programs:
            program = hosts.program(name)
            own = self.maker.run("llvm-nm", "--demangle", "--defined-only",
                                 "--just-symbol-name", program)
            classes = re.findall(r"^(?:vtable for )?Zib[A-Z]\w+::.*$", own, re.M)
            require(sorted({*classes} | exports.listed() & set(own.split())),
                    f"{program} has symbols of the module itself")
        strangers = {f"{symbol} from {target}"
                     for source, symbols in bindings.of_process(log).items()
                     for symbol, target in symbols.items()
                     if symbol.startswith("zib_") and target != library.name}
        require(sorted(strangers), f"{hosts.program(hosts.player)} has the module from elsewhere")

    # What runs in them.

    def scenarios(self):
        shipped = [path for path in SCENARIOS if not seam.needs_seam(path)]
        compiler = Compiler(self.arguments.toolchain, self.arguments.sdk, self.arguments.library,
                            Path("build/apple"))
        lines = self.play_in(SLICES, shipped)
        others = [path for path in SCENARIOS if path not in shipped]
        slices = [seam.with_seam(each, compiler) for each in SLICES]
        for each in slices:
            self.libraries[each] = self.maker.make(each.image, self.systems[each.target],
                                                   each.folder)
        lines += self.play_in(slices, others)
        return "\n".join([f"{len(shipped)} and {len(others)} scenarios", *lines])

    def play_in(self, slices, scenarios):
        expected = self.native.play(scenarios)
        entries = expected[1].count(b"\n")
        lines = []
        for each in slices:
            start = time.monotonic()
            try:
                playing.compare(expected, self.of(each).play(scenarios))
            except playing.Difference as difference:
                raise Failure(f"{each.name}: {difference}")
            lines.append(f"  {each.name:41} {len(scenarios)} of {len(scenarios)} identical, "
                         f"{entries} entries ({time.monotonic() - start:.1f} s)")
        return lines

    def tests(self):
        counts = {surface_tests.run(self.of(each), each.name) for each in SLICES}
        return f"{', '.join(map(str, sorted(counts)))} tests, {len(SLICES)} slices"

    def examples(self):
        for name in EXAMPLES:
            expected = self.native.run(name)
            for each in SLICES:
                actual = self.of(each).run(name)
                try:
                    playing.compare(expected, actual)
                except playing.Difference as difference:
                    raise Failure(f"{name}, {each.name}: {difference}")
        return f"{len(EXAMPLES)} hosts, {len(SLICES)} slices"

    def linux_on_arm64(self):
        """The module as it is built for Linux there, where char has no sign; some of it with the pages of
        devices."""
        system, build = self.systems[DEVICE], BUILD / "hosts" / "arm64-linux"
        demo = sorted(Path("Examples").glob("*.json"))
        EmulatedHosts(system, self.arguments, build).make()
        for scenarios, page in [(SCENARIOS, None), (demo, system.page)]:
            hosts = EmulatedHosts(system, self.arguments, build, page)
            try:
                playing.compare(self.native.play(scenarios), hosts.play(scenarios))
            except playing.Difference as difference:
                raise Failure(f"pages of {page or 4096} bytes: {difference}")
        return f"{len(SCENARIOS)} scenarios identical, {len(demo)} also in pages of {system.page} bytes"


def run_parts(check):
    parts = [
        ("unit tests of the tool", check.unit_tests),
        ("a library with one of everything", check.sample),
        ("conversion", check.convert),
        ("hosts", check.build_hosts),
        ("bindings", check.bound),
        ("examples", check.examples),
        ("tests through the surfaces", check.tests),
        ("scenarios", check.scenarios),
        ("Linux on arm64", check.linux_on_arm64),
    ]
    for name, part in parts:
        start = time.monotonic()
        try:
            outcome = part()
        except (Failure, LinkFailure, NotConvertible) as failure:
            print(f"check-slices: {name}: FAILED\n{failure}")
            return 1
        print(f"check-slices: {name}: {outcome.splitlines()[0]} ({time.monotonic() - start:.1f} s)",
              flush=True)
        print(*outcome.splitlines()[1:], sep="\n", end="\n" if "\n" in outcome else "")
    return 0


def main():
    parser = argparse.ArgumentParser()
    for option in ["--toolchain", "--sdk", "--library", "--tools", "--arm64-root"]:
        parser.add_argument(option, type=Path, required=True)
    parser.add_argument("--self-test", action="store_true")
    parser.add_argument("--benchmark", action="store_true")
    arguments = parser.parse_args()
    missing = [str(each.image) for each in SLICES if not each.image.exists()]
    if missing:
        print(f"check-slices: {', '.join(missing)} missing: run script/check-apple first")
        return 1
    check = CheckSlices(arguments)
    if arguments.benchmark:
        check.convert()
        print(*benchmark.table(check.libraries), sep="\n")
        return 0
    status = run_parts(check)
    if status == 0 and (arguments.self_test or os.environ.get("CI") == "true"):
        from test_slices import self_test
        status = self_test(arguments, check)
    return status


if __name__ == "__main__":
    sys.exit(main())
