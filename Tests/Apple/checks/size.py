"""How large the module is, and how large it may be."""

import re

from checks.outcome import Failure, Outcome
from checks.targets import SMALLEST

TEXT_BUDGET = 98 * 1024


def size(compiler, builds):
    sections = {build: text_sections(compiler, build.image) for build in builds}
    [smallest] = [build for build in builds if build.configuration == SMALLEST]
    total = sum(sections[smallest].values())
    if total > TEXT_BUDGET:
        detail = ", ".join(f"{name} {size}" for name, size in sections[smallest].items())
        raise Failure(f"{total} bytes of __TEXT sections, over the budget of {TEXT_BUDGET}: "
                      f"{detail}")
    return Outcome(f"{total} of {TEXT_BUDGET} bytes", details=tuple(
        f"  {build.configuration.name:35} {sum(sections[build].values()):7} bytes of __TEXT "
        f"sections, {stripped_size(compiler, build.image):7} in the stripped file"
        for build in builds))


def stripped_size(compiler, image):
    stripped = image.with_suffix(".stripped")
    compiler.run("llvm-strip", "-x", image, "-o", stripped)
    return stripped.stat().st_size


def text_sections(compiler, image):
    output = compiler.run("llvm-size", "-m", image)
    text = re.search(r"^Segment __TEXT: .*?(?=^Segment |\Z)", output, re.M | re.S).group()
    return {name: int(size) for name, size in re.findall(r"Section (\S+): (\d+)", text)}
