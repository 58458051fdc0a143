#!/usr/bin/env python3
"""Walks a run that does everything from call to call and lets each of them go wrong.

    walk.py BUILD_DIRECTORY [--short] [--in-place] [MODE ...]

Modes, all by default:
  kill    SIGKILL on entering each system call of the run
  full    every write from the n-th on fails with ENOSPC, for every n; once more with the calls
          that a full disk can fail besides (ftruncate, fsync, rename)
  single  each single call fails, with EIO, EACCES and EMFILE
  short   every write takes half its bytes; the n-th takes one byte and all later ones ENOSPC
  memory  each single allocation fails; all allocations from the n-th on fail
  stop    the run is stopped behind each call; two later runs come and go; it goes on
  overlap the run is stopped behind a call, another one of the same or the next minute as well, and
          they end one after the other: 400 such orders by chance (the same ones each time)

With --in-place (kill, full, single and stop) the folders take no new file: what is replaced otherwise is
written in place.

After each case the files that cannot be rebuilt must be whole, and the next run, a minute later and
without the fault, must work with no repair. Of runs that overlap none may wait for another, and the
hits of every minute must be counted once. Needs strace, python3 and a C++ compiler (Debian
packages strace, python3, g++). --short takes a sample of the cases. Two cases run at a time.
"""
import collections
from concurrent.futures import ThreadPoolExecutor
import itertools
import os
import random
import re
import shutil
import struct

import layout
from layout import CLOCK, HITS_LEFT, HOURS_LEFT, RECORD, SLOT, STATISTICS
from system_calls import ERRORS, FULL, READS, SINGLE, Stopped, WRITES, calls_of, expected_event, injector

# The run that does everything, in three parts of it: a minute of the day, whether the outgoing list
# grows, how many minutes with hits the run counts. The one at 23:59 writes the history and a backup,
# the one at 23:20 removes old backups, the one on the hour steps the hours of a quota and makes up
# for minutes without a run, with a run history too short to be cut.
Scene = collections.namedtuple('Scene', 'name clock grows minutes')
SCENES = [Scene('23:59', CLOCK, False, 1), Scene('23:20', CLOCK - 39 * 60, True, 1),
          Scene('14:00', CLOCK - (9 * 60 + 59) * 60, True, 3)]
HITS = 3  # of each trade in a minute
UNKNOWN = 6  # the entry that counts for trades that are none

LEFTOVER = re.compile(r'\.new\.\d+\.\d+$')


