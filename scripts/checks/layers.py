#!/usr/bin/python3
"""Fails on an include against the arrows between the folders, and on one that names no folder."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]

# What each folder may include, besides itself.
MAY_INCLUDE = {
    "app": set(),
    "platform": {"app"},
    "imaging": {"app"},
    "camera": {"app", "platform"},
    "video": {"app", "platform", "imaging", "camera"},
    "features": {"app", "platform", "imaging", "camera", "video"},
    "mainwindow": {"app", "platform", "imaging", "camera", "video", "features"},
    "stand": {"app", "platform"},
    "tools": {"app", "platform", "imaging"},
}
# Classes of Qt's widget library, which image work and thread classes do without.
NO_WIDGETS = {
    "src/platform": "", "src/imaging": "", "src/camera": "",
    "src/video": r"(ivideo|stream|frame)", "src/features": r"(recorder|page_turn|button|merge_)",
}
WIDGETS = re.compile(r"Q(Widget|Application|Label|Graphics\w+|MainWindow|Dialog|MessageBox|"
                     r"\w*Button|\w*Box|LineEdit|ListWidget|Slider|FileDialog|Menu)$")
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)')


def faults_of(path, folder):
    name = path.relative_to(ROOT).as_posix()
    for number, line in enumerate(path.read_text("utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        own, outside = match.groups()
        if own and not own.startswith("ui_") and not own.endswith(".moc"):
            other = own.split("/")[0] if "/" in own else None
            if other is None and folder == "tools":
                continue  # a tool's own files lie beside one another
            if other is None:
                yield f"{name}:{number}: \"{own}\" names no folder"
            elif other != folder and other not in MAY_INCLUDE[folder]:
                yield f"{name}:{number}: {folder} includes {own}, against the arrows"
        pattern = NO_WIDGETS.get(path.parent.relative_to(ROOT).as_posix())
        if outside and pattern is not None and WIDGETS.match(outside.split("/")[-1]) \
                and re.match(pattern, path.name):
            yield f"{name}:{number}: {outside} is a widget class"


def main():
    faults = []
    for folder in MAY_INCLUDE:
        place = ROOT / folder if folder in ("stand", "tools") else ROOT / "src" / folder
        for path in sorted([*place.rglob("*.cpp"), *place.rglob("*.h")]):
            faults += faults_of(path, folder)
    print("\n".join(faults) or "every include follows the arrows")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
