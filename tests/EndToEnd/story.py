#!/usr/bin/env python3
"""A story video made in the real program, and read with tools that are not ours.

usage: story.py BIN_FOLDER [TEST_NAME...]
"""
import json
import shutil
import subprocess
import sys
import time
import unittest

from desktop import Desktop, wait_until
from screen import Screen

BIN = sys.argv.pop(1)
MAKE = "ساخت ویدیو"
SHARE = "اشتراکگذاری"


class Story(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop(BIN, accessibility=True))
        self.temporary = self.desktop.home / "tmp"
        self.temporary.mkdir()
        self.desktop.env["TMPDIR"] = str(self.temporary)
        self.backend = self.desktop.start_backend()
        self.app = self.desktop.start_app()
        self.screen = self.enterContext(Screen(self.desktop))
        self.screen.click("غروب کویر")
        self.screen.click("پخش همه")
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        self.screen.click("استوری هوشمند")
        self.screen.wait_for(MAKE)

    def pick_last(self, number):
        """Takes line `number` for the last one of the story."""
        def starting(text, role):
            return wait_until(lambda: next((node["name"] for node in self.screen.all(role)
                                            if node["name"].startswith(text)), None), 20, text)
        self.screen.click(starting("تا خط", "push button"))
        self.screen.click(starting(f"{number}. ", "list item"))
        return float(starting("مدت ویدیو: ", "label").split()[2])

    def read(self, file):
        told = subprocess.run(["ffprobe", "-v", "error", "-show_streams", "-of", "json", file], capture_output=True,
                              check=True).stdout
        return {stream["codec_type"]: stream for stream in json.loads(told)["streams"]}

    def test_makes_shows_and_keeps_a_video(self):
        seconds = self.pick_last(2)
        self.screen.click(MAKE)
        self.screen.wait_for(SHARE, seconds=120)
        self.assertEqual([file.name for file in self.temporary.glob("story-*")], ["story-final.mp4"])
        self.screen.click("ذخیره")
        self.screen.wait_for("ذخیره شد")
        self.screen.click("ذخیره شد")
        videos = self.desktop.home / "Videos"
        wait_until(lambda: len(list(videos.glob("*.mp4"))) == 2, 10, "a second copy beside the first")
        if not shutil.which("ffprobe"):
            return
        file = next(videos.glob("*.mp4"))
        streams = self.read(file)
        video = streams["video"]
        self.assertEqual((video["codec_name"], video["width"], video["height"], video["r_frame_rate"]),
                         ("h264", 720, 1280, "24/1"))
        self.assertAlmostEqual(int(video["nb_frames"]), 24 * seconds, delta=12)  # the length is told in whole seconds
        self.assertEqual(streams["audio"]["codec_name"], "aac")
        self.assertAlmostEqual(float(streams["audio"]["duration"]), float(video["duration"]), delta=0.1)
        data = file.read_bytes()
        self.assertLess(data.index(b"moov"), data.index(b"mdat"))
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])

    def test_a_closed_sheet_and_a_backend_that_went_end_well(self):
        self.screen.click(MAKE)
        silent = self.temporary / "story-silent.mp4"
        wait_until(silent.exists, 20, "the first frames")
        self.desktop.press("Escape")
        wait_until(lambda: not silent.exists(), 20, "an unfinished file to go")
        self.screen.click("استوری هوشمند")
        self.screen.wait_for(MAKE)
        self.pick_last(2)
        self.backend.end()
        self.screen.click(MAKE)
        self.screen.wait_for(SHARE, seconds=120)
        self.assertEqual([file.name for file in self.temporary.glob("story-*")], ["story-silent.mp4"])
        self.assertEqual(any("[Story] no audio track found at" in line for line in self.app.lines), True)
        time.sleep(1)
        self.assertTrue(self.app.is_alive())


if __name__ == "__main__":
    unittest.main(verbosity=2)
