// Bytes made visible: runs of well-formed UTF-8 text as they are, each
// control byte as its escape (\t, \n, \r, \xHH) and each byte that is not
// part of a well-formed UTF-8 sequence as \xHH, both marked.
'use strict';

const InspectorBytes = (() => {
  const decoder = new TextDecoder();
  const encoder = new TextEncoder();

  // The well-formed sequences: lead bytes, the range of the second byte,
  // and the length (the bytes after the second are all 0x80..0xBF).
  const kSequences = [
    [0xc2, 0xdf, 0x80, 0xbf, 2],
    [0xe0, 0xe0, 0xa0, 0xbf, 3],
    [0xe1, 0xec, 0x80, 0xbf, 3],
    [0xed, 0xed, 0x80, 0x9f, 3],
    [0xee, 0xef, 0x80, 0xbf, 3],
    [0xf0, 0xf0, 0x90, 0xbf, 4],
    [0xf1, 0xf3, 0x80, 0xbf, 4],
    [0xf4, 0xf4, 0x80, 0x8f, 4],
  ];
  const kNamed = { 0x09: '\\t', 0x0a: '\\n', 0x0d: '\\r' };

  // The length of the well-formed sequence at `at`, 0 when there is none.
  function sequenceLength(bytes, at) {
    const lead = bytes[at];
    for (const [low, high, secondLow, secondHigh, length] of kSequences) {
      if (lead < low || lead > high) {
        continue;
      }
      if (at + length > bytes.length || bytes[at + 1] < secondLow || bytes[at + 1] > secondHigh) {
        return 0;
      }
      for (let i = 2; i < length; ++i) {
        if ((bytes[at + i] & 0xc0) !== 0x80) {
          return 0;
        }
      }
      return length;
    }
    return 0;
  }

  const hex = (byte) => '\\x' + byte.toString(16).padStart(2, '0');

  // Calls text(string) for each run of visible text and mark(kind, label,
  // byte) for each byte shown escaped; kind is 'ctl' or 'bad'.
  function walk(bytes, text, mark) {
    let start = 0;
    let at = 0;
    const flush = () => {
      if (at > start) {
        text(decoder.decode(bytes.subarray(start, at)));
      }
    };
    while (at < bytes.length) {
      const byte = bytes[at];
      let length = 1;
      if (byte < 0x20 || byte === 0x7f) {
        flush();
        mark('ctl', kNamed[byte] ?? hex(byte), byte);
        start = ++at;
        continue;
      }
      if (byte >= 0x80) {
        length = sequenceLength(bytes, at);
        if (length === 0) {
          flush();
          mark('bad', hex(byte), byte);
          start = ++at;
          continue;
        }
      }
      at += length;
    }
    flush();
  }

  const kTitles = { ctl: 'control byte', bad: 'byte that is not UTF-8' };

  // Appends the bytes, made visible, to a DOM element; `shape` may rewrite
  // the runs of text (to escape quotes, say).
  function appendVisible(parent, bytes, shape = (text) => text) {
    walk(
      bytes,
      (text) => parent.append(shape(text)),
      (kind, label, byte) => {
        const span = document.createElement('span');
        span.className = kind;
        span.title = `${kTitles[kind]} 0x${byte.toString(16).padStart(2, '0')}`;
        span.textContent = label;
        parent.append(span);
      },
    );
  }

  // The bytes as one line of text, escapes in place of what is not visible.
  function visibleText(bytes) {
    let out = '';
    walk(
      bytes,
      (text) => (out += text),
      (kind, label) => (out += label),
    );
    return out;
  }

  const asBytes = (value) => (typeof value === 'string' ? encoder.encode(value) : value);
  const asText = (value) => (typeof value === 'string' ? value : decoder.decode(value));

  return { appendVisible, visibleText, asBytes, asText };
})();
