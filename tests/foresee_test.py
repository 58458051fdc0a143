#!/usr/bin/env python3
"""What the inspector foresees and explains against what a run then writes.

    foresee_test.py BUILD_DIRECTORY [CASES]

Sites are made, one thing of each is changed, and each is brought to a minute in which a run does more
than usual. There "preview --hits --list-file" on one copy and a run on the other must give the same
d/out.lst, byte for byte, or both none; the first copy must be as it was, and after the run "why" must
give every trade the rank, the weights, the state and the skim that the new list has.  CASES is a
folder of recorded sites (NAME.tar.gz with case.json and before/), which go that way instead.
Takes a C++ compiler.
"""
import glob
import hashlib
import json
import os
import shutil
import struct
import subprocess
import sys
import tarfile
import tempfile

BUILD = os.path.realpath(sys.argv[1])
HERE = os.path.dirname(os.path.abspath(__file__))
MINUTE = 60
NOON = 1794830400  # 2026-11-16 12:00:00 UTC

# Name, moment of the run, how many minutes before it the last run was.
MOMENTS = [('a plain minute', NOON + 12 * MINUTE + 10, 1), ('a fifth minute', NOON + 5 * MINUTE, 1),
           ('23:59', NOON + 43140 + 7, 1), ('00:00', NOON + 43200 + 5, 1), ('minute 1', NOON + 61, 1),
           ('a catch-up over midnight', NOON + 43200 + 7 * MINUTE, 12),
           ('a start ahead of the hour', NOON + 3600 - 4, 1)]


def replace(path, text):
    return lambda site: open(f'{site}/{path}', 'w').write(text)


def remove(path):
    return lambda site: os.remove(f'{site}/{path}')


def change_records(site):
    """Every mode, countdowns about to end, forced listings, quotas below the minimum."""
    with open(f'{site}/d/t/index', 'r+b') as index:
        records = bytearray(index.read())
        for at in range(11 * 996, len(records), 996):
            trade = at // 996
            fields = [trade % 5 - 1, trade % 7 - 1, trade % 2, trade % 4 - 1, trade % 3 - 1]
            struct.pack_into('<5i', records, at + 880, *fields)
        index.seek(0)
        index.write(records)


CHANGES = [('nothing', lambda site: None),
           ('a formula', replace('d/out.mod', '|90|120|80|3|2|1|0||10|a=a+1;|\n')),
           ('a formula with errors', replace('d/out.mod', '|100|100|100|3|2|1|1||10|(rin24-x/0|\n')),
           ('no window weights', replace('d/out.mod', '|100|100|100|0|0|0|0||0||\n')),
           ('records', change_records), ('dynamic skim', replace('d/ds', '|1|1|1|1|44|6|1|0|71|1|2|-5|')),
           ('no d/out.set', remove('d/out.set')), ('no d/nm/track', remove('d/nm/track')),
           ('a late d/sleep', replace('d/sleep', '49'))]


def tree(root):
    seen = {}
    for folder, _, names in os.walk(root):
        for name in names:
            path = os.path.join(folder, name)
            status = os.stat(path)
            with open(path, 'rb') as file:
                digest = hashlib.sha256(file.read()).hexdigest()
            seen[os.path.relpath(path, root)] = (digest, status.st_mtime_ns, status.st_mode)
    return seen


def entries(path):
    with open(path, 'rb') as file:
        data = file.read()[284:]
    for at in range(0, len(data), 216):
        ident, = struct.unpack_from('<i', data, at)
        weight, second, state, skim = struct.unpack_from('<ddii', data, at + 160)
        yield ident, weight, second, state, skim


STATES = ['normal', 'quota or guarantee', 'forced 1', 'forced 2']


