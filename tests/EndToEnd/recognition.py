#!/usr/bin/env python3
"""What song is this, asked of the real program from inside and outside, with a sink's monitor for a microphone.

usage: recognition.py BIN_FOLDER [TEST_NAME...]
"""
import contextlib
import json
import pathlib
import re
import shutil
import socket
import subprocess
import sys
import threading
import time
import unittest
import urllib.request

from desktop import PATIENCE, Desktop, level, wait_until
from screen import Screen

BIN = sys.argv.pop(1)
NAME = "ir.navorin.NavorinRadio"
LISTEN = "تشخیص آهنگ"
AGAIN = "تلاش دوباره"


class Wiretap:
    """Stands between the program and its backend and keeps what the program sends."""

    def __init__(self, port):
        self.sent = []
        self._target = port
        self._server = socket.create_server(("127.0.0.1", 0))
        self.port = self._server.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            client, _ = self._server.accept()
            backend = socket.create_connection(("127.0.0.1", self._target))
            self.sent.append(bytearray())
            for ends in ((client, backend, self.sent[-1]), (backend, client, bytearray())):
                threading.Thread(target=self._pass_on, args=ends, daemon=True).start()

    @staticmethod
    def _pass_on(source, target, kept):
        with contextlib.suppress(OSError):
            while data := source.recv(65536):
                kept += data
                target.sendall(data)
        for end in (source, target):
            with contextlib.suppress(OSError):
                end.shutdown(socket.SHUT_RDWR)
        source.close()

    def snippets(self):
        found = []
        for sent in self.sent:
            for request in bytes(sent).split(b"POST /api/shazam ")[1:]:
                head, _, rest = request.partition(b"\r\n\r\n")
                length = int(re.search(rb"(?i)content-length: (\d+)", head).group(1))
                found.append((head.decode(), rest[:length]))
        return found


