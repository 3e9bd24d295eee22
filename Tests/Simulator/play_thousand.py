"""Plays 1,000 small scenarios, two at a time, and fails where two idle cores would need more than 15 seconds.

    play_thousand.py ZIBSIM

What counts is the processors' time, since the machine may have other work.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

COUNT = 1000
CORES = 2
SECONDS = 15


def scenario(number):
    return {
        "name": f"small {number}",
        "host": {"notificationDelegate": {"class": "PushDelegate", "implements": ["didReceive"]}},
        "steps": [
            {"do": "configure"},
            {"do": "respond", "userInfo": {"pn_campaign_id": str(number),
                                           "link": f"https://shop.example/{number}"}},
        ],
        "expect": [
            {"kind": "event", "data": {"pn_campaign_id": str(number)}},
            {"kind": "system", "operation": "openURL", "url": f"https://shop.example/{number}"},
        ],
    }


def main():
    zibsim = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        for number in range(COUNT):
            (pathlib.Path(folder) / f"{number:04}.json").write_text(json.dumps(scenario(number)))
        before, start = os.times(), time.monotonic()
        done = subprocess.run([zibsim, "run", "--jobs", str(CORES), "--format", "jsonl", folder],
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False)
        after, wall = os.times(), time.monotonic() - start
    used = (after.children_user - before.children_user
            + after.children_system - before.children_system)
    print(f"{COUNT} scenarios, {CORES} at a time: {used:.1f} s of processor time, {wall:.1f} s on the clock")
    if done.returncode != 0 or done.stderr != f"{COUNT} passed, 0 failed\n":
        raise SystemExit(f"zibsim ended with {done.returncode}: {done.stderr[:2000]}")
    if used > CORES * SECONDS:
        raise SystemExit(f"allowed: {CORES * SECONDS} s of processor time")


main()
