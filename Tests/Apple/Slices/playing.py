"""Holds what a host prints with a slice in it against what the native one does."""

import json
import re

# What a module that checks its messages says of one, and plays on.
COMPLAINT = re.compile(rb"^ZibMessaging: the message .+$", re.M)


class Difference(Exception):
    """Where the two part first."""


def place_of(line, number):
    try:
        return f"scenario {json.loads(line)['scenario']}, line {number} of all"
    except (ValueError, KeyError):
        return f"line {number}"


def complaint(errors):
    """The first message that was not sent as its method is, in what was said beside the output."""
    found = COMPLAINT.search(errors)
    return found and found[0].decode(errors="replace")


def compare(expected, actual):
    """Both are an exit status, the output and what was said beside it. Nothing but the same bytes of
    output, and the same end, will do, and messages as their methods are."""
    (status, output, _), (other_status, other_output, errors) = expected, actual
    if said := complaint(errors):
        raise Difference(said)
    if (status, output) == (other_status, other_output):
        return
    lines, others = output.splitlines(), other_output.splitlines()
    nothing = b"(nothing)"
    pairs = [(lines[i] if i < len(lines) else nothing, others[i] if i < len(others) else nothing)
             for i in range(max(len(lines), len(others)))]
    said = errors.decode(errors="replace")[-2000:]
    for number, (line, other) in enumerate(pairs, 1):
        if line != other:
            raise Difference(f"{place_of(other if line == nothing else line, number)} is the first "
                             "that differs\n"
                             f"  natively:     {line.decode(errors='replace')}\n"
                             f"  in the slice: {other.decode(errors='replace')}\n{said}")
    raise Difference(f"it ended with {other_status} instead of {status}\n{said}")
