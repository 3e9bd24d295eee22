"""A test of the check: each of these pages has one mistake, or none.

    test_check_pages.py ZIBSIM
"""

import sys
from pathlib import Path

import check_pages

GOOD = """# A page
`Sources/ZibMessaging`, `Native.h`, [the readme](README.md), `script/test --threads`, `cmake --preset debug`,
`ZibMessaging::shared()`, `application:openURL:options:`, `build/any/thing`, `*.json`

    script/fuzz --seconds 5
    build/debug/Simulator/zibsim run Examples/first-light.json
    zibsim run [--format FORMAT] SCENARIO.json
"""

BAD = {
    "`Sources/Nowhere/At.h`": "is not in the tree",
    "`Nowhere.cpp`": "is not in the tree",
    "[a page](docs/nowhere.md)": "leads nowhere",
    "`script/nothing`": "is no script of the tree",
    "`script/test --nothing`": "does not know --nothing",
    "    cmake --preset nothing": "has no preset nothing",
    "    build/debug/Simulator/zibsim run nowhere.json": "ends with 2",
}


def mistakes_of(tree, zibsim, text):
    return list(check_pages.mistakes_in(tree, zibsim, Path("PLANTED.md"), text))


def main():
    tree = check_pages.Tree()
    zibsim = sys.argv[1]
    wrong = mistakes_of(tree, zibsim, GOOD)
    for text, expected in BAD.items():
        found = mistakes_of(tree, zibsim, text + "\n")
        if len(found) != 1 or expected not in found[0]:
            wrong.append(f"{text}: expected {expected!r}, found {found}")
    print(*wrong, sep="\n")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
