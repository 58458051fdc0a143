"""A small complete site for the fault proofs, the ways to run the program in it, and readers of the
files it leaves.

The clock is a small library preloaded into the program only (preload.cpp, compiled when a proof
starts). It leaves the times of files alone and nothing behind when a run is killed.
"""
import atexit
import calendar
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
PRELOAD = None     # the library, once compiled
AS_USER = {}       # whose runs they are: this user's
RECORD = 996       # a trade in d/t/index
SLOT = 56          # a minute in d/t/<id>
STATISTICS = 1440 * SLOT
HEADER, ENTRY = 284, 216  # of d/out.lst
HITS_LEFT, HOURS_LEFT = 884, 896
NAMES = ['alpha.example', 'beta.example', 'gamma.example', 'delta.example', 'epsilon.example']
RESERVED = 11
NOBODY = 65534
CLOCK = calendar.timegm((2024, 5, 14, 23, 59, 5))
PATIENCE = 30.0    # seconds a run may take before it counts as hanging


def trade(number, name, **fields):
    """A record of d/t/index; fields are 32-bit integers named by their offset (_844=25)."""
    record = bytearray(RECORD)
    struct.pack_into('<i', record, 0, number)
    raw = name if isinstance(name, bytes) else name.encode()
    record[4:4 + len(raw[:76])] = raw[:76]
    record[80:80 + 22] = b'http://' + b'partner.example'
    for offset, value in {'_828': 1, '_832': -1, '_836': -1, '_840': -1, '_844': -1, '_880': 1,
                          **fields}.items():
        struct.pack_into('<i', record, int(offset[1:]), value)
    return bytes(record)


def stamp(moment, pattern, zone):
    os.environ['TZ'] = zone
    time.tzset()
    return time.strftime(pattern, time.localtime(moment))


def in_record(name, unique=True, marker=''):
    return '|10.0.3.7|%s||%s|mozilla/5.0 (x11)|0|/index.html|%s||||\n' % (
        name, '0' if unique else '1', marker)


def out_record(name, target):
    return '|10.0.5.9|%s|%s|mozilla/5.0 (x11)|0|tag|3||0|/go|||||\n' % (name, target)


def write(site, name, text, mode=None):
    path = os.path.join(site, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, 'wb') as f:
        f.write(text if isinstance(text, (bytes, bytearray)) else text.encode('latin-1'))
    if mode is not None:
        os.chmod(path, mode)


def read(site, name):
    with open(os.path.join(site, name), 'rb') as f:
        return f.read()


def write_logs(site, minute, zone='UTC', hits=3):
    """The hit logs of the minute before the given moment: hits records of each trade both ways."""
    name = stamp(minute - 60, '%y-%j-%H-%M', zone)
    write(site, 'l/in/' + name, ''.join(in_record(n) for n in NAMES) * hits)
    write(site, 'l/out/' + name,
          ''.join(out_record(n, 11 + i) for i, n in enumerate(NAMES)) * hits)


# Something in every slot that no check but that of the slots looks at.
SLOTS = b''.join(struct.pack('<14i', *[0] * 13, minute % 7 + 1) for minute in range(1440))


def set_index(site, trades, statistics=SLOTS):
    """Makes the trade index, and a statistics file, a summary line and a history for each of its
    (id, name, fields)."""
    write(site, 'd/t/index', b''.join(trade(i, n, **fields) for i, n, fields in trades))
    lines = []
    for number, name, _ in trades:
        write(site, 'd/t/%d' % number, statistics)
        lines.append('|%d|' % number + '9|' * 14 + '90|' * 14 + '0|' * 14 + '\n')
        raw = name.decode('latin-1') if isinstance(name, bytes) else name
        if raw and '/' not in raw and '\0' not in raw:
            write(site, 'd/h/%s.his' % raw,
                  ''.join('|202405%02d|%s%s\n' % (d, '5|' * 14, '|' * 14) for d in (11, 12, 13)))
    write(site, 'd/t/sum', ''.join(lines))


def set_texts(site, first, texts):
    """Fills the texts that go into the outgoing list to their width, of trades from a position on."""
    index = bytearray(read(site, 'd/t/index'))
    for i, text in enumerate(texts, first):
        for offset, width in ((80, 120), (848, 32)):
            at = i * RECORD + offset
            index[at:at + width] = ((text or b'x') * width)[:width]
    write(site, 'd/t/index', index)


def usual_trades():
    return ([(i, 'entry%d' % i, {}) for i in range(RESERVED)] +
            [(RESERVED + i, n, {}) for i, n in enumerate(NAMES)])


def list_of(entries, fill):
    """Bytes of a d/out.lst no run would write, so that old entries and new ones tell apart."""
    return bytes([fill]) * HEADER + b''.join(
        struct.pack('<i', 900 + i) + bytes([fill]) * (ENTRY - 4) for i in range(entries))


