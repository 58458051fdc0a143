#!/usr/bin/python3
"""The page of "vantrel-inspect report" in a real browser: no error, no request, the figures of
--json, sorting, a trade's own page, hostile names, dark and narrow screens, thousands of trades.

  tests/page_test.py BUILD_DIRECTORY

Takes chromium, chromium-driver and python3-selenium."""
import json, os, re, shutil, subprocess, sys, tempfile
from browser import Browser
from selenium.common.exceptions import TimeoutException
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

build = os.path.realpath(sys.argv[1])
work = tempfile.TemporaryDirectory()
failures = checks = 0

HOSTILE = [b'<script>hacked=1</script>', b'</script><img src=x onerror=hacked=1>', b'"\'><svg onload=hacked=1>',
           b'<!--<script>', 'evil\u202etxt.exe\u2066'.encode(), 'line\u2028two\u2029three'.encode(),
           b'bad\xff\xfe\xc3bytes\x01\x1b[31m', b'__proto__', b'&lt;b&gt;&amp;', b'w' * 75, b'']


def expect(what, got, wanted=True):
    global failures, checks
    checks += 1
    if got != wanted:
        failures += 1
        print(f'FAIL {what}: {str(got)[:300]}, not {str(wanted)[:300]}')


def run(program, *arguments, status=(0,)):
    done = subprocess.run([f'{build}/{program}', *map(str, arguments)], capture_output=True)
    expect(f'{program} {arguments}: {done.stderr}', done.returncode in status)
    return done.stdout


def make_site(name, *options):
    site = f'{work.name}/{name}'
    run('vantrel-sample-site', site, *options)
    return site


def view(site, *command):
    return json.loads(run('vantrel-inspect', '--site', site, '--json', *command, status=(0, 1)))['data']


def make_page(site):
    page = site + '.html'
    run('vantrel-inspect', '--site', site, 'report', '-o', page)
    return page


def hostile_site():
    site = make_site('hostile', '--trades', 40, '--days', 20, '--ranges', 100)
    subprocess.run([f'{build}/vantrel-cron'], cwd=site, stdout=subprocess.DEVNULL)
    for path, size, head, name in ((f'{site}/d/t/index', 996, 20 * 996, 4), (f'{site}/d/out.lst', 216, 284, 8)):
        with open(path, 'r+b') as file:
            for i, text in enumerate(HOSTILE):
                width = 76 if size == 996 else 50
                file.seek(head + i * size + name)
                file.write(text[:width - 1].ljust(width, b'\0'))
    with open(f'{site}/l/sys/sys.log', 'ab') as log:
        for text in HOSTILE:
            log.write(b'|202611161247|cron|1|' + text + b'|0||||\n|202611161248|' + text + b'|7|x|0||||\n')
    return site


def js(text, *arguments):
    return browser.execute_script('return ' + text, *arguments)


def soon(text, *arguments):
    """Does it become true?"""
    try:
        return WebDriverWait(browser, 20).until(lambda _: js(text, *arguments))
    except TimeoutException:
        return False


def open_page(page, fragment=''):
    browser.get('about:blank')
    browser.get(f'file://{page}{fragment}')


def quiet(what):
    """Nothing in the console, and nothing but the page itself was asked for."""
    expect(f'{what}: console', browser.get_log('browser'), [])
    asked = [message['params']['request']['url'] for message in
             (json.loads(entry['message'])['message'] for entry in browser.get_log('performance'))
             if message['method'] == 'Network.requestWillBeSent']
    expect(f'{what}: requests', [url for url in asked if not url.startswith((f'file://{work.name}/', 'chrome', 'data:'))], [])


def texts(selector):
    return js('[...document.querySelectorAll(arguments[0])].map(e => e.textContent)', selector)


def plain(number):
    return re.sub(r'[,\u202f%]', '', number)


def drawn(rows):
    return [{key: row[key] for key in (next(iter(row)), 'rin', 'uin', 'out', 'clk')} for row in rows]


def alike(a, b):
    """Equal, but for the fractions, which stand in the page with four decimals."""
    if isinstance(a, dict) and isinstance(b, dict):
        return a.keys() == b.keys() and all(alike(a[key], b[key]) for key in a)
    if isinstance(a, list) and isinstance(b, list):
        return len(a) == len(b) and all(map(alike, a, b))
    return a == b or isinstance(b, float) and abs(a - b) < 6e-5


def same_figures(site, what):
    for command in (('site',), ('list',), ('trades',), ('events', '1000'), ('runs',)):
        shown, wanted = js('report.view(arguments[0])', command[0]), view(site, *command)
        for figures in shown, wanted:
            figures.pop('age_seconds', None)
            figures.pop('stale', None)
        expect(f'{what}: {command[0]}', shown, wanted)
    findings = view(site, 'check')['findings']
    expect(f'{what}: check', js('report.view("check").findings.map(one => one.subject)'),
           [one['subject'] for one in findings])
    for position, trade in enumerate(view(site, 'trades')['trades']):
        wanted = view(site, 'trade', trade['id'])
        for rows in ('hours', 'days'):
            wanted[rows] = drawn(wanted[rows])
        shown = js('report.tradeView(arguments[0])', position)
        expect(f'{what}: words of trade {position}', len(shown.pop('words')) > 5)
        expect(f'{what}: trade {position}', shown, {key: wanted[key] for key in shown})
        shown, wanted = js('report.whyView(arguments[0])', position), view(site, 'why', trade['id'])
        expect(f'{what}: why of trade {position}: {shown}, not {wanted}', alike(shown, wanted))


