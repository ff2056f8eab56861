#!/usr/bin/env python3
"""Measures sorvikdraw beside rsvg-convert as whole processes, in turns, so that only ratios matter.

small    one process for each picture of the agreement tests
heavy    20,000 filled and stroked paths with gradients, 2,000 pixels wide; 300,000 elements
growth   1,000 to 300,000 elements: time and memory for each element

Every figure is the median of several rounds. Drawings are made anew, always the same; what is written goes into a
scratch folder, which is removed. Memory is the peak of resident pages, and never less than this script's own at the
start of a process, some 17 MB."""

import argparse
import os
import random
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TOOL = ROOT / "build/release/lib/sorvik/Contents/Resources/sorvikdraw"
OTHER = "/usr/bin/rsvg-convert"
PICTURES = ROOT / "tests/sorvikdraw/agreement/pictures"
SIZES = (1_000, 10_000, 100_000, 300_000)
PARTS = ("small", "heavy", "growth")
HEAD = '<svg xmlns="http://www.w3.org/2000/svg" width="{0}" height="{0}" viewBox="0 0 {0} {0}">\n'


@dataclass(frozen=True)
class Run:
    seconds: float
    kilobytes: int
    status: int


def run(command):
    null = os.open(os.devnull, os.O_RDWR)
    files = [(os.POSIX_SPAWN_DUP2, null, number) for number in (0, 1, 2)]
    start = time.perf_counter()
    child = os.posix_spawn(command[0], command, os.environ, file_actions=files)
    _, status, usage = os.wait4(child, 0)
    seconds = time.perf_counter() - start
    os.close(null)
    return Run(seconds, usage.ru_maxrss, os.waitstatus_to_exitcode(status))


class Programs:
    """The two programs, each asked for a PNG of the drawing's own size."""

    def __init__(self, tool, scratch):
        output = str(scratch / "out.png")
        self.commands = {
            "sorvikdraw": lambda file: [str(tool), str(file), "--format", "png", "--output", output],
            "rsvg-convert": lambda file: [OTHER, "--output", output, str(file)],
        }

    def medians(self, files, rounds):
        """For each program the seconds and kilobytes over all the files, or None where one of them was refused."""
        runs = {name: [] for name in self.commands}
        for _ in range(rounds):
            for name, command in self.commands.items():
                runs[name].append([run(command(file)) for file in files])
        return {name: self.median(rows) for name, rows in runs.items()}

    def drawn(self, files):
        """Those that both draw; the runs warm the disk's cache too."""
        return [file for file in files if not any(run(command(file)).status for command in self.commands.values())]

    @staticmethod
    def median(rows):
        if any(each.status for row in rows for each in row):
            return None
        return (statistics.median(sum(each.seconds for each in row) for row in rows),
                statistics.median(max(each.kilobytes for each in row) for row in rows))


def print_row(what, medians, unit=1):
    ours, others = medians["sorvikdraw"], medians["rsvg-convert"]
    cells = [f"{1000 * each[0] / unit:9.1f} ms {each[1] / 1024:7.0f} MB" if each else f"{'refused':>22}"
             for each in (ours, others)]
    ratios = f"  time {ours[0] / others[0]:5.2f}  memory {ours[1] / others[1]:5.2f}" if ours and others else ""
    print(f"{what:34} {cells[0]} {cells[1]}{ratios}", flush=True)


def gradient_paths(file, count, side):
    generator = random.Random(1)

    def near(centre):
        return " ".join(f"{c + generator.uniform(-30, 30):.1f}" for c in centre)

    with file.open("w") as out:
        out.write(HEAD.format(side))
        for index in range(40):
            colours = [f"#{generator.randrange(1 << 24):06x}" for _ in range(2)]
            out.write(f'<linearGradient id="g{index}"><stop offset="0" stop-color="{colours[0]}"/>'
                      f'<stop offset="1" stop-color="{colours[1]}"/></linearGradient>\n')
        for _ in range(count):
            centre = generator.uniform(0, side), generator.uniform(0, side)
            fill, stroke = generator.randrange(40), generator.randrange(40)
            out.write(f'<path d="M{near(centre)}C{near(centre)} {near(centre)} {near(centre)}L{near(centre)}Z" '
                      f'fill="url(#g{fill})" stroke="url(#g{stroke})" stroke-width="1.5"/>\n')
        out.write("</svg>\n")


def plain_elements(file, count):
    generator = random.Random(2)
    with file.open("w") as out:
        out.write(HEAD.format(500))
        for index in range(count):
            x, y = generator.uniform(0, 490), generator.uniform(0, 490)
            out.write((f'<rect x="{x:.2f}" y="{y:.2f}" width="4" height="3" fill="#{index % 4096:03x}"/>\n',
                       f'<path d="M{x:.2f} {y:.2f}l4 1 1 4z" fill="#{index % 4096:03x}"/>\n',
                       f'<g opacity="1"><circle cx="{x:.2f}" cy="{y:.2f}" r="2" style="fill:teal"/></g>\n')[index % 3])
        out.write("</svg>\n")


def small(programs, pictures, rounds):
    files = programs.drawn(sorted(pictures.rglob("*.svg")))
    if not files:
        sys.exit(f"{pictures} holds no pictures that both programs draw")
    print_row(f"small: mean of {len(files)} pictures", programs.medians(files, rounds), unit=len(files))


def heavy(programs, scratch, rounds):
    file = scratch / "paths.svg"
    gradient_paths(file, 20_000, 2000)
    print_row("heavy: 20,000 paths", programs.medians([file], rounds))
    file = scratch / "elements.svg"
    plain_elements(file, 300_000)
    print_row("heavy: 300,000 elements", programs.medians([file], rounds))


def growth(programs, scratch, rounds):
    points = []
    for count in SIZES:
        file = scratch / f"{count}.svg"
        plain_elements(file, count)
        medians = programs.medians([file], rounds)
        print_row(f"growth: {count:,} elements", medians)
        points.append((count, medians["sorvikdraw"]))
    for (fewer, less), (count, more) in zip(points, points[1:]):
        if less and more:
            step = count - fewer
            print(f"  sorvikdraw from {fewer:,} to {count:,}: {1e6 * (more[0] - less[0]) / step:6.2f} µs and "
                  f"{1024 * (more[1] - less[1]) / step:5.0f} bytes for each further element")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=5, help="runs that each figure is the median of (default: 5)")
    parser.add_argument("--part", choices=PARTS, action="append", help="only this part; may be given again")
    parser.add_argument("--tool", type=Path, default=TOOL, help="another build of sorvikdraw")
    parser.add_argument("--pictures", type=Path, default=PICTURES, help="another folder of small pictures")
    options = parser.parse_args()
    parts = options.part or PARTS
    version = subprocess.run([OTHER, "--version"], capture_output=True, text=True, check=True).stdout.strip()
    print(f"{'':34} {'sorvikdraw':>22} {version:>22}")
    with tempfile.TemporaryDirectory(prefix="sorvik-bench-") as name:
        scratch = Path(name)
        programs = Programs(options.tool, scratch)
        if "small" in parts:
            small(programs, options.pictures, options.rounds)
        if "heavy" in parts:
            heavy(programs, scratch, options.rounds)
        if "growth" in parts:
            growth(programs, scratch, options.rounds)


if __name__ == "__main__":
    main()
