"""The pictures of the user guide: each mode at work, in each language."""

import time

from processes import wait_for
from steps import step

NAMES = {
    "en": {"assist": "Open the assist camera", "view": "Assist camera picture",
           "start": "Start recording", "stop": "Stop recording", "turning": "Automatic capture",
           "waiting": "Wait for the next page...", "pages": "PDF pages"},
    "zh": {"assist": "打开副摄像头", "view": "副摄像头画面", "start": "开始录像",
           "stop": "停止录像", "turning": "自动连拍", "waiting": "等待翻页...", "pages": "PDF 页面"},
}


def _files(application, count):
    wait_for(lambda: len(list(application.output.glob("*.jpg"))) >= count, f"{count} captures")


def _still(tour):
    """Waits until nothing moves or flashes any more."""
    area = tour.application.preview()

    def is_still():
        before = tour.desktop.screen.sample(area)
        time.sleep(0.3)
        return tour.desktop.screen.sample(area) == before
    wait_for(is_still, "a still picture")


def _picture(tour, label):
    _still(tour)
    tour.screenshot(label)


def _guide_step(index, language, title):
    names = NAMES[language]

    @step("The pictures of the user guide, " + title, "guide-" + language)
    def action(tour):
        tour.need_scene("page")
        application = tour.start(Language=index, cutMode=1)
        tour.press("space")
        _files(application, 1)
        _picture(tour, "window")
        tour.press("F1")
        wait_for(lambda: len(tour.desktop.windows(application.child.pid)) > 1, "the guide")
        tour.desktop.focus(tour.desktop.windows(application.child.pid)[-1])
        tour.desktop.press("Tab", "Page_Down")  # from the chapters to the text
        tour.screenshot("guide", tour.WHOLE_SCREEN)
        tour.desktop.press("Escape")

        tour.press("ctrl+3", "space")
        _files(application, 2)
        _picture(tour, "merge")

        tour.press("ctrl+2")
        for count, scene in enumerate(("receipt", "card", "page"), 1):
            tour.lay(scene)
            _still(tour)
            tour.press("space")
            wait_for(lambda wanted=count: len(application.names_in(names["pages"])) >= wanted,
                     f"page {count}")
            _still(tour)
        _picture(tour, "pdf")

        application = tour.start(Language=index, cutMode=2)
        _picture(tour, "manual-crop")
        tour.press("ctrl+5")
        application.widgets.click(names["assist"])
        application.wait_for_area(names["view"])
        _picture(tour, "assist")

        application = tour.start(Language=index)
        tour.press("ctrl+4")
        application.widgets.click(names["start"])
        wait_for(lambda: any(node.get_name().endswith("00:00:03")
                             for node in application.widgets.all()), "three recorded seconds")
        tour.screenshot("record")
        application.widgets.click(names["stop"])
        wait_for(lambda: list(application.output.glob("*.mov")), "the recording")

        tour.need_scene("book")
        application = tour.start(Language=index)
        application.widgets.click(names["turning"])
        wait_for(lambda: application.widgets.says(names["waiting"]), "the first page shot", 40)
        tour.screenshot("page-turning")
        application.widgets.click(names["turning"])


_guide_step(0, "en", "in English")
_guide_step(1, "zh", "in Chinese")
