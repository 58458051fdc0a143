#!/usr/bin/env python3
"""Power cuts by a model: what they may leave on a disk that had not written everything yet.

    power.py BUILD_DIRECTORY [--short] [--list] [SCENE ...]

The calls of real runs are recorded. For cuts behind each of them the contents are made up that the
disk may have by then, in three models (disk.py); each is laid out as a site, the next minutes are run
in it, and the promises of docs/operating.md are looked at. What is lost without breaking one is
counted. Scenes, all by default:
  plain     a minute like any other
  two       two of them, nothing written back between them but what they flush
  23:59     the history is written, and all the rest a run can do
  catch-up  three minutes of hits
  sync      a synchronisation, an alert and a run history to be shortened

6,000 states, 375 with --short; --list prints the first of each loss. Needs strace, python3 and a
C++ compiler (Debian packages strace, python3, g++). Two states are looked at at a time.
"""
import collections
import concurrent.futures
import itertools
import os
import random
import re
import shutil

import disk as disks
import layout
from layout import CLOCK, RECORD, SLOT

STATES, SHORT = 400, 25  # of each scene and model

# When the recorded runs start, how many they are, the minutes of hits the first of them counts,
# whether it does everything a run can do, and how many minutes are run behind the cut.
Scene = collections.namedtuple('Scene', 'name clock runs minutes everything next')
NOON = CLOCK - (11 * 60 + 52) * 60  # 12:07
SCENES = [Scene('plain', NOON, 1, 1, False, 2), Scene('two', NOON, 2, 1, False, 2),
          Scene('23:59', CLOCK, 1, 1, True, 3), Scene('catch-up', NOON - 7 * 60, 1, 3, False, 2),
          Scene('sync', NOON, 1, 1, True, 2)]

# Each minute has a trade of its own that has all its hits, so that the totals tell how often it was
# counted. Minute 0 is that of the first run's start.
BEFORE, BEHIND, HITS = 15, 7, 3
PAUSE = 3  # minutes without a run behind some of the cuts, while the machine starts
TRADES = [(i, 'entry%d' % i, {}) for i in range(layout.RESERVED)] + [
    (layout.RESERVED + i, 'minute%02d.example' % i, {'_884': 50, '_896': 5})
    for i in range(BEFORE + BEHIND)]

# Of calls that are many and alike, any does.
ALIKE = r'write d/t/\d+|append to d/h/(entry|minute).*'


def trade_of(minute):
    return TRADES[layout.RESERVED + BEFORE + minute]


