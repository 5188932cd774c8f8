#!/usr/bin/env python3
"""Installs into a folder of its own and looks at what a desktop and a shell would find there.

usage: installation.py CMAKE REPOSITORY BUILD
"""
import configparser
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

CMAKE, REPOSITORY, BUILD = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
ID = "ir.navorin.NavorinRadio"


def output(*command, **arguments):
    """What `command` wrote; fails if it failed or complained."""
    done = subprocess.run(command, capture_output=True, text=True, **arguments)
    if done.returncode or done.stderr:
        raise AssertionError(f"{command}: {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def sources(*folders):
    return "".join(f.read_text() for folder in folders for f in (REPOSITORY / folder).rglob("*.cpp"))


def key_file(path):
    file = configparser.RawConfigParser(strict=True)
    file.optionxform = str
    file.read(path)
    return file


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name) / "some where"
        output(CMAKE, "--install", BUILD, "--prefix", cls.prefix)
        cls.share = cls.prefix / "share"
        cls.desktop_file = cls.share / f"applications/{ID}.desktop"
        cls.program = cls.prefix / "bin/navorin"
        cls.manuals = [cls.share / "man/man1/navorin.1", cls.share / "man/fa/man1/navorin.1"]

    def test_desktop_finds_and_starts_the_program(self):
        output("desktop-file-validate", self.desktop_file)
        entry = key_file(self.desktop_file)["Desktop Entry"]
        service = key_file(self.share / f"dbus-1/services/{ID}.service")["D-BUS Service"]
        self.assertEqual(service["Name"], self.desktop_file.stem)
        self.assertEqual(shlex.split(service["Exec"]), [str(self.program)])
        self.assertTrue(os.access(self.program, os.X_OK))
        self.assertTrue(os.access(self.prefix / "bin" / entry["TryExec"], os.X_OK))
        self.assertTrue(os.access(self.prefix / "bin/navorin-demo-backend", os.X_OK))
        icons = self.share / "icons/hicolor"
        for icon in (icons / f"scalable/apps/{entry['Icon']}.svg",
                     icons / f"symbolic/apps/{entry['Icon']}-symbolic.svg"):
            for size in "16", "128":
                output("rsvg-convert", "-w", size, icon, "-o", self.prefix / "icon.png")

    def test_software_centres_are_told_of_this_version(self):
        metainfo = self.share / f"metainfo/{ID}.metainfo.xml"
        output("appstreamcli", "validate", "--no-net", metainfo)
        root = xml.etree.ElementTree.parse(metainfo).getroot()
        self.assertEqual(root.find("launchable").text, self.desktop_file.name)
        version = output(self.program, "--version").split()[-1]
        self.assertEqual(root.find("releases/release").get("version"), version)

    def test_manuals_leave_nothing_out(self):
        program = sources("src")
        facts = set(re.findall(r"--[a-z-]+", output(self.program, "--help")))
        facts |= {f".B {code}" for code in re.findall(r"int exit\w+ = (\d+);", program)}
        facts |= set(re.findall(r'(?:configured|getenv|EnvironmentVariable\w*)\("(NAVORIN_\w+)"', program))
        self.assertGreater(len(facts), 15)
        for manual in self.manuals:
            output("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", manual,
                   env=os.environ | {"LC_ALL": "C.UTF-8", "MANWIDTH": "80"})
            text = manual.read_text().replace(r"\-", "-")
            self.assertNotIn("@", text)
            self.assertEqual({fact for fact in facts if not re.search(re.escape(fact) + r"\b", text)}, set(), manual)
            told = set(re.findall(r"(?<!\w)--[a-z][a-z-]+", text))
            self.assertEqual(told - facts, set(), manual)

    def test_shell_completes_options(self):
        script = 'source "$1"; COMP_WORDS=(navorin "${@:3}"); COMP_CWORD=$(($# - 2)); _navorin "$2"; echo "${COMPREPLY[@]}"'
        for words, completed in ((["--deb"], "--debug-sync --debug-player --debug-login --debug-detail --debug-telegram"),
                                 (["--intent", ""], "shazam"), (["--de", "--inte"], "--intent")):
            with self.subTest(words):
                answer = output("bash", "-c", script, "bash", self.share / "bash-completion/completions/navorin",
                                self.program, *words)
                self.assertEqual(answer.strip(), completed)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
