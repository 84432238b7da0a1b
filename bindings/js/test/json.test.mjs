// JSON orders: random trees of objects, arrays, strings and literals,
// rendered here and natively (`render --json`) to the same bytes, read back
// natively as the text it sent, and decoded here to the tree rendered.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { parseJsonContent, parseOrder, renderJsonOrder } from '../index.js';
import { bytes, plain, pqorder, pqorderWithBytes, readJsonStream, requireNativeTool, seededRandom } from './support.mjs';

requireNativeTool();

const random = seededRandom('json');
const kTrees = 10000;
const kBatch = 200;

// Code points that matter to the JSON and order writers, and some others.
const kSpecials = ['"', '\\', '\n', '\t', '\v', '\r', '\f', "'", '/', '//', '=', '&', '--amp--', '--endl--', '\u0001', 'é', '😀', 'n'];

// With `oneWay`, also the texts that do not read back as they were written:
// escape tokens (read as their characters) and backslashes (the library
// restores "\\n" before "\\\\").
function randomString(oneWay) {
  let text = '';
  for (let count = random.below(8); count > 0; --count) {
    const piece =
      random.below(3) === 0 ? String.fromCodePoint(0x20 + random.below(0x2000)) : random.pick(kSpecials);
    text += oneWay || !/\\|--/.test(piece) ? piece : 'x';
  }
  return text;
}

function randomLiteral() {
  return random.pick([true, false, null, random.below(2 ** 31) - 2 ** 30, random.below(10 ** 6) / 100]);
}

