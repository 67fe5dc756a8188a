"""The modes of the window, the second camera, and what hardware does by itself."""

import time

from files import check_image, check_pdf, check_video
from processes import TourError, output_of, wait_for
from steps import step

TALLEST = (3264, 2448)
RECORDED = (1920, 1080)  # the largest that two cores encode in time


PANELS = (("ctrl+2", "multi-pdf"), ("ctrl+3", "merge"), ("ctrl+4", "record"),
          ("ctrl+5", "assist-cam"), ("ctrl+6", "setting"), ("ctrl+1", "document"))


def _panels_step(index, name, title, group):
    @step("The panels of every mode, " + title, "panels-" + name)
    def action(tour):
        tour.need_scene("page")
        application = tour.start(Language=index)
        if not application.widgets.has(group, ("panel",)):
            raise TourError(f"there is no group {group!r}")
        for key, label in PANELS:
            tour.press(key)
            tour.screenshot(label)


_panels_step(0, "english", "in English", "Format type")
_panels_step(1, "chinese", "in Chinese", "格式类型")


@step("The language changed while a page is being merged")
def language_switch(tour):
    tour.need_scene("page")
    application = tour.start(cutMode=1)
    tour.press("ctrl+3", "space")
    wait_for(lambda: list(application.output.glob("*.jpg")), "the first page")
    tour.press("ctrl+6")
    application.widgets.choose("Language", "中文")
    application.widgets.find("语言", ("panel",))
    tour.screenshot("chinese")
    tour.press("ctrl+6", "space")
    tour.expect(check_image(application.output / "0.jpg", "JPEG"))
    tour.press("ctrl+6")
    application.widgets.choose("语言", "English")
    application.widgets.find("Language", ("panel",))


@step("The hardware buttons")
def hardware_buttons(tour):
    tour.need_scene("page")
    application = tour.start()
    fitted = application.zoom()
    for button, turned in (("rotate-left", True), ("rotate-right", False),
                           ("rotate-right", True), ("rotate-left", False)):
        tour.stand.tell("press " + button)
        wait_for(lambda wanted=turned: application.is_upright() == wanted,
                 f"the picture after {button}")
    for button in ("zoom-in", "zoom-out", "true-size", "zoom-in", "fit"):
        before = application.zoom()
        tour.stand.tell("press " + button)
        wait_for(lambda old=before: application.zoom() != old, f"another zoom after {button}")
    wait_for(lambda: application.zoom() == fitted, "the picture fitted as before")
    tour.stand.tell("press capture")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", TALLEST))
    tour.stand.tell("press restart")
    wait_for(lambda: application.logged_times("openCamera end") >= 2, "the camera opened again")
    application.wait_for_picture()


@step("The camera pulled out and plugged in again")
def replug(tour):
    tour.need_scene("page")
    application = tour.start()
    opened = application.logged_times("openCamera end")
    tour.stand.tell("unplug main")
    try:
        wait_for(lambda: application.widgets.says("No camera!"), "the message")
        tour.screenshot("unplugged", tour.WHOLE_SCREEN)
    finally:
        tour.stand.tell("plug main")
    wait_for(lambda: application.logged_times("openCamera end") > opened, "the camera opened again")
    application.wait_for_picture()
    tour.press("space")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", TALLEST))


@step("Three pages in one PDF")
def multi_pdf(tour):
    tour.need_scene("page")
    application = tour.start()
    tour.press("ctrl+2")
    for scene in ("three", "receipt", "card"):
        tour.lay(scene)
        count = len(application.names_in("PDF pages"))
        tour.press("space")
        wait_for(lambda old=count: len(application.names_in("PDF pages")) > old, "the next page")
    first, *others = application.names_in("PDF pages")
    application.widgets.drag_entry("PDF pages", 0, 2)
    wait_for(lambda: application.names_in("PDF pages") == [*others, first], "the first page last")
    tour.press("ctrl+a")
    tour.screenshot("pages")
    application.widgets.click("Export")
    target = application.output / "three.pdf"
    application.answer_file_dialog(target)
    tour.expect(check_pdf(target, pages=3))