def sorts(site, title, key):
    column = next(head for head in browser.find_elements(By.CSS_SELECTOR, '#trades .sortable th button')
                  if head.text.startswith(title))
    column.send_keys(Keys.ENTER)
    shown = [int(plain(text)) for text in texts(f'#trades .sortable td:nth-child({2 + ["In", "Unique", "Out"].index(title)})')]
    expect(f'sorted by {title}', shown,
           [t[key] for t in view(site, 'trades', '--sort', key)['trades'] if t['collects'] == ''])


def opens_trade(site):
    link = browser.find_element(By.CSS_SELECTOR, '#trades .sortable tbody a')
    position = int(link.get_attribute('href').split('=')[1])
    link.send_keys(Keys.ENTER)
    browser.implicitly_wait(5)
    browser.find_element(By.CSS_SELECTOR, '#trade h2')
    trade = view(site, 'trade', view(site, 'trades')['trades'][position]['id'])
    for window, column in (('last60', 2), ('last24', 3), ('last07', 4)):
        shown = [int(plain(text)) for text in texts(f'#trade-counters tbody tr > :nth-child({column})')]
        expect(f'counters of {window}', shown, list(trade[window].values()))
    shown = [[int(plain(text)) for text in texts(f'#trade-day tbody td:nth-child({i})')] for i in (2, 3, 4, 5)]
    expect('its day', shown, [[row[key] for row in trade['hours']] for key in ('rin', 'uin', 'out', 'clk')])
    expect('its charts are painted', soon('''[...document.querySelectorAll('#trade figure')].every(figure => {
        const {width, height} = figure.querySelector('canvas');
        return figure.querySelector('canvas').getContext('2d').getImageData(0, 0, width, height).data.some(byte => byte > 0);
    })'''))
    browser.switch_to.active_element.send_keys(Keys.ESCAPE)
    browser.find_element(By.CSS_SELECTOR, '#overview:not([hidden])')


def is_safe(what):
    expect(f'{what}: nothing of the site became markup',
           js('[typeof hacked, document.images.length, document.scripts.length, document.querySelectorAll("[onload], [onerror]").length]'),
           ['undefined', 0, 3, 0])
    shown = js('document.body.innerText')
    expect(f'{what}: no character that turns the text', re.search('[\u202a-\u202e\u2066-\u2069\u2028\u0001\u001b]', shown), None)


def fits(what):
    for pixels in (320, 1200):
        browser.size(pixels)
        # Charts follow the width in their own time.
        if not soon('document.documentElement.scrollWidth <= arguments[0]', pixels):
            expect(f'{what}: wider than {pixels}', js('''[...document.querySelectorAll('body *')].filter(e =>
              !e.closest('.scroll') && e.getBoundingClientRect().right > arguments[0]).map(e => e.outerHTML.slice(0, 80))''', pixels))


def luminance():
    return sum(map(int, re.findall(r'\d+', js('getComputedStyle(document.body).backgroundColor'))[:3])) / 3


site = hostile_site()
page = make_page(site)
browser = Browser()
browser.size(1200)
open_page(page)
same_figures(site, 'hostile names')
is_safe('overview')
expect('names as they are', '<script>hacked=1</script>' in texts('#trades tbody th'))
expect('worst payers and newcomers', [len(texts(f'#trades .card:nth-child({i}) li')) for i in (1, 2)], [8, 8])
for title, key in (('Out', 'out24'), ('Unique', 'uniq24'), ('In', 'in24')):
    sorts(site, title, key)
opens_trade(site)
for position in range(20, 20 + len(HOSTILE)):
    open_page(page, f'#trade={position}')
    is_safe(f'trade {position}')
fits('trade')
open_page(page)
fits('overview')
browser.colours('light')
expect('light', luminance() > 200)
browser.colours('dark')
expect('dark', luminance() < 60)
quiet('hostile names')
js('document.body.append(Object.assign(document.createElement("script"), {textContent: "hacked = 1"}))')
expect('the policy lets no other script run', js('typeof hacked'), 'undefined')
browser.get_log('browser')

for lost in ('d/out.lst', 'd/t/index', 'd/t/sum', 'l/sys/cron.run', 'd/h/all.his'):
    path = f'{site}/{lost}'
    os.rename(path, path + '.away')
    open_page(make_page(site))
    expect(f'without {lost}: all sections', len(texts('main > section')), len(texts('nav a')))
    os.rename(path + '.away', path)
quiet('missing files')

for trades, seconds, megabytes in ((5000, 2, 5), (10000, 6, 10)):
    site = make_site(f'of-{trades}', '--trades', trades, '--hits', 20000, '--minutes', 2, '--ranges', 100)
    page = make_page(site)
    size = os.path.getsize(page) / 1e6
    expect(f'{trades} trades: {size:.1f} MB', size < megabytes)
    open_page(page)
    took = soon('report.usableAfter') / 1000
    expect(f'{trades} trades: usable after {took:.2f} s', took < seconds)
    print(f'{trades} trades: {size:.2f} MB, usable after {took:.2f} s')
    browser.find_element(By.CSS_SELECTOR, '#trades input[type=search]').send_keys(f'site{trades}.')
    expect('filtered', texts('#trades .sortable tbody th'), [f'site{trades}.example'])
    quiet(f'{trades} trades')
    shutil.rmtree(site)

browser.quit()
print(f'{checks - failures} passed, {failures} failed')
sys.exit(failures != 0)
