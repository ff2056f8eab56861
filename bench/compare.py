#!/usr/bin/env python3
"""Measures sorvikbatch beside plain loops of other programs, all in one run, so that only ratios matter.

A  sorvikbatch with all the files
B  `vips copy` (for PDF img2pdf), one process a file, as many at a time as there are cores
C  ImageMagick's convert, in the same way

The part "compress" measures compress mode beside a loop of the very vectors that it runs, so that what is left is our
own share; "busy" tells how much of the processors a conversion with compression after it uses.

Every figure is the median of several rounds in which A, B and C take turns. The sources are made anew from a few
photographs, always the same ones; all that is written goes into a scratch folder, which is removed.
"""

import argparse
import concurrent.futures
import math
import os
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
CONVERT = "/usr/bin/convert"
SAMPLING_INTERVAL = 0.01  # seconds
SUFFIX = "_out"
PARTS = ("time", "memory", "icons", "compress", "busy")


@dataclass(frozen=True)
class Target:
    """One output format and how each program is asked for what sorvikbatch makes of a photograph."""

    name: str
    extension: str
    vips_options: str = ""
    convert_options: tuple = ()
    most_files: int = 12
    lossy: bool = False


SOURCE_QUALITY = 92

# sorvikbatch's own qualities are asked of the others too.
TARGETS = (
    Target("jpeg", "jpg", "[Q=92]", ("-quality", "92"), lossy=True),
    Target("tiff", "tiff", "", ("-compress", "None")),
    Target("bmp", "bmp"),
    Target("png", "png"),
    Target("webp", "webp", "[Q=75]", (), lossy=True),
    Target("avif", "avif", "[Q=85]", ("-quality", "85"), lossy=True),
    Target("heic", "heic", "[Q=80]", ("-quality", "80"), most_files=3, lossy=True),
    Target("pdf", "pdf"),
)


def run(*command):
    """Runs one command to its end; its last words are the error when it fails."""
    done = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.PIPE, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{command[0]} ended with {done.returncode}: {done.stderr.decode(errors='replace')[-500:]}")


def for_each(command_of, sources):
    """One process a file, as many at a time as there are cores."""
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(lambda source: run(*command_of(source)), sources))


def make_photograph(original, number, width, height, target):
    """A picture of the given size: a part of the original, with its own brightness and grain (so that enlarging it
    leaves no smooth picture that compresses too well)."""
    with tempfile.TemporaryDirectory(dir=target.parent) as folder:
        part, bright, grain, sum_of_both = (Path(folder) / f"{step}.v" for step in ("part", "bright", "grain", "sum"))
        full_width, full_height = (int(subprocess.check_output(["vipsheader", "-f", field, original]))
                                   for field in ("width", "height"))
        part_width = full_width * 8 // 10 - 8 * number
        part_height = min(full_height, part_width * height // width)
        run("vips", "crop", original, bright, 10 * number, 0, part_width, part_height)
        run("vips", "thumbnail", bright, part, width, "--height", height, "--size", "force")
        run("vips", "linear", part, bright, 0.85 + 0.02 * number, number, "--uchar")
        run("vips", "gaussnoise", grain, width, height, "--sigma", 3, "--mean", 0, "--seed", number)
        run("vips", "add", bright, grain, sum_of_both)
        run("vips", "cast", sum_of_both, bright, "uchar")
        run("vips", "copy", bright, f"{target}[Q={SOURCE_QUALITY},strip]")


def make_sources(folder, originals, count, width, height):
    folder.mkdir()
    sources = [folder / f"photo{number:02}.jpg" for number in range(count)]
    for number, source in enumerate(sources):
        make_photograph(originals[number % len(originals)], number, width, height, source)
    return sources


def make_icons(folder, original, count):
    folder.mkdir()
    icons = [folder / f"icon{number:03}.png" for number in range(count)]
    run("vips", "thumbnail", original, icons[0], 64, "--height", 64, "--crop", "centre")
    for icon in icons[1:]:
        shutil.copyfile(icons[0], icon)
    return icons


class Sample:
    """Copies of the sources in a folder of their own, for outputs beside them; removed on leaving."""

    def __init__(self, scratch, sources):
        self.folder = Path(tempfile.mkdtemp(dir=scratch))
        self.sources = [Path(shutil.copy(source, self.folder)) for source in sources]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder)

    def output(self, source, target):
        return source.with_name(f"{source.stem}{SUFFIX}.{target.extension}")

    def outputs(self, target):
        return [self.output(source, target) for source in self.sources]


