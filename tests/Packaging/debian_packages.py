#!/usr/bin/env python3
"""Makes the Debian packages and looks whether they depend on all that the program loads while it runs.

usage: debian_packages.py CPACK REPOSITORY BUILD
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

CPACK, REPOSITORY, BUILD = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
VIEWS, PLATFORM = REPOSITORY / "src/Views", REPOSITORY / "src/Platform"
# loaded by its address, and only where there are advertisements
AD_VIEW = VIEWS / "Ads/AdWebView.qml"
OURS = "Navorin"


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def owners(files):
    """The packages that brought `files`, which may be named without the /usr that some systems link away."""
    found = output("dpkg", "-S", *(f"*{file}" for file in files)).splitlines()
    assert len(found) == len(files), found
    return {line.split(":")[0] for line in found}


def names(field):
    return set(re.findall(r"(?:^|[,|]) *([a-z0-9.+-]+)", field))


def qml_packages(files):
    """Of the modules that `files` import, and of those that these need in their turn."""
    modules = pathlib.Path(output("qtpaths6", "--query", "QT_INSTALL_QML").strip())
    found, waiting = {}, {"QtQml"}
    for file in files:
        waiting |= set(re.findall(r"^import ([A-Z][\w.]*)", file.read_text(), re.M)) - {OURS}
    while waiting:
        module = waiting.pop()
        description = modules / module.replace(".", "/") / "qmldir"
        found[module] = description
        waiting |= set(re.findall(r"^(?:import|depends) ([\w.]+)", description.read_text(), re.M)) - found.keys()
    return owners(found.values())


def gstreamer_packages():
    """Of every element whose name stands in a text of the program."""
    plugin_of = {element: plugin for plugin, element in re.findall(r"^(\w+):  (\w+):", output("gst-inspect-1.0"), re.M)}
    plugins, missing = set(), set()
    for file in PLATFORM.rglob("*.cpp"):
        text = file.read_text()
        words = {word for quoted in re.findall(r'"([^"\n]*)"', text) for word in re.findall(r"\w+", quoted)}
        plugins |= {plugin_of[word] for word in words & plugin_of.keys()}
        missing |= set(re.findall(r'make\("(\w+)"', text)) - plugin_of.keys()
    assert not missing, f"no element here is called {missing}"
    files = {re.search(r"Filename +(\S+)", output("gst-inspect-1.0", plugin))[1] for plugin in plugins}
    return owners(files - {"(null)"})  # built into the library


class DebianPackages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        output(CPACK, "--config", f"{BUILD}/CPackConfig.cmake", "-B", cls.folder, "-D",
               "CPACK_DEBIAN_COMPRESSION_TYPE=gzip")
        cls.packages = {file.name.split("_")[0]: file for file in cls.folder.glob("*.deb")}
        cls.fields = {field: names(output("dpkg-deb", "-f", cls.packages["navorin"], field))
                      for field in ("Depends", "Recommends", "Suggests")}

    def test_what_is_loaded_comes_along(self):
        views = set(VIEWS.rglob("*.qml"))
        needed = qml_packages(views - {AD_VIEW})
        self.assertEqual({name for name in self.fields["Depends"] if name.startswith("qml6-")}, needed)
        optional = self.fields["Recommends"] | self.fields["Suggests"]
        self.assertEqual({name for name in optional if name.startswith("qml6-")}, qml_packages({AD_VIEW}) - needed)
        self.assertEqual(gstreamer_packages() - self.fields["Depends"], set())

    def test_two_packages_share_nothing_and_begin_at_the_root(self):
        self.assertEqual(self.packages.keys(), {"navorin", "navorin-demo"})
        files = {name: set(re.findall(r" \./(\S*[^/\s])$", output("dpkg-deb", "-c", file), re.M))
                 for name, file in self.packages.items()}
        self.assertEqual(files["navorin-demo"], {"usr/bin/navorin-demo-backend"})
        self.assertIn("usr/bin/navorin", files["navorin"])
        self.assertFalse(files["navorin"] & files["navorin-demo"])
        output("dpkg-deb", "-x", self.packages["navorin"], self.folder / "root")
        service = next((self.folder / "root/usr/share/dbus-1/services").iterdir())
        self.assertIn('Exec="/usr/bin/navorin"\n', service.read_text())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
