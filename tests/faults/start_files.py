"""Groups of start.py: devices, links, folders and nothing in the place of files and folders, and limits of the system."""
import itertools
import os
import resource
import shutil
import stat

import layout
import site_case
from site_case import Case, SHORT, STORES


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
        if linked and name in site_case.reference():
            case.expect(os.path.islink(path), 'the link was replaced')
            if name != 'l/sys/sys.log':
                case.expect(layout.read(case.site, 'elsewhere/target') == site_case.reference()[name],
                            'the target is not what it should be')
        if kind == 'folder':
            case.expect(os.path.isdir(path), 'the folder is gone')
        if kind.startswith('/dev/'):
            case.expect(stat.S_ISCHR(os.stat(kind).st_mode), kind + ' is no device any more')
        if not linked and name in site_case.reference():
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
        done = layout.read(case.site, 'd/out.lst') == site_case.reference()['d/out.lst']
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
