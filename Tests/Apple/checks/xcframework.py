"""What script/xcframework makes: slices, headers, manifest and index."""

import plistlib
import subprocess
import sys
from pathlib import Path

from checks import exports
from checks.builds import require_platform
from checks.outcome import Failure, Outcome, require
from checks.targets import TARGETS, WARNINGS

NAME = "ZibMessaging"
FACE = {f"OBJC_CLASS_$_ZIB{name}" for name in ["Config", "DeepLinkHandler", "Messaging",
                                               "PayloadBuilder", "PushConfig"]}
HOSTS = {
    "objective-c": f"#import <{NAME}/ZibObjectiveC.h>\n"
                   "void start(void) { [ZIBMessaging.shared configureWithApplication:nil]; }\n",
    "c": f"#include <{NAME}/zib.h>\nvoid start(void) {{ zib_messaging_configure(NULL); }}\n",
}


def face(compiler):
    """The Objective-C face with ARC, as hosts compile it, against our declarations."""
    sources = sorted(Path("Sources/ZibObjectiveC").glob("*.m"))
    for target in TARGETS:
        for source in sources:
            compiler.run("clang", f"--target={target.triple}", "-isysroot", compiler.sdk,
                         "-fsyntax-only", "-fobjc-arc", *WARNINGS, "-Wno-unused-parameter",
                         "-ITests/Swift/Platform", "-ISources/ZibObjectiveC", "-ISources/ZibC",
                         source)
    return Outcome(f"{len(sources)} sources for {len(TARGETS)} targets, with ARC")


def xcframework(compiler, builds):
    output = compiler.build / f"{NAME}.xcframework"
    modules = [f"--module={build.configuration.target.triple}={build.library.resolve()}"
               for build in builds if build.configuration.is_machine_code]
    result = subprocess.run(
        [sys.executable, "script/xcframework", "--output", output, "--toolchain",
         compiler.toolchain, "--sdk", compiler.sdk, "--headers", compiler.library, *modules],
        text=True, capture_output=True)
    if result.returncode != 0:
        raise Failure(result.stderr.strip())
    index = plistlib.loads((output / "Info.plist").read_bytes())
    found = []
    for entry in index["AvailableLibraries"]:
        framework = output / entry["LibraryIdentifier"] / entry["LibraryPath"]
        require_whole(framework)
        for name in entry["SupportedArchitectures"]:
            [target] = [target for target in TARGETS if target.triple.startswith(name) and
                        ("simulator" in target.triple) == ("SupportedPlatformVariant" in entry)]
            require_slice(compiler, framework / NAME, name, target)
            require_hosts(compiler, framework.parent, target)
            found.append(f"{name} {target.platform} {target.minimum}")
    if len(found) != len(TARGETS):
        raise Failure(f"{output} holds {found}")
    return Outcome(", ".join(found))


def require_whole(framework):
    information = plistlib.loads((framework / "Info.plist").read_bytes())
    if information["MinimumOSVersion"] != "13.0":
        raise Failure(f"{framework} says that it is for {information['MinimumOSVersion']}")
    for made, source in [("PrivacyInfo.xcprivacy", "Sources/ZibC/PrivacyInfo.xcprivacy"),
                         ("Headers/zib.h", "Sources/ZibC/zib.h"),
                         ("Headers/ZibObjectiveC.h", "Sources/ZibObjectiveC/ZibObjectiveC.h")]:
        if not (framework / made).exists() or \
                (framework / made).read_bytes() != Path(source).read_bytes():
            raise Failure(f"{framework / made} is not {source}")
    plistlib.loads((framework / "PrivacyInfo.xcprivacy").read_bytes())


def require_slice(compiler, binary, name, target):
    thin = compiler.build / f"xcframework-{target.triple}.a"
    if "fat" in compiler.run("llvm-objdump", "--macho", "--archive-headers", binary).lower() or \
            binary.read_bytes()[:4] == b"\xca\xfe\xba\xbe":
        compiler.run("llvm-lipo", binary, "-thin", name, "-output", thin)
    else:
        thin.write_bytes(binary.read_bytes())
    require_platform(compiler, thin, target)
    defined = set(compiler.symbols(thin, "--extern-only", "--defined-only").values())
    require(sorted((exports.listed() | FACE) - defined), f"{binary} lacks")


def require_hosts(compiler, folder, target):
    for language, text in HOSTS.items():
        host = compiler.build / f"XCFrameworkHost.{language[0]}"
        host.write_text(text)
        compiler.run("clang", f"--target={target.triple}", "-isysroot", compiler.sdk, "-x",
                     language, "-fsyntax-only", "-Wall", "-Wextra", "-Werror",
                     "-ITests/Swift/Platform", "-F", folder, host)
