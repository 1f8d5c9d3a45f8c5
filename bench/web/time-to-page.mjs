// How long `scribo-host serve SCORE` takes until the page shows the score in Debian's chromium,
// and how much memory the server holds. Not a test: run it by hand on a large score, e.g.
//   python3 ../shared/bench/gen-score.py 20 100 > /tmp/big.musicxml
//   node bench/web/time-to-page.mjs /tmp/big.musicxml
import { readFileSync } from 'node:fs';
import { chromium } from 'playwright-core';
import { startServer } from '../../tests/web/server.mjs';

const score = process.argv[2];
if (!score) throw new Error('usage: node bench/web/time-to-page.mjs SCORE.musicxml');
const memory = (pid) => Object.fromEntries(readFileSync(`/proc/${pid}/status`, 'utf8').split('\n')
  .filter((line) => /^Vm(RSS|HWM):/.test(line)).map((line) => line.split(/:\s+/)));

const start = performance.now();
const server = await startServer(score);
const listening = performance.now();
const browser = await chromium.launch({
  executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
  args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
    '--disable-component-update', '--disable-sync'],
});
const page = await browser.newPage({ viewport: { width: 1280, height: 800 } });
// Times taken inside the page, where a busy main thread cannot delay them.
await page.addInitScript(() => new MutationObserver((changes, observer) => {
  if (!document.querySelector('#score .page')) return;
  window.firstPageAt = performance.now();
  observer.disconnect();
}).observe(document, { childList: true, subtree: true }));
const opened = performance.now();
await page.goto(server.url);
await page.waitForSelector('body[data-rendered]', { timeout: 600000 });
const shown = await page.evaluate(() => ({ first: window.firstPageAt, all: performance.now(), origin: performance.timeOrigin }));
const navigation = shown.origin - performance.timeOrigin;
const pages = await page.locator('#score .page').count();
const ms = (t) => `${Math.round(t - start)} ms`;
console.log(`server listening (score imported, engine loaded): ${ms(listening)}; browser started: ${ms(opened)}`);
console.log(`first page shown: ${ms(navigation + shown.first)}; all ${pages} pages: ${ms(navigation + shown.all)}`);
console.log('server memory:', memory(server.pid));
await browser.close();
await server.stop();
