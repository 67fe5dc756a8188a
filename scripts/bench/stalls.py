"""How long the window leaves its user waiting while everything is done with it.

Another process asks the window for its place every 10 ms through the accessibility interface; the
window's own thread answers, so the longest wait is the longest time for which it did nothing for
its user. What an idle window takes at worst is taken off."""

import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time

from desktop import Desktop
from processes import TourError, wait_for
from programs import Application, Stand

LIMIT_MS = 50
IDLE_SECONDS = 5
LIST_ENTRIES = 1000
BY_CODE = 4
FORMATS = ("jpg", "bmp", "png", "tif", "pdf")


class Pinger:
    """Runs ping.py beside the application and cuts its answers into steps."""

    def __init__(self, desktop, pid, output):
        self.output = output
        with open(output, "wb") as lines:
            self.process = subprocess.Popen(
                [sys.executable, "-B", str(pathlib.Path(__file__).with_name("ping.py")), str(pid)],
                stdout=lines, env=desktop.environment)
        wait_for(lambda: output.stat().st_size > 0, "the first answer")

    def worst(self, begin, end):
        """Longest wait in ms for an answer to a question between these moments."""
        wait_for(lambda: self._last() > end, "the answers", 30)
        answers = [(float(at), float(taken)) for at, taken in self._lines()]
        return max(taken for at, taken in answers if begin <= at <= end) * 1e3

    def _lines(self):
        text = self.output.read_text("ascii")
        return [line.split() for line in text[:text.rfind("\n") + 1].splitlines()]

    def _last(self):
        return float(self._lines()[-1][0])

    def stop(self):
        self.process.terminate()
        self.process.wait()


class Session:
    """One application, worked step by step; each step is measured for itself."""

    def __init__(self, desktop, programs, folder, settings, *stand_arguments):
        self.desktop = desktop
        self.stand = Stand(desktop, programs, "--scene", "page", *stand_arguments)
        self.application = Application(desktop, programs, folder / "output", settings)
        self.application.wait_for_picture()
        self.folder = folder
        self.worst = {}
        self.pinger = Pinger(desktop, self.application.child.pid, folder / "pings")

    def step(self, name, action, rest=1.5):
        """`rest`: seconds that belong to the step when its script is through."""
        begin = time.monotonic()
        action()
        time.sleep(rest)
        worst = self.pinger.worst(begin, time.monotonic())
        self.worst[name] = max(worst, self.worst.get(name, 0))

    def names(self):
        return {path.name for path in (self.folder / "output").iterdir()
                if not path.name.startswith(".")}

    def press_space(self, times=1, seconds=60):
        before = len(self.names())
        self.desktop.focus(self.application.window())
        for _ in range(times):
            self.desktop.press("space")
        wait_for(lambda: len(self.names()) >= before + times, "the captures", seconds)

    def stop(self):
        self.pinger.stop()
        self.application.child.stop()
        self.stand.stop()


def measure_captures(session):
    widgets, desktop = session.application.widgets, session.desktop
    session.step("idle", lambda: time.sleep(IDLE_SECONDS), 0)
    session.step("captures_five_in_a_row", lambda: session.press_space(5))
    for kind, entry in (("automatic", "Automatic crop"), ("multi", "Multi-graph crop"),
                        ("smart", "Smart crop")):
        session.step("captures_" + kind, lambda name=entry: (
            widgets.choose("Crop mode", name), session.press_space(2)))
    widgets.choose("Crop mode", "No crop")
    for kind, entry in (("binarization", "Binarization"),
                        ("optimization", "Document optimization")):
        session.step("captures_" + kind, lambda name=entry: (
            widgets.choose("Effect mode", name), session.press_space(2)))
    widgets.choose("Effect mode", "Original color")
    for ending in ("bmp", "png", "tif", "pdf"):
        session.step("captures_" + ending, lambda number=ending: (
            widgets.choose("Format type", FORMATS.index(number)), session.press_space(2)))
    widgets.choose("Format type", FORMATS.index("jpg"))
    session.step("captures_page_without_code", lambda: (
        widgets.choose("Name type", BY_CODE), session.press_space(2)))
    widgets.choose("Name type", 0)
    session.step("modes", lambda: desktop.press(
        "ctrl+2", "ctrl+3", "ctrl+4", "ctrl+5", "ctrl+6", "ctrl+1"))


