"""A headless browser for pages on disk. Takes chromium, chromium-driver and python3-selenium."""
import tempfile
from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service

ARGUMENTS = ('--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--hide-scrollbars',
             '--disable-background-networking', '--disable-component-update', '--disable-sync',
             '--disable-dev-shm-usage')


class Browser(webdriver.Chrome):
    def __init__(self):
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        options = Options()
        options.binary_location = '/usr/bin/chromium'
        for argument in (*ARGUMENTS, f'--user-data-dir={self.profile.name}'):
            options.add_argument(argument)
        options.set_capability('goog:loggingPrefs', {'browser': 'ALL', 'performance': 'ALL'})
        super().__init__(service=Service('/usr/bin/chromedriver'), options=options)

    def size(self, width, height=900):
        self.execute_cdp_cmd('Emulation.setDeviceMetricsOverride', {
            'width': width, 'height': height, 'deviceScaleFactor': 1, 'mobile': width < 600})

    def colours(self, scheme):
        self.execute_cdp_cmd('Emulation.setEmulatedMedia', {
            'features': [{'name': 'prefers-color-scheme', 'value': scheme}]})
