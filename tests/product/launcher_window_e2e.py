#!/usr/bin/env python3
"""Uses the launcher's window as a player would: the real Launcher.exe under Wine in a copy
of the demo product, real pointer and keyboard input from outside (xdotool on the test
session's display), its message boxes found, read and answered from outside (BoxProbe.exe),
its trace read as it is written (TraceRun.exe), and what it shows read from screenshots.

    launcher_window_e2e.py SESSION_DIR BIN_DIR DEMO_PRODUCT OUT_DIR [TEST...]

Every step waits for what it checks: a trace line, a box, a program's record, or the
pixels of the window. Programs the launcher starts are recorders (test_helper.exe) that
write their command line and folder. Screenshots of the demo's pages are saved in
OUT_DIR/launcher-shots/ for the golden comparison.
"""
import os
import shutil
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
from wine_session import session_env, wine_path  # noqa: E402

SESSION, BIN, DEMO, OUT = (os.path.abspath(a) for a in sys.argv[1:5])
ONLY = sys.argv[5:]
WORK = os.path.join(OUT, "launcher-window")
SHOTS = os.path.join(OUT, "launcher-shots")
TIMEOUT = 15.0
SCREEN_W, SCREEN_H = 1280, 1024
SKIN_W, SKIN_H = 500, 470  # the demo skin's background
HELPER = os.path.join(BIN, "test_helper.exe")


ENV = session_env(SESSION)


class Failure(Exception):
    pass


def wait_for(condition, what, timeout=TIMEOUT):
    deadline = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise Failure(f"timed out waiting for {what}")
        time.sleep(0.05)


def run_wine(program, *args, check=True):
    r = subprocess.run(["wine", program, *args], env=ENV, capture_output=True, text=True,
                       stdin=subprocess.DEVNULL)
    if check and r.returncode != 0:
        raise Failure(f"{os.path.basename(program)} {args}: exit {r.returncode}")
    return r.stdout.strip()


def read_file(path, mode="r"):
    """The file's text (read as Latin-1) or bytes; empty while it does not exist."""
    try:
        with open(path, mode, encoding=None if "b" in mode else "latin-1") as f:
            return f.read()
    except FileNotFoundError:
        return b"" if "b" in mode else ""


def xdo(*args):
    subprocess.run(["xdotool", *args], env=ENV, check=True)


# --- What the screen shows ---------------------------------------------------------------

class Shot:
    """A screenshot of the whole display, read as RGB."""

    def __init__(self):
        data = subprocess.run(["import", "-window", "root", "-depth", "8", "ppm:-"], env=ENV, check=True,
                              capture_output=True).stdout
        # P6\nW H\n255\n then the pixels
        parts = data.split(b"\n", 3)
        self.w, self.h = (int(v) for v in parts[1].split())
        self.pixels = parts[3]

    def at(self, x, y):
        i = (y * self.w + x) * 3
        return tuple(self.pixels[i:i + 3])

    def save_crop(self, path, left, top, w, h):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        header = b"P6\n%d %d\n255\n" % (self.w, self.h)
        subprocess.run(["convert", "ppm:-", "-crop", f"{w}x{h}+{left}+{top}", "+repage", path],
                       input=header + self.pixels, check=True)


def near(a, b, tolerance=24):
    return all(abs(x - y) <= tolerance for x, y in zip(a, b))


# The page buttons' faces of the demo skin, read inside the border, right of the label. The
# dark background beside them lies within 30 of the focused face: the match is close.
FACES = {"normal": (232, 220, 187), "focused": (27, 41, 66), "pressed": (21, 73, 134)}


# The demo caption's middle in its inactive look.
INACTIVE_CAPTION = (186, 190, 195)


def button_look(colour):
    for name, face in FACES.items():
        if near(colour, face, 12):
            return name
    return None


# --- The launcher --------------------------------------------------------------------------

