"""The two programs of the tour: the camera stand and the application."""

import queue
import re
import subprocess
import threading

from processes import Child, TourError, wait_for
from widgets import Widgets


class Stand:
    """pictor-stand without a window, worked through its standard input."""

    def __init__(self, desktop, programs, *arguments):
        self.child = Child([str(programs / "pictor-stand"), "--headless", *arguments],
                           desktop.folder / "stand.log", desktop.environment,
                           stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.arguments = arguments
        self.answers = queue.Queue()
        threading.Thread(target=self._read, daemon=True).start()
        self._expect("ready", "its start", 20)

    def _read(self):
        for line in self.child.process.stdout:
            self.answers.put(line.strip())

    def tell(self, command, seconds=20):
        """Gives one command and waits for its answer, "ok" or a TourError."""
        try:
            self.child.process.stdin.write(command + "\n")
            self.child.process.stdin.flush()
        except OSError:
            raise TourError("the stand has ended") from None
        self._expect("ok", command, seconds)

    def _expect(self, wanted, occasion, seconds):
        try:
            answer = self.answers.get(timeout=seconds)
        except queue.Empty:
            raise TourError(f"the stand does not answer to {occasion!r}") from None
        if answer != wanted:
            raise TourError(f"the stand answers {answer!r} to {occasion!r}")

    def stop(self):
        self.child.stop()


# Keys of the settings file with the values of a first start.
DEFAULT_SETTINGS = {
    "colorMode": 0, "cutMode": 0, "NameType": 0, "Imgformat": 0, "Recformat": "mov",
    "ImgQuality": 80, "Language": 0,
}


class Application:
    """pictor, started with its settings file; worked by mouse, keys and hardware buttons."""

    PREVIEW = ("Live picture", "实时画面")

    def __init__(self, desktop, programs, output, settings, prefix=()):
        """None for `settings` leaves the file as the run before wrote it; `prefix` starts the
        program under another command, which it replaces."""
        self.desktop = desktop
        self.output = output
        output.mkdir(parents=True, exist_ok=True)
        if settings is not None:
            values = {**DEFAULT_SETTINGS, "SaveFolderPath": output, **settings}
            lines = ["[Set]", *(f"{key}={value}" for key, value in values.items()), ""]
            (desktop.documents / "scanner.ini").write_text("\n".join(lines), "utf-8")
        self.log = desktop.documents / "scanerlog"
        self.log.unlink(missing_ok=True)
        self.child = Child([*prefix, str(programs / "pictor")], desktop.folder / "application.log",
                           desktop.environment)
        self.widgets = Widgets(desktop, self.child.pid)

    def window(self):
        found = wait_for(lambda: self.desktop.windows(self.child.pid) or self._ended(),
                         "the window", 30)
        return found[0]

    def _ended(self):
        if not self.child.is_running():
            raise TourError(f"the application ended with code {self.child.process.returncode}")

    def logged_times(self, text):
        return self.log.read_text("utf-8", "replace").count(text) if self.log.exists() else 0

    def preview(self):
        """Screen rectangle of the live picture."""
        return self.widgets.rectangle(self.widgets.find(self.PREVIEW))

    def wait_for_picture(self):
        """Waits until the preview shows more than an even background."""
        self.desktop.focus(self.window())
        self.desktop.park_mouse()
        self.wait_for_area(self.PREVIEW)

    def wait_for_area(self, name, seconds=30):
        """Waits until the widget of this name shows a picture."""
        area = self.widgets.rectangle(self.widgets.find(name))
        wait_for(lambda: len(set(self.desktop.screen.sample(area))) > 40 or self._ended(),
                 f"a picture in {name!r}", seconds)

    def names_in(self, name):
        """Entries of the list of this name."""
        return self.widgets.entries(self.widgets.find(name, ("list",)))

    def captured(self):
        return self.names_in("Captured files")

    def answer_file_dialog(self, path):
        """Writes a path into the file dialog and accepts it."""
        wait_for(lambda: len(self.desktop.windows(self.child.pid)) > 1, "the file dialog")
        self.desktop.focus(self.desktop.windows(self.child.pid)[-1])
        self.desktop.press("ctrl+a")
        self.desktop.type(str(path))
        self.desktop.press("Return")

    def status(self):
        """The texts of the line at the bottom of the window."""
        bar = self.widgets.find(roles=("status bar",))
        return " ".join(node.get_name() for node in self.widgets.below(bar))

    def zoom(self):
        return next((word for word in re.findall(r"\d+ %", self.status())), None)

    def is_upright(self):
        """Whether the status line tells of a picture that is higher than wide."""
        sizes = re.findall(r"(\d+) [x×] (\d+)", self.status())
        return bool(sizes) and int(sizes[0][1]) > int(sizes[0][0])

    def close(self):
        """Closes the window as a user does and checks that the program ends well."""
        self.desktop.focus(self.window())
        self.desktop.press("alt+F4")
        try:
            self.child.process.wait(20)
        except subprocess.TimeoutExpired:
            raise TourError("the application does not end when its window is closed") from None
        finally:
            code = self.child.stop()
        if code != 0:
            raise TourError(f"the application ended with code {code}")