class Prover:
    def __init__(self, program, scene, folder):
        self.program, self.scene, self.folder = program, scene, folder
        self.numbers = itertools.count()
        self.template = os.path.join(folder, scene.name, 'site')
        self.lay_out(self.template)
        self.old = layout.tree(self.template)
        self.disk = disks.Disk(self.old)
        site = self.fresh()
        for i in range(scene.runs):
            trace = os.path.join(folder, 'trace')
            assert layout.run(program, site, scene.clock + 60 * i, tracer=(
                'strace', '-xx', '-s', '1000000', '-o', trace)) == 0
            with open(trace) as lines:
                disks.Recorder(self.disk, site).read(lines)
        self.new = layout.tree(site)
        self.check_recording()
        shutil.rmtree(os.path.dirname(site))

    def lay_out(self, site):
        scene = self.scene
        layout.lay_out(site, scene.clock)
        if scene.everything:
            layout.at_work_everywhere(site, scene.clock)
            # With an empty piece, for which the run stores a 0: the file becomes longer.
            layout.write(site, 'd/alerts', '|./mailer.sh|a@b.example|c@d.example||0|0|10|0|' +
                         '0|0|1|0|1|0|')
        layout.set_index(site, TRADES)
        for name in self.histories():  # so long that the next record lies across two sectors
            layout.write(site, name, layout.read(site, name).ljust(disks.SECTOR - 9, b'\n'))
        os.utime(os.path.join(site, 'd/h/all.his'), (scene.clock - 86400, scene.clock - 86400))
        runs = [layout.stamp(scene.clock - 60 * (scene.minutes + i), '%m%d%H%M', 'UTC')
                for i in range(30 if scene.everything else 12, -1, -1)]
        layout.write(site, 'l/sys/cron.run', '\n'.join(runs) + '\n')
        for minute in range(-BEFORE, BEHIND):
            moment = scene.clock + 60 * minute
            name = layout.stamp(moment, '%y-%j-%H-%M', 'UTC')
            number, trade, _ = trade_of(minute)
            layout.write(site, 'l/in/' + name, layout.in_record(trade) * HITS)
            layout.write(site, 'l/out/' + name, layout.out_record('nobody.example', number) * HITS)
            layout.write(site, self.log_due(minute), 'old')

    def histories(self):
        return ['d/h/%s.his' % name for name in ['all', 'trades'] + [name for _, name, _ in TRADES]]

    def log_due(self, minute):
        """The log that the run which counts a minute removes."""
        return 'l/in/' + layout.stamp(self.scene.clock + 60 * minute - 25 * 3600, '%y-%j-%H-%M', 'UTC')

    def old_logs(self, site):
        return [minute for minute in range(-BEFORE, BEHIND)
                if os.path.exists(os.path.join(site, self.log_due(minute)))]

    def fresh(self):
        site = os.path.join(self.folder, '%s.%d' % (self.scene.name, next(self.numbers)), 'site')
        shutil.copytree(self.template, site)
        return site

    def check_recording(self):
        """The recording must give what the run left, and the run must have done its part."""
        made, _ = disks.any_moment(self.disk, len(self.disk.calls) - 1, disks.Everything())
        for name, data in made.items():
            assert self.new[name] == data, name
        changed = ['d/t/sum', 'd/out.lst', 'l/sys/cron.run', 'd/t/index']
        changed += ['d/set', 'd/alerts'] if self.scene.everything else []
        changed += self.histories() if self.scene.name == '23:59' else []
        for name in changed:
            assert self.new[name] != self.old[name], name + ' did not change'

    def states(self, model, number):
        """Different states, so many or as many as there are: (cut, contents, moment of the names,
        minutes without a run behind the cut)."""
        calls = self.disk.calls
        few = [i for i, call in enumerate(calls) if not re.fullmatch(ALIKE, call)]
        dice, seen = random.Random(self.scene.name + model), set()
        for _ in range(20 * number):
            cut = dice.choice((dice.choice(few), dice.randrange(len(calls)), len(calls) - 1))
            contents, moment = disks.MODELS[model](self.disk, cut, dice)
            key = hash(tuple(sorted(contents.items())))
            if key not in seen:
                yield cut, contents, moment, dice.choice((0, PAUSE))
            seen.add(key)
            if len(seen) == number:
                return

    def case(self, cut, contents, moment, pause):
        site = self.fresh()
        for name, data in self.old.items():
            if data is not None and name not in contents:
                os.remove(os.path.join(site, name))
        for name, data in contents.items():
            if data != self.old.get(name):
                layout.write(site, name, data)
        # When the day was last written, as far as the disk knows.
        totals = self.disk.versions[self.disk.names['d/h/all.his']]
        day = self.scene.clock - (0 if 0 < totals[-1][0] <= moment else 86400)
        os.utime(os.path.join(site, 'd/h/all.his'), (day, day))
        judge = Judge(self, cut, contents)
        judge.look_at_disk()
        first = self.scene.runs + pause
        due = self.old_logs(site)
        for i in range(first, first + self.scene.next):
            if layout.run(self.program, site, self.scene.clock + 60 * i) != 0:
                judge.wrong.append('a next run ends with another status')
            left = self.old_logs(site)
            if left == due:
                judge.wrong.append('a next run did not get to its cleanup')
            due = left
        judge.look_at_next(site, layout.tree(site))
        judge.count_minutes(layout.summary(site) or {}, i)
        shutil.rmtree(os.path.dirname(site))
        return judge


