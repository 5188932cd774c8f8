#!/usr/bin/env python3
"""Drives the real program with the demo backend: from its start to sound, and through what can go wrong.

usage: first_play.py BIN_FOLDER [TEST_NAME...]
"""
import sys
import unittest

from desktop import Desktop, level, longest_silence, wait_until

BIN = sys.argv.pop(1)
STATIONS = "[App] grid filled"


class FirstPlay(unittest.TestCase):
    def test_plays_unattended(self):
        with Desktop(BIN) as desktop:
            app = desktop.start("navorin", "--demo", "--debug-sync")
            for start in ("[App] first frame", STATIONS, "[RadioPlayer] EQ tap bound to track 1",
                          "[EqTap] prepare: sr=44100.0 ch=2 bits=32 fmt=float interleaved=true"):
                app.wait_for_line(start, 40)
            wait_until(lambda: level(desktop.record(0.3)) > -60, 20, "sound")
            sound = desktop.record(4)
            self.assertLess(longest_silence(sound), 0.1)
            self.assertEqual(app.end(), 0)
            self.assertEqual([line for line in app.errors if "qrc:" in line or "QML" in line], [])
            self.assertTrue((desktop.data / "OfflineTracks/CACHEDIR.TAG").is_file())

    def test_a_click_on_the_first_card_plays_it(self):
        with Desktop(BIN) as desktop:
            desktop.start_backend()
            app = desktop.start_app()
            app.wait_for_line(STATIONS, 40)
            desktop.click(810, 230)
            app.wait_for_line("[RadioPlayer] EQ tap bound", 20)
            wait_until(lambda: level(desktop.record(0.3)) > -60, 20, "sound")
            desktop.press("space")  # nothing has the keyboard but the window: pause
            wait_until(lambda: level(desktop.record(0.3)) < -80, 10, "silence")

    def test_backend_comes_up_later(self):
        with Desktop(BIN, sound=False) as desktop:
            backend = desktop.start_backend()
            port = desktop.port
            self.assertEqual(backend.end(), 0)
            app = desktop.start_app(port=port, NAVORIN_AUDIO_SINK="fakesink sync=true")
            app.wait_for_line("[App] first frame", 40)
            desktop.start_backend(port=port)
            desktop.press("F5")
            app.wait_for_line(STATIONS, 20)
            self.assertEqual(app.end(), 0)

    def test_a_catalogue_that_is_rubbish_changes_nothing(self):
        with Desktop(BIN, sound=False) as desktop:
            backend = desktop.start_backend("--stations", "5000", "--tracks", "50000")
            app = desktop.start_app(NAVORIN_AUDIO_SINK="fakesink sync=true")
            app.wait_for_line(STATIONS, 40)
            for fault in ("status:500", "html", "garbage", "truncate", "cut:100"):
                desktop.set_fault(f"/api/stations={fault}")
                asked = len(backend.errors)
                desktop.press("F5")
                wait_until(lambda: any("/api/stations" in line for line in backend.errors[asked:]), 20, fault)
                desktop.set_fault(None)
                seen = len(app.lines)
                desktop.press("F5")
                app.wait_for_line(STATIONS, 20, after=seen)
            self.assertEqual(app.end(), 0)

    def test_streams_that_fail(self):
        for fault in ("status:404", "garbage", "html", "cut:0"):
            with self.subTest(fault), Desktop(BIN, sound=False) as desktop:
                desktop.start_backend("--fault", f"/stream/={fault}")
                app = desktop.start_app("--debug-sync", NAVORIN_AUDIO_SINK="fakesink sync=true")
                app.wait_for_line("[RadioPlayer] item failed: ", 40)
                self.assertEqual(app.end(), 0)

    def test_without_a_sound_server(self):
        with Desktop(BIN, sound=False) as desktop:
            desktop.start_backend()
            app = desktop.start_app("--debug-sync")
            app.wait_for_line("[EqTap] prepare:", 40)
            self.assertEqual(app.end(), 0)

    def test_a_broken_index_and_a_folder_that_is_none(self):
        with Desktop(BIN, sound=False) as desktop:
            data = desktop.data
            data.mkdir(parents=True)
            (data / "offline_index.json").write_bytes(b"\xff{not json")
            (data / "OfflineTracks").write_text("a file where the folder should be")
            desktop.start_backend()
            app = desktop.start_app("--debug-player", NAVORIN_AUDIO_SINK="fakesink sync=true")
            app.wait_for_line("[RadioPlayer] EQ tap bound", 40)
            self.assertEqual(app.end(), 0)
            self.assertEqual((data / "offline_index.json").read_bytes(), b"\xff{not json")

    def test_command_line(self):
        with Desktop(BIN, sound=False) as desktop:
            self.assertEqual(desktop.run(f"{BIN}/navorin", "--version").returncode, 0)
            self.assertEqual(desktop.run(f"{BIN}/navorin", "--nonsense").returncode, 64)
            desktop.env["NAVORIN_BASE_URL"] = "http://not-this-machine.test"
            self.assertEqual(desktop.run(f"{BIN}/navorin").returncode, 78)


if __name__ == "__main__":
    unittest.main(verbosity=2)
