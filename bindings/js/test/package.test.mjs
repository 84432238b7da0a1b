// The package as users take it: its version is the library's, `npm pack`
// makes a tarball that installs and imports, and it runs where code
// generation from strings is forbidden (as under a strict
// Content-Security-Policy).

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';

import { packageDir, repoRoot } from './support.mjs';

const manifest = JSON.parse(readFileSync(join(packageDir, 'package.json'), 'utf8'));

// A script that uses the package and prints what it gets.
const useScript = `
import { parseOrder, renderOrder } from 'pqutils-wasm';
const text = renderOrder('log', { a: 'x=y' });
console.log(text, parseOrder(text).pieces[1].value);
`;
const expectedOutput = 'action=log&a=x--equ--y&// x=y\n';

test('the package version is the library version', () => {
  const project = readFileSync(join(repoRoot, 'CMakeLists.txt'), 'utf8');
  const version = project.match(/project\(\s*PQUtils\s+VERSION\s+([0-9.]+)/)[1];
  assert.equal(manifest.version, version);
});

test('npm pack gives a tarball that installs and imports, also without code generation from strings', (t) => {
  const work = mkdtempSync(join(tmpdir(), 'pqutils-wasm-'));
  t.after(() => rmSync(work, { recursive: true, force: true }));
  const npm = (args, cwd) =>
    execFileSync('npm', [...args, '--no-audit', '--no-fund', '--offline'], { cwd, encoding: 'utf8' });

  const [packed] = JSON.parse(npm(['pack', '--json', '--pack-destination', work], packageDir));
  assert.deepEqual(packed.files.map(({ path }) => path).sort(), [
    'dist/pqutils-core-wasm.mjs',
    'dist/pqutils-core.mjs',
    'index.d.ts',
    'index.js',
    'package.json',
  ]);

  const app = join(work, 'app');
  execFileSync('mkdir', [app]);
  writeFileSync(join(app, 'package.json'), JSON.stringify({ name: 'app', private: true, type: 'module' }));
  npm(['install', join(work, packed.filename)], app);
  writeFileSync(join(app, 'use.mjs'), useScript);

  for (const flags of [[], ['--disallow-code-generation-from-strings']]) {
    const run = spawnSync(process.execPath, [...flags, 'use.mjs'], { cwd: app, encoding: 'utf8' });
    assert.equal(run.stderr, '', flags.join(' '));
    assert.equal(run.stdout, expectedOutput, flags.join(' '));
  }
  // The flag does forbid it.
  const control = spawnSync(process.execPath, ['--disallow-code-generation-from-strings', '-e', 'eval("1")']);
  assert.notEqual(control.status, 0);
});
