#!/usr/bin/env python3
"""The doctor's verdict on damaged sites, and what a real run then does.

    tests/check_cases.py BUILD_DIRECTORY [PART/PARTS] or [WORD...]

A case: exit status of check, what a finding says (or several say), the damage, and what must hold
after a run at the same moment. A run reaches its end (the companion scripts leave "ended") unless the status is 2. With
words only the cases that have one of them in their line, with 2/4 the second of every four. Takes a
C++ compiler; started as root it lays out some more cases, each on a file system of its own where it
may mount one, and then becomes "nobody", so that permissions count. The damages and claims are shell
commands in the site.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

BUILD = os.path.realpath(sys.argv[1])
PROGRAMS = ['vantrel-cron', 'vantrel-inspect', 'vantrel-sample-site']
HERE = os.path.dirname(os.path.realpath(__file__))
NOW = 1794833290  # 2026-11-16 12:48:10, a minute in which both periodic companion scripts start

PRELUDE = r'''
said() { grep -qF -- "$(printf %s "$1" | sed 's,/,\&#47;,g')" l/sys/sys.log; }
silent() { [ ! -s l/sys/sys.log ]; }
# FILE OFFSET VALUE: a number of 32 bits
poke() { python3 -c 'import struct, sys
with open(sys.argv[1], "r+b") as f:
    f.seek(int(sys.argv[2])); f.write(struct.pack("<i", int(sys.argv[3])))' "$@"; }
trade() { poke d/t/index $(($1 * 996 + $2)) $3; }
# of the list: how many entries, the sum of their weights, the largest share in per cent
entries() { echo $((($(stat -c %s d/out.lst) - 284) / 216)); }
weights() { python3 -c 'import struct
d = open("d/out.lst", "rb").read()[284:]
w = [struct.unpack_from("<d", d, i + 160)[0] for i in range(0, len(d), 216)]
print(int(sum(w)), int(100 * max(w, default=0) / (sum(w) or 1)), int(w[0] if w else 0))'; }
window() { awk -F'|' -v id=$1 -v n=$2 '$2 == id { print $(n + 3) }' d/t/sum; }  # counter n, from 0
mod() { sed -i "s@.*@$1@" d/out.mod; }
'''

FIRST = 'l/sys/sys.log: '  # of a finding that stands above all others

# status, finding, damage, what holds after a run
CASES = [
    (0, '', 'rm d/se; echo 60 >d/sleep; chmod 200 d/out.lst; mod "|100|100|100|3|2|1|0||10|bonus=2*uin24+1|"', 'silent'),
    # The run ends early.
    (0, 'd/sleep', 'echo 9 >d/sleep', 'silent'),
    (2, 'd/sleep', 'echo 30 >d/sleep', 'silent'),
    (2, 'd/sleep', 'echo 49 >d/sleep', 'silent'),
    (2, 'of minutes to come', 'printf "%s\\n" 11161248 >>l/sys/cron.run', 'said "double cron"'),
    (2, 'stamps of minutes to come', 'for m in 50 49 48; do echo 111612$m; done >>l/sys/cron.run', 'said "double cron"'),
    (1, 'stamp of minutes to come', 'sed -i "1i 11161300" l/sys/cron.run', 'true'),
    (2, ('d/t/sum', 'stores its minute'), 'rm d/t/sum; mkdir d/t/sum', 'said d/t/sum'),
    (2, 'l/hdd.check', 'rm -f l/hdd.check; mkdir l/hdd.check', 'said "(write test)"'),
    (2, 'l/hdd.check', 'rm -f l/hdd.check; ln -s /dev/full l/hdd.check', 'said "(disk full?)"'),
    (2, 'l/hdd.check', 'chmod 400 l/hdd.check', 'said "(write test)"'),
    (2, 'l/hdd.check', 'chmod 200 l/hdd.check', 'said "(read test)"'),
    (2, 'l/hdd.check', 'rm -f l/hdd.check; chmod 555 l', 'said "(write test)"'),
    (2, 'd/t/index', 'rm d/t/index', 'said d/t/index'),
    (2, 'd/t/index', 'chmod 000 d/t/index', 'said d/t/index'),
    (2, 'd/t/index', 'rm d/t/index; mkdir d/t/index', 'said "not fully loaded"'),
    (2, 'd/t/index', 'truncate -s 8964 d/t/index', 'said "not fully loaded"'),
    (2, 'd/t/index', 'chmod 444 d/t/index', 'said d/t/index'),
    (2, 'd/t/sum', 'rm d/t/sum', 'said d/t/sum'),
    (2, 'd/t/sum', 'chmod 444 d/t/sum', 'said d/t/sum'),
    (2, 'd/t/20', 'rm d/t/20', 'said d/t/20'),
    (2, 'd/t/20', 'chmod 000 d/t/20', 'said d/t/20'),
    (2, 'd/traffic.set', 'rm d/traffic.set', 'silent'),
    (2, 'd/geo.rating', 'rm d/geo.rating', 'said d/geo.rating'),
    (2, 'd/ip.psv', 'rm d/ip.psv', 'said ip.psv'),
    (2, 'd/agent.rating', 'rm d/agent.rating', 'said d/agent.rating'),
    (2, 'd/request.rating', 'rm d/request.rating', 'said d/request.rating'),
    (2, 'd/tags.rating', 'chmod 000 d/tags.rating', 'said d/tags.rating'),
    (2, 'd/set', 'rm d/set', 'said d/set'),
    (2, 'd/set', 'sed -i 6d d/set', 'said "d/set is corrupt"'),
    (2, 'd/set', 'echo >>d/set', 'said "d/set is corrupt"'),
    (1, 'd/out.set', 'sed -i "1s/|[0-9]*|/|0|/" d/out.set', '! weights | grep -q " 1500$"'),
    (2, 'd/out.set', 'rm d/out.set', 'said d/out.set'),
    (2, 'd/out.mod', 'rm d/out.mod', 'said d/out.mod'),
    (2, 'd/nm/track', 'rm d/nm/track', 'silent'),
    # One cause, one finding.
    (2, 'this is no site', 'rm -rf d l', 'true'),
    (2, 'd/t: the folder is not there (2 paths: d/t/index, d/t/sum). The trade database cannot be opened or written. -> make the folder, or get it back: tar xzf d/backup/', 'rm -r d/t', 'said d/t/index'),
    (2, 'd/t: the folder may not be entered', 'chmod 600 d/t', 'said d/t/index'),
    (2, '(19 paths: d/agent.rating, d/alerts, d/backup and 16 more). The trade database cannot be opened or written. -> give the run\'s user search', 'chmod 600 d', 'said d/t/index'),
    (2, 'l: the folder is not there (4 paths: l/hdd.check, l/sys/cron.last, l/sys/cron.run and 1 more). The scratch file', 'rm -r l', 'true'),
    # Counts that are lost.
    (1, ('no line for 1 trade with traffic', 'tar xzf d/backup/'), 'sed -i 21d d/t/sum', '[ $(window 20 14) -lt 10 ]'),
    (1, 'two lines of one id', 'w=$(window 20 14); sed -i 21p d/t/sum; echo $w >w', '[ $(window 20 14) -gt $(($(cat w) * 3 / 2)) ]'),
    (1, 'ids that no trade has', 'w=$(window 6 14); sed -i "21s/^|20|/|9999|/" d/t/sum; echo $w >w', '[ $(window 6 14) -gt $(cat w) ]'),
    (1, 'bars instead of 44', 'truncate -s $(($(stat -c %s d/t/sum) / 2)) d/t/sum', '[ $(window 30 14) -lt 10 ]'),
    (1, 'bars instead of 44', 'sed -i "3s/|1|/|/; 3s/$/x/" d/t/sum', 'true'),
    (1, 'bars instead of 44', 'n=$(stat -c %s d/t/sum); truncate -s 0 d/t/sum; truncate -s $n d/t/sum', '[ $(window 20 14) -lt 10 ]'),
    (1, 'not the sum of the minutes', 'python3 -c \'p = open("d/t/sum").read().split("\\n"); f = p[20].split("|"); f[16] = "99999999"; p[20] = "|".join(f); open("d/t/sum", "w").write("\\n".join(p))\'', '[ $(window 20 14) -gt 99990000 ]'),
    (1, 'not the sum of the minutes', 'sed -i "s/|[0-9]*/|0/2g; s/|0$/|/" d/t/sum', '[ $(window 20 14) -lt 10 ]'),
    (1, 'nothing but zero bytes', 'n=$(stat -c %s d/t/index); truncate -s 0 d/t/index; truncate -s $n d/t/index', '[ $(entries) = 0 ]'),
    (1, 'the reserved entries only', 'truncate -s $((996 * 11)) d/t/index', '[ $(entries) = 0 ]'),
    (1, 'the last entry is cut short', "printf '\\377' >>d/t/index; cp d/t/10 d/t/-1", 'true'),
    (1, 'd/t/20', 'chmod 444 d/t/20', 'said d/t/20'),
    (1, 'd/t/20', 'rm d/t/20; mkdir d/t/20', 'said d/t/20'),
    (1, 'cannot be written: every run counts again', 'chmod 444 l/sys/cron.run', '[ $(tail -1 l/sys/cron.run) = 11161247 ]'),
    (1, 'd/h/site20', 'rm d/h/site20*.his', 'said d/h/site20'),
    (1, 'd/h', 'chmod 555 d/h', 'silent'),
    (1, 'd/h/all.his', 'chmod 444 d/h/all.his', 'silent'),
    (1, 'emptied since the last run', ': >$(ls d/h/site20*)', '[ $(window 20 28) = 0 ]'),
    (1, 'is not there, though trades have days', 'rm d/h/all.his', 'silent'),
    # Nothing is counted.
    (1, 'l/in: the folder may not be entered', 'chmod 600 l/in', '[ $(stat -c %s l/in) ]'),
    (1, 'l/in', 'chmod 000 l/in/*', 'true'),
    (1, '3 hours old', 'rm -f l/in/*; : >l/in/26-320-09-12', 'true'),
    (1, 'holds no log', 'rm -f l/in/*', 'true'),
    (1, 'another time zone', 'rm -f l/in/*; : >l/in/26-320-11-47; touch -d "2026-11-16 12:47:50" l/in/*', 'true'),
    (1, 'l/in', 'chmod 555 l/in', 'silent'),
    (1, 'l/out', 'rm -r l/out', 'silent'),
    (1, ('older than 25 hours', 'not named by a minute'), 'cd l/in; : >hits.log; for d in 300 301; do for h in $(seq 10 23); do for m in $(seq 10 59); do : >26-$d-$h-$m; done; done; done', '[ -e l/in/26-300-10-10 ] && [ -e l/in/hits.log ]'),
    # The list is not worth following.
    (1, 'line 6: a trade needs', "sed -i '6s/.*/|99999999|/' d/set", '[ $(weights | cut -d" " -f2) -ge 0 ]'),
    (1, 'no weight above 0', "printf '1|0|\\n2|-5|\\n' >d/out.set", '[ "$(weights | cut -d" " -f3)" = -5 ]'),
    (1, 'is not above 0', "sed -i 's/^1|1500|/1|0|/' d/out.set", '[ "$(weights | cut -d" " -f3)" = 900 ]'),
    (1, 'the next list is empty', 'for i in $(seq 11 35); do trade $i 880 0; trade $i 844 -1; done', '[ $(entries) = 0 ]'),
    (1, 'the present one', 'python3 -c \'open("d/out.lst", "ab").write(bytes(216 * 60))\'', '[ $(entries) -lt 30 ]'),
    (1, 'd/out.lst', 'rm -f d/out.lst; mkdir d/out.lst', 'said d/out.lst'),
    (1, 'd/out.lst', 'chmod 444 d/out.lst', 'said d/out.lst'),
    (1, 'lists what is no trade', 'truncate -s 500 d/out.lst; poke d/out.lst 284 9999', '[ $(entries) -gt 5 ]'),
    (1, 'has no "://"', 'poke d/t/index $((20 * 996 + 80)) 7827310', 'grep -aq www d/out.lst'),
    (1, 'is not whole', 'printf x >>d/out.lst', '[ $((($(stat -c %s d/out.lst) - 284) % 216)) = 0 ]'),
    # Settings that are nonsense.
    (1, 'd/ds', 'rm d/ds', 'said d/ds'),
    (1, 'd/proxy', 'rm d/proxy', 'said d/proxy'),
    (1, 'is no file', 'rm d/geo.rating; mkdir d/geo.rating', 'silent'),
    (1, 'd/caps', 'rm d/caps', 'said d/caps'),
    (1, 'cannot be written when', 'chmod 444 d/set', 'silent'),
    (1, 'd: ', 'chmod 555 d', 'silent'),
    (1, 'd/alerts', 'rm d/alerts', 'said d/alerts'),
    (1, '15 pieces instead of 14', 'echo >>d/alerts', 'said "alerts settings file is corrupt"'),
    (1, 'no-such-mailer', "sed -i 's@^|[^|]*|@|./no-such-mailer|@' d/alerts", '! said "unable to connect"'),
    (1, 'd/alerts', 'chmod 444 d/alerts', 'silent'),
    # Recent trouble, programs, backups.
    (1, '2 runs ended early in the last hour: cron has already', "for m in 30 31; do echo \"|2026111612$m|cron|10|cron has already run this minute (double cron detected)|1||||\"; done >>l/sys/sys.log", 'true'),
    (0, '', "echo '|202611161030|cron|1|d&#47;t&#47;20|1||||' >>l/sys/sys.log", 'true'),
    (1, '1 gap', 'sed -i /11161240/d l/sys/cron.run', 'said "|cron|3|"'),
    (1, 'no run wrote: "rubbish"', 'sed -i "5i rubbish" l/sys/cron.run', 'said "|cron|3|"'),
    (1, 'stamps twice or behind', 'sed -n 1,8p l/sys/cron.run >x; sed -i "10r x" l/sys/cron.run', 'said "|cron|3|"'),
    (1, 'its last line has no end', 'truncate -s -1 l/sys/cron.run', 'grep -q 1116124711161248 l/sys/cron.run'),
    (2, FIRST + 'cannot be written: the run is mute', ': >l/sys/sys.log; chmod 444 l/sys/sys.log; rm d/set', 'silent'),
    (1, '2 runs of this site at work', 'cp "$(command -v sleep)" vantrel-cron; for i in 1 2; do ./vantrel-cron 60 >x 2>&1 & echo $! >>pids; done', 'kill $(cat pids)'),
    (1, 'the run is mute', 'rm -rf l/sys/sys.log; mkdir l/sys/sys.log', 'true'),
    (1, 'the run is mute', ': >l/sys/sys.log; chmod 444 l/sys/sys.log', 'silent'),
    (1, 'd/jb', 'rm d/jb', 'said d/t/jb'),
    (1, 'the companion script is missing', 'rm sh_sync.cgi', 'silent'),
    (1, 'cannot be executed', 'chmod 644 sh_top.cgi', 'silent'),
    (1, 'cannot be read by tar', 'truncate -s -200 d/backup/*; touch -d "2026-11-16 11:59" d/backup/*', 'silent'),
    (1, 'd/backup', 'rm -r d/backup', 'silent'),
]


def run(command, site, **more):
    return subprocess.run(command, cwd=site, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          errors='replace', timeout=60, **more)


def at_clock(work):
    return dict(os.environ, TZ='UTC', LD_PRELOAD=work + '/clock.so', FROZEN_CLOCK=str(NOW))


def shell(script, site):
    return run(['bash', '-c', PRELUDE + script], site, env=dict(os.environ, TZ='UTC'))


def model(work):
    site = work + '/model'
    subprocess.run([work + '/vantrel-sample-site', site, '--at', str(NOW), '--minutes', '3', '--days', '20',
                    '--ranges', '200'], check=True, env=dict(os.environ, TZ='UTC'))
    for script in ('sync', 'hta', 'top'):
        with open('%s/sh_%s.cgi' % (site, script), 'w') as file:
            file.write('#!/bin/sh\necho %s >>ended\n' % script)
    return site


# The same for what only root can lay out; the run is that of "nobody", a start at second 0.
ROOT_CASES = [
    (2, 'disk: the file system of l takes no further file, though it has room (no inodes), and l/hdd.check is not there to be overwritten -> remove small', 'rm l/hdd.check; mount -o remount,nr_inodes=$(($(df --output=iused . | tail -1))) .', 'true'),
    (2, 'the file system of l is full, and l/hdd.check is not there to be overwritten ->', 'rm l/hdd.check; cat /dev/zero 2>x >fill; true', 'true'),
    (1, 'has to remove the old logs or archives that are due first', 'rm l/hdd.check; head -c 99999 /dev/zero >l/out/26-319-11-46; cat /dev/zero 2>x >fill; true', '[ ! -e l/out/26-319-11-46 ]'),
    (1, 'only 1100 KiB are left for d/t ->', 'fallocate -l $(($(df --output=avail . | tail -1) - 1100))K fill', 'silent'),
    (0, '', 'fallocate -l $(($(df --output=avail . | tail -1) - 2000))K fill', 'silent'),
    (1, 'd/alerts: The alert settings cannot be opened or written. It belongs to root. ->', 'chown root d/alerts; chmod 600 d/alerts', 'true'),
    (1, 'is full: hits of this minute are not logged', 'truncate -s %4096 d/t/sum; head -c 999999 /dev/zero >l/in/26-319-11-47; cat /dev/zero 2>x >fill; true', '[ ! -e l/in/26-319-11-47 ]'),
    (2, 'mounted read-only (86 paths: d/alerts, d/backup, d/h/all.his and 83 more). The scratch file l/hdd.check cannot be written. -> mount it writable', 'mount -o remount,ro .', 'true'),
    (2, 'ownership: 86 paths of root cannot be used by nobody: d/alerts, d/backup, d/h/all.his and 83 more. The scratch', 'chown -R root:root .', 'true'),
    (2, 'd/sleep', 'echo 1 >d/sleep; touch -d "2026-11-16 12:47:00" l/sys/cron.last', 'silent'),
]


def as_nobody():
    os.setgroups([])
    os.setgid(65534)
    os.setuid(65534)


MOUNT = ['mount', '-t', 'tmpfs', '-o', 'size=32m', 'site']


def may_mount(folder):
    mounted = subprocess.run(MOUNT + [folder], stderr=subprocess.DEVNULL).returncode == 0
    if mounted:
        subprocess.run(['umount', folder], check=True)
    else:
        print('left out, as nothing may be mounted here: %d cases' % len(ROOT_CASES))
    return mounted


def judge_as_root(case, pattern, site, env):
    """In a file system of its own, which a damage may spoil."""
    os.mkdir(site)
    subprocess.run(MOUNT + [site], check=True)
    try:
        subprocess.run(['cp', '-a', pattern + '/.', site], check=True)
        yield from judge(case, site, dict(env, FROZEN_CLOCK=str(NOW - 10)), ['--user', 'nobody'], as_nobody)
    finally:
        subprocess.run(['umount', site], check=True)
        os.rmdir(site)


def judge(case, site, env, options=(), become=None):
    """What is wrong with the verdict, line by line."""
    status, finding, damage, then = case
    findings = finding if isinstance(finding, tuple) else (finding,)
    done = shell(damage, site)
    if done.returncode != 0:
        yield 'cannot make the damage: ' + done.stderr
    check = run([os.path.dirname(site) + '/vantrel-inspect', 'check', *options], site, env=env)
    told = [line for line in check.stdout.splitlines() if line.split(':')[0] in ('note', 'warning', 'fatal')]
    if check.returncode != status:
        yield 'status %d, not %d:\n%s%s' % (check.returncode, status, check.stdout, check.stderr)
    for text in findings:
        if text and not any(text in line for line in told):
            yield 'no finding %r:\n%s' % (text, check.stdout)
    if findings[0].startswith(FIRST) and findings[0] not in told[0]:
        yield 'another finding stands first:\n' + check.stdout
    if any(' -> ' not in line for line in told if not line.startswith('note')):
        yield 'a finding without remedy:\n' + check.stdout
    if len([line for line in told if not line.startswith('note')]) > 2:
        yield 'one cause, many findings:\n' + check.stdout
    started = run([os.path.dirname(site) + '/vantrel-cron'], site, env=env, preexec_fn=become)
    if started.returncode != 0:
        yield 'the run: status %d\n%s' % (started.returncode, started.stderr)
    if os.path.exists(site + '/ended') != (status != 2):
        yield 'the run reached its end: %s' % os.path.exists(site + '/ended')
    if shell(then, site).returncode != 0:
        yield 'after the run not true: ' + then


def chosen(cases):
    words = sys.argv[2:]
    if len(words) == 1 and re.fullmatch('[0-9]+/[0-9]+', words[0]):
        part, parts = map(int, words[0].split('/'))
        return cases[part - 1::parts]
    return [case for case in cases if not words or any(word in repr(case) for word in words)]


def main():
    os.umask(0o022)
    work = tempfile.mkdtemp(prefix='check.')
    os.chmod(work, 0o755)
    subprocess.run(['c++', '-O1', '-shared', '-fPIC', '-o', work + '/clock.so', HERE + '/../bench/frozen_clock.cpp'],
                   check=True)
    for program in PROGRAMS:  # the build folder may lie where "nobody" cannot go
        shutil.copy(BUILD + '/' + program, work)
    pattern = model(work)
    for script in ('sync', 'hta', 'top'):
        os.chmod('%s/sh_%s.cgi' % (pattern, script), 0o755)
    cases = chosen(CASES)
    failures = 0
    site = work + '/site'
    if os.getuid() == 0:
        subprocess.run(['chown', '-R', 'nobody:nogroup', work], check=True)
        for case in chosen(ROOT_CASES) if may_mount(pattern) else []:
            cases.append(case)  # for their number
            for wrong in judge_as_root(case, pattern, site, at_clock(work)):
                failures += 1
                print('FAIL %s\n  %s' % (case[2], wrong.replace('\n', '\n  ')))
        as_nobody()
    for case in chosen(CASES):
        subprocess.run(['cp', '-a', pattern, site], check=True)
        for wrong in judge(case, site, at_clock(work)):
            failures += 1
            print('FAIL %s\n  %s' % (case[2], wrong.replace('\n', '\n  ')))
        subprocess.run('chmod -R u+rwx site; rm -rf site', shell=True, cwd=work, check=True)
    shutil.rmtree(work)
    print('%d cases, %d failures' % (len(cases), failures))
    sys.exit(failures > 0)


main()
