#!/usr/bin/env python3
"""The launcher as a player meets it, one row per scenario. The window's rows: the real
Launcher.exe under Wine in a copy of the demo product, real pointer and keyboard input from
outside (xdotool on the session's display), message boxes found, read and answered from
outside (RunProbe.exe box), the window read from outside (WinProbe.exe), the trace read as it
is written (TraceRun.exe), the sounds read from a capturing sound device, and the screen read
from screenshots. The start rows: the launcher (or another framework program) started once
in a product folder of the row's own, registered as the row says, as a debuggee whose trace,
libraries and boxes are read and whose boxes are answered in order (RunProbe.exe run).

    launcher_walk.py SESSION_DIR BIN_DIR DEMO_PRODUCT OUT_DIR [ROW... | GROUP:...]

A row's group is the word before the colon in its name. Every step waits for what it checks.
The programs the launcher starts are recorders (test_helper.exe) that write their command line
and folder. The demo's pages are saved in OUT_DIR/launcher-shots/ and compared with their
golden pictures (tests/golden), and each launcher's trace is kept beside its copy of the
product in OUT_DIR/launcher-window/.
"""
import array
import ctypes
import math
import os
import random
import re
import shutil
import struct
import subprocess
import sys
import time
import wave

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "tools"))
import make_icon  # noqa: E402

SESSION, BIN, DEMO, OUT = (os.path.abspath(a) for a in sys.argv[1:5])
WORK = os.path.join(OUT, "launcher-window")
SHOTS = os.path.join(OUT, "launcher-shots")
TIMEOUT = 15.0
SCREEN_W, SCREEN_H = 1280, 1024
HELPER = os.path.join(BIN, "test_helper.exe")
# The Wine session's (see tools/wine/session): its prefix, its display and the settings every
# program of it runs with.
ENV = dict(os.environ, WINEPREFIX=os.path.join(SESSION, "prefix"), WINEDEBUG="-all",
           WINEARCH="win64", WINEDLLOVERRIDES="mscoree=d;mshtml=d;winemenubuilder.exe=d",
           DISPLAY=open(os.path.join(SESSION, "display")).read().strip())


def wine_path(path):
    """The name a program under Wine gives a file of this machine (drive Z: is its root)."""
    return "Z:" + path.replace("/", "\\")


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


def wait_equal(get, want, what, timeout=TIMEOUT):
    """Waits until get() gives want; fails with the last value seen."""
    seen = []
    try:
        wait_for(lambda: seen.append(get()) or seen[-1] == want, what, timeout)
    except Failure:
        raise Failure(f"{what}: {seen[-1]!r}, expected {want!r}")


def expect(actual, expected, what):
    if actual != expected:
        raise Failure(f"{what}: {actual!r}, expected {expected!r}")


def start_wine(*args, err=None):
    """A program under Wine, detached from our output: a program that outlives its row (a
    service, a desktop it starts) would keep our caller waiting for the output's end. What
    Wine says goes to the file err, when given."""
    with open(err or os.devnull, "w") as errors:
        return subprocess.Popen(["wine", *args], env=ENV, stdin=subprocess.DEVNULL,
                                stdout=subprocess.DEVNULL, stderr=errors)


def run_wine(program, *args):
    return subprocess.run(["wine", program, *args], env=ENV, capture_output=True, text=True,
                          stdin=subprocess.DEVNULL).stdout.strip()


def read_file(path, mode="r"):
    """The file's text (Latin-1) or bytes; empty while it does not exist."""
    try:
        with open(path, mode, encoding=None if "b" in mode else "latin-1") as f:
            return f.read()
    except FileNotFoundError:
        return b"" if "b" in mode else ""


def write(path, data):
    with open(path, "wb") as f:
        f.write(data)


def xdo(*args):
    subprocess.run(["xdotool", *args], env=ENV, check=True)


def x_windows(title):
    """The top-level windows that the display shows with a title that matches (a pattern)."""
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", title], env=ENV,
                          capture_output=True, text=True).stdout.split()


class _CursorImage(ctypes.Structure):
    _fields_ = [("x", ctypes.c_short), ("y", ctypes.c_short), ("width", ctypes.c_ushort),
                ("height", ctypes.c_ushort), ("xhot", ctypes.c_ushort), ("yhot", ctypes.c_ushort),
                ("serial", ctypes.c_ulong), ("pixels", ctypes.c_void_p), ("atom", ctypes.c_ulong),
                ("name", ctypes.c_char_p)]


def cursor_name():
    """The name of the pointer's image as the display shows it (XFixes): Wine shows the
    system's standard cursors as the display's own, the arrow as "left_ptr"."""
    x11, xfixes = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXfixes.so.3")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XCloseDisplay.argtypes = x11.XFree.argtypes = [ctypes.c_void_p]
    xfixes.XFixesGetCursorImage.restype = ctypes.POINTER(_CursorImage)
    xfixes.XFixesGetCursorImage.argtypes = [ctypes.c_void_p]
    display = x11.XOpenDisplay(ENV["DISPLAY"].encode())
    image = xfixes.XFixesGetCursorImage(display)
    name = image.contents.name.decode() if image else "?"
    x11.XFree(image)
    x11.XCloseDisplay(display)
    return name


class Shot:
    """A screenshot of the whole display, read as RGB. Each window is read with its own
    colour map: on a display of 8 bits per pixel the launcher's is not the screen's."""

    def __init__(self):
        self.ppm = subprocess.run(["import", "-depth", "8", "-window", "root", "-descend",
                                   "ppm:-"], env=ENV, check=True, capture_output=True).stdout
        parts = self.ppm.split(b"\n", 3)  # P6, W H, 255, the pixels
        self.w, self.h = (int(v) for v in parts[1].split())
        self.pixels = parts[3]

    def at(self, x, y):
        i = (y * self.w + x) * 3
        return tuple(self.pixels[i:i + 3])

    def save_crop(self, path, left, top, w, h):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        subprocess.run(["convert", "ppm:-", "-crop", f"{w}x{h}+{left}+{top}", "+repage", path],
                       input=self.ppm, check=True)


def pixels_off(picture, other, fuzz):
    """How many pixels of two pictures differ by more than fuzz in a channel (pictures of
    different sizes: at least as many as their areas differ by)."""
    return int(float(subprocess.run(["compare", "-metric", "AE", "-fuzz", fuzz, picture, other,
                                     "null:"], capture_output=True, text=True).stderr.split()[0]))


def near(a, b, tolerance):
    return all(abs(x - y) <= tolerance for x, y in zip(a, b))


# The demo skin's page faces, read inside the border right of the label (the dark background
# lies within 30 of the focused face: the match is close), and its caption's middle.
FACES = {"normal": (232, 220, 187), "focused": (27, 41, 66), "pressed": (21, 73, 134)}
CAPTION_ACTIVE, CAPTION_INACTIVE = (238, 230, 203), (186, 190, 195)


def focus(n, k):
    """The looks of n buttons with the k-th (from 0) focused."""
    return ["focused" if i == k else "normal" for i in range(n)]


# --- Sounds: a distinct tone per sound, and a sound device that writes what it plays -------
# The device writes about four times faster than the sound plays: the opening sound that must
# still play when it is cut, and the start, which ending the launcher would cut, are long.

TONES = {"OPEN": (330, 0.2), "CLICK": (440, 0.2), "BACK": (550, 0.3), "START": (660, 15),
         "HOVER": (770, 0.2)}


