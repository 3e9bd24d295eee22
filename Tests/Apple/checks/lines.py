"""The tables of docs/platforms.md: which lines are run where, and which nothing verifies."""

import re
from pathlib import Path

from checks.outcome import Failure, Outcome, require
from checks.sources import source_files

PAGE = Path("docs/platforms.md")

# What nothing verifies: files, how their lines are told from the others, and the reason.
NAMES = "names of a framework that is found by name, and whose headers cannot be had"
UNVERIFIED = [
    ("Sources/ZibPlatform/UIKit/Application.cpp", r'selector<"|classNamed<"', NAMES),
    ("Sources/ZibPlatform/UIKit/Scenes.cpp", r'selector<"|classNamed<"', NAMES),
    ("Sources/ZibPlatform/UserNotifications/UserNotifications.cpp", r'selector<"|classNamed<"', NAMES),
    ("Sources/ZibPlatform/FirebaseMessaging/FirebaseMessaging.cpp", r'selector<"|classNamed<"', NAMES),
    ("Sources/ZibMessaging/Private/MessagingFace.cpp", r'\.method\("\w+:', NAMES),
    ("Sources/ZibMessaging/Private/DelegateWatch.cpp",
     r'<"setDelegate:">|Setter\{"|constantString<"', NAMES),
    ("Sources/ZibMessaging/Private/OlderURLMethods.cpp", r'<"UIApplication|<"application:', NAMES),
    ("Sources/ZibMessaging/Private/Interception.h", r'^\s*\{"\w+:', NAMES),
    ("Sources/ZibPlatform/UserNotifications/UserNotifications.h", r"^inline constexpr objc::UInteger",
     "numbers out of the same headers"),
]


def count_lines(path):
    """Lines of code for both systems, for Apple's alone, and for the others alone."""
    counts = {"both": 0, "apple": 0, "other": 0}
    conditions = []
    for line in path.read_text().splitlines():
        directive = line.strip()
        if directive.startswith("#if"):
            is_apple = "__APPLE__" in directive
            branch = "other" if "!" in directive else "apple"
            conditions.append(branch if is_apple else "both")
        elif directive.startswith("#else") and conditions:
            conditions[-1] = {"apple": "other", "other": "apple"}.get(conditions[-1], "both")
        elif directive.startswith("#endif") and conditions:
            conditions.pop()
        elif directive and not directive.startswith("//"):
            counts[next((each for each in conditions if each != "both"), "both")] += 1
    return counts


def executed_table():
    rows = ["| Folder | Files | Lines |", "| --- | ---: | ---: |"]
    for folder in sorted(path for path in Path("Sources").iterdir() if path.is_dir()):
        counts = [count_lines(path) for path in sorted(folder.rglob("*.*"))
                  if path.suffix in {".h", ".cpp", ".m"}]
        lines = sum(each["both"] + each["other"] for each in counts)
        rows.append(f"| `{folder}` | {len(counts)} | {lines} |")
    return rows


def apple_only_table():
    rows = ["| File | Lines |", "| --- | ---: |"]
    for path in source_files():
        lines = count_lines(path)["apple"]
        if lines:
            rows.append(f"| `{path}` | {lines} |")
    return rows


def unverified_table():
    rows = ["| File | Lines | What and why |", "| --- | ---: | --- |"]
    for path, pattern, reason in UNVERIFIED:
        lines = Path(path).read_text().splitlines() if Path(path).exists() else []
        count = sum(1 for line in lines if re.search(pattern, line))
        if count == 0:
            raise Failure(f"{path} has no line {pattern}: mend UNVERIFIED in {__file__}")
        rows.append(f"| `{path}` | {count} | {reason} |")
    return rows


def with_table(page, rows):
    """The page with these rows in place of the table that has the same head."""
    before, head, after = page.partition(f"\n{rows[0]}\n")
    if not head:
        raise Failure(f"{PAGE} lacks the table {rows[0]}")
    return "\n".join([before, *rows, re.sub(r"\A(?:\|.*\n)*", "", after)])


def with_current_tables(page):
    for rows in [executed_table(), apple_only_table(), unverified_table()]:
        page = with_table(page, rows)
    return page


def documented():
    page = PAGE.read_text()
    expected = with_current_tables(page)
    require(sorted(set(expected.splitlines()) ^ set(page.splitlines())),
            f"{PAGE} is not current; script/check-apple --lines mends it")
    return Outcome(f"{PAGE} is current")


def write():
    PAGE.write_text(with_current_tables(PAGE.read_text()))
