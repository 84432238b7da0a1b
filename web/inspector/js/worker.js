// The decoding worker. A page opened from disk may not start a worker from
// a file, so the page starts it from a Blob made of the source text of
// pqutilsLoad and of inspectorWorker below (both already loaded): this
// function must use nothing from outside itself.
//
// Messages in:  {type: 'init', wasm}            the module's bytes, as Base64
//               {type: 'decode', id, bytes}      a Uint8Array of text
// Messages out: {type: 'ready'} | {type: 'failed', message}
//               {type: 'progress', id, done, total}
//               {type: 'done', id, ...the orders found, as columns}
//
// The text is one order, or a log: when more than one line holds
// "action=", each line is an order from its "action=" to its end mark
// "&//" (or the line's end), and lines without "action=" are skipped and
// counted. Otherwise the whole text is one order, from its first "action="
// to the first end mark after it.

function inspectorWorker() {
  'use strict';

  const kStart = [0x61, 0x63, 0x74, 0x69, 0x6f, 0x6e, 0x3d]; // action=
  const kEnd = [0x26, 0x2f, 0x2f]; // &//
  const kLineFeed = 0x0a;
  const kReturn = 0x0d;
  const kProgressEveryMs = 40;

  let pq = null;
  let valueOf = null;
  let settle;
  const ready = new Promise((resolve) => (settle = resolve));
  const decoder = new TextDecoder();

  // The first place of `needle` in bytes[from, to), or -1.
  function find(bytes, needle, from, to) {
    const first = needle[0];
    const last = to - needle.length;
    for (let at = bytes.indexOf(first, from); at !== -1 && at <= last; at = bytes.indexOf(first, at + 1)) {
      let i = 1;
      while (i < needle.length && bytes[at + i] === needle[i]) {
        ++i;
      }
      if (i === needle.length) {
        return at;
      }
    }
    return -1;
  }

  // The order in bytes[from, to): its start and end, or null.
  function orderIn(bytes, from, to, needsStart) {
    const start = find(bytes, kStart, from, to);
    if (start < 0 && needsStart) {
      return null;
    }
    const begin = start < 0 ? from : start;
    const end = find(bytes, kEnd, begin, to);
    return { start: begin, end: end < 0 ? to : end + kEnd.length };
  }

  // The lines: [start, end) without the line break; no line after a final
  // line feed.
  function linesOf(bytes) {
    const lines = [];
    let start = 0;
    while (start < bytes.length) {
      let end = bytes.indexOf(kLineFeed, start);
      const next = end < 0 ? bytes.length : end + 1;
      end = end < 0 ? bytes.length : end;
      lines.push(start, end > start && bytes[end - 1] === kReturn ? end - 1 : end);
      start = next;
    }
    return lines;
  }

  function decode(id, bytes) {
    const began = performance.now();
    const lines = linesOf(bytes);
    let withOrder = 0;
    for (let i = 0; i < lines.length && withOrder < 2; i += 2) {
      withOrder += find(bytes, kStart, lines[i], lines[i + 1]) < 0 ? 0 : 1;
    }
    const spans = [];
    const lineNumbers = [];
    let skipped = 0;
    if (withOrder < 2) {
      let end = bytes.length;
      end -= end > 0 && bytes[end - 1] === kLineFeed ? 1 : 0;
      end -= end > 0 && bytes[end - 1] === kReturn ? 1 : 0;
      const span = orderIn(bytes, 0, end, false);
      if (span.end > span.start) {
        spans.push(span);
        let line = 1;
        for (let at = bytes.indexOf(kLineFeed); at !== -1 && at < span.start; at = bytes.indexOf(kLineFeed, at + 1)) {
          ++line;
        }
        lineNumbers.push(line);
      }
    } else {
      for (let i = 0; i < lines.length; i += 2) {
        const span = orderIn(bytes, lines[i], lines[i + 1], true);
        if (span === null) {
          ++skipped;
        } else {
          spans.push(span);
          lineNumbers.push(i / 2 + 1);
        }
      }
    }

    const count = spans.length;
    const columns = {
      line: Int32Array.from(lineNumbers),
      start: new Int32Array(count),
      end: new Int32Array(count),
      pieces: new Int32Array(count),
      dropped: new Int32Array(count),
      value: new Int32Array(count),
      known: new Uint8Array(count), // 1 when the action is in the vocabulary
      name: new Int32Array(count),
    };
    // Action names, each once; the columns hold their index (-1: none).
    const names = [];
    const nameIndex = new Map();
    let lastReport = began;
    for (let i = 0; i < count; ++i) {
      const { start, end } = spans[i];
      const order = pq.parseOrder(bytes.subarray(start, end));
      const first = order.pieces[0];
      const hasAction = first !== undefined && decoder.decode(first.key) === 'action';
      columns.start[i] = start;
      columns.end[i] = end;
      columns.pieces[i] = order.pieces.length - (hasAction ? 1 : 0);
      columns.dropped[i] = order.dropped.length;
      columns.name[i] = -1;
      if (hasAction) {
        const name = decoder.decode(first.value);
        let index = nameIndex.get(name);
        if (index === undefined) {
          index = names.length;
          names.push(name);
          nameIndex.set(name, index);
        }
        columns.name[i] = index;
        columns.known[i] = valueOf.has(name) ? 1 : 0;
        columns.value[i] = valueOf.get(name) ?? 0;
      }
      const now = performance.now();
      if (now - lastReport >= kProgressEveryMs) {
        lastReport = now;
        self.postMessage({ type: 'progress', id, done: end, total: bytes.length });
      }
    }
    const buffers = Object.values(columns).map((column) => column.buffer);
    self.postMessage(
      { type: 'done', id, columns, names, count, skipped, lines: lines.length / 2, ms: performance.now() - began },
      buffers,
    );
  }

  self.onmessage = async (event) => {
    const message = event.data;
    try {
      if (message.type === 'init') {
        // pqutilsLoad comes with this function in the worker's source.
        pq = await pqutilsLoad(message.wasm);
        valueOf = new Map(pq.actions().map((action) => [action.name, action.value]));
        settle();
        self.postMessage({ type: 'ready' });
      } else if (message.type === 'decode') {
        await ready;
        decode(message.id, message.bytes);
      }
    } catch (error) {
      self.postMessage({ type: 'failed', id: message.id, message: String(error && error.message ? error.message : error) });
    }
  };
}
