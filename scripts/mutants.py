#!/usr/bin/env python3
"""How many single faults in the sources do the tests see?

    scripts/mutants.py [--seed N] [--count N] [--quick] [--matrix] [--only NUMBER...] [FILE or FOLDER...]

Draws faults (an operator swapped, a number changed, a condition negated, a statement dropped) from the
C++ files given, src/ if none: the same ones for the same seed, count and sources. Each is built in
build/mutants, from a copy of the tree, and tried by the tests of ./test.sh, without sanitizers, the
shortest first, until one fails; with --quick by those of the run only. Prints what became of each. A
fault that hangs is caught, one that does not compile is none. With --matrix the tests go on behind a
failure, and at the end stand those that always failed together. Takes ninja; uses ccache if it is there.
"""
import argparse
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
WORK = TOP / 'build/mutants'
TREE, BUILD, TMP = WORK / 'tree', WORK / 'build', WORK / 'tmp'
# What is built, and which tests are run then.
OF_THE_RUN, OTHERS = ('vantrel-tests', r'\w+\.'), ('all', 'inspector|documents|fuzz')

NOT_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|^#[^\n]*|static_assert\s*\(.*?\);|R"\(.*?\)"|"(?:\\.|[^"\\\n])*"'
                      r"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'", re.S | re.M)
SWAPS = {'==': '!=', '!=': '==', '<': '<=', '<=': '<', '>': '>=', '>=': '>', '&&': '||', '||': '&&', '+': '-',
         '-': '+', '*': '/', '/': '*', '%': '/', '+=': '-=', '-=': '+=', '&': '|', '|': '&', '|=': '&=', '&=': '|='}
RULES = [(r'(?<= )(?:[=!<>+&|-]=|&&|\|\||[<>+*/%&|-])(?= |$)', SWAPS.get),
         (r'\+\+|--', lambda m: '--' if m == '++' else '++'),
         (r'(?<=[( ])!(?=[\w(*])', lambda m: ''),
         (r'\b(?:true|false)\b', lambda m: 'false' if m == 'true' else 'true'),
         (r'\b(?:break|continue);', lambda m: 'continue;' if m == 'break;' else 'break;'),
         (r'(?<![\w.\'])(?:0|[1-9]\d*)(?![\w.\'])', lambda m: str(int(m) + 1)),
         (r'(?:(?<=\bif \()|(?<=\bwhile \()).+(?=\) (?:\{|[\w+*-].*;)$)', lambda m: '!(' + m + ')'),
         (r'\breturn [^;{]+;', lambda m: 'return {};'),
         (r'^ +(?!return |delete|throw)(?:[\w:.>\[\]()*-]+ [-+*/|&]?= .*|[\w:.>-]+\(.*\)|return|(?:\+\+|--)[\w.]+);$',
          lambda m: ';')]


def candidates(path):
    """(file, offset, what stands there, what is to stand there)"""
    text = (TREE / path).read_text()
    code = NOT_CODE.sub(lambda m: re.sub(r'[^\n]', '~', m[0]), text)
    for line in re.finditer(r'[^\n]+', code):
        for pattern, replace in RULES:
            for found in re.finditer(pattern, line[0]):
                at = line.start() + found.start()
                old = text[at:at + len(found[0])]
                yield path, at, old, replace(old)


def prepare():
    names = subprocess.check_output(['git', '-C', TOP, 'ls-files', '-co', '--exclude-standard'], text=True).splitlines()
    for source, copy in ((TOP / name, TREE / name) for name in names):
        if source.is_file() and not (copy.exists() and copy.read_bytes() == source.read_bytes()):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)
    options = ['CMAKE_BUILD_TYPE=None', 'CMAKE_CXX_FLAGS=-O0', 'VANTREL_TESTS=ON']
    options += ['CMAKE_CXX_COMPILER_LAUNCHER=ccache'] if shutil.which('ccache') else []
    subprocess.check_call(['cmake', '-G', 'Ninja', '-S', TREE, '-B', BUILD, *('-D' + option for option in options)])


