#!/usr/bin/env python3
"""The real program keeps a track and plays what it keeps without a backend.

usage: offline.py BIN_FOLDER [TEST_NAME...]
"""
import http.server
import json
import sys
import threading
import unittest
import urllib.request

from desktop import Desktop, level, wait_until

BIN = sys.argv.pop(1)
SILENT = {"NAVORIN_AUDIO_SINK": "fakesink sync=true"}


def index_of(desktop):
    try:
        return json.loads((desktop.data / "offline_index.json").read_bytes())
    except FileNotFoundError:
        return []


def fetch(address):
    with urllib.request.urlopen(address, timeout=20) as answer:
        return answer.read()


class Catalogue:
    """A backend that has one station and nothing to play."""

    def __init__(self, station):
        body = json.dumps({"data": [station]}).encode()

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                if self.path != "/api/stations":
                    return self.send_error(404)
                self.send_response(200)
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


class Offline(unittest.TestCase):
    def test_a_kept_track_plays_without_a_backend(self):
        with Desktop(BIN) as desktop:
            backend = desktop.start_backend()
            audio = fetch(f"http://127.0.0.1:{desktop.port}/stream/archive?track=0")
            app = desktop.start_app("--debug-player", "--no-cover", "--autodl")
            entry = wait_until(lambda: index_of(desktop), 40, "the kept track")[0]
            self.assertEqual(entry["key"], "radio|debug-player-1")
            self.assertEqual((desktop.data / "OfflineTracks" / entry["audioFileName"]).read_bytes(), audio)
            self.assertEqual(app.end(), 0)
            self.assertEqual(backend.end(), 0)

            app = desktop.start_app("--debug-player", "--no-cover", "--autodl")
            wait_until(lambda: level(desktop.record(0.3)) > -60, 40, "sound from the disk")
            self.assertEqual(app.end(), 0)
            self.assertEqual([line for line in app.lines if "item failed" in line], [])
            self.assertEqual(index_of(desktop), [entry])

    def test_next_and_previous_stay_on_the_disk(self):
        tracks = [{"track_type": "radio", "track_id": f"archive-{i}", "title": f"آهنگ {i}",
                   "stream_url": "/stream/nowhere"} for i in range(3)]
        with Desktop(BIN, sound=False) as desktop, Catalogue({"genre": "persian", "tracks": tracks}) as catalogue:
            backend = desktop.start_backend()
            self.keep(desktop, tracks)
            self.assertEqual(backend.end(), 0)
            app = desktop.start_app("--debug-sync", port=catalogue.port, **SILENT)
            title = self.title_of(desktop)
            for command, expected in (("play", "آهنگ 0"), ("next", "آهنگ 1"), ("next", "آهنگ 2"),
                                      ("next", "آهنگ 0"), ("previous", "آهنگ 2")):
                wait_until(lambda: title(), 40, "a player on the bus")
                seen = len(app.lines)
                if command != "play":
                    desktop.run("playerctl", "-p", "navorin", command)
                wait_until(lambda: title() == expected, 10, expected)
                app.wait_for_line("[EqTap] prepare:", 20, after=0 if command == "play" else seen)
            self.assertEqual([line for line in app.lines if "item failed" in line], [])
            self.assertEqual(app.end(), 0)

    @staticmethod
    def keep(desktop, tracks):
        """Puts the tracks where the program would have."""
        folder = desktop.data / "OfflineTracks"
        folder.mkdir(parents=True)
        entries = []
        for i, track in enumerate(tracks):
            audio = fetch(f"http://127.0.0.1:{desktop.port}/stream/archive?track={i}")
            (folder / f"{i}.mp3").write_bytes(audio)
            entries.append({"key": f"radio|archive-{i}", "title": track["title"], "artist": "",
                            "audioFileName": f"{i}.mp3", "sizeBytes": len(audio), "downloadedAt": i})
        (desktop.data / "offline_index.json").write_text(json.dumps(entries))

    @staticmethod
    def title_of(desktop):
        def ask():
            return desktop.run("playerctl", "-p", "navorin", "metadata", "xesam:title").stdout.decode().strip()
        return ask


if __name__ == "__main__":
    unittest.main(verbosity=2)
