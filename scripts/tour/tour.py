"""The guided tour: runs the steps and writes the table of what was made."""

import argparse
import pathlib
import shutil
import sys
import tempfile
import time

import capture_steps  # noqa: F401, fills the list of steps
import mode_steps  # noqa: F401
import guide_steps  # noqa: F401
import steps
from desktop import Desktop
from files import FileReport
from processes import TourError, wait_for
from programs import Application, Stand


class Tour:
    """What a step works with: the desktop, the stand, the application, and the result list."""

    def __init__(self, folder, programs, desktop):
        self.folder = folder
        self.programs = programs
        self.desktop = desktop
        self.stand = None
        self.application = None
        self.step = None
        self.reports = []
        self.pictures = []

    @property
    def files(self):
        """Folder of the current step's captures."""
        return self.folder / "files" / self.step.name

    def start_stand(self, *arguments):
        self.stop_stand()
        self.stand = Stand(self.desktop, self.programs, *arguments)

    def need_scene(self, scene):
        """Lays a scene under the ordinary stand."""
        arguments = ("--assist", "--assist-scene", "card")
        if self.stand is None or self.stand.arguments != arguments:
            self.start_stand(*arguments)
        self.stand.tell("scene " + scene)

    def lay(self, scene):
        """Lays another scene under the running camera and waits until the preview shows it."""
        area = self.application.preview()
        before = self.desktop.screen.sample(area)
        self.stand.tell("scene " + scene)

        def has_changed():
            now = self.desktop.screen.sample(area)
            return sum(a != b for a, b in zip(before, now)) > len(now) // 20
        wait_for(has_changed, f"the scene {scene} in the preview")

    def stop_stand(self):
        if self.stand:
            self.stand.stop()
        self.stand = None

    def start(self, **settings):
        """Starts the application with these settings and waits for its live picture."""
        self.close()
        self.application = Application(self.desktop, self.programs, self.files, settings)
        self.application.wait_for_picture()
        return self.application

    def close(self):
        application, self.application = self.application, None
        if application:
            application.close()

    def abandon(self):
        """After a failed step: ends the application whatever its state."""
        if self.application:
            self.application.child.stop(3)
        self.application = None

    def press(self, *keys):
        """Gives keys to the application's window."""
        self.desktop.focus(self.application.window())
        self.desktop.press(*keys)

    WINDOW, WHOLE_SCREEN = "window", "screen"

    def screenshot(self, label="", extent=WINDOW):
        name = f"{steps.STEPS.index(self.step) + 1:02}-{self.step.name}"
        path = self.folder / "screenshots" / (name + (f"-{label}" if label else "") + ".png")
        self.desktop.park_mouse()
        self.desktop.screenshot(
            path, self.application.window() if extent == self.WINDOW else "root")
        self.pictures.append((self.step, path))
        return path

    def expect(self, report):
        self.reports.append((self.step, report))

    def new_file(self, pattern, seconds=30):
        """The one file in the step's folder that matches."""
        found = wait_for(lambda: sorted(self.files.glob(pattern)), f"a file {pattern}", seconds)
        if len(found) > 1:
            raise TourError(f"{len(found)} files {pattern} instead of one")
        return found[0]


def run_step(tour, step):
    """Gives the fault, empty when there was none."""
    tour.step = step
    fault = ""
    try:
        step.action(tour)
        if tour.application:
            if not any(picture[0] is step for picture in tour.pictures):
                tour.screenshot()
            tour.close()
    except (TourError, OSError, ValueError) as error:
        fault = f"{type(error).__name__}: {error}" if not isinstance(error, TourError) else str(error)
        try:
            tour.desktop.screenshot(tour.folder / "screenshots" / f"failed-{step.name}.png")
        except TourError:
            pass
        log = tour.desktop.documents / "scanerlog"
        if log.exists():
            shutil.copy(log, tour.folder / f"failed-{step.name}.log")
        tour.abandon()
    return fault


def table_rows(tour, results):
    for step, fault, seconds in results:
        reports = [report for owner, report in tour.reports if owner is step]
        outcome = fault or "ok"
        for report in reports or [None]:
            yield (step.title, *describe(tour, report), f"{seconds:.0f} s", outcome)


def describe(tour, report: FileReport):
    if report is None:
        return "", "", "", ""
    return (str(report.path.relative_to(tour.folder)), report.kind, report.detail,
            f"{report.path.stat().st_size:,}")


HEADINGS = ("Step", "File", "Kind", "Size", "Bytes", "Time", "Result")


def print_table(rows):
    widths = [max(len(row[i]) for row in [HEADINGS, *rows]) for i in range(len(HEADINGS))]
    for row in [HEADINGS, tuple("-" * width for width in widths), *rows]:
        print("  ".join(text.ljust(width) for text, width in zip(row, widths)).rstrip())


def write_report(tour, rows):
    lines = ["# What the tour made", "", "| " + " | ".join(HEADINGS) + " |",
             "|" + "---|" * len(HEADINGS)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    lines += ["", "## Screenshots", ""]
    for step, path in tour.pictures:
        lines += [f"### {step.title}", "", f"![{step.title}]({path.relative_to(tour.folder)})", ""]
    (tour.folder / "tour.md").write_text("\n".join(lines), "utf-8")


def run_tour(folder, programs, wanted, scale):
    with tempfile.TemporaryDirectory(prefix="pictor-tour-") as temporary:
        desktop = Desktop(pathlib.Path(temporary), (1440 * scale, 900 * scale), scale)
        tour = Tour(folder, programs, desktop)
        results = []
        try:
            for step in wanted:
                print(f"  {step.title}: ", end="", flush=True)
                start = time.monotonic()
                fault = run_step(tour, step)
                results.append((step, fault, time.monotonic() - start))
                print(fault or "ok", flush=True)
        finally:
            tour.abandon()
            tour.stop_stand()
            desktop.stop()
            if any(fault for _, fault, _ in results):
                for log in pathlib.Path(temporary).glob("*.log"):
                    shutil.copy(log, folder)
        rows = list(table_rows(tour, results))
        write_report(tour, rows)
        print_table(rows)
        return all(not fault for _, fault, _ in results)


def main():
    parser = argparse.ArgumentParser(prog="./run --tour", description=__doc__)
    parser.add_argument("folder", nargs="?", default="build/tour", type=pathlib.Path)
    parser.add_argument("--programs", default="build/bin", type=pathlib.Path)
    parser.add_argument("--only", metavar="STEP", action="append", help="run this step alone")
    parser.add_argument("--scale", type=int, default=1, help="pixels for each unit of length")
    parser.add_argument("--list", action="store_true", help="print the steps and end")
    arguments = parser.parse_args()
    if arguments.list:
        for step in steps.STEPS:
            print(f"{step.name:24}{step.title}")
        return 0
    wanted = [step for step in steps.STEPS
              if not arguments.only or step.name in arguments.only]
    if not wanted:
        parser.error("no such step, see --list")
    folder = arguments.folder.resolve()
    for name in ("files", "screenshots"):
        shutil.rmtree(folder / name, ignore_errors=True)
        (folder / name).mkdir(parents=True)
    for old in folder.glob("*.log"):
        old.unlink()
    good = run_tour(folder, arguments.programs.resolve(), wanted, arguments.scale)
    print(f"{'All is well' if good else 'Something failed'}: {folder}/tour.md")
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
