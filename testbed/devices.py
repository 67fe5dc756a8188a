"""The program against the kernel's own drivers; runs in the guest, see ./check devices.

devices.py FOLDER PROGRAMS [STEP...]: prints a table of what was found and measured, leaves
screenshots and files in FOLDER. PROGRAMS is the folder of the programs, or the package, which is
installed first. Exit code 0 only when every step came true.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "scripts" / "tour"))

from desktop import Desktop  # noqa: E402
from files import check_image, check_pdf, check_video  # noqa: E402
from processes import Child, TourError, output_of, wait_for  # noqa: E402
from programs import Application, Stand  # noqa: E402

SIZE = (3264, 2448)
KNOWN, ADAPTER = "1209:0002", "1a86:7523"
CAPTURE_BUTTON = "FFAAC581E41B4C"
# One processor carries the guest's kernel, the device and the program: a fast camera only where
# its speed is what is looked at.
SLOW, FAST = 5, 30


class Bed:
    """What a step works with."""

    def __init__(self, folder, programs, desktop):
        self.folder = folder
        self.programs = programs
        self.desktop = desktop
        self.pictures = desktop.folder / "pictures"
        self.application = None
        self.plugged = []
        self.name = ""

    def plug(self, kind, name, *arguments):
        """Gives the device node."""
        node = output_of(str(HERE / "plug.sh"), kind, name, *map(str, arguments))
        self.plugged.append(name)
        return node.strip()

    def camera(self, rate=SLOW):
        return self.plug("camera", "cam", KNOWN, self.pictures, "-s", f"{SIZE[0]}x{SIZE[1]}",
                         "-s", "1280x720", "-f", rate)

    def unplug(self, name):
        output_of(str(HERE / "plug.sh"), "unplug", name)
        self.plugged.remove(name)

    def press_button(self, name, code):
        output_of(str(HERE / "plug.sh"), "press", name, code)

    def start(self, wait=True, again=False, prefix=(), **settings):
        """`again`: with the settings that the program has written itself."""
        self.application = Application(self.desktop, self.programs, self.folder / self.name,
                                       None if again else settings, prefix)
        if wait:
            self.application.wait_for_picture()
        return self.application

    def use_offered_camera(self):
        """Chooses a camera that no table knows, once the box that tells of none has closed."""
        self.application.window()
        self.application.widgets.find("Use this camera")
        wait_for(lambda: len(self.desktop.windows(self.application.child.pid)) == 1,
                 "the end of the box")
        self.application.widgets.click("Use this camera")
        wait_for(lambda: "fps" in self.application.status(), "pictures of the camera", 30)

    def close(self):
        self.application.close()
        self.application = None

    def press(self, *keys):
        self.desktop.focus(self.application.window())
        self.desktop.press(*keys)

    def clear(self):
        if self.application:
            self.desktop.screenshot(self.folder / f"{self.name}.png")
            # A program that is killed leaves its widgets on the bus, where the next search waits.
            try:
                self.application.close()
            except TourError as error:
                print(f"{self.name}: {error}", flush=True)
            log = self.desktop.documents / "scanerlog"
            if log.exists():
                (self.folder / f"{self.name}.log").write_bytes(log.read_bytes())
        self.application = None
        for name in list(self.plugged):
            self.unplug(name)


def take_pictures(bed):
    """Pictures of a page from the camera stand, for the camera in the guest to show."""
    bed.pictures.mkdir()
    stand = Stand(bed.desktop, bed.programs, "--modes", "3264x2448@15,1280x720@15")
    try:
        for size in ("3264x2448", "1280x720"):
            socket = wait_for(lambda wanted=size: list(bed.desktop.runtime.rglob(f"*{wanted}*")),
                              f"the stand's stream of {size}")[0]
            output_of("ffmpeg", "-v", "error", "-f", "mjpeg", "-i", f"unix:{socket}",
                      "-frames:v", "4", "-c", "copy", str(bed.pictures / f"{size}-%d.jpg"))
    finally:
        stand.stop()


def processor_seconds(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text("ascii").rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def share_of_processor(pid, seconds=8):
    before, start = processor_seconds(pid), time.monotonic()
    time.sleep(seconds)  # what is measured
    return 100 * (processor_seconds(pid) - before) / (time.monotonic() - start)


def probe(bed):
    bed.camera()
    start = time.monotonic()
    text = output_of(str(bed.programs / "pictor-probe"), "0")
    if "3264x2448@[" not in text or "1280x720@[" not in text:
        raise TourError(f"the camera's sizes are not listed: {text}")
    return f"{len(text.splitlines()) - 1} modes in {time.monotonic() - start:.2f} s"


def vivid(bed):
    """The kernel's imaginary camera: raw formats only, ranges of sizes."""
    text = output_of(str(bed.programs / "pictor-probe"), "0")
    sizes = re.findall(r"(\d+)x(\d+)@\[", text)
    if not sizes:
        raise TourError("no modes")
    return f"{len(sizes)} modes, largest {'x'.join(max(sizes, key=lambda s: int(s[0]) * int(s[1])))}"


