#!/usr/bin/env python3
"""Builds the run for several machines and compares, byte for byte, what the builds make of a site.

    scripts/same_bytes.py              every machine, each with the test suite: an hour and a half
    scripts/same_bytes.py --short      two of them against build/release, without the suite
    scripts/same_bytes.py NAME...      these of them, the first is what the others are compared with

On each: the test suite (the inspector's tests excepted); the recorded cases, where they lie beside
the project; and three sites, laid out and carried on by the machine's own programs: a day of
simulated minutes in which summer time ends, starts of the run with a formula, and starts on many
trades with so little traffic that scores meet and the last bit decides. All their files are
compared, of an archive the members. Builds stay in build/same/; status 1 on any difference.
"""
import hashlib
import os
import random
import shlex
import shutil
import subprocess
import sys
import tarfile
import tempfile
import time
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent
BUILDS = TOP / 'build/same'
CASES = Path(os.environ.get('VANTREL_CASES', TOP.parent / 'shared/cases'))
PACKAGES = 'cmake g++ clang g++-aarch64-linux-gnu qemu-user googletest libgtest-dev faketime ' \
           'libcli11-dev nlohmann-json3-dev libjs-chart.js'
EMULATOR = ['qemu-aarch64', '-L', '/usr/aarch64-linux-gnu']
ARM = ['-DCMAKE_SYSTEM_NAME=Linux', '-DCMAKE_SYSTEM_PROCESSOR=aarch64',
       '-DCMAKE_CROSSCOMPILING_EMULATOR=' + ';'.join(EMULATOR)]
# Compiler, its flags, options for CMake.
MACHINES = {
    'gcc-O2': ('g++', '-O2', []),
    'arm64': ('aarch64-linux-gnu-g++', '-O2', ARM),
    'musl': (str(BUILDS / 'musl-tools/g++'), '-O2', ['-DCMAKE_SYSTEM_NAME=Linux']),
    'clang-O3': ('clang++', '-O3', []),
    'gcc-native': ('g++', '-O3 -march=native', []),
    'clang-native': ('clang++', '-O3 -march=native', []),
    'gcc-O0': ('g++', '-O0', []),
    'clang-O0': ('clang++', '-O0', []),
    'gcc-O3': ('g++', '-O3', []),
    'clang-O2': ('clang++', '-O2', []),
}
PROGRAMS = ['vantrel-cron', 'vantrel-day', 'vantrel-sample-site']
TESTS = ['vantrel-tests'] + ['fuzz-replay-' + p.name for p in sorted((TOP / 'fuzz/corpus').iterdir())]

BEGIN = 1729980120  # 2024-10-27 00:02 in Berlin: summer time ends in the day that follows
FORMULA = '|120|85|130|3|2|1|0||10|rin24*1.1+uin60/3-out24*0.7+rtc07/(rto07+0.3)|\n'
# Trades, hits and days of the sample; moments of the starts, without any the day is simulated.
SITES = {'day': (60, 40, 8, []),
         'scores': (2000, 0, 0, [2, 62, 45 * 60]),
         'formula': (500, 40, 8, [2, 62, 177, 45 * 60, 89820])}

# A run flushes what it stores: sites lie in memory where there is room.
IN_MEMORY = Path('/dev/shm')
if IN_MEMORY.is_dir() and shutil.disk_usage(IN_MEMORY).free > 1 << 30:
    os.environ['TMPDIR'] = str(IN_MEMORY)


def run(*command, **options):
    done = subprocess.run([str(part) for part in command], capture_output=True, **options)
    if done.returncode != 0:
        said = (done.stdout + done.stderr).decode(errors='replace')
        raise RuntimeError(f'{shlex.join(map(str, command))}\n{said[-4000:]}')
    return done.stdout


def make(source, folder, targets, *options):
    run('cmake', '-S', source, '-B', folder, '-DCMAKE_BUILD_TYPE=Release', *options)
    run('cmake', '--build', folder, '-j', os.cpu_count(), '--target', *targets)


def build(name, short):
    if name == 'release':
        return TOP / 'build/release'
    compiler, flags, options = MACHINES[name]
    folder = BUILDS / name
    options = [f'-DCMAKE_CXX_COMPILER={compiler}', *options]
    if name == 'musl':
        run(TOP / 'scripts/musl.sh', Path(compiler).parent)
    if not short and len(options) > 1:  # the GoogleTest of this machine would not do
        make('/usr/src/googletest', folder / 'gtest', ['install'], '-DBUILD_GMOCK=OFF',
             '-Dgtest_disable_pthreads=ON', f'-DCMAKE_INSTALL_PREFIX={folder}/gtest/out', *options)
        options.append(f'-DGTest_DIR={folder}/gtest/out/lib/cmake/GTest')
    make(TOP, folder, PROGRAMS if short else PROGRAMS + TESTS, *options,
         f'-DCMAKE_CXX_FLAGS_RELEASE={flags} -DNDEBUG', f'-DVANTREL_TESTS={"OFF" if short else "ON"}')
    return folder