def tone(path, hz, seconds):
    """Writes a tone (22050 Hz, 16-bit mono) as a wave file; returns its samples."""
    samples = array.array("h", (int(8000 * math.sin(i * 2 * math.pi * hz / 22050))
                                for i in range(int(22050 * seconds)))).tobytes()
    with wave.open(path, "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(22050)
        w.writeframes(samples)
    return samples


def common(a, b):
    """The length of the common start of two byte strings, in whole samples."""
    n, step = 0, 4096
    while step:
        while a[n:n + step] == b[n:n + step] and n + step <= min(len(a), len(b)):
            n += step
        step //= 2
    return n & ~1


def heard(capture, samples, leave_out_hover):
    """The sounds in the capture, in order: each sound's name, with "~" when only its start
    was played. The device pads a stopped sound's last period with silence; every tone starts
    with a silent sample, so matching starts at the first sound sample."""
    out, i = [], 0
    while i + 2 <= len(capture):
        if capture[i:i + 2] == b"\0\0":
            i += 2
            continue
        best, length = None, 0
        for name, s in samples.items():
            n = common(capture[i:], s[2:])
            if n > length:
                best, length = name, n
        if length < 64:
            out.append("?")
            break
        if not (leave_out_hover and best == "HOVER"):
            out.append(best + ("" if length == len(samples[best]) - 2 else "~"))
        i += length
    return out


# --- Skins of our own ----------------------------------------------------------------------

def bmp24(w, h, rgb):
    stride = (w * 3 + 3) & ~3
    row = bytes(reversed(rgb)) * w + bytes(stride - w * 3)
    return struct.pack("<2sI4xIIiiHH24x", b"BM", 54 + stride * h, 54, 40, w, h, 1, 24) + row * h


def tga32(w, h, pixel):
    """pixel(x, y) -> (r, g, b, a), y from the top; stored top row first."""
    out = bytearray(struct.pack("<3B9xHHBB", 0, 0, 2, w, h, 32, 0x28))
    for y in range(h):
        for x in range(w):
            r, g, b, a = pixel(x, y)
            out += bytes([b, g, r, a])
    return bytes(out)


def rgn(rects):
    return struct.pack("<8i", 32, 1, len(rects), 16 * len(rects), min(r[0] for r in rects),
                       rects[0][1], max(r[2] for r in rects), rects[-1][3]) + \
        b"".join(struct.pack("<4i", *r) for r in rects)


BG = (40, 80, 120)
CAPTION = {"active.tga": (200, 180, 120), "inactive.tga": (90, 90, 90)}
TITLE = {"minimize.tga": (0, 0, 255), "ovrmin.tga": (0, 255, 0), "selmin.tga": (255, 0, 0),
         "close.tga": (0, 0, 128), "ovrclose.tga": (0, 128, 0), "selclose.tga": (128, 0, 0)}
FACE = {"unselect.tga": (255, 255, 0, 128), "focused.tga": (0, 255, 255, 200),
        "pressed.tga": (255, 128, 0, 100)}


def blend(face, under):
    """The page buttons' alpha blend: (s * a + d * (255 - a)) >> 8 per channel."""
    return tuple((s * face[3] + d * (255 - face[3])) >> 8 for s, d in zip(face[:3], under))


def plain_skin(data):
    """A 500 x 300 skin of plain colours whose every image tells itself apart."""
    write(os.path.join(data, "product.bmp"), bmp24(500, 300, BG))
    write(os.path.join(data, "product.rgn"), rgn([(0, 0, 500, 280), (20, 280, 480, 300)]))
    for name, c in CAPTION.items():
        write(os.path.join(data, name), tga32(500, 30, lambda x, y, c=c: c + (255,)))
    for name, c in TITLE.items():
        plate = lambda x, y, c=c: c + (255,) if 8 <= x <= 22 and 3 <= y <= 19 else (255, 0, 255, 255)
        write(os.path.join(data, name), tga32(25, 23, plate))
    for name, c in FACE.items():
        write(os.path.join(data, name), tga32(200, 40, lambda x, y, c=c: c))


def remove(name):
    return lambda data: os.remove(os.path.join(data, name))


def truncate(name, n):
    return lambda data: open(os.path.join(data, name), "r+b").truncate(n)


def replace(name, content):
    return lambda data: write(os.path.join(data, name), content)


def each(*changes):
    return lambda data: [c(data) for c in changes]


# --- The product and the launcher ----------------------------------------------------------

class Product:
    """A copy of the demo product with a setup.ini of its own (registry key and mutexes) and
    recorders in place of the programs the launcher starts."""

    def __init__(self, name, installed=False, ini=None, setup_dll=None, no_setup=False,
                 recording=False, skin=None, sounds=None, disc=False, target=None):
        self.name = name
        self.folder = os.path.join(WORK, name)
        shutil.copytree(DEMO, fresh(self.folder), dirs_exist_ok=True)
        self.data = os.path.join(self.folder, "Install")
        os.makedirs(os.path.join(self.folder, "GameData"), exist_ok=True)
        for program in ("Install/Doc.exe", "Install/Url.exe", "Install/Syscheck.exe", "Tarn.exe",
                        "GameData/trnmp.exe", "Uninstall.exe"):
            shutil.copy(HELPER, os.path.join(self.folder, program))
        values = {("Registry", "Company"): "Launcher Window Tests", ("Registry", "Product"): name,
                  ("Mutex", "Launcher"): "WindowTestLauncher-" + name,
                  ("Mutex", "Product"): "WindowTestGame-" + name}
        values.update(ini or {})
        if target:  # the real installer, silently, into that folder
            values.update({("Registry", "Company"): "Tarn Games", ("Registry", "Product"): "Tarn",
                           ("Files", "CmdLine"): "/S /D=" + wine_path(target)})
        if setup_dll:  # another name for the setup library: no VokSetup.dll is left
            values[("Files", "SetupDll")] = setup_dll
            os.rename(os.path.join(self.data, "VokSetup.dll"), os.path.join(self.data, setup_dll))
        if no_setup:  # a VokSetup.dll without the DirectX check's entry
            shutil.copy(os.path.join(BIN, "NoExport.dll"), os.path.join(self.data, "VokSetup.dll"))
        if recording:  # a VokSetup.dll that records the calls of its DirectX entries
            shutil.copy(os.path.join(BIN, "..", "recording-setup", "VokSetup.dll"), self.data)
        path = os.path.join(self.data, "setup.ini")
        write(path, edit_ini(read_file(path), values).encode("latin-1"))
        if skin:
            skin(self.data)
        self.samples = {}
        if sounds is not None:
            for name_, (hz, seconds) in dict(TONES, **sounds).items():
                self.samples[name_] = tone(os.path.join(self.data, name_ + ".wav"), hz, seconds)
        self.key = "HKLM\\Software\\" + values[("Registry", "Company")] + "\\" + \
            values[("Registry", "Product")] + "\\1.0"
        self.wine_folder = wine_path(self.folder)
        if disc:  # the product on the disc in drive E: (its label begins as [Startup] Data says)
            drive = empty_disc()
            for entry in os.listdir(self.folder):
                shutil.move(os.path.join(self.folder, entry), drive)
            self.folder, self.data, self.wine_folder = drive, os.path.join(drive, "Install"), "E:\\"
        self.set_state(installed)

    def set_state(self, installed):
        """No registry key, or the product installed in its own folder."""
        values = {}
        if installed:
            folder = wine_path(self.folder)
            values = {"Installed": 2, "Install Path": folder, "Source Dir": folder}
            if installed != "without an uninstaller":
                values["UninstallString"] = folder + "\\Uninstall.exe"
        regedit(reg_values(self.key.replace("HKLM", "HKEY_LOCAL_MACHINE"), values))

    def record(self, program):
        """The lines a recorder wrote: 'args=...|cwd=...'."""
        return read_file(os.path.join(self.folder, program) + ".log").splitlines()


def empty_disc(letter="E"):
    """The folder of one of the session's CD drives, emptied but for its volume label."""
    disc = os.path.join(SESSION, "drive-" + letter.lower())
    for entry in os.listdir(disc):
        if entry != ".windows-label":
            path = os.path.join(disc, entry)
            shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
    return disc


def installed_product(folder):
    """The product the demo's installer put into that folder and registered."""
    p = Product.__new__(Product)
    p.name, p.folder, p.data = "installed", folder, os.path.join(folder, "Install")
    p.wine_folder, p.samples = wine_path(folder), {}
    p.key = "HKLM\\Software\\Tarn Games\\Tarn\\1.0"
    return p


class Launcher:
    def __init__(self, product, args=(), size=(500, 470), park=(90, 400), home=None, dpi=96):
        self.scale = dpi / 96  # window points are given in design coordinates
        self.width, self.height = size
        self.left, self.top = (SCREEN_W - self.width) >> 1, (SCREEN_H - self.height) >> 1
        self.rest = park  # where the pointer rests: the background, no button
        self.park()  # a button under the pointer when the window appears takes the focus
        self.trace_file = os.path.join(product.folder, "trace.txt")
        if os.path.exists(self.trace_file):
            os.remove(self.trace_file)
        self.capture = os.path.join(home, "capture.raw") if home else None
        # What TraceRun and Wine say goes beside the trace, for a launcher that does not start.
        with open(self.trace_file + ".err", "w") as err:
            self.process = subprocess.Popen(
                ["wine", os.path.join(BIN, "TraceRun.exe"), "/out:" + wine_path(self.trace_file),
                 product.wine_folder.rstrip("\\") + "\\Launcher.exe", *args],
                env=dict(ENV, HOME=home) if home else ENV, stdin=subprocess.DEVNULL,
                stdout=err, stderr=subprocess.STDOUT)
        self.seen = 0
        self.last_click = None
        self.on_screen = False

    def lines(self):
        return read_file(self.trace_file).split("\n")[:-1]

    def wait_trace(self, line):
        """Waits for a trace line after the ones consumed (or one that ends with it: the
        start-up's last step has no line break); consumes up to it."""
        def found():
            lines = self.lines()
            for i in range(self.seen, len(lines)):
                if lines[i] == line or lines[i].endswith("..." + line):
                    self.seen = i + 1
                    return True
            if self.process.poll() is not None:
                raise Failure(f"the launcher ended before {line!r}; last lines: {lines[-5:]}; "
                              f"TraceRun said {read_file(self.trace_file + '.err')[-400:]!r}")
            return False
        try:
            wait_for(found, repr(line))
        except Failure as e:
            raise Failure(f"{e}; the lines after the last one awaited: {self.lines()[self.seen:][-8:]}")

    def ended(self, timeout=TIMEOUT):
        try:
            return self.process.wait(timeout)
        except subprocess.TimeoutExpired:
            raise Failure("the launcher did not end")

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()

    def move(self, x, y):
        xdo("mousemove", str(self.left + round(x * self.scale)), str(self.top + round(y * self.scale)))

    def park(self):
        self.move(*self.rest)

    def pixel(self, shot, x, y):
        return shot.at(self.left + round(x * self.scale), self.top + round(y * self.scale))

    def buttons(self, shot):
        """The looks of the page buttons, top to bottom, until the first slot without one."""
        colours = [self.pixel(shot, 455, 220 + 47 * k) for k in range(9)]
        looks = [next((n for n, f in FACES.items() if near(c, f, 12)), None) for c in colours]
        return looks[:(looks + [None]).index(None)]

    def probe(self, command):
        return run_wine(os.path.join(BIN, "WinProbe.exe"), "Tarn", *command.split(" ", 1))

    def played(self):
        """What the sound device wrote: a file per sound, capture.raw, then .0001 and on."""
        folder, name = os.path.split(self.capture)
        files = sorted(f for f in os.listdir(folder) if f.startswith(name))
        return b"".join(read_file(os.path.join(folder, f), "rb") for f in files)


def readers(window, *buttons):
    """What WinProbe's "readers" prints for a page: the client, the page's buttons (a "*"
    after a name: focused, "+": pressed), the title buttons."""
    lines = [f"0|{window}|client|focusable|"]
    for name in buttons + ("Minimize", "Close"):
        states = ["focusable"] * (name not in ("Minimize", "Close")) + ["focused"] * ("*" in name) + ["pressed"] * ("+" in name)
        lines.append(f"{len(lines)}|{name.rstrip('*+')}|button|{' '.join(states)}|Press")
    return "\n".join(lines)


def box(title, answer):
    """Finds a message box by its title and answers it; (text, style, owner class)."""
    out = run_wine(os.path.join(BIN, "RunProbe.exe"), "box", title, str(answer), "15000")
    if not out:
        raise Failure(f"no box titled {title!r}")
    _, _, text, style, owner, _ = out.split("\t")
    return unescape(text), style, owner.split(":")[0]


def no_box(title):
    return run_wine(os.path.join(BIN, "RunProbe.exe"), "box", title, "0", "0") == ""


def unescape(text):
    """A text with its line breaks, tabs, backslashes and other bytes written as escapes."""
    return text.encode("latin-1").decode("unicode_escape")


# --- Steps: each a tuple, the verb first ---------------------------------------------------

def button(k):
    """Where the pointer presses the k-th (from 0) page button."""
    return (300, 220 + 47 * k)


# The pages of a product that is not installed, for the input storm: what each button does
# when clicked ("page NAME", "back", a program and its argument, or "ends the walk": the
# storm never clicks those).
STORM_PAGES = {"INSTALL": ["ends", "page HELP", "page OPTIONS", "ends"],
               "HELP": ["ends", "Install/Doc.exe README", "Install/Doc.exe TSGUIDE", "back"],
               "OPTIONS": ["Install/Url.exe HOMEPAGE", "Install/Doc.exe LICENSE", "back"]}


def storm(seed, count, left, top, region):
    """Seeded random input over the window of a product that is not installed (its region's
    rectangles given), and what the launcher must make of it. Returns (the events as
    xdotool words, the pages shown in order, the programs started with their argument).
    Pointer moves anywhere, clicks, double-clicks, presses that wander and come back or not
    (but on the caption, where they would drag the window), and keys (Tab, Shift+Tab, the
    arrows; Escape on the pages it goes back from). Nothing ends the launcher, leaves it or
    moves it: no Exit, Install, System Check or title button is clicked, nothing is pressed
    off the window's region, and keys go to the window under the pointer. No point
    is within 3 pixels of an edge, and a press is never within 8 pixels of the one before
    (that would make it a double-click's second) unless it is one."""
    rng = random.Random(seed)
    events, shown, started, stack = [], [], [], ["INSTALL"]
    state = {"press": (-100, -100), "pointer": None}

    def in_region(x, y, m):  # inside the region shrunk by m pixels (grown when m < 0)
        return any(l + m <= x < r - m and t + m <= y < b - m for l, t, r, b in region)

    def target(x, y):  # window point -> what a press there reaches; None: too near an edge
        buttons = [(k, (194, 200 + 47 * k, 464, 240 + 47 * k)) for k in range(len(STORM_PAGES[stack[-1]]))]
        for what, (l, t, r, b) in [("title", (436, 0, 461, 23)), ("title", (465, 0, 490, 23)),
                                   ("caption", (0, 0, 500, 30))] + buttons:
            if l + 3 <= x <= r - 3 and t + 3 <= y <= b - 3:
                return what if in_region(x, y, 3) else None
            if l - 3 <= x <= r + 3 and t - 3 <= y <= b + 3:
                return None
        return "background" if in_region(x, y, 3) else "outside" if not in_region(x, y, -3) else None

    def point(press):
        while True:
            x, y = rng.randint(-40, 540), rng.randint(-40, 510)
            t = target(x, y)
            if t is None or press and (t in ("title", "outside") or isinstance(t, int) and STORM_PAGES[stack[-1]][t] == "ends"):
                continue
            px, py = state["press"]
            if press and max(abs(left + x - px), abs(top + y - py)) <= 8:
                continue
            return x, y, t

    def move(x, y):
        state["pointer"] = (x, y)
        events.append(("mousemove", str(left + x), str(top + y)))

    def press(x, y):
        move(x, y)
        events.append(("mousedown", "1"))
        state["press"] = (left + x, top + y)

    def fire(k):
        what = STORM_PAGES[stack[-1]][k]
        if what.startswith("page "):
            stack.append(what[5:])
        elif what == "back":
            stack.pop()
        else:
            return started.append(what)
        shown.append(stack[-1])

    while len(events) < count:
        r = rng.random()
        if r < 0.4:
            move(*point(False)[:2])
        elif r < 0.6:  # a click, or a double-click: its second press presses nothing
            x, y, t = point(True)
            press(x, y)
            events.append(("mouseup", "1"))
            if isinstance(t, int):
                fire(t)
            if r < 0.5:
                events += [("mousedown", "1"), ("mouseup", "1")]
        elif r < 0.75:  # a press that wanders: a click only when released over its button
            x, y, t = point(True)
            press(x, y)
            if t != "caption":
                for _ in range(rng.randint(1, 3)):
                    x2, y2, t2 = point(False)
                    move(x2, y2)
                if rng.random() < 0.5:
                    move(x, y)
                    t2 = t
            events.append(("mouseup", "1"))
            if isinstance(t, int) and t2 == t:
                fire(t)
        else:
            if state["pointer"] is None or target(*state["pointer"]) in (None, "outside"):
                x, y, t = point(False)
                while t == "outside":
                    x, y, t = point(False)
                move(x, y)
            if r > 0.95 and stack[-1] != "INSTALL":
                events.append(("key", "Escape"))
                stack.pop()
                shown.append(stack[-1])
            else:
                events.append(("key", rng.choice(["Tab", "shift+Tab", "Left", "Right", "Up", "Down"])))
    return events, shown, started


def step(l, p, s):
    verb, *a = s
    if verb == "shown" or verb == "closed":
        l.wait_trace(f"LfxMain: Page [{a[0]}] {verb}.")
        if not l.on_screen:  # the first page is in place before the window is shown
            wait_for(lambda: x_windows("^Tarn$"), "the window on the display")
            l.on_screen = True
    elif verb == "trace":
        l.wait_trace(a[0])
    elif verb == "looks":  # the pointer at rest, then the page buttons' looks
        l.park()
        wait_equal(lambda: l.buttons(Shot()), a[0], "the buttons' looks")
    elif verb == "look":  # button k alone, the pointer where it is
        wait_equal(lambda: l.buttons(Shot())[a[0]:a[0] + 1], [a[1]], f"button {a[0]}")
    elif verb == "click":
        # Two clicks on one point within the double-click time are a double-click, and the
        # steps between two clicks may take less: a button clicked twice in a row is clicked
        # the second time 24 pixels right of the first.
        x, y = button(a[0]) if len(a) == 1 else a
        if len(a) == 1 and l.last_click == (x, y):
            x += 24
        l.last_click = (x, y)
        l.move(x, y)
        xdo("click", "1")
    elif verb == "double":
        l.move(*a[:2])
        for key in a[2:]:
            xdo("keydown", key)
        xdo("click", "--repeat", "2", "--delay", "80", "1")
        for key in reversed(a[2:]):
            xdo("keyup", key)
    elif verb == "key":
        l.park()  # keys go to the window under the pointer
        xdo("key", a[0])
    elif verb == "keys":  # n times the keys, in one go
        l.park()
        xdo("key", "--delay", "2", *(a[1].split() * a[0]))
    elif verb == "presses":  # n times: press at one point, release at the other
        xdo(*[w for _ in range(a[0]) for w in (
            "mousemove", str(l.left + a[1][0]), str(l.top + a[1][1]), "mousedown", "1",
            "mousemove", str(l.left + a[2][0]), str(l.top + a[2][1]), "mouseup", "1")])
    elif verb == "count":  # the trace holds the line n times
        wait_for(lambda: l.lines().count(a[0]) >= a[1], f"{a[1]} x {a[0]!r}", timeout=60)
        expect(l.lines().count(a[0]), a[1], a[0])
    elif verb == "resources":  # "keep": remembered; "same": GDI and USER objects as kept,
        # and the private bytes within 2 MiB of them (the heap alone swings by up to 1 MiB)
        seen = [int(v) for v in l.probe("resources").split()]
        if a[0] == "keep":
            l.kept = seen
        else:
            expect(seen[:2], l.kept[:2], "GDI and USER objects")
            if not 0 < seen[2] < l.kept[2] + 2048:
                raise Failure(f"private bytes: {l.kept[2]} KiB, then {seen[2]} KiB")
    elif verb == "move":
        l.move(*button(a[0]) if len(a) == 1 else a)
    elif verb == "cursor":  # the pointer's image, by name
        wait_for(lambda: cursor_name() == a[0], f"the {a[0]} cursor")
    elif verb == "away":  # the pointer off the window
        xdo("mousemove", "5", "5")
    elif verb in ("down", "up"):
        xdo("mouse" + verb, "1")
    elif verb == "flick":  # a move of the pointer in one step
        xdo("mousemove_relative", "--", str(a[0]), str(a[1]))
    elif verb == "at":  # the window's place, after moving it by (dx, dy)
        l.left, l.top = l.left + a[0], l.top + a[1]
        rect = f"{l.left} {l.top} {l.left + l.width} {l.top + l.height}"
        wait_for(lambda: l.probe("rect") == rect, f"the window at {rect}")
    elif verb == "once":  # a probe that acts: run once, it waits for what it reports
        expect(l.probe(a[0]), a[1], a[0])
    elif verb == "storm":  # n seeded random events; the launcher makes of them what it must
        seed = int(os.environ.get("STORM_SEED", a[0]))
        print(f"input storm: seed {seed} (STORM_SEED={seed} repeats it), {a[1]} events", flush=True)
        b = read_file(os.path.join(p.data, "product.rgn"), "rb")
        region = [struct.unpack_from("<4i", b, at) for at in range(32, len(b) - 15, 16)]
        events, shown, started = storm(seed, a[1], l.left, l.top, region)
        for i in range(0, len(events), 400):
            xdo(*[w for e in events[i:i + 400] for w in e])
        pages = lambda: [x for x in l.lines()[l.seen:] if x.startswith("LfxMain: Page [") and x.endswith("] shown.")]
        wait_for(lambda: len(pages()) >= len(shown), f"{len(shown)} pages shown", timeout=600)
        expect(pages(), [f"LfxMain: Page [{page}] shown." for page in shown], "the pages shown")
        for program in ("Install/Doc.exe", "Install/Url.exe"):
            want = sorted(f"args={w.split()[1]}|cwd={wine_path(p.data)}" for w in started
                          if w.split()[0] == program)
            wait_for(lambda: len(p.record(program)) >= len(want), f"{len(want)} starts of {program}")
            expect(sorted(p.record(program)), want, program)
        # Where it was, and answering (a screen reader's question is answered by the window's
        # thread).
        expect(l.probe("rect"), f"{l.left} {l.top} {l.left + 500} {l.top + 470}", "the window's place")
        expect(l.probe("readers").split("\n")[0], "0|Tarn|client|focusable|", "the window's answer")
    elif verb == "probe":
        wait_equal(lambda: l.probe(a[0]), a[1], a[0])
    elif verb == "pixels":  # exact colours at window points
        wait_equal(lambda: {at: l.pixel(shot, *at) for shot in [Shot()] for at in a[0]}, a[0],
                   "the pixels")
    elif verb == "near":  # x, y, colour, tolerance
        wait_for(lambda: near(l.pixel(Shot(), a[0], a[1]), a[2], a[3]), f"{a[2]} at {a[:2]}")
    elif verb == "box":  # title, answer[, expected (text, style, owner)]
        seen = box(a[0], a[1])
        if len(a) > 2:
            expect(seen, a[2], f"the box {a[0]!r}")
    elif verb == "no box":
        if not no_box(a[0]):
            raise Failure(f"a box titled {a[0]!r}")
    elif verb == "runs":  # program (from the product folder), its record's last line
        wait_for(lambda: len(p.record(a[0])) > p.runs.get(a[0], 0), f"{a[0]}'s record")
        p.runs[a[0]] = len(p.record(a[0]))
        expect(p.record(a[0])[-1], a[1].format(folder=wine_path(p.folder), data=wine_path(p.data)),
               a[0])
    elif verb == "never":
        expect(p.record(a[0]), [], a[0])
    elif verb == "ends":
        expect(l.ended(), 0, "exit code")
    elif verb == "save":  # the window's picture, kept; with a golden picture of that name, it
        # becomes that within font rendering's play: at most 1 % of its pixels off by over 10 %
        path = os.path.join(SHOTS, a[0] + ".png")
        golden = os.path.join(HERE, "..", "golden", os.path.basename(path))
        def off():
            Shot().save_crop(path, l.left, l.top, l.width, l.height)
            n = pixels_off(path, golden, "10%") if os.path.exists(golden) else 0
            return n <= l.width * l.height // 100 or f"{n} pixels off"
        wait_equal(off, True, f"the window as {a[0]}")
    elif verb == "same":  # the window, where it is now, as a picture saved before, pixel for pixel
        now = os.path.join(WORK, "same.png")
        left, top, right, bottom = (int(v) for v in l.probe("rect").split())
        wait_for(lambda: Shot().save_crop(now, left, top, right - left, bottom - top) or
                 pixels_off(os.path.join(SHOTS, a[0] + ".png"), now, "0%") == 0,
                 f"the window as {a[0]}")
    elif verb in ("heard", "heard all"):  # the sounds so far, "~" for one cut short
        wait_equal(lambda: heard(l.played(), p.samples, verb == "heard")[:len(a[0])], a[0],
                   "the sounds")
    elif verb == "file":  # the file appears, or holds these lines
        path = os.path.join(p.folder, a[0])
        wait_for(lambda: os.path.exists(path), a[0])
        if len(a) > 1:
            expect(read_file(path).splitlines(), [x.format(folder=p.wine_folder) for x in a[1]],
                   a[0])
    elif verb == "touch":
        open(os.path.join(p.folder, a[0]), "w").close()
    elif verb == "no page":
        if any(line.startswith("LfxMain: Page [") for line in l.lines()):
            raise Failure("a page was shown")
    elif verb == "installed":  # the installer's work is done and it has ended
        wait_for(lambda: os.path.exists(os.path.join(a[0], "Uninstall.exe")), "the installation",
                 timeout=60)
        wait_for(lambda: b"TarnSetup" not in subprocess.run(["ps", "ax"], capture_output=True)
                 .stdout, "the installer's end", timeout=60)
    else:
        raise Failure(f"unknown step {verb!r}")


# --- The scenarios -------------------------------------------------------------------------

def fatal(expression, file, line):
    """The framework's assertion box."""
    return ("Guru meditation failure!", f'Assertion Failed: "{expression}"!\n\nFile:\t{file}\n'
            f"Line:\t{line}\n\nAbnormal Termination.\n\nSelect Retry for an environment dump.",
            "style=0x15")


LFX = "FrameWork/_lfx/Source/lfx_System"
SOUND_Q = "No working sound device was found.\n\nDo you want to play without sound?"
STYLE_Q = "style=0x124"
M1 = "This demo needs DirectX 7.0 or later.\n\nPlease install DirectX and start the demo again."
M3 = "No display device that supports DirectDraw was found.\n\nTarn cannot start."
M4 = "Do you really want to remove Tarn and all of its saved games from this computer?"
VERSION = ("Launcher.exe (Build 0003)\n\nLfxMain        \t: 1.03.0114 (2/12/02 5:05p)\n"
           "CTarnLauncher  \t: 1.00.0024 (2/22/02 5:26p)\n\nPages:\n\tLAUNCH\tINT\n"
           "\tINSTALL\t\n\tHELP\t\n\tOPTIONS\t\n")
GAME = "args=|cwd={folder}\\GameData"
DEMO_INI = {("Startup", "AppType"): "Demo"}
INSTALLED = os.path.join(WORK, "installed")
# The demo background's pixel (250, 14), where the caption bar would be.
DEMO_SKY = (27, 36, 53)
# The program icon's pixel (8, 4), drawn at (6, 7): opaque evening sky.
ICON = tuple(reversed(make_icon.pixel(8, 4, 16)[:3]))

# Each row: name, the product's settings, the launcher's settings, the steps.
ROWS = [
    # The system's message boxes in today's look: the launcher runs with common controls 6.
    ("first page: not installed", {}, {}, [
        ("shown", "INSTALL"), ("looks", focus(4, 0)), ("pixels", {(14, 11): ICON}),
        ("probe", "comctl", "6"), ("save", "launcher_install"), ("key", "Escape"), ("closed", "INSTALL"), ("ends",)]),
    ("first page: installed", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("looks", focus(5, 0)), ("save", "launcher_launch"),
        ("key", "Escape"), ("closed", "LAUNCH"), ("ends",)]),
    ("uninstall requested: no page, Alt+F4", {"installed": True}, {"args": ["-UNINSTALL"]}, [
        ("trace", "LfxMain: m_dwState is [3]"), ("pixels", {(250, 14): DEMO_SKY}), ("looks", []),
        ("key", "alt+F4"), ("ends",), ("no page",)]),
    # Closing as on any window: Alt+F4 and the taskbar's Close while a page shows, and the
    # end of the session, close the launcher (through the close button's sequence, whose
    # effects its row hears); asked for its icons, the window names none of its own (0,
    # never a handle that is no icon), so the taskbar shows the class's.
    ("closing: Alt+F4 on a page", {}, {}, [("shown", "INSTALL"), ("key", "alt+F4"), ("ends",)]),
    ("closing: the taskbar's Close, the icons", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("probe", "icons", "0 0 0"), ("probe", "close", ""), ("ends",)]),
    ("closing: the session ends", {}, {}, [
        ("shown", "INSTALL"), ("probe", "endsession", "1"), ("ends",)]),
    # A thousand page changes, and a thousand presses on the page and title buttons released
    # elsewhere, leave the launcher's objects and memory as they were after the first few.
    # (Wine counts no GDI or USER objects: there the memory tells, and a leaked picture of
    # 8 KiB a page change shows.)
    ("page changes and presses leak nothing", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("key", "Down"), ("key", "Down"), ("keys", 5, "Return Escape"),
        ("count", "LfxMain: Page [HELP] shown.", 5), ("resources", "keep"),
        ("keys", 250, "Return Escape"), ("count", "LfxMain: Page [HELP] shown.", 255),
        ("key", "Down"), ("keys", 250, "Return Escape"),
        ("count", "LfxMain: Page [OPTIONS] shown.", 250),
        ("presses", 500, (300, 220), (90, 400)), ("presses", 500, (450, 12), (300, 100)),
        ("key", "Down"), ("looks", focus(5, 1)), ("resources", "same")]),
    # A screen reader in another process reads the page's buttons and the title buttons
    # (name, role, state, action), hears the focus move with Tab, and presses a button: it
    # hears that the window's parts changed, then which of the new page's buttons has the
    # focus.
    ("screen readers", {}, {}, [
        ("shown", "INSTALL"), ("probe", "readers", readers("Tarn", "Install*", "Help", "Options", "Exit")),
        ("once", "tab", "2|Help"), ("move", 2), ("down",),
        ("probe", "readers", readers("Tarn", "Install", "Help", "Options*+", "Exit")),
        ("away",), ("up",), ("once", "press 2", "pressed\nreorder\n1|System Check"),
        ("shown", "HELP"),
        ("probe", "readers", readers("Tarn", "System Check*", "Read Me", "Troubleshooting Guide", "Back")),
        ("once", "press 6", "pressed"), ("ends",)]),
    # Twenty thousand seeded random pointer moves, clicks, double-clicks, drags and keys over
    # INSTALL, HELP and OPTIONS: the pages and the programs started are exactly those the
    # clicks and keys ask for, and the window answers where the drags left it.
    ("input storm", {}, {}, [
        ("shown", "INSTALL"), ("storm", 1124, 20000), ("probe", "close", ""), ("ends",)]),
    # A click fires on a release over the pressed button, after wandering off and back.
    ("help and back by pointer", {}, {}, [
        ("shown", "INSTALL"), ("move", 1), ("cursor", "left_ptr"), ("down",),
        ("look", 1, "pressed"), ("move", 90, 400), ("look", 1, "focused"), ("move", 1), ("look", 1, "pressed"), ("up",),
        ("shown", "HELP"), ("looks", focus(4, 0)), ("save", "launcher_help"),
        ("click", 3), ("shown", "INSTALL"), ("looks", focus(4, 1)), ("never", "Install/Doc.exe")]),
    ("help and back by keys", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("key", "Down"), ("key", "Tab"), ("looks", focus(5, 2)),
        ("key", "shift+Tab"), ("key", "Up"), ("key", "Left"), ("looks", focus(5, 4)),
        ("key", "Tab"), ("key", "Right"), ("key", "Right"), ("key", "Return"), ("shown", "HELP"),
        ("looks", focus(4, 0)), ("key", "Escape"), ("shown", "LAUNCH"), ("looks", focus(5, 2))]),
    ("options page", {}, {}, [
        ("shown", "INSTALL"), ("click", 2), ("shown", "OPTIONS"), ("looks", focus(3, 0)),
        ("save", "launcher_options"), ("key", "Escape"), ("closed", "OPTIONS"),
        ("shown", "INSTALL"), ("looks", focus(4, 2))]),
    # The background does not drag the window; the caption does, also for a quick flick to the
    # upper left that takes the pointer off the window (negative coordinates); nothing after
    # the release.
    ("dragging", {}, {}, [
        ("shown", "INSTALL"), ("move", 90, 400), ("down",), ("flick", 60, 30), ("up",),
        ("move", 250, 15), ("down",), ("flick", 100, 50), ("at", 100, 50), ("up",),
        ("move", 250, 15), ("down",), ("flick", -300, -200), ("at", -300, -200), ("up",),
        ("flick", 30, 30), ("key", "Down"), ("looks", focus(4, 1)), ("at", 0, 0)]),
    ("version text", {}, {}, [
        ("shown", "INSTALL"), ("double", 300, 150, "shift"), ("double", 300, 150, "shift", "ctrl"),
        ("box", "Tarn", 1, (VERSION, "style=0x40", "owner=none")), ("key", "Escape"), ("ends",),
        ("no box", "Tarn")]),
    # The sound check asks first (no owner; its Yes is a system row's); after its No the page
    # asks again (owned by the window): No there starts nothing, Yes goes on to the game.
    ("play: no, no", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("key", "Return"), ("box", "Tarn", 7, (SOUND_Q, STYLE_Q, "owner=none")),
        ("box", "Tarn", 7, (SOUND_Q, STYLE_Q, "owner=CltWin")), ("key", "Escape"), ("ends",),
        ("never", "Tarn.exe")]),
    ("play: no, yes", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("key", "Return"), ("box", "Tarn", 7),
        ("box", "Tarn", 6, (SOUND_Q, STYLE_Q, "owner=CltWin")), ("ends",),
        ("runs", "Tarn.exe", GAME)]),
    # A demo asks the setup library for DirectX (started, asked and shut down once: a library
    # that records its calls, whose display check lists no device) before the checks.
    ("play: no display device",
     {"installed": True, "ini": DEMO_INI, "setup_dll": "Setup2.dll", "recording": True}, {}, [
         ("shown", "LAUNCH"), ("key", "Return"), ("box", "Tarn", 6),
         ("box", "Tarn", 1, (M3, "style=0x30", "owner=CltWin")), ("key", "Escape"), ("ends",),
         ("never", "Tarn.exe"),
         ("file", "Install/calls.log", ["Startup {folder}\\Install", "CheckDirectX", "Shutdown"])]),
    ("play: demo without the DirectX check",
     {"installed": True, "ini": DEMO_INI, "setup_dll": "Setup2.dll", "no_setup": True}, {}, [
         ("shown", "LAUNCH"), ("looks", focus(4, 0)), ("key", "Return"),
         ("box", "Tarn", 1, (M1, "style=0x0", "owner=none")), ("looks", focus(4, 0)),
         ("key", "Escape"), ("ends",), ("never", "Tarn.exe")]),
    ("second program", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("click", 1), ("box", "Tarn", 7, (SOUND_Q, STYLE_Q, "owner=none")),
        ("box", "Tarn", 6, (SOUND_Q, STYLE_Q, "owner=none")), ("closed", "LAUNCH"), ("ends",),
        ("runs", "GameData/trnmp.exe", GAME)]),
    # No: nothing; a press while the question is open (once it has taken the activation and
    # the pointer has been seen over Back; away from the first click's point, or the press
    # would be the second half of a double-click) does nothing; Yes: the uninstaller, and the
    # end.
    ("uninstall", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("click", 3), ("shown", "OPTIONS"), ("looks", focus(4, 0)),
        ("click", 2), ("box", "Options", 0, (M4, STYLE_Q, "owner=none")),
        ("near", 300, 10, CAPTION_INACTIVE, 20), ("move", 3), ("look", 3, "focused"),
        ("move", 340, 314), ("down",), ("look", 2, "pressed"), ("up",), ("move", 90, 400),
        ("look", 2, "focused"), ("box", "Options", 7), ("key", "Escape"), ("shown", "LAUNCH"),
        ("no box", "Options"), ("never", "Uninstall.exe"), ("click", 3), ("shown", "OPTIONS"),
        ("click", 2), ("box", "Options", 6), ("ends",), ("runs", "Uninstall.exe", "args=|cwd=C:\\")]),
    # An installed product without the registry's uninstaller cannot go on.
    ("uninstall without an uninstaller", {"installed": "without an uninstaller"}, {}, [
        ("shown", "LAUNCH"), ("click", 3), ("shown", "OPTIONS"), ("click", 2), ("box", "Options", 6),
        ("box", "Guru meditation failure!", 2, fatal("!strUninstall.empty()", LFX, 1044)[1:] +
         ("owner=none",)), ("ends",), ("never", "Uninstall.exe")]),
    # A document's window takes the activation, and when it closes the launcher has it
    # again. The system check runs while the window stands aside; when it ends, the window
    # is back, and active. (Which button opens which document or web page is the storm's.)
    ("documents and system check", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("click", 2), ("shown", "HELP"), ("touch", "Install/Doc.exe.hold"),
        ("click", 1), ("file", "Install/Doc.exe.ready"), ("near", 300, 10, CAPTION_INACTIVE, 20),
        ("touch", "Install/Doc.exe.release"), ("near", 300, 10, CAPTION_ACTIVE, 30),
        ("runs", "Install/Doc.exe", "args=README|cwd={data}"),
        ("touch", "Install/Syscheck.exe.hold"), ("click", 0),
        ("file", "Install/Syscheck.exe.ready"), ("probe", "visible", "0"),
        ("touch", "Install/Syscheck.exe.release"), ("probe", "visible", "1"),
        ("near", 300, 10, CAPTION_ACTIVE, 30),
        ("runs", "Install/Syscheck.exe", "args=|cwd={data}"), ("looks", focus(4, 0))]),
    # Minimising stops the opening sound (the hover sound, which never cuts another, then
    # plays) and the window comes back with its title bar at rest.
    ("minimise and restore", {"sounds": {"OPEN": (330, 60)}}, {"sound": True}, [
        ("shown", "INSTALL"), ("heard all", ["OPEN~"]), ("click", 451, 12),
        ("probe", "iconic", "1"), ("away",), ("probe", "activate", ""), ("probe", "iconic", "0"),
        ("near", 448, 12, (42, 59, 86), 40), ("near", 300, 10, CAPTION_ACTIVE, 30),
        ("move", 1), ("heard all", ["OPEN~", "HOVER"]), ("looks", focus(4, 1))]),
    # The page sounds: a click, going back, and the game's start heard to its end before the
    # game starts.
    ("page sounds", {"installed": True, "sounds": {}}, {"sound": True}, [
        ("shown", "LAUNCH"), ("heard", ["OPEN"]), ("click", 2), ("shown", "HELP"),
        ("heard", ["OPEN", "CLICK"]), ("key", "Escape"), ("shown", "LAUNCH"),
        ("heard", ["OPEN", "CLICK", "BACK"]), ("click", 0), ("closed", "LAUNCH"), ("ends",),
        ("runs", "Tarn.exe", GAME), ("heard", ["OPEN", "CLICK", "BACK", "START"])]),
    # The close button asks the help viewer to quit with the launcher's help file, stops the
    # opening sound and ends the launcher.
    ("close button", {"sounds": {"OPEN": (330, 60)}}, {"sound": True, "help": True}, [
        ("shown", "INSTALL"), ("heard all", ["OPEN~"]), ("move", 480, 12),
        ("near", 476, 12, (63, 116, 176), 40), ("down",), ("near", 476, 12, (201, 155, 62), 40),
        ("up",), ("ends",), ("heard all", ["OPEN~"]),
        ("file", "help.log", ["ready", "command=2 file={folder}\\Tarn.hlp"])]),
    # The real installer, silently, from the disc in drive E:; the installed launcher then
    # opens on LAUNCH.
    ("install from the disc, then the installed launcher", {"disc": True, "target": INSTALLED}, {}, [
        ("shown", "INSTALL"), ("key", "Return"), ("closed", "INSTALL"), ("ends",),
        ("installed", INSTALLED), ("installed launcher", INSTALLED), ("shown", "LAUNCH"),
        ("looks", focus(5, 0)), ("key", "Escape"), ("ends",)]),
    # A plain skin: every pixel as the formulas give it; the minimise button's images follow
    # the pointer (also off the window; back on it a pixel aside, since re-entering where it
    # left makes no move) and the press, and after a minimise it is at rest wherever the
    # pointer is.
    ("plain skin", {"skin": plain_skin}, {"size": (500, 300), "park": (100, 100)}, [
        ("shown", "INSTALL"), ("probe", "rect", "390 362 890 662"),
        ("probe", "region", "2 0 0 500 300"), ("move", 100, 100),
        ("pixels", {(100, 100): BG, (25, 290): BG, (5, 290): (0, 0, 0),
                    (300, 15): CAPTION["active.tga"], (437, 1): CAPTION["active.tga"],
                    (450, 12): TITLE["minimize.tga"], (480, 12): TITLE["close.tga"],
                    (443, 12): CAPTION["active.tga"], (444, 12): TITLE["minimize.tga"],
                    (472, 12): CAPTION["active.tga"], (473, 12): TITLE["close.tga"],
                    (197, 203): blend(FACE["focused.tga"], BG),
                    (197, 250): blend(FACE["unselect.tga"], BG),
                    (197, 297): blend(FACE["unselect.tga"], BG), (14, 11): ICON}),
        ("move", 450, 12), ("pixels", {(452, 5): TITLE["ovrmin.tga"]}), ("away",),
        ("pixels", {(452, 5): TITLE["minimize.tga"]}), ("move", 451, 12),
        ("pixels", {(452, 5): TITLE["ovrmin.tga"]}), ("down",),
        ("pixels", {(452, 5): TITLE["selmin.tga"]}), ("move", 300, 100), ("up",),
        ("pixels", {(452, 5): TITLE["minimize.tga"]}), ("probe", "iconic", "0"),
        ("move", 1), ("down",), ("pixels", {(197, 250): blend(FACE["pressed.tga"], BG)}),
        ("move", 100, 100), ("up",), ("click", 451, 12), ("probe", "iconic", "1"), ("away",),
        ("probe", "activate", ""),
        ("pixels", {(452, 5): TITLE["minimize.tga"], (300, 15): CAPTION["active.tga"]}),
        ("key", "Escape"), ("ends",)]),
]

