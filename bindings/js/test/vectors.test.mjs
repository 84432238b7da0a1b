// The shared order text vectors (tests/data/orders.txt), the same file that
// the native suite reads: the package writes each order's exact text, and
// reads it back to its pieces unless the vector says it does not.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { parseOrder, renderOrder } from '../index.js';
import { bytes, readOrderVectors, utf8 } from './support.mjs';

const vectors = readOrderVectors();

test('the vectors file has its vectors', () => {
  assert.ok(vectors.length >= 10);
});

for (const vector of vectors) {
  test(`vector: ${vector.name}`, () => {
    assert.deepEqual(bytes(renderOrder(vector.action, vector.pieces)), vector.text);

    const expected = [[utf8.encode('action'), utf8.encode(vector.action)], ...vector.pieces];
    const read = parseOrder(vector.text).pieces.map(({ key, value }) => [key, value]);
    if (vector.oneway === '') {
      assert.deepEqual(read, expected);
    } else {
      assert.notDeepEqual(read, expected, vector.oneway);
    }
  });
}
