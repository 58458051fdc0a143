#!/usr/bin/env python3
"""Lets the traffic of a site fill a small file system of its own, and goes on for two days.

    full_disk.py BUILD_DIRECTORY [--short] [KIND ...]

It begins with a disk that old archives and hit logs of 25 hours have filled to the last block (or
inode, or what is not root's reserve). Every minute the request scripts log what they find room for,
more than the run removes; at 23:20 old archives are due to go, at 23:59 and 11:59 a new one is made.
Each hit that reached a log must be counted in its minute, no run may end early, and once there is
room again nothing is left of it. Needs python3, a C++ compiler, e2fsprogs and the right to mount
(else the cases are left out). Kinds: reserve, root, inodes, totals. --short goes on for two hours.
Before totals that have no room to grow a run ends, and the next one counts its minute: totals.
"""
import contextlib
import ctypes
import os
import random
import shutil
import struct
import subprocess
import tempfile

import layout
from layout import CLOCK, NAMES, SLOT

NOBODY = 65534
BEGIN = CLOCK - 3600  # 22:59
ARCHIVES, KEPT = 130, 90
STORES = {b'd/t/index', b'd/t/sum', b'd/t/11', b'd/h/all.his', b'd/tpl/page'}
KINDS = {'reserve': ('no reserve', ['-m', '0', '-N', '8000']),
         'root': ("root's reserve", ['-m', '10', '-N', '8000']),
         'inodes': ('no inodes', ['-m', '0', '-N', '1640']),
         'totals': ('totals to the end of a block', ['-m', '0', '-N', '8000'])}
BLOCK = 1024  # bytes


def own_mounts():
    """A view of the mounts that ends with this process."""
    if ctypes.CDLL(None).unshare(0x00020000) != 0:  # CLONE_NEWNS
        return False
    return subprocess.run(['mount', '--make-rprivate', '/'], stderr=subprocess.DEVNULL).returncode == 0


def log(site, minute, records):
    """Appends the records to the minute's logs as a user without privileges; how many incoming ones
    arrived whole."""
    name = layout.stamp(minute, '%y-%j-%H-%M', 'UTC')
    arrived = 0
    os.seteuid(NOBODY)
    try:
        for folder, record in (('in', layout.in_record(NAMES[0])),
                               ('out', layout.out_record(NAMES[1], 12))):
            with open('%s/l/%s/%s' % (site, folder, name), 'wb', buffering=0) as file:
                written = file.write(record.encode() * records)
                written -= written % len(record)
                file.truncate(written)
            arrived += written // len(record) if folder == 'in' else 0
    except OSError:
        pass
    finally:
        os.seteuid(0)
    return arrived


def fill(site, large):
    """With archives, of which some are due to go at 23:20, and the logs of the last 25 hours. Those
    that are due to go first are small ones."""
    for age in range(ARCHIVES):
        name = 'd/backup/old%03d.tar.gz' % age
        layout.write(site, name, b'a' * 10000)
        os.utime(os.path.join(site, name), (BEGIN - age * 3600,) * 2)
    records = 10
    for age in range(25 * 60 + 1, 2, -1):
        if age == 23 * 60 and large:
            records = 100
        if log(site, BEGIN - 60 * age, records) < records:
            records = 1


def crowd(site, number):
    """Other programs take three files a minute, and give them back every ten minutes."""
    for i in range(3):
        name = '%s/d/gr/%d.%d' % (site, number % 10, i)
        if number % 10:
            try:
                open(name, 'w').close()
            except OSError:
                return
        else:
            for late in range(1, 10):
                if os.path.exists('%s/d/gr/%d.%d' % (site, late, i)):
                    os.unlink('%s/d/gr/%d.%d' % (site, late, i))