class Checker:
    def __init__(self, work):
        self.work, self.checks, self.failures, self.lists, self.ends = work, 0, 0, 0, 0
        self.clock = f'{work}/clock.so'
        subprocess.run(['c++', '-O1', '-shared', '-fPIC', '-o', self.clock,
                        f'{HERE}/../bench/frozen_clock.cpp'], check=True)

    def expect(self, holds, what):
        self.checks += 1
        if not holds:
            self.failures += 1
            print('FAIL', what)

    def start(self, site, moment, zone, program, *arguments):
        env = dict(os.environ, TZ=zone, LD_PRELOAD=self.clock, FROZEN_CLOCK=str(moment))
        return subprocess.run([f'{BUILD}/{program}', *arguments], cwd=site, env=env, timeout=300,
                              stdin=subprocess.DEVNULL, capture_output=True)

    def compare(self, what, site, moment, zone):
        """The run on site, the preview on a copy of it."""
        copy, foreseen = f'{self.work}/copy', f'{self.work}/foreseen'
        shutil.rmtree(copy, ignore_errors=True)
        if os.path.exists(foreseen):
            os.remove(foreseen)
        shutil.copytree(site, copy, symlinks=True)
        written = f'{site}/d/out.lst'
        if os.path.exists(written):
            os.remove(written)
        before = tree(copy)
        shown = self.start(copy, moment, zone, 'vantrel-inspect', 'preview', '--hits', '--list-file', foreseen)
        stories = self.start(copy, moment, zone, 'vantrel-inspect', 'why', '--all', '--hits', '--json')
        self.expect(tree(copy) == before, f'{what}: looking changed the site')
        self.expect(self.start(site, moment, zone, 'vantrel-cron').returncode == 0, f'{what}: the run')
        if not os.path.exists(written):
            self.ends += 1
            self.expect(shown.returncode == 2 and stories.returncode == 1 and not os.path.exists(foreseen),
                        f'{what}: the run has no list')
            return
        self.lists += 1
        same = os.path.exists(foreseen) and open(foreseen, 'rb').read() == open(written, 'rb').read()
        self.expect(same, f'{what}: another list than foreseen\n{shown.stderr.decode()}')
        listed = list(entries(written))
        told = [self.told(story) for story in json.loads(stories.stdout)['data']['trades']]
        self.expect(sorted(rank for rank, _, _ in told) == list(range(1, len(told) + 1)), f'{what}: ranks')
        self.expect([entry for _, is_listed, entry in sorted(told) if is_listed] == listed, f'{what}: why tells another list')
        self.explain(what, site, moment, zone, listed)

    def explain(self, what, site, moment, zone, listed):
        """The list once more, from what is stored now: but entries of one id share their windows then."""
        stories = self.start(site, moment, zone, 'vantrel-inspect', 'why', '--all', '--json')
        told = [self.told(story) for story in json.loads(stories.stdout)['data']['trades']]
        if len({entry[0] for _, _, entry in told}) < len(told):
            return
        order = [entry[:3] for _, _, entry in sorted(told)]
        places = [order.index(entry[:3]) if entry[:3] in order else -1 for entry in listed]
        self.expect(-1 not in places and places == sorted(places), f'{what}: why of the stored windows')

    def told(self, story):
        result = story['result']
        skim = -1 if result['skim'] is None else result['skim']
        state = STATES.index(result['state']) if result['state'] in STATES else 0
        return result['rank'], result['listed'], (story['id'], result['weight'], result['second_weight'], state, skim)


def made_sites(checker):
    for number, (change_name, change) in enumerate(CHANGES):
        for moment_name, moment, ago in MOMENTS if number in (0, 4) else MOMENTS[number % 3::3]:
            site = f'{checker.work}/site'
            shutil.rmtree(site, ignore_errors=True)
            last = moment - ago * MINUTE
            subprocess.run([f'{BUILD}/vantrel-sample-site', site, '--at', str(last), '--hits', '20', '--ranges', '200',
                            '--trades', '15', '--seed', str(number + 1)], check=True, env=dict(os.environ, TZ='UTC'))
            checker.start(site, last, 'UTC', 'vantrel-cron')
            for name in os.listdir(f'{site}/l/in'):  # the logs of the minutes to come
                for way in ('in', 'out'):
                    for ahead in range(ago + 1):
                        stamp = subprocess.run(['date', '-u', f'-d@{moment - ahead * MINUTE}', '+%y-%j-%H-%M'],
                                               capture_output=True, text=True).stdout.strip()
                        source = f'{site}/l/{way}/{name}'
                        if os.path.exists(source) and not os.path.exists(f'{site}/l/{way}/{stamp}'):
                            shutil.copy(source, f'{site}/l/{way}/{stamp}')
                break
            change(site)
            checker.compare(f'{change_name}, {moment_name}', site, moment, 'UTC')


def recorded_sites(checker, folder):
    for path in sorted(glob.glob(f'{folder}/*.tar.gz')):
        base = f'{checker.work}/case'
        shutil.rmtree(base, ignore_errors=True)
        with tarfile.open(path) as archive:
            archive.extractall(base)
        with open(f'{base}/case.json') as file:
            case = json.load(file)
        checker.compare(os.path.basename(path), f'{base}/before', case['epoch'], case['zone'])


def main():
    with tempfile.TemporaryDirectory() as work:
        checker = Checker(work)
        if len(sys.argv) > 2:
            recorded_sites(checker, sys.argv[2])
        else:
            made_sites(checker)
        if checker.lists == 0 or checker.ends == 0:
            checker.expect(False, 'no list, or no run that ends early, was seen')
        print(f'{checker.lists} lists and {checker.ends} early ends foreseen')
        print(f'{checker.checks - checker.failures} passed, {checker.failures} failed')
        sys.exit(1 if checker.failures else 0)


main()
