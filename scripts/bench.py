#!/usr/bin/env python3
"""Measures the maintenance run against the floor under it: the unavoidable input and output.

    cmake --preset bench && cmake --build build/bench
    scripts/bench.py                          all presets
    scripts/bench.py --preset site --pairs 21 --callgrind
    scripts/bench.py --against ../before/build/bench/vantrel-cron     of another bench build
    scripts/bench.py --whole --callgrind --against build/plain/vantrel-cron    start-up counted
    scripts/bench.py --growth
    scripts/bench.py --loop 200               how many sites a minute one core carries

Program, floor and an empty process run in turn on the same site, with what a run changes put back
in between, the files in the cache and the clock frozen in a minute in which no companion is due.
CPU time is that of the process and its children, user and system; the start-up of the empty
process is taken off every side, off its page faults and instructions too. Medians, also of the
ratios taken pair by pair. The floor counts bars as fast as the machine can, the plain floor as a
straightforward program does. MiB is the peak memory of the run.

Page faults and instructions (user's, counted by valgrind) repeat from run to run; times do not.
"""
import argparse
import math
import os
import re
import shutil
import statistics
import subprocess
import sys
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parent.parent
# Pairs measured, and runs of each side that are summed to one measurement.
PRESETS = {"small": (15, 10), "typical": (15, 5), "site": (15, 2), "big": (5, 1),
           "catchup": (5, 1)}
SLOT = 56
MINUTES = {"catchup": 60}
# A doubling size in a site where the rest is small, so that the size itself is what costs.
GROWTH = {
    "hits": ["small", "trades=500", "agents=300", "proxies=5000"],
    "trades": ["small", "days=365"],
    "ranges": ["small"],
    "days": ["small"],
    "minutes": ["small", "trades=500", "hits=2000"],
}
GROWTH_SIZES = {
    "hits": [10000, 20000, 40000, 80000],
    "trades": [250, 500, 1000, 2000],
    "ranges": [100000, 200000, 400000, 800000],
    "days": [2000, 4000, 8000, 16000],
    "minutes": [5, 10, 20, 40],
}


class Tools:
    def __init__(self, build, program, against, whole):
        self.whole = whole
        self.site = build / "bench" / "vantrel-bench-site"
        self.floor = build / "bench" / "vantrel-floor"
        self.measure = build / "bench" / "vantrel-measure"
        self.clock = build / "bench" / "libfrozen-clock.so"
        self.programs = {"": program or build / "vantrel-cron"}
        if against:
            self.programs[" before"] = against
        # Every program has an empty process beside it that starts as it does.
        self.empties = [beside if (beside := path.parent / "bench" / "vantrel-empty").exists()
                        else build / "bench" / "vantrel-empty" for path in self.programs.values()]


class Figures(NamedTuple):
    """What one run took, or several on average."""
    cpu: float  # seconds
    wall: float
    peak: float  # MiB
    faults: float


