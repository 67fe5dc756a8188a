"""A desktop that nobody sees: X server, session bus, window manager, and hands to work it."""

import mmap
import os
import re
import select
import struct
import subprocess

from processes import Child, TourError, output_of, wait_for


class Desktop:
    """`folder` takes the home folder of the user, the runtime folder and the logs."""

    def __init__(self, folder, size=(1440, 900), scale=1):
        self.folder = folder
        self.scale = scale
        self.home = folder / "home"
        self.documents = self.home / "Documents"
        self.runtime = folder / "runtime"
        for path in (self.documents, self.runtime):
            path.mkdir(parents=True)
        self.runtime.chmod(0o700)
        self.children = []
        self.environment = {
            key: os.environ[key] for key in ("PATH", "TERM", "TZ") if key in os.environ}
        self.environment.update(
            HOME=str(self.home), XDG_RUNTIME_DIR=str(self.runtime), LANG="C.UTF-8",
            NO_AT_BRIDGE="0", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_SCALE_FACTOR=str(scale))
        self._start_x(size)
        self._start_bus()
        self._start("openbox")

    def stop(self):
        for child in reversed(self.children):
            child.stop(3)

    def _start(self, *command, **options):
        child = Child(command, self.folder / "desktop.log", self.environment, **options)
        self.children.append(child)
        return child

    def _start_x(self, size):
        for attempt in range(20):
            number = 100 + (os.getpid() + 17 * attempt) % 800
            if self._start_x_as(number, size):
                self.environment["DISPLAY"] = f":{number}"
                self.screen = Screen(self.folder / "Xvfb_screen0")
                return
        raise TourError("no virtual display starts, see desktop.log")

    def _start_x_as(self, number, size):
        width, height = size
        reading, writing = os.pipe()
        self.server = self._start(
            "Xvfb", f":{number}", "-displayfd", str(writing), "-screen", "0",
            f"{width}x{height}x24", "-fbdir", str(self.folder), "-nolisten", "tcp",
            pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading, "rb") as ready:
            select.select([ready], [], [], 20)
            if ready.readline().strip():
                return True
        self.children.remove(self.server)
        self.server.stop(1)
        return False

    def _start_bus(self):
        """A bus of its own, on which programs tell what their widgets are and where."""
        address = f"unix:path={self.runtime}/bus"
        self._start("dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address)
        wait_for((self.runtime / "bus").exists, "the session bus")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        # The library that asks for the widgets reads the environment of this process.
        os.environ.update(self.environment)

    def xdotool(self, *arguments):
        done = subprocess.run(("xdotool",) + arguments, env=self.environment, check=False,
                              capture_output=True, text=True, timeout=30)
        return done.stdout.split() if done.returncode == 0 else []

    def _properties(self, *target):
        done = subprocess.run(("xprop",) + target, env=self.environment, check=False,
                              capture_output=True, text=True, timeout=30)
        return done.stdout

    def windows(self, pid):
        """Numbers of the program's windows that the window manager shows: the main window, then
        its dialogs."""
        numbers = re.findall(r"0x[0-9a-f]+", self._properties("-root", "_NET_CLIENT_LIST"))
        main, dialogs = [], []
        for number in numbers:
            about = self._properties("-id", number, "_NET_WM_PID", "_NET_WM_WINDOW_TYPE")
            if f"= {pid}\n" in about:
                (dialogs if "TYPE_DIALOG" in about else main).append(number)
        return main + dialogs

    def focus(self, window):
        self.xdotool("windowactivate", "--sync", window)

    def press(self, *keys):
        for key in keys:
            self.xdotool("key", "--clearmodifiers", key)

    def type(self, text, delay_ms=20):
        self.xdotool("type", "--delay", str(delay_ms), text)

    def click(self, point, button=1, count=1):
        x, y = point
        self.xdotool("mousemove", "--sync", str(x), str(y))
        self.xdotool("click", "--repeat", str(count), "--delay", "60", str(button))

    def drag(self, start, end, steps=10):
        """From point to point with the left button held, in small moves, as a hand does it."""
        self.xdotool("mousemove", "--sync", *map(str, start))
        self.xdotool("mousedown", "1")
        for i in range(1, steps + 1):
            x, y = (a + (b - a) * i // steps for a, b in zip(start, end))
            self.xdotool("mousemove", "--sync", str(x), str(y))
        self.xdotool("mouseup", "1")

    def park_mouse(self):
        """Moves the pointer to a corner, where it raises no hints."""
        self.xdotool("mousemove", "1", "1")

    def screenshot(self, path, window="root"):
        output_of("import", "-window", window, str(path))


class Screen:
    """The pixels on the virtual display, read from the server's own memory."""

    HEADER = struct.Struct(">25I")

    def __init__(self, path):
        wait_for(lambda: path.exists() and path.stat().st_size > self.HEADER.size, "the screen")
        with open(path, "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        fields = self.HEADER.unpack_from(self.memory)
        self.width, self.height, self.row_bytes = fields[4], fields[5], fields[12]
        self.start = fields[0] + 12 * fields[19]

    def pixel(self, x, y):
        offset = self.start + y * self.row_bytes + 4 * x
        return self.memory[offset:offset + 3]

    def sample(self, rectangle, steps=24):
        """Pixels of a grid of steps x steps points in (x, y, width, height)."""
        left, top, width, height = rectangle
        return [self.pixel(left + width * (2 * i + 1) // (2 * steps),
                           top + height * (2 * j + 1) // (2 * steps))
                for j in range(steps) for i in range(steps)]
