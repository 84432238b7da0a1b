// The Build view: an order made from a form (an action with completion from
// the vocabulary, then key/value pieces or JSON content), its text rendered
// by the library as the form changes.
'use strict';

function setUpBuildView(pq) {
  const $ = (id) => document.getElementById(id);
  const actions = pq.actions();
  const valueOf = new Map(actions.map((action) => [action.name, action.value]));

  const list = $('action-list');
  list.append(
    ...actions.map((action) => {
      const option = document.createElement('option');
      option.value = action.name;
      option.label = `${action.name} (${action.value})`;
      return option;
    }),
  );

  const rows = $('build-rows');
  let rowCount = 0;

  function field(labelText, className) {
    const id = `build-field-${++rowCount}`;
    const label = document.createElement('label');
    label.htmlFor = id;
    label.textContent = labelText;
    const input = document.createElement('input');
    input.id = id;
    input.className = className;
    input.autocomplete = 'off';
    input.spellcheck = false;
    return [label, input];
  }

  // Rows are numbered by their place, so their labels are renamed when one
  // goes.
  function renumber() {
    [...rows.children].forEach((row, i) => {
      const labels = row.querySelectorAll('label');
      labels[0].textContent = `Key ${i + 1}`;
      labels[1].textContent = `Value ${i + 1}`;
      row.querySelector('button').textContent = `Remove piece ${i + 1}`;
    });
  }

  function addRow(key = '', value = '') {
    const row = document.createElement('div');
    row.className = 'row build-row';
    const [keyLabel, keyInput] = field('Key', 'build-key');
    const [valueLabel, valueInput] = field('Value', 'build-value');
    keyInput.value = key;
    valueInput.value = value;
    const remove = document.createElement('button');
    remove.type = 'button';
    remove.addEventListener('click', () => {
      const next = row.nextElementSibling ?? row.previousElementSibling;
      row.remove();
      renumber();
      render();
      (next?.querySelector('input') ?? $('build-add')).focus();
    });
    row.append(keyLabel, keyInput, valueLabel, valueInput, remove);
    rows.append(row);
    renumber();
    return keyInput;
  }

  const actionOf = (text) => (/^-?[0-9]+$/.test(text) ? Number(text) : text);

  function render() {
    const name = $('build-action').value.trim();
    const shownValue = $('build-action-value');
    if (valueOf.has(name)) {
      shownValue.textContent = `value ${valueOf.get(name)}`;
    } else if (/^-?[0-9]+$/.test(name)) {
      const match = actions.find((action) => action.value === Number(name));
      shownValue.textContent = match === undefined ? 'no action has this value' : `action ${match.name}`;
    } else {
      shownValue.textContent = 'not in the vocabulary';
    }
    const output = $('build-output');
    const status = $('build-status');
    try {
      if ($('build-kind-json').checked) {
        let content;
        try {
          content = JSON.parse($('build-json-text').value);
        } catch (error) {
          throw new Error(`the content is not JSON: ${error.message}`);
        }
        output.value = pq.renderJsonOrder(actionOf(name), content);
      } else {
        const pieces = [...rows.children].map((row) => [row.querySelector('.build-key').value, row.querySelector('.build-value').value]);
        output.value = pq.renderOrder(actionOf(name), pieces);
      }
      status.textContent = '';
    } catch (error) {
      output.value = '';
      status.textContent = `No order: ${error.message}`;
    }
  }

  function showKind() {
    const json = $('build-kind-json').checked;
    $('build-json').hidden = !json;
    $('build-pieces').hidden = json;
    render();
  }

  $('build-add').addEventListener('click', () => {
    addRow().focus();
    render();
  });
  $('panel-build').addEventListener('input', render);
  $('build-kind-pieces').addEventListener('change', showKind);
  $('build-kind-json').addEventListener('change', showKind);
  $('build-copy').addEventListener('click', async () => {
    const status = $('build-status');
    try {
      await navigator.clipboard.writeText($('build-output').value);
      status.textContent = 'Copied to the clipboard.';
    } catch {
      $('build-output').select();
      status.textContent = 'The browser did not allow copying: the text is selected, copy it with the keyboard.';
    }
  });

  addRow('level', '3');
  addRow('text', 'a=b');
  showKind();
}
