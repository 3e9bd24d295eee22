"""What the callbacks cost in the simulator's slices, in instructions as callgrind counts them, beside
the module as it is built for Linux. Sending a message is dearer here than on a phone, as a shim looks
the method up each time, so the figures are for comparing slices with each other over time."""

import re
import subprocess
import tempfile
from pathlib import Path

from hosts import jobs, quietly
from slices import BUILD, SIMULATOR, SLICES

TARGET = "zib-bench-surface"
PROGRAM = Path("Benchmarks") / TARGET


def build(folder, *settings):
    quietly("cmake", "-G", "Ninja", "-B", folder, "-DCMAKE_BUILD_TYPE=Release",
            "-DZIB_BUILD_BENCHMARKS=ON", *settings)
    quietly("cmake", "--build", folder, *jobs(), "--target", TARGET)
    return folder / PROGRAM


def count(program, library=None):
    """{case: instructions for one call}."""
    environment = ["env", f"LD_LIBRARY_PATH={library.parent.absolute()}"] if library else []
    with tempfile.TemporaryDirectory() as folder:
        calls = subprocess.run(
            [*environment, "valgrind", "--tool=callgrind", "--instr-atstart=no",
             f"--callgrind-out-file={folder}/counts", program],
            text=True, check=True, capture_output=True).stdout
        totals = {}
        for path in Path(folder).iterdir():
            text = path.read_text()
            name = re.search(r"^desc: Trigger: Client Request: (.+)$", text, re.M)
            if name:
                totals[name[1]] = int(re.search(r"^totals: (\d+)", text, re.M)[1])
    return {name: totals[name] // int(times)
            for name, times in (line.split("\t") for line in calls.splitlines())}


def table(libraries):
    """`libraries` by their slices. The lines of a table."""
    slices = [each for each in SLICES if each.target is SIMULATOR]
    program = build(BUILD / "benchmark", "-DZIB_INSTALL=OFF", "-DZIB_BUILD_TESTS=OFF",
                    f"-DZIB_SLICE={libraries[slices[0]].absolute()}")
    columns = {"natively": count(build(Path("build/release")))}
    columns |= {each.name: count(program, libraries[each]) for each in slices}
    lines = [f"{'instructions for one callback':32}" + "".join(f"{name:>37}" for name in columns)]
    for case, native in columns["natively"].items():
        cells = [f"{counts[case]:>28} {counts[case] / native:>7.2f}x" for counts in columns.values()]
        lines.append(f"{case:32}" + "".join(cells))
    return lines
