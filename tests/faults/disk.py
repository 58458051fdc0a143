"""A disk that has not written everything yet: what calls did to it, and what it may hold after a
power cut.

The calls come from a trace of strace. What was not flushed may be on disk or not, in three models:
  ordered   names and lengths are as of the cut; the data of a file is old, zeros, there up to a
            sector, or there
  any       names are as of one moment before the cut; each length and each sector as of any
  rename    the same, but every rename is on disk
fsync() makes the data and the length of a file safe, not its name; syncfs() makes everything safe.
"""
import bisect
import collections
import os
import random
import re

SECTOR = 512

# Calls that change nothing a power cut could take, or only modes and owners.
HARMLESS = set('''access arch_prctl brk chmod clock_nanosleep clone clone3 close dup execve exit_group
    faccessat2 fadvise64 fchmod fchown fcntl fgetxattr flistxattr fork fremovexattr fsetxattr fstat
    fstatfs futex getcwd getdents64 getegid geteuid getgid getpid getppid getrandom gettid getuid
    getxattr ioctl kill lgetxattr listxattr lseek lstat madvise mmap mprotect munmap nanosleep
    newfstatat pipe2 pread64 prlimit64 read readlink readlinkat rseq rt_sigaction rt_sigprocmask
    rt_sigreturn sched_yield set_robust_list set_tid_address stat statfs statx sysinfo tgkill umask
    uname utimensat vfork wait4 waitid'''.split())


def put(data, offset, text):
    return data[:offset].ljust(offset, b'\0') + text + data[offset + len(text):]


class Disk:
    """The files of a site, call by call. A file is a number; its versions are (call, contents), the
    first one from before."""

    def __init__(self, tree):
        self.names = {name: i for i, (name, data) in enumerate(tree.items()) if data is not None}
        self.versions = {i: [(0, tree[name])] for name, i in self.names.items()}
        self.now = dict(self.names)  # names, as the run sees them
        self.moves = []              # changes of names: (call, name, file or None, renamed from)
        self.flushed = collections.defaultdict(lambda: [0])  # calls, of a file; None: of all files
        self.calls = ['nothing']     # what each call did

    def move(self, name, file, source=None):
        self.moves.append((len(self.calls) - 1, name, file, source))
        apply(self.now, self.moves[-1])

    def change(self, file, data):
        self.versions[file].append((len(self.calls) - 1, data))

    def latest(self, file):
        return self.versions[file][-1][1]

    def version(self, file, call):
        """The contents of a file behind a call."""
        return self.versions[file][bisect.bisect(self.versions[file], call, key=lambda v: v[0]) - 1][1]

    def safe(self, file, cut):
        """The last call before the cut behind which the file was flushed."""
        return max(call for f in (file, None) for call in self.flushed[f] if call <= cut)

    def possible(self, file, cut):
        """The versions of a file, from the last one flushed before the cut to that of the cut."""
        safe = self.safe(file, cut)
        return [self.version(file, safe)] + [data for call, data in self.versions[file]
                                             if safe < call <= cut]

    def whole(self, name):
        """The contents under a name that no cut may mix: those of before, and those renamed to it."""
        return [self.version(file, call) for call, n, file, source in [(0, name, self.names[name], 1)]
                + self.moves if n == name and source]


def apply(names, move):
    _, name, file, source = move
    if file is None:
        names.pop(name, None)
    else:
        names[name] = file
    names.pop(source, None)


