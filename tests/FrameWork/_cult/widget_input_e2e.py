#!/usr/bin/env python3
"""Drives the widget fixture as a person would: real pointer and keyboard input from outside
the process (xdotool on the test session's display), checked against the fixture's event log.

    widget_input_e2e.py SESSION_DIR FIXTURE_EXE OUT_DIR

Every step waits for the log line that shows its effect; a step whose effect must be absent
(no click, no move) is followed by a key press whose own line proves that the step was
handled. Saves a screenshot of the window as OUT_DIR/widget-fixture.png.
"""
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../..", "support"))
from wine_session import session_env  # noqa: E402

SESSION, FIXTURE, OUT = (os.path.abspath(a) for a in sys.argv[1:4])
LOG = os.path.join(OUT, "widget-input.log")
TIMEOUT = 10.0


ENV = session_env(SESSION)


class Failure(Exception):
    pass


def state(focus, b1=1, b2=1, b3=1, minimise=1, close=1):
    return f"state focus={focus} 101={b1} 102={b2} 103={b3} min={minimise} close={close}"


class Fixture:
    def __init__(self):
        if os.path.exists(LOG):
            os.remove(LOG)
        self.process = subprocess.Popen(["wine", FIXTURE, "-LOG=Z:" + LOG.replace("/", "\\")],
                                        env=ENV, stdin=subprocess.DEVNULL)
        self.seen = 0  # lines already consumed by earlier waits
        ready = self.wait(lambda line: line.startswith("ready "), "the first paint")
        self.left, self.top = (int(v) for v in ready.split()[1:3])

    def lines(self):
        try:
            with open(LOG, encoding="latin-1") as f:
                return f.read().split("\n")[:-1]  # complete lines only
        except FileNotFoundError:
            return []

    def wait(self, match, what):
        """Waits for the first new line that matches; returns it and consumes up to it."""
        deadline = time.monotonic() + TIMEOUT
        while time.monotonic() < deadline:
            lines = self.lines()
            for i in range(self.seen, len(lines)):
                if match(lines[i]):
                    self.skipped = lines[self.seen:i]
                    self.seen = i + 1
                    return lines[i]
            if self.process.poll() is not None:
                break
            time.sleep(0.02)
        raise Failure(f"no line for {what}; log after the last step: {self.lines()[self.seen:]}")

    def expect(self, line):
        return self.wait(lambda l: l == line, repr(line))

    def xdo(self, *args):
        subprocess.run(["xdotool", *args], env=ENV, check=True)

    def move(self, x, y):
        self.xdo("mousemove", str(self.left + x), str(self.top + y))

    def key(self, name):
        """Presses a key and waits until the fixture has handled it (and all input before)."""
        self.xdo("key", name)
        presses = name.count("+") + 1  # a modifier arrives as a key of its own
        for _ in range(presses):
            self.expect("input key")

    def screenshot(self, path):
        shot = path + ".full.png"
        subprocess.run(["import", "-window", "root", shot], env=ENV, check=True)
        subprocess.run(["convert", shot, "-crop", f"500x300+{self.left}+{self.top}", "+repage", path],
                       check=True)
        os.remove(shot)

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()


BACKGROUND = (50, 250)
BUTTON = {101: (294, 123), 102: (294, 170), 103: (294, 217)}


def click_with_drag_off_and_back(f):
    f.move(*BACKGROUND)
    f.move(*BUTTON[101])
    f.expect(state(101, b1=2))
    f.xdo("mousedown", "1")
    f.expect("input lbuttondown")
    f.expect(state(101, b1=3))
    f.move(*BACKGROUND)
    f.expect(state(101, b1=2))  # pressed, off the button: it keeps the focus
    f.move(300, 130)
    f.expect(state(101, b1=3))
    f.xdo("mouseup", "1")
    f.expect("input lbuttonup")
    f.expect("command 101")
    f.expect(state(101, b1=2))
    f.key("Tab")
    if any(l.startswith("command") for l in f.skipped):
        raise Failure(f"more than one click: {f.skipped}")