class Site:
    """A site on disk and the state that every measured run starts from."""

    def __init__(self, tools, directory, options):
        self.tools, self.directory = tools, directory
        shutil.rmtree(directory, ignore_errors=True)
        directory.parent.mkdir(parents=True, exist_ok=True)
        made = subprocess.run([tools.site, directory, *options], check=True, capture_output=True)
        self.now = int(made.stdout)
        sizes = dict(option.split("=") for option in options if "=" in option)
        self.minutes = int(sizes.get("minutes", MINUTES.get(options[0], 1)))
        for script in directory.glob("sh_*.cgi"):
            script.unlink()
        self.records = sum(log.read_bytes().count(b"\n") for log in directory.glob("l/*/??-*"))
        self.keep_state()
        self.run(tools.programs[""])
        self.result = (directory / "d/t/sum").read_bytes()
        if self.result == self.files["d/t/sum"]:
            sys.exit("the program did not run")

    def keep_state(self):
        names = ["d/t/sum", "d/t/index", "d/set", "d/alerts"]
        names += [f"l/sys/{path.name}" for path in (self.directory / "l/sys").iterdir()]
        self.files = {name: (self.directory / name).read_bytes() for name in names}
        minute = (self.now // 60 - self.minutes) % 1440
        self.slots = []
        for path in (self.directory / "d/t").iterdir():
            if not re.fullmatch(r"-?\d+", path.name):
                continue
            with open(path, "rb") as file:
                slot = os.pread(file.fileno(), SLOT, minute * SLOT)
            self.slots.append((path, minute * SLOT, slot))

    def restore(self):
        for name, text in self.files.items():
            (self.directory / name).write_bytes(text)
        for path in (self.directory / "l/sys").iterdir():
            if f"l/sys/{path.name}" not in self.files:
                path.unlink()
        for path, offset, slot in self.slots:
            file = os.open(path, os.O_WRONLY)
            os.pwrite(file, slot, offset)
            os.close(file)

    def run(self, program, *arguments):
        """One run from the state kept."""
        self.restore()
        command = [self.tools.measure, str(self.now), self.tools.clock, self.directory, program]
        done = subprocess.run([*command, *arguments], check=True, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)
        cpu, wall, peak, faults = map(int, done.stdout.split())
        return Figures(cpu / 1e6, wall / 1e6, peak / 1024, faults)

    def run_program(self, program):
        figures = self.run(program)
        if (self.directory / "d/t/sum").read_bytes() != self.result:
            sys.exit("two runs from the same state left different summaries")
        return figures

    def run_floor(self, *arguments):
        return self.run(self.tools.floor, str(self.minutes), *arguments)

    def instructions(self, program):
        """Millions, without those of an empty process."""
        if self.tools.whole:
            return statistics.median(self.counted(program) for _ in range(5)) / 1e6
        empty = self.tools.empties[list(self.tools.programs.values()).index(program)]
        return (self.counted(program) - self.counted(empty)) / 1e6

    def counted(self, program):
        self.restore()
        environment = dict(os.environ, FROZEN_CLOCK=str(self.now), TZ="UTC",
                           LD_PRELOAD=str(self.tools.clock))
        command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null"]
        done = subprocess.run([*command, program], cwd=self.directory, env=environment,
                              check=True, capture_output=True, text=True)
        return int(re.search(r"Collected : (\d+)", done.stderr).group(1))


def mean_of(runs):
    """Several runs averaged, with the highest peak."""
    cpu, wall, peak, faults = zip(*runs)
    return Figures(*map(statistics.mean, (cpu, wall)), max(peak), statistics.mean(faults))


def without_start(side, empty):
    return side._replace(cpu=max(side.cpu - empty.cpu, 1e-6), faults=side.faults - empty.faults)


def measure(site, pairs, repeat, flush):
    """A list of (floor, plain floor, program, program before) figures, without the start-up."""
    flags = ["flush"] if flush else []
    figures = []
    for _ in range(pairs):
        runs = [(*map(site.run, site.tools.empties), site.run_floor(*flags),
                 site.run_floor("plain", *flags),
                 *map(site.run_program, site.tools.programs.values())) for _ in range(repeat)]
        means = [mean_of(side) for side in zip(*runs)]
        empties = means[:len(site.tools.empties)]
        starts = [empties[0], empties[0], *empties]  # the floors start as the program does
        sides = means[len(empties):]
        figures.append(sides if site.tools.whole else list(map(without_start, sides, starts)))
    return figures


FLOOR, PLAIN, PROGRAM = range(3)


def median_of(figures, side, value="cpu"):
    return statistics.median(getattr(row[side], value) for row in figures)


def ratios(figures, side, to):
    return [row[side].cpu / row[to].cpu for row in figures]


def report_preset(tools, name, options):
    site = Site(tools, options.sites.resolve() / name, [name])
    pairs, repeat = PRESETS[name]
    figures = measure(site, options.pairs or pairs, repeat, options.flush)
    floors = [median_of(figures, side) * 1e3 for side in (FLOOR, PLAIN)]
    for side, (label, program) in enumerate(tools.programs.items(), PROGRAM):
        cpu, wall = (median_of(figures, side, value) * 1e3 for value in ("cpu", "wall"))
        to_floor, to_plain = (ratios(figures, side, to) for to in (FLOOR, PLAIN))
        print(f"{label or name:8} {site.records:8} {cpu:8.2f} {floors[0]:8.2f} {floors[1]:8.2f}"
              f" {statistics.median(to_floor):6.2f} {statistics.median(to_plain):6.2f}"
              f" {wall:8.2f} {max(row[side].peak for row in figures):7.1f}"
              f" {median_of(figures, side, 'faults'):7.0f}", end="")
        if options.callgrind:
            count = site.instructions(program)
            print(f" {count:8.3f} {count * 1e6 / site.records:9.0f}", end="")
        if side != PROGRAM:
            now = statistics.median(ratios(figures, PROGRAM, side))
            print(f"   now at {now:.3f} of its CPU time", end="")
        print()
        if options.verbose:
            for floor, values in (("floor", to_floor), ("plain", to_plain)):
                print(f"         pair by pair to {floor}: " + " ".join(f"{r:.2f}" for r in values))
        sys.stdout.flush()


def report_presets(tools, options):
    print(f"{'':8} {'':8} {'CPU ms':^26} {'ratio to':^13} {'':24} {'page':>7}"
          + (f" {'million':>8}" if options.callgrind else ""))
    print("preset    records      run    floor    plain  floor  plain  wall ms     MiB  faults"
          + ("   instr. instr/hit" if options.callgrind else ""))
    for name in options.preset:
        report_preset(tools, name, options)


def exponent(sizes, values):
    """The slope of the straight line through the logarithms."""
    xs, ys = [math.log(size) for size in sizes], [math.log(value) for value in values]
    return statistics.linear_regression(xs, ys).slope


def exponent_of_growth(values):
    """e of a + b * size^e through four doublings: a, the part that does not grow, drops out."""
    first, last = values[1] - values[0], values[3] - values[2]
    return f"{math.log(last / first, 4):8.2f}" if first > 0 and last > 0 else f"{'-':>8}"


def report_growth(tools, options):
    for name, sizes in GROWTH_SIZES.items():
        rows = []
        for size in sizes:
            directory = options.sites.resolve() / f"growth-{name}"
            site = Site(tools, directory, [*GROWTH[name], f"{name}={size}"])
            figures = measure(site, options.pairs or 7, 1, options.flush)
            rows.append([median_of(figures, PROGRAM) * 1e3, median_of(figures, FLOOR) * 1e3,
                         max(row[PROGRAM].peak for row in figures),
                         median_of(figures, PROGRAM, "faults")])
            if options.callgrind:
                rows[-1].append(site.instructions(tools.programs[""]))
            shutil.rmtree(directory)
        print(f"\n{name:12}" + "".join(f" {size:>9}" for size in sizes)
              + "  exponent  growing part")
        labels = ["cpu ms", "floor ms", "peak MiB", "faults", "M instr"]
        for label, values in zip(labels, zip(*rows)):
            print(f"  {label:10}" + "".join(f" {value:9.2f}" for value in values)
                  + f"  {exponent(sizes, values):8.2f}   {exponent_of_growth(values)}", flush=True)


def report_loop(tools, options):
    """Many typical sites, one after the other on one core, as a host with many sites has them."""
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
    sites = [Site(tools, options.sites.resolve() / "loop" / str(i), ["typical", f"seed={i + 1}"])
             for i in range(options.loop)]
    print("round  sites  CPU ms each  wall ms each  sites a minute: by CPU  by wall")
    for turn in range(1, (options.pairs or 3) + 1):
        for label, program in tools.programs.items():
            each = mean_of([site.run_program(program) for site in sites])
            print(f"{turn:5} {len(sites):6} {each.cpu * 1e3:12.2f} {each.wall * 1e3:13.2f}"
                  f" {60 / each.cpu:23.0f} {60 / each.wall:8.0f}{label}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--preset", nargs="+", choices=PRESETS, default=list(PRESETS))
    parser.add_argument("--pairs", type=int, help="measurements of each side")
    parser.add_argument("--growth", action="store_true", help="the growth table instead")
    parser.add_argument("--loop", type=int, metavar="SITES",
                        help="a loop over so many folders of the preset typical instead, "
                             "start-up of every process included")
    parser.add_argument("--callgrind", action="store_true", help="instructions too (valgrind)")
    parser.add_argument("--flush", action="store_true",
                        help="a floor that flushes its summary to disk, as the run does")
    parser.add_argument("--verbose", action="store_true", help="the ratio of every pair")
    parser.add_argument("--sites", type=Path, default=ROOT / "build" / "bench-sites",
                        help="where the sites are made; a memory disk takes the disk's part out")
    parser.add_argument("--build", type=Path, default=ROOT / "build" / "bench")
    parser.add_argument("--whole", action="store_true", help="leave the start-up in all figures")
    parser.add_argument("--program", type=Path, help="instead of the build's vantrel-cron")
    parser.add_argument("--against", type=Path, help="another vantrel-cron, measured in turn")
    options = parser.parse_args()
    program, against = (path.resolve() if path else None
                        for path in (options.program, options.against))
    tools = Tools(options.build.resolve(), program, against, options.whole)
    if options.loop:
        report_loop(tools, options)
    else:
        (report_growth if options.growth else report_presets)(tools, options)


if __name__ == "__main__":
    main()
