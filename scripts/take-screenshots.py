#!/usr/bin/env python3
"""Takes the pictures of docs/screenshots from the real program with the demo backend, on desktops of their own.

Needs imagemagick, what the tests need, and a release build.

usage: scripts/take-screenshots.py [NAME...]     only these, without their sizes
"""
import contextlib
import pathlib
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/EndToEnd"))
from desktop import Desktop, wait_until  # noqa: E402
from screen import Screen  # noqa: E402

PICTURES = ROOT / "docs/screenshots"
SONG = "غروب کویر"  # a station whose list plays in turn


class Studio(contextlib.ExitStack):
    """The app on a desktop of its own, signed out, with its catalogue and covers drawn."""

    def __init__(self, size, *arguments):
        super().__init__()
        self.desktop = self.enter_context(Desktop(ROOT / "build/release/bin", size, keyring=True, accessibility=True))
        self.desktop.start_backend()
        self.app = self.desktop.start_app(*arguments)
        self.screen = self.enter_context(Screen(self.desktop))
        self.app.wait_for_line("[App] grid filled", 60)
        self.desktop.focus()
        width, height = size.split("x")
        self.desktop.run("xdotool", "search", "--onlyvisible", "--class", "navorin", "windowmove", "0", "0", "windowsize",
                         width, height)
        time.sleep(6)  # the covers

    def click(self, *names):
        for name in names:
            self.screen.click(name)
            time.sleep(1)

    def back(self):
        self.desktop.press("Escape")
        time.sleep(2)

    def hear(self):
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        time.sleep(3)

    def play_song(self):
        self.click(SONG, "پخش همه")
        self.hear()
        self.screen.wait_for("متن ترانه")

    def keep(self, path):
        self.desktop.run("xdotool", "mousemove", "2", "2")
        time.sleep(2)
        self.desktop.run("import", "-window", "root", "-depth", "8", "-define", "png:compression-level=9", path)


def home(studio):
    studio.hear()
    studio.back()


def player(studio):
    studio.hear()


def track(studio):
    studio.play_song()


def station(studio):
    studio.click(SONG)


def equaliser(studio):
    studio.hear()
    studio.click("اکولایزر")


def lyrics(studio):
    studio.play_song()
    studio.click("متن ترانه")
    time.sleep(20)


def story(studio):
    studio.play_song()
    studio.click("استوری هوشمند", "ساخت ویدیو")
    wait_until(lambda: studio.screen.find("اشتراکگذاری"), 120, "the video")
    time.sleep(3)


def recognition(studio):
    studio.desktop.run("pactl", "set-default-source", "out.monitor")
    studio.play_song()
    studio.back()
    studio.back()
    studio.click("تشخیص آهنگ")
    disc = next(node for node in studio.screen.all("push button")
                if node["name"] == "تشخیص آهنگ" and node["place"][2] > 100)["place"]
    studio.desktop.click(disc[0] + disc[2] // 2, disc[1] + disc[3] // 2)
    studio.screen.wait_for("پخش در رادیو", seconds=40)


def library(studio):
    studio.click("کتابخانه")


def sign_up(studio):
    time.sleep(2)


SYNC, STATION, CODE = ("--debug-sync",), ("--debug-player",), ("--debug-telegram", "--debug-login")
SCENES = [
    ("home", home, SYNC, ("1000x700", "420x800")),
    ("player", player, SYNC, ("1000x700", "420x800", "1920x1080")),
    ("track", track, (), ("1000x700",)),
    ("station", station, (), ("1000x700",)),
    ("equaliser", equaliser, STATION, ("420x800",)),
    ("lyrics", lyrics, (), ("1000x700",)),
    ("story", story, (), ("1000x700",)),
    ("recognition", recognition, (), ("420x800",)),
    ("library", library, (), ("1000x700",)),
    ("sign-up", sign_up, CODE, ("1000x700",)),
]


def main():
    wanted = set(sys.argv[1:])
    for name, scene, arguments, sizes in SCENES:
        for size in sizes if not wanted or name in wanted else ():
            print(f"{name}-{size}", flush=True)
            with Studio(size, *arguments) as studio:
                scene(studio)
                studio.keep(PICTURES / f"{name}-{size}.png")


if __name__ == "__main__":
    main()
