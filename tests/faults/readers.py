#!/usr/bin/env python3
"""Reads d/out.lst without pause while real runs rewrite it, longer and shorter in turn.

    readers.py BUILD_DIRECTORY [--short] [--truncating] [--in-place]

No reader may ever see an empty list, one shorter than the shorter of the two, one cut within an
entry, or an entry that neither list has. --truncating lets a program that cuts the file and then
writes it take the place of the runs: the check must then fail. --in-place: the folder takes no new
file, so that the list is written in place; lists that are cut within an entry, and entries of two
halves, are then counted only. 1,000 runs, 100 with --short. Needs python3 and a C++ compiler (for the
clock).
"""
import multiprocessing
import os
import sys
import tempfile

import layout
from layout import CLOCK, ENTRY, HEADER


def prepare(site):
    """A site in which only a switch of the trades decides how many of them are listed."""
    layout.lay_out(site, companions=False)
    names = ['trade%d.example' % i for i in range(60)]
    trades = layout.usual_trades()[:layout.RESERVED]
    trades += [(100 + i, name, {}) for i, name in enumerate(names)]
    layout.set_index(site, trades)
    return trades


def switch_off(site, trades, every):
    """Takes all but every n-th trade from the list."""
    records = [layout.trade(i, name, **({'_880': 0} if i >= 100 and i % every else {}))
               for i, name, _ in trades]
    layout.write(site, 'd/t/index', b''.join(records))


def keep_off(site, moment):
    """What makes room for the next run: no synchronisation, no double run."""
    layout.write(site, 'l/sys/cron.run', layout.stamp(moment - 60, '%m%d%H%M', 'UTC') + '\n')


def read_on(path, shortest, known, pipe):
    """Reads the list, until the other end of the pipe says something. known: the entries of both
    lists."""
    kinds = dict.fromkeys(('reads', 'empty', 'short', 'ragged', 'foreign'), 0)
    while kinds['reads'] % 64 or not pipe.poll():
        file = os.open(path, os.O_RDONLY)
        data = b''.join(iter(lambda: os.read(file, 4096), b''))  # in pieces, as libraries read
        os.close(file)
        size = len(data)
        kinds['reads'] += 1
        kinds['empty'] += size == 0
        kinds['short'] += size < shortest
        cut = (size - HEADER) % ENTRY if size >= HEADER else 0
        kinds['ragged'] += cut != 0
        kinds['foreign'] += not set(layout.entries(data[:size - cut]) or ()) <= known
    pipe.send(kinds)


def main():
    program, _, short, truncating, in_place = layout.command_line(
        __doc__, '--short', '--truncating', '--in-place')
    if in_place:
        program = layout.bind_by_permissions(program)
    runs = 100 if short else 1000
    score = layout.Score()
    # On a real disk: the promise is about the file systems sites lie on.
    with tempfile.TemporaryDirectory(prefix='vantrel.') as folder:
        site = os.path.join(folder, 'site')
        trades = prepare(site)
        if in_place:
            layout.take_no_new_file(site)
        lengths = []
        known = set()
        pipe, other = multiprocessing.Pipe()
        child = None
        try:
            for i in range(runs + 2):
                moment = CLOCK + 60 * i
                switch_off(site, trades, 4 if i % 2 else 1)
                keep_off(site, moment)
                before = layout.read(site, 'd/out.lst')
                if truncating and i >= 2:
                    entries = (lengths[i % 2] - HEADER) // ENTRY
                    layout.write(site, 'd/out.lst', layout.list_of(entries, i % 2))
                elif layout.run(program, site, moment) != 0:
                    sys.exit('a run failed')
                now = layout.read(site, 'd/out.lst')
                known.update(layout.entries(now))
                lengths.append(len(now))
                if i == 1:
                    child = multiprocessing.Process(
                        target=read_on, args=(site + '/d/out.lst', min(lengths), known, other))
                    child.start()
                if i >= 2 and len(before) == lengths[-1]:
                    sys.exit('the list keeps its length: the runs prove nothing')
        finally:
            if child:
                pipe.send('enough')
                counted = pipe.recv()
                child.join()
        print('%d runs, lists of %d and %d bytes: %s' % (
            runs, min(lengths), max(lengths), ', '.join('%d %s' % (n, k) for k, n in
                                                        counted.items())))
        score.add('enough reads', [] if counted['reads'] > 5 * runs else ['too few'])
        for kind in ('empty', 'short') if in_place else ('empty', 'short', 'ragged', 'foreign'):
            score.add('no list that is %s' % kind, ['%d' % counted[kind]] if counted[kind] else [])
    score.finish()


main()
