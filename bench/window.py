#!/usr/bin/env python3
"""Measures the start of the window beside another program's, in turns on one X server: the time from the start of the
process until the window shows more than one colour, and the memory then. Also the memory with ten thousand rows.

Every figure is the median of several rounds; the first start of each, which warms the disk's cache, is left out."""

import argparse
import ctypes
import os
import signal
import statistics
import subprocess
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
OURS = str(ROOT / "build/release/bin/sorvik")
OTHER = "/usr/bin/converseen"
POLL = 0.002  # seconds
PATIENCE = 30  # seconds
SETTLED = 1.5  # seconds after the first paint, until the memory is looked at
Z_PIXMAP = 2
IS_VIEWABLE = 2


class Attributes(ctypes.Structure):
    """XWindowAttributes of Xlib.h, as far as it is read here; the rest is room."""

    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int), ("height", ctypes.c_int),
                ("border_width", ctypes.c_int), ("depth", ctypes.c_int), ("visual", ctypes.c_void_p),
                ("root", ctypes.c_ulong), ("c_class", ctypes.c_int), ("bit_gravity", ctypes.c_int),
                ("win_gravity", ctypes.c_int), ("backing_store", ctypes.c_int), ("backing_planes", ctypes.c_ulong),
                ("backing_pixel", ctypes.c_ulong), ("save_under", ctypes.c_int), ("colormap", ctypes.c_ulong),
                ("map_installed", ctypes.c_int), ("map_state", ctypes.c_int), ("rest", ctypes.c_long * 16)]


class Display:
    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        self.x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x11.XGetImage.restype = ctypes.c_void_p
        self.x11.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
        self.x11.XGetPixel.restype = ctypes.c_ulong
        self.ignore = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)
        self.x11.XSetErrorHandler(self.ignore)  # a window may go while it is looked at
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))
        self.root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))

    def windows(self):
        root, parent, count = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_uint()
        children = ctypes.POINTER(ctypes.c_ulong)()
        self.x11.XQueryTree(self.display, self.root, ctypes.byref(root), ctypes.byref(parent),
                            ctypes.byref(children), ctypes.byref(count))
        found = [children[each] for each in range(count.value)]
        if found:
            self.x11.XFree(children)
        return found

    def is_painted(self, window):
        """Whether a window of some size is seen and its middle row shows more than one colour."""
        attributes = Attributes()
        if not self.x11.XGetWindowAttributes(self.display, ctypes.c_ulong(window), ctypes.byref(attributes)):
            return False
        if attributes.map_state != IS_VIEWABLE or attributes.width < 300 or attributes.height < 200:
            return False
        image = self.x11.XGetImage(self.display, ctypes.c_ulong(window), 0, attributes.height // 2, attributes.width,
                                   1, ctypes.c_ulong(0xFFFFFFFF), Z_PIXMAP)
        if not image:
            return False
        colours = {self.x11.XGetPixel(image, x, 0) for x in range(0, attributes.width, 3)}
        self.x11.XDestroyImage(ctypes.c_void_p(image))
        return len(colours) > 1


def memory(pid, key, file="status"):
    for line in Path(f"/proc/{pid}/{file}").read_text().splitlines():
        if line.startswith(key + ":"):
            return int(line.split()[1]) / 1024
    raise KeyError(key)


class Start:
    """One start of a program; its time until the first paint in milliseconds, its memory in MiB."""

    def __init__(self, display, command, settled=SETTLED):
        with tempfile.TemporaryDirectory() as home:
            (Path(home) / "sorvik").mkdir()
            (Path(home) / "sorvik/sorvik.ini").write_text("[General]\nhasShownUpdatePreferencesDialog=true\n")
            environment = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home, XDG_RUNTIME_DIR=home, XDG_STATE_HOME=home,
                               QT_QPA_PLATFORM="xcb")
            os.chmod(home, 0o700)
            before = set(display.windows())
            began = time.monotonic()
            process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            while not any(display.is_painted(each) for each in set(display.windows()) - before):
                if time.monotonic() - began > PATIENCE:
                    raise TimeoutError(command[0])
                time.sleep(POLL)
            self.milliseconds = (time.monotonic() - began) * 1000
            time.sleep(settled)
            self.resident = memory(process.pid, "VmRSS")
            self.private = memory(process.pid, "Private_Dirty", "smaps_rollup")
            self.peak = memory(process.pid, "VmHWM")
            process.send_signal(signal.SIGKILL)
            process.wait()


def rows(count):
    return [f"/nowhere/a folder of photographs/photograph {number:05}.jpg" for number in range(count)]


def median(starts, figure):
    return statistics.median(getattr(each, figure) for each in starts)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--rounds", type=int, default=9)
    options = parser.parse_args()
    display = Display()
    commands = {"sorvik": [OURS], "converseen": [OTHER]}
    starts = {name: [] for name in commands}
    for each in range(options.rounds + 1):
        for name, command in commands.items():
            start = Start(display, command)
            if each > 0:
                starts[name].append(start)
    print(f"{'':12}{'first paint':>14}{'resident':>12}{'private':>12}")
    for name, all_of_it in starts.items():
        print(f"{name:12}{median(all_of_it, 'milliseconds'):11.0f} ms{median(all_of_it, 'resident'):8.1f} MiB"
              f"{median(all_of_it, 'private'):8.1f} MiB")
    ratios = [median(starts["sorvik"], figure) / median(starts["converseen"], figure)
              for figure in ("milliseconds", "resident", "private")]
    print(f"{'ratio':12}{ratios[0]:14.2f}{ratios[1]:12.2f}{ratios[2]:12.2f}")
    many = Start(display, [OURS] + rows(10000), settled=4)
    print(f"10,000 rows: first paint {many.milliseconds:.0f} ms, peak {many.peak:.1f} MiB, resident {many.resident:.1f} MiB")


if __name__ == "__main__":
    main()
