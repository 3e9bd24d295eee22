"""Runs the unit tests that reach the module through its public surfaces, with a slice behind them."""

import os
from concurrent.futures import ThreadPoolExecutor

import playing
from checks.outcome import require

SECONDS_FOR_ONE = 120


def names(hosts):
    """What gtest lists: a suite, and its cases with spaces before them."""
    _, output, _ = hosts.run(hosts.tests, "--gtest_list_tests")
    found, suite = [], None
    for line in output.decode().splitlines():
        name = line.split("#")[0].rstrip()
        if not name.startswith(" "):
            suite = name if name.endswith(".") else None
        elif suite:
            found.append(suite + name.strip())
    return found


def run(hosts, name_of_slice):
    """The number of tests; all of them pass. The module's state is the process's, so each test runs in a
    process of its own."""
    def problem(test):
        status, output, errors = hosts.run(hosts.tests, f"--gtest_filter={test}", "--gtest_brief=1",
                                           timeout=SECONDS_FOR_ONE)
        if status == 0 and not playing.complaint(errors):
            return None
        said = (output + errors).decode(errors="replace").strip().splitlines()[-12:]
        return "\n    ".join([f"{test} ended with {status}", *said])

    tests = names(hosts)
    require([] if tests else [str(hosts.program(hosts.tests))], "There are no tests")
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        require(list(filter(None, pool.map(problem, tests))), f"{name_of_slice}: tests fail")
    return len(tests)
