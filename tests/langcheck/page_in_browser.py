#!/usr/bin/env python3
"""page_in_browser.py CHROMIUM PDFTOTEXT AXE LANGCHECK LANG TRANSLATIONS [PICTURES]

Shows pages of langcheck in Chromium: those of the sample deployment, whose folder Lang is LANG, and
of a broken one with test translations from the folder TRANSLATIONS. Fails if axe-core, the file
AXE, finds a violation of its rules on any of them, if a page is wider than its window, or if
something is missing on paper. With PICTURES, writes pictures of the pages into that folder."""

import base64
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

WIDTHS = (1400, 768, 375)
SCHEMES = ('light', 'dark')


class Browser:
    """Chromium with one page, controlled over the DevTools protocol."""

    def __init__(self, program, folder):
        # Chromium reads commands from the descriptor 3 and writes answers to 4.
        commands, self.commands = os.pipe()
        self.answers, answers = os.pipe()
        shell = f'exec "$@" 3<&{commands} 4>&{answers}'
        self.process = subprocess.Popen(
            ['/bin/sh', '-c', shell, 'sh', program, '--headless=new', '--no-sandbox',
             '--disable-gpu', '--disable-dev-shm-usage', '--disable-background-networking',
             '--disable-component-update', '--no-first-run', '--hide-scrollbars',
             '--remote-debugging-pipe', f'--user-data-dir={folder}', 'about:blank'],
            pass_fds=(commands, answers), stderr=subprocess.DEVNULL)
        os.close(commands)
        os.close(answers)
        self.buffer = b''
        self.number = 0
        self.session = None
        targets = self.call('Target.getTargets')['targetInfos']
        target = next(target for target in targets if target['type'] == 'page')['targetId']
        self.session = self.call('Target.attachToTarget', targetId=target,
                                 flatten=True)['sessionId']
        self.call('Page.enable')
        self.call('Page.setBypassCSP', enabled=True)  # For the checker's script

    def close(self):
        self.process.terminate()
        self.process.wait()

    def receive(self):
        while b'\0' not in self.buffer:
            part = os.read(self.answers, 1 << 20)
            if not part:
                sys.exit(f'{self.process.args[4]} has ended')
            self.buffer += part
        message, self.buffer = self.buffer.split(b'\0', 1)
        return json.loads(message)

    def call(self, method, **parameters):
        self.number += 1
        message = {'id': self.number, 'method': method, 'params': parameters}
        if self.session:
            message['sessionId'] = self.session
        os.write(self.commands, json.dumps(message).encode() + b'\0')
        while True:
            answer = self.receive()
            if answer.get('id') == self.number:
                if 'error' in answer:
                    sys.exit(f'{method}: {answer["error"]["message"]}')
                return answer['result']

    def load(self, path):
        self.call('Page.navigate', url=path.as_uri())
        while self.receive().get('method') != 'Page.loadEventFired':
            pass

    def evaluate(self, expression):
        result = self.call('Runtime.evaluate', expression=expression, awaitPromise=True,
                           returnByValue=True)
        if 'exceptionDetails' in result:
            sys.exit(f'{expression[:100]}: {result["exceptionDetails"]}')
        return result['result'].get('value')

    def show(self, width, scheme):
        self.call('Emulation.setDeviceMetricsOverride', width=width, height=1000,
                  deviceScaleFactor=1, mobile=False)
        self.call('Emulation.setEmulatedMedia',
                  features=[{'name': 'prefers-color-scheme', 'value': scheme}])

    def picture(self):
        return base64.b64decode(
            self.call('Page.captureScreenshot', captureBeyondViewport=True)['data'])

    def print(self):
        self.call('Emulation.setEmulatedMedia', features=[])
        return base64.b64decode(
            self.call('Page.printToPDF', paperWidth=8.27, paperHeight=11.69)['data'])