def raw(bed):
    application = bed.start(wait=False)
    bed.use_offered_camera()
    bed.press("space")
    return check_image(application.output / "0.jpg", "JPEG", lambda w, h: w * h > 300000).detail


def capture(bed):
    bed.camera()
    start = time.monotonic()
    application = bed.start()
    opened = time.monotonic() - start
    bed.press("space")
    check_image(application.output / "0.jpg", "JPEG", SIZE)
    return f"picture {opened:.1f} s after the start, capture of {SIZE[0]} x {SIZE[1]}"


def automatic_crop(bed):
    bed.camera()
    application = bed.start(cutMode=1)
    bed.press("space")
    report = check_image(application.output / "0.jpg", "JPEG",
                         lambda w, h: 100 < w < SIZE[0] - 50 and 100 < h < SIZE[1] - 20)
    return report.detail


def pdf(bed):
    bed.camera()
    application = bed.start(Imgformat=4)
    bed.press("space")
    return check_pdf(application.output / "0.pdf").detail


def processor(bed):
    """Both players show the same device, one after the other, for the same time."""
    bed.camera(FAST)
    application = bed.start()
    ours = share_of_processor(application.child.pid)
    bed.clear()
    node = bed.camera(FAST)
    player = Child(["ffplay", "-v", "error", "-f", "v4l2", "-input_format", "mjpeg", "-video_size",
                    "3264x2448", "-x", "800", "-y", "600", node],
                   bed.desktop.folder / "ffplay.log", {**bed.desktop.environment,
                                                       "SDL_AUDIODRIVER": "dummy"})
    try:
        wait_for(lambda: bed.desktop.windows(player.pid) or not player.is_running(), "ffplay")
        theirs = share_of_processor(player.pid)
    finally:
        player.stop(2)
    return f"pictor {ours:.0f} %, ffplay {theirs:.0f} % of a processor"


def rate(bed):
    """Pictures a second that the program takes, by what the device sent, beside ffmpeg's."""
    def sent():
        text = output_of(str(HERE / "plug.sh"), "log", "cam")
        return [float(value) for value in re.findall(r"stream off.* fps ([\d.]+)", text)]
    node = bed.camera(FAST)
    bed.start()
    time.sleep(8)  # what is measured
    bed.close()
    wait_for(sent, "the end of the stream")
    ours = sent()[-1]
    output_of("ffmpeg", "-v", "error", "-f", "v4l2", "-input_format", "mjpeg", "-video_size",
              "3264x2448", "-i", node, "-t", "8", "-f", "null", "-")
    wait_for(lambda: len(sent()) > 1, "the end of ffmpeg's stream")
    return f"pictor {ours:.1f}, ffmpeg {sent()[-1]:.1f} a second"


