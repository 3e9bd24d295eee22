"""A test of the check itself: plants one mistake at a time in a copy of the tree and sees the check
turn red, for that reason and no other.

Called by script/check-apple, after a check that passed: what that has built is used again.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

PLANTED = Path("Sources/ZibMessaging/Planted.cpp")


@dataclass(frozen=True)
class Plant:
    name: str
    # A file of the tree and what becomes of it: its new text, or a text in it and another.
    path: Path
    edit: object
    # What the check has to say.
    expected: tuple

    @property
    def is_about_lines(self):
        return self.expected[0].startswith("documented lines")


PLANTS = [
    Plant("a call of UIKit", PLANTED,
          'extern "C" int UIApplicationMain(int, char**, void*, void*);\n'
          "[[gnu::used]] static int planted() {\n"
          "  return UIApplicationMain(0, nullptr, nullptr, nullptr);\n}\n",
          ("imports: FAILED", "UIApplicationMain")),
    Plant("a link to UIKit", PLANTED,
          'asm(".linker_option \\"-framework\\", \\"UIKit\\"");\n',
          ("compile and link: FAILED", "-framework UIKit")),
    Plant("a C++ function newer than iOS 13", PLANTED,
          "#include <charconv>\n"
          "[[gnu::used]] static char* planted(char* from, char* to) {\n"
          "  return std::to_chars(from, to, 0.5).ptr;\n}\n",
          ("declarations: FAILED", "introduced in iOS 16")),
    Plant("a runtime function newer than iOS 13, declared by hand", PLANTED,
          'struct objc_class;\nextern "C" void objc_setHook_lazyClassNamer('
          "const char* (*)(objc_class*), const char* (**)(objc_class*));\n"
          "[[gnu::used]] static void planted() {\n"
          "  const char* (*former)(objc_class*) = nullptr;\n"
          "  objc_setHook_lazyClassNamer(nullptr, &former);\n}\n",
          ("declarations: FAILED", "only available on iOS 14")),
    Plant("a wrong declaration of a runtime function", Path("Sources/ZibPlatform/ObjectiveC/Native.h"),
          ("const char* nameOfClass(Class cls)", "char* nameOfClass(Class cls)"),
          ("declarations: FAILED", "isDeclaredAs", "class_getName")),
    Plant("a wrong declaration of an object", Path("Sources/ZibPlatform/ObjectiveC/Native.h"),
          ("extern void* stackBlockClass[32]", "extern void* stackBlockClass[31]"),
          ("declarations: FAILED", "isDeclaredAs", "_NSConcreteStackBlock")),
    Plant("a declaration that no header of the platform has", Path("Sources/ZibPlatform/ObjectiveC/Native.h"),
          ("Class superclassOf(Class cls)",
           "void planted(Class cls) ZIB_SYMBOL(objc_planted);\nClass superclassOf(Class cls)"),
          ("declarations: FAILED", "objc_planted")),
    Plant("a runtime function newer than iOS 13", Path("Sources/ZibPlatform/ObjectiveC/Native.h"),
          ("Class superclassOf(Class cls)",
           "void planted(const char* (*)(Class), const char* (**)(Class))\n"
           "    ZIB_SYMBOL(objc_setHook_lazyClassNamer);\nClass superclassOf(Class cls)"),
          ("declarations: FAILED", "only available on iOS 14")),
    Plant("a symbol that is bound where nothing compares it", PLANTED,
          'struct objc_class;\nint planted(objc_class*) __asm__("_class_getName");\n',
          ("declarations: FAILED", "outside Native.h", "Planted.cpp")),
    Plant("a declaration that clashes with the platform's in Objective-C++",
          Path("Sources/ZibMessaging/ZibPushError.h"),
          ("class ZibPushError {",
           'struct objc_class;\nextern "C" const char* class_getName(objc_class* cls);\n'
           "class ZibPushError {"),
          ("Objective-C++ hosts: FAILED", "class_getName", "conflicting types")),
    Plant("a value that takes a pointer for a boolean",
          Path("Sources/ZibPlatform/Foundation/Value.h"),
          ("template <std::same_as<bool> T>\n  Value(T value)", "Value(bool value)"),
          ("refused expressions: FAILED", "Value(static_cast<void*>(nullptr)) is to be refused",
           "Value(static_cast<NSString *>(nil)) is to be refused")),
    Plant("blocks that nobody signs where they must be",
          Path("Sources/ZibPlatform/ObjectiveC/Block.h"),
          ("#if defined(__arm64e__)", "#if defined(PLANTED)"),
          ("refused architecture: FAILED", "arm64e-apple-ios14.0")),
    Plant("an object that ARC would own", Path("Sources/ZibPlatform/ObjectiveC/Bridge.h"),
          ("native(::id object) noexcept { return (__bridge objc::id)object; }",
           "native(::id object) noexcept { return (objc::id)object; }"),
          ("Objective-C++ hosts: FAILED", "requires a bridged cast")),
    Plant("an object that the face gives to nobody",
          Path("Sources/ZibObjectiveC/Private/Ownership.h"),
          ("return (__bridge_retained void *)object;", "return (void *)object;"),
          ("Objective-C face: FAILED", "requires a bridged cast")),
    Plant("a framework without its privacy manifest", Path("script/xcframework"),
          ("    shutil.copy(TREE / PRIVACY, framework)\n", ""),
          ("XCFramework: FAILED", "PrivacyInfo.xcprivacy")),
    Plant("a recorder for Linux alone", Path("Recorder/zib_record.cpp"),
          ('#include <atomic>\n', '#include <atomic>\n#include <linux/limits.h>\n'),
          ("recorder: FAILED", "linux/limits.h")),
    Plant("an export that zib.h does not declare", Path("Tests/Apple/exports.txt"),
          ("zib_core_install\n", "zib_core_install\nplanted\n"),
          ("compile and link: FAILED", "does not define", "planted")),
    Plant("a missing export", Path("Tests/Apple/exports.txt"), ("zib_core_install\n", ""),
          ("exports: FAILED", "does not list", "zib_core_install")),
    Plant("a new function of zib.h that is not exported", Path("Sources/ZibC/zib.h"),
          ("ZIB_API bool zib_messaging_has_delegate(void);",
           "ZIB_API bool zib_messaging_has_delegate(void);\nZIB_API void zib_planted(void);"),
          ("exports: FAILED", "does not list", "zib_planted")),
    Plant("a permission that nothing needs", Path("Tests/Apple/imports.txt"),
          ("objc_msgSend ", "planted  # why\nobjc_msgSend "),
          ("imports: FAILED", "nothing imports", "planted")),
    Plant("200 KB of text", PLANTED,
          'extern "C" [[gnu::used, gnu::section("__TEXT,__const")]] '
          "const char planted[200 * 1024] = {1};\n",
          ("size: FAILED", "over the budget")),
    Plant("a method of another type", Path("Sources/ZibMessaging/Private/MessagingFace.cpp"),
          ("id init(id self, SEL) {", "id init(id self, SEL, int) {"),
          ("ABI assertions: FAILED", "&init")),
    Plant("a method that is not declared in Methods.m",
          Path("Sources/ZibMessaging/Private/MessagingFace.cpp"),
          ('.method("init", &init)', '.method("init", &init).method("planted", &init)'),
          ("method types: FAILED", "Sources register 14 methods")),
    Plant("a slice for a newer system than is wanted", Path("Tests/Apple/checks/targets.py"),
          ('"iossimulator", "14.0"', '"iossimulator", "13.0"'),
          ("slices: FAILED", "iossimulator 14.0")),
    Plant("lines that are not documented", PLANTED, "int planted = 0;\n",
          ("documented lines: FAILED", "`Sources/ZibMessaging`")),
    Plant("Apple-only lines that are not documented", Path("Sources/ZibPlatform/ObjectiveC/Native.h"),
          ("void messageSend() ", "struct planted;\nvoid messageSend() "),
          ("documented lines: FAILED", "Native.h")),
]


def run(command, tree, **environment):
    settings = {key: value for key, value in os.environ.items() if key != "CI"} | environment
    result = subprocess.run(command, cwd=tree, text=True, env=settings, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT)
    return result.returncode, result.stdout


def edited(text, edit):
    if isinstance(edit, str):
        return edit
    old, new = edit
    assert text.count(old) == 1, f"{old!r} is to be planted at one place"
    return text.replace(old, new)


def mistake_in(name, code, output, expected, wanted_code=1):
    missing = [each for each in expected if each not in output]
    if code == wanted_code and not missing:
        return []
    return [f"{name}: exit {code}, expected {wanted_code}; not said: {missing}\n{output}"]


def check_plant(plant, tree, check):
    target = tree / plant.path
    original = target.read_text() if target.exists() else None
    target.write_text(edited(original, plant.edit))
    try:
        # Lines that are not documented would be found first.
        if not plant.is_about_lines:
            run([*check, "--lines"], tree)
        code, output = run(check, tree)
    finally:
        target.unlink() if original is None else target.write_text(original)
        run([*check, "--lines"], tree)
    return mistake_in(plant.name, code, output, plant.expected)


def check_skips(tree):
    """Without compilers' headers to be had the check says what it skips, and fails in CI."""
    tools = tree / "no-network"
    tools.mkdir()
    for name in ["npm", "apt-get", "sudo"]:
        (tools / name).write_text("#!/bin/sh\nexit 1\n")
        (tools / name).chmod(0o755)
    environment = {"PATH": f"{tools}:{os.environ['PATH']}", "XDG_CACHE_HOME": str(tools)}
    mistakes = []
    for ci, wanted in [("", 0), ("true", 1)]:
        code, output = run(["script/check-apple"], tree, CI=ci, **environment)
        expected = ["compile and link: skipped, without library-headers, platform-headers"]
        mistakes += mistake_in(f"headers that cannot be had, CI={ci}", code, output,
                               expected + ["in CI nothing may be skipped"] * wanted, wanted)
    return mistakes


