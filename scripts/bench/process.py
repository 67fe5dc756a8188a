"""Launch time and memory of the whole application, measured from outside.

The virtual display keeps its pixels in a file that is read here, so the first painted frame is
seen without asking the program. The steps in between are the moments at which lines appear in its
log. To block the window's thread, the display server is stopped for a while: a program that paints
waits for its answer, while its other threads go on.
"""

import json
import os
import pathlib
import signal
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tour"))

from desktop import Desktop  # noqa: E402
from processes import Child, TourError, wait_for  # noqa: E402
from programs import Application, Stand  # noqa: E402

LAUNCHES = 5
REOPENINGS = 12
# What showing a stream may take of what the player takes. At 1080p most of it is reading the Huffman
# codes, which does not shrink with the picture shown.
LOAD_MODES = {"1920x1080@30": 0.60, "3264x2448@15": 0.45}
LOG_MARKS = {
    "first line of the log": "start scanner",
    "probe started": "getResolutionCount end",
    "probe answered": "sltOnReadOutput start",
    "camera opening": "o_resolution:",
}


def _entry(name, value, unit, limit=None):
    return {"name": name, "value": value, "unit": unit, "limit": limit,
            "isOver": limit is not None and value > limit}


class Launcher:
    """Starts the application again and again, and notes when things happen."""

    def __init__(self, desktop, programs, folder):
        self.desktop = desktop
        self.programs = programs
        self.folder = folder
        # The first start finds the preview and warms the caches.
        application = Application(desktop, programs, folder, {})
        application.wait_for_picture()
        self.area = application.preview()
        application.close()
        desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "0"

    def _shows_picture(self):
        return len(set(self.desktop.screen.sample(self.area, 12))) > 20

    def launch(self):
        """Seconds after the launch at which each mark was reached."""
        wait_for(lambda: not self._shows_picture(), "an empty display")
        begin = time.monotonic()
        application = Application(self.desktop, self.programs, self.folder, {})
        reached = {}
        while not self._shows_picture():
            now = time.monotonic() - begin
            if now > 30:
                raise TourError("no picture within 30 s")
            text = application.log.read_text("utf-8", "replace") \
                if application.log.exists() else ""
            for mark, line in LOG_MARKS.items():
                if mark not in reached and line in text:
                    reached[mark] = now
            time.sleep(0.002)
        reached["first painted frame"] = time.monotonic() - begin
        return application, reached

    def bare_window(self, program):
        """Seconds until a program with nothing but a window has painted it."""
        before = self.desktop.screen.sample(self.area, 12)
        begin = time.monotonic()
        with subprocess.Popen([program], env=self.desktop.environment) as child:
            wait_for(lambda: self.desktop.screen.sample(self.area, 12) != before, "the bare window",
                     20, 0.002)
            taken = time.monotonic() - begin
            child.terminate()
        wait_for(lambda: self.desktop.screen.sample(self.area, 12) == before, "an empty display")
        return taken


def resident(pid):
    """Resident memory in MB."""
    for line in pathlib.Path(f"/proc/{pid}/status").read_text("utf-8").splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1]) / 1024
    raise TourError("the application has ended")


