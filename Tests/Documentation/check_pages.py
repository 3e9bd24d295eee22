"""Follows every path, link and command that the documentation names.

    check_pages.py ZIBSIM PAGE...

A word in backquotes is a path if it has a slash and begins with a folder of the tree, or is a file's name
with one of its endings: it has to be there, by itself or, for a bare name, somewhere. A command is a line of
an indented block, or backquoted, that begins with script/, cmake, ctest, or a path to zibsim: scripts have
to exist and to know the options, presets to be presets, and zibsim is run. A page in docs/tutorials is not
for this check: its commands have one of their own.
"""

import json
import os
import re
import subprocess
import sys
from pathlib import Path

SUFFIXES = {".h", ".cpp", ".c", ".m", ".mm", ".py", ".json", ".md", ".txt", ".cmake", ".swift", ".in"}


class Tree:
    def __init__(self):
        listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"],
                                check=True, capture_output=True, text=True).stdout
        self.files = [Path(line) for line in listed.splitlines() if Path(line).exists()]
        self.names = {path.name for path in self.files}
        self.tops = {path.parts[0] for path in self.files}
        self.folders = {parent for path in self.files for parent in path.parents}

    def has(self, path):
        return bool(list(Path().glob(path))) if "*" in path else Path(path).exists()

    def ends_with(self, path):
        """Whether a file or folder of the tree ends with that path, as an #include's does."""
        wanted = tuple(Path(path).parts)
        return any(each.parts[-len(wanted):] == wanted for each in [*self.files, *self.folders])


def code_of(text):
    """(line number, text) of backquoted words, and of indented and console lines."""
    is_fenced = False
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith("```"):
            is_fenced = not is_fenced
        elif is_fenced:
            continue
        elif line.startswith("    "):
            yield number, line.strip()
        else:
            for word in re.findall(r"`([^`]+)`", line):
                yield number, word


def links_of(text):
    for number, line in enumerate(text.splitlines(), 1):
        for target in re.findall(r"\]\(([^)#\s]+)", line):
            if "://" not in target:
                yield number, target


def presets():
    document = json.loads(Path("CMakePresets.json").read_text())
    return {preset["name"] for preset in document["configurePresets"] if not preset.get("hidden")}


def mistake_in_script(words):
    script = Path(words[0])
    if not os.access(script, os.X_OK):
        return "is no script of the tree"
    text = script.read_text()
    unknown = [word for word in words[1:] if word.startswith("--") and word not in text]
    return f"does not know {', '.join(unknown)}" if unknown else None


def mistake_in_preset(words):
    if "--preset" not in words:
        return None
    name = words[words.index("--preset") + 1]
    return None if name in presets() else f"has no preset {name}"


def mistake_in_run(zibsim, words):
    done = subprocess.run([zibsim, *words[1:]], capture_output=True, text=True, timeout=60,
                          check=False)
    return None if done.returncode == 0 else f"ends with {done.returncode}: {done.stderr.strip()}"


def mistake_in_command(zibsim, command):
    """None for what is right, and for what is no command."""
    found = [mistake_in_one(zibsim, one.split()) for one in command.split(" && ") if one.split()]
    return next((each for each in found if each), None)


def mistake_in_one(zibsim, words):
    # Syntax, or a program's place, rather than a call.
    if len(words) < 2 and not words[0].startswith("script/") or any(mark in word for word in words for mark in "[<…$"):
        return None
    if words[0].startswith("script/"):
        return mistake_in_script(words)
    if words[0] in ["cmake", "ctest"]:
        return mistake_in_preset(words)
    if words[0].endswith("/zibsim"):
        return mistake_in_run(zibsim, words)
    return None


def mistake_in_path(tree, page, word):
    is_word = re.fullmatch(r"[\w.+/*-]+", word)
    if not is_word or word.startswith(("/", "build/", "*.")):
        return None
    path = Path(word)
    if path.parts[0] in tree.tops and "/" in word:
        # A folder of the module may stand for itself: `ZibPlatform/UIKit`.
        is_there = tree.has(word) or tree.ends_with(word)
    elif path.suffix in SUFFIXES:
        is_there = tree.ends_with(word) or tree.has(str(page.parent / word))
    else:
        return None
    return None if is_there else "is not in the tree"


def mistakes_in(tree, zibsim, page, text):
    for number, target in links_of(text):
        if not (page.parent / target).exists():
            yield f"{page}:{number}: {target}: leads nowhere"
    for number, code in code_of(text):
        mistake = mistake_in_command(zibsim, code) or mistake_in_path(tree, page, code)
        if mistake:
            yield f"{page}:{number}: {code}: {mistake}"


def main():
    zibsim, *pages = sys.argv[1:]
    tree = Tree()
    mistakes = [each for page in map(Path, pages)
                for each in mistakes_in(tree, zibsim, page, page.read_text())]
    print(*mistakes, sep="\n")
    sys.exit(1 if mistakes else 0)


if __name__ == "__main__":
    main()