class Product:
    """A copy of the demo product with a setup.ini of the test's own (its own registry key
    and mutexes) and recorders in place of the programs the launcher starts."""

    def __init__(self, name, ini=None, state=None, folder=None, wine_folder=None, setup_dll=None):
        """setup_dll: another name for the setup library, which leaves no VokSetup.dll."""
        self.name = name
        self.folder = folder or os.path.join(WORK, name)
        self.wine_folder = wine_folder or wine_path(self.folder)
        shutil.rmtree(self.folder, ignore_errors=True)
        shutil.copytree(DEMO, self.folder)
        self.data = os.path.join(self.folder, "Install")
        os.makedirs(os.path.join(self.folder, "GameData"), exist_ok=True)
        for program in ("Doc.exe", "Url.exe", "Syscheck.exe"):
            shutil.copy(HELPER, os.path.join(self.data, program))
        shutil.copy(HELPER, os.path.join(self.folder, "Tarn.exe"))
        shutil.copy(HELPER, os.path.join(self.folder, "GameData", "trnmp.exe"))
        shutil.copy(HELPER, os.path.join(self.folder, "Uninstall.exe"))
        values = {("Registry", "Company"): "Launcher Window Tests", ("Registry", "Product"): name,
                  ("Mutex", "Launcher"): "WindowTestLauncher-" + name,
                  ("Mutex", "Product"): "WindowTestGame-" + name}
        values.update(ini or {})
        if setup_dll:
            values[("Files", "SetupDll")] = setup_dll
            os.rename(os.path.join(self.data, "VokSetup.dll"), os.path.join(self.data, setup_dll))
        self.write_ini(dict(values))
        self.key = "HKLM\\Software\\" + values[("Registry", "Company")] + "\\" + \
            values[("Registry", "Product")] + "\\1.0"
        self.set_state(state)

    def write_ini(self, values):
        """Sets the given keys of setup.ini (None removes a key); consumes 'values'."""
        path = os.path.join(self.data, "setup.ini")
        lines, section = [], None
        with open(path, encoding="latin-1") as f:
            for line in f.read().splitlines():
                s = line.strip()
                if s.startswith("["):
                    section = s[1:-1]
                elif "=" in s and not s.startswith(";") and (section, s.split("=")[0]) in values:
                    key = s.split("=")[0]
                    value = values.pop((section, key))
                    if value is None:
                        continue
                    line = f"{key}={value}"
                lines.append(line)
        for (section, key), value in values.items():  # keys the file did not have
            if value is not None:
                lines += [f"[{section}]", f"{key}={value}"]
        with open(path, "w", encoding="latin-1", newline="\r\n") as f:
            f.write("\n".join(lines) + "\n")

    def set_state(self, installed):
        """installed: None (no key), or True: installed in this folder, from this folder."""
        reg = os.path.join(self.folder, "state.reg")
        key = "[-" + self.key + "]"
        text = "REGEDIT4\r\n\r\n" + key.replace("HKLM", "HKEY_LOCAL_MACHINE") + "\r\n"
        if installed:
            folder = wine_path(self.folder).replace("\\", "\\\\")
            uninstall = wine_path(os.path.join(self.folder, "Uninstall.exe")).replace("\\", "\\\\")
            text += ("\r\n[" + self.key.replace("HKLM", "HKEY_LOCAL_MACHINE") + "]\r\n"
                     '"Installed"=dword:00000002\r\n'
                     f'"Install Path"="{folder}"\r\n"Source Dir"="{folder}"\r\n'
                     f'"UninstallString"="{uninstall}"\r\n')
        with open(reg, "w", newline="") as f:
            f.write(text)
        run_wine("regedit", "/S", wine_path(reg))

    def record(self, program):
        """The lines a recorder wrote: 'args=...|cwd=...'."""
        return read_file(os.path.join(self.folder, program) + ".log").splitlines()


