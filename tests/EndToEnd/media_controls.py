#!/usr/bin/env python3
"""The real program on the desktop's media controls, while a backend moves its programme.

usage: media_controls.py BIN_FOLDER [TEST_NAME...]
"""
import http.server
import json
import re
import struct
import subprocess
import sys
import threading
import unittest
import zlib

from desktop import Desktop, level, longest_silence, wait_until

BIN = sys.argv.pop(1)
POLL = 15  # seconds between two looks at the catalogue


def picture(red, green, blue):
    """A PNG of 8 by 8 pixels of one colour."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    rows = (b"\0" + bytes((red, green, blue)) * 8) * 8
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 8, 8, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class Backend:
    """Serves the one station that a test sets, and covers of the colour in their address."""

    def __init__(self, station):
        self.station = station
        backend = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                cover = re.match(r"/cover/(\d+)-(\d+)-(\d+)", self.path)
                if self.path == "/api/stations":
                    self.answer("application/json", json.dumps({"data": [backend.station]}).encode())
                elif cover:
                    self.answer("image/png", picture(*map(int, cover.groups())))
                else:
                    self.send_error(404)

            def answer(self, kind, body):
                self.send_response(200)
                self.send_header("Content-Type", kind)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *arguments):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.port = self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.server.shutdown()
        self.server.server_close()


def live(title, colour, address):
    return {"genre": "persian", "server_name": "رادیو", "title": title, "stream_url": address,
            "artwork_url": f"/cover/{colour}"}


def track_list(address, count=3, **more):
    return {"genre": "persian", "tracks": [{"id": i, "title": f"آهنگ {i}", "stream_url": address}
                                           for i in range(count)], **more}


class Controls:
    def __init__(self, desktop):
        self.desktop = desktop

    def ask(self, *arguments):
        return self.desktop.run("playerctl", "-p", "navorin", *arguments).stdout.decode().strip()

    def wait(self, expected, *arguments, seconds=10):
        return wait_until(lambda: re.fullmatch(expected, self.ask(*arguments)), seconds,
                          f"{arguments} to be {expected!r}")


class MediaControls(unittest.TestCase):
    def tone(self, desktop, hertz=1000):
        desktop.start_backend()
        return f"http://127.0.0.1:{desktop.port}/stream/test-tone?hz={hertz}&format=mp3"

    def test_a_new_programme_changes_everything_but_the_sound(self):
        with Desktop(BIN) as desktop, Backend({}) as backend:
            tone = self.tone(desktop)
            backend.station = live("گروه نسیم - نامه", "200-40-40", tone)
            app = desktop.start_app("--debug-sync", port=backend.port)
            controls = Controls(desktop)
            controls.wait("Playing", "status", seconds=40)
            wait_until(lambda: level(desktop.record(0.3)) > -60, 20, "sound")
            first_picture = controls.wait("file://.+", "metadata", "mpris:artUrl").group()
            backend.station = live("نیلوفر - شهر", "40-40-200", tone)
            sound = desktop.record(POLL + 3)
            app.wait_for_line("[RadioPlayer] live metadata: گروه نسیم - نامه -> نیلوفر - شهر", 1)
            self.assertEqual(controls.ask("metadata", "xesam:title"), "شهر")
            self.assertEqual(controls.ask("metadata", "xesam:artist"), "نیلوفر")
            wait_until(lambda: controls.ask("metadata", "mpris:artUrl") not in ("", first_picture), 5, "its picture")
            self.assertLess(longest_silence(sound), 0.03)
            # What is left of a tone after its own frequency is taken out would be a click.
            turn = 2 - (2 * 3.14159265 * 1000 / 48000) ** 2
            residue = max(abs(a + c - turn * b) for a, b, c in zip(sound, sound[1:], sound[2:]))
            self.assertLess(residue, 0.01)
            self.assertEqual(app.end(), 0)

    def test_a_rotation_restarts_until_the_listener_chooses(self):
        with Desktop(BIN, sound=False) as desktop, Backend({}) as backend:
            tone = self.tone(desktop)
            backend.station = track_list(tone)
            app = desktop.start_app("--debug-sync", port=backend.port, NAVORIN_AUDIO_SINK="fakesink sync=true")
            controls = Controls(desktop)
            controls.wait("Playing", "status", seconds=40)
            backend.station = track_list(tone, track_index=1)
            app.wait_for_line("[RadioPlayer] server rotation: آهنگ 0 -> آهنگ 1", POLL + 3)
            controls.wait("آهنگ 1", "metadata", "xesam:title")
            controls.ask("next")
            controls.wait("آهنگ 2", "metadata", "xesam:title")
            controls.ask("next")
            controls.wait("آهنگ 0", "metadata", "xesam:title")
            controls.ask("previous")
            controls.wait("آهنگ 2", "metadata", "xesam:title")

    def test_every_control(self):
        with Desktop(BIN, sound=False) as desktop, Backend({}) as backend:
            backend.station = track_list(self.tone(desktop), count=2, track_index=0)
            monitor = subprocess.Popen(["dbus-monitor", "--session",
                                        "path=/org/mpris/MediaPlayer2,type=signal"], env=desktop.env,
                                       stdout=subprocess.PIPE, text=True)
            self.addCleanup(monitor.stdout.close)
            desktop.start_app("--debug-sync", port=backend.port, NAVORIN_AUDIO_SINK="fakesink sync=true")
            controls = Controls(desktop)
            controls.wait("Playing", "status", seconds=40)
            controls.ask("play-pause")
            controls.wait("Paused", "status")
            controls.ask("play")
            controls.wait("Playing", "status")
            controls.wait(r"\d+", "metadata", "mpris:length")
            controls.ask("position", "5")
            wait_until(lambda: 5 <= float(controls.ask("position")) < 9, 5, "the position")
            controls.ask("volume", "0.5")
            controls.wait(r"0\.5\d*", "volume")
            controls.ask("next")
            controls.wait("آهنگ 1", "metadata", "xesam:title")
            monitor.terminate()
            signals = re.split(r"^signal .*member=(\w+)\n", monitor.communicate()[0], flags=re.MULTILINE)[1:]
            told = [pair for pair in zip(signals[::2], signals[1::2]) if pair[0] in ("PropertiesChanged", "Seeked")]
            self.assertIn("Seeked", [name for name, _ in told])
            self.assertNotIn('"Position"', "".join(text for _, text in told))
            self.assertEqual([text for (_, text), (_, after) in zip(told, told[1:]) if text == after], [])

    def test_gives_way_to_a_telephone_call(self):
        with Desktop(BIN) as desktop, Backend({}) as backend:
            backend.station = live("گروه - نامه", "9-9-9", self.tone(desktop))
            desktop.run("pactl", "load-module", "module-role-cork")
            desktop.start_app("--debug-sync", port=backend.port)
            controls = Controls(desktop)
            controls.wait("Playing", "status", seconds=40)
            call = subprocess.Popen(["pacat", "--property=media.role=phone", "/dev/zero"], env=desktop.env)
            controls.wait("Paused", "status")
            wait_until(lambda: b"Corked: yes" in desktop.run("pactl", "list", "sink-inputs").stdout, 10, "the pause")
            call.terminate()
            call.wait(10)
            controls.wait("Playing", "status")

    def test_without_a_session_bus(self):
        with Desktop(BIN, sound=False) as desktop:
            desktop.start_backend()
            app = desktop.start_app("--debug-sync", NAVORIN_AUDIO_SINK="fakesink sync=true",
                                    DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
            app.wait_for_line("[EqTap] prepare:", 40)
            self.assertEqual(app.end(), 0)
            self.assertEqual([line for line in app.lines if line.startswith("[MPRIS]")],
                             ["[MPRIS] no session bus: running without media keys"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