def window_thread_seconds(pid):
    """Processor time of the first thread, which is the window's."""
    text = pathlib.Path(f"/proc/{pid}/task/{pid}/stat").read_text("utf-8")
    fields = text.rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def highest_resident(pid, seconds):
    """Highest value while the time passes: least squares would hide a single peak."""
    values = []
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        values.append(resident(pid))
        time.sleep(0.1)
    return max(values), values[-1] - statistics.median(values[:max(10, len(values) // 10)])


def measure_launch(launcher, bare_program):
    runs = []
    for _ in range(LAUNCHES):
        application, reached = launcher.launch()
        runs.append(reached)
        application.close()
    bare = statistics.median(launcher.bare_window(bare_program) for _ in range(LAUNCHES))

    def middle(function):
        return statistics.median(function(run) for run in runs)

    def probe(run):
        return run["probe answered"] - run["probe started"]

    entries = [_entry("launch: " + mark, middle(lambda run, mark=mark: run[mark]), "s")
               for mark in LOG_MARKS]
    entries.append(_entry("launch: first painted frame",
                          middle(lambda run: run["first painted frame"]), "s", 1.5))
    entries.append(_entry("of it probing the camera's modes", middle(probe), "s"))
    entries.append(_entry("of it a bare window's start", bare, "s"))
    entries.append(_entry("of it our own share", middle(
        lambda run: run["first painted frame"] - probe(run) - bare), "s", 0.3))
    return entries


def reopen_camera(application, stand):
    """Closes and opens the camera as the button of the stand does, and waits until it runs."""
    before = application.logged_times("openCamera end")
    stand.tell("press restart")
    wait_for(lambda: application.logged_times("openCamera end") > before, "the camera's opening")
    time.sleep(1)  # a second's frames touch all the memory that it will need


def measure_memory(launcher, stand, seconds):
    application, _ = launcher.launch()
    pid, server = application.child.pid, launcher.desktop.server.pid
    highest, growth = highest_resident(pid, seconds)
    os.kill(server, signal.SIGSTOP)
    try:
        time.sleep(0.5)  # what was on its way to the display server
        worked = window_thread_seconds(pid)
        blocked, _ = highest_resident(pid, 5)
        worked = window_thread_seconds(pid) - worked
    finally:
        os.kill(server, signal.SIGCONT)
    if worked > 0.05:
        raise TourError(f"the window's thread was not blocked, it worked for {worked} s")
    reopened = 0
    for _ in range(REOPENINGS):
        reopen_camera(application, stand)
        reopened = max(reopened, highest_resident(pid, 0.5)[0])
    application.close()
    return [
        _entry(f"resident memory, previewing 3264x2448 for {seconds} s", highest, "MB", 130),
        _entry("its growth in that time", growth, "MB", 5),
        _entry("resident memory, window's thread blocked for 5 s", blocked, "MB", 130),
        _entry(f"resident memory, camera opened again {REOPENINGS} times", reopened, "MB", 130),
    ]


def share_of_processor(pid, seconds=8):
    """Processor time of a process, all its threads, in seconds of each second."""
    def used():
        fields = pathlib.Path(f"/proc/{pid}/stat").read_text("utf-8").rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    time.sleep(2)  # what a start costs
    before, begin = used(), time.monotonic()
    time.sleep(seconds)
    return (used() - before) / (time.monotonic() - begin)


def measure_load(desktop, build, folder, mode):
    """What the application takes to show a stream, held against a player that shows the same in a
    window as large as the preview."""
    stand = Stand(desktop, build / "bin", "--scene", "page", "--modes", mode)
    try:
        application = Application(desktop, build / "bin", folder / mode, {})
        application.wait_for_picture()
        area = application.preview()
        ours = share_of_processor(application.child.pid)
        application.close()
        camera = json.loads((desktop.runtime / "pictor-stand/main.json").read_text("utf-8"))
        player = Child(["ffplay", "-v", "error", "-f", "mjpeg", "-x", str(area[2]), "-y",
                        str(area[3]), "unix:" + camera["modes"][0]["socket"]],
                       folder / "ffplay.log", {**desktop.environment, "SDL_AUDIODRIVER": "dummy"})
        try:
            wait_for(lambda: desktop.windows(player.pid), "the player's window", 20)
            theirs = share_of_processor(player.pid)
        finally:
            player.stop(2)
    finally:
        stand.stop()
    return _entry(f"processor time, {mode}, beside ffplay ({ours:.2f} of {theirs:.2f})",
                  ours / theirs, "x", LOAD_MODES[mode])


def measure(build, seconds):
    with tempfile.TemporaryDirectory(prefix="pictor-bench-") as temporary:
        folder = pathlib.Path(temporary)
        desktop = Desktop(folder / "desktop")
        stand = None
        try:
            stand = Stand(desktop, build / "bin", "--scene", "page")
            launcher = Launcher(desktop, build / "bin", folder / "output")
            entries = measure_launch(launcher, build / "benchmarks/bare_window")
            entries += measure_memory(launcher, stand, seconds)
            stand.stop()
            return entries + [measure_load(desktop, build, folder, mode) for mode in LOAD_MODES]
        finally:
            if stand:
                stand.stop()
            desktop.stop()
