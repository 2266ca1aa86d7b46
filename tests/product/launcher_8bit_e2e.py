#!/usr/bin/env python3
"""The launcher on a display of 8 bits per pixel, where it paints through DrawDib: a Wine
session of its own on an 8-bit Xvfb display runs the demo product's launcher, and the
INSTALL page, as the system reads it back from the screen, is saved for the comparison
with its golden picture (tests/golden/launcher_install_8bit.png).

    launcher_8bit_e2e.py SESSION_DIR BIN_DIR DEMO_PRODUCT OUT_DIR
"""
import os
import shutil
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
from wine_session import session_env, wine_path  # noqa: E402

SESSION, BIN, DEMO, OUT = (os.path.abspath(a) for a in sys.argv[1:5])
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
SESSION_SCRIPT = os.path.join(ROOT, "tools", "wine", "session")
TIMEOUT = 30.0
WINDOW_LEFT, WINDOW_TOP = 390, 277  # the demo window, centred on 1280 x 1024


def read_bmp24(path):
    """(width, height, pixel(x, y) -> (r, g, b)) of a bottom-up 24-bit BMP."""
    with open(path, "rb") as f:
        data = f.read()
    offset = int.from_bytes(data[10:14], "little")
    w, h = int.from_bytes(data[18:22], "little"), int.from_bytes(data[22:26], "little")
    row = (w * 3 + 3) & ~3

    def pixel(x, y):
        i = offset + (h - 1 - y) * row + x * 3
        return data[i + 2], data[i + 1], data[i]
    return w, h, pixel


def main():
    subprocess.run(["sh", SESSION_SCRIPT, "start", SESSION], check=True,
                   env=dict(os.environ, WINE_SCREEN_DEPTH="8"), stdout=subprocess.DEVNULL)
    env = session_env(SESSION)
    work = os.path.join(OUT, "launcher-8bit")
    shutil.rmtree(work, ignore_errors=True)
    product = os.path.join(work, "product")
    shutil.copytree(DEMO, product)
    shot = os.path.join(work, "shot.bmp")
    shots = os.path.join(OUT, "launcher-shots-8bit")
    os.makedirs(shots, exist_ok=True)
    launcher = None
    try:
        # The pointer rests on the background, so that no button takes the focus from it.
        subprocess.run(["xdotool", "mousemove", str(WINDOW_LEFT + 90), str(WINDOW_TOP + 400)],
                       env=env, check=True)
        trace = os.path.join(work, "trace.txt")
        launcher = subprocess.Popen(
            ["wine", os.path.join(BIN, "TraceRun.exe"), "/out:" + wine_path(trace),
             wine_path(os.path.join(product, "Launcher.exe"))],
            env=env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)

        def painted():
            """The page is on the screen: the caption bar, a resting button and the focused
            first button, in the colours the 8-bit palette gives them."""
            # No pipes: a service that the probe starts would keep them open.
            r = subprocess.run(["wine", os.path.join(BIN, "WinProbe.exe"), "Tarn", "shot",
                                wine_path(shot)], env=env, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            if r.returncode != 0:
                return False
            w, h, pixel = read_bmp24(shot)
            return ((w, h) == (500, 470) and pixel(300, 10) == (192, 220, 192) and
                    pixel(455, 267) == (192, 220, 192) and pixel(455, 220) == (0, 0, 0))

        deadline = time.monotonic() + TIMEOUT
        while not painted():
            if launcher.poll() is not None or time.monotonic() > deadline:
                print("launcher_8bit: the INSTALL page was not painted as expected; last picture "
                      + shot)
                return 1
            time.sleep(0.1)
        shutil.copy(shot, os.path.join(shots, "launcher_install_8bit.bmp"))
        print("launcher_8bit: INSTALL painted at 8 bits per pixel")
        return 0
    finally:
        if launcher and launcher.poll() is None:
            launcher.kill()
            launcher.wait()
        subprocess.run(["sh", SESSION_SCRIPT, "stop", SESSION], stdout=subprocess.DEVNULL)


if __name__ == "__main__":
    sys.exit(main())
