"""Hosts in Objective-C++, as they are compiled beside the platform's headers."""

from pathlib import Path

from checks.outcome import Outcome
from checks.sources import HERE
from checks.targets import DEVICE, TARGETS

# What a host's Objective-C++ includes before the module's headers.
HEADER_ORDERS = {
    "module-first": (),
    "platform-first": ("-include", "UIKit/UIKit.h", "-include", "objc/runtime.h", "-include",
                       "dispatch/dispatch.h", "-include", "Block.h"),
}


def objective_cpp_hosts(compiler):
    """Gives what is made for the device, for what it asks of the module."""
    examples = sorted(Path("Examples").glob("*/*.mm"))
    host = [HERE / "ObjectiveCppHost.mm"]
    kept = []
    variants = 0
    for target in TARGETS:
        for ownership in ["-fobjc-arc", "-fno-objc-arc"]:
            for order, first in HEADER_ORDERS.items():
                flags = compiler.flags(target) + [
                    "-x", "objective-c++", ownership, "-Wno-unused-parameter", f"-I{HERE}",
                    "-IExamples", "-idirafter", "Examples/Device", *first]
                is_kept = target is DEVICE and not first
                flags += ["-O0"] if is_kept else ["-fsyntax-only"]
                made = compiler.compile_all(
                    host + examples * is_kept,
                    f"hosts/{target.triple}{ownership}-{order}", flags)
                kept += made * is_kept
                variants += 1
    return Outcome(f"{len(host + examples)} sources, {variants} variants of the first", kept)
