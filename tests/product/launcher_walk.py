#!/usr/bin/env python3
"""The launcher's window used as a player uses it, one row per scenario: the real
Launcher.exe under Wine in a copy of the demo product, real pointer and keyboard input from
outside (xdotool on the session's display), message boxes found, read and answered from
outside (BoxProbe.exe), the window read from outside (WinProbe.exe), the trace read as it is
written (TraceRun.exe), the sounds read from a capturing sound device, and the screen read
from screenshots.

    launcher_walk.py SESSION_DIR BIN_DIR DEMO_PRODUCT OUT_DIR [ROW...]
    launcher_walk.py SESSION_DIR BIN_DIR DEMO_PRODUCT OUT_DIR --demo

Every step waits for what it checks. The programs the launcher starts are recorders
(test_helper.exe) that write their command line and folder. The demo's pages are saved in
OUT_DIR/launcher-shots/ for the golden comparison. --demo is not a test: it is the walk
tools/run-demo takes, saving each page and the traces in OUT_DIR/walk/.
"""
import array
import ctypes
import math
import os
import random
import shutil
import subprocess
import sys
import time
import wave

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, "..", "support"), os.path.join(HERE, "..", "..", "tools")]
from wine_session import session_env, wine_path  # noqa: E402
import make_icon  # noqa: E402

SESSION, BIN, DEMO, OUT = (os.path.abspath(a) for a in sys.argv[1:5])
WORK = os.path.join(OUT, "launcher-window")
SHOTS = os.path.join(OUT, "launcher-shots")
TIMEOUT = 15.0
SCREEN_W, SCREEN_H = 1280, 1024
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


def expect(actual, expected, what):
    if actual != expected:
        raise Failure(f"{what}: {actual!r}, expected {expected!r}")


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


def x_position(name):
    """Where the display shows the top-level window of that title: (x, y), or None."""
    out = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{name}$",
                          "getwindowgeometry"], env=ENV,
                         capture_output=True, text=True).stdout
    at = [line.split()[1] for line in out.splitlines() if line.strip().startswith("Position:")]
    return tuple(int(v) for v in at[0].split(",")) if at else None


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
    """A screenshot of the whole display, read as RGB."""

    def __init__(self):
        data = subprocess.run(["import", "-window", "root", "-depth", "8", "ppm:-"], env=ENV,
                              check=True, capture_output=True).stdout
        parts = data.split(b"\n", 3)  # P6, W H, 255, the pixels
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


def read_bmp24(path):
    """A reader of a bottom-up 24-bit BMP: points -> {point: (r, g, b)}."""
    data = read_file(path, "rb")
    offset, w, h = (int.from_bytes(data[i:i + 4], "little") for i in (10, 18, 22))
    row = (w * 3 + 3) & ~3

    def pixels(points):
        out = {}
        for x, y in points:
            i = offset + (h - 1 - y) * row + x * 3
            out[(x, y)] = tuple(data[i + 2:i + 3] + data[i + 1:i + 2] + data[i:i + 1])
        return out if len(data) >= offset + row * h else {}
    return pixels


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
    row = bytes([rgb[2], rgb[1], rgb[0]]) * w + bytes(stride - w * 3)
    header = b"BM" + (54 + stride * h).to_bytes(4, "little") + bytes(4) + \
        (54).to_bytes(4, "little")
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
    header = [32, 1, len(rects), 16 * len(rects), min(r[0] for r in rects), rects[0][1],
              max(r[2] for r in rects), rects[-1][3]]
    return b"".join(v.to_bytes(4, "little", signed=True) for v in header) + \
        b"".join(v.to_bytes(4, "little", signed=True) for r in rects for v in r)


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


def garbage_faces(data):
    for name in ("unselect.tga", "focused.tga", "pressed.tga"):
        write(os.path.join(data, name), bytes(range(256)) * 8)