def merge_four(session):
    session.desktop.press("ctrl+3")
    session.application.widgets.click("4")
    before = session.names()
    session.desktop.focus(session.application.window())
    session.desktop.press(*["space"] * 4)
    wait_for(lambda: len(session.names() - before) == 1, "the merged picture", 60)


def export(session):
    application = session.application
    session.desktop.press("ctrl+2")
    session.press_space(6)
    wait_for(lambda: len(application.names_in("PDF pages")) == 6, "the pages")
    application.widgets.click("Export")
    application.answer_file_dialog(application.output / "six.pdf")
    wait_for((application.output / "six.pdf").exists, "the PDF", 60)


def assist(session):
    widgets = session.application.widgets
    session.desktop.press("ctrl+1", "ctrl+5")
    widgets.click("Open the assist camera")
    session.application.wait_for_area("Assist camera picture")
    session.press_space(1)
    widgets.click("Camera image merging")
    session.press_space(1)
    widgets.click("Camera image merging")
    widgets.click("Close the assist camera")
    session.desktop.press("ctrl+5")


def reopen(session):
    before = session.application.logged_times("openCamera end")
    session.stand.tell("press restart")
    wait_for(lambda: session.application.logged_times("openCamera end") > before, "the opening")


def stalled_camera(session):
    session.stand.tell("stall main on")
    time.sleep(1)
    session.stand.tell("press restart")
    time.sleep(2)
    session.stand.tell("stall main off")
    reopen(session)


def frozen_stand(session):
    stand = session.stand.child.pid
    widgets, desktop = session.application.widgets, session.desktop
    place = widgets.centre(widgets.find("Focus", widgets.BUTTONS))
    os.kill(stand, signal.SIGSTOP)
    try:
        desktop.click(place)
        time.sleep(2)
    finally:
        os.kill(stand, signal.SIGCONT)


def record(session):
    widgets = session.application.widgets
    session.desktop.press("ctrl+4")
    before = session.names()
    widgets.click("Start recording")
    wait_for(lambda: session.names() - before, "the recording")
    time.sleep(2)
    widgets.click("Stop recording")
    session.desktop.press("ctrl+1")


def turn_pages(session):
    session.application.widgets.click("Automatic capture")
    time.sleep(4)
    session.application.widgets.click("Automatic capture")


def note_long_list(session):
    """Leaves pages of a merge that was not finished, which the next start lists."""
    folder = session.folder / "many"
    folder.mkdir()
    picture = next((session.folder / "output").glob("*.jpg"))
    pages = [folder / f"{i}.jpg" for i in range(LIST_ENTRIES)]
    for page in pages:
        os.link(picture, page)
    with open(session.desktop.documents / "scanner.ini", "a", encoding="utf-8") as settings:
        settings.write("[Unfinished]\nmergePages=" + ", ".join(map(str, pages)) + "\n")


def measure_long_list(session):
    session.step("start_with_long_list", lambda: wait_for(
        lambda: len(session.application.captured()) == LIST_ENTRIES, "the list", 60))
    session.step("list_scrolled", lambda: (
        session.desktop.click(session.application.widgets.centre(
            session.application.widgets.find("Captured files"))),
        session.desktop.press("Home", *["Next"] * 30, "End", "ctrl+a", "Home")))
    session.step("captures_beside_long_list", lambda: session.press_space(3))


def measure(build):
    """Rows of the report: worst waits beyond those of an idle window, in ms."""
    with tempfile.TemporaryDirectory(prefix="pictor-stalls-") as temporary:
        folder = pathlib.Path(temporary)
        desktop = Desktop(folder / "desktop")
        session = None
        try:
            session = Session(desktop, build / "bin", folder, {}, "--assist")
            measure_captures(session)
            for name, action in (("merge", merge_four), ("export", export), ("assist", assist),
                                 ("recording", record), ("page_turning", turn_pages),
                                 ("camera_reopened", reopen), ("camera_stalled", stalled_camera),
                                 ("stand_frozen", frozen_stand)):
                session.step(name, lambda what=action: what(session))
            worst = session.worst
            session.stop()
            note_long_list(session)
            session = Session(desktop, build / "bin", folder, None)
            measure_long_list(session)
            worst.update(session.worst)
        finally:
            if session:
                session.stop()
            desktop.stop()
    idle = worst.pop("idle")
    return [{"name": f"stall_{name}, beyond {idle:.0f} ms of an idle window",
             "value": max(0.0, longest - idle), "unit": "ms", "limit": LIMIT_MS,
             "isOver": longest - idle > LIMIT_MS} for name, longest in worst.items()]
