#!/usr/bin/env python3
"""Kills and writers at moments nobody chose.

    neighbours.py BUILD_DIRECTORY [--short] [MODE ...]

Modes, both by default:
  kill    SIGKILL at random moments of runs on a site of 5,000 trades: what lies within a call
  change  another process cuts, lengthens, rewrites and replaces every file while runs read them; the
          program may be one with sanitizers
Needs python3 and a C++ compiler (for the clock). 400 kills and 200 runs, a tenth with --short.
"""
import multiprocessing
import os
import random
import shutil
import subprocess
import time

import layout
from layout import CLOCK, STATISTICS

PROGRAM, MODES, SHORT = layout.command_line(__doc__, '--short')


def large_site(site):
    layout.lay_out(site, companions=False)
    trades = layout.usual_trades() + [(100 + i, 't%d.example' % i, {'_884': 10 ** 6}) for i in range(5000)]
    layout.set_index(site, trades, statistics=b'')
    for number, _, _ in trades:
        os.truncate(os.path.join(site, 'd/t/%d' % number), STATISTICS)
    return len(trades)


def kill(score, folder):
    chance, site = random.Random(7), os.path.join(folder, 'large')
    trades, lasts = large_site(site), 1.0
    known = set()
    for i in range(40 if SHORT else 400):
        moment, wrong = CLOCK + 120 * i, []
        for minute in (moment, moment + 60):
            name = layout.stamp(minute - 60, '%y-%j-%H-%M', 'UTC')
            layout.write(site, 'l/out/' + name, ''.join(
                layout.out_record('t%d.example' % n, 100 + n) for n in range(0, 5000, 50)))
        began = time.monotonic()
        process = subprocess.Popen([PROGRAM], cwd=site, env=layout.environment(moment),
                                   stderr=subprocess.DEVNULL)
        time.sleep(chance.uniform(0, lasts))
        process.kill()
        process.wait()
        listed = layout.entries(layout.read(site, 'd/out.lst'))
        if layout.summary(site) is None or len(layout.summary(site)) != trades:
            wrong.append('d/t/sum is damaged')
        if len(layout.read(site, 'd/t/index')) != trades * layout.RECORD:
            wrong.append('d/t/index has another length')
        if listed is None or not known >= {entry[:58] for entry in listed} and known:
            wrong.append('d/out.lst has an entry that no trade has')
        began = time.monotonic()
        if layout.run(PROGRAM, site, moment + 60) != 0:
            wrong.append('the next run fails')
        lasts = (time.monotonic() - began) * 1.1
        now = os.listdir(site + '/d') + os.listdir(site + '/d/t') + os.listdir(site + '/l/sys')
        wrong += ['%s is left' % name for name in now if '.new.' in name]
        known |= {entry[:58] for entry in layout.entries(layout.read(site, 'd/out.lst'))}
        stamps = layout.read(site, 'l/sys/cron.run').split()
        if len(set(stamps)) != len(stamps):
            wrong.append('l/sys/cron.run has a run twice')
        score.add('kill %d' % i, wrong)
    wrong = [subject for subject, level in layout.events(site) if level == '1']
    score.add('events', wrong)


def meddle(site, seed, pipe):
    """Until the other end of the pipe says something."""
    chance = random.Random(seed)
    paths = [os.path.join(site, name) for name, data in layout.tree(site).items() if data]
    while not pipe.poll():
        path = chance.choice(paths)
        try:
            size = os.path.getsize(path)
            how = chance.randrange(4)
            if how == 0:
                os.truncate(path, chance.randrange(size + 1))
            elif how == 1:
                os.truncate(path, size + chance.randrange(1 << 16))
            elif os.path.basename(path).startswith(('sh_', 'mailer')):
                continue  # no programs made of noise
            else:
                target = path if how == 2 else path + '.other'
                with open(target, 'wb') as file:
                    file.write(chance.randbytes(chance.randrange(1 << 14)) * chance.randrange(1, 40))
                os.rename(target, path)
        except OSError:
            pass


def change(score, folder):
    site = os.path.join(folder, 'changing')
    runs = 20 if SHORT else 200
    for i in range(runs):
        shutil.rmtree(site, ignore_errors=True)
        # By the real clock: a preloaded one and the sanitizers do not go together.
        layout.lay_out(site, int(time.time()))
        layout.at_work_everywhere(site, int(time.time()))
        layout.write(site, 'd/ip.psv', ''.join('|%d|%d|us|\n' % (n * 64, n * 64 + 60) for n in range(60000)))
        pipe, other = multiprocessing.Pipe()
        meddler = multiprocessing.Process(target=meddle, args=(site, i, other))
        meddler.start()
        wrong = []
        for _ in range(5):
            for name in ('last', 'run'):  # or the guard would refuse the next one
                if os.path.exists(site + '/l/sys/cron.' + name):
                    os.unlink(site + '/l/sys/cron.' + name)
            got = subprocess.run([PROGRAM], cwd=site, env={'PATH': '/usr/bin:/bin', 'TZ': 'UTC'},
                                 stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, timeout=60)
            if got.returncode != 0 or b'Sanitizer' in got.stderr or b'runtime error' in got.stderr:
                wrong.append('status %d: %s' % (got.returncode, got.stderr[:2000]))
        pipe.send('enough')
        meddler.join()
        score.add('change %d' % i, wrong)


def main():
    score = layout.Score()
    with layout.scratch() as folder:
        for work in (kill, change):
            if not MODES or work.__name__ in MODES:
                before = score.passed
                work(score, folder)
                print('%s: %d as they should be' % (work.__name__, score.passed - before), flush=True)
    score.finish()


main()