def press_drag_off_and_release_is_no_click(f):
    f.move(*BUTTON[102])
    f.expect(state(102, b2=2))
    f.xdo("mousedown", "1")
    f.expect(state(102, b2=3))
    f.move(*BACKGROUND)
    f.expect(state(102, b2=2))
    f.xdo("mouseup", "1")
    f.expect("input lbuttonup")
    f.key("Tab")  # proves the release was handled
    if any(l.startswith("command") for l in f.skipped):
        raise Failure(f"a release off the button clicked: {f.skipped}")
    f.expect(state(103, b3=2))


def keys_walk_and_enter_clicks(f):
    # The pointer rests on the background; the focus is on the third button.
    steps = [("Tab", 101), ("shift+Tab", 103), ("Left", 102), ("Up", 101), ("Right", 102),
             ("Down", 103), ("Tab", 101), ("Down", 102)]
    for key, focus in steps:
        f.key(key)
        f.expect(state(focus, **{f"b{focus - 100}": 2}))
    f.xdo("key", "Return")
    f.expect("input key")
    f.expect("command 102")


def title_button_is_not_focusable(f):
    minimise = (448, 11)
    f.move(*minimise)
    f.expect(state(102, b2=2, minimise=2))  # the page button keeps the focus
    f.xdo("mousedown", "1")
    f.expect(state(102, b2=2, minimise=3))
    f.move(*BACKGROUND)
    f.expect(state(102, b2=2, minimise=2))
    f.move(*minimise)
    f.expect(state(102, b2=2, minimise=3))
    f.move(*BACKGROUND)
    f.expect(state(102, b2=2, minimise=2))
    f.xdo("mouseup", "1")
    f.expect("input lbuttonup")
    f.expect(state(102, b2=2, minimise=1))
    f.key("Tab")
    if any(l.startswith("command") for l in f.skipped):
        raise Failure(f"a release off the minimise button clicked: {f.skipped}")


def caption_drag_moves_the_window_by_the_pointers_movement(f):
    left, top = f.left, f.top
    f.move(250, 15)
    f.xdo("mousedown", "1")
    f.expect("input lbuttondown")
    f.xdo("mousemove_relative", "--", "100", "50")
    f.expect(f"window {left + 100} {top + 50}")
    f.xdo("mouseup", "1")
    f.expect("input lbuttonup")
    f.xdo("mousemove_relative", "--", "30", "30")
    f.key("Tab")  # proves the move after the release was handled
    moved = [l for l in f.skipped if l.startswith("window")]
    if moved:
        raise Failure(f"the window moved after the release: {moved}")
    f.left, f.top = left + 100, top + 50


def close_button_ends_the_program(f):
    f.move(477, 11)
    f.wait(lambda l: l.startswith("state") and l.endswith("close=2"), "the close button's hover")
    f.xdo("click", "1")
    f.expect("command 57344")
    try:
        code = f.process.wait(TIMEOUT)
    except subprocess.TimeoutExpired:
        raise Failure("the program did not end after the close button")
    if code != 0:
        raise Failure(f"exit code {code}")


TESTS = [click_with_drag_off_and_back, press_drag_off_and_release_is_no_click,
         keys_walk_and_enter_clicks, title_button_is_not_focusable,
         caption_drag_moves_the_window_by_the_pointers_movement, close_button_ends_the_program]


def main():
    passed = failed = 0
    try:
        fixture = Fixture()
    except Failure as e:
        print(f"[ FAILED ] start: {e}")
        return 1
    try:
        fixture.screenshot(os.path.join(OUT, "widget-fixture.png"))
        for test in TESTS:
            try:
                test(fixture)
                print(f"[ PASSED ] {test.__name__}")
                passed += 1
            except Failure as e:
                print(f"[ FAILED ] {test.__name__}: {e}")
                failed += 1
    finally:
        fixture.close()
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
