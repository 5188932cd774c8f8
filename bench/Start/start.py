#!/usr/bin/env python3
"""How fast Navorin starts and what it costs while it plays, beside programs that do a part of the same.

Run by hand, on a machine that does nothing else:

    bench/Start/start.py [--build build/release] [--runs 5] [--seconds 20] [--json FILE]

Everything happens in one private desktop session (an X server without a screen, a sound server with a null sink),
against the demo backend on loopback. After one uncounted run of each program, figures are medians of the runs:

    shown    from exec until the window is on the screen with something painted in it
    frame    from exec until the app says that its first frame was shown (Navorin only)
    grid     from exec until the app says that the grid has its stations (Navorin only)
    sound    from exec until sound comes out of the sink, the same live stream for all
    memory   proportional set size of the program with its children, while it plays
    CPU      of one core, over --seconds of playing

Needs xvfb, pulseaudio, pulseaudio-utils, libx11-6, dbus. The peers are mpv and strawberry (apt-get install mpv
strawberry), wanted for this alone; one that is not installed is left out.
"""

import argparse
import array
import ctypes
import json
import math
import os
import pathlib
import shutil
import signal
import statistics
import subprocess
import sys
import threading
import time
import urllib.request

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
SESSION = REPOSITORY / "tests" / "Support" / "desktop-session.sh"
INSIDE = "NAVORIN_BENCH_IN_SESSION"
SCREEN = (1440, 1000)
START_LIMIT = 30.0  # seconds
SETTLING = 5.0
SOUND_RATE = 48_000
AUDIBLE_DBFS = -50.0
BACKDROP = 0xFF00FF


class Screen:
    """Tells when a program has painted something: the empty screen is magenta, and so is an unpainted window."""

    def __init__(self):
        self._x = ctypes.CDLL("libX11.so.6")
        for name in ("XOpenDisplay", "XGetImage"):
            getattr(self._x, name).restype = ctypes.c_void_p
        self._x.XDefaultRootWindow.restype = self._x.XGetPixel.restype = ctypes.c_ulong
        self._display = ctypes.c_void_p(self._x.XOpenDisplay(None))
        if not self._display:
            sys.exit("no display")
        self._root = ctypes.c_ulong(self._x.XDefaultRootWindow(self._display))
        self._x.XSetWindowBackground(self._display, self._root, ctypes.c_ulong(BACKDROP))
        self._x.XClearWindow(self._display, self._root)
        self._x.XSync(self._display, 0)

    def painted_share(self):
        """Of two lines across the screen, the part that is not backdrop."""
        painted = 0
        for y in (200, 400):
            image = ctypes.c_void_p(self._x.XGetImage(self._display, self._root, 0, y, SCREEN[0], 1,
                                                      ctypes.c_ulong(0xFFFFFF), 2))
            painted += sum(self._x.XGetPixel(image, x, 0) & 0xFFFFFF != BACKDROP for x in range(0, SCREEN[0], 24))
            self._x.XDestroyImage(image)
        return painted / (2 * math.ceil(SCREEN[0] / 24))