# At 150 % and 200 % the window, its region, its pictures and its hit areas are scaled: the
# pictures are kept as golden pictures. Told that its screen's DPI changed, a window opened at
# 100 % becomes the window opened at 150 %, pixel for pixel, around the same centre.
for dpi, size, rect, region in [(144, (750, 705), "265 159 1015 864", "78 0 0 750 699"),
                                (192, (1000, 940), "140 42 1140 982", "78 0 0 1000 932")]:
    ROWS.append((f"high DPI: {dpi}", {}, {"dpi": dpi, "size": size}, [
        ("shown", "INSTALL"), ("probe", "rect", rect), ("probe", "region", region),
        ("save", f"launcher_install_{dpi}"), ("click", 1), ("shown", "HELP"), ("key", "Escape"),
        ("shown", "INSTALL"), ("click", 480, 12), ("ends",)]))
ROWS.append(("high DPI: moved to a screen of 144", {}, {}, [
    ("shown", "INSTALL"), ("once", "dpi 144", ""), ("probe", "rect", "265 159 1015 864"),
    ("same", "launcher_install_144"), ("key", "Escape"), ("ends",)]))

# On a display of 8 bits per pixel (a session of its own; not in the default run), painted
# through DrawDib: the caption, a resting and the focused button in the palette's colours.
ROWS.append(("8-bit: INSTALL", {}, {}, [
    ("shown", "INSTALL"),
    ("pixels", {(300, 10): (192, 220, 192), (455, 267): (192, 220, 192), (455, 220): (0, 0, 0)}),
    ("save", "../launcher-shots-8bit/launcher_install_8bit")]))

