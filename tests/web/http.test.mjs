// The server's guard, as plain HTTP: who may talk to it, what it serves, what it takes in, and
// that a dialog can neither be doubled nor block the engine for good.
import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import http from 'node:http';
import path from 'node:path';
import { root, startServer } from './server.mjs';

const MAX_UPLOAD = 100000;
let server;
before(async () => {
  server = await startServer(path.join(root, 'examples', 'piano-two-voices.musicxml'),
    ['--dialog-timeout', '2', '--max-upload', String(MAX_UPLOAD)]);
});
after(() => server.stop());

// One raw request (node's http lets a test set Host and Origin as any client could).
function send(target, { method = 'GET', body, headers = {} } = {}) {
  const url = new URL(target, server.origin);
  const defaults = { 'X-Scribo-Token': server.token, 'Content-Type': 'application/json' };
  return new Promise((resolve, reject) => {
    const request = http.request(url, { method, headers: { ...defaults, ...headers } }, (response) => {
      let text = '';
      response.on('data', (chunk) => (text += chunk));
      response.on('end', () => resolve({ status: response.statusCode, text, json: () => JSON.parse(text) }));
    });
    request.on('error', reject);
    request.end(body);
  });
}
const postJson = (target, value, headers) => send(target, { method: 'POST', body: JSON.stringify(value), headers });

test('refuses requests without the token, from other sites or hosts, without JSON, and unknown paths', async () => {
  const cases = [
    ['no token', '/api/state', { headers: { 'X-Scribo-Token': '' } }, 403],
    ['wrong token', '/api/undo', { method: 'POST', body: '{}', headers: { 'X-Scribo-Token': 'f'.repeat(32) } }, 403],
    ['foreign origin', '/api/undo', { method: 'POST', body: '{}', headers: { Origin: 'http://example.com' } }, 403],
    ['foreign host (DNS rebinding)', '/api/state', { headers: { Host: 'example.com' } }, 403],
    ['foreign host for a page file', '/app.js', { headers: { Host: 'example.com' } }, 403],
    ['form body', '/api/undo', { method: 'POST', body: 'x=1', headers: { 'Content-Type': 'application/x-www-form-urlencoded' } }, 415],
    ['body not JSON', '/api/invoke', { method: 'POST', body: '{' }, 400],
    ['unknown path', '/secret.txt', {}, 404],
    ['path traversal', '/../CMakeLists.txt', {}, 404],
    ['encoded traversal', '/%2e%2e/%2e%2e/CMakeLists.txt', {}, 404],
    ['vendor traversal', '/vendor/../../package.json', {}, 404],
  ];
  for (const [name, target, options, status] of cases)
    assert.equal((await send(target, options)).status, status, name);
  const page = await send('/app.js');
  assert.equal(page.status, 200);
  assert.match(page.text, /import/);
});

test('opening a file: too large refused, broken reported with the importer message under its name', async () => {
  const tooLarge = await postJson('/api/open', { name: 'big.musicxml', data: Buffer.alloc(MAX_UPLOAD + 1, 32).toString('base64') });
  assert.equal(tooLarge.status, 413);
  assert.match(tooLarge.json().error, /big\.musicxml is larger than/);
  const broken = await postJson('/api/open', { name: 'broken.musicxml', data: Buffer.from('<score-partwise><part').toString('base64') });
  assert.equal(broken.status, 400);
  assert.match(broken.json().error, /^broken\.musicxml: not well-formed/);
  assert.equal(broken.json().state.name, 'piano-two-voices.musicxml', 'the document stays');
});

test('one dialog at a time, and a dialog left open is cancelled', async () => {
  const selection = { firstMeasure: 1, lastMeasure: 2, firstStaff: 1, lastStaff: 1 };
  const first = await postJson('/api/invoke', { selection });
  assert.equal(first.status, 200);
  assert.equal(first.json().dialog.resource, 20256);
  assert.equal((await postJson('/api/invoke', { selection })).status, 409);
  assert.equal((await postJson('/api/undo', {})).status, 409);
  await new Promise((resolve) => setTimeout(resolve, 2500));
  const state = (await send('/api/state')).json();
  assert.equal(state.dialog, null);
  assert.equal(state.busy, false);
  assert.equal((await postJson('/api/dialog', { action: { kind: 'click', item: 1 } })).status, 409);
  const outside = await postJson('/api/invoke', { selection: { ...selection, lastMeasure: 5 } });
  assert.equal(outside.status, 400, 'a selection beyond the score');
});
