#!/usr/bin/env python3
"""Kills a program that downloads, removes and saves, at random moments, and looks at what it left.

usage: offline_kill.py WORKER ROUNDS
"""
import http.server
import json
import pathlib
import random
import signal
import subprocess
import sys
import tempfile
import threading
import time

WORKER, ROUNDS = sys.argv[1], int(sys.argv[2])
PNG = bytes.fromhex("89504e470d0a1a0a0000000d4948445200000001000000010802000000907753de"
                    "0000000c4944415408d763f8cfc000000301010018dd8db00000000049454e44ae426082")
REQUIRED = {"key": str, "title": str, "artist": str, "audioFileName": str, "sizeBytes": int, "downloadedAt": float}


def song(number):
    """Audio that tells its number and its length: half of it would be noticed."""
    return (b"%08d" % number * 60000)[:1000 + number * 7919 % 400_000]


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        kind, number = self.path.strip("/").split("/")
        body = song(int(number)) if kind == "song" else PNG
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *arguments):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, request, address):
        if not isinstance(sys.exc_info()[1], ConnectionError):
            super().handle_error(request, address)


def outside(data):
    """All below the data folder that is not the library's: its bytes and when it was written."""
    app = data / "navorin"
    def is_library(path):
        return path.parent == app / "OfflineTracks" or path.parent == app and path.name.startswith("offline_index.json")
    return {path: (path.read_bytes(), path.stat().st_mtime_ns)
            for path in data.rglob("*") if path.is_file() and not is_library(path)}


def kept_tracks(data):
    """What the index names and the disk has, after a close look at both."""
    index = data / "navorin/offline_index.json"
    if not index.exists():
        return 0
    kept = 0
    for entry in json.loads(index.read_bytes()):
        for key, kind in REQUIRED.items():
            assert isinstance(entry[key], kind), (key, entry)
        number = int(entry["key"].removeprefix("song|"))
        audio = data / "navorin/OfflineTracks" / entry["audioFileName"]
        if audio.exists():
            kept += 1
            assert entry["sizeBytes"] == len(song(number)), entry
            assert audio.read_bytes() == song(number), f"half written: {entry}"
        artwork = data / "navorin/OfflineTracks" / entry.get("artworkFileName", "none")
        if artwork.exists():
            assert artwork.read_bytes() == PNG, f"half written: {entry}"
    return kept


def one_round(data, address, expected, moments):
    worker = subprocess.Popen([WORKER, address], stdout=subprocess.PIPE,
                              env={"PATH": "/usr/bin:/bin", "HOME": str(data), "XDG_DATA_HOME": str(data),
                                   "LANG": "C.UTF-8"})
    line = worker.stdout.readline().split()
    assert line[0] == b"READY" and int(line[1]) == expected, (line, expected)
    time.sleep(moments.uniform(0, 0.15))  # the moment is what this test is about
    worker.send_signal(signal.SIGKILL)
    worker.stdout.close()
    assert worker.wait() == -signal.SIGKILL
    return kept_tracks(data)


def main():
    seed = random.randrange(1 << 32)
    print(f"seed {seed}")
    server = Server(("127.0.0.1", 0), Handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    address = f"http://127.0.0.1:{server.server_address[1]}"
    with tempfile.TemporaryDirectory() as folder:
        data = pathlib.Path(folder)
        (data / "navorin/OfflineTracks").mkdir(parents=True)
        for path in (data / "navorin/neighbour", data / "somebody/else.json"):
            path.parent.mkdir(exist_ok=True)
            path.write_text("not yours")
        before = outside(data)
        moments, kept, changes, most = random.Random(seed), 0, 0, 0
        for _ in range(ROUNDS):
            now = one_round(data, address, kept, moments)
            changes, kept, most = changes + (now != kept), now, max(most, now)
            assert outside(data) == before
        strays = [path.name for path in (data / "navorin").rglob("*")
                  if path.is_file() and path.suffix not in (".mp3", ".art", ".TAG", ".json", ".new", "")]
        assert not strays, strays
        print(f"{ROUNDS} kills, {changes} changed the library, at most {most} tracks in it")
        assert changes > ROUNDS / 10, "too little happened to prove anything"
    server.shutdown()
    server.server_close()


main()