def break_deployment(sample, lang, translations):
    """Makes the folder Lang with many mistakes from the sample."""
    shutil.copytree(sample, lang)
    lines = []
    for line in (sample / 'Lang.ini').read_text('utf-16').splitlines():
        key = re.match(r'LANG(\d+)_(\w+)=', line)
        number = int(key[1]) if key else 0
        if key and key[2] == 'NAME' and number % 4 == 0:
            line += ' with a name that is too long for the list <&>'
        elif key and key[2] == 'FOLDER' and number % 5 == 0:
            line += '/' + 'missing' * number
        elif key and key[2] == 'SHOW' and number % 6 == 0:
            line += ' ; shown'
        elif key and key[2] == 'ID':
            line += '0'
        lines.append(line.replace('DEFAULT=2', 'DEFAULT=77'))
    lines += ['lang3_show=1', 'Not a key', 'LANG300_NAME=Three hundred', 'LANG300_FOLDER=en',
              'LANG300_SHOW=1', 'x' * 900, '[Other]', 'LANG5_SHOW=1']
    lines += [f'LANG{number}_COLOUR=red' for number in range(1, 30)]
    (lang / 'Lang.ini').write_text('\n'.join(lines), 'utf-16')
    shutil.copytree(sample / 'pl', lang / 'left over')
    (lang / 'fr/Zendel.qm').unlink()
    (lang / 'de/Zendel.qm').write_bytes((lang / 'de/Zendel.qm').read_bytes()[:100])
    for folder, name in (('en', 'one_text'), ('it', 'long_texts'), ('ar', 'partial')):
        shutil.copy(translations / f'{name}.qm', lang / folder / 'Zendel.qm')


def violations(browser):
    """Returns what axe-core finds on the page."""
    result = json.loads(browser.evaluate(
        'axe.run().then(result => JSON.stringify(result.violations))'))
    return [f'{one["id"]}: {one["help"]}: {node["html"][:150]}'
            for one in result for node in one['nodes'][:3]]


def check_screen(browser, name, width, scheme):
    browser.show(width, scheme)
    failures = violations(browser)
    if browser.evaluate('document.documentElement.scrollWidth') > width:
        failures.append('the page is wider than the window')
    if width == max(WIDTHS) and name == 'sample' and browser.evaluate('''
            [...document.querySelectorAll('.windows')].some(
                windows => new Set([...windows.children].map(one => one.offsetTop)).size > 1)'''):
        failures.append('the pictures of a language aren\'t next to each other')
    return [f'{name}, {width} pixels, {scheme}: {failure}' for failure in failures]


def check_paper(browser, pdftotext, name, folder):
    """The first page has more than the header, and what is folded is open."""
    file = folder / f'{name}.pdf'
    file.write_bytes(browser.print())

    def text(*pages):
        return subprocess.run([pdftotext, *pages, file, '-'], check=True,
                              stdout=subprocess.PIPE).stdout.decode()
    failures = []
    if 'Number' not in text('-l', '1'):
        failures.append('the first printed page ends after the header')
    if 'Fonts used' not in text() or text().count('Change successful!') < 20:
        failures.append('the printed texts of the languages are folded')
    return [f'{name}: {failure}' for failure in failures]


def main():
    program, pdftotext, *paths = sys.argv[1:]
    axe, langcheck, sample, translations = (pathlib.Path(path) for path in paths[:4])
    pictures = pathlib.Path(paths[4]) if len(paths) > 4 else None
    failures = []
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as name:
        folder = pathlib.Path(name)
        break_deployment(sample, folder / 'broken/Lang', translations)
        browser = Browser(program, folder / 'profile')
        for name, deployment in (('sample', sample.parent), ('broken', folder / 'broken')):
            page = folder / f'{name}.html'
            subprocess.run([langcheck, '--html', page, deployment], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, check=False)
            browser.load(page)
            browser.evaluate(axe.read_text('utf-8'))
            for width in WIDTHS:
                for scheme in SCHEMES:
                    failures += check_screen(browser, name, width, scheme)
                    if pictures:
                        file = pictures / f'{name}-{width}-{scheme}.png'
                        file.write_bytes(browser.picture())
            failures += check_paper(browser, pdftotext, name, pictures or folder)
        browser.close()
    print('\n'.join(failures) or 'No failures')
    sys.exit(1 if failures else 0)


main()