def contenders(program, target):
    """Name and work of each program that can make the target; the work takes a Sample."""

    def ours(sample):
        run(program, "convert", "--to", target.name, "--output-suffix", SUFFIX, *sample.sources)

    def vips(sample):
        for_each(lambda s: ("vips", "copy", s, f"{sample.output(s, target)}{target.vips_options}"), sample.sources)

    def img2pdf(sample):
        for_each(lambda s: ("img2pdf", s, "-o", sample.output(s, target)), sample.sources)

    def convert(sample):
        for_each(lambda s: (CONVERT, s, *target.convert_options, sample.output(s, target)), sample.sources)

    if target.name == "pdf":  # convert may not write it on Debian
        return {"A": ours, "B": img2pdf}
    return {"A": ours, "B": vips, "C": convert}


def psnr(reference, picture, folder):
    """Decibels between two pictures of one size, by all bands."""
    difference, squares = folder / "difference.v", folder / "squares.v"
    run("vips", "subtract", reference, picture, difference)
    run("vips", "multiply", difference, difference, squares)
    mean = float(subprocess.check_output(["vips", "avg", squares]))
    return math.inf if mean == 0 else 10 * math.log10(255 * 255 / mean)


def measure_target(program, scratch, sources, target, rounds):
    """Prints the row of one target: medians, ratios, bytes and PSNR."""
    seconds, sizes, decibels = {}, {}, {}
    for _ in range(rounds):
        for name, work in contenders(program, target).items():
            with Sample(scratch, sources[:target.most_files]) as sample:
                start = time.perf_counter()
                work(sample)
                seconds.setdefault(name, []).append(time.perf_counter() - start)
                sizes[name] = sum(output.stat().st_size for output in sample.outputs(target))
                if target.lossy and name not in decibels:
                    decibels[name] = psnr(sample.sources[0], sample.outputs(target)[0], sample.folder)
    medians = {name: statistics.median(times) for name, times in seconds.items()}
    cells = [f"{target.name:6}"]
    cells += [f"{name} {medians[name]:7.2f} s" if name in medians else f"{'':11}" for name in "ABC"]
    cells += [f"A/{name} {medians['A'] / medians[name]:5.2f}" if name in medians else f"{'':9}" for name in "BC"]
    cells.append("MB " + " / ".join(f"{size / 1e6:.1f}" for size in sizes.values()))
    if decibels:
        cells.append("dB " + " / ".join(f"{value:.1f}" for value in decibels.values()))
    print("  ".join(cells), flush=True)


def process_tree(root):
    found, open_ones = [], [root]
    while open_ones:
        pid = open_ones.pop()
        found.append(pid)
        for task in Path(f"/proc/{pid}/task").glob("*/children"):
            try:
                open_ones += [int(child) for child in task.read_text().split()]
            except OSError:
                pass  # ended between the look and the read
    return found


def proportional_set_size(pid):
    """In bytes: pages that several processes share count once in the sum over all; 0 when it has ended."""
    try:
        for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
            if line.startswith("Pss:"):
                return int(line.split()[1]) * 1024
    except OSError:
        pass
    return 0


