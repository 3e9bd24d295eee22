"""The compiler and the tools beside it."""

import hashlib
import json
import os
import re
import subprocess
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from checks.outcome import Failure
from checks.sources import source_files
from checks.targets import WARNINGS


class Compiler:
    """Runs the tools, and compiles only what has changed since it was compiled last."""

    def __init__(self, toolchain, sdk, library, build):
        self.toolchain = toolchain
        self.sdk = sdk
        self.library = library
        self.build = build
        self.hashes = {}

    def run(self, tool, *arguments, text=None):
        result = subprocess.run([self.toolchain / tool, *arguments], text=True, input=text,
                                capture_output=True)
        if result.returncode != 0:
            raise Failure(f"{tool} {arguments[-1]}\n{result.stderr.strip()}")
        return result.stdout

    def flags(self, target):
        return [f"--target={target.triple}", "-isysroot", self.sdk, "-nostdinc++",
                "-isystem", self.library / "cfg", "-isystem", self.library / "v1",
                "-std=c++20", "-ISources", *WARNINGS]

    def hash_of(self, path):
        if path not in self.hashes:
            self.hashes[path] = hashlib.sha256(Path(path).read_bytes()).hexdigest()
        return self.hashes[path]

    def compile(self, source, output, flags):
        """Makes `output`, or with -fsyntax-only an empty file that says that it compiles."""
        output.parent.mkdir(parents=True, exist_ok=True)
        record = output.with_suffix(".json")
        command = [str(flag) for flag in flags]
        if output.exists() and record.exists():
            made_from = json.loads(record.read_text())
            if made_from["flags"] == command and all(
                    Path(path).exists() and self.hash_of(path) == value
                    for path, value in made_from["inputs"].items()):
                return output
        dependencies = output.with_suffix(".d")
        is_check = "-fsyntax-only" in flags
        self.run("clang++", *command, "-MMD", "-MT", "x", "-MF", dependencies,
                 *([] if is_check else ["-c", "-o", output]), source)
        if is_check:
            output.touch()
        inputs = dependencies.read_text().replace("\\\n", " ").split()[1:]
        record.write_text(json.dumps(
            {"flags": command, "inputs": {path: self.hash_of(path) for path in inputs}}))
        return output

    def precompiled(self, folder, flags, first=()):
        """Flags that put `first` and the standard headers before a source, parsed once. Hides a
        missing #include of one of these, so one configuration has to do without."""
        included = set()
        for path in source_files():
            included |= set(re.findall(r"^#include (<\w+>)", path.read_text(), re.M))
        header = self.build / folder / "precompiled.h"
        header.parent.mkdir(parents=True, exist_ok=True)
        text = "".join(f"#include {name}\n" for name in [*first, *sorted(included)])
        if not header.exists() or header.read_text() != text:
            header.write_text(text)
        output = self.compile(header, header.with_suffix(".pch"),
                              [flag for flag in flags if flag != "-fsyntax-only"] +
                              ["-x", "c++-header"])
        return ["-include-pch", output]

    def compile_all(self, sources, folder, flags):
        def compile_one(source):
            name = "-".join(source.with_suffix(".o").parts)
            try:
                return self.compile(source, self.build / folder / name, flags)
            except Failure as failure:
                return failure

        with ThreadPoolExecutor(os.cpu_count()) as pool:
            results = list(pool.map(compile_one, sources))
        failures = [str(result) for result in results if isinstance(result, Failure)]
        if failures:
            raise Failure("\n".join(failures))
        return results

    def readable(self, symbols):
        """The symbols by their demangled names, in the C++ library's usual words."""
        plain = [symbol.removeprefix("_") for symbol in symbols]
        names = self.run("llvm-cxxfilt", "--no-strip-underscore", text="\n".join(plain))
        names = names.replace("std::__1::", "std::").replace("> >", ">>")
        names = names.replace(
            "std::basic_string<char, std::char_traits<char>, std::allocator<char>>", "std::string")
        names = names.replace("std::basic_string_view<char, std::char_traits<char>>",
                              "std::string_view")
        return dict(zip(symbols, names.splitlines()))

    def symbols(self, file, *selection):
        output = self.run("llvm-nm", "--just-symbol-name", "--quiet", *selection, file)
        found = {line for line in output.split("\n") if line and not line.endswith(":")}
        return self.readable(sorted(found))