@step("Pages merged into one picture")
def merge(tour):
    tour.need_scene("page")
    application = tour.start()
    tour.press("ctrl+3")
    for _ in range(2):
        tour.press("space")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", (3284, 4926)))
    application.widgets.click("3")
    application.widgets.click("Horizontal")
    application.widgets.click("Capture")
    tour.press("space")
    wait_for(lambda: len(list(application.output.glob("*.jpg"))) == 3, "two pages kept")
    tour.screenshot("two-of-three")
    tour.press("space")
    tour.expect(check_image(application.output / "1.jpg", "JPEG", (9832, 2468)))
    application.widgets.click("4")
    application.widgets.click("Vertical")
    application.widgets.click("Capture")
    for _ in range(3):
        tour.press("space")
    tour.expect(check_image(application.output / "2.jpg", "JPEG", (3284, 9842)))
    wait_for(lambda: sorted(path.name for path in application.output.iterdir()) ==
             ["0.jpg", "1.jpg", "2.jpg"], "the single pages gone")


def corner_difference(path, other):
    """How much the lower right corner differs, 0 to 1."""
    corner = "1000x780+2200+1660"
    text = output_of("convert", str(path), str(other), "-crop", corner, "-compose", "difference",
                     "-composite", "-format", "%[fx:mean]", "info:")
    return float(text)


@step("The assist camera: picture in picture, own file, combined")
def assist_camera(tour):
    tour.need_scene("page")
    application = tour.start()
    tour.press("ctrl+5")
    application.widgets.click("Open the assist camera")
    application.wait_for_area("Assist camera picture")
    tour.screenshot("picture-in-picture")
    application.widgets.click("Capture")
    alone = application.output / "0.jpg"
    tour.expect(check_image(alone, "JPEG", TALLEST))
    tour.expect(check_image(application.output / "1.jpg", "JPEG"))
    application.widgets.click("Camera image merging")
    application.widgets.choose("Merging position", "Bottom right")
    application.widgets.click("Capture")
    combined = application.output / "2.jpg"
    tour.expect(check_image(combined, "JPEG", TALLEST))
    if corner_difference(alone, combined) < 0.05:
        raise TourError("the assist picture is not in the lower right corner")
    application.widgets.click("Close the assist camera")


@step("Recordings with sound as MOV, AVI and MP4")
def recording(tour):
    tour.need_scene("page")
    application = tour.start()
    tour.press("ctrl+6")
    application.widgets.choose("Resolution", "1920x1080")
    wait_for(lambda: "1920" in application.status(), "the size that is seen and recorded")
    tour.press("ctrl+4")
    for form in ("MOV", "AVI", "MP4"):
        application.widgets.choose("Video format", form)
        application.widgets.click("Start recording")
        time.sleep(5)  # what is recorded
        if form == "MOV":
            tour.screenshot("running")
        application.widgets.click("Stop recording")
        path = tour.new_file("*." + form.lower(), 60)
        wait_for(lambda name=path.name: name in application.captured(), "the recording's entry", 60)
        tour.expect(check_video(path, RECORDED, (2, 12), sound=True))


@step("Each turned page captured by itself")
def page_turning(tour):
    tour.need_scene("book")
    application = tour.start()
    application.widgets.click("Automatic capture")
    for count in (1, 2):
        tour.stand.tell("turn")
        wait_for(lambda wanted=count: len(list(application.output.glob("*.jpg"))) >= wanted,
                 f"capture {count}", 40)
        if count == 1:
            tour.screenshot("waiting")
    application.widgets.click("Automatic capture")
    for number in range(2):
        tour.expect(check_image(application.output / f"{number}.jpg", "JPEG", TALLEST))
