"""What a part of the check comes to: a failure, or what it found and made."""

from dataclasses import dataclass


class Failure(Exception):
    """What is wrong, for the one who changed the tree."""


@dataclass(frozen=True)
class Outcome:
    # One line for people.
    summary: str
    # What later parts build on.
    result: object = None
    details: tuple = ()


def require(problems, headline):
    if problems:
        raise Failure("\n".join([headline + ":"] + ["  " + line for line in problems]))