# Each kind of skin file missing or broken: the window opens in its place and its buttons work.
DEMO_REGION = "78 0 0 500 466"
for name, damage, size, region in [
        ("bmp missing", remove("product.bmp"), (500, 460), DEMO_REGION),
        ("rgn missing", remove("product.rgn"), (500, 470), "none"),
        ("rgn short", truncate("product.rgn", 40), (500, 470), "none"),
        ("rgn count past the file", replace("product.rgn", rgn([(0, 0, 9, 9)])[:8] +
                                            struct.pack("<I36x", 0x10000000)), (500, 470), "none"),
        ("rgn header refused", replace("product.rgn", struct.pack("<I", 16) +
                                       rgn([(0, 0, 500, 470)])[4:]), (500, 470), "none"),
        ("caption empty", replace("active.tga", b""), (500, 470), DEMO_REGION),
        ("close missing", remove("close.tga"), (500, 470), DEMO_REGION),
        ("unselect truncated", truncate("unselect.tga", 300), (500, 470), DEMO_REGION),
        ("faces garbage", each(*(replace(f, bytes(range(256)) * 8) for f in FACE)), (500, 470),
         DEMO_REGION)]:
    left, top = (SCREEN_W - size[0]) >> 1, (SCREEN_H - size[1]) >> 1
    ROWS.append((f"skin: {name}", {"skin": damage}, {"size": size, "park": (90, 150)}, [
        ("shown", "INSTALL"), ("probe", "rect", f"{left} {top} {left + size[0]} {top + size[1]}"),
        ("probe", "region", region), ("click", 1), ("shown", "HELP"), ("key", "Escape"),
        ("shown", "INSTALL"), ("click", 480, 12), ("ends",)]))


# --- Starts of the launcher: one run each, its boxes answered in order ----------------------

REPO = os.path.dirname(os.path.dirname(HERE))


def regedit(text):
    """Applies registry lines (the .reg format: "[-KEY]" removes a key)."""
    reg = os.path.join(WORK, "values.reg")
    with open(reg, "w", newline="") as f:
        f.write("REGEDIT4\r\n\r\n" + text.replace("\n", "\r\n"))
    run_wine("regedit", "/S", wine_path(reg))


def reg_values(key, values):
    """The lines that make the key anew with these values (an int is a DWORD), or remove it."""
    text = f"[-{key}]\n" + (f"[{key}]\n" if values else "")
    for name, v in values.items():
        v = f"dword:{v:08x}" if isinstance(v, int) else '"' + v.replace("\\", "\\\\").replace(
            '"', '\\"') + '"'
        text += ("@" if name == "@" else f'"{name}"') + f"={v}\n"
    return text


def run_probe(program, args, cwd, answers, at):
    """Runs a program under Wine as a debuggee, its boxes answered in order and its window
    closed once seen (RunProbe.exe run): its boxes (title, text, style, owner, answer), the
    libraries it loaded, its exit code, the "at" report and its trace texts, in a dict."""
    trace = os.path.join(WORK, "trace.bin")
    options = [f"/answers:{','.join(map(str, answers))}", "/out:" + wine_path(trace), "/cwd:" + cwd]
    options += ["/at:" + at] if at else []
    # Its report goes to a file: a service that a restart starts again would inherit a pipe
    # and keep it open. What Wine says goes beside it, for a program that does not start.
    report = os.path.join(WORK, "report.txt")
    with open(report, "w") as f, open(report + ".err", "w") as err:
        status = subprocess.run(["wine", os.path.join(BIN, "RunProbe.exe"), "run", *options,
                                 program, args], env=ENV, stdin=subprocess.DEVNULL, stdout=f,
                                stderr=err).returncode
    out = read_file(report)
    r = {"boxes": [], "libraries": [], "exit": None, "at": None, "probe": f"RunProbe's status "
         f"{status}, its report {out[:300]!r}, Wine said {read_file(report + '.err')[-300:]!r}"}
    for line in out.splitlines():
        kind, _, rest = line.partition("\t")
        if kind == "box":
            r["boxes"].append(tuple(map(unescape, rest.split("\t"))))
        elif kind == "library":
            r["libraries"].append(rest)
        elif kind in ("exit", "at"):
            r[kind] = rest
    r["texts"], r["lines"] = read_trace(trace)
    return r


def read_trace(path):
    """The texts a probe wrote (each ends in a zero byte), and the lines they make."""
    texts = read_file(path).split("\0")[:-1]
    lines = "".join(texts).split("\n")
    return texts, lines[:-1] if lines[-1] == "" else lines


def source_line(path, needle):
    """The line (from 1) of the first occurrence of needle in a file of the source tree."""
    text = read_file(os.path.join(REPO, path))
    return text[:text.index(needle)].count("\n") + 1


EMPTY_VALUE = fatal("!strSecond.empty()", "FrameWork/_cult/Source/clt_Environment",
                    source_line("FrameWork/_cult/Source/clt_Environment.cpp",
                                "CLT_ASSERT(!strSecond.empty())"))
NO_INI = fatal('clt_IsFilePresent(g_Env["IniPath"])', LFX, 174)
CANNOT_START = ("Tarn", "The program could not be started.\n\nPlease reinstall Tarn.", "style=0x10")
INSERT = ("Tarn", "Please insert the Tarn disc into your CD-ROM drive and click OK.", "style=0x31")
INSERT_FIRST = ("Tarn", "Please insert Tarn disc 1 into your CD-ROM drive and click OK.",
                "style=0x31")
OFFER = ("Tarn", "Tarn needs DirectX 7.0 or later, which is not installed on this computer.\n\n"
         "Do you want to install DirectX now?", "style=0x24")
RESTART_Q = ("DirectX Setup", "DirectX was installed. Windows must restart before you can play "
             "Tarn.\n\nDo you want to restart now?", "style=0x24")
ASK2 = [(("Tarn", SOUND_Q, "style=0x124"), 7)] * 2  # the sound check's two questions, declined
STATE1, RUNNING = "LfxMain: m_dwState is [1]", "LfxMain: PreInitializePages started."
HAND_OVER = "LfxMain: Launcher is running from CD. Transferring to HD."
FROM_HD = "LfxMain: Launcher is running from HD or in debug mode."
HELP_FAIL = "LfxMain: \tGetIniString - Section [Documentation] Key [Help] - Fail"
REGISTRATIONS = [t for step in ["Early construction completed.", "Registering launcher"] + [
    f"Registering page [{page}]" for page in ("INSTALL", "LAUNCH", "LAUNCH", "HELP", "OPTIONS")]
    for t in ("LfxMain: ", step + "\n")]
