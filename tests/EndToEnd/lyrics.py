#!/usr/bin/env python3
"""The lyrics in the real program: which line is lit when, against the backend's own timeline.

usage: lyrics.py BIN_FOLDER [TEST_NAME...]
"""
import json
import statistics
import sys
import time
import unittest
import urllib.parse
import urllib.request

from desktop import PATIENCE, Desktop, wait_until
from screen import Screen

BIN = sys.argv.pop(1)
FAILED = "خطا در دریافت متن ترانه"
# A track's position is told twice a second and looked at every 0.4 s, 0.2 s ahead; and a look takes us a while.
LOOKING = 0.5
LATEST = 0.5 + 0.4 - 0.2 + LOOKING
LATEST_LIVE = 0.4 - 0.2 + LOOKING


class Lyrics(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop(BIN, accessibility=True))

    def get(self, path, **query):
        address = f"http://127.0.0.1:{self.desktop.port}{path}?{urllib.parse.urlencode(query)}"
        with urllib.request.urlopen(address, timeout=10) as answer:
            return json.load(answer).get("data")

    def station(self, genre):
        return next(station for station in self.get("/api/stations") if station["genre"] == genre)

    def start(self, *arguments, faults=()):
        switches = [part for fault in faults for part in ("--fault", fault)]
        self.desktop.start_backend(*switches)
        self.app = self.desktop.start_app(*arguments)
        self.screen = self.enterContext(Screen(self.desktop))

    def open_lyrics(self):
        self.screen.click("متن ترانه", "push button")

    def words(self, station, title, artist):
        return self.get("/api/lyrics", genre=station, title=title, artist=artist)

    def position(self):
        return float(self.desktop.run("playerctl", "-p", "navorin", "position").stdout)

    def lit(self):
        lines = self.screen.all("push button", "selected")
        return [line["name"].split("\n")[0] for line in lines]

    def lateness(self, lines, position, seconds):
        """How late each line is lit, in seconds, while `position()` tells where the song really is."""
        late, last, end = [], self.lit(), time.monotonic() + seconds
        while time.monotonic() < end:
            now = self.lit()
            if now != last and len(now) == 1:
                begun = [line["time"] for line in lines if line["text"] == now[0]]
                late += [min((position() - start for start in begun), key=abs)] if begun else []
                last = now
            time.sleep(0.02)
        return late

    def assert_near(self, late, at_least, latest):
        self.assertGreaterEqual(len(late), at_least)
        print(f"lit late by {statistics.mean(late):.2f} s on average, from {min(late):.2f} to {max(late):.2f}")
        self.assertGreater(min(late), -0.3)
        self.assertLess(max(late), latest * PATIENCE)

    def programme(self):
        """The title and artist of what is on, and its words."""
        artist, title = self.station("persian")["title"].split(" - ")
        return title, artist, self.words("persian", title, artist)

    def sings(self):
        title, _, words = self.programme()
        lines = (words or {}).get("lines")
        return (lines and all("time" in line for line in lines) and words["elapsed_seconds"] < 22
                and self.screen.find(title))

    def test_a_live_programme(self):
        self.start("--debug-sync")
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        self.screen.wait_for("ناورین رادیو")
        self.open_lyrics()
        # A song of at least 40 s that stays on, and that the app has heard of.
        wait_until(self.sings, 240, "a song with times that stays on")
        title, artist, words = self.programme()
        self.screen.wait_for(title)
        started = time.monotonic() - self.words("persian", title, artist)["elapsed_seconds"]
        late = self.lateness(words["lines"], lambda: time.monotonic() - started, 12)
        self.assert_near(late, 1, LATEST_LIVE)
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])

    def test_a_track(self):
        self.start()
        tracks = self.station("kavir")["tracks"]
        first, second = (self.words("kavir", track["title"], track["artist"])["lines"] for track in tracks[:2])
        self.screen.click("غروب کویر")
        self.screen.click(tracks[0]["title"])
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        self.screen.wait_for("ناورین رادیو")
        self.open_lyrics()
        self.assert_near(self.lateness(first, self.position, 12), 1, LATEST)

        self.screen.click(f'{first[1]["text"]}\n{first[1]["translation"]}')
        wait_until(lambda: self.lit() == [first[1]["text"]], 3, "the tapped line is lit")
        self.assertAlmostEqual(self.position(), first[1]["time"], delta=2)
        self.desktop.press("space")
        held = self.lit()
        time.sleep(6)
        self.assertEqual(self.lit(), held)
        self.desktop.press("space")
        self.assert_near(self.lateness(first, self.position, 8), 1, LATEST)

        self.desktop.run("playerctl", "-p", "navorin", "next")
        self.screen.wait_for(f'{second[0]["text"]}\n{second[0]["translation"]}')
        self.assert_near(self.lateness(second, self.position, 16), 2, LATEST)
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])

    def test_failures(self):
        self.start("--debug-sync", faults=["/api/lyrics=status:500"])
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        self.open_lyrics()
        self.screen.wait_for(FAILED)
        self.desktop.press("Escape")
        wait_until(lambda: not self.screen.find(FAILED), 10, "the sheet goes")
        self.screen.wait_for("ناورین رادیو")


if __name__ == "__main__":
    unittest.main(verbosity=2)
