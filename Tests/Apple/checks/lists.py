"""The lists of symbols: each line a symbol, " # " and the reason why it is there."""

from checks.outcome import Failure


def list_entries(path):
    """The lines of a list and their reasons; a line without a reason is a mistake."""
    entries = {}
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        symbol, _, reason = line.partition(" # ")
        if not reason.strip():
            raise Failure(f"{path}:{number}: a line is a symbol, ' # ' and a reason")
        entries[symbol.strip()] = reason.strip()
    return entries