def peak_memory(work):
    """The largest sum over all processes that the work starts."""
    peak, done = 0, threading.Event()

    def watch():
        nonlocal peak
        while not done.is_set():
            children = [pid for pid in process_tree(os.getpid()) if pid != os.getpid()]
            peak = max(peak, sum(map(proportional_set_size, children)))
            done.wait(SAMPLING_INTERVAL)

    watcher = threading.Thread(target=watch)
    watcher.start()
    try:
        work()
    finally:
        done.set()
        watcher.join()
    return peak


def measure_memory(program, scratch, sources, target):
    cells = []
    for name, work in contenders(program, target).items():
        with Sample(scratch, sources) as sample:
            cells.append(f"{name} {peak_memory(lambda: work(sample)) / 2**20:7.0f} MiB")
    print(f"{target.name:6}  " + "  ".join(cells), flush=True)


def measure_icons(program, scratch, icons, rounds):
    target = Target("jpeg", "jpg", "[Q=92]", ("-quality", "92"))
    seconds = {}
    for _ in range(rounds):
        for name, work in contenders(program, target).items():
            with Sample(scratch, icons) as sample:
                start = time.perf_counter()
                work(sample)
                seconds.setdefault(name, []).append(time.perf_counter() - start)
    print("  ".join(f"{name} {statistics.median(times) * 1000 / len(icons):6.2f} ms a file"
                    for name, times in seconds.items()))


# The recipes' vectors at the default settings.
PNG_RECIPE = ("-define", "png:compression-level=9", "-define", "png:compression-strategy=1",
              "-define", "png:compression-filter=5", "-strip", "+profile", "*")
PDF_RECIPE = ("-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "-sDEVICE=pdfwrite", "-dCompatibilityLevel=1.4",
              "-dPDFSETTINGS=/prepress", "-dEmbedAllFonts=true", "-dSubsetFonts=true", "-dJPEGQ=95",
              "-dColorImageDownsampleType=/Bicubic", "-dColorImageResolution=300",
              "-dGrayImageDownsampleType=/Bicubic", "-dGrayImageResolution=300",
              "-dMonoImageDownsampleType=/Subsample", "-dMonoImageResolution=300")


@dataclass(frozen=True)
class Compression:
    """One kind of file for compress mode: how sources are made of photographs, and its recipe."""

    target: Target
    most_files: int
    make: object  # from a photograph to a source: a command
    recipe: object  # from a source to a result: a command


COMPRESSIONS = (
    Compression(Target("jpeg", "jpg", lossy=True), 12, lambda s, t: ("cp", s, t),
                lambda s, t: (CONVERT, s, "-quality", "85", "-interlace", "Plane", "-strip", t)),
    Compression(Target("png", "png"), 12, lambda s, t: ("vips", "copy", s, t),
                lambda s, t: (CONVERT, s, *PNG_RECIPE, t)),
    Compression(Target("pdf", "pdf"), 3, lambda s, t: ("img2pdf", s, "-o", t),
                lambda s, t: ("gs", *PDF_RECIPE, f"-sOutputFile={t}", s)),
)


def make_compressible(folder, photographs, kind):
    folder.mkdir()
    sources = [folder / f"{photo.stem}.{kind.target.extension}" for photo in photographs[:kind.most_files]]
    for photo, source in zip(photographs, sources):
        run(*kind.make(photo, source))
    return sources