PLANTED = ["ddraw.dll", "DSOUND.DLL", "winmm.dll", "msvfw32.dll", "comctl32.dll", "uxtheme.dll",
           "oleacc.dll"]
PROBE_LINE = source_line("tests/FrameWork/_cult/assert_probe.cpp", "CLT_ASSERT(probeValue == 0)")
PROBE_FAILS = fatal("probeValue == 0", "tests/FrameWork/_cult/assert_probe", PROBE_LINE)


def edit_ini(text, values):
    """setup.ini's text with the given keys set (None removes one); a key the text lacks goes
    after the last line of its section, or into a new section at the end. Lines end in CR LF."""
    lines, values, section, ends = text.splitlines(), dict(values), None, {}
    out = []
    for line in lines + ["[]"]:  # a last section header closes the last section
        s = line.strip()
        if s.startswith("["):
            for (sec, key), value in list(values.items()):  # keys the section lacked
                if sec == section and value is not None:
                    out.append(f"{key}={values.pop((sec, key))}")
            section = s[1:-1]
        elif "=" in s and not s.startswith(";") and (section, s.split("=")[0]) in values:
            value = values.pop((section, s.split("=")[0]))
            if value is None:
                continue
            line = s.split("=")[0] + "=" + value
        out.append(line)
    out.pop()
    for section in dict.fromkeys(sec for (sec, _), v in values.items() if v is not None):
        out += [f"[{section}]"] + [f"{k}={v}" for (sec, k), v in values.items()
                                   if sec == section and v is not None]  # sections it lacked
    return "\r\n".join(out) + "\r\n"


START_KEY = "HKEY_LOCAL_MACHINE\\Software\\Launcher Tests\\row\\1.0"
APP_DEFAULTS = "HKEY_CURRENT_USER\\Software\\Wine\\AppDefaults\\"


def fresh(path):
    shutil.rmtree(path, ignore_errors=True)
    os.makedirs(path)
    return path


def start_product(folder, s):
    """Lays out folder\\Launcher.exe and its data folder with the test build of the setup
    library (or the one the demo ships) and the tests' setup.ini (tagged "row") with the row's
    keys changed and the setup library's [VokSetupTest] settings after it."""
    data = os.path.join(folder, s.get("anchor", "Install"))
    os.makedirs(data, exist_ok=True)
    shutil.copy(os.path.join(BIN, s.get("program", "Launcher.exe")), folder)
    shutil.copy(os.path.join(DEMO, "Install", "VokSetup.dll") if s.get("shipped") else
                os.path.join(BIN, s.get("library", "VokSetup.dll")), data)
    for name in s.get("skin", []):
        shutil.copy(os.path.join(DEMO, "Install", name), data)
    ini = dict(s.get("ini", {}))
    if "library" in s:
        ini[("Files", "SetupDll")] = s["library"]
    text = read_file(os.path.join(HERE, "..", "support", "setup.ini")).replace("@TAG@", "row")
    write(os.path.join(data, "setup.ini"),
          (edit_ini(text, ini) + s.get("settings", "")).encode("latin-1"))
    return data


def start_row(name, s, args, want):
    """One start of the launcher (or another program): the product laid out and registered
    as the setup s says, run with args, its boxes answered; want: "boxes" (title, text,
    style) with their answers, trace "lines" ("-" before a line: it must not be there; "=":
    the last step before the destruction), the whole "trace", trace "texts" from an index,
    what the installed launcher or the installer "recorded", the "at" report, "libraries"
    only from the system but the setup library, the records a trace "viewer" received."""
    folder = fresh(os.path.join(WORK, "row"))
    installed = fresh(folder + "-installed")
    win, cwd = wine_path(folder), wine_path(folder)
    program, record = win + "\\" + s.get("program", "Launcher.exe"), None
    data = start_product(folder, s)
    reg, cleanup, holders = reg_values(START_KEY, {}), "", []
    if "at" in s:  # the launcher elsewhere: the root of drive R:, or a folder of its own
        elsewhere = os.path.join(SESSION, "drive-r") if s["at"] == "R:" else fresh(
            os.path.join(WORK, "plain"))
        shutil.rmtree(os.path.join(elsewhere, "Install"), ignore_errors=True)
        if s["at"] == "R:":
            shutil.copytree(data, os.path.join(elsewhere, "Install"))
        shutil.copy(os.path.join(BIN, "Launcher.exe"), elsewhere)
        program = "R:\\Launcher.exe" if s["at"] == "R:" else wine_path(elsewhere) + "\\Launcher.exe"
    if "helper" in s:  # a helper program of the demo product, in its data folder
        cwd = wine_path(os.path.join(DEMO, "Install"))
        program = cwd + "\\" + s["helper"]
    if s.get("browser"):  # a recorder registered as the browser (the machine's classes)
        shutil.copy(HELPER, os.path.join(folder, "browser.exe"))
        record = os.path.join(folder, "browser.exe.log")
        reg += reg_values("HKEY_LOCAL_MACHINE\\Software\\Classes\\https\\shell\\open\\command",
                          {"@": f'"{win}\\browser.exe" "%1"'})
    if s.get("cwd") == "":  # the folder the tests start in
        cwd = wine_path(WORK)
    if "installed" in s:  # where the registry says it is installed, and its launcher
        path, source, launcher = s["installed"]
        values = {"Installed": 2, "Install Path": win.lower() if path == "lower" else
                  path.replace("$", win)}
        if source:
            values["Source Dir"] = source.replace("$", win)
        reg = reg_values(START_KEY, values)
        if launcher == 1:
            shutil.copy(HELPER, os.path.join(installed, "Launcher.exe"))
        elif launcher == 2:
            write(os.path.join(installed, "Launcher.exe"), b"not a program")
        record = os.path.join(installed, "Launcher.exe.log")
    if "remove" in s:
        path = os.path.join(folder, s["remove"])
        shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
    if "disc" in s:  # the product on the CD in that drive, with a recorder for the installer
        drive = empty_disc(s["disc"])
        shutil.copy(HELPER, os.path.join(data, "TarnSetup.exe"))
        shutil.copytree(folder, drive, dirs_exist_ok=True)
        program, cwd = s["disc"] + ":\\Launcher.exe", wine_path(WORK)
        record = os.path.join(drive, "Install", "TarnSetup.exe.log")
    for folder_name in s.get("folders", []):
        os.makedirs(os.path.join(folder, folder_name))
    if "recorder" in s:  # a recorder in place of a program of the product (the game, ...)
        record = os.path.join(folder, s["recorder"])
        os.makedirs(os.path.dirname(record), exist_ok=True)
        shutil.copy(HELPER, record)
        record += ".log"
    if "dsound" in s:  # the system's DSOUND.DLL replaced, and taken from the system folder
        system = os.path.join(ENV["WINEPREFIX"], "drive_c", "windows", "system32", "dsound.dll")
        original = system + ".original"
        if not os.path.exists(original):
            shutil.copy(system, original)
        if s["dsound"]:
            write(system, b"This is not a library.") if s["dsound"] == "garbage" else \
                shutil.copy(os.path.join(BIN, "..", "fake-dsound", s["dsound"], "dsound.dll"), system)
            reg += f'[{APP_DEFAULTS}Launcher.exe\\DllOverrides]\n"dsound"="native"\n'
            cleanup += f"[-{APP_DEFAULTS}Launcher.exe]\n"
    if s.get("win95"):
        reg += f'[{APP_DEFAULTS}Launcher.exe]\n"Version"="win95"\n'
        cleanup += f'[-{APP_DEFAULTS}Launcher.exe]\n'
    if s.get("planted"):  # decoys beside the launcher, in its data folder and where it starts
        cwd = wine_path(os.path.join(folder, "Current"))
        for where in (folder, data, os.path.join(folder, "Current")):
            os.makedirs(where, exist_ok=True)
            for name in PLANTED:
                shutil.copy(os.path.join(BIN, "..", "planted", name[:-4] + ".dll"),
                            os.path.join(where, name))
        # Wine otherwise always uses its own libraries: ask for the files first, as Windows does.
        for program_name in ("loader.exe", "Launcher.exe"):
            reg += f"[{APP_DEFAULTS}{program_name}\\DllOverrides]\n" + "".join(
                f'"{n[:-4].lower()}"="native,builtin"\n' for n in PLANTED)
            cleanup += f"[-{APP_DEFAULTS}{program_name}]\n"
    regedit(reg)
    # A program that holds the mutexes named.
    holds = ["-HOLD=" + ",".join(s["hold"])] if "hold" in s else []
    holds += ["-HOLD=RestartSentinel"] if "restart" in want else []
    viewer = None
    try:  # holders and viewer too: what started is ended whatever fails
        for what in holds:
            holder = os.path.join(fresh(os.path.join(WORK, f"holder{len(holders)}")), "holder.exe")
            shutil.copy(HELPER, holder)
            holders.append((holder, start_wine(holder, what, err=holder + ".err")))
            try:
                wait_for(lambda: os.path.exists(holder + ".ready"), "the holder")
            except Failure as e:  # seen once: a holder that did not get ready
                raise Failure(f"{e} (exit code {holders[-1][1].poll()}, Wine said "
                              f"{read_file(holder + '.err')[-400:]!r})")
        if "viewer" in want:  # TraceWin with both of its windows open, or the older one alone
            records, which = os.path.join(folder, "tracewin.txt"), s.get("viewer", "both")
            viewer = start_wine(os.path.join(BIN, "TraceWin.exe"), "/out:" + wine_path(records),
                                "/class:" + which)
            for title in ["TraceWin - TraceWin TRACE Window"] * (which == "both") + [
                    "TraceWin - MfxTraceWindow"]:
                wait_for(lambda: x_windows(f"^{title}$"), title)
        if s.get("planted"):  # the decoys work: a program beside them that asks gets them
            shutil.copy(HELPER, os.path.join(folder, "loader.exe"))
            for name in PLANTED:
                subprocess.run(["wine", os.path.join(folder, "loader.exe"), "-LOAD=" + name],
                               env=ENV, cwd=folder, stdin=subprocess.DEVNULL)
                expect(os.path.exists(os.path.join(folder, name + ".loaded")), True, name)
        fill = lambda t: t.replace("$", win)
        r = run_probe(program, fill(args), cwd, [a for _, a in want.get("boxes", [])],
                      at=s.get("at trace"))
    finally:
        if "restart" in want:  # every program of the prefix has ended, the sentinel too
            wait_for(lambda: all(p.poll() is not None for _, p in holders), "the restart's end")
        if "dsound" in s:
            shutil.copy(original, system)
        for holder, process in holders:
            open(holder + ".release", "w").close()
            process.wait()
        if viewer:
            viewer.kill()
            viewer.wait()
        regedit(reg_values(START_KEY, {}).split("\n")[0] + "\n" + cleanup)
    if "restart" not in want:  # the restart ends the probe too, sooner or later
        expect(r["exit"], want.get("exit", "0"), f"exit code ({r['probe']})")
    expect([b[:3] for b in r["boxes"]], [tuple(map(fill, b)) for b, _ in want.get("boxes", [])],
           "the boxes")
    for line in map(fill, want.get("lines", [])):
        if line[0] == "-":
            expect(line[1:] in r["lines"], False, line)
        elif line[0] == "=":  # the last step before the destruction
            expect(r["lines"][-3:-2], [line[1:]], "the last step")
        else:
            expect(line in r["lines"], True, line)
    if "trace" in want:
        expect(r["lines"], list(map(fill, want["trace"])), "the trace")
    for at, texts in want.get("texts", []):
        expect(r["texts"][at:at + len(texts) or None], texts, f"the texts from {at}")
    # A fatal condition ends the process at once; every other start ends in order.
    guru = any(b[0][0] == "Guru meditation failure!" for b in want.get("boxes", []))
    if "restart" not in want and "helper" not in s:
        expect("LfxMain: Destruction completed." in r["lines"], not guru and program.endswith(
            "Launcher.exe"), "the destruction")
    if "recorded" in want:
        if want["recorded"]:
            wait_for(lambda: read_file(record), "the record")
        expect(read_file(record), fill(want["recorded"]), "the record")
    if "at" in want:
        expect(r["at"], want["at"], "the window at that trace")
    if "window" in want:  # a program's window with this text in its title
        wait_for(lambda: x_windows(want["window"]), want["window"])
    if "libraries" in want:  # only the setup library from the product's folders
        ours = [x for x in r["libraries"] if x.lower().startswith(win.lower())]
        expect(ours, [win + "\\Install\\VokSetup.dll"], "the libraries from the product")
        expect(len(r["libraries"]) > 5, True, "libraries were reported")
    if "viewer" in want:
        received = [line.split("\t") for line in read_file(records).splitlines()]
        texts = [unescape(t) for _, _, _, t in received]
        tag = "twin" if s.get("viewer", "both") == "both" else "mfx"
        expect([(tag, data, int(size)) for tag, data, size, _ in received],
               [(tag, "6E697774", len(t)) for t in texts], "the records")
        expect(texts, want["viewer"], "the texts TraceWin received")


def installed(path, source, launcher=0):
    """Registered as installed at path (from source): its launcher 1 a recorder, 2 a file
    that is no program, 0 none; "$" stands for the product's folder."""
    return {"installed": (path, source, launcher)}


def on_disc(drive, app_type, disks):
    """On the CD in that drive (the session's drives F: to I: have the labels GAME_DISC1, GAM,
    OTHER and game), its label to begin with GAME; -I runs the installer, a recorder."""
    return {"disc": drive, "ini": {("Startup", "Data"): "GAME", ("Startup", "AppType"): app_type,
                                   ("Startup", "Disks"): disks}}


def directx(win95, current, old, report="DirectXState=2\r\nDirectXInstall=0", install="1",
            folders=("DirectX", "DX95")):
    """DirectX as the setup library reports it and installs it, installed from [Folders]
    DirectXCurrent or, on Windows 95, DirectX (None: the key is missing)."""
    return {"ini": {("Folders", "DirectXCurrent"): current, ("Folders", "DirectX"): old,
                    ("Startup", "InstallDX"): install}, "folders": list(folders),
            "settings": f"[VokSetupTest]\r\n{report}\r\n", "installed": ("$", "$", 0),
            "win95": win95}


def ini_row(section, key, value):
    return {"ini": {(section, key): value}}