class Recorder:
    """Reads a trace into a Disk. A call that it does not know ends the proof."""

    def __init__(self, disk, site):
        self.disk, self.site = disk, site
        self.open = {}  # the files that descriptors stand for; None: no file of the site

    def read(self, trace):
        for line in trace:
            found = re.fullmatch(r'(\w+)\((.*)\) += (-?\d+|0x\w+).*', line.rstrip('\n'))
            if not found or found[3].startswith('-'):
                continue  # failed; or an exit, a signal
            name, text, result = found[1], found[2], int(found[3], 0)
            words = [bytes.fromhex(w.replace('\\x', '')) for w in re.findall(r'"([^"]*)"', text)]
            numbers = [int(n) for n in re.findall(r'\b\d+\b', re.sub(r'"[^"]*"', '', text))]
            action = getattr(self, 'do_' + name, None)
            if action:
                action(text, words, numbers, result)
            elif name not in HARMLESS or (name == 'mmap' and 'MAP_SHARED' in text
                                          and 'PROT_WRITE' in text):
                raise SystemExit('what does this call do to a disk? ' + line[:200])

    def path(self, word):
        path = os.path.normpath(os.path.join(self.site, word.decode()))
        return os.path.relpath(path, self.site) if path.startswith(self.site + '/') else None

    def note(self, what, file):
        name = next((n for n, f in self.disk.now.items() if f == file), 'what has no name')
        self.disk.calls.append('%s %s' % (what, name))

    def edit(self, what, file, edit):
        """A change of a file's contents; none is made to what is no file of the site."""
        if file is not None:
            self.note(what, file)
            self.disk.change(file, edit(self.disk.latest(file)))

    def do_openat(self, text, words, numbers, result):
        path = self.path(words[0])
        file = self.disk.now.get(path)
        if path and file is None and 'O_CREAT' in text:
            file = max(self.disk.versions) + 1
            self.disk.versions[file] = [(0, b'')]
            self.disk.calls.append('create ' + path)
            self.disk.move(path, file)
        elif 'O_TRUNC' in text:
            self.edit('empty', file, lambda data: b'')
        self.open[result] = file

    def do_pipe2(self, text, words, numbers, result):
        self.open.update((number, None) for number in numbers[:2])

    def do_write(self, text, words, numbers, result):
        # Without an offset the run appends, or writes to what it has emptied.
        self.edit('append to', self.open.get(numbers[0]), lambda data: data + words[0][:result])

    def do_pwrite64(self, text, words, numbers, result):
        self.edit('write', self.open[numbers[0]],
                  lambda data: put(data, numbers[-1], words[0][:result]))

    def do_ftruncate(self, text, words, numbers, result):
        self.edit('set the length of', self.open[numbers[0]],
                  lambda data: data[:numbers[1]].ljust(numbers[1], b'\0'))

    def do_fallocate(self, text, words, numbers, result):
        if 'KEEP_SIZE' not in text:
            self.edit('take room for', self.open[numbers[0]],
                      lambda data: data.ljust(numbers[-2] + numbers[-1], b'\0'))

    def do_fsync(self, text, words, numbers, result):
        self.note('flush', self.open[numbers[0]])
        self.disk.flushed[self.open[numbers[0]]].append(len(self.disk.calls) - 1)

    def do_syncfs(self, text, words, numbers, result):
        self.disk.calls.append('flush everything')
        self.disk.flushed[None].append(len(self.disk.calls) - 1)

    def do_rename(self, text, words, numbers, result):
        old, new = (self.path(word) for word in words)
        self.disk.calls.append('rename %s to %s' % (old, new))
        self.disk.move(new, self.disk.now[old], old)

    def do_unlink(self, text, words, numbers, result):
        self.disk.calls.append('remove ' + self.path(words[0]))
        self.disk.move(self.path(words[0]), None)

    do_fdatasync, do_sync, do_renameat, do_renameat2, do_unlinkat = (
        do_fsync, do_syncfs, do_rename, do_rename, do_unlink)


def names_at(disk, moves):
    names = dict(disk.names)
    for move in moves:
        apply(names, move)
    return names


# The models: {name: contents} of a disk that was cut off behind a call, and the call behind which
# its names are.

def ordered(disk, cut, dice):
    there = dice.choice((0, 0.1, 0.5, 0.9, 1))  # how much of the disk is as of the cut

    def contents(file):
        old, new = (disk.possible(file, cut)[i] for i in (0, -1))
        if old == new or dice.random() < there:
            return new
        done = dice.choice((0, dice.randrange(0, len(new) + 1, SECTOR)))
        return new[:done] + old[done:len(new)].ljust(len(new) - done, b'\0')

    names = names_at(disk, [move for move in disk.moves if move[0] <= cut])
    return {name: contents(file) for name, file in names.items()}, cut


def any_moment(disk, cut, dice, renamed=False):
    there = dice.choice((0, 0.1, 0.5, 0.9, 1))
    moment = dice.choice((dice.randrange(disk.safe(None, cut), cut + 1), cut))

    def pick(values):
        at = dice.random()
        return values[-1] if at < there else values[0] if at < there + (1 - there) / 2 else (
            dice.choice(values))

    def contents(file):
        found = disk.possible(file, cut)
        if all(data == found[0] for data in found):
            return found[0]
        length = len(pick(found))
        sectors = zip(*([data[i:i + SECTOR].ljust(SECTOR, b'\0') for i in range(0, length, SECTOR)]
                        for data in found))
        return b''.join(same[0] if same.count(same[0]) == len(same) else pick(same)
                        for same in sectors)[:length]

    moves = [move for move in disk.moves
             if move[0] <= moment or (renamed and move[0] <= cut and move[3])]
    return {name: contents(file) for name, file in names_at(disk, moves).items()}, moment


def renamed_first(disk, cut, dice):
    return any_moment(disk, cut, dice, renamed=True)


MODELS = {'ordered': ordered, 'any': any_moment, 'rename': renamed_first}


class Everything(random.Random):
    """Dice for a disk that has everything."""

    def choice(self, values):
        return values[-1]

    def random(self):
        return 0.0
