// Hostile text: a megabyte of one separator, of one escape token, of random
// bytes, read with no crash, in time linear in its size: reading four times
// as much takes about four times as long (a quadratic reader would take
// sixteen), with room for a loaded machine.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { parseJsonContent, parseOrder, unescape, urlDecode } from '../index.js';
import { seededRandom, utf8 } from './support.mjs';

const kMiB = 1 << 20;
const kRuns = 5;
const kGenerousFactor = 10;

function repeated(unit, size) {
  return utf8.encode(unit.repeat(Math.ceil(size / unit.length)).slice(0, size));
}

// The fastest of a few runs, in milliseconds, and the last result.
function timed(call) {
  let best = Infinity;
  let result;
  for (let run = 0; run < kRuns; ++run) {
    const start = performance.now();
    result = call();
    best = Math.min(best, performance.now() - start);
  }
  return { ms: best, result };
}

// Measured again, up to three times, when a busy machine stretched one
// run: a quadratic reader fails every time.
function assertLinear(name, make, call, check) {
  for (let attempt = 1; ; ++attempt) {
    const small = timed(() => call(make(kMiB)));
    const large = timed(() => call(make(4 * kMiB)));
    check(small.result, kMiB);
    check(large.result, 4 * kMiB);
    console.log(`# ${name}: 1 MiB in ${small.ms.toFixed(1)} ms, 4 MiB in ${large.ms.toFixed(1)} ms`);
    // Below a millisecond the clock says more about the machine than the reader.
    const ratio = Math.max(large.ms, 1) / Math.max(small.ms, 1);
    if (ratio < kGenerousFactor || attempt === 3) {
      assert.ok(ratio < kGenerousFactor, `${name}: 1 MiB in ${small.ms} ms, 4 MiB in ${large.ms} ms`);
      return;
    }
  }
}

const random = seededRandom('hostile');
const randomBytes = (size) => Uint8Array.from({ length: size }, () => random.below(256));

test('order text of one separator or token, or random bytes, reads in linear time', () => {
  const cases = [
    {
      name: '&',
      make: (size) => repeated('&', size),
      check: ({ pieces, dropped }) => assert.deepEqual([pieces.length, dropped.length], [0, 0]),
    },
    {
      name: '=',
      make: (size) => repeated('=', size),
      check: ({ pieces, dropped }, size) => {
        assert.equal(pieces.length, 0);
        assert.equal(dropped.length, 1);
        assert.equal(dropped[0].element.length, size);
      },
    },
    {
      name: '--amp--',
      make: (size) => repeated('--amp--', size),
      check: ({ pieces, dropped }) => {
        assert.equal(pieces.length, 0);
        assert.equal(dropped[0].reason, 'not key=value');
      },
    },
    {
      name: 'a=--amp--...',
      make: (size) => utf8.encode('a=' + '--amp--'.repeat(size / 7)),
      check: ({ pieces }, size) => assert.equal(pieces[0].value.length, Math.floor(size / 7)),
    },
    {
      name: 'random bytes',
      make: randomBytes,
      check: ({ pieces, dropped }) => assert.ok(pieces.length + dropped.length > 0),
    },
  ];
  for (const { name, make, check } of cases) {
    assertLinear(name, make, (text) => parseOrder(text), check);
  }
});

test('the other readers of outside text read hostile text in linear time', () => {
  assertLinear(
    'unescape of token chains',
    (size) => repeated('--equ--amp--', size),
    unescape,
    (result) => assert.ok(result.length > 0),
  );
  assertLinear(
    'urlDecode of %25 runs',
    (size) => repeated('%25', size),
    urlDecode,
    (result) => assert.ok(result.length > 0),
  );
  assertLinear(
    'JSON content of open brackets',
    (size) => utf8.encode('content=' + '['.repeat(size)),
    (text) => assert.throws(() => parseJsonContent(text), /content is not JSON: end of text/),
    () => {},
  );
});
