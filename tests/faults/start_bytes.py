"""Groups of start.py: hostile names, huge texts and records that are none."""
import os
import time

import layout
from layout import NAMES
from site_case import Case, SHORT


def names():
    hostile = [b'../../../outside', b'/etc/passwd', b'..', b'.', b'a/../b', b'x|y|z',
               b'\x01\x7f\x1b[2J', b'line\nfeed\r', b'n' * 76, b'',
               b'$(touch pwned)', b'`touch pwned`',
               b'; touch pwned #', b'%s%n%d', b'a\0b', b'-rf', b'\xff\xfe\x80', b"'\"<script>!\\",
               b'../all', b'all', b'trades', b'alpha.example', b'&#47;etc', b'\n', b'*', b'~root']
    reserved = [(i, 'entry%d' % i, {}) for i in range(layout.RESERVED)]
    good = [(50 + i, name, {}) for i, name in enumerate(NAMES[1:])]
    for group in [hostile] + [[name] for name in hostile]:
        case = Case('trades called %r' % (group if len(group) == 1 else 'all of it'))
        bad = [(100 + i, name, {}) for i, name in enumerate(group)]
        layout.set_index(case.site, reserved + bad + good)
        layout.set_texts(case.site, len(reserved), [name for _, name, _ in bad])
        layout.write_logs(case.site, case.clock)
        case.write('d/alerts', '|./mailer.sh|a@b.example $(touch pwned)|`touch pwned`@d.example'
                   '|;touch pwned|0|1|1;touch pwned|0|0|1|0|1|0|1|')
        case.run()
        for number, _, _ in good:
            case.expect_slot(number, rin=3, uin=3, clk=3)
        now = layout.tree(case.site)
        case.expect(not any(os.path.basename(n).startswith('pwned') for n in now),
                    'a text reached a shell')
        new = set(now) - set(case.before)
        case.expect(all(n.startswith(('d/h/', 'd/backup/')) or n in ('mail.out', 'companions.out')
                        for n in new), 'files appeared: %s' % sorted(new))
        case.expect(b'`touch' in now.get('mail.out', b''), 'the mail is missing')
        case.next_run()
        case.done()


def megabytes(count):
    mega = 1 << 20
    return [('nothing', b''), ('bars', b'|' * mega * count), ('letters', b'x' * mega * count),
            ('digits', b'|' + b'9' * mega * count), ('zeros', bytes(mega * count)),
            ('line feeds', b'\n' * mega * count), ('blanks', b' ' * mega * count + b'x')]


