"""Asks a program's window for its place again and again, and writes when and how long it took.

Started by stalls.py with the number of the process: a window whose thread is held answers late.
Each line is the moment of the question (monotonic clock) and the seconds until its answer."""

import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PERIOD = 0.01


def window_of(pid):
    everything = Atspi.get_desktop(0)
    everything.clear_cache()
    for i in range(everything.get_child_count()):
        program = everything.get_child_at_index(i)
        if program and program.get_process_id() == pid:
            return program.get_child_at_index(0)
    return None


def main():
    window = window_of(int(sys.argv[1]))
    if window is None:
        sys.exit("the program has no window")
    while True:
        begin = time.monotonic()
        try:
            window.get_extents(Atspi.CoordType.SCREEN)
        except GLib.Error:
            return
        taken = time.monotonic() - begin
        print(f"{begin:.4f} {taken:.4f}", flush=True)
        time.sleep(max(0.0, PERIOD - taken))


if __name__ == "__main__":
    main()