def record(bed):
    bed.camera()
    application = bed.start()
    bed.press("ctrl+4")
    earliest = time.monotonic()
    application.widgets.click("Start recording")
    time.sleep(10)  # what is recorded
    application.widgets.click("Stop recording")
    longest = time.monotonic() - earliest  # finding a button takes a second or two here
    path = wait_for(lambda: list(application.output.glob("*.mov")), "the recording", 60)[0]
    return check_video(path, SIZE, (9, longest), seconds=60).detail


def buttons(bed):
    """Adapters of two kinds, one plugged in after the other."""
    bed.camera()
    application = bed.start()
    ports = []
    for first, chip in ((0, "ch341"), (2, "acm")):
        ports.append(bed.plug("serial", "keys", ADAPTER, chip))
        time.sleep(4)  # the program looks for ports every two seconds
        for number in (first, first + 1):
            bed.press_button("keys", CAPTURE_BUTTON)
            check_image(application.output / f"{number}.jpg", "JPEG", SIZE)
        bed.unplug("keys")
    return "2 captures each by the buttons on " + ", ".join(ports)


def replug(bed):
    """The log tells when the program noticed; finding the words on the screen takes a second."""
    bed.camera()
    application = bed.start()
    times = []
    for _ in range(2):
        before = application.logged_times("closeCamera end")
        bed.unplug("cam")
        start = time.monotonic()
        wait_for(lambda known=before: application.logged_times("closeCamera end") > known,
                 "the missing camera noticed", 10)
        times.append(time.monotonic() - start)
        wait_for(lambda: application.widgets.says("No camera"), "the missing camera told", 10)
        bed.camera()
        application.wait_for_picture()
    bed.press("space")
    check_image(application.output / "0.jpg", "JPEG", SIZE)
    if max(times) > 2:
        raise TourError("noticed after " + ", ".join(f"{value:.1f}" for value in times) + " s")
    return "noticed after " + ", ".join(f"{value:.1f}" for value in times) + " s, picture back"


def record_unplugged(bed):
    """What was recorded before the plug was pulled is kept, and can be played."""
    bed.camera()
    application = bed.start()
    bed.press("ctrl+4")
    application.widgets.click("Start recording")
    time.sleep(6)  # what is recorded
    bed.unplug("cam")
    said = shown_text(application, ("Recording failed", "was kept", "kept"))
    path = wait_for(lambda: list(application.output.glob("*.mov")), "the recording", 60)[0]
    return check_video(path, SIZE, (2, 12), seconds=60).detail + f", told {said!r}"


def unknown(bed):
    """A camera that no table knows: chosen by hand, found again after a restart and a replug."""
    def plug():
        bed.plug("camera", "cam", "1209:7a7a", bed.pictures, "-s", "1280x720", "-f", SLOW)
    plug()
    application = bed.start(wait=False)
    bed.use_offered_camera()
    bed.close()
    application = bed.start(again=True)
    bed.unplug("cam")
    wait_for(lambda: application.widgets.says("No camera"), "the missing camera told", 10)
    plug()
    application.wait_for_picture()
    bed.press("space")
    return check_image(application.output / "0.jpg", "JPEG", (1280, 720)).detail


def two_cameras(bed):
    """The assist camera beside the main one, as picture in picture in the capture."""
    bed.camera()
    bed.plug("camera", "second", "1209:00a1", bed.pictures, "-s", "1280x720", "-f", SLOW)
    application = bed.start()
    bed.press("ctrl+5")
    application.widgets.click("Open the assist camera")
    application.wait_for_area("Assist camera picture")
    bed.press("space")
    detail = check_image(application.output / "0.jpg", "JPEG", SIZE).detail
    bed.unplug("second")
    wait_for(lambda: application.logged_times("closeCameraTwo end"), "the missing camera noticed")
    application.wait_for_picture()
    return detail + ", goes on without the second one"


