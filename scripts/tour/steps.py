"""The list of the tour's steps. A new step is one more function with @step in one of the *_steps
files.

A step starts the application with the settings it needs, works it, and says which files it expects
with `tour.expect`. The driver takes a screenshot when the step took none, and closes the window.
"""

import dataclasses
import typing


@dataclasses.dataclass(eq=False)
class Step:
    name: str
    title: str
    action: typing.Callable


STEPS = []


def step(title, name=None):
    """Makes a step of a function; its name becomes the name of folders and pictures."""
    def register(action):
        STEPS.append(Step(name or action.__name__.replace("_", "-"), title, action))
        return action
    return register
