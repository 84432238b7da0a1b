// What the package's tests share: the repository's files, the native tool,
// a seeded random source and byte helpers.

import { spawnSync } from 'node:child_process';
import { existsSync, readFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

export const packageDir = join(dirname(fileURLToPath(import.meta.url)), '..');
export const repoRoot = join(packageDir, '..', '..');

// The native tool, built by the tool preset unless PQORDER names another.
export const pqorderPath =
  process.env.PQORDER ?? join(repoRoot, 'build', 'tool', 'tools', 'pqorder', 'pqorder');

export function requireNativeTool() {
  if (!existsSync(pqorderPath)) {
    throw new Error(
      `no native pqorder at ${pqorderPath}: build it (cmake --preset tool && ` +
        'cmake --build --preset tool) or name it with PQORDER',
    );
  }
}

// Runs the native tool; its output as bytes.
export function pqorder(args, input = '') {
  const run = spawnSync(pqorderPath, args, { input, maxBuffer: 1 << 30 });
  if (run.error) {
    throw run.error;
  }
  return { status: run.status, stdout: run.stdout, stderr: run.stderr };
}

// Runs the native tool with `args` and then `byteArgs`, arguments of any
// bytes but zero (which Node.js would send as UTF-8): xargs reads them from
// its input and starts the tool once with all of them, or fails.
export function pqorderWithBytes(args, byteArgs) {
  const input = Buffer.concat(byteArgs.flatMap((arg) => [Buffer.from(arg), Buffer.alloc(1)]));
  const run = spawnSync('xargs', ['-0', '-x', '-s', String(1 << 20), pqorderPath, ...args], {
    input,
    maxBuffer: 1 << 30,
  });
  if (run.error) {
    throw run.error;
  }
  return { status: run.status, stdout: run.stdout, stderr: run.stderr };
}

export const utf8 = new TextEncoder();
const lossy = new TextDecoder();

export const bytes = (text) => (typeof text === 'string' ? utf8.encode(text) : text);
export const latin1 = (data) => Buffer.from(data).toString('latin1');
// Bytes as text with every sequence that is not UTF-8 replaced by U+FFFD,
// as the native tool writes them into JSON.
export const shown = (data) => lossy.decode(data);

// --- The shared order text vectors (the format is described at the top of
// tests/data/orders.txt) -------------------------------------------------

function unescapeVectorText(text) {
  const out = [];
  for (let i = 0; i < text.length; ++i) {
    if (text[i] !== '\\' || i + 1 === text.length) {
      out.push(...utf8.encode(text[i]));
      continue;
    }
    const code = text[++i];
    if (code === 'x') {
      out.push(parseInt(text.slice(i + 1, i + 3), 16));
      i += 2;
    } else {
      out.push(code === 't' ? 9 : code === 'n' ? 10 : code.charCodeAt(0));
    }
  }
  return Uint8Array.from(out);
}

export function readOrderVectors() {
  const vectors = [];
  for (const line of readFileSync(join(repoRoot, 'tests', 'data', 'orders.txt'), 'utf8').split('\n')) {
    const colon = line.indexOf(': ');
    if (line === '' || line.startsWith('#') || colon < 0) {
      continue;
    }
    const field = line.slice(0, colon);
    const value = line.slice(colon + 2);
    if (field === 'name') {
      vectors.push({ name: value, action: '', pieces: [], text: null, oneway: '' });
      continue;
    }
    const vector = vectors.at(-1);
    if (field === 'action') {
      vector.action = value;
    } else if (field === 'piece') {
      const tab = value.indexOf('\t');
      vector.pieces.push([unescapeVectorText(value.slice(0, tab)), unescapeVectorText(value.slice(tab + 1))]);
    } else if (field === 'text') {
      vector.text = unescapeVectorText(value);
    } else if (field === 'oneway') {
      vector.oneway = value;
    } else {
      throw new Error(`unknown field in orders.txt: ${line}`);
    }
  }
  return vectors;
}

// --- Randomness --------------------------------------------------------------

// A seeded generator (mulberry32); the seed comes from PQ_SEED or the clock,
// and is printed so that a failing run can be repeated.
export function seededRandom(label) {
  const seed = Number(process.env.PQ_SEED ?? Date.now() % 2 ** 31);
  console.log(`# ${label}: seed ${seed} (PQ_SEED=${seed} repeats it)`);
  let state = seed >>> 0;
  const next = () => {
    state = (state + 0x6d2b79f5) >>> 0;
    let t = state;
    t = Math.imul(t ^ (t >>> 15), t | 1);
    t ^= t + Math.imul(t ^ (t >>> 7), t | 61);
    return ((t ^ (t >>> 14)) >>> 0) / 2 ** 32;
  };
  const below = (n) => Math.floor(next() * n);
  return { seed, next, below, pick: (list) => list[below(list.length)] };
}

// --- JSON as the native tool prints it ------------------------------------------

// Reads the JSON values that follow one another in `text`, objects as lists
// of [key, value] (so that duplicate keys and their order are kept).
export function readJsonStream(text) {
  let at = 0;
  const blanks = () => {
    while (at < text.length && ' \t\r\n'.includes(text[at])) {
      ++at;
    }
  };
  const value = () => {
    blanks();
    const first = text[at];
    if (first === '{' || first === '[') {
      ++at;
      const items = [];
      blanks();
      const end = first === '{' ? '}' : ']';
      while (text[at] !== end) {
        if (first === '{') {
          const key = value();
          blanks();
          ++at; // ':'
          items.push([key, value()]);
        } else {
          items.push(value());
        }
        blanks();
        if (text[at] === ',') {
          ++at;
          blanks();
        }
      }
      ++at;
      return first === '{' ? { entries: items } : items;
    }
    const start = at;
    if (first === '"') {
      for (++at; text[at] !== '"'; at += text[at] === '\\' ? 2 : 1);
      ++at;
    } else {
      while (at < text.length && !',]} \t\r\n'.includes(text[at])) {
        ++at;
      }
    }
    return JSON.parse(text.slice(start, at));
  };
  const values = [];
  for (blanks(); at < text.length; blanks()) {
    values.push(value());
  }
  return values;
}

// A value read by readJsonStream, as JSON.parse would give it.
export function plain(value) {
  if (Array.isArray(value)) {
    return value.map(plain);
  }
  if (value !== null && typeof value === 'object') {
    return Object.fromEntries(value.entries.map(([key, member]) => [key, plain(member)]));
  }
  return value;
}