def forbidden(bed):
    """Without the superuser's right to pass over permissions, since the guest has no other user."""
    node = bed.camera()
    os.chmod(node, 0)
    application = bed.start(wait=False, prefix=(
        "setpriv", "--bounding-set=-dac_override,-dac_read_search"))
    application.window()
    return shown_text(application, ("not permitted",))


def busy(bed):
    node = bed.camera()
    holder = Child(["v4l2-ctl", "-d", node, "--stream-mmap", "--stream-to=/dev/null"],
                   bed.desktop.folder / "holder.log")
    try:
        time.sleep(1)  # the holder takes the device
        application = bed.start(wait=False)
        application.window()
        return shown_text(application, ("v4l2-ctl", "another program", "in use"))
    finally:
        holder.stop(2)


def controls(bed):
    """What is chosen reaches the camera beside its stream, and again after it was unplugged."""
    def told():
        text = output_of(str(HERE / "plug.sh"), "log", "cam")
        return re.findall(r"control (\w+) (-?\d+)", text)
    bed.camera()
    application = bed.start()
    application.widgets.click("Setting")
    application.widgets.click("Picture")
    application.widgets.click("Automatic white balance")
    wait_for(lambda: ("white_balance_auto", "0") in told(), "the camera told")
    bed.desktop.screenshot(bed.folder / "controls-page.png")
    application.widgets.click("Close")
    application.widgets.click("Focus")
    wait_for(lambda: ("focus_auto", "1") in told(), "the autofocus run")
    bed.unplug("cam")
    bed.camera()
    wait_for(lambda: ("white_balance_auto", "0") in told(), "the choice put back", 20)
    return "told while streaming, put back after replugging"


def shown_text(application, words):
    def text():
        return next((node.get_name() for node in application.widgets.all()
                     if any(word in node.get_name() for word in words)), None)
    return wait_for(text, f"a message with one of {words}", 20)


STEPS = [("Modes of a camera", probe), ("Capture", capture), ("Automatic crop", automatic_crop),
         ("PDF", pdf), ("Pictures a second", rate), ("Buttons", buttons),
         ("Unplugged and back, twice", replug), ("A busy camera", busy),
         ("A forbidden camera", forbidden), ("An unknown camera", unknown),
         ("Two cameras", two_cameras), ("Controls of the picture", controls),
         ("Recording of 10 s", record), ("Unplugged while recording", record_unplugged), ("Processor for the preview", processor)]
VIVID_STEPS = [("Ranges of sizes (vivid)", vivid), ("Raw formats (vivid)", raw)]


def install(package):
    """Puts the package's files in their places, until the guest ends; dpkg itself renames folders,
    which the guest's layered file system refuses."""
    output_of("dpkg-deb", "-x", str(package), "/", seconds=120)
    print(f"{'Installed':28}{package.name}", flush=True)
    return pathlib.Path("/usr/lib/pictor")


def main():
    folder, programs = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    if programs.suffix == ".deb":
        programs = install(programs)
    only = sys.argv[3:]
    driver = pathlib.Path("/sys/class/video4linux/video0").exists()
    chosen = [step for step in (VIVID_STEPS if driver else STEPS)
              if not only or step[1].__name__ in only]
    failed = 0
    with tempfile.TemporaryDirectory() as temporary:
        desktop = Desktop(pathlib.Path(temporary))
        bed = Bed(folder, programs, desktop)
        if not driver:
            take_pictures(bed)
        for title, action in chosen:
            bed.name = action.__name__.replace("_", "-")
            try:
                outcome = action(bed)
            except (TourError, OSError, ValueError, subprocess.SubprocessError) as error:
                outcome, failed = f"FAILED: {error}", failed + 1
            bed.clear()
            print(f"{title:28}{outcome}", flush=True)
        desktop.stop()
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