def starter(name, folder):
    """A program that starts the run with the clock at FAKETIME, in seconds since the epoch."""
    clock = folder / 'clock.so'
    run(MACHINES.get(name, ['g++'])[0], '-O1', '-shared', '-fPIC', '-nostdlib', TOP / 'bench/frozen_clock.cpp',
        '-o', clock)
    how = ['env', f'LD_PRELOAD={clock}']
    if name == 'arm64':  # for the run only: the emulator is a program of this machine
        how = ['env', '-u', 'LD_PRELOAD', *EMULATOR, '-E', f'LD_PRELOAD={clock}']
    program = folder / 'start'
    program.write_text(f'#!/bin/sh\nexport FROZEN_CLOCK=$FAKETIME\nexec {shlex.join(how)} {folder}/vantrel-cron\n')
    program.chmod(0o755)
    return program


def close_scores(trades):
    """d/t/sum: for each trade 14 counters of the hour, the day and the week; the last three are scored."""
    chance = random.Random(1)
    for trade in range(trades + 11):
        windows = [[50] + 10 * [0] + [1 + int(chance.random() * 9) for _ in range(3)] for _ in range(3)]
        yield f'|{trade}|' + ''.join(f'{value}|' for window in windows for value in window) + '\n'


def contents(site):
    for path in sorted(site.rglob('*')):
        place = str(path.relative_to(site))
        if path.name.endswith('.tar.gz'):
            with tarfile.open(path) as archive:
                for member in archive:
                    yield f'{place}/{member.name}', archive.extractfile(member).read() if member.isfile() else b''
        elif path.is_file():
            yield place, path.read_bytes()


def leave(name, folder, start, site, root):
    """What is left of a site in the folder root, by path."""
    trades, hits, days, moments = SITES[site]
    environment = {'PATH': os.environ['PATH'], 'TZ': 'Europe/Berlin'}
    emulator = EMULATOR if name == 'arm64' else []
    options = f'--trades {trades} --hits {hits} --days {days} --minutes 90 --ranges 20000 --curve --at {BEGIN}'.split()
    run(*emulator, folder / 'vantrel-sample-site', root, *options, env=environment)
    left = {}
    if site == 'formula':
        (root / 'd/out.mod').write_text(FORMULA)
    if site == 'scores':
        (root / 'd/t/sum').write_text(''.join(close_scores(trades)))
    if site == 'day':
        left['(day)'] = run(*emulator, folder / 'vantrel-day', root, *options, env=environment)
    for moment in moments:
        left[f'(start {moment})'] = run(start, cwd=root, env=environment | {'FAKETIME': str(BEGIN + moment)})
        left[f'(list {moment})'] = (root / 'd/out.lst').read_bytes()
    left.update(contents(root))
    return {place: hashlib.sha256(text).hexdigest() for place, text in left.items()}


def examine(name, short, expected):
    """Whether all is as it should be, and in words. expected: the sites of the first machine, or empty."""
    folder = build(name, short)
    start = starter(name, folder)
    good, words = True, []
    if not short:
        suite = subprocess.run(['ctest', '--test-dir', folder, '-E', '^(inspector|documents)',
                                '-j', str(os.cpu_count())], capture_output=True, text=True)
        good &= suite.returncode == 0
        words.append(next((line for line in suite.stdout.splitlines() if 'tests passed' in line), suite.stdout[-3000:]))
    if (CASES / 'check.py').exists():
        names = sorted(path.name[:-7] for path in CASES.glob('*.tar.gz'))[::8 if short else 1]
        checked = subprocess.run(['python3', CASES / 'check.py', start, *names], capture_output=True, text=True)
        good &= checked.returncode == 0
        words.append('cases: ' + (checked.stdout or checked.stderr)[-3000:].strip())
    for site in SITES:
        with tempfile.TemporaryDirectory() as root:
            left = leave(name, folder, start, site, Path(root))
        wanted = expected.setdefault(site, left)
        other = sorted(place for place in wanted.keys() | left.keys() if wanted.get(place) != left.get(place))
        good &= not other
        words.append(f'{site}: {len(left)} files ' + (f'{len(other)} differ: {" ".join(other[:5])}' if other else 'equal'))
    return good, '; '.join(words)


def main():
    short = '--short' in sys.argv
    names = [argument for argument in sys.argv[1:] if argument != '--short']
    names = names or (['release', 'clang-O3', 'arm64'] if short else list(MACHINES))
    run('bash', '-c', '. scripts/setup.sh; install_packages "$@"', '-', *PACKAGES.split(), cwd=TOP)
    expected, failed = {}, 0
    for name in names:
        begin = time.monotonic()
        try:
            good, words = examine(name, short, expected)
        except RuntimeError as failure:
            good, words = False, str(failure)
        failed += not good
        print(f'{name:14}{"ok" if good else "DIFFERS":9}{time.monotonic() - begin:5.0f} s  {words}', flush=True)
    print(f'{len(names) - failed} machines alike, {failed} not')
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
