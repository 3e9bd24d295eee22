"""Plays scenarios, records what the module was called with, plays the recordings, and compares what left the module.

    round_trip.py ZIBSIM LIST FOLDER...

What is compared is what zibsim diff compares, of the entries that the module brings about: events, what is stored, what
the core and the host are told, links, and what the system is asked for. Scenarios that LIST names with a reason are
expected to differ, since no recording can tell what they are about; one that does not differ any more fails too.
Recordings with redacted texts are held to the same entries with texts of the same shape, in which equal texts are
equal and different ones different.
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

KINDS = {"event", "storage", "core", "delegate", "urlDelegate", "system", "http", "file", "firebaseConfig"}
THREADS = {"main", "session", "system"}


def run(zibsim, *arguments):
    return subprocess.run([zibsim, *map(str, arguments)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          timeout=110, check=False)


def shape(value):
    """What redaction leaves of it: which kind of letter or digit stands where."""
    if isinstance(value, dict):
        return {key: shape(each) for key, each in value.items()}
    if isinstance(value, list):
        return [shape(each) for each in value]
    if not isinstance(value, str):
        return value
    if re.fullmatch(r"[A-Za-z0-9+/]+={1,2}", value):  # bytes
        return re.sub("[^=]", "A", value)
    for pattern, other in [("[0-9]", "0"), ("[a-f]", "a"), ("[A-F]", "A"), ("[g-z]", "x"), ("[G-Z]", "X"),
                           ("[^\x00-\x7f]", "é")]:
        value = re.sub(pattern, other, value)
    return value


def texts_of(value):
    """In the order in which they stand."""
    if isinstance(value, dict):
        return [text for key in sorted(value) for text in texts_of(value[key])]
    if isinstance(value, list):
        return [text for each in value for text in texts_of(each)]
    return [value] if isinstance(value, str) else []


def confused(original, recorded):
    """Texts that are one in the one and two in the other. What the module says of itself is the same in both."""
    there, back = {}, {}
    lines = []
    for one, other in zip(texts_of(original), texts_of(recorded)):
        if one == other:
            continue
        if there.setdefault(one, other) != other:
            lines.append(f"{one!r} is {there[one]!r} and {other!r}\n")
        if back.setdefault(other, one) != one:
            lines.append(f"{other!r} stands for {back[other]!r} and {one!r}\n")
    return "".join(lines)


def module_entries(output, change=lambda entry: entry):
    """As timelines have them; the names of the host's own threads are nobody's. Files come last: a timeline shows one
    after the step that wrote it, and steps of a recording are shorter."""
    lines, files = [], []
    for line in output.splitlines():
        entry = json.loads(line)
        if entry["kind"] not in KINDS:
            continue
        thread = entry["thread"] if entry["thread"] in THREADS else "background"
        fields = {key: change(value) for key, value in entry.items() if key not in ("t", "thread", "kind")}
        of_kind = files if entry["kind"] == "file" else lines
        of_kind.append(json.dumps({"t": entry["t"], "thread": thread, "kind": entry["kind"], **fields}) + "\n")
    return lines + files


def difference(zibsim, folder, scenario, first, texts):
    """What the recording's timeline has otherwise, or nothing."""
    name = "with-texts" if texts else "redacted"
    recording, change = folder / f"{name}.json", (lambda value: value) if texts else shape
    recorded = run(zibsim, "record", *(["--with-texts"] if texts else []), "--output", recording, scenario)
    if recorded.returncode != 0:
        return f"record ends with {recorded.returncode}: {recorded.stderr}"
    played = run(zibsim, "run", "--format", "jsonl", recording)
    if played.returncode != 0:
        return f"the recording ends with {played.returncode}: {played.stderr}"
    expected, found = module_entries(first, change), module_entries(played.stdout, change)
    if expected == found:
        originals, others = ([json.loads(line) for line in module_entries(output)] for output in (first, played.stdout))
        return confused(originals, others)
    one, other = folder / f"{name}.one", folder / f"{name}.other"
    one.write_text("".join(expected))
    other.write_text("".join(found))
    return run(zibsim, "diff", one, other).stdout


def check(zibsim, scenario):
    first = run(zibsim, "run", "--format", "jsonl", scenario)
    if first.returncode != 0:
        return f"ends with {first.returncode}: {first.stderr}", 0
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        texts = [difference(zibsim, folder, scenario, first.stdout, texts) for texts in (True, False)]
    return "".join(texts), len(module_entries(first.stdout))


def main():
    zibsim, listed = sys.argv[1], pathlib.Path(sys.argv[2])
    reasons = dict(line.split(": ", 1) for line in listed.read_text().splitlines() if line and line[0] != "#")
    scenarios = sorted(path for folder in sys.argv[3:] for path in pathlib.Path(folder).glob("*/*.json"))
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(lambda scenario: check(zibsim, scenario), scenarios))
    failures, compared = [], 0
    for scenario, (differs, count) in zip(scenarios, results):
        name = f"{scenario.parent.name}/{scenario.stem}"
        reason = reasons.pop(name, None)
        compared += 0 if differs else count
        if differs and not reason:
            failures.append(f"{name} differs:\n{differs}")
        if reason and not differs:
            failures.append(f"{name} differs no more, and is listed: {reason}")
    failures += [f"{name}: there is no such scenario" for name in reasons]
    print("\n".join(failures))
    print(f"{len(scenarios)} scenarios, {compared} entries the same in recordings of them")
    sys.exit(bool(failures) or not compared)


main()
