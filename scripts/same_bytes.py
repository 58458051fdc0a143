#!/usr/bin/env python3
"""Builds the run for several machines and compares, byte for byte, what the builds make of a site.

    scripts/same_bytes.py              every machine, each with the test suite: about an hour
    scripts/same_bytes.py --short      two of them against build/release, without the suite
    scripts/same_bytes.py NAME...      these of them

The first machine is the one the others are compared with. On each: the test suite; the recorded
cases, where they lie beside the project; and three sites, laid out and carried on by the machine's
own programs: a day of simulated minutes in which summer time ends, starts of the run with a formula,
and starts on many trades with so little traffic that scores meet and the last bit decides. All their files are compared,
of an archive the members. Builds stay in build/same/; ends with status 1 on any difference.
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
ARM = ['-DCMAKE_SYSTEM_NAME=Linux', '-DCMAKE_SYSTEM_PROCESSOR=aarch64',
       '-DCMAKE_CROSSCOMPILING_EMULATOR=qemu-aarch64;-L;/usr/aarch64-linux-gnu']
EMULATOR = ['qemu-aarch64', '-L', '/usr/aarch64-linux-gnu']
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
TESTS = ['vantrel-tests'] + ['fuzz-replay-' + p.name for p in sorted((TOP / 'fuzz/corpus').iterdir())]

START = 1729980120  # 2024-10-27 00:02 in Berlin: summer time ends in the day that follows
SIZE = '--trades {} --hits {} --minutes 90 --ranges 20000 --days {} --curve'
FORMULA = '|120|85|130|3|2|1|0||10|rin24*1.1+uin60/3-out24*0.7+rtc07/(rto07+0.3)|\n'
# Trades, hits and days of the sample; moments of the starts, without any the day is simulated.
SITES = {'day': (60, 40, 8, []),
         'scores': (2000, 0, 0, [2, 62, 45 * 60]),
         'formula': (500, 40, 8, [2, 62, 177, 45 * 60, 89820])}


# A run flushes what it stores: sites lie in memory where there is room.
IN_MEMORY = Path('/dev/shm')
if IN_MEMORY.is_dir() and shutil.disk_usage(IN_MEMORY).free > 1 << 30:
    os.environ['TMPDIR'] = str(IN_MEMORY)


def run(command, **options):
    done = subprocess.run([str(part) for part in command], capture_output=True, **options)
    if done.returncode != 0:
        said = (done.stdout + done.stderr).decode(errors='replace')
        raise RuntimeError(f'{shlex.join(map(str, command))}\n{said[-4000:]}')
    return done.stdout


def build(name, short):
    compiler, flags, options = MACHINES[name]
    folder = BUILDS / name
    if name == 'musl':
        run([TOP / 'scripts/musl.sh', Path(compiler).parent])
    common = ['-DCMAKE_BUILD_TYPE=Release', f'-DCMAKE_CXX_COMPILER={compiler}', *options]
    if not short and options:  # another library of C than this machine's: GoogleTest is built for it
        run(['cmake', '-S', '/usr/src/googletest', '-B', folder / 'gtest', '-DBUILD_GMOCK=OFF', '-Dgtest_disable_pthreads=ON',
             f'-DCMAKE_INSTALL_PREFIX={folder}/gtest/out', *common])
        run(['cmake', '--build', folder / 'gtest', '-j', os.cpu_count(), '--target', 'install'])
        common.append(f'-DGTest_DIR={folder}/gtest/out/lib/cmake/GTest')
    run(['cmake', '-S', TOP, '-B', folder, f'-DCMAKE_CXX_FLAGS_RELEASE={flags} -DNDEBUG',
         f'-DVANTREL_TESTS={"OFF" if short else "ON"}', *common])
    run(['cmake', '--build', folder, '-j', os.cpu_count(), '--target', 'vantrel-cron', 'vantrel-day',
         'vantrel-sample-site', *([] if short else TESTS)])
    return folder


def starter(name, folder):
    """A program that starts the run with the clock at FAKETIME, in seconds since the epoch."""
    clock = folder / 'clock.so'
    run([MACHINES[name][0] if name in MACHINES else 'g++', '-O1', '-w', '-shared', '-fPIC', '-nostdlib',
         TOP / 'bench/frozen_clock.cpp', '-o', clock])
    program = folder / 'start'
    how = f'env LD_PRELOAD={clock}'
    if name == 'arm64':  # the emulator keeps this machine's clock, and so do the programs the run starts
        how = shlex.join(['env', '-u', 'LD_PRELOAD', *EMULATOR, '-E', f'LD_PRELOAD={clock}'])
    program.write_text(f'#!/bin/sh\nexport FROZEN_CLOCK=$FAKETIME\nexec {how} {folder}/vantrel-cron\n')
    program.chmod(0o755)
    return program


def contents(site):
    for path in sorted(site.rglob('*')):
        place = str(path.relative_to(site))
        if path.name.endswith('.tar.gz'):
            with tarfile.open(path) as archive:
                for member in archive:
                    yield f'{place}/{member.name}', archive.extractfile(member).read() if member.isfile() else b''
        elif path.is_file():
            yield place, path.read_bytes()


def close_scores(chance, trade):
    """A trade's line of d/t/sum: 14 counters for the hour, the day and the week; the last three are scored."""
    windows = [[50] + 10 * [0] + [1 + int(chance.random() * 9) for _ in range(3)] for _ in range(3)]
    return f'|{trade}|' + ''.join(f'{value}|' for window in windows for value in window) + '\n'