class Launcher:
    def __init__(self, product, args=(), size=(SKIN_W, SKIN_H), park=(90, 400), env=None):
        self.product = product
        self.width, self.height = size
        self.left = (SCREEN_W - self.width) >> 1
        self.top = (SCREEN_H - self.height) >> 1
        self.rest = park  # where the pointer rests: the background, no button
        # A focusable button under the pointer takes the focus: the pointer rests on the
        # background before the window appears.
        self.park()
        self.trace_file = os.path.join(product.folder, "trace.txt")
        if os.path.exists(self.trace_file):
            os.remove(self.trace_file)
        self.process = subprocess.Popen(
            ["wine", os.path.join(BIN, "TraceRun.exe"), "/out:" + wine_path(self.trace_file),
             product.wine_folder.rstrip("\\") + "\\Launcher.exe", *args],
            env=env or ENV, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        self.seen = 0

    def lines(self):
        return read_file(self.trace_file).split("\n")[:-1]

    def wait_trace(self, line):
        """Waits for a trace line after the ones consumed (or one that ends with it: the
        start-up's last step has no line break); consumes up to it."""
        def found():
            lines = self.lines()
            for i in range(self.seen, len(lines)):
                if lines[i] == line or lines[i].endswith("..." + line):
                    self.skipped = lines[self.seen:i]
                    self.seen = i + 1
                    return True
            if self.process.poll() is not None:
                raise Failure(f"the launcher ended before {line!r}; last lines: {lines[-5:]}")
            return False
        wait_for(found, repr(line))

    def wait_shown(self, page):
        self.wait_trace(f"LfxMain: Page [{page}] shown.")

    def ended(self, timeout=TIMEOUT):
        try:
            return self.process.wait(timeout)
        except subprocess.TimeoutExpired:
            raise Failure("the launcher did not end")

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()

    # Input, in window coordinates.
    def move(self, x, y):
        xdo("mousemove", str(self.left + x), str(self.top + y))

    def park(self):
        self.move(*self.rest)

    def click(self, x, y):
        self.move(x, y)
        xdo("click", "1")

    def key(self, name):
        self.park()  # keys go to the window under the pointer
        xdo("key", name)

    # What the window shows.
    def pixel(self, shot, x, y):
        return shot.at(self.left + x, self.top + y)

    def buttons(self, shot):
        """The looks of the page buttons, top to bottom, until the first slot without one."""
        looks = []
        for k in range(9):
            look = button_look(self.pixel(shot, 455, 200 + 47 * k + 20))
            if not look:
                break
            looks.append(look)
        return looks

    def wait_buttons(self, expected):
        last = []

        def shows():
            last[:] = self.buttons(Shot())
            return last == expected
        try:
            wait_for(shows, f"buttons {expected}")
        except Failure:
            raise Failure(f"buttons {last}, expected {expected}")

    def save(self, name):
        self.save_to(os.path.join(SHOTS, name + ".png"))

    def save_to(self, path):
        Shot().save_crop(path, self.left, self.top, self.width, self.height)

    def probe(self, command):
        return run_wine(os.path.join(BIN, "WinProbe.exe"), "Tarn", command, check=False)


def box(title, answer, timeout_ms=15000):
    """Finds a message box by its title, answers it; returns (text, style, owner)."""
    out = run_wine(os.path.join(BIN, "BoxProbe.exe"), title, str(answer), str(timeout_ms),
                   check=False)
    if not out:
        raise Failure(f"no box titled {title!r}")
    _, text, style, owner = out.split("\t")
    return text, style, owner


def no_box(title):
    return run_wine(os.path.join(BIN, "BoxProbe.exe"), title, "0", "0", check=False) == ""


def focus(n, k):
    """The looks of n buttons with the k-th (from 0) focused."""
    return ["focused" if i == k else "normal" for i in range(n)]


def expect(actual, expected, what):
    if actual != expected:
        raise Failure(f"{what}: {actual!r}, expected {expected!r}")


# --- The tests -----------------------------------------------------------------------------

def first_page_by_state():
    cases = [("state2", None, (), "INSTALL", 4), ("state1", True, (), "LAUNCH", 5),
             ("state1demo", True, (), "LAUNCH", 4)]
    for name, installed, args, page, count in cases:
        ini = {("Startup", "AppType"): "Demo"} if name.endswith("demo") else None
        l = Launcher(Product(name, ini=ini, state=installed), args)
        try:
            l.wait_shown(page)
            l.park()
            l.wait_buttons(focus(count, 0))
            if name == "state2":
                l.save("launcher_install")
            if name == "state1":
                l.save("launcher_launch")
            xdo("key", "Escape")
            l.wait_trace(f"LfxMain: Page [{page}] closed.")
            expect(l.ended(), 0, "exit code")
        finally:
            l.close()
    # State 3: no page is named UNINSTALL; the background alone (product.bmp where the
    # caption would be, no buttons), closed with Alt+F4.
    p = Product("state3", state=True)
    l = Launcher(p, ["-UNINSTALL"])
    try:
        l.wait_trace("LfxMain: m_dwState is [3]")
        l.park()
        under_caption = tuple(subprocess.run(
            ["convert", os.path.join(p.data, "product.bmp"), "-crop", "1x1+250+14", "-depth", "8",
             "rgb:-"], check=True, capture_output=True).stdout)

        def bare(shot):
            return l.buttons(shot) == [] and l.pixel(shot, 250, 14) == under_caption
        wait_for(lambda: bare(Shot()), "the bare background")
        l.key("alt+F4")
        expect(l.ended(), 0, "exit code")
        if any(line.startswith("LfxMain: Page [") for line in l.lines()):
            raise Failure("a page was shown")
    finally:
        l.close()


def help_and_back_restore_the_focus():
    # INSTALL: click Help (the second button); HELP's Back restores the focus to it.
    l = Launcher(Product("helpback", state=None))
    try:
        l.wait_shown("INSTALL")
        l.click(300, 247 + 20)
        l.wait_shown("HELP")
        l.park()
        l.wait_buttons(focus(4, 0))
        l.save("launcher_help")
        l.click(300, 200 + 3 * 47 + 20)  # Back
        l.wait_shown("INSTALL")
        l.park()
        l.wait_buttons(focus(4, 1))
    finally:
        l.close()
    # LAUNCH: the keyboard walks to Help, the third button; Escape on HELP comes back to it.
    l = Launcher(Product("helpkeys", state=True))
    try:
        l.wait_shown("LAUNCH")
        l.key("Down")
        l.key("Down")
        l.wait_buttons(focus(5, 2))
        l.key("Return")
        l.wait_shown("HELP")
        l.wait_buttons(focus(4, 0))
        l.key("Escape")
        l.wait_shown("LAUNCH")
        l.wait_buttons(focus(5, 2))
    finally:
        l.close()


def options_page():
    l = Launcher(Product("options", state=None))
    try:
        l.wait_shown("INSTALL")
        l.click(300, 294 + 20)
        l.wait_shown("OPTIONS")
        l.park()
        l.wait_buttons(focus(3, 0))  # not installed: no Uninstall
        l.save("launcher_options")
        l.key("Escape")  # the last command, Back
        l.wait_trace("LfxMain: Page [OPTIONS] closed.")
        l.wait_shown("INSTALL")
        l.wait_buttons(focus(4, 2))
    finally:
        l.close()


def long_sound(path, seconds):
    """Writes a tone of that length (22050 Hz, 16-bit mono) as a wave file; returns its samples."""
    import math
    import struct
    import wave
    samples = b"".join(struct.pack("<h", int(8000 * math.sin(i * 2 * math.pi * 440 / 22050)))
                       for i in range(22050 * seconds))
    with wave.open(path, "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(22050)
        w.writeframes(samples)
    return samples


def sound_home(name):
    """A HOME whose ALSA configuration makes the default device write what it plays to
    HOME/capture.raw (a file started anew for every sound)."""
    home = os.path.join(WORK, name + "-home")
    os.makedirs(home, exist_ok=True)
    capture = os.path.join(home, "capture.raw")
    if os.path.exists(capture):
        os.remove(capture)
    with open(os.path.join(home, ".asoundrc"), "w") as f:
        f.write('pcm.!default {\n  type file\n  slave.pcm "null"\n  file "%s"\n  format "raw"\n}\n'
                % capture)
    return home, capture


def close_button():
    """The close button asks the help viewer (a recorder of the class WinHelp talks to) to
    quit with the launcher's help file, stops the opening sound (twenty seconds long, so it
    still plays) and ends the launcher with exit code 0."""
    p = Product("closebutton", state=None)
    samples = long_sound(os.path.join(p.data, "OPEN.wav"), 20)
    home, capture = sound_home("closebutton")
    help_log = os.path.join(p.folder, "help.log")
    viewer = subprocess.Popen(["wine", os.path.join(BIN, "help_recorder.exe"), wine_path(help_log)],
                              env=ENV, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
    try:
        wait_for(lambda: read_file(help_log) == "ready\n", "the help viewer's window")
        l = Launcher(p, env=dict(ENV, HOME=home))
        try:
            l.wait_shown("INSTALL")
            wait_for(lambda: len(read_file(capture, "rb")) > 0, "the opening sound on the device")
            l.move(480, 12)  # over the close button
            plate = lambda: l.pixel(Shot(), 476, 12)
            wait_for(lambda: near(plate(), (63, 116, 176), 40), "the close button's hover image")
            xdo("mousedown", "1")
            wait_for(lambda: near(plate(), (201, 155, 62), 40), "the close button's pressed image")
            xdo("mouseup", "1")
            expect(l.ended(), 0, "exit code")
        finally:
            l.close()
        expect(read_file(help_log).splitlines(),
               ["ready", "command=2 file=" + p.wine_folder + "\\Tarn.hlp"], "the help requests")
        # The start of the sound, then at most the silence that fills the device's last
        # period when a sound is stopped.
        played = read_file(capture, "rb")
        sound = played.rstrip(b"\0")
        expect((0 < len(sound), len(played) < len(samples), samples.startswith(sound)),
               (True, True, True),
               f"the opening sound cut short ({len(played)} of {len(samples)} bytes played)")
    finally:
        viewer.kill()
        viewer.wait()


def minimise_and_restore():
    l = Launcher(Product("minimise", state=None))
    try:
        l.wait_shown("INSTALL")
        l.click(451, 12)
        wait_for(lambda: l.probe("iconic") == "1", "the window to be minimised")
        l.probe("activate")
        wait_for(lambda: l.probe("iconic") == "0", "the window to come back")
        l.park()
        # Back at rest: the minimise button's resting plate, the caption's active look.
        wait_for(lambda: near(l.pixel(Shot(), 448, 12), (42, 59, 86), 40) and
                 near(l.pixel(Shot(), 300, 10), (238, 230, 203), 30), "the restored title bar")
        l.wait_buttons(focus(4, 0))
    finally:
        l.close()


def caption_drag():
    l = Launcher(Product("drag", state=None))
    try:
        l.wait_shown("INSTALL")
        l.move(250, 15)
        xdo("mousedown", "1")
        xdo("mousemove_relative", "--", "100", "50")
        expected = f"{l.left + 100} {l.top + 50} {l.left + 600} {l.top + 520}"
        wait_for(lambda: l.probe("rect") == expected, f"the window at {expected}")
        xdo("mouseup", "1")
        l.left += 100
        l.top += 50
        l.park()
        l.wait_buttons(focus(4, 0))
    finally:
        l.close()


VERSION = ("Launcher.exe (Build 0003)\\n\\nLfxMain        \\t: 1.03.0114 (2/12/02 5:05p)\\n"
           "CTarnLauncher  \\t: 1.00.0024 (2/22/02 5:26p)\\n\\nPages:\\n\\tLAUNCH\\tINT\\n"
           "\\tINSTALL\\t\\n\\tHELP\\t\\n\\tOPTIONS\\t\\n")


def version_box():
    l = Launcher(Product("version", state=None))
    try:
        l.wait_shown("INSTALL")
        l.move(300, 150)
        xdo("keydown", "shift")
        xdo("click", "--repeat", "2", "--delay", "80", "1")  # with Shift alone: nothing
        xdo("keyup", "shift")
        xdo("keydown", "shift", "keydown", "ctrl")
        xdo("click", "--repeat", "2", "--delay", "80", "1")
        xdo("keyup", "ctrl", "keyup", "shift")
        text, style, owner = box("Tarn", 1)
        expect((text, style, owner), (VERSION, "style=0x40", "owner=none"), "the version box")
        l.key("Escape")
        expect(l.ended(), 0, "exit code")
        if not no_box("Tarn"):
            raise Failure("a second version box")
    finally:
        l.close()


SOUND_Q = "No working sound device was found.\\n\\nDo you want to play without sound?"


def play_with_the_checks():
    # The sound check asks first (no owner); after its No the page asks again (M2, owned by
    # the window): No there starts nothing, Yes goes on to the game.
    cases = [("play_yes", [6], True), ("play_no_no", [7, 7], False), ("play_no_yes", [7, 6], True)]
    for name, answers, starts in cases:
        p = Product(name, state=True)
        l = Launcher(p)
        try:
            l.wait_shown("LAUNCH")
            l.key("Return")
            seen = []
            for answer in answers:
                text, style, owner = box("Tarn", answer)
                seen.append((text, style, owner.split(":")[0]))
            expected = [(SOUND_Q, "style=0x124", "owner=none"),
                        (SOUND_Q, "style=0x124", "owner=CltWin")][:len(answers)]
            expect(seen, expected, "the sound questions")
            if starts:
                l.wait_trace("LfxMain: Page [LAUNCH] closed.")
                expect(l.ended(), 0, "exit code")
                wait_for(lambda: p.record("Tarn.exe"), "the game's record")
                expect(p.record("Tarn.exe"),
                       [f"args=|cwd={wine_path(os.path.join(p.folder, 'GameData'))}"], "the game")
            else:
                l.key("Escape")
                expect(l.ended(), 0, "exit code")
                expect(p.record("Tarn.exe"), [], "the game")
        finally:
            l.close()
    # No display device (no VokSetup.dll under that name): M3 after M2, nothing started.
    p = Product("play_nodisplay", state=True, setup_dll="Setup2.dll")
    l = Launcher(p)
    try:
        l.wait_shown("LAUNCH")
        l.key("Return")
        box("Tarn", 6)
        text, style, owner = box("Tarn", 1)
        expect((text, style, owner.startswith("owner=CltWin:")),
               ("No display device that supports DirectDraw was found.\\n\\nTarn cannot start.",
                "style=0x30", True), "M3")
        l.key("Escape")
        expect(l.ended(), 0, "exit code")
        expect(p.record("Tarn.exe"), [], "the game")
    finally:
        l.close()


def second_program():
    p = Product("second", state=True)
    l = Launcher(p)
    try:
        l.wait_shown("LAUNCH")
        l.click(300, 247 + 20)
        # The sound check's No, then M2 without an owner, answered Yes.
        seen = [box("Tarn", 7), box("Tarn", 6)]
        expect(seen, [(SOUND_Q, "style=0x124", "owner=none")] * 2, "the sound questions")
        l.wait_trace("LfxMain: Page [LAUNCH] closed.")
        expect(l.ended(), 0, "exit code")
        wait_for(lambda: p.record(os.path.join("GameData", "trnmp.exe")), "trnmp's record")
        expect(p.record(os.path.join("GameData", "trnmp.exe")),
               [f"args=|cwd={wine_path(os.path.join(p.folder, 'GameData'))}"], "trnmp.exe")
    finally:
        l.close()


def uninstall():
    # No: nothing; a second press while the question is open does nothing; Yes: the
    # uninstaller starts and the launcher ends.
    p = Product("uninstall", state=True)
    l = Launcher(p)
    try:
        l.wait_shown("LAUNCH")
        l.click(300, 200 + 3 * 47 + 20)  # Options
        l.wait_shown("OPTIONS")
        l.park()
        l.wait_buttons(focus(4, 0))
        l.click(300, 294 + 20)  # Uninstall
        text, style, owner = box("Options", 0)
        expect((text, style, owner),
               ("Do you really want to remove Tarn and all of its saved games from this computer?",
                "style=0x124", "owner=none"), "M4")
        # A second press while the question is open. The question takes the activation from
        # the window a moment after it shows, which cancels a press made before: the press
        # waits until the caption shows the inactive look.
        wait_for(lambda: near(l.pixel(Shot(), 300, 10), INACTIVE_CAPTION, 20),
                 "the window made inactive by the question")
        # The pointer comes back to the button from Back, whose look shows the window follows it.
        l.move(300, 341 + 20)
        wait_for(lambda: l.buttons(Shot())[3:4] == ["focused"], "the pointer over Back")
        l.move(300, 294 + 20)
        xdo("mousedown", "1")
        wait_for(lambda: l.buttons(Shot())[2:3] == ["pressed"], "the pressed Uninstall button")
        xdo("mouseup", "1")
        l.park()
        wait_for(lambda: l.buttons(Shot())[2:3] == ["focused"], "the released Uninstall button")
        box("Options", 7)
        l.key("Escape")  # Back: proves the earlier input was all handled
        l.wait_shown("LAUNCH")
        if not no_box("Options"):
            raise Failure("the second press asked again")
        expect(p.record("Uninstall.exe"), [], "the uninstaller after No")
        # Now Yes.
        l.click(300, 200 + 3 * 47 + 20)
        l.wait_shown("OPTIONS")
        l.click(300, 294 + 20)
        box("Options", 6)
        expect(l.ended(), 0, "exit code")
        wait_for(lambda: p.record("Uninstall.exe"), "the uninstaller's record")
        expect(p.record("Uninstall.exe"), ["args=|cwd=C:\\"], "the uninstaller")
    finally:
        l.close()


def press_and_expect_run(l, p, entry, program, args):
    """Presses the page's button at 'entry' and waits for the recorder 'program' of the data
    folder to write one more run, with these arguments and the data folder as its own."""
    record = os.path.join("Install", program)
    before = len(p.record(record))
    l.click(300, 200 + 47 * entry + 20)
    wait_for(lambda: len(p.record(record)) > before, f"{program}'s record")
    expect(p.record(record)[-1], f"args={args}|cwd={wine_path(p.data)}", program)


def documents_web_page_and_system_check():
    p = Product("helpers", state=True)
    l = Launcher(p)
    try:
        l.wait_shown("LAUNCH")
        l.click(300, 247 + 47 + 20)  # Help
        l.wait_shown("HELP")
        for k, program, args in [(1, "Doc.exe", "README"), (2, "Doc.exe", "TSGUIDE")]:
            press_and_expect_run(l, p, k, program, args)
        # The system check runs while the window stands aside; when it ends, the window is back.
        check = os.path.join(p.data, "Syscheck.exe")
        open(check + ".hold", "w").close()
        press_and_expect_run(l, p, 0, "Syscheck.exe", "")
        wait_for(lambda: os.path.exists(check + ".ready"), "the system check to run")
        expect(l.probe("visible"), "0", "the window while the system check runs")
        open(check + ".release", "w").close()
        wait_for(lambda: l.probe("visible") == "1", "the window after the system check")
        l.park()
        l.wait_buttons(focus(4, 0))
        l.key("Escape")
        l.wait_shown("LAUNCH")
        l.click(300, 200 + 3 * 47 + 20)  # Options
        l.wait_shown("OPTIONS")
        for k, program, args in [(0, "Url.exe", "HOMEPAGE"), (1, "Doc.exe", "LICENSE")]:
            press_and_expect_run(l, p, k, program, args)
    finally:
        l.close()


def demo_without_directx():
    """The demo checks DirectX through its setup library first: without the check's entry it
    says so (M1) and starts nothing."""
    p = Product("demo_m1", state=True, ini={("Startup", "AppType"): "Demo"}, setup_dll="Setup2.dll")
    shutil.copy(os.path.join(BIN, "NoExport.dll"), os.path.join(p.data, "VokSetup.dll"))
    l = Launcher(p)
    try:
        l.wait_shown("LAUNCH")
        l.park()
        l.wait_buttons(focus(4, 0))
        l.key("Return")
        text, style, owner = box("Tarn", 1)
        expect((text, style, owner), ("This demo needs DirectX 7.0 or later.\\n\\nPlease install "
                                      "DirectX and start the demo again.", "style=0x0", "owner=none"),
               "M1")
        l.wait_buttons(focus(4, 0))  # the page stays
        l.key("Escape")
        expect(l.ended(), 0, "exit code")
        expect(p.record("Tarn.exe"), [], "the game")
    finally:
        l.close()


def empty_disc():
    """The folder of the session's CD drive E:, emptied but for its volume label."""
    disc = os.path.join(SESSION, "drive-e")
    for entry in os.listdir(disc):
        if entry != ".windows-label":
            path = os.path.join(disc, entry)
            shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
    return disc


def install_then_launch():
    """Install runs the real installer (silently, into the product's folder); the installed
    launcher then opens on LAUNCH."""
    target = os.path.join(WORK, "installed")
    shutil.rmtree(target, ignore_errors=True)
    # The installer runs from the disc in drive E: (its label begins with the [Startup] Data).
    disc = empty_disc()
    staged = Product("install", state=None, ini={("Registry", "Company"): "Tarn Games",
                                                 ("Registry", "Product"): "Tarn",
                                                 ("Files", "CmdLine"): "/S /D=" + wine_path(target)})
    for entry in os.listdir(staged.folder):
        shutil.move(os.path.join(staged.folder, entry), disc)
    p = staged
    p.folder, p.data, p.wine_folder = disc, os.path.join(disc, "Install"), "E:\\"
    l = Launcher(p)
    try:
        l.wait_shown("INSTALL")
        l.key("Return")
        l.wait_trace("LfxMain: Page [INSTALL] closed.")
        expect(l.ended(), 0, "exit code")
        wait_for(lambda: os.path.exists(os.path.join(target, "Uninstall.exe")), "the installation",
                 timeout=60)
        wait_for(lambda: b"TarnSetup" not in subprocess.run(["ps", "ax"], capture_output=True).stdout,
                 "the installer's end", timeout=60)
    finally:
        l.close()
    installed = Product.__new__(Product)
    installed.folder, installed.wine_folder = target, wine_path(target)
    l = Launcher(installed)
    try:
        l.wait_shown("LAUNCH")
        l.park()
        l.wait_buttons(focus(5, 0))
        l.key("Escape")
        expect(l.ended(), 0, "exit code")
    finally:
        l.close()
        p.set_state(None)


def demo_walk():
    """Not a test: the walk tools/run-demo takes on a private display. The demo product from
    its disc in drive E:, unchanged but for a silent installation: INSTALL, HELP, back,
    OPTIONS, back, Install; then the installed launcher's LAUNCH. Each page's picture and
    each run's trace are saved in OUT_DIR/walk/."""
    walk = os.path.join(OUT, "walk")
    shutil.rmtree(walk, ignore_errors=True)
    os.makedirs(walk)
    disc = empty_disc()
    target = "C:\\Program Files\\Tarn"
    for entry in os.listdir(DEMO):
        src = os.path.join(DEMO, entry)
        (shutil.copytree if os.path.isdir(src) else shutil.copy)(src, os.path.join(disc, entry))
    ini = os.path.join(disc, "Install", "setup.ini")
    with open(ini, encoding="latin-1") as f:
        text = f.read().replace("CmdLine=", "CmdLine=/S /D=" + target, 1)
    with open(ini, "w", encoding="latin-1", newline="") as f:
        f.write(text)
    media = Product.__new__(Product)
    media.folder, media.wine_folder = disc, "E:\\"
    media.key = "HKLM\\Software\\Tarn Games\\Tarn\\1.0"
    media.set_state(None)
    l = Launcher(media)
    try:
        steps = [("01-install", "INSTALL", None), ("02-help", "HELP", (300, 267)),
                 ("03-back-to-install", "INSTALL", (300, 361)), ("04-options", "OPTIONS", (300, 314))]
        for picture, page, click in steps:
            if click:
                l.click(*click)
            l.wait_shown(page)
            l.park()
            wait_for(lambda: "focused" in l.buttons(Shot()), f"the {page} page")
            l.save_to(os.path.join(walk, picture + ".png"))
        l.key("Escape")
        l.wait_shown("INSTALL")
        l.click(300, 220)  # Install
        l.wait_trace("LfxMain: Page [INSTALL] closed.")
        l.ended(60)
        prefix_target = os.path.join(SESSION, "prefix", "drive_c", "Program Files", "Tarn")
        wait_for(lambda: os.path.exists(os.path.join(prefix_target, "Uninstall.exe")),
                 "the installation", timeout=60)
        wait_for(lambda: b"TarnSetup" not in subprocess.run(["ps", "ax"], capture_output=True).stdout,
                 "the installer's end", timeout=60)
    finally:
        l.close()
        shutil.copy(l.trace_file, os.path.join(walk, "trace-media.txt"))
    installed = Product.__new__(Product)
    installed.folder = prefix_target
    installed.wine_folder = target
    l = Launcher(installed)
    try:
        l.wait_shown("LAUNCH")
        l.park()
        wait_for(lambda: "focused" in l.buttons(Shot()), "the LAUNCH page")
        l.save_to(os.path.join(walk, "05-launch.png"))
        l.key("Escape")
        l.ended()
    finally:
        l.close()
        shutil.copy(l.trace_file, os.path.join(walk, "trace-installed.txt"))
        media.set_state(None)
    print(f"pictures and traces in {walk}")


# --- Skins of our own ----------------------------------------------------------------------

def bmp24(w, h, rgb):
    stride = (w * 3 + 3) & ~3
    row = bytes([rgb[2], rgb[1], rgb[0]]) * w + bytes(stride - w * 3)
    size = 54 + stride * h
    header = b"BM" + size.to_bytes(4, "little") + bytes(4) + (54).to_bytes(4, "little")
    info = b"".join(v.to_bytes(4, "little") for v in (40, w, h)) + (1).to_bytes(2, "little") + \
        (24).to_bytes(2, "little") + bytes(24)
    return header + info + row * h


def tga32(w, h, pixel):
    """pixel(x, y) -> (r, g, b, a), y from the top; stored top row first."""
    out = bytearray([0, 0, 2] + [0] * 9) + w.to_bytes(2, "little") + h.to_bytes(2, "little") + \
        bytes([32, 0x28])
    for y in range(h):
        for x in range(w):
            r, g, b, a = pixel(x, y)
            out += bytes([b, g, r, a])
    return bytes(out)


def rgn(rects):
    left = min(r[0] for r in rects)
    right = max(r[2] for r in rects)
    header = [32, 1, len(rects), 16 * len(rects), left, rects[0][1], right, rects[-1][3]]
    return b"".join(v.to_bytes(4, "little", signed=True) for v in header) + \
        b"".join(v.to_bytes(4, "little", signed=True) for r in rects for v in r)


def write(folder, name, data):
    with open(os.path.join(folder, name), "wb") as f:
        f.write(data)


BG = (40, 80, 120)
CAPTION = {"active.tga": (200, 180, 120), "inactive.tga": (90, 90, 90)}
TITLE = {"minimize.tga": (0, 0, 255), "ovrmin.tga": (0, 255, 0), "selmin.tga": (255, 0, 0),
         "close.tga": (0, 0, 128), "ovrclose.tga": (0, 128, 0), "selclose.tga": (128, 0, 0)}
FACE = {"unselect.tga": (255, 255, 0, 128), "focused.tga": (0, 255, 255, 200),
        "pressed.tga": (255, 128, 0, 100)}


def blend(face, under):
    """The page buttons' alpha blend: (s * a + d * (255 - a)) >> 8 per channel."""
    a = face[3]
    return tuple((s * a + d * (255 - a)) >> 8 for s, d in zip(face[:3], under))


def plain_colour_skin():
    p = Product("plainskin", state=None)
    write(p.data, "product.bmp", bmp24(500, 300, BG))
    write(p.data, "product.rgn", rgn([(0, 0, 500, 280), (20, 280, 480, 300)]))
    for name, c in CAPTION.items():
        write(p.data, name, tga32(500, 30, lambda x, y, c=c: c + (255,)))
    for name, c in TITLE.items():
        plate = lambda x, y, c=c: c + (255,) if 8 <= x <= 22 and 3 <= y <= 19 else (255, 0, 255, 255)
        write(p.data, name, tga32(25, 23, plate))
    for name, c in FACE.items():
        write(p.data, name, tga32(200, 40, lambda x, y, c=c: c))
    l = Launcher(p, size=(500, 300), park=(100, 100))
    try:
        l.wait_shown("INSTALL")
        expect(l.probe("rect"), "390 362 890 662", "the window's place")
        expect(l.probe("region"), "2 0 0 500 300", "the window's region")
        l.park()
        focused, normal = blend(FACE["focused.tga"], BG), blend(FACE["unselect.tga"], BG)
        expected = {(100, 100): BG, (25, 290): BG, (5, 290): (0, 0, 0),  # cut off: the screen
                    (300, 15): CAPTION["active.tga"], (437, 1): CAPTION["active.tga"],  # keyed
                    (450, 12): TITLE["minimize.tga"], (480, 12): TITLE["close.tga"],
                    (197, 203): focused, (197, 250): normal, (197, 297): normal}

        def shows():
            shot = Shot()
            return {at: l.pixel(shot, *at) for at in expected}
        last = {}
        try:
            wait_for(lambda: last.update(shows()) or last == expected, "the plain skin's pixels")
        except Failure:
            raise Failure(f"pixels {last}, expected {expected}")
        # The pointer over the minimise button swaps its image; pressing swaps it again.
        l.move(450, 12)
        wait_for(lambda: l.pixel(Shot(), 452, 5) == TITLE["ovrmin.tga"], "ovrmin.tga")
        xdo("mousedown", "1")
        wait_for(lambda: l.pixel(Shot(), 452, 5) == TITLE["selmin.tga"], "selmin.tga")
        l.move(300, 100)  # released off the button: no minimising
        xdo("mouseup", "1")
        wait_for(lambda: l.pixel(Shot(), 452, 5) == TITLE["minimize.tga"], "minimize.tga")
        # Pressing the second button shows its pressed face.
        l.move(300, 267)
        xdo("mousedown", "1")
        wait_for(lambda: l.pixel(Shot(), 197, 250) == blend(FACE["pressed.tga"], BG),
                 "the pressed face")
        l.move(100, 100)
        xdo("mouseup", "1")
        l.key("Escape")
        expect(l.ended(), 0, "exit code")
    finally:
        l.close()


def broken_skins():
    """Each kind of skin file missing or broken: the window opens, its buttons work."""
    def truncate(name, n):
        return lambda p: open(os.path.join(p.data, name), "r+b").truncate(n)

    def replace(name, data):
        return lambda p: write(p.data, name, data)

    def remove(name):
        return lambda p: os.remove(os.path.join(p.data, name))

    demo_region = "78 0 0 500 466"
    cases = [
        ("bmp_missing", remove("product.bmp"), (500, 460), demo_region),
        ("bmp_truncated", truncate("product.bmp", 1000), (500, 460), demo_region),
        ("rgn_missing", remove("product.rgn"), (500, 470), "none"),
        ("rgn_short", truncate("product.rgn", 40), (500, 470), "none"),
        ("rgn_count_past_the_file", replace("product.rgn", rgn([(0, 0, 9, 9)])[:8] +
                                            (0x10000000).to_bytes(4, "little") + bytes(36)),
         (500, 470), "none"),
        ("rgn_header_refused", replace("product.rgn", (16).to_bytes(4, "little") +
                                       rgn([(0, 0, 500, 470)])[4:]), (500, 470), "none"),
        ("caption_empty", replace("active.tga", b""), (500, 470), demo_region),
        ("close_missing", remove("close.tga"), (500, 470), demo_region),
        ("unselect_truncated", truncate("unselect.tga", 300), (500, 470), demo_region),
        ("faces_garbage", lambda p: [write(p.data, n, bytes(range(256)) * 8)
                                     for n in ("unselect.tga", "focused.tga", "pressed.tga")],
         (500, 470), demo_region),
    ]
    for name, damage, size, region in cases:
        p = Product("skin_" + name, state=None)
        damage(p)
        l = Launcher(p, size=size, park=(90, 150))
        try:
            l.wait_shown("INSTALL")
            rect = f"{l.left} {l.top} {l.left + size[0]} {l.top + size[1]}"
            seen = []
            try:
                wait_for(lambda: seen.append((l.probe("rect"), l.probe("region"))) or
                         seen[-1] == (rect, region), "the window's place and region")
            except Failure:
                raise Failure(f"{seen[-1]}, expected {(rect, region)}")
            l.click(300, 247 + 20)  # Help
            l.wait_shown("HELP")
            l.key("Escape")  # Back
            l.wait_shown("INSTALL")
            l.click(480, 12)  # the close button, drawn or not
            expect(l.ended(), 0, f"{name}: exit code")
        except Failure as e:
            raise Failure(f"{name}: {e}")
        finally:
            l.close()


TESTS = [first_page_by_state, help_and_back_restore_the_focus, options_page, close_button,
         minimise_and_restore, caption_drag, version_box, play_with_the_checks, second_program,
         uninstall, documents_web_page_and_system_check, demo_without_directx,
         install_then_launch, plain_colour_skin, broken_skins]


def main():
    os.makedirs(WORK, exist_ok=True)
    shutil.rmtree(SHOTS, ignore_errors=True)
    passed = failed = 0
    for test in TESTS + [demo_walk]:
        if (ONLY and test.__name__ not in ONLY) or (not ONLY and test is demo_walk):
            continue
        start = time.monotonic()
        try:
            test()
            print(f"[ PASSED ] {test.__name__} ({time.monotonic() - start:.1f} s)", flush=True)
            passed += 1
        except Failure as e:
            print(f"[ FAILED ] {test.__name__}: {e}", flush=True)
            failed += 1
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