CONFIG_TRACE = [
    "WinMain: Initializing CltWinApp", "DISABLEMUTEX is empty.", "X is [a b]",
    "ModuleFileName is [$\\Launcher.exe]", "CltApp: Running application...",
    "LfxMain: Init started.", "LfxMain: PreIninitializeLauncher started.",
    "LfxMain: m_dwOptions is [0x00000000]", "LauncherDir is [$]", "Anchor is [Install]",
    "DataDir is [$\\Install]", "IniPath is [$\\Install\\setup.ini]"] + [
    f"LfxMain: \tGetIni{kind} - Section [{s}] Key [{k}] - Success [{v}]" if s else k
    for kind, s, k, v in [
        ("String", "Registry", "Company", "Launcher Tests"), ("String", "Registry", "Product", "row"),
        ("String", "Registry", "Version", "1.0"),
        ("", "", "RegistryFolder is [Software\\Launcher Tests\\row\\1.0]", ""),
        ("DWORD", "Startup", "InstallDX", "1"), ("String", "Startup", "AppType", "Retail"),
        ("", "", "InstallDir is empty.", ""), ("String", "Files", "Launcher", "Launcher.exe"),
        ("", "", "LauncherName is [Launcher.exe]", ""),
        ("String", "Startup", "DirectXVer", "7.0"), ("", "", "DirectXVersion is [7.0]", ""),
        ("String", "Url", "DirectX", "https://directx.example"),
        ("", "", "DirectXUrl is [https://directx.example]", ""), ("DWORD", "Startup", "Disks", "1"),
        ("", "", "LfxMain: m_nDisks is [1]", ""), ("String", "Files", "SetupDll", "VokSetup.dll")]
] + ["LfxMain: strSetupDll is [VokSetup.dll]", "ProductName is [Tarn]", "MediaName is [Tarn]",
     "Language is [INT]", "CharacterSet is [DEFAULT_CHARSET]",
     "LfxMain: PreInitializeLauncher completed.", "LfxMain: DetermineLauncherState started.",
     "SourceDir is [$]", "LfxMain: m_dwState is [2]", "LfxMain: CheckMutex started.",
     RUNNING, "LfxMain: PreCreateLauncher started.",
     "LfxMain: Running launcher...LfxMain: Page [INSTALL] shown.",
     # The window, asked to close, closes the help first.
     HELP_FAIL, "LfxMain: Destruction completed.", "CltApp: Destruction"]
PROBE = {"program": "assert_probe.exe"}
NO_DESTRUCTION = ["-CltApp: Destruction"]

# Each row: name, the setup (see start_row), the command line, what must be seen.
START_ROWS = [
    ("start: the whole trace of a start", {}, '-DISABLEMUTEX -x="a b"', {
        "trace": CONFIG_TRACE,  # a prefix and its message reach the debugger as two texts
        "texts": [(4, ["CltApp: ", "Running application...\n"]),
                  (-2, ["CltApp: ", "Destruction\n"])]}),
    # TraceWin hears only what is traced before the debugger's sink is in place: in its own
    # window when it is open, else in the older viewer's.
    ("start: TraceWin", {}, "-DISABLEMUTEX", {
        "viewer": REGISTRATIONS, "texts": [(0, ["WinMain: Initializing CltWinApp\n"])]}),
    ("start: the older trace viewer", {"viewer": "mfx"}, "-DISABLEMUTEX", {
        "viewer": REGISTRATIONS}),
    # While the first page is being put in place (its trace text holds the launcher still),
    # the window already has its region (complex) but is not shown yet: it appears complete.
    ("start: the first frame", {"skin": ["product.bmp", "product.rgn"],
                                "at trace": "Page [INSTALL] shown."}, "", {"at": "0 3"}),
    # System libraries come from the system only: decoys of every one the launcher pulls in
    # are never loaded, neither by the checks before the game (-I) nor by the window.
    ("start: planted libraries, the checks", dict(installed("$", "$"), planted=True), "-I", {
        "libraries": True, "boxes": [(("Tarn", SOUND_Q, "style=0x124"), 7)] * 2}),
    ("start: planted libraries, the window", dict(installed("$", "$"), planted=True), "",
     {"libraries": True}),
    # The assertion box: Retry shows the environment (in the order of its hash buckets),
    # Cancel does not; the exit code is 0.
    ("assertion: retry", PROBE, "-FAIL", {"lines": NO_DESTRUCTION, "boxes": [
        (PROBE_FAILS, 4), (("Environment Dump", "PROBENAME: Guru\nFAIL: \nPROBE EMPTY: \n"
                            "__UNDEFINED: [Undefined]\nMODULEFILENAME: $\\assert_probe.exe\n",
                            "style=0x0"), 1)]}),
    ("assertion: cancel", PROBE, "-FAIL", {"lines": NO_DESTRUCTION, "boxes": [(PROBE_FAILS, 2)]}),
    ("assertion: no environment", PROBE, "-NOENV", {"lines": NO_DESTRUCTION, "boxes": [
        (PROBE_FAILS, 4), (("Environment Dump", "No environment present!", "style=0x0"), 1)]}),
    # Where the launcher and its data folder are.
    ("where: drive root", {"at": "R:", "cwd": ""}, "-DISABLEMUTEX",
     {"lines": ["LauncherDir is [R:\\]", "DataDir is [R:\\Install]"]}),
    ("where: anchor with a value", {"anchor": "Data"}, "-DISABLEMUTEX -ANCHOR=Data",
     {"lines": ["ANCHOR is [Data]", "DataDir is [$\\Data]"]}),
    ("where: anchor without a value", {"anchor": ""}, "-DISABLEMUTEX -ANCHOR",
     {"lines": ["ANCHOR is empty.", "DataDir is [$]"]}),
    ("where: debug with a folder", {"at": "plain", "cwd": ""}, "-DISABLEMUTEX -DEBUG=$",
     {"lines": ["LfxMain: m_dwOptions is [0x0000000a]", "LauncherDir is [$]"]}),
    ("where: debug without a value", {"at": "plain"}, "-DISABLEMUTEX -DEBUG",
     {"lines": ["DEBUG is empty.", "LauncherDir is [$]", "DataDir is [$\\Install]"]}),
    # The state, the source folder and the hand-over to the installed launcher.
    ("state: installed without a path", installed("", "E:\\", 1), "-DISABLEMUTEX", {"lines": [
        "InstallDir is empty.", "SourceDir is [$]", "LfxMain: m_dwState is [2]", RUNNING],
        "recorded": ""}),
    ("state: from the media", installed("$-installed", "E:\\", 1), "-DISABLEMUTEX", {"lines": [
        "LfxMain: Comparing LauncherDir [$] and InstallDir [$-installed].", HAND_OVER,
        "-" + RUNNING], "recorded": "args=|cwd=$-installed\n"}),
    ("state: switch Y", installed("$-installed", "E:\\", 1), "-DISABLEMUTEX -Y", {"lines": [
        FROM_HD, "SourceDir is [E:\\]", STATE1, RUNNING, "LfxMain: strFilProduct is [Tarn.exe].",
        "LfxMain: strFilDir is [Game]."], "recorded": ""}),
    ("state: switch DEBUG", installed("$-installed", "E:", 1), "-DISABLEMUTEX -DEBUG",
     {"lines": ["SourceDir is [E:\\]", STATE1, RUNNING], "recorded": ""}),
    ("state: switch V", installed("$-installed", "D:\\Setup\\", 1), "-V", {"lines": [
        "SourceDir is [D:\\Setup]", "LfxMain: PreCreateLauncher started.", STATE1, RUNNING],
        "recorded": "", "boxes": [(("Tarn", VERSION, "style=0x0"), 1)]}),
    ("state: installed launcher missing", installed("$-installed", "D:\\Setup"), "-DISABLEMUTEX",
     {"lines": ["SourceDir is [D:\\Setup]", STATE1, RUNNING]}),
    ("state: uninstall requested", installed("$-installed", "E:\\"), "-DISABLEMUTEX -UNINSTALL",
     {"lines": ["LfxMain: m_dwState is [3]", RUNNING]}),
    ("state: uninstall requested with I: the window, not the game",
     installed("$-installed", "E:\\"), "-DISABLEMUTEX -I -UNINSTALL", {"lines": [
         "LfxMain: m_dwState is [3]", RUNNING, "LfxMain: Running launcher..." + HELP_FAIL]}),
    ("state: installed launcher that cannot be started", installed("$-installed", "E:\\", 2),
     "-DISABLEMUTEX", {"lines": [HAND_OVER, "-" + RUNNING], "boxes": [(CANNOT_START, 1)]}),
    ("state: same folder in another case", installed("lower", "E:\\"), "-DISABLEMUTEX",
     {"lines": [FROM_HD, RUNNING]}),
    ("state: same folder with a trailing backslash", installed("$\\", "E:\\"), "-DISABLEMUTEX",
     {"lines": [FROM_HD, RUNNING]}),
    ("state: no Source Dir", installed("$-installed", ""), "-DISABLEMUTEX",
     {"lines": ["SourceDir is [$-installed]", STATE1, RUNNING]}),
    # A switch puts ProductDir into the environment before start-up: an installed product
    # still looks for its game in its own folder.
    ("state: the game's folder whatever the switches say", installed("$", "$"),
     "-DISABLEMUTEX -ProductDir=X:\\Elsewhere -ProductExe=X:\\Elsewhere\\Other.exe",
     {"lines": ["ProductDir is [$\\Game]", "ProductExe is [$\\Game\\Tarn.exe]"]}),
    # One launcher at a time, and none while the game runs.
    ("instances: launcher running", {"hold": ["LauncherMutex-row"]}, "-V",
     {"lines": ["=LfxMain: Launcher is already running.", "-" + RUNNING]}),
    ("instances: game running", {"hold": ["GameMutex-row"]}, "-V",
     {"lines": ["=LfxMain: Game is already running.", "-" + RUNNING]}),
    ("instances: launcher and game running", {"hold": ["LauncherMutex-row", "GameMutex-row"]},
     "-V", {"lines": ["=LfxMain: Game is already running.", "-" + RUNNING]}),
    ("instances: neither running", {}, "",
     {"lines": ["LfxMain: Launcher, Game are not running.", RUNNING]}),
    # What the launcher cannot go on without: the assertion box, answered with Cancel.
    ("fatal: no data folder", {"remove": "Install"}, "", {"boxes": [
        (fatal('clt_IsDirectoryPresent(g_Env["DataDir"])', LFX, 173), 2)]}),
    ("fatal: no setup.ini", {"remove": "Install/setup.ini"}, "", {"boxes": [(NO_INI, 2)]}),
    ("fatal: setup library missing", ini_row("Files", "SetupDll", "Missing.dll"), "",
     {"boxes": [(fatal("m_hSetupDll!=0", LFX, 227), 2)]}),
    ("fatal: a setup library without its entry", {"library": "NoExport.dll"}, "",
     {"boxes": [(fatal("VokSetup_GetSetup!=0", LFX, 230), 2)]}),
    ("fatal: a setup library that refuses", {"library": "RefusingSetup.dll"}, "", {"boxes": [
        (fatal('VokSetup_GetSetup(g_Env["DataDir"],&m_pVokSetup)', LFX, 231), 2)]}),
    ("fatal: launcher mutex empty", ini_row("Mutex", "Launcher", ""), "",
     {"boxes": [(fatal("!strLauncherMutex.empty()", LFX, 336), 2)]}),
    ("fatal: game mutex missing", ini_row("Mutex", "Product", None), "",
     {"boxes": [(fatal("!strGameMutex.empty()", LFX, 337), 2)]}),
    ("fatal: launcher name missing", ini_row("Files", "Launcher", None), "",
     {"boxes": [(EMPTY_VALUE, 2)]}),
    ("fatal: DirectX version missing", ini_row("Startup", "DirectXVer", None), "",
     {"boxes": [(EMPTY_VALUE, 2)]}),
    # A retail product's disc: its label must begin with [Startup] Data.
    ("media: label GAME_DISC1", on_disc("F", "Retail", "1"), "-I", {"recorded": "args=|cwd=F:\\\n"}),
    ("media: label game, RETAIL", on_disc("I", "RETAIL", "1"), "-I",
     {"recorded": "args=|cwd=I:\\\n"}),
    ("media: label GAM", on_disc("G", "Retail", "1"), "-I",
     {"recorded": "", "boxes": [(INSERT, 2)]}),
    ("media: another disc of two", on_disc("H", "Retail", "2"), "-I",
     {"recorded": "", "boxes": [(INSERT_FIRST, 2)]}),
    ("media: another disc, asked again", on_disc("H", "Retail", "0"), "-I",
     {"recorded": "", "boxes": [(INSERT, 1), (INSERT, 2)]}),
    ("media: a demo asks for no disc", on_disc("G", "Demo", "1"), "-I",
     {"recorded": "args=|cwd=G:\\\n"}),
    # An installer the shell cannot start: one box, the launcher's, and none of the shell's.
    ("media: the installer missing", dict(on_disc("G", "Demo", "1"), ini={
        ("Startup", "AppType"): "Demo", ("Files", "Installer"): "Missing.exe"}), "-I",
     {"boxes": [(CANNOT_START, 1)]}),
    # DirectX as the setup library reports it: ready, or the launcher stops without a word,
    # or it cannot be installed, or the player declines; installed from the media, with or
    # without the restart that the player declines (the restart itself is a system row).
    ("directx: ready", directx(False, "DirectX", None, "DirectXState=1"), "-I", {"boxes": ASK2}),
    ("directx: stop silently", directx(False, "DirectX", None, "DirectXState=4"), "-I",
     {"boxes": []}),
    ("directx: not installable", directx(False, "DirectX", None, "DirectXState=2", "0"), "-I", {
        "boxes": [(("Tarn", "Tarn needs DirectX 7.0 or later.\n\nPlease install DirectX from "
                    "https://directx.example and start Tarn again.", "style=0x40"), 1)]}),
    ("directx: installation declined", directx(False, "DirectX", None), "-I",
     {"boxes": [(OFFER, 7)]}),
    ("directx: the folder not on the media", directx(False, "DirectX", None, folders=()), "-I", {
        "boxes": [(OFFER, 6), (("DirectX Setup", "The DirectX folder was not found on the Tarn "
                                "disc.", "style=0x0"), 1)]}),
    # The setup library runs DirectX's setup program and waits for its exit code (0: no
    # restart); the library the demo ships ignores the settings that steer the test build.
    ("directx: the setup program", dict(directx(False, "DirectX", None, "DirectXState=2"),
                                        recorder="DirectX/DXSETUP.exe"), "-I",
     {"boxes": [(OFFER, 6)] + ASK2, "recorded": "args=/silent|cwd=$\\DirectX\n"}),
    ("directx: the shipped library", dict(directx(False, "DirectX", None, "DirectXState=4\r\n"
                                                  "Displays=0"), shipped=True), "-I",
     {"boxes": ASK2}),
    ("directx: restart declined", directx(False, "DirectX", None, "DirectXState=2\r\n"
                                          "DirectXInstall=1"), "-I",
     {"boxes": [(OFFER, 6), (RESTART_Q, 7)]}),
    # Windows 95 installs from DX95 although DirectXCurrent names no folder, and goes on to
    # the checks before the game.
    ("directx: current folder missing", directx(False, None, "DX95"), "-I", {"boxes": [
        (OFFER, 6), (fatal("GetIniString(SCT_FOLDERS,VAL_DIRECTX_CURRENT,strDirectX)", LFX, 1181),
                     2)]}),
    ("directx: Windows 95 folder missing", directx(True, "DirectX", None), "-I", {"boxes": [
        (OFFER, 6), (fatal("GetIniString(SCT_FOLDERS,VAL_DIRECTX,strDirectX)", LFX, 1198), 2)]}),
    ("directx: Windows 95 folder", directx(True, "Missing", "DX95"), "-I",
     {"boxes": [(OFFER, 6)] + ASK2}),
]


