"""Groups of start.py: open streams, umasks, owners, what may not be written, and what belongs to a file besides its text."""
import itertools
import os
import re
import stat
import struct
import subprocess
import time

import layout
import site_case
from site_case import Case, NOBODY, OWN_MOUNTS, REPLACED, ROOT, STORES, can_mount, unprivileged


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


def attributes():
    """What belongs to a file besides its text, and files that no other file can take the place of."""
    nobody = 2 ** 32 - 1
    entries = [(1, 6, nobody), (2, 6, 4711), (4, 4, nobody), (16, 6, nobody), (32, 4, nobody)]
    access = struct.pack('<I', 2) + b''.join(struct.pack('<HHI', *entry) for entry in entries)
    carried = {'system.posix_acl_access': access, 'user.note': b'kept\0',
               'security.selinux': b'site_t\0', 'security.other': b'', 'trusted.note': b'kept'}
    for name, (key, value), bound in itertools.product(REPLACED[:4], carried.items(), (False, True)):
        if bound and key.startswith('trusted'):
            continue  # nobody but root sees these
        case = Case('%s of %s%s' % (key, name, ', run by a user who may not label' * bound))
        path = os.path.join(case.site, name)
        if bound:
            case.give_away()
        try:
            os.setxattr(path, key, value)
        except OSError:
            print('no %s in this file system: the case is left out' % key)
            continue
        number = os.stat(path).st_ino
        case.run(**(unprivileged() if bound else {}))
        case.expect(bound or os.stat(path).st_ino != number, 'written in place')
        case.expect(layout.read(case.site, name) == site_case.reference()[name], 'not written')
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
