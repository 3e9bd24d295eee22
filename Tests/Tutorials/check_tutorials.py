"""Runs every command of the tutorials, and compares what it prints with what they show.

    check_tutorials.py [--update] ZIBSIM FILE...

In a tutorial, a fenced block whose first line is "```json NAME" (or another language) is a file to be
made, and one in "console" holds commands after "$ ", each followed by what it prints. A line "…" stands
for any lines. The commands of a tutorial run one after another in one folder. A command that ends in " &"
runs until the end of the tutorial; only its start is shown.

With --update the outputs are written anew, but for those with a line "…".
"""

import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time

ELLIPSIS = "…"


class Session:
    """One shell's folder, last status and background commands."""

    def __init__(self, zibsim, folder):
        self._folder = folder
        self._status = 0
        self._background = []
        self._environment = {**os.environ, "NO_COLOR": "1", "LC_ALL": "C.UTF-8",
                             "PATH": f"{zibsim.parent}:{os.environ['PATH']}"}

    def write(self, name, text):
        file = self._folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def run(self, command):
        if command.endswith(" &"):
            return self._start(command.removesuffix(" &"))
        done = subprocess.run(["bash", "-c", f"(exit {self._status}); {command}"], cwd=self._folder,
                              env=self._environment, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=60, check=False)
        self._status = done.returncode
        return done.stdout

    def _start(self, command):
        # Whatever it needs may be in use by another check for a while.
        end = time.monotonic() + 30
        while (line := self._try_to_start(command)) is None:
            if time.monotonic() > end:
                raise SystemExit(f"{command}: ends at once")
            time.sleep(0.5)
        return line

    def _try_to_start(self, command):
        process = subprocess.Popen(["bash", "-c", "exec " + command], cwd=self._folder,
                                   env=self._environment, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT, text=True)
        line = process.stdout.readline()
        time.sleep(0.1)
        if process.poll() is not None:
            process.stdout.close()
            return None
        self._background.append(process)
        return line

    def end(self):
        for process in self._background:
            process.send_signal(signal.SIGTERM)
            process.wait()
            process.stdout.close()


def matches(shown, printed):
    """Whether the lines are the same, where the ellipsis stands for any."""
    pattern = "".join("(?:.*\n)*" if line == ELLIPSIS + "\n" else re.escape(line)
                      for line in shown.splitlines(keepends=True))
    return re.fullmatch(pattern, printed) is not None


def exchanges(block):
    """The commands of a block, each with what is shown of its output."""
    pairs = []
    for line in block.splitlines(keepends=True):
        if line.startswith("$ "):
            pairs.append([line[2:].rstrip("\n"), ""])
        else:
            pairs[-1][1] += line
    return pairs


def check(zibsim, file, is_update):
    text = file.read_text()
    wrong = []
    commands = 0
    with tempfile.TemporaryDirectory() as folder:
        session = Session(zibsim, pathlib.Path(folder))

        def play(block):
            nonlocal commands
            language, name, body = block[1], block[2], block[3]
            if name:
                session.write(name, body)
            if language != "console":
                return block[0]
            played = ""
            for command, shown in exchanges(body):
                commands += 1
                printed = session.run(command)
                has_ellipsis = ELLIPSIS + "\n" in shown
                if not matches(shown, printed) and (has_ellipsis or not is_update):
                    wrong.append(f"{file}: $ {command}\nshown:\n{shown}printed:\n{printed}")
                played += f"$ {command}\n{shown if has_ellipsis else printed}"
            return f"```console\n{played}```"

        try:
            updated = re.sub(r"^```(\w+)(?: (\S+))?\n(.*?)^```", play, text, flags=re.M | re.S)
        finally:
            session.end()
    if is_update and updated != text:
        file.write_text(updated)
    if commands == 0:
        wrong.append(f"{file}: there is no command in it")
    print(f"{file.name}: {commands} commands")
    return wrong


def main(arguments):
    is_update = arguments[:1] == ["--update"]
    zibsim, *files = arguments[1 if is_update else 0:]
    wrong = []
    for file in files:
        wrong += check(pathlib.Path(zibsim).resolve(), pathlib.Path(file), is_update)
    print("\n".join(wrong), file=sys.stderr, end="\n" if wrong else "")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
