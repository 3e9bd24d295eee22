"""The slices with a seam: the objects of the shipped ones, linked with what lets a scenario reach behind
zib.h. A shipped slice has none, so those few scenarios that need it are played with these."""

import json
import re
from dataclasses import replace
from pathlib import Path

from checks import builds, exports
from slices import BUILD

FOLDER = Path("Simulator/Seam")
FUNCTIONS = set(re.findall(r"\bzib_testing_\w+(?=\()", (FOLDER / "zib_testing.h").read_text()))


def with_seam(each, compiler):
    """The slice, linked anew."""
    configuration = each.configuration
    folder = BUILD / "seam" / configuration.folder
    folder.mkdir(parents=True, exist_ok=True)
    flags = [*compiler.flags(configuration.target), *configuration.flags, "-I."]
    objects = compiler.compile_all(sorted(FOLDER.glob("*.cpp")),
                                   f"{configuration.folder}/seam", flags)
    library = compiler.build / configuration.folder / "libZibMessaging.a"
    image = builds.link_image(compiler, configuration,
                              [f"-Wl,-force_load,{library}", *objects],
                              exports.listed() | FUNCTIONS, folder / "libZibMessaging.dylib")
    return replace(each, name=each.name + ", seam", image=image)


def needs_seam(path):
    """Whether a scenario uses the switch of automatic integration on its own, or is told that it is
    off: a shipped slice does neither."""
    scenario = json.loads(path.read_text())
    steps = scenario["steps"]
    words = {step.get(key) for step in steps for key in ("do", "operation")}
    config = scenario.get("core", {}).get("config") or {}
    is_told = "state" in words and not config.get("autoSwizzlingEnabled", True)
    return is_told or bool(words & {"setSwizzlingEnabled", "setupAutoSwizzling"})
