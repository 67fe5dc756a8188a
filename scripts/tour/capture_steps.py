"""Captures with every setting that changes the file."""

from files import check_image, check_pdf
from processes import TourError, wait_for
from steps import step

TALLEST = (3264, 2448)
AUTOMATIC, MANUAL, MULTI = 1, 2, 3
BY_DATE, BY_CODE = 1, 4
PDF = 4


def smaller_than_frame(width, height):
    """A document cut out of the frame."""
    return 100 < width < TALLEST[0] - 50 and 100 < height < TALLEST[1] - 20


def portrait(width, height):
    return smaller_than_frame(width, height) and height > width


@step("Capture the whole picture")
def capture(tour):
    tour.need_scene("page")
    application = tour.start()
    tour.press("space")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", TALLEST))
    wait_for(lambda: application.captured() == ["0.jpg"], "the list entry")
    tour.screenshot()


def _format_step(index, suffix, kind):
    @step(f"Format {suffix.upper()} from the settings file", "format-" + suffix)
    def action(tour):
        tour.need_scene("page")
        application = tour.start(Imgformat=index)
        tour.press("space")
        path = application.output / f"0.{suffix}"
        tour.expect(check_image(path, kind, TALLEST) if kind else check_pdf(path))
    return action


for _index, _suffix, _kind in ((0, "jpg", "JPEG"), (1, "bmp", "BMP3"), (2, "png", "PNG"),
                               (3, "tif", "TIFF"), (PDF, "pdf", None)):
    _format_step(_index, _suffix, _kind)


def _colour_step(index, name, title):
    @step(f"Effect: {title}", "effect-" + name)
    def action(tour):
        tour.need_scene("page")
        application = tour.start(colorMode=index, cutMode=AUTOMATIC)
        tour.press("space")
        tour.expect(check_image(application.output / "0.jpg", "JPEG", portrait, gray=True))
    return action


for _index, _name, _title in ((1, "gray", "gray"), (2, "binarization", "binarization"),
                              (3, "optimization", "document optimization")):
    _colour_step(_index, _name, _title)


@step("Quality 30 makes a smaller file than quality 100")
def quality(tour):
    tour.need_scene("page")
    sizes = []
    for value in (30, 100):
        application = tour.start(ImgQuality=value, NameType=BY_DATE)
        before = set(application.output.glob("*.jpg"))
        tour.press("space")
        path = wait_for(lambda old=before: next(
            iter(set(tour.files.glob("*.jpg")) - old), None), "a capture")
        tour.expect(check_image(path, "JPEG", TALLEST))
        sizes.append(path.stat().st_size)
    if sizes[0] * 1.5 > sizes[1]:
        raise TourError(f"quality 30 gives {sizes[0]} bytes, quality 100 {sizes[1]}")


@step("Automatic crop")
def crop_automatic(tour):
    tour.need_scene("page")
    application = tour.start(cutMode=AUTOMATIC)
    tour.press("space")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", portrait))


@step("Several documents at once")
def crop_several(tour):
    tour.need_scene("three")
    application = tour.start(cutMode=MULTI)
    tour.press("space")
    found = wait_for(lambda: len(list(application.output.glob("*.jpg"))) >= 3 and
                     sorted(application.output.glob("*.jpg")), "three files")
    for path in found:
        tour.expect(check_image(path, "JPEG", smaller_than_frame))


@step("Manual crop")
def crop_manual(tour):
    tour.need_scene("page")
    application = tour.start(cutMode=MANUAL)
    tour.press("space")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", smaller_than_frame))


@step("A barcode names the file")
def name_by_barcode(tour):
    tour.need_scene("barcode")
    tour.start(NameType=BY_CODE)
    tour.press("space")
    path = tour.new_file("*.jpg", 40)
    if not path.stem.isdigit() or len(path.stem) != 13:
        raise TourError(f"{path.name} is not named after the thirteen digits of the barcode")
    tour.expect(check_image(path, "JPEG", TALLEST))


@step("Names by date, by prefix and number")
def names(tour):
    tour.need_scene("page")
    application = tour.start()
    application.widgets.fill("Custom name", "page")
    application.widgets.choose("Name type", "Date and time")
    tour.press("space")
    dated = tour.new_file("*.jpg")
    if not (dated.stem.isdigit() and len(dated.stem) == 17):
        raise TourError(f"{dated.name} is not named by date and time")
    tour.expect(check_image(dated, "JPEG", TALLEST))
    application.widgets.choose("Name type", "No.")
    tour.press("space")
    tour.expect(check_image(application.output / "page0.jpg", "JPEG", TALLEST))


@step("Another resolution")
def resolution(tour):
    tour.need_scene("page")
    application = tour.start()
    tour.press("ctrl+6")
    application.widgets.choose("Resolution", "1920x1080")
    wait_for(lambda: "1920" in application.status(), "the new size in the status line")
    application.widgets.click("Capture")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", (1920, 1080)))


@step("A camera with enlarged sizes")
def enlarged(tour):
    tour.start_stand("--scene", "page", "--id", "12090024")
    application = tour.start()
    tour.press("ctrl+6")
    application.widgets.choose("Resolution", "4208x3120")
    application.widgets.click("Capture")
    # Captured first and enlarged then; the list takes what is ready.
    wait_for(lambda: application.captured() == ["0.jpg"], "the list entry")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", (4208, 3120)))
