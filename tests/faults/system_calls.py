"""The system calls of a run: recorded, made to fail, stopped behind, and as what a failure is reported."""
import collections
import os
import re
import signal
import subprocess
import time

import layout

# What a full disk can fail.
WRITES = ('write', 'pwrite64')
FULL = WRITES + ('ftruncate', 'fallocate', 'fsync', 'rename')

# What fails once: these with each of the errors, those that read with the first.
SINGLE = FULL + ('openat', 'close', 'fchmod', 'fchown', 'unlink', 'clone3', 'clone', 'fork',
                 'vfork', 'pipe2', 'fcntl', 'faccessat2', 'listxattr', 'flistxattr', 'readlink')
READS = ('pread64', 'read', 'getdents64', 'newfstatat')
ERRORS = ('EIO', 'EACCES', 'EMFILE')

Call = collections.namedtuple('Call', 'name nth path writing text late')


def calls_of(trace):
    """The system calls of a traced run behind the loader's, each with its number among those of its
    name, the file it is about, and whether it has to do with writing that file."""
    calls, counts, started, late, writable = [], collections.Counter(), False, False, {}
    for line in trace:
        found = re.match(r'(\w+)\((.*)', line)
        if not found:
            continue
        name, text = found.groups()
        counts[name] += 1
        started = started or name == 'fcntl'
        if not started:
            continue
        if not re.match(r'\d+<', text):
            path = re.search(r'"([^"]*)"', text)
            path = path.group(1) if path else ''
        else:
            path = re.match(r'\d+<([^>]*)>', text)
            path = path.group(1) if path else ''
        path = re.sub(r'^.*?/site/', '', path)
        path = re.sub(r'\.new[.\d]+$', '.new', path)
        if name == 'openat':
            writable[path] = 'O_RDWR' in text or 'O_WRONLY' in text
        writing = name in FULL or (name in ('openat', 'close') and writable.get(path, False))
        # Behind the outgoing list: what is read there a second time is about to be stored.
        late = late or path == 'd/out.lst.new'
        text = re.sub(r'<[^<>]*/site/?', '<', text)[:70]
        calls.append(Call(name, counts[name], path, writing, text, late))
    return calls


def injector(*faults):
    """strace as an injector of faults: (name of the call, what happens, which of them)."""
    command = ['strace', '-qq', '-o', '/dev/null', '-e', 'signal=none',
               '-e', 'trace=' + ','.join(name for name, _, _ in faults)]
    for name, what, when in faults:
        command += ['-e', 'inject=%s:%s:when=%s' % (name, what, when)]
    return tuple(command)


class Stopped:
    """A run that is stopped behind one of its system calls, until it is told to end."""

    def __init__(self, program, site, clock, call):
        self.trace = '%s.%d' % (site, clock) + os.urandom(4).hex()
        env = layout.environment(clock)
        tracer = ['strace', '-qq', '-o', self.trace, '-e', 'trace=' + call.name, '-e',
                  'inject=%s:signal=SIGSTOP:when=%d' % (call.name, call.nth)]
        self.tracer = subprocess.Popen(
            [*tracer, *(x for pair in env.items() for x in ('-E', '%s=%s' % pair)), program],
            cwd=site, env={'PATH': env['PATH']}, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **layout.AS_USER)
        while self.tracer.poll() is None and not self.is_stopped():
            time.sleep(0.002)

    def is_stopped(self):
        return os.path.exists(self.trace) and b'--- stopped by' in layout.read('', self.trace)

    def ends(self):
        """Its exit status, or None when it hangs."""
        try:
            if self.tracer.poll() is None:
                with open('/proc/%d/task/%d/children' % ((self.tracer.pid,) * 2)) as f:
                    os.kill(int(f.read().split()[0]), signal.SIGCONT)
            return self.tracer.wait(layout.PATIENCE)
        except (subprocess.TimeoutExpired, IndexError, ProcessLookupError):
            return None


# What a failing call on a file is reported as: subject and level.
OPENED = [('d/t/index', 'd/t/index', '1'), ('d/t/sum', 'd/t/sum', '1'),
          (r'd/t/\d+', None, '1'), ('d/ds', 'd/ds', '0'), ('d/jb', 'd/t/jb', '0'),
          ('d/proxy', 'd/proxy', '0'), ('d/ip.psv', 'ip.psv', '1'), (r'd/\w+\.rating', None, '1'),
          ('d/set', 'd/set', '1'), (r'd/out\.(set|mod)', None, '1'), ('d/caps', 'd/caps', '0'),
          ('d/alerts', 'd/alerts', '0'), (r'd/h/[a-z0-9.]+\d?(example|\d)\.his', None, '0')]
WRITTEN = [('l/hdd.check', 'unable to perform hdd check', '1'), ('d/t/index', 'd/t/index', '1'),
           (r'd/t/\d+', None, '0'), (r'd/t/sum(\.new)?', 'd/t/sum', '1'),
           ('d/out.lst', 'd/out.lst', '0'), (r'd/alerts(\.new)?', 'd/alerts', '0'),
           (r'd/h/.*\.his', None, '0')]


def expected_event(call, error):
    """The event a failing call must be reported with, or None when the file has none."""
    table = WRITTEN if call.writing else OPENED if call.name == 'openat' else []
    if call.path.endswith('.new') and call.name == 'openat' and error == 'EACCES':
        return None  # a folder that takes no new file: written in place instead
    if call.path == 'l/hdd.check' and call.name == 'pwrite64':
        return None  # what is due to go is removed, and it is written again
    for pattern, subject, level in table:
        if re.fullmatch(pattern, call.path):
            # Read once more behind a synchronisation, which has no event.
            if call.path == 'd/set' and call.late:
                return None
            return subject or call.path, level
    return None
