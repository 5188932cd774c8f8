#!/usr/bin/env python3
"""Each screen as those meet it who do not see it or do not point: by the Tab key and over the accessibility bus.

usage: access.py BIN_FOLDER [TEST_NAME...]
"""
import sys
import unittest

from desktop import Desktop, wait_until
from screen import Screen

BIN = sys.argv.pop(1)
SIZE = (1000, 700)
CONTROLS = ("push button", "button menu", "check box", "slider", "text", "password text", "page tab", "list")
# Not to be pressed as long as nothing is typed, like the bands of an equaliser that is off; Qt does not tell the bus so.
RESTING = ("ورود به رادیو", "پیش‌نمایش", "جستجو")
# Goes from left to right in every language, as time does; on a live station it rests as well.
TIME = ("۱۰ ثانیه عقب", "آهنگ قبلی", "پخش", "توقف", "آهنگ بعدی", "۱۰ ثانیه جلو")


def in_row(one, other):
    """Whether two places stand side by side."""
    top, bottom = one[1], one[1] + one[3]
    return top <= other[1] + other[3] / 2 < bottom


def middle(place):
    return place[0] + place[2] / 2


class Access(unittest.TestCase):
    def open(self, *arguments, **environment):
        self.desktop = self.enterContext(Desktop(BIN, accessibility=True))
        self.desktop.start_backend()
        self.app = self.desktop.start_app(*arguments, NAVORIN_REDUCED_MOTION="1", **environment)
        self.screen = self.enterContext(Screen(self.desktop))
        self.screen.wait_for("ایستگاه‌ها", "list", 60)
        wait_until(lambda: any(node["list"] == "ایستگاه‌ها" for node in self.screen.all("push button")), 30, "stations")
        self.desktop.focus()

    def key(self, *keys):
        self.desktop.run("xdotool", "key", *keys)

    def focused(self):
        """Where the keyboard is: the innermost, for what lies around it says the same of itself."""
        return next((node for node in reversed(self.screen.all()) if "focused" in node["states"]), None)

    def tab(self, before):
        """The next step of the Tab key after `before`."""
        self.key("Tab")

        def moved():
            now = self.focused()
            return now if now and now != before else None
        try:
            return wait_until(moved, 1, "the focus to move")
        except AssertionError:
            return before  # the only one

    def check(self, title, dialog=None, scrolls=False):
        """Everything on the screen has a name and its place; by key it is reached, in reading order."""
        nodes = self.screen.all()
        if dialog:
            start = next(i for i, node in enumerate(nodes) if node["role"] == "dialog" and node["name"] == dialog)
            nodes = nodes[start:]
        for node in nodes:
            if "focusable" in node["states"]:
                self.assertTrue(node["name"] or node["description"], f"{title}: {node}")
            x, y, width, height = node["place"]
            if node["role"] in CONTROLS and not node["list"]:
                self.assertTrue(0 <= x and x + width <= SIZE[0], f"{title}: {node}")
                self.assertTrue(scrolls or (0 <= y and y + height <= SIZE[1]), f"{title}: {node}")
        if self.by_key:
            self.check_steps(title, nodes)

    def check_steps(self, title, nodes):
        steps, step = [], self.tab(None)
        while len(steps) < 40 and not any(self.same(step, each) for each in steps):
            steps.append(step)
            step = self.tab(step)
        reached = {step["name"] for step in steps} | {step["list"] for step in steps}
        for node in nodes:
            rests = node["name"] in RESTING + TIME or (title, node["role"]) == ("اکولایزر", "slider")
            if node["role"] in CONTROLS and not node["list"] and not rests:
                self.assertIn(node["name"], reached, f"{title}: {node} of {[step['name'] for step in steps]}")
        for one, other in zip(steps, steps[1:]):
            if in_row(one["place"], other["place"]) and one["name"] not in TIME and (
                    one["list"] == other["list"] and "list" not in (one["role"], other["role"])):
                self.assertGreater(middle(one["place"]), middle(other["place"]), f"{title}: {one} before {other}")

    @staticmethod
    def same(one, other):
        return (one["name"], one["role"], one["place"]) == (other["name"], other["role"], other["place"])

    def visit(self, button, dialog):
        """Opens a sheet, looks at it, and closes it by key."""
        self.screen.click(button, "push button")
        wait_until(lambda: self.screen.find(dialog, "dialog"), 10, dialog)
        self.check(dialog, dialog)
        self.key("Escape")
        wait_until(lambda: not self.screen.find(dialog, "dialog"), 10, f"{dialog} to close")
        wait_until(lambda: (self.focused() or {}).get("name") == button, 5, f"the focus to come back to {button}")

    def walk(self):
        self.check("home")
        self.visit("حساب کاربری", "حساب کاربری")
        self.visit("تشخیص آهنگ", "تشخیص آهنگ")
        self.screen.click("جستجوی ساندکلود", "push button")
        self.screen.wait_for("بازگشت")
        self.check("search")
        self.key("Escape")
        self.screen.click("کتابخانه")
        self.screen.wait_for("کتابخانه من")
        self.check("library", scrolls=True)
        self.screen.click("دانلودهای آفلاین", "push button")
        self.screen.wait_for("بازگشت")
        self.check("offline")
        self.key("Escape")
        self.screen.click("رادیو")
        self.screen.wait_for("ایستگاه‌ها", "list")
        self.play()

    def play(self):
        """A station with tracks, and from there the player."""
        card = next(node for node in self.screen.all("push button") if node["list"] == "ایستگاه‌ها")
        self.screen.click(card["name"], "push button")
        wait_until(lambda: self.screen.find("پخش همه") or self.screen.find("متن ترانه"), 20, "what the card opens")
        if self.screen.find("پخش همه"):
            self.check("station")
            self.screen.click("پخش همه")
        self.app.wait_for_line("[RadioPlayer] EQ tap bound")
        self.screen.wait_for("متن ترانه", "push button")
        self.check("player")
        for button in ("اکولایزر", "متن ترانه", "استوری هوشمند"):
            self.visit(button, button)
        self.visit("افزودن به پلیلیست", "حساب کاربری")

    def test_as_drawn(self):
        self.by_key = True
        self.open()
        self.walk()
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])

    def test_in_large_letters(self):
        self.by_key = False
        self.open(NAVORIN_TEXT_SCALE="1.5")
        self.walk()
        self.assertEqual([line for line in self.app.errors if "qrc:" in line], [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