def leave(name, folder, start, site, root):
    """What is left of a site in the folder root, by path."""
    *size, moments = SITES[site]
    environment = {'PATH': os.environ['PATH'], 'TZ': 'Europe/Berlin'}
    emulator = EMULATOR if name == 'arm64' else []
    options = [*SIZE.format(*size).split(), '--at', START]
    left = {'(sample)': run([*emulator, folder / 'vantrel-sample-site', root, *options], env=environment)}
    if site == 'formula':
        (root / 'd/out.mod').write_text(FORMULA)
    if site == 'scores':
        chance = random.Random(1)
        (root / 'd/t/sum').write_text(''.join(close_scores(chance, trade) for trade in range(size[0] + 11)))
    if not moments:
        left['(day)'] = run([*emulator, folder / 'vantrel-day', root, *options], env=environment)
    for moment in moments:
        left[f'(start {moment})'] = run([start], cwd=root, env=environment | {'FAKETIME': str(START + moment)})
        left[f'(list {moment})'] = (root / 'd/out.lst').read_bytes()
    left.update(contents(root))
    return {place: hashlib.sha256(text).hexdigest() for place, text in left.items()}


def examine(name, short, expected):
    """The lines to print, the sites as they are left, and whether all is as it should be."""
    folder = TOP / 'build/release' if name == 'release' else build(name, short)
    start = starter(name, folder)
    good, words = True, []
    if not short:
        suite = subprocess.run(['ctest', '--test-dir', folder, '-E', '^(inspector|documents)', '-j', str(os.cpu_count())], capture_output=True, text=True)
        good &= suite.returncode == 0
        words.append(next((line for line in suite.stdout.splitlines() if 'tests passed' in line), suite.stdout[-3000:]))
    if (CASES / 'check.py').exists():
        names = sorted(path.name[:-7] for path in CASES.glob('*.tar.gz'))[::8 if short else 1]
        checked = subprocess.run(['python3', CASES / 'check.py', start, *names], capture_output=True, text=True)
        good &= checked.returncode == 0
        words.append('cases: ' + (checked.stdout.strip().splitlines() or [checked.stderr])[-1 if good else 0])
    sites = {}
    for site in SITES:
        with tempfile.TemporaryDirectory() as root:
            sites[site] = left = leave(name, folder, start, site, Path(root))
        wanted = expected.get(site, left)
        other = sorted(place for place in wanted.keys() | left.keys() if wanted.get(place) != left.get(place))
        good &= not other
        words.append(f'{site}: {len(left)} files, ' + (f'{len(other)} differ: {" ".join(other[:5])}' if other else 'equal'))
    return words, sites, good


def main():
    names = [argument for argument in sys.argv[1:] if argument != '--short']
    short = '--short' in sys.argv
    names = names or (['release', 'clang-O3', 'arm64'] if short else list(MACHINES))
    expected, failed = {}, 0
    for name in names:
        begin = time.monotonic()
        try:
            words, sites, good = examine(name, short, expected)
            expected = expected or sites
        except RuntimeError as failure:
            words, good = [str(failure)], False
        failed += not good
        print(f'{name:14}{"ok" if good else "DIFFERS":9}{time.monotonic() - begin:5.0f} s  ' + '; '.join(words), flush=True)
    print(f'{len(names) - failed} machines alike, {failed} not')
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