// A tree as the orders carry it: literals only as members of objects (an
// array of literals renders only without escaping). Keys hold neither a
// quote nor a backslash, which the writer leaves as they are.
function randomTree(depth, oneWay) {
  const kind = depth === 0 ? 2 : random.below(3);
  if (kind === 0) {
    const object = {};
    for (let count = random.below(4); count > 0; --count) {
      const key = randomString(false).replace(/"/g, '');
      object[key] = random.below(3) === 0 ? randomLiteral() : randomTree(depth - 1, oneWay);
    }
    return object;
  }
  if (kind === 1) {
    return Array.from({ length: random.below(4) }, () => randomTree(depth - 1, oneWay));
  }
  return randomString(oneWay);
}

// A root: an object whose members are trees (literals are refused there).
function randomRoot(oneWay) {
  const root = {};
  for (let count = random.below(4); count > 0; --count) {
    root[`m${count}${randomString(false).replace(/"/g, '')}`] = randomTree(3, oneWay);
  }
  return root;
}

test(`${kTrees} JSON orders render here as natively`, () => {
  for (let done = 0; done < kTrees; done += kBatch) {
    // One native order per batch, its members the batch's trees.
    const root = {};
    for (let i = 0; i < kBatch; ++i) {
      root[`t${i}`] = random.below(4) === 0 ? randomRoot(true) : randomTree(4, true);
    }
    const args = Object.entries(root).map(([key, tree]) => `${key}:=${JSON.stringify(tree)}`);
    const run = pqorderWithBytes(['render', '--json', 'event', '--'], args);
    assert.equal(run.status, 0, run.stderr.toString());
    assert.deepEqual(Buffer.from(bytes(renderJsonOrder('event', root))), run.stdout.subarray(0, -1));
  }
});

test(`${kTrees} JSON orders rendered here are read natively as the text sent`, () => {
  const texts = Array.from({ length: kTrees }, () => renderJsonOrder('event', randomRoot(true)));
  const run = pqorder(['parse', '--json'], texts.join('\n') + '\n');
  assert.equal(run.status, 0, run.stderr.toString());
  const native = readJsonStream(run.stdout.toString());
  texts.forEach((text, i) => {
    const content = parseOrder(text).pieces.find(({ key }) => key === 'content').value;
    const sent = content.replaceAll('--endl--', '\n');
    const [key, read] = native[i].entries[1];
    assert.equal(key, 'content');
    let expected;
    try {
      expected = JSON.parse(sent);
    } catch {
      expected = sent; // not strict JSON (a "\v", a raw control byte): shown as text
    }
    assert.deepEqual(plain(read), expected, text);
  });
});

test(`${kTrees} JSON orders decode to the tree rendered`, () => {
  for (let i = 0; i < kTrees; ++i) {
    const root = randomRoot(false);
    assert.deepEqual(parseJsonContent(renderJsonOrder('log', root)), root);
    // An object's members go into the root order, which takes no literal.
    const tree = randomTree(5, false);
    const value = Array.isArray(tree) || typeof tree === 'string' ? tree : { t: tree };
    assert.deepEqual(parseJsonContent(renderJsonOrder('log', value)), value);
  }
});

test('JSON orders: the library renders and reads as it does natively', () => {
  const cases = [
    { name: 'an empty root', value: {}, text: 'action=log&content={}&//' },
    { name: 'an array root', value: ['x', ['y']], text: 'action=log&content=["x",["y"]]&//' },
    { name: 'a string root', value: 'a=b', text: 'action=log&content="a--equ--b"&//' },
    {
      name: 'literals inside an object',
      value: { o: { t: true, n: null, i: -7, d: 1.25 } },
      text: 'action=log&content={"o":{"t":true,"n":null,"i":-7,"d":1.25}}&//',
    },
    {
      name: 'escapes of strings, tokens of the order',
      value: { s: 'q"\\\n\t&//' },
      text: 'action=log&content={"s":"q\\"\\\\\\n\\t--amp----dbsl--"}&//',
    },
    { name: 'a line feed in a key', value: { 'a\nb': 'c' }, text: 'action=log&content={"a--endl--b":"c"}&//' },
  ];
  for (const { name, value, text } of cases) {
    assert.equal(renderJsonOrder('log', value), text, name);
    assert.deepEqual(parseJsonContent(text), value, name);
  }
});

test('JSON orders: what the library refuses, and what has no JSON text, throws', () => {
  const cases = [
    { value: { n: 1 }, message: /All Json children must be TYPE_ORDER PQOrderPiece/ },
    { value: ['x', 2], message: /All Json children must be TYPE_ORDER PQOrderPiece/ },
    { value: 3, message: /can only be members of an object/ },
    { value: { o: { f: () => 1 } }, message: /function has no JSON text/ },
    { value: { o: { n: NaN } }, message: /NaN has no JSON text/ },
  ];
  for (const { value, message } of cases) {
    assert.throws(() => renderJsonOrder('log', value), message);
  }
  for (const [text, message] of [
    ['action=log&a=1&//', /no content piece/],
    ['action=log&content={"a":"b"&//', /content is not JSON: end of text at byte 8/],
    ['action=log&content={"a":tru e}&//', /content is not JSON: unexpected byte/],
    ['action=log&content=["x",]&//', /content is not JSON: no value/],
    ['action=log&content=[1]]&//', /content is not JSON: text after the value/],
    ['action=log&content={"a":nope}&//', /nope is not a value/],
  ]) {
    assert.throws(() => parseJsonContent(text), message, text);
  }
});

test('JSON orders: the library\'s own unescaping, not JSON\'s, decodes strings', () => {
  // A backslash then "n", rendered as two backslashes and "n", reads back as
  // a backslash and a line feed: "\n" is restored before "\\".
  assert.deepEqual(parseJsonContent(renderJsonOrder('log', { s: '\\n' })), { s: '\\\n' });
  // "__proto__" is a member like any other.
  const read = parseJsonContent('action=log&content={"__proto__":"x"}&//');
  assert.equal(Object.getPrototypeOf(read), Object.prototype);
  assert.deepEqual(Object.keys(read), ['__proto__']);
});

test('JSON orders: strings as bytes go through exactly', () => {
  const value = new Uint8Array([0xff, 0x61, 0xc3]);
  const text = renderJsonOrder('log', { s: value });
  assert.ok(text instanceof Uint8Array);
  assert.deepEqual(parseJsonContent(text), { s: value });
});

test('JSON orders: 10,000 levels deep render and read back', () => {
  let deep = 'leaf';
  for (let i = 0; i < 10000; ++i) {
    deep = [deep];
  }
  const text = renderJsonOrder('log', deep);
  assert.equal(text.length, 'action=log&content=&//'.length + 2 * 10000 + '"leaf"'.length);
  let read = parseJsonContent(text);
  for (let i = 0; i < 10000; ++i) {
    read = read[0];
  }
  assert.equal(read, 'leaf');
  assert.throws(() => renderJsonOrder('log', [deep]), /JSON nested deeper than 10000 levels/);
});
