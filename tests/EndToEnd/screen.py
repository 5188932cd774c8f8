"""What a screen reader finds in the app's window, and a pointer that presses it.

The accessibility bus is the private desktop's, so a process of that desktop reads it: this file, run as a program.
"""
import json
import os
import subprocess
import sys
import time

from desktop import PATIENCE, wait_until


# Debian's bindings of the bus belong to Debian's interpreter, whichever one runs the tests.
PYTHON = "/usr/bin/python3"


class Screen:
    def __init__(self, desktop):
        self.desktop = desktop
        self._reader = subprocess.Popen([PYTHON, "-W", "ignore::DeprecationWarning", __file__], env=desktop.env, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self._reader.stdin.close()
        self._reader.wait(10)
        self._reader.stdout.close()

    def all(self, role=None, state=None):
        """What can be seen, in reading order: dictionaries of role, name, description, list, states
        and place (x, y, width, height)."""
        self._reader.stdin.write("\n")
        self._reader.stdin.flush()
        found = json.loads(self._reader.stdout.readline())
        return [node for node in found
                if role in (None, node["role"]) and (state is None or state in node["states"])]

    def find(self, name, role=None):
        return next((node for node in self.all(role) if node["name"] == name), None)

    def wait_for(self, name, role=None, seconds=20):
        return wait_until(lambda: self.find(name, role), seconds, f"{name!r} on the screen")

    def click(self, name, role=None):
        x, y, width, height = self.at_rest(name, role)
        self.desktop.click(x + width // 2, y + height // 2)

    def gone(self, name, seconds=20):
        """Missed by two looks: one may have passed it by while the window changed."""
        def missed():
            seen = self.all()
            return seen and all(node["name"] != name for node in seen)
        wait_until(lambda: missed() and missed(), seconds, f"{name!r} to go")

    def fill(self, field, text, role="text"):
        self.click(field, role)
        self.desktop.run("xdotool", "key", "ctrl+a")
        self.desktop.run("xdotool", "type", text)

    def sign_in(self, name, password):
        """In the sheet that --debug-login or a button opens."""
        self.at_rest("ورود به رادیو")
        self.desktop.focus()
        self.fill("نام کاربری یا آیدی تلگرام", name)
        self.fill("", password, "password text")
        self.click("ورود به رادیو")
        self.gone("ورود به رادیو")

    def options_of(self, title):
        """Presses the options of the row or card that bears this title."""
        place = self.at_rest(title, "push button")

        def lies_on(button):
            x, y, *_ = button["place"]
            return place[0] <= x < place[0] + place[2] and place[1] <= y < place[1] + place[3]
        button = next(each for each in self.all("push button") if each["name"] == "گزینهها" and lies_on(each))
        x, y, width, height = button["place"]
        self.desktop.click(x + width // 2, y + height // 2)

    def at_rest(self, name, role=None):
        """Its place, once it has stayed there. A busy machine may draw no frame of a slide between two looks."""
        place, since = None, 0

        def rests():
            nonlocal place, since
            seen = self.wait_for(name, role)["place"]
            if seen != place:
                place, since = seen, time.monotonic()
            return time.monotonic() - since > 0.4 * PATIENCE
        wait_until(rests, 15, f"{name!r} to come to rest")
        return place


LOOKS = 4  # at a window that changes while it is looked at; the last one counts
STATES = ("FOCUSED", "FOCUSABLE", "SELECTED", "CHECKED", "ENABLED")


def read(atspi, glib, node, found, around=None):
    """`around`: the name of the list that it stands in. Returns whether all of it stayed where it was meanwhile."""
    try:
        states = node.get_state_set()
        if not states.contains(atspi.StateType.VISIBLE):
            return True
        box = node.get_component_iface()
        place = box.get_extents(atspi.CoordType.SCREEN) if box else None
        role, name = node.get_role_name(), node.get_name()
        found.append({"role": role, "name": name, "list": around, "description": node.get_description(),
                      "states": [name.lower() for name in STATES if states.contains(getattr(atspi.StateType, name))],
                      "place": [place.x, place.y, place.width, place.height] if place else [0, 0, 0, 0]})
        count, stayed = node.get_child_count(), True
        for index in range(count):
            child = node.get_child_at_index(index)
            if not child or not read(atspi, glib, child, found, name if role == "list" else around):
                stayed = False
        return stayed and node.get_child_count() == count
    except glib.Error:
        return False  # it went while it was being read


def look(atspi, glib):
    """What stands in the program's window, and whether that stayed as it was while it was being read."""
    found, stayed = [], True
    context = glib.MainContext.default()
    while context.pending():
        context.iteration(False)  # what came and went since the last look
    desktop = atspi.get_desktop(0)
    desktop.clear_cache()
    for index in range(desktop.get_child_count()):
        program = desktop.get_child_at_index(index)
        if program and program.get_name() == os.environ.get("SCREEN_OF", "navorin"):
            stayed = read(atspi, glib, program, found) and stayed
    return found, stayed


def main():
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib
    Atspi.set_timeout(3000, 5000)
    for _ in sys.stdin:
        for _ in range(LOOKS):
            found, stayed = look(Atspi, GLib)
            if stayed:
                break
        print(json.dumps(found), flush=True)


if __name__ == "__main__":
    main()