class Monitor:
    """Listens to the null sink all the time and knows when sound first came after it was armed."""

    def __init__(self):
        self._record = subprocess.Popen(
            ["parec", "--device=out.monitor", "--format=s16le", "--channels=1", f"--rate={SOUND_RATE}",
             "--latency-msec=10"], stdout=subprocess.PIPE)
        self._first_sound = None
        self._last_sound = 0.0
        self._armed = threading.Event()
        threading.Thread(target=self._listen, daemon=True).start()

    def arm(self):
        self._first_sound = None
        self._armed.set()

    @property
    def first_sound(self):
        return self._first_sound

    def silent(self):
        return time.monotonic() - self._last_sound > 0.5

    def close(self):
        self._record.terminate()
        self._record.wait()

    def _listen(self):
        while True:
            data = self._record.stdout.read(SOUND_RATE // 100 * 2)
            if not data:
                return
            samples = array.array("h", data)
            power = sum(sample * sample for sample in samples) / len(samples) / 32768**2
            if power <= 10 ** (AUDIBLE_DBFS / 10):
                continue
            self._last_sound = time.monotonic()
            if self._armed.is_set():
                self._first_sound = self._last_sound
                self._armed.clear()


class Program:
    """One run of a program, with the moments at which it printed its lines."""

    def __init__(self, command, environment):
        self.started = time.monotonic()
        self._process = subprocess.Popen(command, env=os.environ | environment, stdout=subprocess.PIPE,
                                         stderr=subprocess.DEVNULL, start_new_session=True)
        self.lines = []
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self._process.stdout:
            self.lines.append((time.monotonic() - self.started, line.decode(errors="replace").rstrip()))

    def when_printed(self, beginning):
        return next((moment for moment, line in list(self.lines) if line.startswith(beginning)), None)

    def running(self):
        return self._process.poll() is None

    def processes(self):
        """The program and its descendants."""
        parents = {}
        for path in pathlib.Path("/proc").glob("[0-9]*/stat"):
            try:
                fields = path.read_text().rsplit(")", 1)[1].split()
            except OSError:
                continue
            parents[int(path.parent.name)] = int(fields[1])
        family = {self._process.pid}
        while True:
            more = {pid for pid, parent in parents.items() if parent in family} - family
            if not more:
                return family
            family |= more

    def memory(self):
        total = 0
        for pid in self.processes():
            for line in pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
                if line.startswith("Pss:"):
                    total += int(line.split()[1])
        return total / 1024

    def cpu_seconds(self):
        ticks = 0
        for pid in self.processes():
            fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
            ticks += int(fields[11]) + int(fields[12])
        return ticks / os.sysconf("SC_CLK_TCK")

    def end(self):
        for name in (signal.SIGTERM, signal.SIGKILL):
            if self.running():
                os.killpg(self._process.pid, name)
                try:
                    self._process.wait(5)
                except subprocess.TimeoutExpired:
                    continue


class Contender:
    def __init__(self, name, command, environment=None, window=True, sound=True, traced=False):
        self.name = name
        self.command = command
        self.environment = environment or {}
        self.window = window
        self.sound = sound
        self.traced = traced

    def installed(self):
        return shutil.which(self.command[0]) is not None

    def figures(self, program, screen, monitor):
        """Those of the start that are known by now."""
        found = {}
        if self.window and screen.painted_share() > 0.1:
            found["shown"] = time.monotonic() - program.started
        if self.traced:
            found["frame"] = program.when_printed("[App] first frame")
            found["grid"] = program.when_printed("[App] grid filled")
        if self.sound and monitor.first_sound:
            found["sound"] = monitor.first_sound - program.started
        return {name: value for name, value in found.items() if value is not None}

    def expected(self):
        wanted = {"shown": self.window, "frame": self.traced, "grid": self.traced, "sound": self.sound}
        return {name for name, is_wanted in wanted.items() if is_wanted}


def one_run(contender, screen, monitor, seconds):
    deadline = time.monotonic() + START_LIMIT
    while screen.painted_share() > 0 or not monitor.silent():
        if time.monotonic() > deadline:
            sys.exit("the run before does not go away")
        time.sleep(0.05)
    monitor.arm()
    program = Program(contender.command, contender.environment)
    try:
        figures = {}
        expected = contender.expected()
        while expected - figures.keys():
            if not program.running() or time.monotonic() - program.started > START_LIMIT:
                missing = ", ".join(sorted(expected - figures.keys()))
                print(f"{contender.name}: no {missing}; it said {program.lines[-3:]}", file=sys.stderr)
                break
            figures = contender.figures(program, screen, monitor) | figures
            time.sleep(0.002)
        if seconds:
            time.sleep(SETTLING)
            cpu, begin = program.cpu_seconds(), time.monotonic()
            time.sleep(seconds)
            figures["CPU"] = 100 * (program.cpu_seconds() - cpu) / (time.monotonic() - begin)
            figures["memory"] = program.memory()
        return figures
    finally:
        program.end()


def start_backend(path):
    process = subprocess.Popen([path, "--port", "0", "--parent-watch"], stdout=subprocess.PIPE, text=True)
    line = process.stdout.readline().split()
    if len(line) != 2 or line[0] != "PORT":
        sys.exit(f"the demo backend said {line}")
    return f"http://127.0.0.1:{line[1]}"


def stream_address(backend):
    """Where the station that Navorin is told to play comes from."""
    with urllib.request.urlopen(backend + "/api/stations") as answer:
        stations = json.load(answer)["data"]
    station = next(station for station in stations if station["genre"] == "persian")
    return backend + station["stream_url"]


def contenders(build, backend):
    stream = stream_address(backend)
    navorin = {"NAVORIN_BASE_URL": backend, "NAVORIN_TRACE_START": "1"}
    application = str(build / "bin" / "navorin")
    quiet_mpv = ["mpv", "--no-config", "--no-terminal", "--ao=pulse"]
    listed = [
        Contender("navorin", [application, "--debug-sync"], navorin, traced=True),
        Contender("navorin, software scene", [application, "--debug-sync"],
                  navorin | {"QT_QUICK_BACKEND": "software"}, traced=True),
        Contender("mpv with a window", quiet_mpv + ["--force-window=immediate", stream]),
        Contender("mpv without a window", quiet_mpv + ["--vo=null", "--no-video", stream], window=False),
        Contender("strawberry, not playing", ["strawberry"], sound=False),
    ]
    present = [contender for contender in listed if contender.installed()]
    for contender in listed:
        if contender not in present:
            print(f"{contender.name}: {contender.command[0]} is not there, left out", file=sys.stderr)
    return present


def print_table(results):
    units = {"shown": "ms", "frame": "ms", "grid": "ms", "sound": "ms", "memory": "MiB", "CPU": "%"}
    print(f"\n{'':26}" + "".join(f"{name + ' ' + unit:>14}" for name, unit in units.items()))
    for program, figures in results.items():
        cells = []
        for name, unit in units.items():
            value = figures.get(name)
            factor = 1000 if unit == "ms" else 1
            cells.append(f"{'-' if value is None else f'{value * factor:.1f}':>14}")
        print(f"{program:26}" + "".join(cells))


def measure(options):
    screen, monitor = Screen(), Monitor()
    backend = start_backend(options.build / "bin" / "navorin-demo-backend")
    runs = {}
    for contender in contenders(options.build, backend):
        one_run(contender, screen, monitor, 0)
        runs[contender.name] = []
        for index in range(options.runs):
            # Playing for long is the same each time; starting is not.
            runs[contender.name].append(one_run(contender, screen, monitor, options.seconds if index < 3 else 0))
            print(f"{contender.name} {index + 1}/{options.runs}", file=sys.stderr)
    monitor.close()
    results = {}
    for name, figures in runs.items():
        keys = {key for run in figures for key in run}
        results[name] = {key: statistics.median(run[key] for run in figures if key in run) for key in keys}
    print_table(results)
    if options.json:
        options.json.write_text(json.dumps({"medians": results, "runs": runs}, indent=1))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, default=REPOSITORY / "build" / "release")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--seconds", type=float, default=20)
    parser.add_argument("--json", type=pathlib.Path)
    options = parser.parse_args()
    options.build = options.build.resolve()
    if os.environ.get(INSIDE):
        measure(options)
        return
    os.environ[INSIDE] = "1"
    size = f"{SCREEN[0]}x{SCREEN[1]}x24"
    os.execv(SESSION, [str(SESSION), "--display", size, "--sound", "--", sys.executable, *sys.argv])


if __name__ == "__main__":
    main()
