"""A private desktop for one test: an X server, a sound server with a null sink, folders of its own.

Nothing of the user's session is touched, and everything ends with the `with` block.
"""
import array
import contextlib
import json
import math
import os
import pathlib
import signal
import subprocess
import threading
import time
import urllib.request


# How much longer than usual everything may take, as under a sanitizer.
PATIENCE = float(os.environ.get("NAVORIN_TEST_PATIENCE", "1"))


def wait_until(condition, seconds, what):
    """Waits for a condition of another process, which has no clock of ours."""
    end = time.monotonic() + seconds * PATIENCE
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(0.02)
    raise AssertionError(f"waited {seconds} s in vain: {what}")


class Program:
    """A started program whose lines can be waited for."""

    def __init__(self, command, env):
        self.process = subprocess.Popen(command, env=env, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                        encoding="utf-8", errors="replace")
        self.lines, self.errors = [], []
        self._readers = [threading.Thread(target=self._read, args=pair, daemon=True)
                         for pair in ((self.process.stdout, self.lines), (self.process.stderr, self.errors))]
        for reader in self._readers:
            reader.start()

    @staticmethod
    def _read(stream, lines):
        for line in stream:
            lines.append(line.rstrip("\n"))

    def wait_for_line(self, start, seconds=20, after=0):
        def found():
            return next((line for line in self.lines[after:] if line.startswith(start)), None)
        try:
            return wait_until(found, seconds, f"a line that starts with {start!r}")
        except AssertionError as error:
            raise AssertionError(f"{error}\nits lines: {self.lines}\nits errors: {self.errors}") from None

    def is_alive(self):
        return self.process.poll() is None

    def end(self, seconds=60):
        """Asks it to end and returns its exit code."""
        if self.is_alive():
            self.process.send_signal(signal.SIGTERM)
        try:
            code = self.process.wait(seconds * PATIENCE)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise AssertionError(f"{self.process.args[0]} did not end when asked to") from None
        for reader in self._readers:
            reader.join(5)
        self.process.stdout.close()
        self.process.stderr.close()
        return code


class Desktop(contextlib.AbstractContextManager):
    """A running tests/Support/desktop-session.sh, with its XDG folders moved to where nobody would guess."""

    SESSION = pathlib.Path(__file__).parent.parent / "Support/desktop-session.sh"

    def __init__(self, bin_folder, size="1000x700", sound=True, keyring=False, accessibility=False):
        self.bin = pathlib.Path(bin_folder)
        self.options = ["--display", size + "x24"] + (["--sound"] if sound else []) + (
            ["--keyring"] if keyring else []) + (["--accessibility"] if accessibility else [])
        self._stack = contextlib.ExitStack()

    def __enter__(self):
        environment = {name: value for name, value in os.environ.items() if name != "QT_QPA_PLATFORM"}
        session = subprocess.Popen([self.SESSION, *self.options, "--", "sh", "-c", "env -0; printf '\\0end\\0'; cat"],
                                   env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._stack.callback(session.wait, 20)
        self._stack.callback(session.stdout.close)
        self._stack.callback(session.stdin.close)
        text = b""
        while not text.endswith(b"\0end\0"):
            byte = session.stdout.read(1)
            assert byte, "the desktop session did not come up"
            text += byte
        self.env = dict(entry.split("=", 1) for entry in text.decode().split("\0") if "=" in entry)
        self.home = pathlib.Path(self.env["HOME"])
        for name in ("config", "data", "cache"):
            self.env[f"XDG_{name.upper()}_HOME"] = str(self.home / "elsewhere" / name)
        self.data = pathlib.Path(self.env["XDG_DATA_HOME"]) / "navorin"
        self.env["NAVORIN_TRACE_START"] = "1"
        return self

    def __exit__(self, *exception):
        return self._stack.__exit__(*exception)

    def run(self, *command):
        return subprocess.run(command, env=self.env, capture_output=True, check=False)

    def start(self, name, *arguments, **environment):
        program = Program([str(self.bin / name), *arguments], self.env | environment)
        self._stack.callback(program.end)
        return program

    def start_backend(self, *arguments, port=0):
        backend = self.start("navorin-demo-backend", "--port", str(port), "--log", *arguments)
        self.port = int(backend.wait_for_line("PORT ", 60).split()[1])
        return backend

    def set_fault(self, text, times=-1):
        """Makes the backend's requests fail as demo/FaultRoutes.h tells; None ends all faults."""
        body = json.dumps({"fault": text, "times": times}).encode() if text else None
        request = urllib.request.Request(f"http://127.0.0.1:{self.port}/demo/fault", data=body,
                                         method="POST" if text else "DELETE")
        urllib.request.urlopen(request, timeout=10).close()

    def is_struck(self):
        """Whether every fault with a number of times has struck so often."""
        with urllib.request.urlopen(f"http://127.0.0.1:{self.port}/demo/fault", timeout=10) as answer:
            return all(fault["times"] <= 0 for fault in json.load(answer)["data"])

    def start_app(self, *arguments, port=None, **environment):
        address = f"http://127.0.0.1:{port or self.port}"
        return self.start("navorin", *arguments, NAVORIN_BASE_URL=address, **environment)

    def focus(self):
        """Gives the app's window the keyboard, as a window manager would."""
        assert self.run("xdotool", "search", "--sync", "--onlyvisible", "--class", "navorin",
                        "windowfocus", "--sync").returncode == 0

    def press(self, *keys):
        self.focus()
        for key in keys:
            self.run("xdotool", "key", key)

    def click(self, x, y):
        self.run("xdotool", "mousemove", str(x), str(y), "click", "1")

    def owner_of(self, name):
        """The process that has a name on the session bus."""
        told = self.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
                        "--method", "org.freedesktop.DBus.GetConnectionUnixProcessID", name).stdout
        return int(told.decode().removeprefix("(uint32 ").removesuffix(",)\n"))

    def restart_sound(self):
        """Kills the sound server and starts it anew."""
        pid = int(self.env["SESSION_PULSE_PID"])
        command = pathlib.Path(f"/proc/{pid}/cmdline").read_text().split("\0")[:-1]
        os.kill(pid, signal.SIGKILL)
        server = Program(command, self.env)
        self._stack.callback(server.end)
        self.env["SESSION_PULSE_PID"] = str(server.process.pid)
        wait_until(lambda: self.run("pactl", "set-default-sink", "out").returncode == 0, 10, "the sound server")

    def record(self, seconds):
        """What the sink plays for so long: mono samples at 48 kHz, from -1 to 1."""
        parec = subprocess.Popen(["parec", "-d", "out.monitor", "--format=s16le", "--rate=48000", "--channels=1",
                                  "--latency-msec=20"], env=self.env, stdout=subprocess.PIPE)
        wanted = int(seconds * 48000) * 2
        data = parec.stdout.read(wanted)
        parec.kill()
        parec.communicate()
        samples = array.array("h")
        samples.frombytes(data[:len(data) // 2 * 2])
        return [sample / 32768 for sample in samples]


def level(samples):
    """RMS in dB below full scale."""
    return 10 * math.log10(sum(sample * sample for sample in samples) / max(len(samples), 1) + 1e-20)


def longest_silence(samples, rate=48000):
    """Seconds of the longest run of 20 ms windows below -60 dB."""
    window = rate // 50
    longest = current = 0
    for start in range(0, len(samples) - window + 1, window):
        current = current + 1 if level(samples[start:start + window]) < -60 else 0
        longest = max(longest, current)
    return longest * 0.02