def lay_out(site, clock=CLOCK, zone='UTC', companions=True):
    """Every file a run reads. The last run was a minute before the clock."""
    set_index(site, usual_trades())
    write(site, 'd/jb', '')
    write(site, 'd/ds', '|1|1|0|0|70|4|1|100000|')
    write(site, 'd/se', 'searcher.example*\n')
    write(site, 'd/proxy', '10.0.9.1:8080\n10.0.9.2\n')
    write(site, 'd/traffic.set', '|0|0|1|0|\n' * 36)
    for name, texts in (('geo', 'us de cn'), ('agent', 'mozilla bot crawler'),
                        ('request', '/index.html / /bad'), ('tags', 'tag a b')):
        rows = enumerate(texts.split(), 1)
        write(site, 'd/%s.rating' % name, ''.join('|%d|%s|\n' % row for row in rows))
    base = 10 << 24
    write(site, 'd/ip.psv', ''.join('|%d|%d|%s|\n' % (base + i * 256, base + i * 256 + 255,
                                                     ('us', 'de', 'cn')[i % 3]) for i in range(50)))
    write(site, 'd/set', '|1|one|\n|2|two|\n|3|three|\n|25|\n|2|\n|0|\n')
    write(site, 'd/out.set', 'a|500|\nb|200|\nc|100|\n')
    write(site, 'd/out.mod', '|100|100|100|10|20|30|0|0|0|rin60|')
    write(site, 'd/caps', '|11|1|-1|\n|12|2|5|\n')
    write(site, 'd/nm/track', 'x|1|')
    write(site, 'd/alerts', '|./mailer.sh|a@b.example|c@d.example||' + '0|1|' * 5)
    write(site, 'd/out.lst', list_of(3, 1))
    for name in ('all', 'trades'):
        write(site, 'd/h/%s.his' % name, '|20240513' + '|5' * 19 + '|' * 10)
    for name in ('d/tpl/page', 'd/css/style', 'd/gr/graph', 'd/backup/24-134-23.tar.gz'):
        write(site, name, 'kept\n')
    runs = [stamp(clock - 60 * i, '%m%d%H%M', zone) for i in range(12, 0, -1)]
    write(site, 'l/sys/cron.run', ''.join(run + '\n' for run in runs))
    write(site, 'l/sys/cron.last', runs[-1])
    write(site, 'l/sys/sys.log', '')
    write(site, 'l/hdd.check', '0123456789')
    for minute in range(3):
        write_logs(site, clock - 60 * minute, zone)
    for minute in range(1, 5):  # those of a run that makes up for minutes are older
        write(site, 'l/in/' + stamp(clock - 60 * minute - 25 * 3600, '%y-%j-%H-%M', zone), 'old')
    write(site, 'mailer.sh', '#!/bin/sh\ncat > mail.out\n', 0o755)
    for name in ('sh_sync.cgi', 'sh_hta.cgi', 'sh_top.cgi') if companions else ():
        write(site, name, '#!/bin/sh\necho "$0" >> companions.out\n', 0o755)


def at_work_everywhere(site, clock=CLOCK, grows=False):
    """Turns the site into one whose run does everything a run can do in that minute: the index is
    written back, a synchronisation is asked for, an alert is mailed, the run history is shortened,
    and the outgoing list shrinks or grows."""
    trades = usual_trades()
    trades[12] = (12, NAMES[1], {'_884': 50, '_896': 5})
    write(site, 'd/t/index', b''.join(trade(i, n, **fields) for i, n, fields in trades))
    write(site, 'd/set', '|1|one|\n|2|two|\n|3|three|\n|25|\n|1|\n|0|\n')
    # Text before the first bar is dropped, so that the new file is shorter than the old one.
    write(site, 'd/alerts', ('junk before the bar' if grows else '') +
          '|./mailer.sh|a@b.example|c@d.example||0|1|10|0|0|1|0|1|0|1|')
    runs = [stamp(clock - 60 * i, '%m%d%H%M', 'UTC') for i in range(31, 0, -1)]
    write(site, 'l/sys/cron.run', ''.join(run + '\n' for run in runs))
    write(site, 'd/out.lst', list_of(1 if grows else 40, 1))
    for i in range(95 if grows else 0):
        write(site, 'd/backup/%02d' % i, '')
        os.utime(os.path.join(site, 'd/backup/%02d' % i), (clock - i * 60, clock - i * 60))


def bind_by_permissions(program):
    """From now on runs are those of a user whom permissions bind; where that one finds the
    program."""
    global PRELOAD, AS_USER
    if os.geteuid() != 0:
        return program
    copies = tempfile.mkdtemp(prefix='vantrel.')
    atexit.register(shutil.rmtree, copies)
    os.chmod(copies, 0o755)
    program, PRELOAD = (shutil.copy(path, copies) for path in (program, PRELOAD))
    AS_USER = dict(user=NOBODY, group=NOBODY, extra_groups=())
    return program


def take_no_new_file(site):
    """The folders of all files that are replaced: the run must write them in place."""
    for path in ['..', '', *tree(site)] if AS_USER else ():
        os.chown(os.path.join(site, path), NOBODY, NOBODY)
    for folder in ('d', 'd/t', 'l/sys'):
        os.chmod(os.path.join(site, folder), 0o555)


