#!/usr/bin/env python3
"""The library tab as a new user meets it: playlists, links and searches, with the demo backend and a real keyring.

usage: library.py BIN_FOLDER [TEST_NAME...]
"""
import contextlib
import sqlite3
import sys
import time
import unittest

from desktop import PATIENCE, Desktop, wait_until
from screen import Screen

BIN = sys.argv.pop(1)
PLAYLIST = "جاده و باران"  # of the demo's user


class Library(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop(BIN, keyring=True, accessibility=True))
        self.database = self.desktop.home / "accounts.db"
        self.backend = self.desktop.start_backend("--demo-user", "sara:1234", "--database", str(self.database))
        self.app = self.desktop.start_app("--debug-login")
        self.screen = self.enterContext(Screen(self.desktop))
        self.sign_in()
        self.screen.click("کتابخانه")
        self.screen.wait_for(PLAYLIST)

    def sign_in(self):
        self.screen.wait_for("ورود به رادیو", seconds=60)
        time.sleep(PATIENCE)  # the sheet comes to rest
        self.desktop.focus()
        self.fill("نام کاربری یا آیدی تلگرام", "sara")
        self.fill("", "1234", "password text")
        self.screen.click("ورود به رادیو")
        wait_until(lambda: not self.screen.find("ورود به رادیو"), 20, "the sheet to close")

    def fill(self, field, text, role="text"):
        self.screen.click(field, role)
        self.desktop.run("xdotool", "key", "ctrl+a")
        self.desktop.run("xdotool", "type", text)

    def gone(self, name, seconds=20):
        wait_until(lambda: not self.screen.find(name), seconds, f"{name!r} to go")

    def rows(self, query):
        with contextlib.closing(sqlite3.connect(self.database)) as database:
            return [row[0] for row in database.execute(query)]

    def options_of(self, title):
        """The button of the row or card that bears this title."""
        place = self.screen.at_rest(title, "push button")

        def lies_on(button):
            x, y, *_ = button["place"]
            return place[0] <= x < place[0] + place[2] and place[1] <= y < place[1] + place[3]
        button = next(each for each in self.screen.all("push button") if each["name"] == "گزینهها" and lies_on(each))
        x, y, width, height = button["place"]
        self.desktop.click(x + width // 2, y + height // 2)

    def play_from(self, button):
        """Presses something that plays, hears it, and comes back from the full player."""
        seen = len(self.app.lines)
        self.screen.click(button)
        self.app.wait_for_line("[RadioPlayer] EQ tap bound", after=seen)
        self.screen.wait_for("متن ترانه")
        self.desktop.press("Escape")
        self.gone("متن ترانه")

    def test_edits_what_is_there(self):
        self.screen.click(PLAYLIST)
        self.play_from("پخش")
        self.options_of("Winter Radio")
        self.screen.click("ویرایش آهنگ")
        self.fill("عنوان", "Summer Radio")
        self.screen.click("ذخیره")
        self.screen.wait_for("Summer Radio")
        self.options_of("Atlas")
        self.screen.click("حذف آهنگ")
        self.screen.click("حذف")
        self.gone("Atlas")
        self.assertIn("Summer Radio", self.rows("SELECT title FROM playlist_tracks"))
        self.assertNotIn("Atlas", self.rows("SELECT title FROM playlist_tracks"))

        self.screen.click("دانلود آفلاین")  # of the first row
        self.screen.wait_for("حذف دانلود")
        files = self.desktop.data / "OfflineTracks"
        self.assertEqual(len([path for path in files.iterdir() if path.suffix == ".mp3"]), 1)

        self.screen.click("بازگشت")
        self.options_of(PLAYLIST)
        self.screen.click("حذف پلیلیست")
        self.screen.click("حذف")
        wait_until(lambda: PLAYLIST not in self.rows("SELECT title FROM playlists"), 20, "the playlist to go")
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])

    def test_gathers_what_plays(self):
        self.screen.click(PLAYLIST)
        self.screen.click("Winter Radio")
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        self.screen.click("افزودن به پلیلیست")
        self.fill("نام پلیلیست جدید…", "Roads")
        self.desktop.run("xdotool", "key", "Return")
        gathered = ("SELECT t.title FROM playlist_tracks t JOIN playlists p ON p.id = t.playlist_id"
                    " WHERE p.title = 'Roads'")
        wait_until(lambda: self.rows(gathered) == ["Winter Radio"], 20, "the song in its new playlist")

    def test_brings_in_a_link_and_finds_a_song(self):
        self.fill("لینک پلیلیست اسپاتیفای…", "open.spotify.com/playlist/37i9dQ")
        self.screen.click("پیش‌نمایش")
        self.screen.click("ذخیره")
        wait_until(lambda: len(self.rows("SELECT title FROM playlists")) == 3, 20, "the imported playlist")
        for query, number in (("harbour", 1), ("midnight", 2)):
            seen = len(self.backend.errors)
            self.fill("نام آهنگ یا هنرمند…", query)
            self.desktop.run("xdotool", "key", "Return")
            wait_until(lambda: any(f"search?q={query} 200" in line for line in self.backend.errors[seen:]), 20, query)
        self.play_from("Midnight Ferry")
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
