// The functions one by one: their edge cases, bytes that are not UTF-8,
// misuse, and the checks and filters against the native tool's answers.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import * as pq from '../index.js';
import { bytes, pqorder, requireNativeTool } from './support.mjs';

requireNativeTool();

test('escape and unescape: the order tokens, left to right, up to a zero byte', () => {
  const cases = [
    { text: 'a=b&c//d', escaped: 'a--equ--b--amp--c--dbsl--d' },
    { text: '///', escaped: '--dbsl--/' },
    { text: '////', escaped: '--dbsl----dbsl--' },
    { text: 'a:b@c', escaped: 'a:b@c' },
    { text: '', escaped: '' },
    { text: 'a\u0000=b', escaped: 'a\u0000=b' },
  ];
  for (const { text, escaped } of cases) {
    assert.equal(pq.escape(text), escaped, text);
    assert.equal(pq.unescape(escaped), text, escaped);
  }
  // Tokens written as values come back as their characters.
  assert.equal(pq.unescape('--amp--equ--'), '--amp=');
  assert.deepEqual(pq.escape(new Uint8Array([0xff, 0x3d])), new Uint8Array([0xff, ...bytes('--equ--')]));
});

test('texts as bytes go through exactly, as strings go as UTF-8', () => {
  const raw = new Uint8Array([0x80, 0xff, 0x00, 0xc3, 0x28]);
  const text = pq.renderOrder('log', [[raw, raw]]);
  assert.ok(text instanceof Uint8Array);
  const { pieces } = pq.parseOrder(text);
  assert.deepEqual(pieces[1], { key: raw, value: raw });
  assert.deepEqual(pq.unescape(raw), raw);
  assert.deepEqual(pq.urlDecode(bytes('%FF%00a')), new Uint8Array([0xff, 0x00, 0x61]));
  assert.equal(pq.renderOrder('log', { 'é': '😀' }), 'action=log&é=😀&//');
});

test('renderOrder: actions by name or value, pairs as a list or an object', () => {
  assert.equal(pq.renderOrder('log', { level: 3, on: true }), 'action=log&level=3&on=true&//');
  assert.equal(pq.renderOrder(303, [['a', '1'], ['a', '2']]), 'action=log&a=1&a=2&//');
  assert.equal(pq.renderOrder('NO_TYPE', []), 'action=NO_TYPE&//');
  for (const [action, pairs, error] of [
    ['log', 'a=1', TypeError],
    ['log', [['a']], TypeError],
    ['log', [['a', {}]], TypeError],
    [1.5, [], TypeError],
    ['nope', [], /Value not valid : 'nope'/],
  ]) {
    assert.throws(() => pq.renderOrder(action, pairs), error);
  }
});

test('parseOrder: pieces, tokens kept or restored, and the dropped elements', () => {
  const cases = [
    { text: 'action=open&id=12&//', pieces: [['action', 'open'], ['id', '12']], dropped: [] },
    { text: 'action=open&id=12', pieces: [['action', 'open'], ['id', '12']], dropped: [] },
    { text: 'a=1&&b=2', pieces: [['a', '1'], ['b', '2']], dropped: [] },
    { text: '//', pieces: [], dropped: [] },
    { text: '', pieces: [], dropped: [] },
    { text: 'a=x--amp--y&//', pieces: [['a', 'x&y']], dropped: [] },
    { text: 'a=x--amp--y&//', raw: true, pieces: [['a', 'x--amp--y']], dropped: [] },
    {
      text: 'a=1&junk&b=2=3&//',
      pieces: [['a', '1']],
      dropped: [
        [1, 'junk', 'not key=value'],
        [2, 'b=2=3', 'not key=value'],
      ],
    },
  ];
  for (const { text, raw = false, pieces, dropped } of cases) {
    const read = pq.parseOrder(text, { removeEntities: !raw });
    assert.deepEqual(
      read.pieces.map(({ key, value }) => [key, value]),
      pieces,
      text,
    );
    assert.deepEqual(
      read.dropped.map(({ index, element, reason }) => [index, element, reason]),
      dropped,
      text,
    );
  }
});

