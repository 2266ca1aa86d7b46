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

SESSION, BIN, DEMO, OUT = (os.path.abspath(a) for a in sys.argv[1:5])
ONLY = sys.argv[5:]
WORK = os.path.join(OUT, "launcher-window")
SHOTS = os.path.join(OUT, "launcher-shots")
TIMEOUT = 15.0
SCREEN_W, SCREEN_H = 1280, 1024
SKIN_W, SKIN_H = 500, 470  # the demo skin's background
HELPER = os.path.join(BIN, "test_helper.exe")


def session_env():
    env = dict(os.environ)
    env.update(WINEPREFIX=os.path.join(SESSION, "prefix"), WINEDEBUG="-all", WINEARCH="win64",
               WINEDLLOVERRIDES="mscoree=d;mshtml=d;winemenubuilder.exe=d")
    with open(os.path.join(SESSION, "display")) as f:
        env["DISPLAY"] = f.read().strip()
    return env


ENV = session_env()


class Failure(Exception):
    pass


def wine_path(path):
    return "Z:" + path.replace("/", "\\")


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


# The page buttons' faces of the demo skin, read inside the border, right of the label.
FACES = {"normal": (232, 220, 187), "focused": (27, 41, 66), "pressed": (21, 73, 134)}


def button_look(colour):
    for name, face in FACES.items():
        if near(colour, face, 30):
            return name
    return None


# --- The launcher --------------------------------------------------------------------------

class Product:
    """A copy of the demo product with a setup.ini of the test's own (its own registry key
    and mutexes) and recorders in place of the programs the launcher starts."""

    def __init__(self, name, ini=None, state=None, remove=()):
        self.name = name
        self.folder = os.path.join(WORK, name)
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
        self.write_ini(values)
        for f in remove:
            os.remove(os.path.join(self.data, f))
        self.key = "HKLM\\Software\\Launcher Window Tests\\" + name + "\\1.0"
        self.set_state(state)

    def write_ini(self, values):
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
        try:
            with open(os.path.join(self.folder, program) + ".log", encoding="latin-1") as f:
                return f.read().splitlines()
        except FileNotFoundError:
            return []


