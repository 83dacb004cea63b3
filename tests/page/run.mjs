// Checks the protocol pages in a headless browser and takes their pictures.
//   node run.mjs COMMAND WORK_FOLDER PICTURE_FOLDER BROWSER

import assert from 'node:assert/strict';
import { mkdirSync, readFileSync, statSync } from 'node:fs';
import { spawnSync } from 'node:child_process';
import { createRequire } from 'node:module';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import puppeteer from 'puppeteer-core';
import { hostileName, makePages } from './pages.mjs';

const [tessary, workFolder, pictureFolder, browserPath] =
  process.argv.slice(2).map((path) => resolve(path));
const here = dirname(fileURLToPath(import.meta.url));
const axeSource = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const pages = makePages(tessary, join(here, '..', '..', 'samples'), workFolder);
mkdirSync(pictureFolder, { recursive: true });

const browser = await puppeteer.launch({
  executablePath: browserPath,
  args: ['--disable-lcd-text', ...(process.getuid() === 0 ? ['--no-sandbox'] : [])],
});

const tests = [];
const test = (name, body) => tests.push({ name, body });

// What a page looks like to somebody: the scheme and the width of the window.
const wide = { scheme: 'light', width: 1000, height: 800 };
const dark = { ...wide, scheme: 'dark' };
const narrow = { ...wide, width: 360 };

// Opens a page, notes all that it says to the console and asks of the network, and fails if that
// was anything.
async function withPage(path, view, body, { scripts = true } = {}) {
  const page = await browser.newPage();
  const complaints = [];
  try {
    await page.setJavaScriptEnabled(scripts);
    await page.setViewport({ width: view.width, height: view.height });
    await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: view.scheme }]);
    page.on('console', (message) => complaints.push(`console: ${message.text()}`));
    page.on('pageerror', (error) => complaints.push(`error: ${error.message}`));
    page.on('dialog', (dialog) => {
      complaints.push(`dialog: ${dialog.message()}`);
      dialog.dismiss();
    });
    const address = pathToFileURL(path).href;
    await page.setRequestInterception(true);
    page.on('request', (request) => {
      if (request.url() === address) return request.continue();
      complaints.push(`request: ${request.url()}`);
      return request.abort();
    });
    await page.goto(address, { waitUntil: 'networkidle0' });
    const result = await body(page);
    assert.deepEqual(complaints, []);
    return result;
  } finally {
    await page.close();
  }
}

// The protocol as the page shows it, in the form of the command's text output.
const shownTree = (page) =>
  page.evaluate(() => {
    const word = { Erfolg: 'OK     ', Fehler: 'FEHLER ', Hinweis: 'Hinweis' };
    const line = (mark) =>
      word[mark.querySelector('.icon').getAttribute('aria-label')] +
      ' ' + mark.querySelector('bdi').textContent;
    return [...document.querySelectorAll('[aria-labelledby=protokoll] .tree > li')].flatMap((report) => [
      line(report.querySelector('.mark')),
      ...[...report.querySelectorAll(':scope li .mark')].map((message) => '        ' + line(message)),
    ]);
  });

// The tree in the command's text output.
const printedTree = (output) =>
  output.split('\n').filter((line) => /^( {8})?(OK     |FEHLER |Hinweis) /.test(line));

const text = (page, selector) => page.$eval(selector, (element) => element.innerText);
const texts = (page, selector) =>
  page.$$eval(selector, (elements) => elements.map((element) => element.innerText.trim()));