# --- The product and the launcher ----------------------------------------------------------

class Product:
    """A copy of the demo product with a setup.ini of its own (registry key and mutexes) and
    recorders in place of the programs the launcher starts."""

    def __init__(self, name, installed=False, ini=None, setup_dll=None, no_setup=False,
                 skin=None, sounds=None, disc=False, target=None):
        self.name = name
        self.folder = os.path.join(WORK, name)
        shutil.rmtree(self.folder, ignore_errors=True)
        shutil.copytree(DEMO, self.folder)
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
        self.write_ini(values)
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

    def write_ini(self, values):
        """Sets the given keys of setup.ini (None removes a key)."""
        path = os.path.join(self.data, "setup.ini")
        values, lines, section = dict(values), [], None
        for line in read_file(path).splitlines():
            s = line.strip()
            if s.startswith("["):
                section = s[1:-1]
            elif "=" in s and not s.startswith(";") and (section, s.split("=")[0]) in values:
                value = values.pop((section, s.split("=")[0]))
                if value is None:
                    continue
                line = s.split("=")[0] + "=" + value
            lines.append(line)
        for (section, key), value in values.items():  # keys the file did not have
            if value is not None:
                lines += [f"[{section}]", f"{key}={value}"]
        with open(path, "w", encoding="latin-1", newline="\r\n") as f:
            f.write("\n".join(lines) + "\n")

    def set_state(self, installed):
        """No registry key, or the product installed in its own folder."""
        key = self.key.replace("HKLM", "HKEY_LOCAL_MACHINE")
        text = f"REGEDIT4\r\n\r\n[-{key}]\r\n"
        if installed:
            folder = wine_path(self.folder).replace("\\", "\\\\")
            text += (f'\r\n[{key}]\r\n"Installed"=dword:00000002\r\n'
                     f'"Install Path"="{folder}"\r\n"Source Dir"="{folder}"\r\n'
                     f'"UninstallString"="{folder}\\\\Uninstall.exe"\r\n')
        reg = os.path.join(WORK, self.name + ".reg")
        with open(reg, "w", newline="") as f:
            f.write(text)
        run_wine("regedit", "/S", wine_path(reg))

    def record(self, program):
        """The lines a recorder wrote: 'args=...|cwd=...'."""
        return read_file(os.path.join(self.folder, program) + ".log").splitlines()


def empty_disc():
    """The folder of the session's CD drive E:, emptied but for its volume label."""
    disc = os.path.join(SESSION, "drive-e")
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


def installer_gone():
    return b"TarnSetup" not in subprocess.run(["ps", "ax"], capture_output=True).stdout