class Walker:
    def __init__(self, program, scene, folder, in_place):
        self.program, self.scene, self.folder = program, scene, folder
        self.in_place = in_place
        self.numbers = itertools.count()
        self.lost = 0  # cases in which the minute the run was to count is counted by no run
        self.template = os.path.join(folder, scene.name, 'site')
        layout.lay_out(self.template, scene.clock)
        layout.at_work_everywhere(self.template, scene.clock, scene.grows)
        if scene.minutes > 1:
            runs = [layout.stamp(scene.clock - 60 * (scene.minutes + i), '%m%d%H%M', 'UTC')
                    for i in range(12, -1, -1)]
            layout.write(self.template, 'l/sys/cron.run', '\n'.join(runs) + '\n')
        if in_place:  # a line of a trade that is gone: the totals become shorter
            layout.write(self.template, 'd/t/sum', layout.read(self.template, 'd/t/sum') +
                         (b'|77' + b'|9' * 42 + b'|\n') * 5)
        self.old = layout.tree(self.template)
        self.calls = self.traced()
        site = self.fresh()
        assert layout.run(program, site, scene.clock) == 0
        self.new = layout.tree(site)
        self.sums = layout.summary(site)
        lazy = [what for what, done in self.reached().items() if not done]
        assert not lazy, 'the run of %s did not do: %s' % (scene.name, lazy)
        layout.remove(site)

    def reached(self):
        """What the run of the scene is there for, and whether it did it."""
        old, new, scene = self.old, self.new, self.scene
        gone = [name for name in old if name not in new]
        hours = [struct.unpack_from('<i', x['d/t/index'], 12 * RECORD + HOURS_LEFT)[0]
                 for x in (old, new)]
        day = scene.name == '23:59'
        return {'all minutes': self.sums[11][0] - 9 == HITS * scene.minutes,
                'slots': all(new[n] != old[n] for n in old if re.fullmatch(r'd/t/1[1-5]', n)),
                'guarantee': new['d/t/index'] != old['d/t/index'],
                'list': new['d/out.lst'] != old['d/out.lst'] and
                scene.grows == (len(new['d/out.lst']) > len(old['d/out.lst'])),
                'synchronisation': new['d/set'].split(b'\n')[4] == b'|2|' != old['d/set'].split(
                    b'\n')[4] and b'sh_sync' in new['companions.out'],
                'companions': (scene.clock // 60 % 3 == 0) == (b'sh_hta' in new['companions.out'])
                and (scene.clock // 60 % 2 == 0) == (b'sh_top' in new['companions.out']),
                'alert': b'Alert' in new['mail.out'] and new['d/alerts'] != old['d/alerts'],
                'old logs': any(name.startswith('l/in/') for name in gone),
                'run history': len(new['l/sys/cron.run'].split()) == (14 if scene.minutes > 1 else 20),
                'history': all((new[n] != old[n]) == day for n in old if n.startswith('d/h/')),
                'archive': day == any(n.startswith('d/backup/') and n not in old for n in new),
                'pruning': (scene.name == '23:20') == any(n.startswith('d/backup/') for n in gone),
                'hours of a quota': hours[0] - hours[1] == (scene.name == '14:00')}

    def fresh(self):
        site = os.path.join(self.folder, '%s.%d' % (self.scene.name, next(self.numbers)), 'site')
        shutil.copytree(self.template, site)
        if self.in_place:
            layout.take_no_new_file(site)
        return site

    def allocations(self):
        site = self.fresh()
        count = os.path.join(self.folder, 'count')
        assert layout.run(self.program, site, self.scene.clock, COUNT_TO=count) == 0
        layout.remove(site)
        return int(layout.read(self.folder, 'count'))

    def traced(self):
        site = self.fresh()
        trace = os.path.join(site, 'trace')
        assert layout.run(self.program, site, self.scene.clock,
                          tracer=('strace', '-y', '-o', trace)) == 0
        with open(trace, errors='replace') as f:
            calls = calls_of(f)
        layout.remove(site)
        return calls

    def case(self, what, exact, event=None, tracer=(), status=0, said=False, **variables):
        """Runs one case; what is wrong afterwards. said: a run that did not do all of its work must
        have said so."""
        site = self.fresh()
        got = layout.run(self.program, site, self.scene.clock, tracer=tracer, **variables)
        wrong = [] if got == status else ['exit status %s instead of %s' % (got, status)]
        wrong += self.after_fault(site, exact)
        if event and not self.reported(site, *event) and not self.complete(site):
            wrong.append('no event %s of level %s' % event)
        if said and not layout.events(site) and not self.complete(site):
            wrong.append('neither the whole work nor an event')
        wrong += self.after_next_run(site, exact)
        layout.remove(site)
        return '%s %s' % (self.scene.name, what), wrong

    def reported(self, site, subject, level):
        return any(s.startswith(subject) and lv == level for s, lv in layout.events(site))

    def complete(self, site):
        now = layout.tree(site)
        return all(now.get(name) == data for name, data in self.new.items()
                   if not name.endswith(('.log', '.gz')))

    def either(self, name, data):
        """Written in place and not cut yet, the rest may be the old one's, or nothing that counts."""
        old, new = self.old[name], self.new[name]
        rest = b'\n' * len(old) if name == 'd/t/sum' else old
        return data in (old, new) or self.in_place and data == new + rest[len(new):len(old)]

    def after_fault(self, site, exact):
        """exact: a file is the old or the new one. Otherwise a fault may have changed what the run
        knows, and the new file may be another one, but a whole one."""
        wrong, now = [], layout.tree(site)
        for name in self.old:
            removed_by_run = not exact and name.startswith(('d/backup/', 'l/in/', 'l/out/'))
            if name not in now and name in self.new and not removed_by_run:
                wrong.append(name + ' is gone')
        if wrong:
            return wrong
        if not self.either('d/set', now['d/set']):
            wrong.append('d/set is neither old nor new')
        for name, whole in (('d/t/sum', layout.summary(site) is not None and
                             len(layout.summary(site)) == len(layout.usual_trades())),
                            ('d/alerts', now['d/alerts'].count(b'|') == 15 and
                             now['d/alerts'].split(b'|')[:5] == self.new['d/alerts'].split(
                                 b'|')[:5])):
            if not (self.either(name, now[name]) or (whole and not exact)):
                wrong.append(name + ' is neither old nor new')
        return wrong + self.index(now, exact) + self.list(now, exact) + self.others(now, exact)

    def index(self, now, exact, later=False):
        """Not exact: some of the minutes may be missing, or counted by two runs. later: a run that
        came later may have stepped the hours once more."""
        old, new, got = (x['d/t/index'] for x in (self.old, self.new, now))
        if len(got) != len(old):
            return ['d/t/index has %d bytes' % len(got)]
        wrong = []
        for i in range(0, len(got), RECORD):
            records = [x[i:i + RECORD] for x in (old, new, got)]
            counters = [struct.unpack_from('<i', x, at)[0] for at in (HITS_LEFT, HOURS_LEFT)
                        for x in records]
            other = [x[:HITS_LEFT] + x[HITS_LEFT + 4:HOURS_LEFT] + x[HOURS_LEFT + 4:]
                     for x in records]
            hours = {*counters[3:5], *([counters[4] - 1] if later else [])}
            minute = (counters[1] - counters[0]) // self.scene.minutes
            hits = counters[:2] if exact or self.scene.minutes == 1 else [
                counters[0] + minute * n for n in range(2 * self.scene.minutes + 1)]
            if counters[2] not in hits or counters[5] not in hours or other[2] != other[0]:
                wrong.append('record %d of d/t/index is neither old nor new' % (i // RECORD))
        return wrong

    def list(self, now, exact):
        old, new, got = (x['d/out.lst'] for x in (self.old, self.new, now))
        if len(got) < min(len(old), len(new)):
            return ['d/out.lst has only %d bytes' % len(got)]
        found = layout.entries(got)
        if found is None:
            return ['d/out.lst is cut within an entry']
        known = {*layout.entries(old), *layout.entries(new)}
        if not {e[:4] for e in found} <= {e[:4] for e in known}:
            return ['an entry of d/out.lst has an id nobody has']
        if exact and not self.either('d/out.lst', got):
            return ['d/out.lst is neither old nor new']
        return []

    def others(self, now, exact):
        wrong = []
        for name, data in now.items():
            if data is None:
                continue
            if re.fullmatch(r'd/t/\d+', name):
                if len(data) != STATISTICS:
                    wrong.append('%s has %d bytes' % (name, len(data)))
                elif self.other_slots(data) != self.other_slots(self.old[name]):
                    wrong.append('%s: a slot of another minute changed' % name)
                elif exact and not self.either(name, data):
                    wrong.append('%s is neither old nor new' % name)
            elif name.startswith('d/h/') and not data.startswith(self.old[name]):
                wrong.append(name + ' lost records')
            elif exact and name.startswith('d/h/') and not self.either(name, data):
                wrong.append(name + ' is neither old nor new')
            elif name not in self.old and name not in self.new and not LEFTOVER.search(name):
                wrong.append('%s was left behind' % name)
        stamps, before = (x['l/sys/cron.run'].split(b'\n') for x in (now, self.old))
        if stamps[-1] or len(stamps) < min(21, len(before)) or any(len(s) != 8 for s in stamps[:-1]):
            wrong.append('l/sys/cron.run is damaged')
        return wrong

    def other_slots(self, data):
        """The slots that neither this run nor the next one may store into."""
        first, behind = ((self.scene.clock // 60 + i) % 1440 for i in (-self.scene.minutes, 1))
        slots = [data[i:i + SLOT] for i in range(0, len(data), SLOT)]
        return slots[behind:first] if behind < first else slots[:first] + slots[behind:]

    def after_next_run(self, site, exact):
        before = len(layout.events(site))
        wrong = []
        if layout.run(self.program, site, self.scene.clock + 60) != 0:
            wrong.append('the next run ends with another status')
        wrong += ['the next run reports %s' % s for s, level in layout.events(site)[before:]
                  if level == '1']
        now = layout.tree(site)
        sums = layout.summary(site)
        if sums is None or len(sums) != len(layout.usual_trades()):
            wrong.append('d/t/sum is damaged after the next run')
        else:
            counted, whole = sums[11][0] - 9, HITS * self.scene.minutes  # 9 before the run
            # A log that cannot be read is a minute less. A run history that cannot be appended to
            # lets the next run count the minutes again.
            noted = len(now['l/sys/cron.run'].split()) >= 15 or self.scene.minutes == 1
            if counted not in ((0, whole) if exact else range(0, whole + 1, HITS)) and (
                    noted or counted != 2 * whole):
                wrong.append('%d hits of the run\'s minutes counted' % counted)
            self.lost += counted == 0
            if exact and sums[UNKNOWN][0] != self.sums[UNKNOWN][0]:
                wrong.append('hits are counted that never were')
        if layout.entries(now['d/out.lst']) is None or len(now['d/out.lst']) != len(
                self.new['d/out.lst']):
            wrong.append('d/out.lst has another length after the next run')
        wrong += ['%s is still there after the next run' % n for n in now if LEFTOVER.search(n)]
        return wrong + self.index(now, exact, later=True) + self.others(now, False)

    def overlapping(self, what, first, second=None, apart=1, turned=False):
        """Runs that overlap: one that is stopped behind a call, and one of the same minute or the
        next that is stopped as well, or else two of the next minutes that are not."""
        site, clock = self.fresh(), self.scene.clock
        minutes = 3 if second is None else 1 + apart
        for i in range(1, minutes + 1):
            layout.write_logs(site, clock + 60 * i)
        runs = [Stopped(self.program, site, clock, first)]
        if second:
            runs.append(Stopped(self.program, site, clock + 60 * apart, second))
        else:
            runs += [layout.run(self.program, site, clock + 60 * i) for i in (1, 2)]
        wrong = ['exit status %s' % got for got in [
            run.ends() if isinstance(run, Stopped) else run
            for run in (runs[::-1] if turned else runs)] if got != 0]
        if layout.run(self.program, site, clock + 60 * minutes) != 0:
            wrong.append('the last run ends with another status')
        wrong += self.all_counted(site, HITS * (self.scene.minutes + minutes), first, second)
        layout.remove(site)
        return '%s %s' % (self.scene.name, what), wrong

    def all_counted(self, site, hits, first, may_lose):
        """Every hit once. may_lose: the minutes of one run may be missing, when two were stopped
        between their last look at d/t/sum and the rename; how often is printed."""
        wrong, now, sums = [], layout.tree(site), layout.summary(site)
        counted = sums[11][0] - 9 if sums else None
        left = 50 - struct.unpack_from('<i', now['d/t/index'], 12 * RECORD + HITS_LEFT)[0]
        # Nothing tells a run that is stopped between its last look at a file and the write in place.
        looking = {'d/t/index': ['newfstatat']} if not self.in_place else {
            name: ['newfstatat', 'fallocate'] for name in ('d/t/index', 'd/t/sum', 'l/sys/cron.run')}
        looking = first.name in looking.get(first.path, ())
        if counted != hits:
            self.lost += 1
            if not (self.in_place and looking) and not may_lose or may_lose and counted not in (hits - HITS, hits - HITS * self.scene.minutes):
                wrong.append('%s hits counted instead of %d' % (counted, hits))
        if left != hits and not may_lose and not looking:
            wrong.append('%d clicks of the guarantee counted instead of %d' % (left, hits))
        stamps = now['l/sys/cron.run'].split()
        in_order = self.in_place or stamps == sorted(set(stamps))
        if not in_order or len(stamps[-1]) != 8:
            wrong.append('l/sys/cron.run is damaged')
        if not {e[:4] for e in layout.entries(now['d/out.lst'])} <= {
                e[:4] for e in layout.entries(self.new['d/out.lst'])}:
            wrong.append('d/out.lst is damaged')
        wrong += ['%s is still there' % n for n in now if LEFTOVER.search(n)]
        return wrong + ['%s: level 1' % s for s, level in layout.events(site)
                        if level == '1' and not s.startswith('cron has already run')]

    # The modes: each gives the arguments of case() one after the other.

    def kill(self):
        for call in self.calls:
            yield dict(what='killed at %s(%s' % (call.name, call.text), exact=True, status=-9,
                       tracer=injector((call.name, 'signal=SIGKILL', '%d' % call.nth)))

    def full(self):
        for names in (WRITES, FULL):
            counts = collections.Counter(c.name for c in self.calls)
            first = {n: next((c.nth for c in self.calls if c.name == n), 1) for n in names}
            done = collections.Counter()
            for call in self.calls:
                if call.name not in names:
                    continue
                faults = [(n, 'error=ENOSPC', '%d+' % (first[n] + done[n])) for n in names
                          if counts[n]]
                done[call.name] += 1
                yield dict(what='disk full from %s(%s' % (call.name, call.text), exact=False,
                           tracer=injector(*faults))

    def single(self):
        for call in self.calls:
            errors = ERRORS if call.name in SINGLE else ('EIO',) if call.name in READS else ()
            for error in errors:
                yield dict(what='%s: %s(%s' % (error, call.name, call.text), exact=False,
                           event=expected_event(call, error),
                           tracer=injector((call.name, 'error=' + error, '%d' % call.nth)))

    def short(self):
        yield dict(what='half of each write', exact=True, SHORT_WRITE=-1)
        for n in range(1, 1 + sum(c.name in WRITES for c in self.calls)):
            yield dict(what='one byte of write %d, then a full disk' % n, exact=False,
                       SHORT_WRITE=n)

    def behind_clock(self):
        """The calls behind the last look at the clock, which stands still here: a run that is
        stopped before it would come back with the clock of a later minute."""
        first = next(i for i, call in enumerate(self.calls)
                     if call.name == 'close' and call.path == 'l/sys/cron.run')
        return self.calls[first:-1]

    def stop(self):
        for call in self.behind_clock():
            yield dict(what='stopped behind %s(%s' % (call.name, call.text), first=call)

    def overlap(self):
        chance = random.Random(self.scene.name)
        for n in range(134):
            first, second = (chance.choice(self.behind_clock()) for _ in range(2))
            apart, turned = n % 2, chance.random() < 0.5
            yield dict(what='%d minutes apart, stopped behind %s and behind %s, ended %s' % (
                apart, first.text, second.text, 'last one first' if turned else 'in order'),
                first=first, second=second, apart=apart, turned=turned)

    def memory(self):
        for n in range(1, self.allocations() + 1):
            yield dict(what='allocation %d fails' % n, exact=False, said=True, NO_MEMORY=n)
            yield dict(what='no memory from allocation %d on' % n, exact=False, NO_MEMORY=-n)


def main():
    program, chosen, short, in_place = layout.command_line(__doc__, '--short', '--in-place')
    if in_place:
        program = layout.bind_by_permissions(program)
    modes = chosen or (['kill', 'full', 'single', 'stop'] if in_place else [
        'kill', 'full', 'single', 'short', 'memory', 'stop', 'overlap'])
    step = {'kill': 7, 'full': 3, 'single': 41, 'short': 5, 'memory': 29, 'stop': 23,
            'overlap': 7} if short else {}
    score = layout.Score()
    with layout.scratch() as folder, ThreadPoolExecutor(2) as pool:
        walkers = [Walker(program, scene, folder, in_place) for scene in SCENES]
        for mode in modes:
            cases = [(w, c) for w in walkers for c in getattr(w, mode)()][::step.get(mode, 1)]
            before, lost = score.passed, sum(w.lost for w in walkers)
            for name, wrong in pool.map(lambda wc: (
                    wc[0].overlapping if 'first' in wc[1] else wc[0].case)(**wc[1]), cases):
                score.add(mode + ' ' + name, wrong)
            print('%s: %d of %d cases as they should be; the minute was lost in %d' % (
                mode, score.passed - before, len(cases), sum(w.lost for w in walkers) - lost),
                flush=True)
    score.finish()


main()
