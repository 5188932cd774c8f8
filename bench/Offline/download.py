#!/usr/bin/env python3
"""One large download into the offline library beside curl to a file, and many small ones at once.

usage: download.py [BIN_FOLDER]

Both read from the same server on loopback and write to the same file system, in turns.
"""
import http.server
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import threading
import time

BIN = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build/release/bin")
LARGE, SMALL, PARALLEL, ROUNDS = 200_000_000, 4_000_000, 50, 7


class Handler(http.server.BaseHTTPRequestHandler):
    body = os.urandom(1 << 20) * (LARGE // (1 << 20) + 1)

    def do_GET(self):
        length = LARGE if self.path == "/large" else SMALL
        self.send_response(200)
        self.send_header("Content-Length", str(length))
        self.end_headers()
        self.wfile.write(memoryview(self.body)[:length])

    def log_message(self, *arguments):
        pass


class Server(http.server.ThreadingHTTPServer):
    request_queue_size = 128
    daemon_threads = True


def ours(folder, address, count):
    with tempfile.TemporaryDirectory(dir=folder) as data:
        line = subprocess.run([BIN / "bench_download", address, str(count)], check=True, capture_output=True,
                              env=os.environ | {"XDG_DATA_HOME": data}).stdout
        return [float(number) for number in line.split()]


def curl(folder, address, *, flushed):
    target = folder / "curl"
    start = time.monotonic()
    subprocess.run(["curl", "-sf", "-o", target, address], check=True)
    if flushed:
        descriptor = os.open(target, os.O_RDONLY)
        os.fsync(descriptor)
        os.close(descriptor)
    seconds = time.monotonic() - start
    target.unlink()
    return seconds


def main():
    server = Server(("127.0.0.1", 0), Handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    address = f"http://127.0.0.1:{server.server_address[1]}"
    with tempfile.TemporaryDirectory(dir=".") as name:
        folder = pathlib.Path(name)
        rows = [(ours(folder, f"{address}/large", 1), curl(folder, f"{address}/large", flushed=False),
                 curl(folder, f"{address}/large", flushed=True)) for _ in range(ROUNDS)]
        times = [row[0][0] for row in rows], [row[1] for row in rows], [row[2] for row in rows]
        for name, statistic in (("medians", statistics.median), ("best", min)):
            own, bare, flushed = map(statistic, times)
            print(f"200 MB, {name} of {ROUNDS}: ours {own:.3f} s; curl {bare:.3f} s, throughput {bare / own:.2f} of "
                  f"it; curl and fsync {flushed:.3f} s, {flushed / own:.2f} of it")
        memory = max(row[0][1] for row in rows)
        print(f"peak memory: body + {(memory - LARGE) / 1e6:.1f} MB")
        seconds, memory, longest, work = ours(folder, f"{address}/small", PARALLEL)
        print(f"{PARALLEL} at once, 4 MB each: {seconds:.2f} s, UI thread held up {longest:.2f} ms at most by the "
              f"clock, {work:.2f} ms of its own work")
    server.shutdown()
    server.server_close()


main()
