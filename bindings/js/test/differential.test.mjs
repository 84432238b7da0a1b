// The package against the native pqorder on random orders: what one side
// writes, the other reads, and both read the same pieces from any text.
// Keys and values are made of any bytes, the escape tokens, "=", "&", runs
// of "/" and "--". The tool reads one order per line (`parse --json`), so
// orders fed to it hold no line feed; it takes pieces as arguments, so the
// orders it renders hold no zero byte and no "=" in a key.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { parseOrder, renderOrder } from '../index.js';
import {
  bytes,
  latin1,
  pqorder,
  pqorderWithBytes,
  readJsonStream,
  requireNativeTool,
  seededRandom,
  shown,
} from './support.mjs';

requireNativeTool();

const kOrders = 10000;
const kBatch = 250;
const kActions = ['log', 'event', 'askLogin', 'NO_TYPE', 'vordaApplicationResponse'];

const random = seededRandom('differential');

const kFragments = [
  '--equ--', '--amp--', '--dbsl--', '--dblpt--', '--arob--', '--endl--',
  '=', '&', '--', '-', '--amp-', '-equ--', '--dbsl', ':', '@', 'é', '€', '😀', 'ab', ' ',
].map((text) => bytes(text));

// Random bytes built from fragments: single bytes over the whole range, the
// tokens and their pieces, and runs of "/".
function randomText(maxFragments, refused) {
  const out = [];
  for (let count = random.below(maxFragments + 1); count > 0; --count) {
    const kind = random.below(4);
    if (kind === 0) {
      out.push(random.below(256));
    } else if (kind === 1) {
      out.push(...'/'.repeat(1 + random.below(5)).split('').map(() => 0x2f));
    } else {
      out.push(...random.pick(kFragments));
    }
  }
  return Uint8Array.from(out.filter((byte) => !refused.includes(byte)));
}

const kLineFeed = 0x0a;
const kZero = 0x00;
const kEquals = 0x3d;
const contentKey = bytes('content');
const sameBytes = (a, b) => Buffer.compare(Buffer.from(a), Buffer.from(b)) === 0;

// An order of up to 8 pieces. The key "content" is left out: the tool shows
// that one as JSON.
function randomOrder(refusedInKeys, refusedInValues) {
  const pairs = [];
  for (let count = random.below(9); count > 0; --count) {
    let key;
    do {
      key = randomText(4, refusedInKeys);
    } while (sameBytes(key, contentKey));
    pairs.push([key, randomText(10, refusedInValues)]);
  }
  return pairs;
}

// What the tool reads from each line of `texts`: per order, its pieces as
// [key, value] of text with bytes that are not UTF-8 shown as U+FFFD; and
// how many elements it reported dropped (one line each), for the whole batch.
function nativeParse(texts, raw) {
  const input = Buffer.concat(texts.flatMap((text) => [Buffer.from(text), Buffer.from('\n')]));
  const run = pqorder(['parse', '--json', ...(raw ? ['--raw'] : [])], input);
  assert.ok(run.status === 0 || run.status === 1, run.stderr.toString());
  const orders = readJsonStream(run.stdout.toString()).map((order) => order.entries);
  const reports = run.stderr
    .toString()
    .split('\n')
    .filter((line) => /^pqorder: element \d+ ".*": .*, dropped$/.test(line));
  return { orders, dropped: reports.length };
}

function shownPieces(parsed) {
  return parsed.pieces.map(({ key, value }) => [shown(key), shown(value)]);
}

// Both read every text alike.
function assertSameReading(texts, raw) {
  const native = nativeParse(texts, raw);
  assert.equal(native.orders.length, texts.length);
  let dropped = 0;
  texts.forEach((text, i) => {
    const parsed = parseOrder(bytes(text), { removeEntities: !raw });
    dropped += parsed.dropped.length;
    assert.deepEqual(shownPieces(parsed), native.orders[i], `order ${i}: ${latin1(text)}`);
  });
  assert.equal(dropped, native.dropped);
}

