#!/usr/bin/env python3
"""The library tab as a new user meets it: playlists, links and searches, with the demo backend and a real keyring.

usage: library.py BIN_FOLDER [TEST_NAME...]
"""
import contextlib
import sqlite3
import sys
import unittest

from desktop import Desktop, wait_until
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
        self.screen.wait_for("ورود به رادیو", seconds=60)
        self.screen.sign_in("sara", "1234")
        self.screen.click("کتابخانه")
        self.screen.wait_for(PLAYLIST)

    def rows(self, query):
        with contextlib.closing(sqlite3.connect(self.database)) as database:
            return [row[0] for row in database.execute(query)]

    def play_from(self, button):
        """Presses something that plays, hears it, and comes back from the full player."""
        seen = len(self.app.lines)
        self.screen.click(button)
        self.app.wait_for_line("[RadioPlayer] EQ tap bound", after=seen)
        self.screen.wait_for("متن ترانه")
        self.desktop.press("Escape")
        self.screen.gone("متن ترانه")

    def test_edits_what_is_there(self):
        self.screen.click(PLAYLIST)
        self.play_from("پخش")
        self.screen.options_of("Winter Radio")
        self.screen.click("ویرایش آهنگ")
        self.screen.fill("عنوان", "Summer Radio")
        self.screen.click("ذخیره")
        self.screen.wait_for("Summer Radio")
        self.screen.options_of("Atlas")
        self.screen.click("حذف آهنگ")
        self.screen.click("حذف")
        self.screen.gone("Atlas")
        self.assertIn("Summer Radio", self.rows("SELECT title FROM playlist_tracks"))
        self.assertNotIn("Atlas", self.rows("SELECT title FROM playlist_tracks"))

        self.screen.click("دانلود آفلاین")  # of the first row
        self.screen.wait_for("حذف دانلود")
        files = self.desktop.data / "OfflineTracks"
        self.assertEqual(len([path for path in files.iterdir() if path.suffix == ".mp3"]), 1)

        self.screen.click("بازگشت")
        self.screen.options_of(PLAYLIST)
        self.screen.click("حذف پلیلیست")
        self.screen.click("حذف")
        wait_until(lambda: PLAYLIST not in self.rows("SELECT title FROM playlists"), 20, "the playlist to go")
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])

    def test_gathers_what_plays(self):
        self.screen.click(PLAYLIST)
        self.screen.click("Winter Radio")
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        self.screen.click("افزودن به پلیلیست")
        self.screen.fill("نام پلیلیست جدید…", "Roads")
        self.desktop.run("xdotool", "key", "Return")
        gathered = ("SELECT t.title FROM playlist_tracks t JOIN playlists p ON p.id = t.playlist_id"
                    " WHERE p.title = 'Roads'")
        wait_until(lambda: self.rows(gathered) == ["Winter Radio"], 20, "the song in its new playlist")

    def test_brings_in_a_link_and_finds_a_song(self):
        self.screen.fill("لینک پلیلیست اسپاتیفای…", "open.spotify.com/playlist/37i9dQ")
        self.screen.click("پیش‌نمایش")
        self.screen.click("ذخیره")
        wait_until(lambda: len(self.rows("SELECT title FROM playlists")) == 3, 20, "the imported playlist")
        for query, number in (("harbour", 1), ("midnight", 2)):
            seen = len(self.backend.errors)
            self.screen.fill("نام آهنگ یا هنرمند…", query)
            self.desktop.run("xdotool", "key", "Return")
            wait_until(lambda: any(f"search?q={query} 200" in line for line in self.backend.errors[seen:]), 20, query)
        self.play_from("Midnight Ferry")
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