class Launcher:
    PARK = (90, 400)  # a resting place for the pointer: the background, no button

    def __init__(self, product, args=()):
        self.product = product
        self.trace_file = os.path.join(product.folder, "trace.txt")
        if os.path.exists(self.trace_file):
            os.remove(self.trace_file)
        self.process = subprocess.Popen(
            ["wine", os.path.join(BIN, "TraceRun.exe"), "/out:" + wine_path(self.trace_file),
             wine_path(os.path.join(product.folder, "Launcher.exe")), *args],
            env=ENV, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        self.seen = 0
        self.left = (SCREEN_W - SKIN_W) >> 1
        self.top = (SCREEN_H - SKIN_H) >> 1

    def lines(self):
        try:
            with open(self.trace_file, encoding="latin-1") as f:
                return f.read().split("\n")[:-1]
        except FileNotFoundError:
            return []

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
            subprocess.run(["wine", os.path.join(BIN, "WinProbe.exe"), "Tarn", "rect"], env=ENV,
                           capture_output=True)

    # Input, in window coordinates.
    def move(self, x, y):
        xdo("mousemove", str(self.left + x), str(self.top + y))

    def park(self):
        self.move(*self.PARK)

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
        Shot().save_crop(os.path.join(SHOTS, name + ".png"), self.left, self.top, SKIN_W, SKIN_H)

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
                l.save("install")
            if name == "state1":
                l.save("launch")
            xdo("key", "Escape")
            l.wait_trace(f"LfxMain: Page [{page}] closed.")
            expect(l.ended(), 0, "exit code")
        finally:
            l.close()
    # State 3: no page is named UNINSTALL; the background alone, closed with Alt+F4.
    l = Launcher(Product("state3", state=True), ["-UNINSTALL"])
    try:
        l.wait_trace("LfxMain: m_dwState is [3]")
        l.park()
        background = (6, 8, 12)
        wait_for(lambda: l.buttons(Shot()) == [] and
                 not near(l.pixel(Shot(), 250, 14), (235, 224, 190), 40), "the bare background")
        l.key("alt+F4")
        expect(l.ended(), 0, "exit code")
        if any(line.startswith("LfxMain: Page [") for line in l.lines()):
            raise Failure("a page was shown")
        del background
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
        l.save("help")
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
        l.save("options")
        l.key("Escape")  # the last command, Back
        l.wait_trace("LfxMain: Page [OPTIONS] closed.")
        l.wait_shown("INSTALL")
        l.wait_buttons(focus(4, 2))
    finally:
        l.close()


def close_button():
    l = Launcher(Product("closebutton", state=None))
    try:
        l.wait_shown("INSTALL")
        l.move(480, 12)  # over the close button
        plate = lambda: l.pixel(Shot(), 476, 12)
        wait_for(lambda: near(plate(), (63, 116, 176), 40), "the close button's hover image")
        xdo("mousedown", "1")
        wait_for(lambda: near(plate(), (201, 155, 62), 40), "the close button's pressed image")
        xdo("mouseup", "1")
        expect(l.ended(), 0, "exit code")
    finally:
        l.close()


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
        if no_box("Tarn") is False:
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
    p = Product("play_nodisplay", state=True, ini={("Files", "SetupDll"): "Setup2.dll"})
    os.rename(os.path.join(p.data, "VokSetup.dll"), os.path.join(p.data, "Setup2.dll"))
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
        Shot().save_crop(os.path.join(OUT, "m4.png"), 0, 0, SCREEN_W, SCREEN_H)
        expect((text, style, owner),
               ("Do you really want to remove Tarn and all of its saved games from this computer?",
                "style=0x124", "owner=none"), "M4")
        # A second press while the question is open.
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


def documents_web_page_and_system_check():
    p = Product("helpers", state=True)
    l = Launcher(p)
    data = wine_path(p.data)
    try:
        l.wait_shown("LAUNCH")
        l.click(300, 247 + 47 + 20)  # Help
        l.wait_shown("HELP")
        for k, program, args in [(1, "Doc.exe", "README"), (2, "Doc.exe", "TSGUIDE"),
                                 (0, "Syscheck.exe", "")]:
            before = len(p.record(os.path.join("Install", program)))
            l.click(300, 200 + 47 * k + 20)
            wait_for(lambda: len(p.record(os.path.join("Install", program))) > before,
                     f"{program}'s record")
            expect(p.record(os.path.join("Install", program))[-1], f"args={args}|cwd={data}",
                   program)
        # The system check ran while the window stood aside; it is back.
        wait_for(lambda: l.probe("rect") != "", "the window")
        l.park()
        l.wait_buttons(focus(4, 0))
        l.key("Escape")
        l.wait_shown("LAUNCH")
        l.click(300, 200 + 3 * 47 + 20)  # Options
        l.wait_shown("OPTIONS")
        for k, program, args in [(0, "Url.exe", "HOMEPAGE"), (1, "Doc.exe", "LICENSE")]:
            before = len(p.record(os.path.join("Install", program)))
            l.click(300, 200 + 47 * k + 20)
            wait_for(lambda: len(p.record(os.path.join("Install", program))) > before,
                     f"{program}'s record")
            expect(p.record(os.path.join("Install", program))[-1], f"args={args}|cwd={data}",
                   program)
    finally:
        l.close()


TESTS = [first_page_by_state, help_and_back_restore_the_focus, options_page, close_button,
         minimise_and_restore, caption_drag, version_box, play_with_the_checks, second_program,
         uninstall, documents_web_page_and_system_check]


def main():
    os.makedirs(WORK, exist_ok=True)
    passed = failed = 0
    for test in TESTS:
        if ONLY and test.__name__ not in ONLY:
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
