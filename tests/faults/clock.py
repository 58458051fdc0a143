#!/usr/bin/env python3
"""Carries a site through hours in which the clock is not what a program would like, run by run, and
counts how often each minute's hits were counted.

    clock.py BUILD_DIRECTORY [--short] [NAME ...]

Every minute of a stretch one click is logged as the request scripts would log it, under the name
that the clock then gives the minute. Each click goes to a trade of its own that has a guarantee;
the guarantee in d/t/index falls by one whenever the click is counted. No run may fail, no counter
may be below zero after a minute that clamps, and the numbers of minutes counted once, twice or
never are those that docs/operating.md explains. --short plays a few of them, and stops earlier.
Needs python3 and a C++ compiler.
"""
import collections
import datetime
import os
import shutil
import struct
import zoneinfo

import layout
from layout import HITS_LEFT, RECORD, RESERVED, stamp

TRADES = 128     # clicks further apart than this may share a trade
GUARANTEE = 9000
BEFORE = 70      # minutes before the event of a stretch, more than a window of an hour
AFTER = 130

# What happened to the minutes of a stretch: how many were counted once, twice, more often, never.
Expected = collections.namedtuple('Expected', 'twice more never')
Stretch = collections.namedtuple('Stretch', 'zone minutes seconds expected')


def epoch(zone, *moment):
    return int(datetime.datetime(*moment, tzinfo=zoneinfo.ZoneInfo(zone)).timestamp())


def steady(zone, *moment):
    """The minutes around a moment, one after the other."""
    middle = epoch(zone, *moment)
    return [middle + 60 * i for i in range(-BEFORE, AFTER)]


def jump(seconds, minutes):
    """The clock is set by so many seconds and set right again after some minutes, or never."""
    start = epoch('UTC', 2023, 5, 14, 12, 0)
    return [start + 60 * i + (seconds if 0 <= i < minutes else 0) for i in range(-BEFORE, AFTER)]


def at(*seconds):
    """Starts in the given seconds of every minute (negative: of the minute before)."""
    return lambda j: seconds


def alternating(*seconds):
    return lambda j: (seconds[j % len(seconds)],)


HOUR, YEAR = 3600, 365 * 86400
ONCE = Expected(0, 0, 0)


def one_after_the_other(zone, moment, expected=ONCE, seconds=at(1)):
    """A stretch around a moment (UTC) with nothing but its place in the calendar to it."""
    return Stretch(zone, steady('UTC', *moment), seconds, expected)


def noon(seconds):
    return one_after_the_other('UTC', (2023, 5, 14, 12, 0), ONCE, seconds)


def set_clock(seconds, minutes, expected):
    return Stretch('UTC', jump(seconds, minutes), at(1), expected)


STRETCHES = {
    'every minute, second 0': noon(at(0)),
    **{'second %d' % s: noon(at(s)) for s in range(53, 60)},
    'one second early or late': noon(alternating(-1, 1, 0, -1, 0)),
    'the same minute twice': noon(at(1, 30)),
    'twice, across the minute': noon(at(-1, 0)),
    'back an hour': set_clock(-HOUR, 9999, Expected(60, 0, 0)),
    'back an hour and right again': set_clock(-HOUR, 10, Expected(59, 0, 1)),
    'forward an hour and right again': set_clock(HOUR, 10, Expected(9, 0, 1)),
    'forward a year and right again': set_clock(YEAR, 10, Expected(49, 0, 1)),
    'forward a year and a day and back': set_clock(YEAR + 86400, 10, Expected(0, 0, 2)),
    **{'summer time %s, %s' % (what, zone.split('/')[1]):
       one_after_the_other(zone, moment, Expected(twice, 0, 0)) for what, zone, moment, twice in (
           ('begins', 'Europe/Berlin', (2024, 3, 31, 1, 0), 59),
           ('ends', 'Europe/Berlin', (2024, 10, 27, 1, 0), 60),
           ('begins', 'America/New_York', (2024, 3, 10, 7, 0), 59),
           ('ends', 'America/New_York', (2024, 11, 3, 6, 0), 60),
           ('begins', 'Australia/Lord_Howe', (2024, 10, 5, 15, 30), 30),
           ('ends', 'Australia/Lord_Howe', (2024, 4, 6, 15, 0), 30))},
    'New Year': one_after_the_other('UTC', (2025, 1, 1, 0, 0)),
    'the leap day begins': one_after_the_other('UTC', (2024, 2, 29, 0, 0)),
    'the leap day ends': one_after_the_other('UTC', (2024, 3, 1, 0, 0)),
}
IN_SHORT = ['second 55', 'one second early or late', 'back an hour', 'summer time begins, Berlin',
            'summer time ends, Lord_Howe', 'New Year']