test('toBase64: the RFC 4648 vectors', () => {
  const vectors = [
    ['', ''],
    ['f', 'Zg=='],
    ['fo', 'Zm8='],
    ['foo', 'Zm9v'],
    ['foob', 'Zm9vYg=='],
    ['fooba', 'Zm9vYmE='],
    ['foobar', 'Zm9vYmFy'],
  ];
  for (const [data, encoded] of vectors) {
    assert.equal(pq.toBase64(data), encoded);
    assert.equal(pq.toBase64(bytes(data)), encoded);
  }
  assert.equal(pq.toBase64(new Uint8Array([0xff, 0x00])), '/wA=');
});

// The tool's report of a password, as lines: "valid" or "invalid", each
// broken rule indented, then "holds  " and the classes.
function nativePassword(password, policy) {
  const args = ['password'];
  for (const [name, value] of Object.entries(policy)) {
    args.push(`--${name.replace(/[A-Z]/g, (letter) => `-${letter.toLowerCase()}`)}`, String(value));
  }
  const lines = pqorder(args, `${password}\n`).stdout.toString().trimEnd().split('\n');
  const holds = lines.at(-1).replace(/^holds {2}/, '');
  return {
    valid: lines[0] === 'valid',
    broken: lines.slice(1, -1).map((line) => line.trim()),
    holds: holds === 'nothing' ? [] : holds.split(', '),
  };
}

test('checkPassword: the same words as pqorder password, the policy for one check only', () => {
  const cases = [
    ['Abcdefg1', {}],
    ['abcdefg1', {}],
    ['', {}],
    ['Ab1!', { minLength: 3, maxSpecial: 0 }],
    ['ABCDEFGH', { minDigits: 2, maxUpper: 1, minLower: 3 }],
    ['Abcdefg1 ', { forbid: ' ', minSpecial: -1 }],
    ['x'.repeat(40), { maxLength: 12, maxLetters: 1, minUpper: 1 }],
    ['é1Aaaaaa', { maxSpecial: 1 }],
  ];
  for (const [password, policy] of cases) {
    assert.deepEqual(pq.checkPassword(password, policy), nativePassword(password, policy), password);
  }
  // The policy of a check does not outlive it.
  assert.deepEqual(pq.checkPassword('Abcdefg1'), { valid: true, broken: [], holds: ['letters', 'digits', 'lower-case', 'upper-case'] });
  assert.throws(() => pq.checkPassword('x', { minLenght: 1 }), /unknown password limit minLenght/);
  assert.throws(() => pq.checkPassword('x', { minLength: 1.5 }), TypeError);
});

test('checkCard: Luhn, brand and masked form as pqorder card gives them', () => {
  const numbers = ['4111111111111111', '6011000000000004', '5500 0000 0000 0004', '1234567890123', '1234', '378282246310005', 'abc'];
  const native = pqorder(['card'], numbers.join('\n') + '\n').stdout.toString().trim().split('\n\n');
  numbers.forEach((number, i) => {
    const [luhn, brand, masked] = native[i].split('\n').map((line) => line.replace(/^\w+ +/, ''));
    const stored = brand.match(/^(none|unnamed) \(stored as (.*)\)$/);
    assert.deepEqual(
      pq.checkCard(number),
      {
        luhn: luhn === 'valid',
        brand: stored === null ? brand : stored[1] === 'none' ? null : stored[2],
        masked,
        brandWords: brand,
      },
      number,
    );
  });
});

test('urlDecode: as pqorder urldecode decodes', () => {
  const texts = ['a%20b', '%2541', 'a%2', '%%41', '%zz%41', '+%2B', '%C3%A9'];
  const native = pqorder(['urldecode'], texts.join('\n') + '\n').stdout;
  const expected = native.subarray(0, -1).toString('latin1').split('\n');
  texts.forEach((text, i) => {
    assert.equal(Buffer.from(pq.urlDecode(bytes(text))).toString('latin1'), expected[i], text);
  });
});

test('actions: the vocabulary as pqorder actions lists it, names and values unique', () => {
  const native = pqorder(['actions']).stdout.toString().trim().split('\n').map((line) => {
    const [value, name] = line.split('\t');
    return { name, value: Number(value) };
  });
  const list = pq.actions();
  assert.deepEqual(list, native);
  assert.equal(new Set(list.map((action) => action.name)).size, list.length);
  assert.equal(new Set(list.map((action) => action.value)).size, list.length);
  assert.ok(list.some((action) => action.name === 'log'));
});
