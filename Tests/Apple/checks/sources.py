"""The files of the tree that the check is about."""

from pathlib import Path

HERE = Path("Tests/Apple")


def source_files():
    return sorted(path for path in Path("Sources").rglob("*") if path.suffix in {".h", ".cpp"})


def units():
    return [path for path in source_files() if path.suffix == ".cpp"]
