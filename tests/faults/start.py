#!/usr/bin/env python3
"""Starts runs under conditions and with files that a site should not have, but may.

    start.py BUILD_DIRECTORY [--short] [GROUP ...]

Groups: streams, masks, readonly, attributes, leftovers, neighbours, children, faults, kinds, limits,
names, texts, records. After each run: status 0, every store whole, nothing touched around the site, and a next run that works once the
cause is gone. Needs python3 and a C++ compiler; as root it also gives files away and runs as another user
(setpriv of util-linux). --short leaves cases out of the long tables.
"""
import fcntl
import functools
import itertools
import os
import re
import resource
import shutil
import signal
import stat
import struct
import subprocess
import time

import layout
from layout import CLOCK, NAMES, SLOT

PROGRAM, CHOSEN, SHORT = layout.command_line(__doc__, '--short')
NOBODY = 65534
ROOT = os.geteuid() == 0
REPLACED = ['d/t/sum', 'd/set', 'd/out.lst', 'l/sys/cron.run', 'd/alerts']
STORES = ['d/t/sum', 'd/set', 'd/alerts', 'd/t/index', 'd/out.lst', 'd/t/11']
score = layout.Score()


class Case:
    """A site in a folder with things around it, which the run must leave alone."""

    def __init__(self, name, clock=CLOCK, lay_out=True):
        self.name, self.clock, self.wrong = name, clock, []
        self.root = os.path.join(FOLDER, 'case')
        shutil.rmtree(self.root, ignore_errors=True)
        self.site = os.path.join(self.root, 'www', 'site')
        for around in ('www/other/file', 'www/d/t/index', 'file', 'd.his', 'www/outside.his'):
            layout.write(self.root, around, 'around')
        if lay_out:
            layout.lay_out(self.site, clock)
            layout.at_work_everywhere(self.site, clock)
        self.before = None

    def write(self, name, text):
        layout.write(self.site, name, text)

    def give_away(self, which=lambda path: True):
        """To the user whom permissions bind."""
        for path in ['', *layout.tree(self.site)] if ROOT else ():
            if which(path):
                os.chown(os.path.join(self.site, path), NOBODY, NOBODY)

    def around(self):
        return {k: v for k, v in layout.tree(self.root).items() if not k.startswith('www/site')}

    def run(self, program=None, before_start=None, wrapper=(), umask=0o022, variables=None,
            status=(0,)):
        """Runs the program once; before_start: called in the new process."""
        self.before = layout.tree(self.site)
        around = self.around()
        env = layout.environment(self.clock) if variables is None else variables

        def prepare():
            os.umask(umask)
            if before_start:
                before_start()
        try:
            got = subprocess.run([*wrapper, program or PROGRAM], cwd=self.site, env=env,
                                 preexec_fn=prepare, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                 timeout=layout.PATIENCE).returncode
        except subprocess.TimeoutExpired:
            got = 'hanging'
        self.expect(got in status, 'exit status %s' % got)
        self.expect(self.around() == around, 'something around the site changed')
        self.check_log()
        return got

    def expect(self, holds, complaint):
        if not holds:
            self.wrong.append(complaint)

    def check_log(self):
        """Every line of the log is an event, whatever stood in the files."""
        path = os.path.join(self.site, 'l/sys/sys.log')
        if not os.path.isfile(path) or os.path.islink(path):
            return
        for line in layout.read(self.site, 'l/sys/sys.log').split(b'\n')[:-1]:
            whole = re.fullmatch(rb'\|\d{12}\|cron\|(1|2|3|10)\|[^|<>`\'"!\\/\r]*\|[01]\|{4}',
                                 line)
            self.expect(whole, 'a line of the log is no event: %r' % line[:80])

    def events(self):
        return layout.events(self.site)

    def expect_event(self, subject, level):
        found = [e for e in self.events() if e[0].startswith(subject) and e[1] == level]
        self.expect(len(found) == 1, '%d events %s of level %s' % (len(found), subject, level))

    def expect_hits(self, number, count):
        """In the 60-minute window, which had 9 of them."""
        got = layout.summary(self.site)[number][0] - 9
        self.expect(got == count, '%d hits counted instead of %d' % (got, count))

    def expect_unchanged(self, *names):
        now = layout.tree(self.site)
        for name in names or self.before:
            self.expect(now.get(name, '') == self.before[name], name + ' changed')

    def expect_complete(self, *but):
        """The run did what an undisturbed run does."""
        now = layout.tree(self.site)
        for name, data in REFERENCE.items():
            if name not in but and not name.endswith(('.gz', '.log')):
                self.expect(now.get(name, '') == data, name + ' is not what it should be')

    def expect_stores_whole(self, *but):
        """Old, or as new as a run may leave it."""
        now = layout.tree(self.site)
        for name in STORES:
            if name in but or now.get(name, '') == self.before.get(name, ''):
                continue
            data = now.get(name) or b''
            whole = {'d/t/sum': lambda: layout.summary(self.site) is not None and
                     data.count(b'\n') == self.before['d/t/sum'].count(b'\n'),
                     'd/set': lambda: data.count(b'\n') == 6,
                     'd/alerts': lambda: data.count(b'|') == 15,
                     'd/t/index': lambda: len(data) == len(self.before[name]),
                     'd/out.lst': lambda: layout.entries(data) is not None,
                     'd/t/11': lambda: len(data) == layout.STATISTICS}[name]()
            self.expect(whole, name + ' is damaged')

    def expect_slot(self, number, **counters):
        """The counters of the minute before the clock in a statistics file."""
        order = 'rin uin out clk ctt ctg cef rec proxy_in proxy_out proxy_clk rti rto rtc'.split()
        minute = (self.clock // 60 - 1) % 1440
        data = layout.read(self.site, 'd/t/%d' % number)[minute * SLOT:][:SLOT]
        for name, value in counters.items():
            at = order.index(name) * 4
            got = int.from_bytes(data[at:at + 4], 'little', signed=True)
            self.expect(got == value, '%s of %d is %d, not %d' % (name, number, got, value))

    def next_run(self):
        """A minute later, with nothing in the way: nothing may be left to repair by hand."""
        seen = len(self.events())
        got = layout.run(PROGRAM, self.site, self.clock + 60)
        self.expect(got == 0, 'the next run ends with %s' % got)
        for subject, level in self.events()[seen:]:
            self.expect(level == '0', 'the next run reports ' + subject)
        self.expect(layout.summary(self.site) is not None, 'd/t/sum is damaged')
        self.expect(layout.entries(layout.read(self.site, 'd/out.lst')), 'd/out.lst is damaged')

    def done(self):
        score.add(self.name, self.wrong)


def streams():
    for closed in itertools.chain.from_iterable(itertools.combinations(range(3), n)
                                                for n in range(4)):
        case = Case('closed %s' % (closed,))
        case.run(before_start=lambda c=closed: [os.close(n) for n in c])
        case.expect_complete()
        case.next_run()
        case.done()
        # A run that prints a page must not print it into a file that took the number.
        case = Case('closed %s, error page' % (closed,))
        os.unlink(case.site + '/d/nm/track')
        case.run(before_start=lambda c=closed: [os.close(n) for n in c])
        found = [n for n, data in layout.tree(case.site).items() if data and b'<div' in data]
        case.expect(not found, 'a page was printed into %s' % found)
        case.done()
    now = int(time.time())
    case = Case('empty environment', clock=now)
    os.utime(case.site + '/l/sys/cron.last', (1, 1))
    case.run(variables={})
    case.expect(layout.read(case.site, 'd/t/sum') != case.before['d/t/sum'], 'no work was done')
    case.expect(layout.summary(case.site) is not None, 'd/t/sum is damaged')
    case.done()


def masks():
    owners = [(os.geteuid(), os.getegid())] + ([(NOBODY, NOBODY), (12345, 0)] if ROOT else [])
    for umask, mode, (user, group) in itertools.product(
            (0, 0o077), (0o600, 0o640, 0o644, 0o666, 0o660, 0o751), owners):
        case = Case('umask %03o, mode %04o, owner %d:%d' % (umask, mode, user, group))
        replaced = [os.path.join(case.site, name) for name in ('d/t/sum', 'd/set')]
        for path in replaced:
            if ROOT:
                os.chown(path, user, group)
            os.chmod(path, mode)
        case.run(umask=umask)
        for path in replaced:
            now = os.stat(path)
            case.expect(stat.S_IMODE(now.st_mode) == mode, '%s has mode %o' % (path, now.st_mode))
            case.expect((now.st_uid, now.st_gid) == (user, group), path + ' has another owner')
        case.expect_complete()
        case.done()
    # Files of others, which a run that may not give files away must not take from them.
    for mode, (user, group), replaced in itertools.product(
            (0o666, 0o660, 0o664), ((NOBODY, NOBODY), (12345, NOBODY), (12345, 12345)), STORES[:3]):
        if not ROOT or mode != 0o666 and group != NOBODY:
            continue
        case = Case('%s of mode %04o and owner %d:%d, run by another' % (replaced, mode, user, group))
        case.give_away(lambda path: path != replaced)
        path = os.path.join(case.site, replaced)
        os.chown(path, user, group)
        os.chmod(path, mode)
        case.run(**unprivileged())
        now = os.stat(path)
        case.expect(stat.S_IMODE(now.st_mode) == mode, '%s has mode %o' % (path, now.st_mode))
        case.expect((now.st_uid, now.st_gid) == (user, group) or mode == 0o666, 'another owner')
        case.expect_complete()
        case.done()


@functools.cache
def unprivileged():
    """How a run is started by a user whom permissions bind."""
    program = os.path.join(FOLDER, 'program')
    shutil.copy(PROGRAM, program)
    library = os.path.join(FOLDER, 'clock')
    shutil.copy(layout.PRELOAD, library)
    os.chmod(FOLDER, 0o755)
    # The wrappers must not load the clock: it takes itself out of the environment.
    variables = layout.environment(CLOCK)
    del variables['LD_PRELOAD']
    user = ['setpriv', '--reuid=%d' % NOBODY, '--regid=%d' % NOBODY, '--clear-groups']
    return dict(program=program, variables=variables,
                wrapper=[*(user if ROOT else []), 'env', 'LD_PRELOAD=' + library])


def readonly():
    """By permissions, for a user whom they bind. What may be written: nothing, all but what a
    pattern names, or the files but no new ones."""
    folders = r'd|d/t|d/h|l/sys'
    table = [('everything', r'.*', None), ('d/t and d/set', r'd/t.*|d/set', ('d/t/index', '1')),
             ('d/t/sum', r'd/t/sum', ('d/t/sum', '1')),
             ('d/out.lst', r'd/out.lst', ('d/out.lst', '0')),
             ('d/alerts', r'd/alerts', ('d/alerts', '0')), ('d/t/11', r'd/t/11', ('d/t/11', '0')),
             ('d/set', r'd/set', None), ('the folders of d', folders, None),
             ('l/sys/cron.run', r'l/sys/cron.run', ('l/sys/cron.run', '0')),
             ('d/h/all.his', 'd/h/all.his', ('d/h/all.his', '0')),
             ('l/hdd.check', r'l/hdd.check', ('unable to perform hdd check (write test)', '1')),
             ('the event log', r'l/sys/sys.log', None),
             ('write-only', r'd/out.lst|l/sys/cron.last', None)]
    for name, pattern, event in table:
        case = Case('read-only: ' + name)
        case.give_away()
        for path in [os.path.join(case.site, p) for p in layout.tree(case.site)] + [case.site]:
            if re.fullmatch(pattern, os.path.relpath(path, case.site)):
                os.chmod(path, os.stat(path).st_mode & (0o222 if name == 'write-only' else 0o555))
        case.run(**unprivileged())
        if name == 'everything':
            case.expect_unchanged()
        if name in ('the folders of d', 'write-only'):  # the same, but in place
            case.expect_complete()
        if event:
            case.expect_event(*event)
        case.expect_stores_whole()
        subprocess.run(['chmod', '-R', 'u+w', case.site])
        case.next_run()
        case.done()
    mount = 'mount --bind . . && mount -o remount,bind,ro . && cd "$PWD" && exec "$@"'
    own = [*OWN_MOUNTS, mount, 'sh']
    if can_mount():
        case = Case('read-only file system')
        start = unprivileged()
        case.run(**{**start, 'wrapper': own + start['wrapper'][-2:]})
        case.expect_unchanged()
        case.next_run()
        case.done()


OWN_MOUNTS = ['unshare', '--mount', 'sh', '-c']


def can_mount():
    able = subprocess.run([*OWN_MOUNTS, 'mount -t tmpfs none .'], cwd=FOLDER,
                          stderr=subprocess.DEVNULL).returncode == 0
    if not able:
        print('no mounting here: the case is left out')
    return able


def attributes():
    """What belongs to a file besides its text, and files that no other file can take the place of."""
    nobody = 2 ** 32 - 1
    entries = [(1, 6, nobody), (2, 6, 4711), (4, 4, nobody), (16, 6, nobody), (32, 4, nobody)]
    access = struct.pack('<I', 2) + b''.join(struct.pack('<HHI', *entry) for entry in entries)
    carried = {'system.posix_acl_access': access, 'user.note': b'kept\0'}
    for name, (key, value) in itertools.product(REPLACED[:4], carried.items()):
        case = Case('%s of %s' % (key, name))
        path = os.path.join(case.site, name)
        try:
            os.setxattr(path, key, value)
        except OSError:
            print('no %s in this file system: the case is left out' % key)
            continue
        case.run()
        case.expect(layout.read(case.site, name) == REFERENCE[name], 'not written')
        case.expect(key in os.listxattr(path) and os.getxattr(path, key) == value, 'it is another one')
        case.done()
    for name in REPLACED[:4]:
        case = Case('default access list of the folder of ' + name)
        path = os.path.join(case.site, name)
        os.setxattr(os.path.dirname(path), 'system.posix_acl_default', access)
        case.run()
        case.expect_complete()
        case.expect(not os.listxattr(path), 'the file has got an access list')
        case.done()
    own = 'for f in %s; do mount --bind $f $f; done; cd "$PWD" && exec "$@"' % ' '.join(REPLACED)
    if can_mount():
        case = Case('files mounted by themselves')
        start = unprivileged()
        case.run(**{**start, 'wrapper': [*OWN_MOUNTS, own, 'sh'] + start['wrapper'][-2:]})
        case.expect_complete()
        case.expect(not any('.new' in name for name in layout.tree(case.site)), 'a new file is left')
        case.next_run()
        case.done()


def leftovers():
    """What killed runs, or somebody else, left where runs write their new files."""
    kinds = ['garbage', 'link around', 'link nowhere', 'hard link around', 'folder', 'fifo']
    for kind in kinds + ['of root'] * ROOT:
        case = Case('left over: ' + kind)
        names = ['d/t/sum.new', *(name + '.new.77.28588888' for name in REPLACED)]
        for path in (os.path.join(case.site, name) for name in names):
            if kind in ('garbage', 'of root'):
                layout.write('', path, 'garbage' * 999)
            elif kind == 'folder':
                os.mkdir(path)
            elif kind == 'fifo':
                os.mkfifo(path)
            elif kind == 'hard link around':
                os.link(os.path.join(case.root, 'file'), path)
            else:
                os.symlink(os.path.join(case.root, 'file' if 'around' in kind else 'no'), path)
        for name in ('d/set.new.mine', 'd/set.newer', 'd/t/11.new.1.2', 'd/out.lst.old'):
            case.write(name, 'kept')
        if kind == 'of root':
            case.give_away(lambda p: p not in names)
        case.run(**(unprivileged() if kind == 'of root' else {}))
        case.expect_complete()
        case.expect_unchanged('d/set.new.mine', 'd/set.newer', 'd/t/11.new.1.2', 'd/out.lst.old')
        left = [name for name in names if os.path.lexists(os.path.join(case.site, name))]
        case.expect(kind == 'folder' or not left, '%s still there' % left)
        case.done()


def neighbours():
    """Somebody who may write a folder but is not trusted: links and further names of a file around
    the site in the place of every file the run writes. And a reader with a lease on each of them."""
    names = [*STORES, 'l/sys/cron.run', 'l/sys/cron.last', 'l/sys/sys.log', 'l/hdd.check',
             'd/h/all.his', 'd/h/alpha.example.his', 'd/backup/24-135-23.tar.gz']
    for name, kind in itertools.product(names, ['link', 'hard link', 'lease']):
        if kind == 'link' and not ROOT:
            continue
        case = Case('%s: %s of somebody else' % (name, kind))
        path, around = os.path.join(case.site, name), os.path.join(case.root, 'file')
        if not os.path.exists(path):
            case.write(name, '')
        shutil.copy(path, around)
        holder = None
        if kind == 'lease':
            holder = os.open(path, os.O_RDONLY)
            signal.signal(signal.SIGIO, signal.SIG_IGN)
            fcntl.fcntl(holder, fcntl.F_SETLEASE, fcntl.F_RDLCK)
        else:
            os.unlink(path)
            (os.symlink if kind == 'link' else os.link)(around, path)
        if kind == 'link':
            os.chown(path, NOBODY, NOBODY, follow_symlinks=False)
        began = time.monotonic()
        case.run()
        case.expect(time.monotonic() - began < 5, 'the run has waited')
        if kind != 'link':
            case.expect_complete()
        if holder is not None:
            os.close(holder)
        case.done()


def children():
    """Programs that last: what the runs behind them do, and what the administration does meanwhile."""
    for name in ('sh_sync.cgi', 'mailer.sh', 'tar'):
        case = Case('%s hangs' % name)
        variables = layout.environment(CLOCK)
        variables['PATH'] = case.site + ':' + variables['PATH']
        for i in (1, 2):
            layout.write_logs(case.site, CLOCK + 60 * i)
        layout.write(case.site, name, '#!/bin/sh\ntest -e hung && exit\n: >hung\nexec sleep 99\n', 0o755)
        hanging = subprocess.Popen([PROGRAM], cwd=case.site, env=variables,
                                   start_new_session=True)
        while hanging.poll() is None and not os.path.exists(case.site + '/hung'):
            time.sleep(0.01)
        statuses = [layout.run(PROGRAM, case.site, CLOCK + 60 * i) for i in (1, 2)]
        case.expect(hanging.poll() is None and statuses == [0, 0], 'it does not hang alone')
        os.killpg(hanging.pid, signal.SIGKILL)
        hanging.wait()
        case.expect_hits(11, 9)
        case.expect(layout.read(case.site, 'l/sys/cron.run').split()[-3:] == [
            layout.stamp(CLOCK + 60 * i, '%m%d%H%M', 'UTC').encode() for i in range(3)], 'run history')
        case.done()
    for line, stored in (('|1|', '|2|'), ('|3|', '|3|')):
        case = Case('settings saved during the synchronisation, line 5 %s' % line)
        saved = '|7|one|\n|2|two|\n|3|three|\n|25|\n%s\n|0|\n'
        layout.write(case.site, 'sh_sync.cgi', "#!/bin/sh\nprintf '%s' >d/set\n" % (
            saved % line).replace('\n', '\\n'), 0o755)
        case.run()
        case.expect(layout.read(case.site, 'd/set').decode() == saved % stored, 'd/set')
        case.done()


def faults():
    """One call fails, where it may cost only the one thing that it was for."""
    def hour_slot(case):
        case.expect(layout.read(case.site, 'd/t/11') == REFERENCE['d/t/11'], 'the slot is not stored')
        got, usual = layout.summary(case.site), REFERENCE['d/t/sum'].split(b'\n')
        case.expect(got[11][:14] == [9] * 14, 'the 60 minutes of the trade are not left alone')
        for number, line in enumerate(usual[:-1]):
            whole = [int(value) for value in line.split(b'|')[2:-1]]
            case.expect(got[number][14:] == whole[14:], 'days of %d' % number)
            case.expect(number == 11 or got[number] == whole, 'windows of %d' % number)
        case.expect_complete('d/t/sum', 'd/out.lst', 'd/t/index', 'd/alerts', 'mail.out')

    def double_start(case):
        case.expect_unchanged(*(name for name in case.before if name != 'l/sys/sys.log'))
        said = case.events()
        case.expect(len(said) == 1 and said[0][0].startswith('cron has already run'), 'said %s' % said)
        made = [name for name in ('d', 'd/t', 'd/h', 'd/backup')
                if os.stat(os.path.join(case.site, name)).st_mtime != 1]
        case.expect(not made, 'something was made in %s' % made)

    full = ('fallocate', 'error=ENOSPC', '1+')
    for name, twice, path, fault, look in (
            ('hour slot that cannot be read', False, 'd/t/11', ('pread64', 'error=EIO', '2'), hour_slot),
            ('old list that cannot be read', False, 'd/out.lst', ('pread64', 'error=EIO', '1+'),
             Case.expect_complete),
            ('double start on a full disk', True, 'd/t/sum', full, double_start)):
        case = Case(name)
        if twice:
            case.run()
            case.write('l/in/24-134-22-58', 'due to go')
            case.write('l/sys/sys.log', '')
            for folder in ('d', 'd/t', 'd/h', 'd/backup'):
                os.utime(os.path.join(case.site, folder), (1, 1))
        case.before = layout.tree(case.site)
        got = layout.run(PROGRAM, case.site, CLOCK, tracer=[
            *layout.injector(fault), '-P', os.path.join(case.site, path)])
        case.expect(got == 0, 'exit status %s' % got)
        case.check_log()
        look(case)
        case.next_run()
        case.done()


def make_kind(case, name, kind):
    path = os.path.join(case.site, name)
    data = layout.read(case.site, name)
    os.unlink(path)
    if kind == 'folder':
        os.mkdir(path)
    elif kind == 'fifo':
        os.mkfifo(path)
    elif kind == 'linked file':
        layout.write(case.site, 'elsewhere/target', data)
        os.symlink(os.path.join(case.site, 'elsewhere/target'), path)
    elif kind == 'relative chain':
        layout.write(case.site, 'elsewhere/target', data)
        os.symlink('target', case.site + '/elsewhere/link')
        os.symlink(os.path.relpath(case.site + '/elsewhere/link', os.path.dirname(path)), path)
    elif kind == 'loop':
        os.symlink(os.path.basename(path), path)
    else:
        os.symlink(kind, path)
    return data


# What is reported, at least, when the file is there but nothing can be read from it or written.
EVENTS = {'d/t/sum': ('d/t/sum', '1'), 'd/set': (('d/set', 'file d/set is corrupt'), '1'),
          'd/t/index': (('d/t/index', 'database was not fully loaded'), '1'),
          'd/alerts': ('alerts settings file', '0'), 'd/out.lst': ('d/out.lst', '0'),
          'd/t/11': ('d/t/11', '01'), 'l/hdd.check': ('unable to perform hdd check', '1'),
          'd/h/all.his': ('d/h/all.his', '0'),
          'd/h/alpha.example.his': ('d/h/alpha.example.his', '0')}


def kinds():
    stores = STORES + ['l/sys/cron.run', 'l/sys/cron.last', 'l/sys/sys.log', 'l/hdd.check',
                       'd/h/all.his', 'd/h/alpha.example.his', 'd/ip.psv', 'd/geo.rating', 'd/ds',
                       'd/proxy', 'd/se', 'd/nm/track', 'd/jb', 'd/traffic.set', 'd/out.set',
                       'd/out.mod', 'd/caps', 'l/in/24-135-23-58', 'l/out/24-135-23-58']
    every = ['folder', 'fifo', '/dev/full', '/dev/null', 'linked file', 'relative chain', 'loop',
             'nowhere']
    for number, (name, kind) in enumerate(itertools.product(stores, every)):
        if SHORT and number % 5:
            continue
        case = Case('%s is %s' % (name, kind))
        data = make_kind(case, name, kind)
        linked = kind in ('linked file', 'relative chain')
        path = os.path.join(case.site, name)
        case.run()
        case.expect_stores_whole(name)
        if name in EVENTS and kind in ('folder', '/dev/full', 'fifo', 'loop'):
            subject, level = EVENTS[name]
            case.expect(any(s.startswith(subject) and lv in level for s, lv in case.events()),
                        'no event of it')
        if linked and name in REFERENCE:
            case.expect(os.path.islink(path), 'the link was replaced')
            if name != 'l/sys/sys.log':
                case.expect(layout.read(case.site, 'elsewhere/target') == REFERENCE[name],
                            'the target is not what it should be')
        if kind == 'folder':
            case.expect(os.path.isdir(path), 'the folder is gone')
        if kind.startswith('/dev/'):
            case.expect(stat.S_ISCHR(os.stat(kind).st_mode), kind + ' is no device any more')
        if not linked and name in REFERENCE:
            shutil.rmtree(path) if kind == 'folder' else os.path.lexists(path) and os.unlink(path)
            layout.write(case.site, name, data)
        case.next_run()
        case.done()


    for name, kind in itertools.product(('d/h', 'd/t', 'd/nm', 'd/backup', 'l/in', 'l/out', 'l/sys'),
                                        ('missing', 'a file')):
        case = Case('folder %s is %s' % (name, kind))
        path, kept = os.path.join(case.site, name), os.path.join(case.root, 'kept')
        os.rename(path, kept)
        if kind == 'a file':
            case.write(name, 'no folder')
        case.run()
        case.expect_stores_whole()
        if kind == 'a file':
            case.expect_unchanged(name)
            os.unlink(path)
        case.expect(not os.path.exists(path), 'the folder was made')
        os.rename(kept, path)
        case.next_run()
        case.done()


def limit(kind, value):
    return lambda: resource.setrlimit(kind, (value, value))


def limits():
    big = ''.join('|%d|%d|us|\n' % (i * 64, i * 64 + 60) for i in range(60000))
    reported = 0
    for size in range(3 << 20, 32 << 20, (4 if SHORT else 1) * 256 << 10):
        case = Case('%d KB of memory' % (size >> 10))
        case.write('d/ip.psv', big)
        got = case.run(before_start=limit(resource.RLIMIT_AS, size), status=(0, 127, 1, -11))
        if got != 0:  # the loader found no room: the program was never started
            case.expect_unchanged()
        short_of_it = ('not enough memory for the run', '1') in case.events()
        reported += short_of_it
        done = layout.read(case.site, 'd/out.lst') == REFERENCE['d/out.lst']
        if not reported and not case.events():  # not even room for a line
            case.expect_unchanged(*STORES)
        else:
            case.expect(got or case.events() or done, 'neither the whole work nor an event')
        case.expect_stores_whole()
        case.write('d/ip.psv', '')
        case.next_run()
        case.done()
    case = Case('memory ran out in some of the runs')
    case.expect(reported > 0, 'no run reported it')
    case.done()
    for size in (0, 1, 5, 9, 10, 100, 1000, 4096, 20000, 80000, 80640, 100000):
        case = Case('files of at most %d bytes' % size)
        case.run(before_start=limit(resource.RLIMIT_FSIZE, size))
        case.expect_stores_whole()
        case.next_run()
        case.done()
    for files in range(3, 12):
        case = Case('%d open files' % files)
        case.run(before_start=limit(resource.RLIMIT_NOFILE, files), status=(0, 127))
        case.expect_stores_whole()
        case.next_run()
        case.done()


def names():
    hostile = [b'../../../outside', b'/etc/passwd', b'..', b'.', b'a/../b', b'x|y|z',
               b'\x01\x7f\x1b[2J', b'line\nfeed\r', b'n' * 76, b'',
               b'$(touch pwned)', b'`touch pwned`',
               b'; touch pwned #', b'%s%n%d', b'a\0b', b'-rf', b'\xff\xfe\x80', b"'\"<script>!\\",
               b'../all', b'all', b'trades', b'alpha.example', b'&#47;etc', b'\n', b'*', b'~root']
    reserved = [(i, 'entry%d' % i, {}) for i in range(layout.RESERVED)]
    good = [(50 + i, name, {}) for i, name in enumerate(NAMES[1:])]
    for group in [hostile] + [[name] for name in hostile]:
        case = Case('trades called %r' % (group if len(group) == 1 else 'all of it'))
        bad = [(100 + i, name, {}) for i, name in enumerate(group)]
        layout.set_index(case.site, reserved + bad + good)
        layout.set_texts(case.site, len(reserved), [name for _, name, _ in bad])
        layout.write_logs(case.site, case.clock)
        case.write('d/alerts', '|./mailer.sh|a@b.example $(touch pwned)|`touch pwned`@d.example'
                   '|;touch pwned|0|1|1;touch pwned|0|0|1|0|1|0|1|')
        case.run()
        for number, _, _ in good:
            case.expect_slot(number, rin=3, uin=3, clk=3)
        now = layout.tree(case.site)
        case.expect(not any(os.path.basename(n).startswith('pwned') for n in now),
                    'a text reached a shell')
        new = set(now) - set(case.before)
        case.expect(all(n.startswith(('d/h/', 'd/backup/')) or n in ('mail.out', 'companions.out')
                        for n in new), 'files appeared: %s' % sorted(new))
        case.expect(b'`touch' in now.get('mail.out', b''), 'the mail is missing')
        case.next_run()
        case.done()


def megabytes(count):
    mega = 1 << 20
    return [('nothing', b''), ('bars', b'|' * mega * count), ('letters', b'x' * mega * count),
            ('digits', b'|' + b'9' * mega * count), ('zeros', bytes(mega * count)),
            ('line feeds', b'\n' * mega * count), ('blanks', b' ' * mega * count + b'x')]


def texts():
    for name in ('d/sleep', 'd/set', 'd/nm/track', 'd/ds', 'd/se', 'd/proxy', 'd/traffic.set',
                 'd/ip.psv', 'd/agent.rating', 'd/out.set', 'd/out.mod', 'd/caps', 'd/alerts',
                 'd/t/sum', 'l/sys/cron.run', 'd/h/alpha.example.his'):
        for kind, data in megabytes(1 if SHORT else 8):
            if SHORT and kind not in ('nothing', 'bars', 'digits'):
                continue
            case = Case('%s: %s' % (name, kind))
            case.write(name, data)
            began = time.monotonic()
            case.run()
            case.expect(time.monotonic() - began < 20, 'took too long')
            case.expect_stores_whole(name)
            if name == 'd/set':
                case.expect_unchanged('d/set', 'd/t/sum')
                case.expect_event('file d/set is corrupt', '1')
            if name == 'd/alerts':
                case.expect_unchanged('d/alerts')
            if name in ('d/sleep', 'd/nm/track', 'd/se', 'd/caps'):
                case.expect_complete('d/out.lst', name)
            case.done()
    mega = 1 << 20
    for kind, text in (('sum', '1+' * (mega // 2)), ('open', '(' * mega), ('minus', '-' * mega),
                       ('nested', '(' * (mega // 2) + '1' + ')' * (mega // 2)),
                       ('names', 'rin60' * (mega // 5)), ('assignments', 'a=' * (mega // 2)),
                       ('digits', '9' * mega), ('dots', '.' * mega),
                       ('product', '9*' * (mega // 2)),
                       ('bytes', bytes(range(1, 124)).decode('latin-1') * (mega // 123))):
        case = Case('formula of a megabyte: ' + kind)
        case.write('d/out.mod', '|100|100|100|10|20|30|0|0|10|' + text + '|')
        case.run()
        case.expect_complete('d/out.lst', 'd/out.mod', 'd/h/trades.his', 'd/h/all.his')
        found = layout.entries(layout.read(case.site, 'd/out.lst'))
        case.expect(found and len(found) == len(NAMES) + 1, 'the outgoing list is damaged')
        case.done()
    rows = ['|%d|%d|us|\n' % (i * 7919 % 65521 * 65537, i * 7919 % 65521 * 65537 + 999)
            for i in range(20000)]
    for kind, text in (('shuffled', ''.join(rows)), ('backwards', ''.join(sorted(rows)[::-1])),
                       ('turned round', '|99|1|us|\n' * 500),
                       ('all the same', '|1|9|us|\n' * 65535)):
        case = Case('address table ' + kind)
        case.write('d/ip.psv', text)
        case.run()
        for number in range(11, 16):
            case.expect_slot(number, rin=3, uin=3, out=3, clk=3)
        case.done()


def records():
    """Records that are none among good ones: three before and two behind must count."""
    good = [layout.in_record(NAMES[1]) * 3, layout.in_record(NAMES[2]) * 2]
    huge = 'm' * (1 << 20)
    table = [('huge agent', layout.in_record(NAMES[0]).replace('mozilla', huge),
              dict(rin=1, uin=1)),
             ('huge name', layout.in_record(huge), dict(rin=0)),
             ('huge filler', huge + layout.in_record(NAMES[0]), dict(rin=1)),
             ('NUL bytes in the name', layout.in_record(NAMES[0] + '\0'), dict(rin=0)),
             ('NUL bytes as a record', '|'.join(['\0' * 999] * 12) + '|', dict(rin=0)),
             ('NUL bytes before', '\0' * 99 + layout.in_record(NAMES[0]), dict(rin=1, uin=1)),
             ('empty fields', '|' * 12, dict(rin=0)),
             ('control characters', ''.join(map(chr, range(1, 32))) + layout.in_record(NAMES[0]),
              dict(rin=1)),
             ('hostile fields', layout.in_record('$(touch pwned)').replace('mozilla', '../../x'),
              dict(rin=0))]
    for kind, out in (('huge agent', layout.out_record(NAMES[0], 12).replace('mozilla', huge)),
                      ('huge name', layout.out_record(huge, 12)),
                      ('NUL bytes', layout.out_record(NAMES[0] + '\0', '12')),
                      ('huge target', layout.out_record(NAMES[0], '9' * len(huge))),
                      ('hostile target', layout.out_record(NAMES[0], '../../12'))):
        case = Case('click: ' + kind)
        sent = [layout.out_record(NAMES[n], 13) * 2 for n in (1, 2)]
        case.write('l/out/24-135-23-58', sent[0] + out + sent[1])
        case.run()
        case.expect_slot(11, rin=3, clk=0 if kind in ('huge name', 'NUL bytes') else 1)
        case.expect_slot(12, rin=3, clk=2, out='target' not in kind)
        case.expect_slot(13, rin=3, clk=2, out=4)
        case.done()
    for kind, record, counts in table:
        case = Case('record: ' + kind)
        case.write('l/in/24-135-23-58', good[0] + record + good[1])
        case.run()
        case.expect_slot(11, **counts)
        case.expect_slot(12, rin=3, uin=3)
        case.expect_slot(13, rin=2, uin=2, clk=3)  # the clicks stand in the other file
        case.expect_slot(14, rin=0, clk=3)
        case.done()
    for kind, text in (('no bars', huge), ('NUL bytes', '\0' * len(huge)), ('bars', '|' * 12001),
                       ('half a record', layout.in_record(NAMES[0])[:40])):
        case = Case('log of nothing but ' + kind)
        case.write('l/in/24-135-23-58', text)
        case.run()
        case.expect_slot(11, rin=1 if kind == 'half a record' else 0, clk=3)
        case.expect_slot(12, rin=0, out=3, clk=3)
        case.done()


GROUPS = [streams, masks, readonly, attributes, leftovers, neighbours, children, faults, kinds, limits,
          names, texts, records]
with layout.scratch() as FOLDER:
    reference = Case('reference')
    reference.run()
    REFERENCE = layout.tree(reference.site)
    for work in GROUPS:
        if CHOSEN and work.__name__ not in CHOSEN:
            continue
        ran = score.passed + score.failed
        work()
        print('%s: %d cases' % (work.__name__, score.passed + score.failed - ran), flush=True)
score.finish()
