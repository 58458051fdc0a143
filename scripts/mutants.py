#!/usr/bin/env python3
"""How many single faults in the sources do the tests see?

    scripts/mutants.py [--seed N] [--count N] [--matrix] [--only NUMBER...] [FILE or FOLDER...]

Draws faults from these C++ files of the project, src if none: the same ones for the same seed, count and sources.
Each is built in build/mutants and tried by the tests of ./test.sh, without sanitizers, for src/ by short
forms of tests/faults, too, until one fails. A fault that hangs is caught; one that does not compile, or leaves the
optimised programs as they are, is none. With --matrix the tests go on behind a failure, and at the end stand those
that always failed together. Takes ninja, and strace for src/; CMAKE_CXX_COMPILER_LAUNCHER=ccache makes it quicker.
"""
import argparse
import json
import pathlib
import random
import re
import shutil
import subprocess
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
WORK = TOP / 'build/mutants'
TREE, BUILD, SHIPPED = WORK / 'tree', WORK / 'build', WORK / 'shipped'
RUN = 'vantrel-cron'
# What is built, and which tests are run then: those of the run, those of tests/faults, all others.
TESTS = [('vantrel-tests', r'\w+\..+'), (RUN, 'walk|in-place|start|power|clock|neighbours|full_disk'),
         ('all', '(inspector|documents|fuzz).*')]

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
                at, end = (line.start() + place for place in found.span())
                yield path, at, text[at:end], replace(text[at:end])


def prepare():
    names = subprocess.check_output(['git', '-C', TOP, 'ls-files', '-co', '--exclude-standard'], text=True).splitlines()
    for source, copy in ((TOP / name, TREE / name) for name in names):
        if source.is_file() and not (copy.exists() and copy.read_bytes() == source.read_bytes()):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)
    for folder, options in (BUILD, '-DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS=-O0 -DVANTREL_TESTS=ON'), (SHIPPED, ''):
        subprocess.check_call(['cmake', '-G', 'Ninja', '-S', TREE, '-B', folder, *options.split()])


def run(command, seconds=3600, log='tests.log'):
    """Whether it ended well, and in time."""
    with open(WORK / log, 'wb') as out, tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        pathlib.Path(folder).chmod(0o1777)  # some tests go on as "nobody"
        guard = ['nice', 'env', f'TMPDIR={folder}', 'prlimit', f'--as={4 << 30}', f'--fsize={4 << 30}',
                 'timeout', '-s', 'KILL', str(seconds)]
        return subprocess.call(guard + command, stdin=subprocess.DEVNULL, stdout=out, stderr=out, cwd=BUILD) == 0


def built(target, folder=BUILD):
    """The programs by name, None when the target cannot be built."""
    if run(['cmake', '--build', folder, '--target', target], log='build.log'):
        return {path.name: path.read_bytes() for path in folder.glob('vantrel-*')}


def failures(tests, matrix=False):
    """Names of tests, of scripts with many cases also those."""
    failed = set()
    for name, (command, seconds) in tests.items():
        if (matrix or not failed) and not run(command, seconds):
            cases = re.findall(r'^FAIL(?:ED)? (.{1,60})', (WORK / 'tests.log').read_text(errors='replace'), re.M)
            failed |= {f'{name}: {case}' for case in cases} or {name}
    return failed


def measured_tests(target, pattern):
    """By name: the command, and the seconds it is allowed, the quickest first; before them the target."""
    assert built(target) is not None, f'it does not build: {WORK}/build.log'
    listed = json.loads(subprocess.check_output(['ctest', '--test-dir', BUILD, '--show-only=json-v1']))
    commands = {test['name']: test.get('command') for test in listed['tests']}
    commands |= {proof.stem: [proof, BUILD, '--short'] for proof in TREE.glob('tests/faults/*.py')}
    commands['in-place'] = [*commands['walk'], '--in-place']
    took = {}
    for name in (name for name in commands if re.fullmatch(pattern, name)):
        begin = time.monotonic()
        assert not failures({name: (commands[name], 3600)}), f'{name} fails without a fault: {WORK}/tests.log'
        took[name] = time.monotonic() - begin
    return target, {name: (commands[name], 5 * took[name] + 30) for name in sorted(took, key=took.get)}


def fate(stages, shipped, matrix):
    """The tests that failed, None when it is no fault; and that in words."""
    for target, tests in stages:
        if built(target) is None:
            return None, 'does not compile'
        if failed := failures(tests, matrix):
            return failed, 'caught by ' + ' | '.join(sorted(failed))
        if built(RUN, SHIPPED)[RUN] == shipped[RUN] and built('all', SHIPPED) == shipped:
            return None, 'is the same program'
    return set(), 'SURVIVED'


options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument('--seed', type=int, default=1)
options.add_argument('--count', type=int, default=100)
options.add_argument('--matrix', action='store_true')
options.add_argument('--only', type=int, nargs='+')
options.add_argument('files', nargs='*', default=['src'])
chosen = options.parse_args()
prepare()
roots = [TREE / name for name in chosen.files]
paths = {path for root in roots for path in [root, *root.rglob('*')] if path.suffix in ('.cpp', '.h')}
drawn = [fault for path in sorted(paths) for fault in candidates(path.relative_to(TREE))]
drawn = random.Random(chosen.seed).sample(drawn, min(chosen.count, len(drawn)))
stages = [measured_tests(*tests) for tests in (TESTS if paths & set(TREE.glob('src/**/*')) else TESTS[2:])]
shipped, results = built('all', SHIPPED), []
for number in chosen.only or range(1, len(drawn) + 1):
    path, at, old, new = drawn[number - 1]
    text = (TREE / path).read_text()
    (TREE / path).write_text(changed := text[:at] + new + text[at + len(old):])
    failed, told = fate(stages, shipped, chosen.matrix)
    (TREE / path).write_text(text)
    results.append(failed)
    line = text.count('\n', 0, at)
    print(f'{number:4} {path}:{line + 1} {told}', '- ' + text.split('\n')[line].strip(),
          '+ ' + changed.split('\n')[line].strip(), sep='\n     ', flush=True)
tried = [failed for failed in results if failed is not None]
groups = {}
for test in sorted(set().union(*tried)) if chosen.matrix else []:
    groups.setdefault(tuple(n for n, failed in enumerate(tried) if test in failed), []).append(test)
for faults, tests in groups.items():
    print(f'together for {len(faults)} faults:', ' | '.join(tests))
print(f'{len(tried)} faults (seed {chosen.seed}): {len(tried) - tried.count(set())} caught, {tried.count(set())} '
      f'survived; {len(results) - len(tried)} more were none')