class Judge:
    """Looks at one state and at what the next runs made of it."""

    def __init__(self, prover, cut, contents):
        self.prover, self.scene, self.disk = prover, prover.scene, prover.disk
        self.cut, self.contents, self.wrong, self.lost = cut, contents, [], set()

    def look_at_disk(self):
        for name in ('d/t/sum', 'd/set'):
            if self.contents.get(name) not in self.disk.whole(name):
                self.wrong.append(name + ' is neither old nor new')
        if not self.alerts_whole():
            self.wrong.append('d/alerts is neither old nor new')
        self.look_at_numbers('d/t/index', RECORD, 'quotas as they were')
        for number, _, _ in TRADES:
            self.look_at_numbers('d/t/%d' % number, SLOT, 'slots as they were')
        if self.contents['d/out.lst'] not in self.versions('d/out.lst'):
            self.lost.add('a damaged list')
        stamps = self.contents['l/sys/cron.run'].split(b'\n')
        if not all(re.fullmatch(rb'\d{8}', stamp) for stamp in stamps[:-1]) or stamps[-1]:
            self.note_by_flush('l/sys/cron.run', 'a run history that ends in zeros')

    def versions(self, name):
        """The contents that a file of that name had behind any call."""
        files = {self.disk.names[name]} | {file for _, n, file, _ in self.disk.moves if n == name}
        return [data for file in files for _, data in self.disk.versions[file] if data]

    def alerts_whole(self):
        """The new fields or the old ones, each flag one or the other."""
        old, new = (tree['d/alerts'] for tree in (self.prover.old, self.prover.new))
        got = self.contents.get('d/alerts', b'')
        fields = [text.split(b'|') for text in (old, new, got)]
        return got in (old, new) or (len({len(f) for f in fields}) == 1 == len(
            {len(text) for text in (old, new, got)}) and all(g in (o, n) for o, n, g in zip(*fields)))

    def note_by_flush(self, name, what):
        """A damage that may only be seen until the file is flushed, which must come soon."""
        file = self.disk.names[name]
        changed = max(call for call, _ in self.disk.versions[file] if call <= self.cut)
        at_its_end = self.cut == len(self.disk.calls) - 1
        if at_its_end or self.disk.safe(file, self.cut) > changed > 0:
            self.wrong.append('%s, long after it was written' % what)
        else:
            self.lost.add(what)

    def look_at_numbers(self, name, size, lost):
        got, old = self.contents[name], self.prover.old[name]
        versions = self.versions(name)
        if len(got) != len(old):
            self.wrong.append('%s has %d bytes' % (name, len(got)))
        elif got not in versions:
            for i in range(0, len(got), 4):
                if got[i:i + 4] not in [data[i:i + 4] for data in versions]:
                    self.wrong.append('a number of %s is neither old nor new' % name)
        if got != self.disk.version(self.disk.names[name], self.cut):
            self.lost.add(lost)

    def look_at_history(self, now):
        """After the minute in which a missed day is made up for."""
        for name in self.prover.histories():
            before, got = self.prover.old[name], now[name]
            if not got.startswith(before):
                self.wrong.append(name + ' lost records')
            added = got[len(before):].replace(b'\n', b'')
            days, torn = divmod(added.count(b'|'), 30)
            if torn:
                self.note_by_flush(name, 'a day torn')
            elif b'\0' in added or not days:
                self.note_by_flush(name, 'a day without its record')
            elif days > 1:
                self.note_by_flush(name, 'a day with two records')

    def look_at_next(self, site, now):
        self.wrong += ['a next run reports ' + s for s, level in layout.events(site) if level == '1']
        if self.scene.name == '23:59':
            self.look_at_history(now)
        if b'./sh_top.cgi' not in now.get('companions.out', b''):
            self.wrong.append('no next run got to its end')
        self.wrong += [name + ' is still there' for name in now if '.new' in name]
        listed = layout.entries(now['d/out.lst'])
        if not listed or any(entry[:4] == bytes(4) for entry in listed):
            self.wrong.append('d/out.lst is damaged after the next runs')

    def count_minutes(self, sums, last):
        """last: the minute of the last run. One that was not counted is one of the run that was cut
        off; or of the pause, if that run's note was damaged."""
        if len(sums) != len(TRADES):
            self.wrong.append('d/t/sum is damaged after the next runs')
            return
        unnoted = 'a run history that ends in zeros' in self.lost
        for minute in range(-BEFORE, last):
            hits = sums[trade_of(minute)[0]][14] - 90
            times = hits / HITS + (minute < -self.scene.minutes)  # those were counted long ago
            if times not in (0, 1) or (times == 0 and minute >= self.scene.runs - 1 and not unnoted):
                self.wrong.append('a minute is counted %g times' % times)
            elif times == 0:
                self.lost.add('a minute not counted' if minute < self.scene.runs - 1 else
                              'a minute of the pause not counted')


def main():
    program, chosen, short, listing = layout.command_line(__doc__, '--short', '--list')
    score = layout.Score()
    with layout.scratch() as folder, concurrent.futures.ThreadPoolExecutor(2) as pool:
        for scene, model in itertools.product(SCENES, disks.MODELS):
            if chosen and scene.name not in chosen:
                continue
            if model == 'ordered':
                prover = Prover(program, scene, folder)
            states = list(prover.states(model, SHORT if short else STATES))
            lost, broken = collections.Counter(), 0
            for judge in pool.map(lambda state: prover.case(*state), states):
                where = '%s, %s, cut behind call %d (%s)' % (scene.name, model, judge.cut,
                                                             prover.disk.calls[judge.cut])
                score.add(where, sorted(set(judge.wrong)))
                broken += bool(judge.wrong)
                lost.update(judge.lost)
                for what in judge.lost if listing else ():
                    if lost[what] <= 3:
                        print('%s: %s' % (where, what))
            print('%s, %s: %d calls, %d states, %d not as promised; %s' % (
                scene.name, model, len(prover.disk.calls) - 1, len(states), broken,
                ', '.join('%s %d' % item for item in sorted(lost.items())) or 'nothing lost'),
                flush=True)
    score.finish()


main()