def main():
    check = [sys.executable, "Tests/Apple/check.py", *sys.argv[1:]]
    if "--without" in sys.argv:
        print("check-apple: self-test: skipped, since parts of the check were")
        return 0
    mistakes = []
    with tempfile.TemporaryDirectory(prefix="check-apple-") as folder:
        tree = Path(folder)
        for part in ["Sources", "Recorder", "Examples", "Tests/Apple", "Tests/Refused", "Tests/Swift",
                     "build/apple"]:
            shutil.copytree(part, tree / part)
        for part in ["docs/platforms.md", "script/check-apple", "script/xcframework"]:
            (tree / part).parent.mkdir(exist_ok=True)
            shutil.copy2(part, tree / part)
        for plant in PLANTS:
            start = time.monotonic()
            found = check_plant(plant, tree, check)
            mistakes += found
            print(f"check-apple: self-test: {plant.name}: {'NOT SEEN' if found else 'red'} "
                  f"({time.monotonic() - start:.1f} s)")
        skips = check_skips(tree)
        print(f"check-apple: self-test: nothing to be had: {'NOT SEEN' if skips else 'red in CI'}")
        mistakes += skips
        code, output = run(check, tree)
        mistakes += mistake_in("the tree without mistakes", code, output, [], 0)
    for mistake in mistakes:
        print(f"check-apple: self-test: FAILED: {mistake}")
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