def measure_compression(program, scratch, photographs, kind, rounds):
    """Prints the row of one kind: medians, the ratio to the bare loop, bytes before and after."""
    def ours(sample):
        run(program, "compress", "--compression-suffix", SUFFIX, *sample.sources)

    def loop(sample):
        for_each(lambda s: kind.recipe(s, sample.output(s, kind.target)), sample.sources)

    sources = make_compressible(scratch / f"compress-{kind.target.name}", photographs, kind)
    seconds, sizes = {"A": [], "B": []}, {}
    for _ in range(rounds):
        for name, work in (("A", ours), ("B", loop)):
            with Sample(scratch, sources) as sample:
                start = time.perf_counter()
                work(sample)
                seconds[name].append(time.perf_counter() - start)
                sizes[name] = sum(output.stat().st_size for output in sample.outputs(kind.target))
    a, b = (statistics.median(seconds[name]) for name in "AB")
    before = sum(source.stat().st_size for source in sources)
    print(f"{kind.target.name:6}  A {a:7.2f} s  loop {b:7.2f} s  A/loop {a / b:5.3f}  "
          f"MB {before / 1e6:.1f} to {sizes['A'] / 1e6:.1f}, loop {sizes['B'] / 1e6:.1f}", flush=True)


def measure_busy(program, scratch, photographs):
    """Prints wall time and used processor time of conversions with compression after them."""
    for name in ("jpeg", "webp", "png"):
        with Sample(scratch, photographs) as sample:
            sources = sample.sources
            if name == "jpeg":  # which is no target of a JPEG
                sources = [source.with_suffix(".webp") for source in sample.sources]
                for_each(lambda s: ("vips", "copy", s.with_suffix(".jpg"), s), sources)
            used = resource.getrusage(resource.RUSAGE_CHILDREN)
            start = time.perf_counter()
            run(program, "convert", "--to", name, "--compress", "--output-suffix", SUFFIX, *sources)
            wall = time.perf_counter() - start
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            busy = after.ru_utime + after.ru_stime - used.ru_utime - used.ru_stime
            print(f"{name:6}  wall {wall:6.2f} s  user+sys {busy:6.2f} s  {busy / wall:4.2f} processors of "
                  f"{os.cpu_count()}", flush=True)


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("photos", nargs="?", type=Path, default=ROOT / "tests/data/photos",
                        help="folder with the photographs to start from (default: %(default)s)")
    parser.add_argument("--program", type=Path, default=ROOT / "build/release/bin/sorvikbatch")
    parser.add_argument("--targets", nargs="+", choices=[target.name for target in TARGETS],
                        default=[target.name for target in TARGETS])
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--files", type=int, default=12, help="photographs of 12 megapixels (default: %(default)s)")
    parser.add_argument("--parts", nargs="+", choices=PARTS, default=PARTS)
    return parser.parse_args()


def main():
    options = arguments()
    originals = sorted(options.photos.glob("*.jpg"))
    if not originals:
        sys.exit(f"No photographs (*.jpg) in {options.photos}; name a folder that has some.")
    targets = [target for target in TARGETS if target.name in options.targets]
    with tempfile.TemporaryDirectory(prefix="sorvik-compare.") as folder:
        scratch = Path(folder)
        sources = []
        if {"time", "compress", "busy"} & set(options.parts):
            sources = make_sources(scratch / "photos", originals, options.files, 4000, 3000)
        if "time" in options.parts:
            print(f"Wall time of {options.files} photographs, 12 megapixels each; ratios below 1: sorvikbatch is faster")
            for target in targets:
                measure_target(options.program, scratch, sources, target, options.rounds)
        if "memory" in options.parts:
            print("Peak memory of all processes, two photographs of 24 megapixels")
            large = make_sources(scratch / "large", originals, 2, 6000, 4000)
            for target in targets:
                measure_memory(options.program, scratch, large, target)
        if "icons" in options.parts:
            print("200 icons of 64 pixels, PNG to JPEG")
            measure_icons(options.program, scratch, make_icons(scratch / "icons", originals[0], 200), options.rounds)
        if "compress" in options.parts:
            print("Compress mode beside a loop of the same vectors")
            for kind in (kind for kind in COMPRESSIONS if kind.target.name in options.targets):
                measure_compression(options.program, scratch, sources, kind, options.rounds)
        if "busy" in options.parts:
            print("Conversion with compression after it")
            measure_busy(options.program, scratch, sources)


if __name__ == "__main__":
    main()
