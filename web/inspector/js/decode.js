// The Decode view: pasted or dropped text handed to the worker, the orders
// it finds in a virtualised table, and the chosen order in detail.
'use strict';

function setUpDecodeView(pq) {
  const { appendVisible, visibleText, asBytes, asText } = InspectorBytes;
  const $ = (id) => document.getElementById(id);
  const kRowHeight = 28;
  const kOverscan = 8;
  const kMask = '*******';
  const kContentKey = 'content';
  const valueOf = new Map(pq.actions().map((action) => [action.name, action.value]));

  // --- The worker -----------------------------------------------------------
  const source = `${pqutilsLoad.toString()}\n(${inspectorWorker.toString()})();\n`;
  const workerUrl = URL.createObjectURL(new Blob([source], { type: 'text/javascript' }));
  const worker = new Worker(workerUrl);
  worker.postMessage({ type: 'init', wasm: pqutilsWasmBase64 });

  let lastId = 0;
  let text = new Uint8Array(0); // what the rows point into
  let result = null; // the worker's last answer
  let selected = -1;

  const status = $('decode-status');
  const progress = $('progress');

  worker.onmessage = (event) => {
    const message = event.data;
    if (message.type === 'failed') {
      status.textContent = `Decoding failed: ${message.message}`;
      return;
    }
    if (message.id !== lastId) {
      return; // an answer to text replaced since
    }
    if (message.type === 'progress') {
      progress.max = message.total;
      progress.value = message.done;
    } else if (message.type === 'done') {
      showResult(message);
    }
  };
  worker.onerror = (event) => {
    event.preventDefault();
    status.textContent = 'The decoding worker stopped.';
  };

  function decode(bytes, sourceName) {
    text = bytes;
    result = null;
    lastId += 1;
    $('source-name').textContent = sourceName;
    progress.max = Math.max(bytes.length, 1);
    progress.value = 0;
    progress.dataset.state = 'running';
    status.textContent = bytes.length === 0 ? '' : 'Decoding…';
    status.removeAttribute('data-orders');
    const copy = bytes.slice();
    worker.postMessage({ type: 'decode', id: lastId, bytes: copy }, [copy.buffer]);
  }

  function showResult(message) {
    result = message;
    progress.value = progress.max;
    progress.dataset.state = 'done';
    const number = (n) => n.toLocaleString('en');
    const orders = `${number(message.count)} order${message.count === 1 ? '' : 's'}`;
    const skipped = message.skipped > 0 ? `, ${number(message.skipped)} line${message.skipped === 1 ? '' : 's'} without an order skipped` : '';
    status.textContent = text.length === 0 ? '' : `${orders}${skipped}, decoded in ${number(Math.round(message.ms))} ms.`;
    status.dataset.orders = String(message.count);
    status.dataset.skipped = String(message.skipped);
    status.dataset.ms = String(Math.round(message.ms));
    $('log-view').hidden = message.count < 2;
    $('log-rows').closest('table').setAttribute('aria-rowcount', String(message.count + 1));
    logScroll.scrollTop = 0;
    select(message.count > 0 ? 0 : -1);
    renderRows();
  }

  // --- Input: paste, drop, open ----------------------------------------------
  const input = $('order-input');
  let pending = 0;
  input.addEventListener('input', () => {
    clearTimeout(pending);
    pending = setTimeout(() => decode(asBytes(input.value), ''), 120);
  });

  async function takeFile(file) {
    clearTimeout(pending);
    input.value = '';
    decode(new Uint8Array(await file.arrayBuffer()), `${file.name} (${file.size.toLocaleString('en')} bytes)`);
  }
  $('file-input').addEventListener('change', (event) => {
    if (event.target.files.length > 0) {
      takeFile(event.target.files[0]);
    }
  });
  const zone = $('drop-zone');
  // A file dropped anywhere else would replace the page.
  for (const type of ['dragover', 'drop']) {
    document.addEventListener(type, (event) => event.preventDefault());
  }
  zone.addEventListener('dragover', () => zone.classList.add('over'));
  zone.addEventListener('dragleave', () => zone.classList.remove('over'));
  zone.addEventListener('drop', (event) => {
    event.preventDefault();
    zone.classList.remove('over');
    const data = event.dataTransfer;
    if (data.files.length > 0) {
      takeFile(data.files[0]);
    } else {
      input.value = data.getData('text/plain');
      decode(asBytes(input.value), '');
    }
  });

  // --- The table of orders: only the rows in sight are in the page ------------
  const logScroll = $('log-scroll');
  const logRows = $('log-rows');

  function cell(row, content) {
    const td = document.createElement('td');
    if (content instanceof Uint8Array) {
      appendVisible(td, content);
    } else {
      td.textContent = content;
    }
    row.append(td);
  }

  function actionLabel(i) {
    const name = result.columns.name[i];
    return name < 0 ? '(none)' : result.names[name];
  }

  // The rows are replaced in one step: emptying the table first would clamp
  // the scroll position to its empty height.
  // The start of an order, cut between characters (not inside one).
  const kPreviewBytes = 160;
  function previewEnd(start, end) {
    let cut = Math.min(end, start + kPreviewBytes);
    while (cut < end && cut > start && (text[cut] & 0xc0) === 0x80) {
      --cut;
    }
    return cut;
  }

  function renderRows() {
    if (result === null || result.count < 2) {
      logRows.replaceChildren();
      return;
    }
    const first = Math.max(0, Math.floor(logScroll.scrollTop / kRowHeight) - kOverscan);
    const last = Math.min(result.count, Math.ceil((logScroll.scrollTop + logScroll.clientHeight) / kRowHeight) + kOverscan);
    const spacer = (height) => {
      const row = document.createElement('tr');
      row.className = 'spacer';
      row.setAttribute('aria-hidden', 'true');
      // Set from script: the policy forbids style attributes in markup only.
      row.style.height = `${height}px`;
      return row;
    };
    const { columns } = result;
    const rows = [spacer(first * kRowHeight)];
    for (let i = first; i < last; ++i) {
      const row = document.createElement('tr');
      row.dataset.index = String(i);
      row.setAttribute('aria-rowindex', String(i + 2));
      if (i === selected) {
        row.setAttribute('aria-current', 'true');
      }
      row.classList.toggle('has-dropped', columns.dropped[i] > 0);
      cell(row, String(columns.line[i]));
      cell(row, actionLabel(i));
      cell(row, columns.known[i] ? String(columns.value[i]) : '');
      cell(row, String(columns.pieces[i]));
      cell(row, columns.dropped[i] > 0 ? String(columns.dropped[i]) : '');
      cell(row, text.subarray(columns.start[i], previewEnd(columns.start[i], columns.end[i])));
      rows.push(row);
    }
    rows.push(spacer((result.count - last) * kRowHeight));
    logRows.replaceChildren(...rows);
  }
  let frame = 0;
  logScroll.addEventListener('scroll', () => {
    cancelAnimationFrame(frame);
    frame = requestAnimationFrame(renderRows);
  });
  logRows.addEventListener('click', (event) => {
    const row = event.target.closest('tr[data-index]');
    if (row !== null) {
      select(Number(row.dataset.index));
      renderRows();
    }
  });
  logScroll.addEventListener('keydown', (event) => {
    if (result === null || result.count < 2) {
      return;
    }
    const page = Math.max(1, Math.floor(logScroll.clientHeight / kRowHeight) - 1);
    const moves = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -result.count, End: result.count };
    if (!(event.key in moves)) {
      return;
    }
    event.preventDefault();
    const next = Math.min(result.count - 1, Math.max(0, selected + moves[event.key]));
    select(next);
    const top = next * kRowHeight;
    const header = logScroll.querySelector('thead').offsetHeight;
    if (top < logScroll.scrollTop) {
      logScroll.scrollTop = top;
    } else if (top + kRowHeight > logScroll.scrollTop + logScroll.clientHeight - header) {
      logScroll.scrollTop = top + kRowHeight - logScroll.clientHeight + header;
    }
    renderRows();
  });

  // --- One order in detail ---------------------------------------------------
  let shown = null; // the chosen order: its bytes and pieces

  function select(index) {
    selected = index;
    $('order-view').hidden = index < 0;
    if (index < 0) {
      shown = null;
      return;
    }
    const { columns } = result;
    showOrder(text.subarray(columns.start[index], columns.end[index]), columns.line[index]);
  }

  // The order's elements in their order: pieces, and the dropped ones in
  // between at their index. The raw values come from a second reading that
  // keeps the escape tokens; both readings split the same elements.
  function elementsOf(bytes) {
    const decoded = pq.parseOrder(bytes);
    const raw = pq.parseOrder(bytes, { removeEntities: false });
    const dropped = new Map(decoded.dropped.map((item) => [item.index, item]));
    const elements = [];
    let piece = 0;
    for (let index = 0; piece < decoded.pieces.length || dropped.has(index); ++index) {
      if (dropped.has(index)) {
        elements.push({ index, dropped: dropped.get(index) });
      } else {
        elements.push({ index, piece: decoded.pieces[piece], raw: raw.pieces[piece] });
        ++piece;
      }
    }
    for (const item of decoded.dropped) {
      if (item.index >= elements.length) {
        elements.push({ index: item.index, dropped: item });
      }
    }
    return elements;
  }

  function showOrder(bytes, line) {
    const elements = elementsOf(bytes);
    const first = elements[0];
    const hasAction = first !== undefined && first.piece !== undefined && asText(first.piece.key) === 'action';
    const action = hasAction ? asText(first.piece.value) : null;
    shown = { bytes, elements, action, line };
    $('order-heading').textContent = result.count > 1 ? `Order of line ${line}` : 'Order';
    const actionText = $('order-action');
    if (action === null) {
      actionText.textContent = 'No action: the order does not start with an action piece.';
    } else if (valueOf.has(action)) {
      actionText.textContent = `Action ${action}, value ${valueOf.get(action)}`;
    } else {
      actionText.textContent = `Action ${action}, not in the vocabulary`;
    }
    actionText.dataset.action = action ?? '';
    actionText.dataset.value = action !== null && valueOf.has(action) ? String(valueOf.get(action)) : '';

    const rows = [];
    for (const element of elements.slice(hasAction ? 1 : 0)) {
      const row = document.createElement('tr');
      cell(row, String(element.index));
      if (element.dropped !== undefined) {
        row.className = 'dropped';
        const td = document.createElement('td');
        td.colSpan = 3;
        const mark = document.createElement('span');
        mark.className = 'dropped-mark';
        mark.textContent = `dropped: ${element.dropped.reason}`;
        const body = document.createElement('span');
        body.className = 'element';
        appendVisible(body, asBytes(element.dropped.element));
        td.append(mark, ' ', body);
        row.append(td);
      } else {
        cell(row, asBytes(element.piece.key));
        cell(row, asBytes(element.piece.value));
        cell(row, element.raw === undefined ? '' : asBytes(element.raw.value));
      }
      rows.push(row);
    }
    $('pieces-rows').replaceChildren(...rows);
    showJson(bytes, elements);
    $('share-text').value = '';
    $('share-status').textContent = '';
  }

  // --- JSON content as a tree ---------------------------------------------------
  function jsonNode(key, value, depth) {
    const item = document.createElement('li');
    const label = document.createElement('span');
    label.className = 'json-key';
    label.textContent = key === null ? '' : `${key}: `;
    if (value !== null && typeof value === 'object' && !(value instanceof Uint8Array)) {
      const isArray = Array.isArray(value);
      const entries = isArray ? value.map((member, i) => [String(i), member]) : Object.entries(value);
      const details = document.createElement('details');
      details.open = depth === 0;
      const summary = document.createElement('summary');
      const size = document.createElement('span');
      size.className = 'json-size';
      size.textContent = isArray ? `[${entries.length} item${entries.length === 1 ? '' : 's'}]` : `{${entries.length} member${entries.length === 1 ? '' : 's'}}`;
      summary.append(label, size);
      const list = document.createElement('ul');
      list.append(...entries.map(([name, member]) => jsonNode(name, member, depth + 1)));
      details.append(summary, list);
      item.append(details);
    } else {
      const leaf = document.createElement('span');
      if (value instanceof Uint8Array) {
        leaf.className = 'json-string';
        // Quoted as in JSON text, so that a quote inside reads as one.
        leaf.append('"');
        appendVisible(leaf, value, (text) => text.replace(/["\\]/g, '\\$&'));
        leaf.append('"');
      } else {
        leaf.className = `json-${value === null ? 'null' : typeof value}`;
        leaf.textContent = JSON.stringify(value);
      }
      item.append(label, leaf);
    }
    return item;
  }

  function showJson(bytes, elements) {
    const view = $('json-view');
    const tree = $('json-tree');
    const hasContent = elements.some((element) => element.piece !== undefined && asText(element.piece.key) === kContentKey);
    view.hidden = !hasContent;
    if (!hasContent) {
      tree.replaceChildren();
      return;
    }
    try {
      const root = document.createElement('ul');
      root.setAttribute('aria-label', 'JSON content');
      root.append(jsonNode(null, pq.parseJsonContent(bytes), 0));
      tree.replaceChildren(root);
    } catch (error) {
      const note = document.createElement('p');
      note.className = 'error';
      note.textContent = `The content is not JSON: ${error.message}`;
      tree.replaceChildren(note);
    }
  }

  // --- Copy as text ---------------------------------------------------------------
  // Card numbers get the library's masking; every other value is masked whole.
  const kCardLike = /^[0-9][0-9 -]{10,21}[0-9]$/;
  function masked(bytes) {
    const value = asText(bytes);
    const digits = value.replace(/[ -]/g, '').length;
    if (!kCardLike.test(value) || digits < 12 || digits > 19) {
      return kMask;
    }
    const card = pq.checkCard(value);
    return card.luhn ? card.masked : kMask;
  }

  function shareText(clear) {
    const show = (value) => (clear ? visibleText(asBytes(value)) : masked(asBytes(value)));
    const lines = [shown.action === null ? 'action: (none)' : `action: ${shown.action}${valueOf.has(shown.action) ? ` (${valueOf.get(shown.action)})` : ''}`];
    for (const element of shown.elements.slice(shown.action === null ? 0 : 1)) {
      if (element.dropped !== undefined) {
        lines.push(`dropped #${element.index} (${element.dropped.reason}): ${show(element.dropped.element)}`);
      } else {
        lines.push(`${visibleText(asBytes(element.piece.key))} = ${show(element.piece.value)}`);
      }
    }
    return lines.join('\n') + '\n';
  }

  $('copy-as-text').addEventListener('click', async () => {
    if (shown === null) {
      return;
    }
    const textToShare = shareText($('share-clear').checked);
    // The clear form is given once per request: the box does not stay ticked.
    $('share-clear').checked = false;
    const area = $('share-text');
    area.value = textToShare;
    const note = $('share-status');
    try {
      await navigator.clipboard.writeText(textToShare);
      note.textContent = 'Copied to the clipboard.';
    } catch {
      area.select();
      note.textContent = 'The browser did not allow copying: the text is selected, copy it with the keyboard.';
    }
  });
  return { decode };
}
