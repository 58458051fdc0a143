"""A case of start.py: a site, things around it, a run in it, and what is expected afterwards."""
import functools
import os
import re
import shutil
import subprocess
import sys

import layout
from layout import CLOCK, SLOT

PROGRAM, CHOSEN, SHORT = layout.command_line(sys.modules['__main__'].__doc__, '--short')
NOBODY = 65534
ROOT = os.geteuid() == 0
REPLACED = ['d/t/sum', 'd/set', 'd/out.lst', 'l/sys/cron.run', 'd/alerts']
STORES = ['d/t/sum', 'd/set', 'd/alerts', 'd/t/index', 'd/out.lst', 'd/t/11']
SCORE = layout.Score()


class Case:
    """A site in a folder with things around it, which the run must leave alone."""

    def __init__(self, name, clock=CLOCK, lay_out=True):
        self.name, self.clock, self.wrong = name, clock, []
        self.root = os.path.join(folder(), 'case')
        shutil.rmtree(self.root, ignore_errors=True)
        self.site = os.path.join(self.root, 'www', 'site')
        for around in ('www/other/file', 'www/d/t/index', 'file', 'd.his', 'www/outside.his'):
            layout.write(self.root, around, 'around')
        if lay_out:
            layout.lay_out(self.site, clock)
            layout.at_work_everywhere(self.site, clock)
        self.before = None

    def write(self, name, text):
        layout.write(self.site, name, text)

    def give_away(self, which=lambda path: True):
        """To the user whom permissions bind."""
        for path in ['', *layout.tree(self.site)] if ROOT else ():
            if which(path):
                os.chown(os.path.join(self.site, path), NOBODY, NOBODY)

    def around(self):
        return {k: v for k, v in layout.tree(self.root).items() if not k.startswith('www/site')}

    def run(self, program=None, before_start=None, wrapper=(), umask=0o022, variables=None,
            status=(0,)):
        """Runs the program once; before_start: called in the new process."""
        self.before = layout.tree(self.site)
        around = self.around()
        env = layout.environment(self.clock) if variables is None else variables

        def prepare():
            os.umask(umask)
            if before_start:
                before_start()
        try:
            got = subprocess.run([*wrapper, program or PROGRAM], cwd=self.site, env=env,
                                 preexec_fn=prepare, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                 timeout=layout.PATIENCE).returncode
        except subprocess.TimeoutExpired:
            got = 'hanging'
        self.expect(got in status, 'exit status %s' % got)
        self.expect(self.around() == around, 'something around the site changed')
        self.check_log()
        return got

    def expect(self, holds, complaint):
        if not holds:
            self.wrong.append(complaint)

    def check_log(self):
        """Every line of the log is an event, whatever stood in the files."""
        path = os.path.join(self.site, 'l/sys/sys.log')
        if not os.path.isfile(path) or os.path.islink(path):
            return
        for line in layout.read(self.site, 'l/sys/sys.log').split(b'\n')[:-1]:
            whole = re.fullmatch(rb'\|\d{12}\|cron\|(1|2|3|10)\|[^|<>`\'"!\\/\r]*\|[01]\|{4}',
                                 line)
            self.expect(whole, 'a line of the log is no event: %r' % line[:80])

    def events(self):
        return layout.events(self.site)

    def expect_event(self, subject, level):
        found = [e for e in self.events() if e[0].startswith(subject) and e[1] == level]
        self.expect(len(found) == 1, '%d events %s of level %s' % (len(found), subject, level))

    def expect_hits(self, number, count):
        """In the 60-minute window, which had 9 of them."""
        got = layout.summary(self.site)[number][0] - 9
        self.expect(got == count, '%d hits counted instead of %d' % (got, count))

    def expect_unchanged(self, *names):
        now = layout.tree(self.site)
        for name in names or self.before:
            self.expect(now.get(name, '') == self.before[name], name + ' changed')

    def expect_complete(self, *but):
        """The run did what an undisturbed run does."""
        now = layout.tree(self.site)
        for name, data in reference().items():
            if name not in but and not name.endswith(('.gz', '.log')):
                self.expect(now.get(name, '') == data, name + ' is not what it should be')

    def expect_stores_whole(self, *but):
        """Old, or as new as a run may leave it."""
        now = layout.tree(self.site)
        for name in STORES:
            if name in but or now.get(name, '') == self.before.get(name, ''):
                continue
            data = now.get(name) or b''
            whole = {'d/t/sum': lambda: layout.summary(self.site) is not None and
                     data.count(b'\n') == self.before['d/t/sum'].count(b'\n'),
                     'd/set': lambda: data.count(b'\n') == 6,
                     'd/alerts': lambda: data.count(b'|') == 15,
                     'd/t/index': lambda: len(data) == len(self.before[name]),
                     'd/out.lst': lambda: layout.entries(data) is not None,
                     'd/t/11': lambda: len(data) == layout.STATISTICS}[name]()
            self.expect(whole, name + ' is damaged')

    def expect_slot(self, number, **counters):
        """The counters of the minute before the clock in a statistics file."""
        order = 'rin uin out clk ctt ctg cef rec proxy_in proxy_out proxy_clk rti rto rtc'.split()
        minute = (self.clock // 60 - 1) % 1440
        data = layout.read(self.site, 'd/t/%d' % number)[minute * SLOT:][:SLOT]
        for name, value in counters.items():
            at = order.index(name) * 4
            got = int.from_bytes(data[at:at + 4], 'little', signed=True)
            self.expect(got == value, '%s of %d is %d, not %d' % (name, number, got, value))

    def next_run(self):
        """A minute later, with nothing in the way: nothing may be left to repair by hand."""
        seen = len(self.events())
        got = layout.run(PROGRAM, self.site, self.clock + 60)
        self.expect(got == 0, 'the next run ends with %s' % got)
        for subject, level in self.events()[seen:]:
            self.expect(level == '0', 'the next run reports ' + subject)
        self.expect(layout.summary(self.site) is not None, 'd/t/sum is damaged')
        self.expect(layout.entries(layout.read(self.site, 'd/out.lst')), 'd/out.lst is damaged')

    def done(self):
        SCORE.add(self.name, self.wrong)


@functools.cache
def unprivileged():
    """How a run is started by a user whom permissions bind."""
    program = os.path.join(folder(), 'program')
    shutil.copy(PROGRAM, program)
    library = os.path.join(folder(), 'clock')
    shutil.copy(layout.PRELOAD, library)
    os.chmod(folder(), 0o755)
    # The wrappers must not load the clock: it takes itself out of the environment.
    variables = layout.environment(CLOCK)
    del variables['LD_PRELOAD']
    user = ['setpriv', '--reuid=%d' % NOBODY, '--regid=%d' % NOBODY, '--clear-groups']
    return dict(program=program, variables=variables,
                wrapper=[*(user if ROOT else []), 'env', 'LD_PRELOAD=' + library])


OWN_MOUNTS = ['unshare', '--mount', 'sh', '-c']


def can_mount():
    able = subprocess.run([*OWN_MOUNTS, 'mount -t tmpfs none .'], cwd=folder(),
                          stderr=subprocess.DEVNULL).returncode == 0
    if not able:
        print('no mounting here: the case is left out')
    return able


@functools.cache
def scratch():
    return layout.scratch()


def folder():
    """Where the cases are laid out; it goes with the process."""
    return scratch().name


@functools.cache
def reference():
    """The files that an undisturbed run leaves."""
    case = Case('reference')
    case.run()
    return layout.tree(case.site)
