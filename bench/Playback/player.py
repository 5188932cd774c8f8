#!/usr/bin/env python3
"""What the window costs while it plays, beside a player that has none, and how long its frames take.

Run by hand, on a machine that does nothing else:

    bench/Playback/player.py [--build build/release] [--seconds 20]

One private desktop session with a window manager, the demo backend on loopback, the same live stream for all:

    CPU           of one core, over --seconds: the full player, the radio tab, and the window minimised
    frame times   what the render thread takes for a frame while the record turns, while 2,000 cards scroll, while a
                  playlist of 5,000 tracks does, and while a story video is made
    holds         for how long the UI thread did not come to its events meanwhile, at most, where it was over 4 ms

Needs openbox and mpv (apt-get install openbox mpv), wanted for this alone, besides what the tests need.
"""
import argparse
import os
import pathlib
import re
import sqlite3
import sys
import time

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "tests" / "EndToEnd"))

from desktop import Desktop  # noqa: E402
from screen import Screen  # noqa: E402

FRAME = re.compile(r"frame rendered in (\d+)ms")
HOLD = re.compile(r"UI thread held for (\d+) ms")
PLAYLIST = "جاده و باران"  # of the demo's user


def cpu_seconds(program):
    fields = pathlib.Path(f"/proc/{program.process.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def load(program, seconds):
    time.sleep(4)
    begun, used = time.monotonic(), cpu_seconds(program)
    time.sleep(seconds)
    return 100 * (cpu_seconds(program) - used) / (time.monotonic() - begun)


def window(desktop):
    found = desktop.run("xdotool", "search", "--onlyvisible", "--class", "navorin").stdout.split()
    return found[-1].decode()


def loads(desktop, seconds):
    app = desktop.start_app("--debug-sync")
    app.wait_for_line("[RadioPlayer] EQ tap bound", 60)
    figures = {"the full player": load(app, seconds)}
    shown = window(desktop)
    desktop.press("Escape")
    figures["the radio tab"] = load(app, seconds)
    desktop.run("xdotool", "windowminimize", shown)
    figures["minimised"] = load(app, seconds)
    app.end()
    address = f"http://127.0.0.1:{desktop.port}/stream/persian"
    for name, options in (("mpv without a window", ["--vo=null", "--no-video"]),
                          ("mpv with a window", ["--force-window=immediate"])):
        mpv = desktop.start("/usr/bin/mpv", "--no-config", "--no-terminal", "--ao=pulse", *options, address)
        figures[name] = load(mpv, seconds)
        mpv.process.terminate()
    return figures


def numbers(pattern, lines):
    return sorted(int(match[1]) for line in lines if (match := pattern.search(line)))


def frames_of(app, act, seconds):
    """The times of the frames that were drawn meanwhile, in ms, the longest last."""
    seen, end = len(app.errors), time.monotonic() + seconds
    while time.monotonic() < end:
        act()
    return numbers(FRAME, app.errors[seen:])


def frames(desktop, arguments, act, seconds):
    app = desktop.start_app(*arguments, QSG_RENDER_TIMING="1")
    app.wait_for_line("[App] grid filled", 60)
    time.sleep(8)
    taken = frames_of(app, act, seconds)
    app.end()
    return taken


def print_holds(name, lines):
    holds = numbers(HOLD, lines)
    print(f"{name:32} {f'held for {holds[-1]} ms' if holds else 'no hold'}")


def playlist_frames(desktop, database, scroll, seconds):
    """A playlist of 5,000 tracks is opened, and scrolled."""
    with sqlite3.connect(database) as accounts:
        tracks = [(f"bench-{i}", f"Track {i}", f"/artwork/highway-{i % 17 + 1}.jpg") for i in range(5000)]
        accounts.executemany(
            "INSERT INTO playlist_tracks (playlist_id, track_type, track_id, title, artist, stream_url, artwork_url, duration)"
            " SELECT id, 'radio', ?, ?, 'Sofia Marques', '/stream/highway?track=1', ?, 40 FROM playlists"
            f" WHERE title = '{PLAYLIST}'", tracks)
    app = desktop.start_app("--debug-login", QSG_RENDER_TIMING="1", NAVORIN_WATCHDOG="4")
    with Screen(desktop) as screen:
        screen.sign_in("sara", "1234")
        screen.click("کتابخانه")
        screen.at_rest(PLAYLIST)
        time.sleep(4)
        seen = len(app.lines)
        screen.click(PLAYLIST)
        time.sleep(4)
        print_holds("a playlist of 5,000 is opened", app.lines[seen:])
    seen = len(app.lines)
    taken = frames_of(app, scroll, seconds)
    print_holds("it scrolls", app.lines[seen:])
    app.end()
    return taken


def story_frames(desktop):
    """The same while a story of the first six lines is made."""
    folder = desktop.home / "story"
    folder.mkdir()
    app = desktop.start_app(QSG_RENDER_TIMING="1", TMPDIR=str(folder))
    with Screen(desktop) as screen:
        for name in ("غروب کویر", "پخش همه", "استوری هوشمند", "ساخت ویدیو"):
            screen.click(name)
    seen, begun = len(app.errors), time.monotonic()
    while not ((folder / "story-final.mp4").exists() and not (folder / "story-silent.mp4").exists()):
        time.sleep(0.1)
    print(f"{'the story took':32} {time.monotonic() - begun:6.1f} s")
    taken = numbers(FRAME, app.errors[seen:])
    app.end()
    return taken


def print_frames(name, taken):
    if not taken:
        print(f"{name:32} no frames")
        return
    print(f"{name:32} {len(taken):6} frames, median {taken[len(taken) // 2]} ms, "
          f"p99 {taken[len(taken) * 99 // 100]} ms, longest {taken[-1]} ms")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, default=REPOSITORY / "build" / "release")
    parser.add_argument("--seconds", type=float, default=20)
    options = parser.parse_args()
    with Desktop(options.build.resolve() / "bin", accessibility=True) as desktop:
        desktop.start("/usr/bin/openbox")
        database = desktop.home / "accounts.db"
        desktop.start_backend("--stations", "2000", "--demo-user", "sara:1234", "--database", str(database))
        for name, percent in loads(desktop, options.seconds).items():
            print(f"{name:32} {percent:6.1f} % of a core")
        print_frames("the record turns", frames(desktop, ["--debug-sync"], lambda: time.sleep(0.2), options.seconds))

        def scroll():
            desktop.run("xdotool", "mousemove", "400", "400", "click", "5")
            time.sleep(0.03)
        print_frames("2,000 cards scroll", frames(desktop, [], scroll, options.seconds))
        print_frames("5,000 tracks scroll", playlist_frames(desktop, database, scroll, options.seconds))
        print_frames("a story is made", story_frames(desktop))


if __name__ == "__main__":
    main()