def run(command, seconds=3600, log='tests.log'):
    """Whether it ended well, and in time."""
    guard = ['nice', 'timeout', '-s', 'KILL', str(seconds), 'prlimit', f'--as={4 << 30}', f'--fsize={4 << 30}']
    with open(WORK / log, 'wb') as out:
        return subprocess.run([*guard, *command], stdin=subprocess.DEVNULL, stdout=out, stderr=out, cwd=BUILD,
                              env=dict(os.environ, TMPDIR=str(TMP))).returncode == 0


def builds(target):
    return run(['cmake', '--build', BUILD, '--target', target], log='build.log')


def failures(tests, matrix=False):
    """Names of tests, of scripts with many cases also those."""
    failed = set()
    for name, (command, seconds) in tests.items():
        shutil.rmtree(TMP, ignore_errors=True)
        TMP.mkdir()
        TMP.chmod(0o1777)  # some go on as "nobody"
        if not run(command, seconds):
            cases = re.findall(r'^FAIL (.{1,60})', (WORK / 'tests.log').read_text(errors='replace'), re.M)
            failed |= {f'{name}: {case}' for case in cases} or {name}
            if not matrix:
                break
    return failed


def measured_tests(target, pattern):
    """By name: the command, and the seconds it is allowed, the quickest first."""
    if not builds(target):
        sys.exit(f'it does not build: {WORK}/build.log')
    tests, listed = {}, json.loads(subprocess.check_output(['ctest', '--test-dir', BUILD, '--show-only=json-v1']))['tests']
    for name, command in ((test['name'], test['command']) for test in listed if re.match(pattern, test['name'])):
        begin = time.monotonic()
        if failures({name: (command, 3600)}):
            sys.exit(f'{name} fails without a fault: {WORK}/tests.log')
        tests[name] = command, time.monotonic() - begin
    return {name: (command, 5 * took + 30) for name, (command, took) in sorted(tests.items(), key=lambda test: test[1][1])}


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument('--seed', type=int, default=1)
    options.add_argument('--count', type=int, default=100)
    for name in ('--quick', '--matrix'):
        options.add_argument(name, action='store_true')
    options.add_argument('--only', type=int, nargs='+')
    options.add_argument('files', nargs='*', default=['src'])
    chosen = options.parse_args()
    prepare()
    roots = [TREE / os.path.relpath(name, TOP) for name in chosen.files]
    paths = {path for root in roots for path in [root, *root.rglob('*')] if path.suffix in ('.cpp', '.h')}
    paths = sorted(path.relative_to(TREE) for path in paths)
    drawn = [fault for path in paths for fault in candidates(path)]
    drawn = random.Random(chosen.seed).sample(drawn, min(chosen.count, len(drawn)))
    stages = {OTHERS if path.parts[0] == 'tools' else OF_THE_RUN for path in paths} | (set() if chosen.quick else {OTHERS})
    stages = [(target, measured_tests(target, pattern)) for target, pattern in sorted(stages, reverse=True)]
    results = []
    for number in chosen.only or range(1, len(drawn) + 1):
        path, at, old, new = drawn[number - 1]
        text = (TREE / path).read_text()
        (TREE / path).write_text(text[:at] + new + text[at + len(old):])
        failed = set()
        for target, tests in stages:
            failed = failed or (failures(tests, chosen.matrix) if failed is not None and builds(target) else None)
        (TREE / path).write_text(text)
        results.append(failed)
        told = 'caught by ' + ' | '.join(sorted(failed)) if failed else 'SURVIVED' if failed == set() else 'does not compile'
        begin, end = text.rfind('\n', 0, at) + 1, text.index('\n', at + len(old))
        print(f'{number:4} {path}:{text.count(chr(10), 0, at) + 1} {told}\n     - {text[begin:end].strip()}\n'
              f'     + {(text[begin:at] + new + text[at + len(old):end]).strip()}', flush=True)
    tried = [failed for failed in results if failed is not None]
    groups = {}
    for test in sorted(set().union(*tried)) if chosen.matrix else []:
        groups.setdefault(tuple(n for n, failed in enumerate(tried) if test in failed), []).append(test)
    for faults, tests in groups.items():
        print(f'together for {len(faults)} faults:', ' | '.join(tests))
    print(f'{len(tried)} faults (seed {chosen.seed}): {len(tried) - tried.count(set())} caught, {tried.count(set())} '
          f'survived; {len(results) - len(tried)} more did not compile')


main()
