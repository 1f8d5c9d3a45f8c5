// The page in Debian's chromium, as a musician uses it: select measures, run the command, get
// the plug-in's alert for a bad entry, correct it, see tuplets exactly where they belong, undo
// and redo, download a valid file, find the dialog where it was dragged with the last settings,
// open a broken file, switch the plug-in's language.
import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { chromium } from 'playwright-core';
import { root, startServer } from './server.mjs';

const score = path.join(root, 'examples', 'piano-two-voices.musicxml');
const schema = path.resolve(root, '..', 'shared', 'musicxml-4.0', 'musicxml.xsd');
const screenshot = process.env.SCRIBO_SCREENSHOT ?? path.join(os.tmpdir(), 'scribo-web-dialog.png');

// A text of the plug-in's strings table, read from the bundle's resources.
function pluginString(language, key) {
  const table = readFileSync(path.join(root, 'resources', `${language}.lproj`, 'Localizable.strings'), 'utf8');
  return new RegExp(`"${key}"\\s*=\\s*"((?:[^"\\\\]|\\\\.)*)"`).exec(table)[1];
}

let server, browser, page, profile;
before(async () => {
  server = await startServer(score);
  profile = mkdtempSync(path.join(os.tmpdir(), 'scribo-chromium-'));
  browser = await chromium.launchPersistentContext(profile, {
    executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
    headless: true,
    viewport: { width: 1280, height: 800 },
    args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
      '--disable-component-update', '--disable-sync'],
  });
  page = browser.pages()[0] ?? (await browser.newPage());
  page.on('pageerror', (error) => assert.fail(`page error: ${error.message}`));
});
after(async () => {
  await browser?.close();
  await server?.stop();
  if (profile) rmSync(profile, { recursive: true, force: true });
});

const rendered = (revision) => page.waitForSelector(`body[data-rendered="${revision}"]`, { timeout: 60000 });
const item = (id) => page.locator(`#dialog-layer [data-item="${id}"]`);
const alertText = async () => (await page.waitForSelector('#alert-layer:not([hidden]) p')).textContent();

// Notes and tuplets of every measure x staff as rendered, keyed "measure/staff" in score order.
const cells = () => page.evaluate(() => Object.fromEntries([...document.querySelectorAll('#score g.measure')]
  .flatMap((m) => [...m.querySelectorAll(':scope > g.staff')].map((s) => [`${m.dataset.index}/${s.dataset.n}`,
    { notes: s.querySelectorAll('g.note').length, tuplets: s.querySelectorAll('g.tuplet').length }]))));

async function clickStaff(measure, staff, withShift = false) {
  const box = await page.locator('#score g.measure').nth(measure - 1).locator(`g.staff[data-n="${staff}"]`).boundingBox();
  if (withShift) await page.keyboard.down('Shift');
  await page.mouse.click(box.x + box.width / 2, box.y + box.height / 2);
  if (withShift) await page.keyboard.up('Shift');
}

async function openDialog() {
  await page.click('#command');
  await page.waitForSelector('#dialog-layer:not([hidden])');
  return page.locator('#dialog-layer .dialog').boundingBox();
}

let before_, after_;
test('a rejected entry, its correction, and tuplets in the selected measures only', async () => {
  await page.goto(server.url);
  await rendered(1);
  before_ = await cells();
  await clickStaff(2, 1);
  await clickStaff(4, 1, true);
  assert.equal(await page.textContent('#selection'), 'measures 2–4, staff 1');
  assert.equal(await page.textContent('#command'), pluginString('en', '20000,1'));

  await openDialog();
  await item(13).locator('input').click();
  await item(14).fill('1');
  await item(1).click();
  assert.equal(await alertText(), pluginString('en', '20128,4'));
  await page.click('#alert-layer button');
  await page.waitForFunction(() => document.activeElement?.dataset.item === '14');
  await item(14).fill('5');
  await item(1).click();
  await rendered(2);

  after_ = await cells();
  assert.deepEqual(Object.keys(after_), Object.keys(before_));
  for (const [cell, was] of Object.entries(before_)) {
    const [measure, staff] = cell.split('/').map(Number);
    if (measure >= 2 && staff === 1) {
      assert.ok(after_[cell].tuplets > 0, `tuplets in ${cell}`);
      assert.equal(after_[cell].notes, 5 * was.notes, `every note of ${cell} in five`);
    } else assert.deepEqual(after_[cell], was, `${cell} unchanged`);
  }
  assert.match(await page.textContent('#status'), /entries subdivided in 3 measures; \d+ tuplets made/);
});

test('the download validates against the schema; undo and redo step through the command', async () => {
  const [download] = await Promise.all([page.waitForEvent('download'), page.click('#download-xml')]);
  const file = await download.path();
  execFileSync('xmllint', ['--noout', '--nonet', '--schema', schema, file], { stdio: 'pipe' });
  assert.match(readFileSync(file, 'utf8'), /<time-modification>/);
  await page.click('#undo');
  await rendered(3);
  assert.deepEqual(await cells(), before_);
  await page.click('#redo');
  await rendered(4);
  assert.deepEqual(await cells(), after_);
});

test('the dialog reopens where it was dragged, with the last settings', async () => {
  const opened = await openDialog();
  await page.mouse.move(opened.x + 60, opened.y + 12);
  await page.mouse.down();
  await page.mouse.move(opened.x + 430, opened.y + 52, { steps: 5 });
  await page.mouse.up();
  const dragged = await page.locator('#dialog-layer .dialog').boundingBox();
  await item(2).click();
  await page.waitForSelector('#dialog-layer', { state: 'hidden' });
  assert.equal(await page.textContent('#status'), 'Cancelled; nothing changed.');

  const reopened = await openDialog();
  assert.ok(Math.abs(reopened.x - dragged.x) <= 1 && Math.abs(reopened.y - dragged.y) <= 1,
    `reopened at ${reopened.x},${reopened.y}, dragged to ${dragged.x},${dragged.y}`);
  assert.ok(Math.abs(dragged.x - (opened.x + 370)) <= 1 && Math.abs(dragged.y - (opened.y + 40)) <= 1);
  assert.equal(await item(14).inputValue(), '5');
  assert.ok(await item(13).locator('input').isChecked());
  await page.screenshot({ path: screenshot });
  await page.keyboard.press('Escape');
  await page.waitForSelector('#dialog-layer', { state: 'hidden' });
});

test('a broken file is reported by the importer; the language choice gives the German texts', async () => {
  await page.setInputFiles('#file', { name: 'broken.musicxml', mimeType: 'application/xml', buffer: Buffer.from('<score-partwise>') });
  assert.match(await alertText(), /^broken\.musicxml: not well-formed/);
  await page.click('#alert-layer button');
  await page.selectOption('#language', 'de');
  await page.waitForFunction((text) => document.querySelector('#command').textContent === text, pluginString('de', '20000,1'));
  await openDialog();
  assert.equal(await page.textContent('#dialog-title'), pluginString('de', '20256,0'));
});