for (const [name, { path, output }] of Object.entries(pages)) {
  test(`${name}: the tree is that of the text output`, () =>
    withPage(path, wide, async (page) => {
      const expected = printedTree(output);
      assert.ok(expected.length > 0);
      assert.deepEqual(await shownTree(page), expected);
    }));

  test(`${name}: reads the same without scripts`, async () => {
    const read = (page) => page.evaluate(() => document.body.innerText);
    const plain = await withPage(path, wide, read, { scripts: false });
    assert.equal(plain, await withPage(path, wide, read));
    assert.equal(/<script|<link|<iframe|@import|url\(/i.test(readFileSync(path, 'utf8')), false);
  });

  for (const view of [wide, dark, narrow, { ...narrow, scheme: 'dark' }]) {
    test(`${name}: axe finds nothing, ${view.scheme} at ${view.width}`, () =>
      withPage(path, view, async (page) => {
        await page.evaluate(axeSource);
        const found = await page.evaluate(() => axe.run(document, { resultTypes: ['violations'] }));
        assert.ok(found.passes.length > 10, 'axe has looked at the page');
        assert.ok(found.passes.some((rule) => rule.id === 'color-contrast'));
        assert.ok(found.passes.some((rule) => rule.id === 'region'));
        assert.deepEqual(
          found.violations.map((rule) => `${rule.id}: ${rule.nodes.map((node) => node.html)}`), []);
        const undecided = found.incomplete.filter((rule) => rule.id === 'color-contrast');
        assert.deepEqual(
          undecided.flatMap((rule) => rule.nodes.map((node) => node.html)), [], 'undecided contrast');
      }));
  }

  test(`${name}: fits into 360 pixels`, () =>
    withPage(path, narrow, async (page) => {
      const widths = await page.evaluate(() => ({
        content: document.documentElement.scrollWidth,
        furthest: Math.max(...[...document.body.querySelectorAll('*')]
          .map((element) => element.getBoundingClientRect().right)),
      }));
      assert.ok(widths.content <= 360 && widths.furthest <= 360, JSON.stringify(widths));
    }));
}

test('a successful conversion: counts, no steps', () =>
  withPage(pages.converted.path, wide, async (page) => {
    assert.equal(pages.converted.exitCode, 0);
    assert.equal(await page.title(), 'Berichtskonvertierung – Protokoll');
    assert.equal(await text(page, 'h1'), 'Berichtskonvertierung');
    assert.equal(await text(page, '.outcome'), 'Ohne Fehler abgeschlossen.');
    assert.deepEqual(await texts(page, '.counts dd'), ['6', '0', '132', '14', '5']);
    assert.deepEqual(await texts(page, '.counts dt'),
      ['Berichte in 11 Schritten konvertiert', 'fehlgeschlagen', 'Unterschiede angewendet',
       'Unterschiede ohne Wirkung', 'Dateien übergangen']);
    assert.equal(await page.$('.steps'), null);
  }));

test('a failed conversion: counts, warnings, files, steps', () =>
  withPage(pages.notConverted.path, wide, async (page) => {
    assert.equal(pages.notConverted.exitCode, 1);
    assert.equal(await text(page, '.outcome'), '2 Fehler sind aufgetreten.');
    assert.deepEqual(await texts(page, '.counts dd'), ['5', '2', '106', '11', '1', '4']);
    assert.deepEqual(await texts(page, '.notes bdi'), [
      'Zu --omit Preisliste.lst gibt es keine Datei im Berichtsordner.', 'Angebot alt.lst',
      'Angebot.lst~', 'Liesmich.txt', 'Logo.png', 'Notizen']);
    const folder = workFolder;
    assert.match(await text(page, '.repair p'), /^Aufgrund der fehlerhaften Konvertierung /);
    const steps = await texts(page, '.steps > li');
    assert.equal(steps.length, 5);
    assert.ok(steps[0].includes(`tessary convert-folder ${folder}/Differenzen `), steps[0]);
    assert.ok(steps[1].endsWith(`${folder}/Differenzen`), steps[1]);
    assert.ok(steps[2].endsWith(`${folder}/kunde/Berichte`), steps[2]);
    assert.ok(steps[4].endsWith(`${folder}/kunde/BerichteBak`), steps[4]);
    for (const step of steps) assert.ok(pages.notConverted.output.includes(step.split('\n')[0]));
  }));

test('a failed comparison: its own steps', () =>
  withPage(pages.notCompared.path, wide, async (page) => {
    assert.equal(pages.notCompared.exitCode, 1);
    assert.equal(await text(page, 'h1'), 'Berichtsvergleich');
    assert.equal(await text(page, '.outcome'), 'Ein Fehler ist aufgetreten.');
    const steps = await texts(page, '.steps > li');
    assert.ok(steps.at(-1).includes(`tessary diff ${workFolder}/hersteller/version4/`), steps.at(-1));
  }));

test('a name full of markup is text', () =>
  withPage(pages.hostile.path, wide, async (page) => {
    const shown = hostileName.replace('\u0007', '\uFFFD');
    assert.ok((await texts(page, '.tree bdi')).some((line) => line.includes(shown)));
    assert.equal(await page.$('img'), null);
    assert.equal(/[\u0000-\u0009\u000B-\u001F\u007F-\u009F]/.test(readFileSync(pages.hostile.path, 'utf8')),
      false);
  }));

test('messages fold away by the keyboard and are there at first', () =>
  withPage(pages.notConverted.path, wide, async (page) => {
    const visible = () =>
      page.$eval('.tree details li', (message) => message.checkVisibility());
    assert.equal(await visible(), true);
    await page.keyboard.press('Tab');
    assert.equal(await page.evaluate(() => document.activeElement.tagName), 'SUMMARY');
    await page.keyboard.press('Enter');
    assert.equal(await visible(), false);
    await page.keyboard.press('Enter');
    assert.equal(await visible(), true);
  }));

test('paper shows everything in black on white', () =>
  withPage(pages.notConverted.path, dark, async (page) => {
    await page.emulateMediaType('print');
    const colours = await page.evaluate(() => {
      const style = getComputedStyle(document.body);
      return [style.color, style.backgroundColor];
    });
    assert.deepEqual(colours, ['rgb(0, 0, 0)', 'rgb(255, 255, 255)']);
  }));

const pictures = [
  { name: 'seite-hell', from: pages.notConverted, view: wide },
  { name: 'seite-dunkel', from: pages.notConverted, view: dark },
  { name: 'seite-schmal', from: pages.notConverted, view: narrow },
  { name: 'seite-erfolg', from: pages.converted, view: wide },
  { name: 'seite-vergleich', from: pages.notCompared, view: wide },
  { name: 'seite-druck', from: pages.notConverted, view: { ...wide, width: 794 }, print: true },
];
for (const { name, from, view, print } of pictures) {
  test(`picture ${name}`, () =>
    withPage(from.shown, view, async (page) => {
      if (print) {
        await page.emulateMediaType('print');
        await page.pdf({ path: join(pictureFolder, `${name}.pdf`), format: 'A4' });
      }
      const path = join(pictureFolder, `${name}.png`);
      await page.screenshot({ path, fullPage: true });
      // Documents hold copies of the pictures, so they are kept small; on paper nothing is folded.
      assert.equal(spawnSync('pngquant', ['--force', '--ext', '.png', '64', path]).status, 0);
      const limit = (print ? 600 : 150) * 1024;
      assert.ok(statSync(path).size < limit, `${statSync(path).size} bytes`);
    }));
}

let failed = 0;
for (const { name, body } of tests) {
  try {
    await body();
  } catch (error) {
    failed += 1;
    console.log(`FAILED ${name}\n${error.message}\n`);
  }
}
await browser.close();
console.log(`${tests.length - failed} passed, ${failed} failed`);
process.exitCode = failed === 0 ? 0 : 1;
