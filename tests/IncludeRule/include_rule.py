#!/usr/bin/env python3
"""Who may include whom among the folders of src/.

Usage: include_rule.py REPOSITORY

Prints every include that breaks the rule and fails if there is one. First it seeds such includes into a tree of
its own and fails if it overlooks one of them.
"""

import pathlib
import re
import sys
import tempfile

# Sources directly in src/ put the program together and may include everything.
FOLDERS = {
    "Models": {"Models"},
    "Platform": {"Platform"},
    "Services": {"Services", "Models", "Platform", "Shared"},
    "Shared": {"Shared", "Platform"},
    "Views": {"Views", "Services", "Models", "Shared", "Platform/Desktop", "Platform/Tasks"},
}

# Inside Services the arrows run one way. A header directly in Services/ is for all of them.
SERVICES = {
    "Backend": set(),
    "Equaliser": set(),
    "Story": set(),
    "Account": {"Backend"},
    "Artwork": {"Backend"},
    "Catalogue": {"Backend"},
    "Offline": {"Backend"},
    "Playback": {"Backend", "Offline", "Equaliser", "Artwork"},
    "Lyrics": {"Backend", "Playback"},
    "Recognition": {"Backend", "Playback"},
}

INCLUDE = re.compile(r'^\s*#\s*include\s*["<]([^">]+)[">]', re.MULTILINE)
GENERATED = re.compile(r"(^|/)moc_\w+\.cpp$|\.moc$")


def fault(source, included):
    """Why `source` may not include `included`, both relative to src/; None if it may."""
    top, *inner = source.parts[:-1]
    to_top, *to_inner = pathlib.PurePath(included).parts[:-1]
    if top not in FOLDERS:
        return f"{top}/ has no rule yet"
    allowed = FOLDERS[top]
    if to_top not in allowed and included not in allowed and not any(included.startswith(f + "/") for f in allowed):
        return f"{top} may not include {to_top}"
    if top == to_top == "Services" and inner and to_inner and inner[0] != to_inner[0]:
        if inner[0] not in SERVICES:
            return f"Services/{inner[0]}/ has no rule yet"
        if to_inner[0] not in SERVICES[inner[0]]:
            return f"{inner[0]} may not include {to_inner[0]}"
    return None


def faults_of(source, text, root):
    for included in INCLUDE.findall(text):
        ours = included.split("/")[0] in FOLDERS or (root / included).is_file()
        if ours and len(source.parts) > 1:
            path = pathlib.PurePath(included)
            reason = "only src/ itself may include its files" if len(path.parts) == 1 else fault(source, included)
        elif f'"{included}"' in text and not ours and not GENERATED.search(included):
            reason = "not written from src/"
        else:
            reason = None
        if reason:
            yield f"src/{source}: {included}: {reason}"


def check(repository):
    root = repository / "src"
    sources = sorted(path for path in root.rglob("*") if path.suffix in {".h", ".cpp"})
    if not sources:
        sys.exit(f"no sources below {root}")
    found = []
    for path in sources:
        found += faults_of(path.relative_to(root), path.read_text(encoding="utf-8"), root)
    for path in sorted(path for path in (repository / "demo").rglob("*") if path.suffix in {".h", ".cpp"}):
        for included in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if included.split("/")[0] in FOLDERS:
                found.append(f"{path.relative_to(repository)}: {included}: the demo backend stands alone")
    return found


def self_check():
    stray = [
        ("src/Models/A.h", '#include "Platform/Tasks/B.h"'),
        ("src/Platform/Http/A.cpp", "#  include <Models/B.h>"),
        ("src/Services/Backend/A.cpp", '#include "Views/B.h"'),
        ("src/Services/Offline/A.cpp", '#include "Services/Playback/B.h"'),
        ("src/Services/New/A.cpp", '#include "Services/Backend/B.h"'),
        ("src/Views/A.cpp", '#include "Platform/Storage/B.h"'),
        ("src/Views/Player/A.cpp", '#include "NavorinRadioApp.h"'),
        ("src/Shared/A.cpp", '#include "Services/SharedInstance.h"'),
        ("src/New/A.cpp", '#include "Models/B.h"'),
        ("src/Platform/Audio/A.cpp", '#include "B.h"'),
        ("demo/A.cpp", '#include "Models/B.h"'),
    ]
    fine = [
        ("src/NavorinRadioApp.h", '#include "Views/B.h"\n#include "Services/Playback/B.h"'),
        ("src/Views/A.cpp", '#include "Platform/Desktop/B.h"\n#include "A.moc"\n#include <QUrl>\n#include <gst/gst.h>'),
        ("src/Services/Playback/A.cpp", '#include "Services/Offline/B.h"\n#include "Services/SharedInstance.h"'),
    ]
    with tempfile.TemporaryDirectory() as folder:
        repository = pathlib.Path(folder)
        for name, text in stray + fine:
            path = repository / name
            path.parent.mkdir(parents=True, exist_ok=True)
            with path.open("a", encoding="utf-8") as file:
                file.write(text + "\n")
        found = check(repository)
        missed = [name for name, _ in stray if sum(line.startswith(name + ":") for line in found) != 1]
        if missed or len(found) != len(stray):
            sys.exit("the check itself is broken:\n" + "\n".join(missed + found))


def main():
    self_check()
    found = check(pathlib.Path(sys.argv[1]))
    print("\n".join(found) or "no stray include")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
