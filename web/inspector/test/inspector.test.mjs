// The inspector page in headless Chromium (Debian's, driven by
// puppeteer-core), opened from disk as a user would open it. Each test
// checks that the page made no request beyond its own files and wrote
// nothing to the console (a policy violation would show there). Expected
// answers come from the native pqorder and from the order text vectors.
// Screenshots of the views go to build/inspector-screenshots/.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { dirname, extname, join, normalize } from 'node:path';
import { after, afterEach, before, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';

import puppeteer from 'puppeteer-core';

import * as pq from '../../../bindings/js/index.js';
import { readOrderVectors, seededRandom } from '../../../bindings/js/test/support.mjs';

const pageDir = join(dirname(fileURLToPath(import.meta.url)), '..');
const repoRoot = join(pageDir, '..', '..');
const pageUrl = pathToFileURL(join(pageDir, 'index.html')).href;
const pageFiles = pathToFileURL(pageDir).href + '/';
const shots = join(repoRoot, 'build', 'inspector-screenshots');
const scratch = join(repoRoot, 'build', 'inspector-test');
const chromium = process.env.CHROMIUM ?? '/usr/bin/chromium';
const pqorderPath =
  process.env.PQORDER ??
  [join(repoRoot, 'build', 'release', 'tools', 'pqorder', 'pqorder'), join(repoRoot, 'build', 'tool', 'tools', 'pqorder', 'pqorder')].find(existsSync);

if (!existsSync(join(pageDir, 'lib', 'pqutils.js'))) {
  throw new Error('no web/inspector/lib/: build the package first (cmake --preset wasm && cmake --build --preset wasm)');
}
if (pqorderPath === undefined || !existsSync(pqorderPath)) {
  throw new Error('no native pqorder: build it (cmake --preset release && cmake --build --preset release) or name it with PQORDER');
}

function pqorder(args, input = '') {
  const run = spawnSync(pqorderPath, args, { input });
  assert.equal(run.error, undefined);
  return run.stdout.toString();
}

const utf8 = new TextEncoder();
const kDecodeTimeoutMs = 60000;

let browser;
let page;
let seen;
let ownFiles; // the address every request of the page must start with

before(async () => {
  mkdirSync(shots, { recursive: true });
  mkdirSync(scratch, { recursive: true });
  browser = await puppeteer.launch({
    executablePath: chromium,
    headless: true,
    args: ['--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
});

after(async () => {
  await browser?.close();
});

// A fresh page for each test, every request and console message noted.
async function openPage(url = pageUrl, files = pageFiles) {
  ownFiles = files;
  page = await browser.newPage();
  await page.setViewport({ width: 1100, height: 800 });
  seen = { requests: [], console: [] };
  page.on('request', (request) => seen.requests.push(request.url()));
  page.on('console', (message) => seen.console.push(`${message.type()}: ${message.text()}`));
  page.on('pageerror', (error) => seen.console.push(`page error: ${error.message}`));
  await page.evaluateOnNewDocument(() => {
    window.policyViolations = [];
    document.addEventListener('securitypolicyviolation', (event) => window.policyViolations.push(event.violatedDirective));
  });
  await page.goto(url);
  await page.waitForSelector('body[data-ready="true"]', { timeout: 20000 });
}

afterEach(async () => {
  if (page === undefined) {
    return;
  }
  const violations = await page.evaluate(() => window.policyViolations);
  await page.close();
  page = undefined;
  assert.deepEqual(violations, [], 'policy violations');
  assert.deepEqual(seen.console, [], 'console messages');
  const foreign = seen.requests.filter((url) => !url.startsWith(ownFiles) && !url.startsWith('blob:'));
  assert.deepEqual(foreign, [], 'requests beyond the page files');
});

const shoot = (name) => page.screenshot({ path: join(shots, `${name}.png`), fullPage: false });

// Hands text to the page as a paste does, and waits for its decoding.
async function paste(text) {
  await page.evaluate((value) => {
    document.getElementById('decode-status').removeAttribute('data-orders');
    const input = document.getElementById('order-input');
    input.value = value;
    input.dispatchEvent(new Event('input', { bubbles: true }));
  }, text);
  await page.waitForSelector('#decode-status[data-orders]', { timeout: kDecodeTimeoutMs });
}

// The bytes shown in an element: text as UTF-8, marked escapes as bytes.
const kEscapes = { '\\t': 9, '\\n': 10, '\\r': 13 };
function bytesOfSegments(segments) {
  const out = [];
  for (const { kind, text } of segments) {
    if (kind === 'text') {
      out.push(...utf8.encode(text));
    } else {
      out.push(kEscapes[text] ?? parseInt(text.slice(2), 16));
    }
  }
  return Uint8Array.from(out);
}

// The pieces table as rows of segments, read in the page.
function readPiecesTable() {
  return page.$$eval('#pieces-rows tr', (rows) => {
    const segments = (element) =>
      [...element.childNodes].map((node) =>
        node.nodeType === Node.TEXT_NODE ? { kind: 'text', text: node.textContent } : { kind: node.className, text: node.textContent },
      );
    return rows.map((row) => {
      const cells = [...row.cells];
      if (row.classList.contains('dropped')) {
        return {
          index: Number(cells[0].textContent),
          reason: cells[1].querySelector('.dropped-mark').textContent.replace(/^dropped: /, ''),
          element: segments(cells[1].querySelector('.element')),
        };
      }
      return { index: Number(cells[0].textContent), key: segments(cells[1]), value: segments(cells[2]), raw: segments(cells[3]) };
    });
  });
}

const nativeActions = new Map(
  pqorder(['actions'])
    .trim()
    .split('\n')
    .map((line) => line.split('\t'))
    .map(([value, name]) => [name, value]),
);

test('the order text vectors: action, pieces, raw values and drops as the readers give them', async () => {
  await openPage();
  const decoder = new TextDecoder('utf-8', { fatal: true });
  for (const vector of readOrderVectors()) {
    await paste(decoder.decode(vector.text));
    const rows = await readPiecesTable();
    const action = await page.$eval('#order-action', (element) => ({ ...element.dataset }));
    assert.deepEqual(action, { action: vector.action, value: nativeActions.get(vector.action) }, vector.name);

    const decoded = pq.parseOrder(vector.text);
    const raw = pq.parseOrder(vector.text, { removeEntities: false });
    const pieces = rows.filter((row) => row.key !== undefined);
    const dropped = rows.filter((row) => row.key === undefined);
    assert.deepEqual(
      pieces.map((row) => [bytesOfSegments(row.key), bytesOfSegments(row.value), bytesOfSegments(row.raw)]),
      decoded.pieces.slice(1).map((piece, i) => [piece.key, piece.value, raw.pieces[i + 1].value]),
      vector.name,
    );
    assert.deepEqual(
      dropped.map((row) => ({ index: row.index, element: bytesOfSegments(row.element), reason: row.reason })),
      decoded.dropped,
      vector.name,
    );
    if (vector.oneway === '') {
      // What the writer was given comes back, as the vector says.
      assert.deepEqual(
        pieces.map((row) => [bytesOfSegments(row.key), bytesOfSegments(row.value)]),
        vector.pieces,
        vector.name,
      );
    }
  }
  // Control bytes, a byte that is not UTF-8 and a dropped element, marked.
  await paste('action=askLogin&url=https:--dbsl--a.example/?x--equ--1--amp--y--equ--2&text=tab\there&\u0000=b&junk&//');
  assert.deepEqual(await page.$$eval('#pieces-rows .ctl', (marks) => marks.map((mark) => mark.textContent)), ['\\t', '\\t', '\\x00']);
  assert.equal(await page.$eval('#pieces-rows tr.dropped .dropped-mark', (mark) => mark.textContent), 'dropped: not key=value');
  await page.evaluate(() => document.activeElement.blur());
  await shoot('decode');
});

test('bytes that are not UTF-8 are shown as escapes, the rest as text', async () => {
  await openPage();
  const file = join(scratch, 'bytes.txt');
  // A lone continuation byte, a cut sequence, an overlong form, a surrogate,
  // and well-formed characters of each length.
  const bytes = new Uint8Array([...Buffer.from('action=log&v=', 'latin1'), 0x80, 0x61, 0xc3, 0x62, 0xc0, 0xaf, 0x63, 0xed, 0xa0, 0x80, 0x64, ...utf8.encode('é€😀'), ...Buffer.from('&//')]);
  writeFileSync(file, bytes);
  const input = await page.$('#file-input');
  await page.evaluate(() => document.getElementById('decode-status').removeAttribute('data-orders'));
  await input.uploadFile(file);
  await page.waitForSelector('#decode-status[data-orders]', { timeout: kDecodeTimeoutMs });
  const [row] = await readPiecesTable();
  assert.deepEqual(row.value, [
    { kind: 'bad', text: '\\x80' },
    { kind: 'text', text: 'a' },
    { kind: 'bad', text: '\\xc3' },
    { kind: 'text', text: 'b' },
    { kind: 'bad', text: '\\xc0' },
    { kind: 'bad', text: '\\xaf' },
    { kind: 'text', text: 'c' },
    { kind: 'bad', text: '\\xed' },
    { kind: 'bad', text: '\\xa0' },
    { kind: 'bad', text: '\\x80' },
    { kind: 'text', text: 'dé€😀' },
  ]);
  assert.deepEqual(bytesOfSegments(row.value), bytes.subarray(13, bytes.length - 3));
});

test('a JSON order: its content as a tree that opens level by level', async () => {
  await openPage();
  const content = { user: { name: 'Ada "A"', tags: ['x', 'y&z//', 'tab\there'], admin: true, id: 7, manager: null } };
  await paste(pq.renderJsonOrder('vordaApplicationResponse', content));
  const visible = (text) =>
    page.$$eval('#json-tree .json-string', (leaves, wanted) => leaves.some((leaf) => leaf.textContent === wanted && leaf.checkVisibility()), text);
  assert.equal(await visible('"Ada \\"A\\""'), false, 'nested members start closed');
  await page.click('#json-tree details details > summary');
  assert.equal(await visible('"Ada \\"A\\""'), true);
  assert.equal(await visible('"y&z//"'), false);
  await page.click('#json-tree details details details > summary');
  assert.equal(await visible('"y&z//"'), true);
  // The whole tree, read back.
  const tree = await page.$eval('#json-tree > ul > li', (root) => {
    const read = (item) => {
      const details = item.querySelector(':scope > details');
      if (details === null) {
        const leaf = item.querySelector(':scope > span:not(.json-key)');
        return JSON.parse(leaf.textContent);
      }
      const isArray = details.querySelector(':scope > summary > .json-size').textContent.startsWith('[');
      const members = [...details.querySelectorAll(':scope > ul > li')].map((child) => [
        child.querySelector('.json-key').textContent.replace(/: $/, ''),
        read(child),
      ]);
      return isArray ? members.map(([, value]) => value) : Object.fromEntries(members);
    };
    return read(root);
  });
  assert.deepEqual(tree, content);
  await shoot('json');
});

// A log: most lines an order after a time stamp, some lines without one,
// and now and then an element that the reader drops.
function makeLog(orders) {
  const random = seededRandom('inspector log');
  const actions = pq.actions();
  const letters = 'abcdefghijklmnopqrstuvwxyz0123456789 =&/-';
  const text = (length) => Array.from({ length }, () => random.pick(letters)).join('');
  const lines = [];
  const expected = [];
  let skipped = 0;
  while (expected.length < orders) {
    if (random.below(30) === 0) {
      lines.push(random.below(2) === 0 ? '' : `# ${text(40)}`);
      ++skipped;
      continue;
    }
    const action = random.pick(actions).name;
    const pieces = [['n', String(expected.length)], ['payload', text(180 + random.below(120))]];
    let order = pq.renderOrder(action, pieces);
    const dropped = random.below(50) === 0;
    if (dropped) {
      order = order.replace('&//', '&junk&//');
    }
    lines.push(`2026-11-25T12:00:00.${String(expected.length % 1000).padStart(3, '0')}Z ${order}`);
    expected.push({ line: lines.length, action, dropped });
  }
  return { text: lines.join('\n') + '\n', expected, skipped };
}

test('a 10 MB log of 30,000 orders: decoded in the worker, a table of only the rows in sight', async () => {
  await openPage();
  const log = makeLog(30000);
  const file = join(scratch, 'orders.log');
  writeFileSync(file, log.text);
  const size = Buffer.byteLength(log.text);
  assert.ok(size >= 10e6 && size < 12e6, `the log is 10 MB, not ${size} bytes`);

  // Dropped: the file is taken from an input of the test's own, then handed
  // to the drop zone in a drop event.
  await page.evaluate(() => {
    const input = document.createElement('input');
    input.type = 'file';
    input.id = 'test-file';
    input.hidden = true;
    document.body.append(input);
  });
  await (await page.$('#test-file')).uploadFile(file);
  // The values the progress bar takes on the way.
  await page.evaluate(() => {
    const bar = document.getElementById('progress');
    window.progressSeen = [];
    new MutationObserver(() => window.progressSeen.push(bar.value / bar.max)).observe(bar, { attributes: true });
  });
  const began = Date.now();
  await page.evaluate(() => {
    const data = new DataTransfer();
    data.items.add(document.getElementById('test-file').files[0]);
    document.getElementById('test-file').remove();
    document.getElementById('drop-zone').dispatchEvent(new DragEvent('drop', { dataTransfer: data, bubbles: true, cancelable: true }));
  });
  await page.waitForSelector('#progress[data-state="done"]', { timeout: kDecodeTimeoutMs });
  const wall = Date.now() - began;
  const status = await page.$eval('#decode-status', (element) => ({ ...element.dataset }));
  console.log(`# 10 MB log: decoded in the worker in ${status.ms} ms, ${wall} ms from the drop to the table`);
  assert.equal(Number(status.orders), log.expected.length);
  assert.equal(Number(status.skipped), log.skipped);
  assert.deepEqual(await page.$eval('#progress', (bar) => [bar.value, bar.max]), [Buffer.byteLength(log.text), Buffer.byteLength(log.text)]);
  const steps = await page.evaluate(() => window.progressSeen.filter((part) => part > 0 && part < 1));
  assert.ok(steps.length > 0, 'the bar moved before the end');
  assert.deepEqual(steps, [...steps].sort((a, b) => a - b), 'the bar only moves forward');

  const rowsInPage = () => page.$$eval('#log-rows tr[data-index]', (rows) => rows.map((row) => [...row.cells].map((cell) => cell.textContent)));
  const check = (rows) => {
    assert.ok(rows.length > 0 && rows.length < 60, `${rows.length} rows in the page`);
    for (const [line, action, value, , dropped] of rows) {
      const order = log.expected.find((each) => each.line === Number(line));
      assert.ok(order !== undefined, `line ${line} holds an order`);
      assert.deepEqual([action, value, dropped], [order.action, nativeActions.get(order.action), order.dropped ? '1' : ''], `line ${line}`);
    }
  };
  check(await rowsInPage());
  await shoot('log');

  // Scrolled to the end; then the last order chosen from the keyboard.
  await page.$eval('#log-scroll', (scroll) => (scroll.scrollTop = scroll.scrollHeight));
  await page.waitForFunction((line) => [...document.querySelectorAll('#log-rows tr[data-index]')].some((row) => row.cells[0].textContent === line), {}, String(log.expected.at(-1).line));
  check(await rowsInPage());
  await page.focus('#log-scroll');
  await page.keyboard.press('End');
  assert.equal(await page.$eval('#order-heading', (heading) => heading.textContent), `Order of line ${log.expected.at(-1).line}`);
  await page.keyboard.press('ArrowUp');
  const before = log.expected.at(-2);
  assert.equal(await page.$eval('#order-heading', (heading) => heading.textContent), `Order of line ${before.line}`);
  assert.equal(await page.$eval('#order-action', (element) => element.dataset.action), before.action);
});

test('an order built with the form is the order the native tool renders', async () => {
  await openPage();
  await page.click('#tab-build');
  assert.deepEqual(
    await page.$$eval('#action-list option', (options) => options.map((option) => option.value)),
    [...nativeActions.keys()],
  );
  await page.click('#build-action', { count: 3 });
  await page.keyboard.type('askLogin');
  await page.click('#build-add');
  await page.keyboard.type('url');
  await page.keyboard.press('Tab');
  await page.keyboard.type('https://a.example/?x=1&y=2//é');
  const output = () => page.$eval('#build-output', (area) => area.value);
  assert.equal(
    await output(),
    pqorder(['render', 'askLogin', 'level=3', 'text=a=b', 'url=https://a.example/?x=1&y=2//é']).trimEnd(),
  );
  assert.equal(await page.$eval('#build-action-value', (element) => element.textContent), `value ${nativeActions.get('askLogin')}`);
  // The first row removed; focus goes to the row that takes its place.
  await page.click('#build-rows .build-row button');
  assert.equal(await page.evaluate(() => document.activeElement.value), 'text');
  assert.equal(await output(), pqorder(['render', 'askLogin', 'text=a=b', 'url=https://a.example/?x=1&y=2//é']).trimEnd());
  await shoot('build');

  await page.click('#build-kind-json');
  const content = { user: { name: 'Ada', n: 3, tags: ['a', 'b&c'] }, note: 'x&y' };
  await page.$eval('#build-json-text', (area, text) => {
    area.value = text;
    area.dispatchEvent(new Event('input', { bubbles: true }));
  }, JSON.stringify(content));
  assert.equal(
    await output(),
    pqorder(['render', '--json', 'askLogin', `user:=${JSON.stringify(content.user)}`, 'note=x&y']).trimEnd(),
  );
  await page.$eval('#build-json-text', (area) => {
    area.value = '{"a": ';
    area.dispatchEvent(new Event('input', { bubbles: true }));
  });
  assert.equal(await output(), '');
  assert.match(await page.$eval('#build-status', (element) => element.textContent), /^No order: the content is not JSON/);
});

test('the password and card checks say what pqorder says', async () => {
  await openPage();
  await page.click('#tab-password');
  const cases = [
    ['abcdefg1', []],
    ['Abcdefg1', []],
    ['Abcdefg1', ['--min-length', '12']],
    ['x&y=z', ['--forbid', '&', '--max-special', '1']],
    ['', []],
  ];
  for (const [password, options] of cases) {
    await page.$$eval('#policy input', (inputs) => inputs.forEach((input) => (input.value = '')));
    for (let i = 0; i < options.length; i += 2) {
      await page.$eval(`#policy-${options[i].slice(2)}`, (input, value) => (input.value = value), options[i + 1]);
    }
    await page.$eval('#password', (input) => {
      input.value = '';
      input.dispatchEvent(new Event('input', { bubbles: true }));
    });
    await page.type('#password', password);
    assert.equal(await page.$eval('#password-report', (report) => report.textContent), pqorder(['password', ...options], `${password}\n`), password);
  }
  await shoot('password');

  await page.click('#tab-card');
  for (const number of ['4111111111111111', '4111111111111112', '5500 0000 0000 0004', '378282246310005', '1234']) {
    await page.$eval('#card-number', (input) => (input.value = ''));
    await page.type('#card-number', number);
    assert.equal(await page.$eval('#card-report', (report) => report.textContent), pqorder(['card', number]), number);
  }
  await shoot('card');
});

test('secrets stay put: masked copies, nothing in the address, storage or cookies', async () => {
  await openPage();
  await page.click('#tab-password');
  await page.type('#password', 'Pa55word!');
  await page.keyboard.press('Enter');
  await page.click('#tab-decode');
  await paste('action=askLogin&user=ada&password=s3cret&card=4111111111111111&junk&//');
  await page.click('#copy-as-text');
  const share = () => page.$eval('#share-text', (area) => area.value);
  assert.equal(
    await share(),
    'action: askLogin (' + nativeActions.get('askLogin') + ')\n' +
      'user = *******\n' +
      'password = *******\n' +
      `card = ${pqorder(['card', '4111111111111111']).match(/^masked +(.*)$/m)[1]}\n` +
      'dropped #4 (not key=value): *******\n',
  );
  await page.click('#share-clear');
  await page.click('#copy-as-text');
  assert.match(await share(), /^password = s3cret$/m);
  assert.equal(await page.$eval('#share-clear', (box) => box.checked), false, 'the clear form is given once');
  await page.click('#copy-as-text');
  assert.doesNotMatch(await share(), /s3cret/);

  const traces = await page.evaluate(async () => ({
    address: location.href,
    local: localStorage.length,
    session: sessionStorage.length,
    cookies: document.cookie,
    databases: (await indexedDB.databases()).length,
    title: document.title,
  }));
  assert.deepEqual(traces, { address: pageUrl, local: 0, session: 0, cookies: '', databases: 0, title: 'PQUtils order inspector' });
});

// The relative luminance contrast of two CSS colours.
function contrast(first, second) {
  const luminance = (color) => {
    const [r, g, b] = color.match(/\d+(\.\d+)?/g).slice(0, 3).map((part) => {
      const c = Number(part) / 255;
      return c <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const [light, dark] = [luminance(first), luminance(second)].sort((a, b) => b - a);
  return (light + 0.05) / (dark + 0.05);
}

test('keyboard and assistive use: named controls, tabs from the keyboard, enough contrast', async () => {
  await openPage();
  await paste('action=log&a=\u0001&b=\udcff&junk&//');
  const unnamed = await page.$$eval('input, textarea, button, select, [tabindex="0"]', (controls) =>
    controls
      .filter((control) => !(control.labels?.length > 0 || control.getAttribute('aria-label') || control.getAttribute('aria-labelledby') || (control.tagName === 'BUTTON' && control.textContent.trim())))
      .map((control) => control.outerHTML),
  );
  assert.deepEqual(unnamed, []);

  await page.focus('#tab-decode');
  await page.keyboard.press('ArrowRight');
  assert.deepEqual(
    await page.evaluate(() => [document.activeElement.id, document.getElementById('panel-build').hidden, document.getElementById('panel-decode').hidden]),
    ['tab-build', false, true],
  );
  await page.keyboard.press('End');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'tab-card');
  await page.keyboard.press('Tab');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'card-number');
  await page.keyboard.press('Home');
  await page.focus('#tab-decode');

  const pairs = await page.$$eval(
    'body, .lead, button, [role="tab"], .ctl, .bad, .dropped-mark, tr.dropped td, .legend, caption',
    (elements) =>
      elements.map((element) => {
        // The background drawn behind the element: its own, or its nearest
        // ancestor's that is not transparent.
        let behind = element;
        let background = getComputedStyle(behind).backgroundColor;
        while (/rgba\(.*, 0\)$/.test(background) && behind.parentElement !== null) {
          behind = behind.parentElement;
          background = getComputedStyle(behind).backgroundColor;
        }
        return { what: element.className || element.tagName, color: getComputedStyle(element).color, background: /rgba\(.*, 0\)$/.test(background) ? 'rgb(255, 255, 255)' : background };
      }),
  );
  for (const { what, color, background } of pairs) {
    assert.ok(contrast(color, background) >= 4.5, `${what}: ${color} on ${background}`);
  }
});

test('served by a static server, the page works as from disk', async (t) => {
  const types = { '.html': 'text/html', '.css': 'text/css', '.js': 'text/javascript', '.svg': 'image/svg+xml' };
  const server = createServer((request, response) => {
    const file = normalize(join(pageDir, decodeURIComponent(new URL(request.url, 'http://x').pathname)));
    if (!file.startsWith(pageDir) || !existsSync(file) || !(extname(file) in types)) {
      response.writeHead(404).end();
      return;
    }
    response.writeHead(200, { 'Content-Type': types[extname(file)] }).end(readFileSync(file));
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  t.after(() => server.close());
  const origin = `http://127.0.0.1:${server.address().port}/`;
  await openPage(`${origin}index.html`, origin);
  await paste('x action=log&a=1&//\ny action=event&b=x--amp--y&//\nno order here\n');
  assert.deepEqual(await page.$eval('#decode-status', (element) => [element.dataset.orders, element.dataset.skipped]), ['2', '1']);
  assert.equal(await page.$eval('#pieces-rows', (rows) => rows.textContent), '1a11');
  await page.click('#log-rows tr[data-index="1"]');
  assert.equal(await page.$eval('#pieces-rows', (rows) => rows.textContent), '1bx&yx--amp--y');
});