class Launcher:
    def __init__(self, product, args=(), size=(500, 470), park=(90, 400), home=None, dpi=96):
        self.product = product
        self.scale = dpi / 96  # window points are given in design coordinates
        self.width, self.height = size
        self.left, self.top = (SCREEN_W - self.width) >> 1, (SCREEN_H - self.height) >> 1
        self.rest = park  # where the pointer rests: the background, no button
        self.park()  # a button under the pointer when the window appears takes the focus
        self.trace_file = os.path.join(product.folder, "trace.txt")
        if os.path.exists(self.trace_file):
            os.remove(self.trace_file)
        self.capture = os.path.join(home, "capture.raw") if home else None
        self.process = subprocess.Popen(
            ["wine", os.path.join(BIN, "TraceRun.exe"), "/out:" + wine_path(self.trace_file),
             product.wine_folder.rstrip("\\") + "\\Launcher.exe", *args],
            env=dict(ENV, HOME=home) if home else ENV, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
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
                    self.skipped, self.seen = lines[self.seen:i], i + 1
                    return True
            if self.process.poll() is not None:
                raise Failure(f"the launcher ended before {line!r}; last lines: {lines[-5:]}")
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
        looks = []
        for k in range(9):
            colour = self.pixel(shot, 455, 220 + 47 * k)
            look = next((n for n, f in FACES.items() if near(colour, f, 12)), None)
            if not look:
                break
            looks.append(look)
        return looks

    def save_to(self, path):
        Shot().save_crop(path, self.left, self.top, self.width, self.height)

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
    out = run_wine(os.path.join(BIN, "BoxProbe.exe"), title, str(answer), "15000")
    if not out:
        raise Failure(f"no box titled {title!r}")
    _, text, style, owner = out.split("\t")
    return text, style, owner.split(":")[0]


def no_box(title):
    return run_wine(os.path.join(BIN, "BoxProbe.exe"), title, "0", "0") == ""


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
    xdotool words, the pages shown in order, the programs started with their argument, the
    window's last position). Pointer moves anywhere, clicks, double-clicks, presses that
    wander and come back or not (on the caption they drag the window), and keys (Tab,
    Shift+Tab, the arrows; Escape on the pages it goes back from). Nothing ends the launcher
    or leaves it: no Exit, Install, System Check or title button is clicked, nothing is
    pressed off the window's region, and keys go to the window under the pointer. No point
    is within 3 pixels of an edge, and a press is never within 8 pixels of the one before
    (that would make it a double-click's second) unless it is one."""
    rng = random.Random(seed)
    events, shown, started, stack = [], [], [], ["INSTALL"]
    state = {"left": left, "top": top, "press": (-100, -100), "pointer": None, "syncs": 0}

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
            if press and max(abs(state["left"] + x - px), abs(state["top"] + y - py)) <= 8:
                continue
            return x, y, t

    def move(x, y):
        state["pointer"] = (x, y)
        events.append(("mousemove", str(state["left"] + x), str(state["top"] + y)))

    def press(x, y):
        move(x, y)
        events.append(("mousedown", "1"))
        state["press"] = (state["left"] + x, state["top"] + y)

    def fire(k):
        what = STORM_PAGES[stack[-1]][k]
        if what.startswith("page "):
            stack.append(what[5:])
        elif what == "back":
            stack.pop()
        else:
            return started.append(what)
        shown.append(stack[-1])

    while len(events) - state["syncs"] < count:
        r = rng.random()
        if r < 0.4:
            move(*point(False)[:2])
        elif r < 0.6:  # a click, or a double-click: its second press presses nothing
            x, y, t = point(True)
            press(x, y)
            events.append(("mouseup", "1"))
            if isinstance(t, int):
                fire(t)
            if r < 0.67:
                events += [("mousedown", "1"), ("mouseup", "1")]
        elif r < 0.75:  # a press that wanders: a click only when released over its button
            x, y, t = point(True)
            press(x, y)
            if t == "caption":  # the window follows the pointer, and stays on the screen
                dx = rng.randint(max(-60, -state["left"]), min(60, SCREEN_W - 500 - state["left"]))
                dy = rng.randint(max(-60, -state["top"]), min(60, SCREEN_H - 470 - state["top"]))
                # The display sends later events to the window where it stands on the display,
                # which is where the launcher has moved it only once it has caught up: after
                # each move of a drag, wait for that.
                for step in (dx // 2, dy // 2), (dx - dx // 2, dy - dy // 2):
                    state["left"] += step[0]
                    state["top"] += step[1]
                    move(x, y)
                    events.append(("sync", state["left"], state["top"]))
                    state["syncs"] += 1
                events.append(("mouseup", "1"))
                continue
            else:
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
    return events, shown, started, (state["left"], state["top"])


def step(l, p, s):
    verb, *a = s
    if verb == "shown" or verb == "closed":
        l.wait_trace(f"LfxMain: Page [{a[0]}] {verb}.")
        if not l.on_screen:  # the first page is in place before the window is shown
            wait_for(lambda: x_position("Tarn"), "the window on the display")
            l.on_screen = True
    elif verb == "trace":
        l.wait_trace(a[0])
    elif verb == "looks":  # the pointer at rest, then the page buttons' looks
        l.park()
        last = []
        try:
            wait_for(lambda: last.__setitem__(slice(None), l.buttons(Shot())) or last == a[0],
                     "the buttons' looks")
        except Failure:
            raise Failure(f"buttons {last}, expected {a[0]}")
    elif verb == "look":  # button k alone, the pointer where it is
        wait_for(lambda: l.buttons(Shot())[a[0]:a[0] + 1] == [a[1]], f"button {a[0]} {a[1]}")
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
        rgn_bytes = read_file(os.path.join(p.data, "product.rgn"), "rb")
        region = [tuple(int.from_bytes(rgn_bytes[at + 4 * i:at + 4 * i + 4], "little", signed=True)
                        for i in range(4)) for at in range(32, len(rgn_bytes) - 15, 16)]
        events, shown, started, (l.left, l.top) = storm(seed, a[1], l.left, l.top, region)
        batch = []
        for e in events + [("sync",)]:
            if e[0] != "sync" and len(batch) < 1000:
                batch += e
                continue
            if batch:
                xdo(*batch)
            batch = [] if e[0] == "sync" else list(e)
            if e[0] == "sync" and len(e) == 3:
                try:
                    wait_for(lambda: x_position("Tarn") == e[1:], "")
                except Failure:
                    raise Failure(f"the window at {x_position('Tarn')}, dragged to {e[1:]}")
        pages = lambda: [x for x in l.lines()[l.seen:] if x.startswith("LfxMain: Page [") and x.endswith("] shown.")]
        wait_for(lambda: len(pages()) >= len(shown), f"{len(shown)} pages shown", timeout=600)
        expect(pages(), [f"LfxMain: Page [{page}] shown." for page in shown], "the pages shown")
        for program in ("Install/Doc.exe", "Install/Url.exe"):
            want = sorted(f"args={w.split()[1]}|cwd={wine_path(p.data)}" for w in started
                          if w.split()[0] == program)
            wait_for(lambda: len(p.record(program)) >= len(want), f"{len(want)} starts of {program}")
            expect(sorted(p.record(program)), want, program)
        # Where the drags left it, and answering (a screen reader's question is answered by
        # the window's thread).
        expect(l.probe("rect"), f"{l.left} {l.top} {l.left + 500} {l.top + 470}", "the window's place")
        expect(l.probe("readers").split("\n")[0], "0|Tarn|client|focusable|", "the window's answer")
    elif verb == "probe":
        seen = []
        try:
            wait_for(lambda: seen.append(l.probe(a[0])) or seen[-1] == a[1], a[0])
        except Failure:
            raise Failure(f"{a[0]}: {seen[-1]!r}, expected {a[1]!r}")
    elif verb == "pixels":  # exact colours at window points
        last = {}
        try:
            wait_for(lambda: last.update({at: l.pixel(shot, *at) for shot in [Shot()]
                                          for at in a[0]}) or last == a[0], "the pixels")
        except Failure:
            raise Failure(f"pixels {last}, expected {a[0]}")
    elif verb == "window shot":  # exact colours as the system reads the window back; saved
        shot, last = os.path.join(p.folder, "shot.bmp"), {}
        try:
            wait_for(lambda: l.probe("shot " + wine_path(shot)) == "" and last.update(
                read_bmp24(shot)(a[0])) or last == a[0], "the window's pixels")
        except Failure:
            raise Failure(f"pixels {last}, expected {a[0]}")
        os.makedirs(os.path.dirname(os.path.join(OUT, a[1])), exist_ok=True)
        shutil.copy(shot, os.path.join(OUT, a[1]))
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
    elif verb == "save":
        l.save_to(os.path.join(SHOTS, a[0] + ".png"))
    elif verb == "same":  # the window, where it is now, as a picture saved before, pixel for pixel
        saved = os.path.join(SHOTS, a[0] + ".png")
        now = os.path.join(WORK, "same.png")
        left, top, right, bottom = (int(v) for v in l.probe("rect").split())
        def same():
            Shot().save_crop(now, left, top, right - left, bottom - top)
            return subprocess.run(["compare", "-metric", "AE", saved, now, "null:"],
                                  capture_output=True, text=True).stderr.strip() == "0"
        wait_for(same, f"the window as {a[0]}")
    elif verb in ("heard", "heard all"):  # the sounds so far, "~" for one cut short
        last = []
        try:
            wait_for(lambda: last.__setitem__(slice(None), heard(l.played(), p.samples, verb == "heard"))
                     or last[:len(a[0])] == a[0], "the sounds")
        except Failure:
            raise Failure(f"sounds {last}, expected {a[0]}")
    elif verb == "file":  # the file appears, or holds these lines
        path = os.path.join(p.folder, a[0])
        wait_for(lambda: os.path.exists(path), a[0])
        if len(a) > 1:
            expect(read_file(path).splitlines(), [x.format(folder=p.wine_folder) for x in a[1]],
                   a[0])
    elif verb == "touch":
        open(os.path.join(p.folder, a[0]), "w").close()
    elif verb == "no page between":  # since the step before
        expect([x for x in l.skipped if x.startswith("LfxMain: Page [")], [], "pages")
    elif verb == "no page":
        if any(line.startswith("LfxMain: Page [") for line in l.lines()):
            raise Failure("a page was shown")
    elif verb == "bare":  # the background alone: product.bmp where the caption would be
        under = tuple(subprocess.run(["convert", os.path.join(p.data, "product.bmp"), "-crop",
                                      "1x1+250+14", "-depth", "8", "rgb:-"], check=True,
                                     capture_output=True).stdout)
        l.park()
        wait_for(lambda: (lambda shot: l.buttons(shot) == [] and l.pixel(shot, 250, 14) == under)(
            Shot()), "the bare background")
    elif verb == "installed":  # the installer's work is done and it has ended
        wait_for(lambda: os.path.exists(os.path.join(a[0], "Uninstall.exe")), "the installation",
                 timeout=60)
        wait_for(installer_gone, "the installer's end", timeout=60)
    else:
        raise Failure(f"unknown step {verb!r}")


# --- The scenarios -------------------------------------------------------------------------

SOUND_Q = "No working sound device was found.\\n\\nDo you want to play without sound?"
STYLE_Q = "style=0x124"
M1 = "This demo needs DirectX 7.0 or later.\\n\\nPlease install DirectX and start the demo again."
M3 = "No display device that supports DirectDraw was found.\\n\\nTarn cannot start."
M4 = "Do you really want to remove Tarn and all of its saved games from this computer?"
VERSION = ("Launcher.exe (Build 0003)\\n\\nLfxMain        \\t: 1.03.0114 (2/12/02 5:05p)\\n"
           "CTarnLauncher  \\t: 1.00.0024 (2/22/02 5:26p)\\n\\nPages:\\n\\tLAUNCH\\tINT\\n"
           "\\tINSTALL\\t\\n\\tHELP\\t\\n\\tOPTIONS\\t\\n")
GAME = "args=|cwd={folder}\\GameData"
DEMO_INI = {("Startup", "AppType"): "Demo"}
INSTALLED = os.path.join(WORK, "installed")
# The program icon's pixel (8, 4), drawn at (6, 7): opaque evening sky.
ICON = tuple(reversed(make_icon.pixel(8, 4, 16)[:3]))

# Each row: name, the product's settings, the launcher's settings, the steps.
ROWS = [
    # The system's message boxes in today's look: the launcher runs with common controls 6.
    ("first page: not installed", {}, {}, [
        ("shown", "INSTALL"), ("looks", focus(4, 0)), ("pixels", {(14, 11): ICON}),
        ("probe", "comctl", "6"),
        ("save", "launcher_install"), ("key", "Escape"), ("closed", "INSTALL"), ("ends",)]),
    ("first page: installed", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("looks", focus(5, 0)), ("save", "launcher_launch"),
        ("key", "Escape"), ("closed", "LAUNCH"), ("ends",)]),
    ("first page: installed demo", {"installed": True, "ini": DEMO_INI}, {}, [
        ("shown", "LAUNCH"), ("looks", focus(4, 0)), ("key", "Escape"), ("ends",)]),
    ("uninstall requested: no page, Alt+F4", {"installed": True}, {"args": ["-UNINSTALL"]}, [
        ("trace", "LfxMain: m_dwState is [3]"), ("bare",), ("key", "alt+F4"), ("ends",),
        ("no page",)]),
    # Closing as on any window: Alt+F4 and the taskbar's Close while a page shows, and the
    # end of the session, close the launcher as its close button does (the help viewer asked
    # to quit, the opening sound stopped); asked for its icons, the window names none of its
    # own (0, never a handle that is no icon), so the taskbar shows the class's.
    ("closing: Alt+F4 on a page", {"sounds": {"OPEN": (330, 60)}}, {"sound": True, "help": True}, [
        ("shown", "INSTALL"), ("heard all", ["OPEN~"]), ("key", "alt+F4"), ("ends",),
        ("heard all", ["OPEN~"]), ("file", "help.log", ["ready", "command=2 file={folder}\\Tarn.hlp"])]),
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
        ("shown", "LAUNCH"), ("key", "Down"), ("key", "Down"), ("looks", focus(5, 2)),
        ("key", "Tab"), ("looks", focus(5, 3)), ("key", "shift+Tab"), ("key", "Up"),
        ("key", "Left"), ("looks", focus(5, 0)), ("key", "shift+Tab"), ("looks", focus(5, 4)),
        ("key", "Tab"), ("key", "Right"), ("looks", focus(5, 1)),
        ("key", "Right"), ("key", "Return"), ("shown", "HELP"), ("looks", focus(4, 0)),
        ("key", "Escape"), ("shown", "LAUNCH"), ("looks", focus(5, 2))]),
    # The second click of a double-click on a button that changes the page clicks nothing on
    # the new page (HELP's Readme, INSTALL's Exit, OPTIONS' Back, LAUNCH's Options).
    ("double-clicks on INSTALL and HELP", {}, {}, [
        ("shown", "INSTALL"), ("double", *button(1)), ("shown", "HELP"), ("double", *button(3)),
        ("shown", "INSTALL"), ("looks", focus(4, 1)), ("never", "Install/Doc.exe")]),
    ("double-clicks on LAUNCH and OPTIONS", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("double", *button(3)), ("shown", "OPTIONS"), ("double", *button(3)),
        ("shown", "LAUNCH"), ("looks", focus(5, 3)), ("key", "Escape"), ("closed", "LAUNCH"),
        ("no page between",), ("ends",)]),
    # A release off the pressed button is no click: Escape, handled after it, ends the page.
    ("a release off the button", {}, {}, [
        ("shown", "INSTALL"), ("move", 1), ("down",), ("move", 90, 400), ("up",),
        ("key", "Escape"), ("closed", "INSTALL"), ("no page between",), ("ends",)]),
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
    # The sound check asks first (no owner); after its No the page asks again (owned by the
    # window): No there starts nothing, Yes goes on to the game.
    ("play: yes", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("key", "Return"), ("box", "Tarn", 6, (SOUND_Q, STYLE_Q, "owner=none")),
        ("closed", "LAUNCH"), ("ends",), ("runs", "Tarn.exe", GAME)]),
    ("play: no, no", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("key", "Return"), ("box", "Tarn", 7, (SOUND_Q, STYLE_Q, "owner=none")),
        ("box", "Tarn", 7, (SOUND_Q, STYLE_Q, "owner=CltWin")), ("key", "Escape"), ("ends",),
        ("never", "Tarn.exe")]),
    ("play: no, yes", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("key", "Return"), ("box", "Tarn", 7),
        ("box", "Tarn", 6, (SOUND_Q, STYLE_Q, "owner=CltWin")), ("ends",),
        ("runs", "Tarn.exe", GAME)]),
    ("play: no display device", {"installed": True, "setup_dll": "Setup2.dll"}, {}, [
        ("shown", "LAUNCH"), ("key", "Return"), ("box", "Tarn", 6),
        ("box", "Tarn", 1, (M3, "style=0x30", "owner=CltWin")), ("key", "Escape"), ("ends",),
        ("never", "Tarn.exe")]),
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
    # A document's window takes the activation, and when it closes the launcher has it
    # again. The system check runs while the window stands aside; when it ends, the window
    # is back, and active.
    ("documents, web page and system check", {"installed": True}, {}, [
        ("shown", "LAUNCH"), ("click", 2), ("shown", "HELP"), ("touch", "Install/Doc.exe.hold"),
        ("click", 1), ("file", "Install/Doc.exe.ready"), ("near", 300, 10, CAPTION_INACTIVE, 20),
        ("touch", "Install/Doc.exe.release"), ("near", 300, 10, CAPTION_ACTIVE, 30),
        ("runs", "Install/Doc.exe", "args=README|cwd={data}"),
        ("click", 2), ("runs", "Install/Doc.exe", "args=TSGUIDE|cwd={data}"),
        ("touch", "Install/Syscheck.exe.hold"), ("click", 0),
        ("file", "Install/Syscheck.exe.ready"), ("probe", "visible", "0"),
        ("touch", "Install/Syscheck.exe.release"), ("probe", "visible", "1"),
        ("near", 300, 10, CAPTION_ACTIVE, 30),
        ("runs", "Install/Syscheck.exe", "args=|cwd={data}"), ("looks", focus(4, 0)),
        ("key", "Escape"), ("shown", "LAUNCH"), ("click", 3), ("shown", "OPTIONS"),
        ("click", 0), ("runs", "Install/Url.exe", "args=HOMEPAGE|cwd={data}"),
        ("click", 1), ("runs", "Install/Doc.exe", "args=LICENSE|cwd={data}")]),
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
    ("window shot", {(300, 10): (192, 220, 192), (455, 267): (192, 220, 192), (455, 220): (0, 0, 0)},
     "launcher-shots-8bit/launcher_install_8bit.bmp")]))

