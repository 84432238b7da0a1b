// The package in a browser page under a strict Content-Security-Policy:
// no 'unsafe-eval' (only 'wasm-unsafe-eval', which compiling WebAssembly
// needs), no connection anywhere. Headless Chromium loads the page from a
// server on the loopback address; the page hands its outcome back by
// importing a script whose address holds it (scripts from the page's own
// origin are all the policy allows).

import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { createServer } from 'node:http';
import { tmpdir } from 'node:os';
import { join, normalize } from 'node:path';
import { test } from 'node:test';

import { packageDir } from './support.mjs';

const chromium = process.env.CHROMIUM ?? '/usr/bin/chromium';
const kPolicy =
  "default-src 'none'; script-src 'self' 'wasm-unsafe-eval'; connect-src 'none'; base-uri 'none'";

const page = `<!doctype html><meta charset="utf-8"><title>pqutils-wasm</title>
<script type="module" src="/page.js"></script>`;

// Runs in the page: uses the package, tries eval, and hands the outcome back.
const pageScript = `
const blocked = [];
document.addEventListener('securitypolicyviolation', (event) => blocked.push(event.blockedURI));
let evalRan = true;
try { eval('1'); } catch { evalRan = false; }
let outcome;
try {
  const pq = await import('/pkg/index.js');
  const text = pq.renderOrder('log', { a: 'x=y' });
  outcome = { text, value: pq.parseOrder(text).pieces[1].value, card: pq.checkCard('4111111111111111').brand };
} catch (error) {
  outcome = { error: String(error) };
}
await new Promise((resolve) => setTimeout(resolve, 100));
await import('/done.js?' + encodeURIComponent(JSON.stringify({ evalRan, blocked, ...outcome })));
`;

// Serves the page and the package; `outcome` settles with what the page
// hands back.
function serve() {
  let settle;
  const outcome = new Promise((resolve) => (settle = resolve));
  const server = createServer((request, response) => {
    const headers = { 'Content-Security-Policy': kPolicy };
    const script = (body) => response.writeHead(200, { ...headers, 'Content-Type': 'text/javascript' }).end(body);
    if (request.url === '/') {
      response.writeHead(200, { ...headers, 'Content-Type': 'text/html' }).end(page);
    } else if (request.url === '/page.js') {
      script(pageScript);
    } else if (request.url.startsWith('/done.js?')) {
      script('');
      settle(JSON.parse(decodeURIComponent(request.url.slice('/done.js?'.length))));
    } else if (request.url.startsWith('/pkg/')) {
      const file = normalize(join(packageDir, request.url.slice('/pkg/'.length)));
      if (file.startsWith(packageDir) && existsSync(file)) {
        script(readFileSync(file));
      } else {
        response.writeHead(404).end();
      }
    } else {
      response.writeHead(404).end();
    }
  });
  return new Promise((resolve) => server.listen(0, '127.0.0.1', () => resolve({ server, outcome })));
}

// Starts the browser on `url`; it runs until its group is killed.
function browse(url, profile) {
  const args = [
    '--headless', '--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-quic',
    '--disable-background-networking', '--disable-component-update', '--disable-sync',
    `--user-data-dir=${profile}`, url,
  ];
  // A group of its own, so that its helper processes end with it.
  return spawn(chromium, args, { stdio: 'ignore', detached: true });
}

const kTimeoutMs = 120000;

test('the package works in Chromium under a policy without unsafe-eval', { skip: !existsSync(chromium) && `no ${chromium}` }, async (t) => {
  const { server, outcome } = await serve();
  const profile = mkdtempSync(join(tmpdir(), 'pqutils-chromium-'));
  const browser = browse(`http://127.0.0.1:${server.address().port}/`, profile);
  let timer;
  const exited = new Promise((resolve) => browser.on('close', resolve));
  t.after(async () => {
    clearTimeout(timer);
    process.kill(-browser.pid, 'SIGKILL');
    await exited;
    server.close();
    rmSync(profile, { recursive: true, force: true, maxRetries: 10, retryDelay: 100 });
  });
  const timeout = new Promise((_, reject) => {
    timer = setTimeout(() => reject(new Error('the page handed nothing back')), kTimeoutMs);
  });
  assert.deepEqual(await Promise.race([outcome, timeout]), {
    evalRan: false,
    blocked: ['eval'],
    text: 'action=log&a=x--equ--y&//',
    value: 'x=y',
    card: 'PAYMENT_TYPE_VISA',
  });
});