def remove(site):
    """And the folder it is in."""
    for folder in ('d', 'd/t', 'l/sys'):
        os.chmod(os.path.join(site, folder), 0o755)
    shutil.rmtree(os.path.dirname(site))


def environment(clock, zone='UTC', **more):
    """What the program is started with. more: the settings of preload.cpp, and others."""
    return {'PATH': '/usr/bin:/bin', 'TZ': zone, 'LD_PRELOAD': PRELOAD,
            'FROZEN_CLOCK': str(clock), **{k: str(v) for k, v in more.items()}}


def run(program, site, clock, zone='UTC', tracer=(), **more):
    """One run; its exit status (negative: the signal), or None when it hangs. tracer: a command
    that starts the program and sets the given variables itself, with -E."""
    env = environment(clock, zone, **more)
    command = [program]
    if tracer:
        command = [*tracer, *(x for pair in env.items() for x in ('-E', '%s=%s' % pair)), program]
        env = {'PATH': env['PATH']}
    try:
        return subprocess.run(command, cwd=site, env=env, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=PATIENCE, **AS_USER).returncode
    except subprocess.TimeoutExpired:
        return None


def tree(root):
    """Every path below root with its contents (links: their target, folders: None)."""
    found = {}
    for folder, folders, names in os.walk(root):
        for name in folders + names:
            path = os.path.join(folder, name)
            key = os.path.relpath(path, root)
            if os.path.islink(path):
                found[key] = os.readlink(path)
            elif os.path.isfile(path):
                with open(path, 'rb') as f:
                    found[key] = f.read()
            else:
                found[key] = None
    return found


def events(site):
    """(subject, level) of every line of the event log; subjects as they were before escaping."""
    text = read(site, 'l/sys/sys.log').decode('latin-1')
    # A line that a full disk cut short joins the next one, which still counts.
    found = re.findall(r'\|\d{12}\|cron\|\d+\|([^|\n]*)\|([01])\|{4}\n', text)
    return [(subject.replace('&#47;', '/'), level) for subject, level in found]


def summary(site):
    """{id: 42 values} of d/t/sum, or None when it is not what a run writes."""
    lines = read(site, 'd/t/sum').split(b'\n')
    pieces = [line.split(b'|') for line in lines[:-1]]
    if lines[-1] or any(len(p) != 45 or p[0] or p[44] for p in pieces):
        return None
    return {int(p[1]): [int(v) for v in p[2:44]] for p in pieces}


def entries(data):
    """The entries of an outgoing list, or None when it is cut anywhere but between two of them."""
    if len(data) < HEADER or (len(data) - HEADER) % ENTRY:
        return None
    return [data[i:i + ENTRY] for i in range(HEADER, len(data), ENTRY)]


def scratch():
    """A fresh directory, in memory where there is room: the proofs copy some thousand sites."""
    room = '/dev/shm'
    fits = os.path.isdir(room) and shutil.disk_usage(room).free > 1 << 30
    folder = tempfile.TemporaryDirectory(prefix='vantrel.', dir=room if fits else None)
    os.chmod(folder.name, 0o755)
    return folder


class Score:
    """Counts cases and prints the ones that fail."""

    def __init__(self):
        self.passed = 0
        self.failed = 0

    def add(self, name, complaints):
        if not complaints:
            self.passed += 1
            return
        self.failed += 1
        if self.failed <= 40:
            print('FAILED %s\n  %s' % (name, '; '.join(complaints)), flush=True)

    def finish(self):
        print('%d passed, %d failed' % (self.passed, self.failed))
        sys.exit(1 if self.failed or not self.passed else 0)


def compiled(build, name, *flags):
    """Compiles one of the small C++ files beside this one into the build directory."""
    made = os.path.abspath(os.path.join(build, 'faults-' + name))
    source = os.path.join(HERE, name + '.cpp')
    if os.path.exists(made) and os.path.getmtime(made) > os.path.getmtime(source):
        return made  # another proof may be using it
    fresh = '%s.%d' % (made, os.getpid())
    command = [os.environ.get('CXX', 'c++'), '-std=c++20', '-O2', *flags, source, '-o', fresh]
    if subprocess.run(command).returncode != 0:
        sys.exit('%s.cpp does not compile' % name)
    os.replace(fresh, made)
    return made


def command_line(usage, *flags):
    """The program in the build directory named first (the clock for it is made), the words behind
    it, and which of the flags are given."""
    global PRELOAD
    words = [word for word in sys.argv[1:] if word not in flags]
    if not words or words[0].startswith('-'):
        sys.exit(usage)
    program = os.path.abspath(os.path.join(words[0], 'vantrel-cron'))
    if not os.access(program, os.X_OK):
        sys.exit('%s is missing: build the project there first' % program)
    PRELOAD = compiled(words[0], 'preload', '-fPIC', '-shared')
    return (program, words[1:], *(flag in sys.argv for flag in flags))