# Each kind of skin file missing or broken: the window opens in its place and its buttons work.
DEMO_REGION = "78 0 0 500 466"
for name, damage, size, region in [
        ("bmp missing", remove("product.bmp"), (500, 460), DEMO_REGION),
        ("bmp truncated", truncate("product.bmp", 1000), (500, 460), DEMO_REGION),
        ("rgn missing", remove("product.rgn"), (500, 470), "none"),
        ("rgn short", truncate("product.rgn", 40), (500, 470), "none"),
        ("rgn count past the file", replace("product.rgn", rgn([(0, 0, 9, 9)])[:8] +
                                            (0x10000000).to_bytes(4, "little") + bytes(36)),
         (500, 470), "none"),
        ("rgn header refused", replace("product.rgn", (16).to_bytes(4, "little") +
                                       rgn([(0, 0, 500, 470)])[4:]), (500, 470), "none"),
        ("caption empty", replace("active.tga", b""), (500, 470), DEMO_REGION),
        ("close missing", remove("close.tga"), (500, 470), DEMO_REGION),
        ("unselect truncated", truncate("unselect.tga", 300), (500, 470), DEMO_REGION),
        ("faces garbage", garbage_faces, (500, 470), DEMO_REGION)]:
    left, top = (SCREEN_W - size[0]) >> 1, (SCREEN_H - size[1]) >> 1
    ROWS.append((f"skin: {name}", {"skin": damage}, {"size": size, "park": (90, 150)}, [
        ("shown", "INSTALL"), ("probe", "rect", f"{left} {top} {left + size[0]} {top + size[1]}"),
        ("probe", "region", region), ("click", 1), ("shown", "HELP"), ("key", "Escape"),
        ("shown", "INSTALL"), ("click", 480, 12), ("ends",)]))


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
        viewer = subprocess.Popen(["wine", os.path.join(BIN, "help_recorder.exe"), wine_path(log)],
                                  env=ENV, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
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


def demo_walk():
    """The demo product from its disc in drive E:, unchanged but for a silent installation:
    INSTALL, HELP, back, OPTIONS, back, Install; then the installed launcher's LAUNCH."""
    walk = os.path.join(OUT, "walk")
    shutil.rmtree(walk, ignore_errors=True)
    os.makedirs(walk)
    disc = empty_disc()
    target = "C:\\Program Files\\Tarn"
    for entry in os.listdir(DEMO):
        src = os.path.join(DEMO, entry)
        (shutil.copytree if os.path.isdir(src) else shutil.copy)(src, os.path.join(disc, entry))
    ini = os.path.join(disc, "Install", "setup.ini")
    text = read_file(ini).replace("CmdLine=", "CmdLine=/S /D=" + target, 1)
    with open(ini, "w", encoding="latin-1", newline="") as f:
        f.write(text)
    media = Product.__new__(Product)
    media.name, media.folder, media.wine_folder = "demo", disc, "E:\\"
    media.key = "HKLM\\Software\\Tarn Games\\Tarn\\1.0"
    media.set_state(False)
    prefix_target = os.path.join(SESSION, "prefix", "drive_c", "Program Files", "Tarn")
    installed = installed_product(prefix_target)
    installed.wine_folder = target
    for product, steps in [(media, [("01-install", "INSTALL", None), ("02-help", "HELP", 1),
                                    ("03-back-to-install", "INSTALL", 3),
                                    ("04-options", "OPTIONS", 2)]),
                           (installed, [("05-launch", "LAUNCH", None)])]:
        l = Launcher(product)
        try:
            for picture, page, click in steps:
                if click:
                    step(l, product, ("click", click))
                l.wait_trace(f"LfxMain: Page [{page}] shown.")
                l.park()
                wait_for(lambda: "focused" in l.buttons(Shot()), f"the {page} page")
                l.save_to(os.path.join(walk, picture + ".png"))
            if product is media:
                for s in [("key", "Escape"), ("shown", "INSTALL"), ("click", 0),
                          ("closed", "INSTALL"), ("installed", prefix_target)]:
                    step(l, product, s)
            else:
                step(l, product, ("key", "Escape"))
            l.ended(60)
        finally:
            l.close()
            shutil.copy(l.trace_file, os.path.join(
                walk, "trace-media.txt" if product is media else "trace-installed.txt"))
    media.set_state(False)
    print(f"pictures and traces in {walk}")


def main():
    os.makedirs(WORK, exist_ok=True)
    if sys.argv[5:6] == ["--demo"]:
        demo_walk()
        return 0
    only = sys.argv[5:]
    if not only:  # a run of single rows leaves the pictures of the full run alone
        shutil.rmtree(SHOTS, ignore_errors=True)
    passed = failed = 0
    for row in ROWS:
        if (only and row[0] not in only) or (not only and row[0].startswith("8-bit")):
            continue
        start = time.monotonic()
        try:
            run_row(*row)
            print(f"[ PASSED ] {row[0]} ({time.monotonic() - start:.1f} s)", flush=True)
            passed += 1
        except Failure as e:
            print(f"[ FAILED ] {row[0]}: {e}", flush=True)
            failed += 1
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