def texts():
    for name in ('d/sleep', 'd/set', 'd/nm/track', 'd/ds', 'd/se', 'd/proxy', 'd/traffic.set',
                 'd/ip.psv', 'd/agent.rating', 'd/out.set', 'd/out.mod', 'd/caps', 'd/alerts',
                 'd/t/sum', 'l/sys/cron.run', 'd/h/alpha.example.his'):
        for kind, data in megabytes(1 if SHORT else 8):
            if SHORT and kind not in ('nothing', 'bars', 'digits'):
                continue
            case = Case('%s: %s' % (name, kind))
            case.write(name, data)
            began = time.monotonic()
            case.run()
            case.expect(time.monotonic() - began < 20, 'took too long')
            case.expect_stores_whole(name)
            if name == 'd/set':
                case.expect_unchanged('d/set', 'd/t/sum')
                case.expect_event('file d/set is corrupt', '1')
            if name == 'd/alerts':
                case.expect_unchanged('d/alerts')
            if name in ('d/sleep', 'd/nm/track', 'd/se', 'd/caps'):
                case.expect_complete('d/out.lst', name)
            case.done()
    mega = 1 << 20
    for kind, text in (('sum', '1+' * (mega // 2)), ('open', '(' * mega), ('minus', '-' * mega),
                       ('nested', '(' * (mega // 2) + '1' + ')' * (mega // 2)),
                       ('names', 'rin60' * (mega // 5)), ('assignments', 'a=' * (mega // 2)),
                       ('digits', '9' * mega), ('dots', '.' * mega),
                       ('product', '9*' * (mega // 2)),
                       ('bytes', bytes(range(1, 124)).decode('latin-1') * (mega // 123))):
        case = Case('formula of a megabyte: ' + kind)
        case.write('d/out.mod', '|100|100|100|10|20|30|0|0|10|' + text + '|')
        case.run()
        case.expect_complete('d/out.lst', 'd/out.mod', 'd/h/trades.his', 'd/h/all.his')
        found = layout.entries(layout.read(case.site, 'd/out.lst'))
        case.expect(found and len(found) == len(NAMES) + 1, 'the outgoing list is damaged')
        case.done()
    rows = ['|%d|%d|us|\n' % (i * 7919 % 65521 * 65537, i * 7919 % 65521 * 65537 + 999)
            for i in range(20000)]
    for kind, text in (('shuffled', ''.join(rows)), ('backwards', ''.join(sorted(rows)[::-1])),
                       ('turned round', '|99|1|us|\n' * 500),
                       ('all the same', '|1|9|us|\n' * 65535)):
        case = Case('address table ' + kind)
        case.write('d/ip.psv', text)
        case.run()
        for number in range(11, 16):
            case.expect_slot(number, rin=3, uin=3, out=3, clk=3)
        case.done()


def records():
    """Records that are none among good ones: three before and two behind must count."""
    good = [layout.in_record(NAMES[1]) * 3, layout.in_record(NAMES[2]) * 2]
    huge = 'm' * (1 << 20)
    table = [('huge agent', layout.in_record(NAMES[0]).replace('mozilla', huge),
              dict(rin=1, uin=1)),
             ('huge name', layout.in_record(huge), dict(rin=0)),
             ('huge filler', huge + layout.in_record(NAMES[0]), dict(rin=1)),
             ('NUL bytes in the name', layout.in_record(NAMES[0] + '\0'), dict(rin=0)),
             ('NUL bytes as a record', '|'.join(['\0' * 999] * 12) + '|', dict(rin=0)),
             ('NUL bytes before', '\0' * 99 + layout.in_record(NAMES[0]), dict(rin=1, uin=1)),
             ('empty fields', '|' * 12, dict(rin=0)),
             ('control characters', ''.join(map(chr, range(1, 32))) + layout.in_record(NAMES[0]),
              dict(rin=1)),
             ('hostile fields', layout.in_record('$(touch pwned)').replace('mozilla', '../../x'),
              dict(rin=0))]
    for kind, out in (('huge agent', layout.out_record(NAMES[0], 12).replace('mozilla', huge)),
                      ('huge name', layout.out_record(huge, 12)),
                      ('NUL bytes', layout.out_record(NAMES[0] + '\0', '12')),
                      ('huge target', layout.out_record(NAMES[0], '9' * len(huge))),
                      ('hostile target', layout.out_record(NAMES[0], '../../12'))):
        case = Case('click: ' + kind)
        sent = [layout.out_record(NAMES[n], 13) * 2 for n in (1, 2)]
        case.write('l/out/24-135-23-58', sent[0] + out + sent[1])
        case.run()
        case.expect_slot(11, rin=3, clk=0 if kind in ('huge name', 'NUL bytes') else 1)
        case.expect_slot(12, rin=3, clk=2, out='target' not in kind)
        case.expect_slot(13, rin=3, clk=2, out=4)
        case.done()
    for kind, record, counts in table:
        case = Case('record: ' + kind)
        case.write('l/in/24-135-23-58', good[0] + record + good[1])
        case.run()
        case.expect_slot(11, **counts)
        case.expect_slot(12, rin=3, uin=3)
        case.expect_slot(13, rin=2, uin=2, clk=3)  # the clicks stand in the other file
        case.expect_slot(14, rin=0, clk=3)
        case.done()
    for kind, text in (('no bars', huge), ('NUL bytes', '\0' * len(huge)), ('bars', '|' * 12001),
                       ('half a record', layout.in_record(NAMES[0])[:40])):
        case = Case('log of nothing but ' + kind)
        case.write('l/in/24-135-23-58', text)
        case.run()
        case.expect_slot(11, rin=1 if kind == 'half a record' else 0, clk=3)
        case.expect_slot(12, rin=0, out=3, clk=3)
        case.done()
