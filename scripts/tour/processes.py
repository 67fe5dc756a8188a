"""Child processes that end with the tour, and waiting for a condition with a deadline."""

import os
import pathlib
import signal
import subprocess
import time


class TourError(Exception):
    """What a step expected did not come true."""


def wait_for(condition, what, seconds=20, interval=0.05):
    """Returns the first true value of `condition`; after `seconds` it is a TourError."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise TourError(f"waited {seconds} s in vain for {what}")
        time.sleep(interval)


def output_of(*command, seconds=60):
    """Standard output of a program; a TourError with its error output when it fails."""
    done = subprocess.run(command, capture_output=True, text=True, timeout=seconds, check=False)
    if done.returncode != 0:
        raise TourError(f"{command[0]}: {done.stderr.strip() or done.returncode}")
    return done.stdout


class Child:
    """A program of the tour in a process group of its own; its output goes to a file."""

    def __init__(self, command, log, environment=None, **options):
        self.name = pathlib.Path(command[0]).name
        with open(log, "ab") as output:
            options.setdefault("stdout", output)
            self.process = subprocess.Popen(command, stderr=output, env=environment,
                                            start_new_session=True, **options)
        self.log = pathlib.Path(log)

    @property
    def pid(self):
        return self.process.pid

    def is_running(self):
        return self.process.poll() is None

    def stop(self, seconds=10):
        """Asks the program to end, kills it when it does not, and gives its exit code."""
        if self.is_running():
            self.process.terminate()
        try:
            self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            pass
        try:
            os.killpg(self.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        return self.process.wait()