class Recognition(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop(BIN, accessibility=True))
        self.temporary = self.desktop.home / "tmp"
        self.temporary.mkdir()
        self.desktop.env["TMPDIR"] = str(self.temporary)
        self.desktop.start_backend()
        self.wire = Wiretap(self.desktop.port)

    def start(self, *arguments):
        self.app = self.desktop.start_app(*arguments, port=self.wire.port)
        self.screen = self.enterContext(Screen(self.desktop))
        self.app.wait_for_line("[App] grid filled", 40)
        self.desktop.focus()

    def open_sheet(self):
        self.screen.click(LISTEN, "push button")
        self.press_disc()

    def discs(self):
        """Where the sheets' large buttons are; the small one in the header has the same name."""
        return [node["place"] for node in self.screen.all("push button")
                if node["name"] == LISTEN and node["place"][2] > 100]

    def press_disc(self):
        wait_until(self.discs, 10, "the sheet")
        time.sleep(0.8 * PATIENCE)  # it comes to rest
        x, y, width, height = self.discs()[0]
        self.desktop.click(x + width // 2, y + height // 2)

    def is_listening(self):
        return bool(self.desktop.run("pactl", "list", "short", "source-outputs").stdout.strip())

    def assert_nothing_left(self):
        wait_until(lambda: not list(self.temporary.glob("shazam_snippet_*")), 5, "the snippet to go")

    def assert_clean(self):
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])

    def track(self, genre, number):
        with urllib.request.urlopen(f"http://127.0.0.1:{self.desktop.port}/api/stations", timeout=10) as answer:
            stations = json.load(answer)["data"]
        return next(station for station in stations if station["genre"] == genre)["tracks"][number]

    def test_names_what_plays(self):
        self.desktop.run("pactl", "set-default-source", "out.monitor")
        self.start()
        track = self.track("kavir", 1)
        self.screen.click("غروب کویر")
        self.screen.click(track["title"])
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        self.desktop.press("Escape")
        time.sleep(1.5 * PATIENCE)
        self.desktop.press("Escape")
        self.open_sheet()
        self.screen.wait_for("در حال گوش دادن…")
        self.assertGreater(level(self.desktop.record(1)), -60)
        self.screen.wait_for("شناسایی شد", seconds=25)
        self.screen.wait_for(track["title"])
        self.screen.wait_for(track["artist"])
        self.assert_nothing_left()
        self.assert_snippet(*self.wire.snippets()[-1])
        self.screen.click("پخش در رادیو", "push button")
        wait_until(lambda: self.desktop.run("playerctl", "-p", "navorin", "status").stdout == b"Playing\n", 20, "sound")
        title = self.desktop.run("playerctl", "-p", "navorin", "metadata", "xesam:title").stdout.decode().strip()
        self.assertEqual(title, track["title"])
        self.assert_clean()

    def assert_snippet(self, head, body):
        self.assertIn("content-type: audio/mp4", head.lower())
        self.assertNotIn("authorization", head.lower())
        if not shutil.which("ffprobe"):
            return
        file = self.desktop.home / "sent.m4a"
        file.write_bytes(body)
        entries = "stream=codec_name,sample_rate,channels,bit_rate,duration"
        told = subprocess.run(["ffprobe", "-v", "error", "-show_entries", entries, "-of", "default=nw=1", file],
                              capture_output=True, text=True, check=True).stdout
        told = dict(line.split("=") for line in told.split())
        print(told)
        self.assertEqual((told["codec_name"], told["sample_rate"], told["channels"]), ("aac", "44100", "1"))
        self.assertAlmostEqual(float(told["duration"]), 4.55, delta=0.15 * PATIENCE)
        self.assertAlmostEqual(int(told["bit_rate"]), 128000, delta=2000)

    def test_noise_a_lost_microphone_and_none(self):
        self.start()
        noise = subprocess.Popen(["pacat", "-d", "mic", "--raw", "--format=u8", "--channels=1", "/dev/urandom"],
                                 env=self.desktop.env)
        self.addCleanup(noise.wait)
        self.addCleanup(noise.terminate)
        self.open_sheet()
        self.screen.wait_for("این صدا با هیچ آهنگی جور درنیامد", seconds=40)
        self.assert_nothing_left()

        self.screen.click(AGAIN, "push button")
        wait_until(self.is_listening, 10, "the microphone")
        time.sleep(1.5)
        noise.terminate()
        for module in re.findall(r"^(\d+)\tmodule-null-sink", self.desktop.run("pactl", "list", "short", "modules")
                                 .stdout.decode(), re.MULTILINE):
            self.desktop.run("pactl", "unload-module", module)
        self.screen.wait_for(AGAIN, seconds=40)
        self.assert_nothing_left()

        self.screen.click(AGAIN, "push button")
        begun = time.monotonic()
        self.screen.wait_for("دسترسی به میکروفون برای شناسایی آهنگ ضروری است.", seconds=5)
        print(f"refused after {time.monotonic() - begun:.2f} s")
        self.assert_clean()

    def call(self, method, *arguments):
        result = self.desktop.run("gdbus", "call", "--session", "--dest", NAME, "--object-path",
                                  "/" + NAME.replace(".", "/"), "--method", f"org.freedesktop.Application.{method}",
                                  *arguments)
        self.assertEqual(result.returncode, 0, result.stderr)

    def second_start(self, *arguments):
        result = self.desktop.run(str(self.desktop.bin / "navorin"), *arguments)
        self.assertEqual((result.returncode, result.stdout), (0, b""), result.stderr)

    def sheets(self):
        return len(self.discs())

    def close_after_listening(self):
        wait_until(self.is_listening, 15, "the microphone")
        wait_until(lambda: self.sheets() == 1, 5, "one sheet")
        self.desktop.press("Escape")
        wait_until(lambda: not self.sheets(), 10, "the sheet goes")
        wait_until(lambda: not self.is_listening(), 20, "the end of the snippet")
        self.assert_nothing_left()
        time.sleep(1)  # the backend's answer

    def test_asked_from_outside(self):
        self.start("--intent", "shazam")
        self.close_after_listening()
        for ask in (lambda: self.second_start("--intent", "shazam"), lambda: self.second_start("navorin://shazam/x?y"),
                    lambda: self.call("ActivateAction", "shazam", "[]", "{}")):
            before = len(self.wire.snippets())
            ask()
            self.close_after_listening()
            wait_until(lambda: len(self.wire.snippets()) == before + 1, 20, "one snippet")

        suite = pathlib.Path(self.desktop.env["XDG_CONFIG_HOME"]) / "navorin/group.ir.navorin.radio.conf"
        suite.write_text(f"[General]\nshazamRequestAt={time.time() - 121}\n")
        self.second_start()
        self.second_start("navorin://Shazam")
        self.second_start("NAVORIN://shazam")
        self.call("Open", "['navorin://play', 'navorin:shazam']", "{}")
        time.sleep(1.5)
        self.assertEqual(self.sheets(), 0)
        self.assertIn("shazamRequestAt", suite.read_text())
        self.assert_clean()

    def test_started_by_the_bus(self):
        services = self.desktop.home / ".local/share/dbus-1/services"
        services.mkdir(parents=True)
        (services / f"{NAME}.service").write_text(f"[D-BUS Service]\nName={NAME}\nExec={self.desktop.bin}/navorin\n")
        environment = {name: self.desktop.env[name] for name in self.desktop.env
                       if name.startswith(("XDG_", "PULSE", "DISPLAY", "TMPDIR", "GST", "QT_"))}
        environment["NAVORIN_BASE_URL"] = f"http://127.0.0.1:{self.wire.port}"
        self.desktop.run("dbus-update-activation-environment", *(f"{name}={value}" for name, value in environment.items()))
        self.desktop.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
                         "--method", "org.freedesktop.DBus.ReloadConfig")
        self.call("ActivateAction", "shazam", "[]", "{}")
        wait_until(self.is_listening, 40, "the microphone")
        wait_until(self.wire.snippets, 20, "the snippet")
        self.desktop.run("gdbus", "call", "--session", "--dest", "org.mpris.MediaPlayer2.navorin", "--object-path",
                         "/org/mpris/MediaPlayer2", "--method", "org.mpris.MediaPlayer2.Quit")
        wait_until(lambda: b"true" not in self.desktop.run(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/", "--method",
            "org.freedesktop.DBus.NameHasOwner", NAME).stdout, 20, "the end")


if __name__ == "__main__":
    unittest.main(verbosity=2)