def slot(site, moment):
    """Incoming hits in the slot of the minute before."""
    data = layout.read(site, 'd/t/11')
    return struct.unpack_from('<i', data, (moment // 60 - 1) % 1440 * SLOT)[0]


def archives(site):
    """How many were made in these days, and how many of them tar reads to their end and finds the
    stores in."""
    made = whole = 0
    for name in set(os.listdir(site + '/d/backup')) - {'24-134-23.tar.gz'}:  # laid out with the site
        if name.startswith('old'):
            continue
        found = subprocess.run(['tar', 'tzf', '%s/d/backup/%s' % (site, name)], capture_output=True)
        made += 1
        whole += found.returncode == 0 and STORES <= set(found.stdout.split(b'\n'))
    return made, whole


def simulate(program, site, minutes, reserve):
    """reserve: the run has room for an archive when others have none."""
    wrong, chance, full, hits = [], random.Random(1), 0, 0
    for i in range(minutes):
        moment = BEGIN + 60 * i
        crowd(site, i)
        wanted = chance.randrange(40, 160)
        arrived = log(site, moment - 60, wanted)
        full += arrived < wanted
        hits += arrived
        if layout.run(program, site, moment) != 0:
            wrong.append('minute %d: status' % i)
        if slot(site, moment) != arrived:
            wrong.append('minute %d: %d hits counted instead of %d' % (i, slot(site, moment), arrived))
    wrong += ['event ' + subject for subject, level in layout.events(site) if level == '1']
    if layout.summary(site) is None:
        wrong.append('d/t/sum is damaged')
    now = layout.tree(site)
    wrong += ['%s is left' % name for name in now if '.new.' in name]
    old = sorted(name for name in now if name.startswith('d/backup/old'))
    if len(old) >= KEPT or old != ['d/backup/old%03d.tar.gz' % age for age in range(len(old))]:
        wrong.append('%d old archives are left' % len(old))
    made, whole = archives(site)
    print('%d archives made, %d of them whole, %d days recorded' % (
        made, whole, now['d/h/all.his'].count(b'|202405') - 1))
    if whole < made and reserve:
        wrong.append('%d archives are cut' % (made - whole))
    return wrong, full, hits


def grow(program, site):
    """A minute that makes the totals longer than the blocks they have, on a disk without another."""
    log(site, BEGIN - 60, 1)
    layout.run(program, site, BEGIN)
    lines = [line.split(b'|') for line in layout.read(site, 'd/t/sum').split(b'\n')]
    missing = -len(layout.read(site, 'd/t/sum')) % BLOCK
    for line in lines[:-1]:
        for i in range(16, 30):  # the last 24 hours: what leaves them here is 0
            more = min(missing, 9 - len(line[i]))
            if more > 0:
                line[i], missing = b'1' * (len(line[i]) + more), missing - more
    layout.write(site, 'd/t/sum', b'\n'.join(b'|'.join(line) for line in lines))
    before = layout.summary(site)[11][0]
    arrived = log(site, BEGIN, 150)
    with open(site + '/filler', 'wb', buffering=0) as file:
        try:
            while file.write(bytes(BLOCK)):
                pass
        except OSError:
            pass
    layout.run(program, site, BEGIN + 60)
    os.unlink(site + '/filler')
    layout.run(program, site, BEGIN + 120)
    counted = layout.summary(site)[11][0] - before
    return [] if counted == arrived else ['%d hits counted instead of %d' % (counted, arrived)]


@contextlib.contextmanager
def small_disk(options):
    """A site that has a file system of 10 MB to itself, where everybody may log."""
    with tempfile.TemporaryDirectory(prefix='vantrel.') as folder:
        image, site = folder + '/image', folder + '/site'
        os.chmod(folder, 0o755)
        with open(image, 'wb') as f:
            f.truncate(10 << 20)
        subprocess.run(['mke2fs', '-q', '-F', '-t', 'ext4', '-b', str(BLOCK), *options, image], check=True)
        os.mkdir(site)
        subprocess.run(['mount', '-o', 'loop', image, site], check=True)
        os.chmod(site, 0o755)
        layout.lay_out(site, BEGIN, companions=False)
        for name in ('in', 'out'):
            shutil.rmtree('%s/l/%s' % (site, name))
            os.mkdir('%s/l/%s' % (site, name))
            os.chmod('%s/l/%s' % (site, name), 0o777)
        yield site
        subprocess.run(['umount', site], check=True)


def days(program, site, kind, minutes):
    """Full ones, and what was counted in them."""
    fill(site, kind != 'inodes')
    wrong, full, hits = simulate(program, site, minutes, kind == 'root')
    print('%d hits, the disk was full in %d minutes, %d complaints' % (hits, full, len(wrong)))
    if full == 0 or hits < 2000:
        wrong.append('the disk was never full, or always')
    return wrong[:10]


def main():
    program, chosen, short = layout.command_line(__doc__, '--short')
    score = layout.Score()
    if os.geteuid() != 0 or not own_mounts():
        print('no mounting here: nothing is proved')
        return
    for kind in chosen or KINDS:
        name, options = KINDS[kind]
        with small_disk(options) as site:
            print(name, flush=True)
            score.add(name, grow(program, site) if kind == 'totals' else
                      days(program, site, kind, 120 if short else 2880))
    score.finish()


main()