class Simulation:
    def __init__(self, program, site, stretch):
        self.program, self.site, self.zone = program, site, stretch.zone
        first = stretch.minutes[0]
        layout.lay_out(site, first, stretch.zone, companions=False)
        shutil.rmtree(os.path.join(site, 'l/in'))
        shutil.rmtree(os.path.join(site, 'l/out'))
        trades = layout.usual_trades()[:RESERVED]
        trades += [(100 + i, 'trade%d' % i, {'_884': GUARANTEE}) for i in range(TRADES)]
        layout.set_index(site, trades, bytes(layout.STATISTICS))
        layout.write(site, 'd/t/sum', ''.join('|%d|%s\n' % (i, '0|' * 42) for i, _, _ in trades))
        self.left = [GUARANTEE] * TRADES
        self.counted = []   # how often each minute's click was counted
        self.wrong = []
        self.lowest = self.lowest_clamped = 0
        self.runs = self.refused = 0

    def click(self, moment):
        """The click of the minute that begins at the moment, at the end of its log."""
        path = os.path.join(self.site, 'l/out', stamp(moment, '%y-%j-%H-%M', self.zone))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, 'a') as f:
            f.write(layout.out_record('nocookie', 100 + len(self.counted) % TRADES))
        self.counted.append(0)

    def start(self, moment):
        history = layout.read(self.site, 'l/sys/cron.last')
        summary = os.stat(os.path.join(self.site, 'd/t/sum')).st_ino
        totals = layout.read(self.site, 'd/h/all.his')
        if layout.run(self.program, self.site, moment, self.zone) != 0:
            self.wrong.append('a run ended with another status')
        self.runs += 1
        # The program's clock is not the one that dates files.
        if layout.read(self.site, 'l/sys/cron.last') != history:
            os.utime(os.path.join(self.site, 'l/sys/cron.last'), (moment, moment))
        if layout.read(self.site, 'd/h/all.his') != totals:
            os.utime(os.path.join(self.site, 'd/h/all.his'), (moment, moment))
        if os.stat(os.path.join(self.site, 'd/t/sum')).st_ino == summary:
            self.refused += 1
            return
        self.look_at_counters(moment)
        self.look_at_guarantees()

    def look_at_counters(self, moment):
        windows = layout.summary(self.site)
        if windows is None or len(windows) != RESERVED + TRADES:
            self.wrong.append('d/t/sum is damaged')
            return
        lowest = min(min(values) for values in windows.values())
        self.lowest = min(self.lowest, lowest)
        rounded = moment + (61 - moment % 60 if moment % 60 >= 53 else 0)
        if rounded // 60 % 5 == 0:
            self.lowest_clamped = min(self.lowest_clamped, lowest)

    def look_at_guarantees(self):
        index = layout.read(self.site, 'd/t/index')
        for k in range(TRADES):
            left, = struct.unpack_from('<i', index, (RESERVED + k) * RECORD + HITS_LEFT)
            newest = len(self.counted) - 1 - (len(self.counted) - 1 - k) % TRADES
            if left == self.left[k]:
                continue
            self.counted[newest] += self.left[k] - left
            self.left[k] = left


def play(program, folder, stretch, short):
    """Runs a stretch to its end. The clicks of the last minute are no run's business yet."""
    site = os.path.join(folder, 'site')
    simulation = Simulation(program, site, stretch)
    for j, minute in enumerate(stretch.minutes[:BEFORE + 70 if short else None]):
        for second in stretch.seconds(j):
            simulation.start(minute + second)
        simulation.click(minute)
    shutil.rmtree(site)
    simulation.counted.pop()
    return simulation


def main():
    program, chosen, short = layout.command_line(__doc__, '--short')
    score = layout.Score()
    print('%-34s %5s %7s %6s %6s %6s %6s %7s' % ('stretch', 'runs', 'refused', 'once', 'twice',
                                                 'more', 'never', 'lowest'))
    with layout.scratch() as folder:
        for name, stretch in STRETCHES.items():
            if name not in (chosen or (IN_SHORT if short else STRETCHES)):
                continue
            s = play(program, folder, stretch, short)
            times = collections.Counter(s.counted)
            found = Expected(times[2], sum(n for t, n in times.items() if t > 2), times[0])
            print('%-34s %5d %7d %6d %6d %6d %6d %7d' % (
                name, s.runs, s.refused, times[1], found.twice, found.more, found.never, s.lowest),
                flush=True)
            if s.lowest_clamped < 0:
                s.wrong.append('%d after a minute that clamps' % s.lowest_clamped)
            if stretch.expected != found:
                s.wrong.append('expected %s' % (stretch.expected,))
            score.add(name, s.wrong)
    score.finish()


main()
