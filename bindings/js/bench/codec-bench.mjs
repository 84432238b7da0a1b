// Parse and render of the 20-piece order in Node.js, in messages per second:
// the package beside the split-and-replace codec a plug-in author would
// write by hand (which knows neither the dropped elements nor the library's
// exact token rules). Also the package's gzipped size.
//   node bench/codec-bench.mjs        (after cmake --build --preset wasm)

import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { gzipSync } from 'node:zlib';

import { parseOrder, renderOrder } from '../index.js';

const packageDir = fileURLToPath(new URL('..', import.meta.url));

// The 20-piece order of the native benchmarks: keys and values of a login
// form, a few with the characters that need escaping.
const pairs = Array.from({ length: 20 }, (_, i) => [
  `field${i}`,
  i % 4 === 0 ? `https://site.example/p?a=${i}&b=//x` : `value number ${i}`,
]);
const text = renderOrder('askLogin', pairs);

// The baseline: the order format written by hand, with replaceAll.
function baselineRender(action, entries) {
  let out = `action=${action}`;
  for (const [key, value] of entries) {
    out += `&${key}=${value.replaceAll('=', '--equ--').replaceAll('&', '--amp--').replaceAll('//', '--dbsl--')}`;
  }
  return out + '&//';
}

function baselineParse(order) {
  const body = order.endsWith('//') ? order.slice(0, -2) : order;
  const pieces = [];
  for (const element of body.split('&')) {
    const parts = element.split('=');
    if (parts.length === 2) {
      const value = parts[1].replaceAll('--equ--', '=').replaceAll('--amp--', '&').replaceAll('--dbsl--', '//');
      pieces.push({ key: parts[0], value });
    }
  }
  return pieces;
}

if (baselineRender('askLogin', pairs) !== text) {
  throw new Error('the baseline does not write the same text');
}

// Messages per second: the best of several rounds of about 200 ms.
function rate(call) {
  let best = 0;
  for (let round = 0; round < 7; ++round) {
    let count = 0;
    const start = performance.now();
    let elapsed = 0;
    while (elapsed < 200) {
      for (let i = 0; i < 1000; ++i) {
        call();
      }
      count += 1000;
      elapsed = performance.now() - start;
    }
    best = Math.max(best, (count / elapsed) * 1000);
  }
  return Math.round(best);
}

const rows = [
  ['render, package', () => renderOrder('askLogin', pairs)],
  ['render, split-and-replace', () => baselineRender('askLogin', pairs)],
  ['parse, package', () => parseOrder(text)],
  ['parse, split-and-replace', () => baselineParse(text)],
];
console.log(`20-piece order, ${text.length} bytes; messages per second (best of 7 rounds):`);
for (const [name, call] of rows) {
  console.log(`  ${name.padEnd(28)} ${rate(call).toLocaleString('en-US').padStart(12)}`);
}

const files = ['index.js', 'dist/pqutils-core.mjs', 'dist/pqutils-core-wasm.mjs'];
const whole = Buffer.concat(files.map((file) => readFileSync(join(packageDir, file))));
console.log(`package: ${(whole.length / 1024).toFixed(1)} KiB, gzipped ${(gzipSync(whole, { level: 9 }).length / 1024).toFixed(1)} KiB`);
