#!/usr/bin/python3
"""Takes the pictures of the README from the page that ./demo.sh --day leaves behind.

  scripts/pictures.py [PAGE [DIRECTORY]]    build/demo/day.html, docs/pictures

Takes chromium, chromium-driver, python3-selenium and pngquant."""
import os, subprocess, sys, time

root = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
sys.path.insert(0, f'{root}/tests')
from browser import Browser

page = os.path.realpath(sys.argv[1] if len(sys.argv) > 1 else f'{root}/build/demo/day.html')
out = os.path.realpath(sys.argv[2] if len(sys.argv) > 2 else f'{root}/docs/pictures')

# Name, size, colours, and what stands at the upper edge.
PICTURES = (('site', 1000, 1060, 'light', '', 'header'),
            ('trades', 1000, 640, 'light', '', '#trades'),
            ('trade', 400, 1000, 'dark', 'busiest', '#trade'))

browser = Browser()
for name, width, height, scheme, fragment, edge in PICTURES:
    browser.size(width, height)
    browser.colours(scheme)
    browser.get('about:blank')
    browser.get(f'file://{page}')
    browser.execute_script('document.getElementById("directory").textContent = "/srv/www/site"')
    if fragment == 'busiest':
        browser.execute_script('document.querySelector("#trades .sortable tbody a").click()')
    time.sleep(1)
    browser.execute_script('''const edge = document.querySelector(arguments[0]);
      scrollTo(0, arguments[0] === 'header' ? 0 : edge.getBoundingClientRect().top + scrollY - 45)''', edge)
    time.sleep(.5)
    path = f'{out}/{name}.png'
    browser.save_screenshot(path)
    subprocess.run(['pngquant', '--force', '--strip', '--speed', '1', '--output', path, '48', path], check=True)
    print(path, os.path.getsize(path), 'bytes')
browser.quit()