def launcher_processes():
    """The running programs named Launcher.exe in the rows' folders (a program under Wine
    shows its Windows command line)."""
    out = subprocess.run(["ps", "-eo", "args"], capture_output=True, text=True).stdout
    ours = [line.split(" ")[0].strip('"').lower() for line in out.splitlines()]
    return sum(p.startswith(wine_path(WORK).lower()) and p.endswith("\\launcher.exe")
               for p in ours)


def many_at_once(name, args, media):
    """Twenty launchers started at the same moment: exactly one goes on (to its version box,
    to its window, or, for copies on the media, the installed launcher to its window) and the
    others end quietly with exit code 0. A launcher that goes on holds the launcher mutex
    until it ends, so nothing is answered or closed until all others have ended."""
    folder, copy = fresh(os.path.join(WORK, "twenty")), fresh(os.path.join(WORK, "twenty-copy"))
    start_product(folder, {})
    values = {}
    if media:
        start_product(copy, {})
        values = {"Installed": 2, "Install Path": wine_path(copy), "Source Dir": "E:\\"}
    regedit(reg_values(START_KEY, values))
    traces = [os.path.join(folder, f"trace{i}.bin") for i in range(20)]
    reports = [t + ".txt" for t in traces]
    runs = [subprocess.Popen(["wine", os.path.join(BIN, "RunProbe.exe"), "run", "/leave",
                              "/out:" + wine_path(t), wine_path(folder) + "\\Launcher.exe", args],
                             env=ENV, stdin=subprocess.DEVNULL, stdout=open(r, "w"),
                             stderr=subprocess.DEVNULL) for t, r in zip(traces, reports)]
    try:
        wait_for(lambda: sum(r.poll() is not None for r in runs) == 19 + media,
                 "all but the one that goes on to end", timeout=60)
        if args:
            box("Tarn", 1)
        else:
            wait_for(lambda: launcher_processes() == 1, "one launcher", timeout=60)
            wait_for(lambda: len(x_windows("^Tarn$")) == 1, "one window", timeout=60)
            expect(no_box("Tarn"), True, "no box")
            run_wine(os.path.join(BIN, "WinProbe.exe"), "Tarn", "close")
            wait_for(lambda: launcher_processes() == 0, "no launcher", timeout=60)
        for r in runs:
            r.wait(60)
    finally:
        for r in runs:
            r.kill()
        regedit(reg_values(START_KEY, {}))
    expect([read_file(r).splitlines()[-1:] for r in reports], [["exit\t0"]] * 20, "the exit codes")
    # Launchers that start together also see each other's momentary test of the game's
    # mutex, so a refused launcher reports either a running launcher or a running game.
    lines = [read_trace(t)[1] for t in traces]
    count = lambda *wanted: sum(any(w in l for w in wanted) for l in lines)
    expect(count("LfxMain: Launcher, Game are not running."), 0 if media else 1, "went on")
    expect(count("LfxMain: Launcher is already running.", "LfxMain: Game is already running."),
           0 if media else 19, "refused")
    expect(count(HAND_OVER), 20 if media else 0, "handed over")


# The system changed (in a throwaway copy of the prefix, see main): the system's DSOUND.DLL
# replaced by one that does not load, one without DirectSoundCreate and one whose device
# refuses the cooperative level; after each failure the product asks whether to play without
# sound. Then a restart for DirectX, which ends every program of the prefix.
GAME_ROW = dict(installed("$", "$"), recorder="Game/Tarn.exe", folders=["DirectX", "GameData"],
                settings="[VokSetupTest]\r\nDirectXState=1\r\n")
NOT_STARTED, ASK = CANNOT_START, ASK2[0][0]
REFUSED = ("Tarn", SOUND_Q, "style=0x10")
START_ROWS += [
    ("system: Wine's DirectSound without a device", dict(GAME_ROW, dsound=""), "-I",
     {"boxes": [(ASK, 6)], "recorded": "args=|cwd=$\\GameData\n"}),
    ("system: DirectSound not a library", dict(GAME_ROW, dsound="garbage"), "-I",
     {"boxes": [(NOT_STARTED, 1), (ASK, 7)], "recorded": ""}),
    ("system: DirectSound without DirectSoundCreate", dict(GAME_ROW, dsound="noentry"), "-I",
     {"boxes": [(NOT_STARTED, 1), (ASK, 7)], "recorded": ""}),
    ("system: DirectSound refusing the cooperative level", dict(GAME_ROW, dsound="nocoop"), "-I",
     {"boxes": [(REFUSED, 1), (ASK, 7)], "recorded": ""}),
    ("system: the restart for DirectX", dict(GAME_ROW, settings="[VokSetupTest]\r\n"
                                             "DirectXState=2\r\nDirectXInstall=1\r\n"), "-I",
     {"restart": True, "boxes": [(OFFER, 6), (RESTART_Q, 6)]}),
]
# The demo product's helper programs as the launcher starts them, in the data folder with
# one key: unknown keys are reported, never a crash; known ones open their document in the
# program the system has for it, or their web address in the registered browser.
START_ROWS += [(f"helpers: {helper} {key or 'without a key'}", {"helper": helper}, key, {
    "exit": "1", "boxes": [(("Tarn", f"No {what} is known by the name [{key}].", "style=0x30"), 1)]})
    for helper, key, what in [("Doc.exe", "MANUAL", "document"), ("Doc.exe", "", "document"),
                              ("Url.exe", "README", "web address")]]
START_ROWS += [
    ("system: a document opens with the shell", {"helper": "Doc.exe"}, "README",
     {"window": "Notepad"}),
    ("system: a web address opens in the browser", {"helper": "Url.exe", "browser": True},
     "HOMEPAGE", {"recorded": 'args="https://tarn.example"|cwd=' +
                  wine_path(os.path.join(DEMO, "Install")) + "\n"}),
]
MANY_ROWS = [("many at once: version box", "-V", False), ("many at once: window", "", False),
             ("many at once: hand-over", "", True)]


# --- The product checker: the demo product, and copies of it broken one fault at a time ------

def run_check(*args, cwd=None):
    """ProductCheck.exe run as a publisher runs it: (exit code, output, errors), line breaks
    as written."""
    r = subprocess.run(["wine", os.path.join(BIN, "ProductCheck.exe"), *args], env=ENV, cwd=cwd,
                       capture_output=True, stdin=subprocess.DEVNULL)
    return r.returncode, r.stdout.decode("latin-1"), r.stderr.decode("latin-1")


def ini_lines(data):
    """setup.ini's lines, whichever line breaks it has."""
    return read_file(os.path.join(data, "setup.ini"), "rb").decode("latin-1").replace(
        "\r\n", "\n").split("\n")


def ini_line(line, replacement):
    """setup.ini's first line equal to line becomes replacement (lines, or none)."""
    def change(data):
        path = os.path.join(data, "setup.ini")
        lines = ini_lines(data)
        lines[lines.index(line):lines.index(line) + 1] = replacement.split("\r\n") if \
            replacement else []
        write(path, "\r\n".join(lines).encode("latin-1"))
    return change


def appended(text):
    return lambda data: write(os.path.join(data, "setup.ini"),
                              ("\r\n".join(ini_lines(data)) + text).encode("latin-1"))


def patched(name, at, value):
    def change(data):
        b = bytearray(read_file(os.path.join(data, name), "rb"))
        struct.pack_into("<I", b, at, value)
        write(os.path.join(data, name), bytes(b))
    return change


def library(built):
    return lambda data: shutil.copy(os.path.join(BIN, built), os.path.join(data, "VokSetup.dll"))


def texts(settings):
    """The test build of the setup library, its texts set by [VokSetupTest] Text_XXXX keys."""
    return each(library("VokSetup.dll"), appended("[VokSetupTest]\r\n" + settings + "\r\n"))


def tga(w, h):
    return tga32(w, h, lambda x, y: (192, 128, 64, 255))


def bmp8(w, h):
    """An uncompressed BMP of 8 bits a pixel with a grey palette."""
    row, offset = (w + 3) & ~3, 14 + 40 + 1024
    return struct.pack("<2sI4xIIiiHH2I8x2I", b"BM", offset + row * h, offset, 40, w, h, 1, 8, 0,
                       row * h, 256, 0) + struct.pack("<256I", *range(0, 0x1000000, 0x010101)) + \
        b"\7" * (row * h)


def pcm(tag, size):
    """A wave file of that format tag, 16-bit mono at 22050 Hz, with size data bytes."""
    return struct.pack("<4sI8sIHHIIHH4sI", b"RIFF", 36 + size, b"WAVEfmt ", 16, tag, 1, 22050,
                       44100, 2, 16, b"data", size) + bytes(size)


def check_row(name, change, expected):
    """The checker's report on a copy of the demo product with one fault: exactly the lines
    expected ("{TEXT}" is the number of setup.ini's first line that is TEXT, "{TEXT#2}" of
    the second), then the count."""
    folder = os.path.join(WORK, "fault")
    shutil.copytree(DEMO, fresh(folder), dirs_exist_ok=True)
    change(os.path.join(folder, "Install"))
    ini = ini_lines(os.path.join(folder, "Install"))

    def number(m):
        text, _, nth = m.group(1).partition("#")
        return str([i + 1 for i, line in enumerate(ini) if line == text][int(nth or 1) - 1])
    lines = [re.sub(r"\{([^}]*)\}", number, "Install\\setup.ini:" * (e[0] == "{") + e)
             for e in expected]
    code, out, _ = run_check(wine_path(folder))
    expect(out.split("\r\n"), lines + [f"{len(lines)} problem{'s' * (len(lines) != 1)} found in "
                                       f"{wine_path(folder)}.", ""], "the report")
    expect(code, 1, "exit code")


STOPS = "; the launcher stops at start-up (assertion "
LIB = "Install\\VokSetup.dll: "
NO_DISPLAY = LIB + "has no export VokSetup_HardwareSetup; no display device is listed, so Play " \
                   "shows text 0x7884 and starts nothing"
PLAIN = "; the window is a plain rectangle"
FORMS = " (the launcher reads BMP files of 24 bits and TGA files of 24 or 32 bits, uncompressed " \
        "or run-length encoded, as skinbuild writes them)"
