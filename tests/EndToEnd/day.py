#!/usr/bin/env python3
"""A day on which everything around the real program fails: the backend, the desktop's services, the program itself.

A watchdog of the program's own tells whenever its window was held for longer than HOLD milliseconds.

usage: day.py BIN_FOLDER [TEST_NAME...]
"""
import contextlib
import json
import os
import signal
import sqlite3
import sys
import time
import unittest

from desktop import Desktop, level, wait_until
from screen import Screen

BIN = sys.argv.pop(1)
HOLD = 250
PLAYLIST, SONG, CHANGED = "جاده و باران", "Winter Radio", "Summer Radio"  # the demo's, and our own
RADIO, LIBRARY, STATION = "رادیو", "کتابخانه", "رادیو موج آبی"
IN_PLAYER = "متن ترانه"
BOUND = "[RadioPlayer] EQ tap bound"
FAILED = "[RadioPlayer] item failed: "


class Day(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop(BIN, keyring=True, accessibility=True))
        self.database = self.desktop.home / "accounts.db"
        self.screen = self.enterContext(Screen(self.desktop))
        self.places = {}
        self.begun = time.monotonic()
        self.start_backend()
        self.start("--debug-login")

    def sign_in(self):
        with self.step("signs in"):
            self.screen.wait_for("ورود به رادیو")
            self.screen.sign_in("sara", "1234")

    def start_backend(self, port=0):
        self.backend = self.desktop.start_backend("--demo-user", "sara:1234", "--database", str(self.database),
                                                  port=port)

    def start(self, *arguments):
        self.app = self.desktop.start_app(*arguments, NAVORIN_WATCHDOG=str(HOLD))
        self.app.wait_for_line("[App] grid filled", 60)
        self.app.wait_for_line("[Watchdog] watches")
        self.desktop.focus()

    @contextlib.contextmanager
    def step(self, what, answers=True):
        """After each step the program lives, its window acts on what is pressed, and nothing has held it."""
        yield
        self.assertTrue(self.app.is_alive(), f"{what}: {self.app.process.poll()}, {self.app.errors}")
        if answers:
            self.assert_answers()
        print(f"{time.monotonic() - self.begun:6.1f} s  {what}", flush=True)
        self.assertEqual([line for line in self.app.lines if line.startswith("[Watchdog] UI thread held")], [], what)
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [], what)

    def press(self, name):
        """Presses a button that has the same place all day."""
        if name not in self.places:
            self.places[name] = self.screen.at_rest(name, "push button")
        x, y, width, height = self.places[name]
        self.desktop.click(x + width // 2, y + height // 2)

    def assert_answers(self):
        self.press(LIBRARY)
        self.screen.wait_for("کتابخانه من")
        self.press(RADIO)
        self.screen.gone("کتابخانه من")
        self.assert_refreshes()

    def assert_refreshes(self):
        seen = len(self.app.lines)
        self.desktop.press("F5")
        self.app.wait_for_line("[App] grid filled", after=seen)

    def tune_in(self, told=BOUND):
        """Selects the live station."""
        seen = len(self.app.lines)
        self.press(STATION)
        self.app.wait_for_line(told, after=seen)

    def leave_player(self):
        self.screen.wait_for(IN_PLAYER)
        self.desktop.press("Escape")
        self.screen.gone(IN_PLAYER)

    def hear(self):
        wait_until(lambda: level(self.desktop.record(0.3)) > -60, 20, "sound")

    def hear_nothing(self):
        wait_until(lambda: level(self.desktop.record(0.3)) < -80, 20, "silence")

    def asked(self, call, after=0):
        wait_until(lambda: any(call in line for line in self.backend.errors[after:]), 20, call)

    def rows(self, query):
        with contextlib.closing(sqlite3.connect(self.database)) as database:
            return [row[0] for row in database.execute(query)]

    def token(self):
        return self.desktop.run("secret-tool", "lookup", "service", "ir.navorin.NavorinRadio", "account",
                                "session_token").stdout.strip()

    def test_a_backend_full_of_faults(self):
        self.sign_in()
        with self.step("plays"):
            self.tune_in()
            self.hear()
            self.leave_player()
        for fault, starts, ends in (("cut:64000", True, True), ("stall:64000", True, True), ("slow:4000", True, False),
                                    ("status:500", False, True), ("garbage", False, True)):
            with self.step(f"a stream with {fault}"):
                self.desktop.set_fault(f"/stream/={fault}")
                self.tune_in(BOUND if starts else FAILED)
                if starts:
                    self.hear()
                self.leave_player()
                if ends:
                    self.hear_nothing()
        self.desktop.set_fault(None)
        with self.step("plays again"):
            self.tune_in()
            self.hear()
            self.leave_player()
        for fault in ("status:500", "garbage", "cut:100", "delay:2"):
            with self.step(f"calls with {fault}", answers=False):
                self.desktop.set_fault(f"/api/={fault}")
                seen = len(self.backend.errors)
                self.desktop.press("F5")
                self.asked("/api/stations", seen)
                self.press(LIBRARY)
                self.desktop.press("F5")
                self.asked("/api/playlists", seen)
                self.screen.wait_for(PLAYLIST)
                self.desktop.set_fault(None)
                self.press(RADIO)
                self.screen.wait_for(STATION)
                self.assert_refreshes()
        token = self.token()
        with self.step("a backend that dies", answers=False):
            self.backend.process.kill()
            self.hear_nothing()
            self.screen.wait_for("پخش", "push button")  # and no longer a pause
            self.press(LIBRARY)
            self.screen.wait_for(PLAYLIST)
            self.press(RADIO)
            self.screen.wait_for(STATION)
        with self.step("and comes back"):
            self.start_backend(self.desktop.port)
            self.assert_refreshes()
            self.tune_in()
            self.hear()
            self.leave_player()
            self.assertTrue(self.token() == token != b"")
            self.press(STATION)
            self.screen.click("پسندیدن", "push button")
            self.asked("/api/favorites/toggle 200")
            self.leave_player()
        self.assertEqual(self.app.end(), 0)

    def kept(self):
        """What the index tells, and the sizes of what lies in the folder."""
        index = json.loads((self.desktop.data / "offline_index.json").read_bytes())
        sizes = {path.name: path.stat().st_size for path in (self.desktop.data / "OfflineTracks").iterdir()}
        self.assertEqual([sizes.get(entry["audioFileName"]) for entry in index], [entry["sizeBytes"] for entry in index])
        return index, sizes

    def edit(self):
        """Begins a change of a song that the backend does not answer for a long time."""
        self.desktop.set_fault("/api/playlists/=delay:60", 1)
        self.screen.options_of(SONG)
        self.screen.click("ویرایش آهنگ")
        self.screen.fill("عنوان", CHANGED)
        self.screen.click("ذخیره")
        wait_until(self.desktop.is_struck, 10, "the edit to be sent")

    def test_killed_in_the_middle(self):
        settings = self.desktop.home / "elsewhere/config/navorin/navorin.conf"
        self.sign_in()
        with self.step("keeps a song", answers=False):
            self.press(LIBRARY)
            self.screen.click(PLAYLIST)
            self.screen.click("دانلود آفلاین")
            self.screen.wait_for("حذف دانلود")
        with self.step("sets the equaliser", answers=False):
            self.screen.click("پخش", "push button")
            self.screen.click("اکولایزر", "push button")
            self.screen.click("حالت: تخت", "push button")
            self.screen.click("راک")
            wait_until(lambda: settings.exists() and "eq.preset" in settings.read_text(), 10, "the settings")
            self.desktop.press("Escape")
            self.screen.gone("حالت: راک")
            self.leave_player()
        kept = self.kept()
        with self.step("a download and an edit under way", answers=False):
            self.desktop.set_fault("/stream/=slow:20000")
            self.screen.click("دانلود آفلاین")
            self.screen.wait_for("لغو دانلود")
            self.edit()
        self.app.process.kill()
        self.app.process.wait()
        self.assertEqual(self.kept(), kept)
        self.desktop.set_fault(None)
        seen = len(self.backend.errors)
        self.start()
        with self.step("everything is there"):
            self.asked("/api/auth/me 200", seen)
            self.assertEqual(self.kept(), kept)
            self.press(LIBRARY)
            self.screen.click(PLAYLIST)
            for title in self.rows(f"SELECT title FROM playlist_tracks WHERE title IN ('{SONG}', '{CHANGED}')"):
                self.screen.wait_for(title)
            self.assertEqual(len([node for node in self.screen.all() if node["name"] == "حذف دانلود"]), 1)
            self.screen.click("پخش", "push button")
            self.screen.click("اکولایزر", "push button")
            self.screen.wait_for("حالت: راک")
            self.desktop.press("Escape")
            self.screen.gone("حالت: راک")
            self.leave_player()
            self.screen.click("بازگشت")
            self.screen.click("دانلودهای آفلاین")
            self.screen.wait_for(kept[0][0]["title"])
            self.screen.click("بازگشت")
        self.assertEqual(self.app.end(), 0)

    @contextlib.contextmanager
    def silent(self, process):
        """A process that answers nobody for the time."""
        os.kill(process, signal.SIGSTOP)
        try:
            yield
        finally:
            os.kill(process, signal.SIGCONT)

    def test_a_desktop_that_falls_apart(self):
        sound, keyring, bus = (int(self.desktop.env["SESSION_PULSE_PID"]),
                               self.desktop.owner_of("org.freedesktop.secrets"),
                               self.desktop.owner_of("org.freedesktop.DBus"))
        with self.silent(keyring):
            self.sign_in()
        self.tune_in()
        self.hear()
        self.leave_player()
        with self.step("a sound server that hangs"), self.silent(sound):
            self.press(STATION)
            self.leave_player()
            self.desktop.press("space", "space")
            self.assert_answers()
        with self.step("a sound server that dies"):
            self.tune_in()
            self.hear()
            self.leave_player()
            self.desktop.restart_sound()
            self.assert_answers()
            self.tune_in()
            self.hear()
            self.leave_player()
        with self.step("a keyring that dies"):
            os.kill(keyring, signal.SIGKILL)
            self.press(LIBRARY)
            self.screen.wait_for(PLAYLIST)
        with self.step("a session bus that hangs", answers=False), self.silent(bus):
            self.assert_refreshes()
            self.desktop.press("space")
            self.hear_nothing()
            self.desktop.press("space")
            self.hear()
        with self.step("a session bus that dies", answers=False):
            os.kill(bus, signal.SIGKILL)
            time.sleep(1)  # whoever wants to end with the bus may do so
            self.assertTrue(self.app.is_alive())
            self.assert_refreshes()
            self.desktop.press("space")
            self.hear_nothing()
            self.assertEqual(self.desktop.run("playerctl", "-p", "navorin", "status").stdout, b"")
        self.assertEqual(self.app.end(), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