test(`${kOrders} orders rendered here read the same natively`, () => {
  for (let done = 0; done < kOrders; done += kBatch) {
    const texts = [];
    for (let i = 0; i < kBatch; ++i) {
      const refused = [kLineFeed];
      texts.push(renderOrder(random.pick(kActions), randomOrder(refused, refused)));
    }
    assertSameReading(texts, false);
  }
});

test(`${kOrders} random texts read the same here and natively, tokens restored or kept`, () => {
  for (let done = 0; done < kOrders; done += kBatch) {
    const texts = [];
    while (texts.length < kBatch) {
      // The tool skips empty lines and takes a carriage return off the end.
      const text = randomText(24, [kLineFeed]);
      if (text.length > 0 && text.at(-1) !== 0x0d) {
        texts.push(text);
      }
    }
    assertSameReading(texts, done % (2 * kBatch) !== 0);
  }
});

// The tool renders a batch as one order, with a marker piece before each
// order's pieces; order text is written piece by piece, so the text between
// two markers is what the tool writes for that order's pieces alone.
const markerKey = '\u0001order';
const markerValue = (i) => `M${random.seed}x${i}.`;

function pieceArgs(pairs) {
  return pairs.map(([key, value]) => Buffer.concat([Buffer.from(key), Buffer.from('='), Buffer.from(value)]));
}

function isBracketed(key, value) {
  const piece = Buffer.concat([Buffer.from(bytes(key)), Buffer.from('='), Buffer.from(bytes(value))]);
  return piece[0] === 0x5b && piece[piece.length - 1] === 0x5d;
}

function nativeRenders(action, orders) {
  const args = [];
  orders.forEach((pairs, i) => {
    args.push(`${markerKey}=${markerValue(i)}`, ...pieceArgs(pairs));
  });
  const run = pqorderWithBytes(['render', action, '--'], args);
  assert.equal(run.status, 0, run.stderr.toString());
  const text = run.stdout.subarray(0, run.stdout.length - 1); // its line feed
  const head = Buffer.from(`action=${action}`);
  const tail = Buffer.from('&//');
  const starts = orders.map((_, i) => text.indexOf(`&${markerKey}=${markerValue(i)}`));
  return orders.map((_, i) => {
    const from = starts[i] + `&${markerKey}=${markerValue(i)}`.length;
    const to = i + 1 < orders.length ? starts[i + 1] : text.length - tail.length;
    return Buffer.concat([head, text.subarray(from, to), tail]);
  });
}

test(`${kOrders} orders rendered natively are rendered alike here, and read back alike`, () => {
  const refusedInKeys = [kZero, kEquals, kLineFeed];
  const refusedInValues = [kZero, kLineFeed];
  for (let done = 0; done < kOrders; done += kBatch) {
    const action = random.pick(kActions);
    const orders = [];
    for (let i = 0; i < kBatch; ++i) {
      // The tool's command-line parser reads an argument "[...]" as a list
      // and splits it at commas, so such a piece cannot reach it whole.
      const pairs = randomOrder(refusedInKeys, refusedInValues);
      orders.push(pairs.filter(([key, value]) => !isBracketed(key, value)));
    }
    const native = nativeRenders(action, orders);
    orders.forEach((pairs, i) => {
      assert.deepEqual(Buffer.from(bytes(renderOrder(action, pairs))), native[i], `order ${i}`);
    });
    assertSameReading(native, false);
  }
});

test('an order rendered natively on its own is the text cut from a batch', () => {
  const orders = Array.from({ length: 5 }, () => randomOrder([kZero, kEquals, kLineFeed], [kZero]));
  const cut = nativeRenders('event', orders);
  orders.forEach((pairs, i) => {
    const alone = pqorderWithBytes(['render', 'event', '--'], pieceArgs(pairs)).stdout;
    assert.deepEqual(alone.subarray(0, alone.length - 1), cut[i]);
  });
});