# Each row: name, the fault, the report's lines; a line that begins with "{" is setup.ini's.
CHECK_ROWS = [
    # setup.ini: values the launcher cannot start without (its report goes section by section).
    ("check: values the launcher cannot start without", each(
        ini_line("Launcher=Launcher.exe", ""), ini_line("DirectXVer=7.0", "DirectXVer="),
        ini_line("Product=TarnGameMutex", ""), ini_line("SetupDll=VokSetup.dll", ""),
        ini_line("InstallDX=0", "InstallDX=1"), ini_line("DirectXCurrent=DirectX", "")),
     ["{DirectXVer=}: [Startup] DirectXVer is empty" + STOPS + "!strSecond.empty())",
      "{[Files]}: [Files] Launcher is missing" + STOPS + "!strSecond.empty())",
      "{[Files]}: [Files] SetupDll is missing" + STOPS + "m_hSetupDll!=0)",
      "{[Mutex]}: [Mutex] Product is missing" + STOPS + "!strGameMutex.empty())",
      "{[Folders]}: [Folders] DirectXCurrent is missing; installing DirectX stops the launcher "
      "(assertion GetIniString(SCT_FOLDERS,VAL_DIRECTX_CURRENT,strDirectX))"]),
    # setup.ini: values of the wrong form, and what they name.
    ("check: values of the wrong form", each(
        ini_line("AppType=Retail", "AppType=demo"), ini_line("Disks=1", "Disks=two"),
        ini_line("RAM=64", "RAM=123456"), remove("TarnSetup.exe"), ini_line("Product=Tarn.exe", ""),
        *(ini_line(k, "") for k in ("Company=Tarn Games", "Product=Tarn", "Version=1.0"))),
     ['{Disks=two}: [Startup] Disks is "two", not a whole number; the launcher reads 0',
      "{RAM=123456}: [SysCheck] RAM is 123456, which the launcher takes for a missing value",
      "{[Registry]}: [Registry] Company, Product and Version are all missing; the launcher "
      "looks for the product's registry values directly under HKEY_LOCAL_MACHINE\\Software",
      '{AppType=demo}: [Startup] AppType is "demo", neither "Demo" (case counts) nor "Retail"; '
      "the launcher treats the product as a full one without a disc check",
      "{Installer=TarnSetup.exe}: [Files] Installer names TarnSetup.exe, which is not in "
      "Install; the Install button shows text 0x5007",
      "{[Files]}: [Files] Product is missing; Play opens the game's folder instead of starting "
      "the game"]),
    ("check: what the values name", each(
        ini_line("DirectXVer=7.0", "DirectXVer=7.0\r\nDirectXVersion=7.0"),
        ini_line("Data=TARN", ""), ini_line("InstallDX=0", "InstallDX=1"),
        ini_line("Launcher=Launcher.exe", "Launcher=Launch.exe"),
        ini_line("Installer=TarnSetup.exe", ""),
        lambda data: os.rename(os.path.join(data, "VokSetup.dll"), os.path.join(data, "Setup.dll")),
        ini_line("SetupDll=VokSetup.dll", "SetupDll=Setup.dll")),
     ["{DirectXVersion=7.0}: [Startup] DirectXVersion is not a key the launcher reads",
      "{[Startup]}: [Startup] Data is missing; the disc check of a retail product accepts any "
      "disc",
      "{DirectXCurrent=DirectX}: [Folders] DirectXCurrent names DirectX, which is not in the "
      "product folder; installing DirectX shows text 0xD047 instead",
      "{Launcher=Launch.exe}: [Files] Launcher names Launch.exe, which is not in the product "
      "folder; the disc check and the hand-over to the installed launcher look for that name",
      "{[Files]}: [Files] Installer is missing; the Install button opens the data folder "
      "instead of running an installer",
      "{SetupDll=Setup.dll}: [Files] SetupDll names Setup.dll, but the display check always "
      "loads VokSetup.dll, which is not in Install; Play shows text 0x7884 and starts nothing"]),
    # setup.ini: what the system's reader hides.
    ("check: what the system's reader hides", each(
        ini_line("Launcher=Launcher.exe", "Launcher=Launcher.exe\r\nLauncher=x"),
        ini_line("Data=TARN", "Data TARN"), appended("[Files]\r\nCmdLine=/S\r\n")),
     ["{[Files]#2}: [Files] appears again (first on line {[Files]}); write its keys under the "
      "first one",
      '{Data TARN}: "Data TARN" in [Startup] has no "="; the launcher ignores the line',
      "{Launcher=x}: [Files] Launcher appears again (first on line {Launcher=Launcher.exe}); the "
      "launcher uses the first",
      "{CmdLine=/S}: [Files] CmdLine appears again (first on line {CmdLine=}); the launcher uses "
      "the first",
      "{[Startup]}: [Startup] Data is missing; the disc check of a retail product accepts any "
      "disc"]),
    ("check: byte-order mark", lambda data: write(os.path.join(data, "setup.ini"), b"\xEF\xBB\xBF" +
                                                  read_file(os.path.join(data, "setup.ini"), "rb")),
     ["Install\\setup.ini:1: starts with a UTF-8 byte-order mark; Windows reads it as part of "
      "the first line, so [Registry] is not found"]),
    ("check: setup.ini missing", remove("setup.ini"),
     ["Install\\setup.ini: missing" + STOPS + 'clt_IsFilePresent(g_Env["IniPath"]))']),
    # The setup library.
    ("check: setup library named but absent", ini_line("SetupDll=VokSetup.dll", "SetupDll=Game.dll"),
     ["Install\\Game.dll: missing" + STOPS + "m_hSetupDll!=0)"]),
    ("check: not a library", replace("VokSetup.dll", b"MZ, but no more"),
     [LIB + "cannot be loaded (error 193: not a Windows library for this processor)" + STOPS +
      "m_hSetupDll!=0)"]),
    ("check: library without exports", library("NoExport.dll"),
     [LIB + "has no export VokSetup_GetSetup" + STOPS + "VokSetup_GetSetup!=0)", NO_DISPLAY]),
    ("check: library refusing its object", library("RefusingSetup.dll"),
     [LIB + "VokSetup_GetSetup gives no setup object" + STOPS +
      'VokSetup_GetSetup(g_Env["DataDir"],&m_pVokSetup))', NO_DISPLAY]),
    ("check: product name empty", texts("Text_FF00="),
     [LIB + "text 0xFF00 is empty" + STOPS + "!strSecond.empty())"]),
    ("check: label empty, reference misspelt",
     texts("Text_1004=\r\nText_5013=No sound for $[ProductNmae]."),
     [LIB + "text 0x1004 is empty; the Exit buttons have no label",
      LIB + "text 0x5013 refers to $[ProductNmae], which the launcher does not set; the player "
      'reads "[Undefined]"']),
    # The skin.
    ("check: background unreadable", truncate("product.bmp", 1000),
     ["Install\\product.bmp: cannot be read by the launcher's picture reader" + FORMS +
      "; the window is 500 x 460 in a plain dark colour",
      "Install\\product.rgn: has 6 of 78 rectangles reaching outside the 500 x 460 background, "
      "the first 73 (74, 460, 118, 461); it was made for another picture, and the window's "
      "outline does not follow this one"]),
    ("check: caption and button pictures", each(
        truncate("active.tga", 0), replace("inactive.tga", tga(400, 30)),
        replace("ovrmin.tga", tga(10, 10)), replace("close.tga", tga(25, 1)), remove("selmin.tga"),
        replace("pressed.tga", tga(270, 41)), replace("focused.tga", b"not a picture")),
     ["Install\\active.tga: is empty; the caption bar shows the background while the window is "
      "active",
      "Install\\inactive.tga: is 400 x 30; the caption bar is 500 x 30",
      "Install\\close.tga: is 25 x 1; the launcher reads the key colour at (0, 1), so the close "
      "button is invisible while the pointer is elsewhere",
      "Install\\ovrmin.tga: is 10 x 10, smaller than the 25 x 23 area where the pointer makes "
      "the button react",
      "Install\\selmin.tga: missing; the minimise button is invisible while it is held down",
      "Install\\focused.tga: cannot be read by the launcher's picture reader" + FORMS +
      "; page buttons show only their labels while focused",
      "Install\\pressed.tga: is 270 x 41, but unselect.tga is 270 x 40; the buttons change size "
      "between looks"]),
    ("check: page faces too wide", each(*(replace(face, tga(320, 40)) for face in (
        "unselect.tga", "focused.tga", "pressed.tga"))),
     ["Install\\unselect.tga: is 320 x 40; a page of five buttons reaches (514, 428), past the "
      "500 x 470 background, and is cut off there"]),
    ("check: background with a palette", replace("product.bmp", bmp8(500, 470)),
     ["Install\\product.bmp: has a palette of colours, which the launcher does not keep" + FORMS +
      "; the picture shows in wrong colours"]),
    ("check: region missing", remove("product.rgn"), ["Install\\product.rgn: missing" + PLAIN]),
    ("check: region header cut", truncate("product.rgn", 20),
     ["Install\\product.rgn: is 20 bytes, shorter than its 32-byte header" + PLAIN]),
    ("check: region rectangles cut", truncate("product.rgn", 100),
     ["Install\\product.rgn: counts 78 rectangles, but its 100 bytes hold 4" + PLAIN]),
    ("check: region header of 16 bytes", patched("product.rgn", 0, 16),
     ["Install\\product.rgn: has a header size of 16, not 32; Windows refuses the region and the "
      "window is a plain rectangle"]),
    ("check: region of another type", patched("product.rgn", 4, 2),
     ["Install\\product.rgn: has region type 2, not 1; Windows refuses the region and the window "
      "is a plain rectangle"]),
    ("check: region without rectangles", patched("product.rgn", 8, 0),
     ["Install\\product.rgn: holds no rectangle; the window is invisible"]),
    ("check: region wider than the picture", patched("product.rgn", 40, 600),
     ["Install\\product.rgn: has 1 of 78 rectangles reaching outside the 500 x 470 background, "
      "the first 1 (8, 0, 600, 1); it was made for another picture, and the window's outline "
      "does not follow this one"]),
    ("check: region with an empty rectangle", patched("product.rgn", 40, 8),
     ["Install\\product.rgn: has an empty rectangle 1 (8, 0, 8, 1); Windows may refuse the "
      "region, and then the window is a plain rectangle"]),
    # The sounds, and the programs the buttons start.
    ("check: sounds and programs", each(
        remove("CLICK.wav"), replace("START.wav", b"ID3 and an MP3"),
        replace("OPEN.wav", pcm(2, 400)), replace("HOVER.wav", pcm(1, 0)), remove("Syscheck.exe"),
        remove("Doc.exe")),
     ["Install\\OPEN.wav: is not PCM (format tag 0x0002); the opening window plays Windows' "
      "default sound instead",
      "Install\\CLICK.wav: missing; a page button's click plays Windows' default sound instead",
      "Install\\START.wav: is not a RIFF WAVE file; starting the game plays Windows' default "
      "sound instead",
      'Install\\HOVER.wav: holds no sound (its "data" chunk is empty); a page button taking the '
      "focus is silent",
      "Install\\Syscheck.exe: missing; the System Check button shows text 0x5007",
      "Install\\Doc.exe: missing; the Read Me, troubleshooting guide and licence buttons show "
      "text 0x5007"]),
]


def check_program(name):
    """The checker as a publisher runs it: the demo passes, and without the data folder that
    it is told of fails at once; a copy with two faults, named relative to the current folder
    and its data folder named; a folder that is not there; no folder at all."""
    demo = wine_path(DEMO)
    expect(run_check(demo), (0, f"No problems found in {demo}.\r\n", ""), "the demo product")
    expect(run_check(demo, "Data")[:2], (1, "Data: the data folder is missing" + STOPS +
                                         'clt_IsDirectoryPresent(g_Env["DataDir"]))\r\n'
                                         f"1 problem found in {demo}.\r\n"), "no data folder")
    copy = os.path.join(WORK, "Product")
    shutil.copytree(DEMO, fresh(copy), dirs_exist_ok=True)
    os.rename(os.path.join(copy, "Install"), os.path.join(copy, "Data"))
    for name in ("CLICK.wav", "Url.exe"):
        os.remove(os.path.join(copy, "Data", name))
    expect(run_check("Product\\", "Data", cwd=WORK)[:2], (1, (
        "Data\\CLICK.wav: missing; a page button's click plays Windows' default sound instead\r\n"
        "Data\\Url.exe: missing; the web site button shows text 0x5007\r\n"
        f"2 problems found in {wine_path(copy)}.\r\n")), "a copy with two faults")
    expect(run_check(wine_path(copy) + "\\Nothing"), (
        2, "", f"ProductCheck: {wine_path(copy)}\\Nothing is not a folder\r\n"), "no folder")
    expect(run_check(), (2, "", "usage: ProductCheck PRODUCT_FOLDER [DATA_FOLDER_NAME]\r\n"),
           "no arguments")


def system_check(name):
    """The demo's system check as the launcher starts it, in its data folder: its window shows
    the machine's figures, and closed, it ends with exit code 0."""
    data = os.path.join(DEMO, "Install")
    check = subprocess.Popen(["wine", os.path.join(data, "Syscheck.exe")], cwd=data, env=ENV,
                             stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL)
    probe = lambda *command: run_wine(os.path.join(BIN, "WinProbe.exe"), "class=TarnSysCheck",
                                      *command)
    try:
        lines = wait_for(lambda: probe("text", "1"), "the report").split("\n")
        expect([line.split(":")[0] for line in lines[:3]] + lines[3:],
               ["Physical memory", "Paging space", "Windows version", "Display devices:",
                "    DirectDraw HAL", "DirectX: ready"], "the report")
        probe("close")
        expect(check.wait(TIMEOUT), 0, "exit code")
    finally:
        check.kill()


def run_row(name, product, launcher, steps):
    if product.get("target"):
        shutil.rmtree(product["target"], ignore_errors=True)
    p = Product(name.replace(" ", "_").replace(":", "").replace(",", ""), **product)
    p.runs = {}
    home = viewer = None
    if launcher.get("sound"):
        # A HOME whose ALSA configuration makes the default device write what it plays to
        # HOME/capture.raw, and each sound after the first to a new file beside it.
        home = os.path.join(WORK, p.name + "-home")
        os.makedirs(home, exist_ok=True)
        with open(os.path.join(home, ".asoundrc"), "w") as f:
            f.write('pcm.!default {\n  type file\n  slave.pcm "null"\n  file "%s"\n'
                    '  format "raw"\n  truncate false\n}\n' % os.path.join(home, "capture.raw"))
        for f in os.listdir(home):
            if f.startswith("capture.raw"):
                os.remove(os.path.join(home, f))
    if launcher.get("help"):  # a recorder of the window class WinHelp talks to
        log = os.path.join(p.folder, "help.log")
        viewer = start_wine(os.path.join(BIN, "help_recorder.exe"), wine_path(log))
        wait_for(lambda: read_file(log) == "ready\n", "the help viewer's window")
    dpi = launcher.get("dpi", 96)
    if dpi != 96:  # read by each program as it starts, for the whole row
        run_wine("reg", "add", "HKCU\\Control Panel\\Desktop", "/v", "LogPixels", "/t", "REG_DWORD",
                 "/d", str(dpi), "/f")
    l = Launcher(p, launcher.get("args", ()), launcher.get("size", (500, 470)),
                 launcher.get("park", (90, 400)), home, dpi)
    try:
        for i, s in enumerate(steps):
            try:
                if s[0] == "installed launcher":  # the one the installer left in that folder
                    l.close()
                    p = installed_product(s[1])
                    p.runs = {}
                    l = Launcher(p)
                else:
                    step(l, p, s)
            except Failure as e:
                raise Failure(f"step {i + 1} {s[0]!r}: {e}")
    finally:
        l.close()
        if dpi != 96:
            run_wine("reg", "delete", "HKCU\\Control Panel\\Desktop", "/v", "LogPixels", "/f")
        if viewer:
            viewer.kill()
            viewer.wait()
        if product.get("target"):  # the installer's registry values go with its copy
            p.set_state(False)


def throwaway_prefix(use):
    """Rows that change the system or restart it run in a throwaway copy of the session's
    prefix with a wineserver of its own; the session's own prefix is never touched."""
    prefix, own = os.path.join(SESSION, "throwaway"), os.path.join(SESSION, "prefix")
    if use:
        shutil.rmtree(prefix, ignore_errors=True)
        subprocess.run(["cp", "-a", own, prefix], check=True)
        ENV["WINEPREFIX"] = prefix
        subprocess.run(["wineserver", "-p"], env=ENV, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        # Wine's services, started now, detached from our output (they outlive the command).
        subprocess.run(["wine", "cmd", "/c", "exit"], env=ENV, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    else:
        subprocess.run(["wineserver", "-k"], env=ENV, stderr=subprocess.DEVNULL)
        subprocess.run(["wineserver", "-w"], env=ENV)
        ENV["WINEPREFIX"] = own
        shutil.rmtree(prefix, ignore_errors=True)


def main():
    os.makedirs(WORK, exist_ok=True)
    only = sys.argv[5:]
    if not only:  # a run of single rows leaves the pictures of the full run alone
        shutil.rmtree(SHOTS, ignore_errors=True)
    passed = failed = 0
    for run, row in [(run_row, r) for r in ROWS] + [(start_row, r) for r in START_ROWS] + [
            (many_at_once, r) for r in MANY_ROWS] + [(check_row, r) for r in CHECK_ROWS] + [
            (check_program, ("check: the program's reports and exit codes",)),
            (system_check, ("helpers: the system check",))]:
        group = row[0].split(":")[0] + ":"
        if (only and row[0] not in only and group not in only) or (
                not only and row[0].startswith("8-bit")):
            continue
        if (group == "system:") != (ENV["WINEPREFIX"] != os.path.join(SESSION, "prefix")):
            throwaway_prefix(group == "system:")
        start = time.monotonic()
        try:
            run(*row)
            print(f"[ PASSED ] {row[0]} ({time.monotonic() - start:.1f} s)", flush=True)
            passed += 1
        except Exception as e:  # a row that breaks fails alone
            print(f"[ FAILED ] {row[0]} ({time.monotonic() - start:.1f} s): "
                  f"{e if isinstance(e, Failure) else repr(e)}", flush=True)
            failed += 1
    if ENV["WINEPREFIX"] != os.path.join(SESSION, "prefix"):
        throwaway_prefix(False)
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
