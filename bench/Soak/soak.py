#!/usr/bin/env python3
"""Whether an hour of listening leaves the program as it found it.

Run by hand:

    bench/Soak/soak.py [--build build/release] [--minutes 60] [--every 20]

One private desktop session with the demo backend on loopback. Every --every seconds the lyrics and the player are
closed, another station is taken from the grid, live ones and lists in turn, and the lyrics are opened again. Told for
each minute: memory (PSS, what is private and written to, and RSS, MiB), open descriptors, threads, and processor time.
The first five minutes fill the caches; what comes after is compared with them.
"""
import argparse
import contextlib
import os
import pathlib
import re
import statistics
import sys
import time

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "tests" / "EndToEnd"))

from desktop import Desktop, wait_until  # noqa: E402
from screen import Screen  # noqa: E402

WARM_MINUTES = 5
LYRICS, PLAY_ALL, GRID = "متن ترانه", "پخش همه", "ایستگاه‌ها"


def memory(process):
    text = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text()
    return [int(re.search(rf"^{name}:\s+(\d+)", text, re.MULTILINE)[1]) / 1024 for name in ("Pss", "Private_Dirty", "Rss")]


def counts(process):
    return [len(os.listdir(f"/proc/{process}/{folder}")) for folder in ("fd", "task")]


def cpu_seconds(process):
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def pause_until(moment):
    time.sleep(max(0, moment - time.monotonic()))


def stations_on(screen):
    """The names of the cards in the first two rows, which the small player does not hide."""
    screen.desktop.press("Escape")
    grid = screen.wait_for(GRID)["place"]
    cards = [node["name"] for node in screen.all("push button")
             if node["place"][0] < grid[0] + grid[2] and 140 < node["place"][1] < 400 and node["place"][3] > 150]
    screen.click(cards[0], "push button")
    return cards


def take(screen, station):
    """From the lyrics of one station to those of another."""
    screen.desktop.press("Escape")
    wait_until(lambda: not screen.find(LYRICS, "dialog"), 10, "the lyrics to close")
    while not screen.find(GRID):
        screen.desktop.press("Escape")
        time.sleep(1)
    screen.click(station, "push button")
    found = wait_until(lambda: screen.find(PLAY_ALL) or screen.find(LYRICS, "push button"), 20, "a list or the player")
    if found["name"] == PLAY_ALL:
        screen.click(PLAY_ALL)
    screen.click(LYRICS, "push button")
    screen.wait_for(LYRICS, "dialog")


def minutes(screen, app, stations, count, every):
    """A row of figures for each minute."""
    process = app.process.pid
    begun, changes = time.monotonic(), 0
    for minute in range(1, count + 1):
        used, seen = cpu_seconds(process), len(app.lines)
        while time.monotonic() - begun < 60 * minute:
            changes += 1
            pause_until(begun + changes * every)
            take(screen, stations[changes % len(stations)])
        bound = sum("EQ tap bound" in line for line in app.lines[seen:])
        yield [minute, *memory(process), *counts(process), cpu_seconds(process) - used, bound]


def compare(rows):
    for column, name in ((1, "PSS, MiB"), (2, "private, MiB"), (3, "RSS, MiB"), (4, "descriptors"), (5, "threads")):
        warm = [row[column] for row in rows[:WARM_MINUTES]][-2:]
        late = [row[column] for row in rows[-WARM_MINUTES:]]
        print(f"{name:12} after {WARM_MINUTES} minutes {statistics.mean(warm):7.1f}, at the end {statistics.mean(late):7.1f}, "
              f"at most {max(row[column] for row in rows):7.1f}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", default=str(REPOSITORY / "build/release"))
    parser.add_argument("--minutes", type=int, default=60)
    parser.add_argument("--every", type=int, default=20)
    options = parser.parse_args()
    with contextlib.ExitStack() as scope:
        desktop = scope.enter_context(Desktop(pathlib.Path(options.build) / "bin", accessibility=True))
        desktop.start_backend()
        app = desktop.start_app("--debug-sync")
        app.wait_for_line("[RadioPlayer] EQ tap bound", 60)
        screen = scope.enter_context(Screen(desktop))
        stations = stations_on(screen)
        screen.click(LYRICS, "push button")
        print("minute   PSS private    RSS  fds threads  CPU s  played", flush=True)
        rows = []
        for row in minutes(screen, app, stations, options.minutes, options.every):
            rows.append(row)
            print("{:6d} {:6.1f} {:7.1f} {:6.1f} {:4d} {:7d} {:6.1f} {:7d}".format(*row), flush=True)
        compare(rows)
        print(f"errors told: {len([line for line in app.errors if 'qrc:' in line])}")


if __name__ == "__main__":
    main()
