"""Groups of start.py: leftovers, links of somebody else, leases, programs that hang, and single calls that fail."""
import fcntl
import itertools
import os
import shutil
import signal
import subprocess
import time

import layout
from layout import CLOCK
import site_case
from site_case import Case, NOBODY, PROGRAM, REPLACED, ROOT, STORES, unprivileged
from system_calls import injector


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
        case.expect(layout.read(case.site, 'd/t/11') == site_case.reference()['d/t/11'], 'the slot is not stored')
        got, usual = layout.summary(case.site), site_case.reference()['d/t/sum'].split(b'\n')
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
            *injector(fault), '-P', os.path.join(case.site, path)])
        case.expect(got == 0, 'exit status %s' % got)
        case.check_log()
        look(case)
        case.next_run()
        case.done()
