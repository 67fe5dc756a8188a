"""The steps of the tour, in order. A new step is one more function with @step."""

import dataclasses
import typing

from files import check_image, check_pdf, check_video
from processes import TourError, wait_for

TALLEST = (3264, 2448)


@dataclasses.dataclass(eq=False)
class Step:
    name: str
    title: str
    action: typing.Callable


STEPS = []


def step(title):
    """Makes a step of a function; its name becomes the name of folders and pictures."""
    def register(action):
        STEPS.append(Step(action.__name__.replace("_", "-"), title, action))
        return action
    return register


@step("Capture the whole picture")
def capture(tour):
    tour.start_stand("--scene", "page")
    application = tour.start()
    tour.press("space")
    tour.expect(check_image(application.output / "0.jpg", "JPEG", TALLEST))
