// pqutils-wasm: the order text codec, the JSON orders, the escapes and the
// validators of PQUtils, compiled to WebAssembly: the same code on both
// ends of the wire.
//
// Texts cross as UTF-8. Every text may also be a Uint8Array, for bytes that
// are not UTF-8; a text comes back as a Uint8Array when the text it comes
// from was one. Misuse throws an Error with the library's message, and the
// module stays usable after it.

import createPQUtilsCore from './dist/pqutils-core.mjs';
import wasmBase64 from './dist/pqutils-core-wasm.mjs';

function bytesOfBase64(text) {
  const binary = atob(text);
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < binary.length; ++i) {
    bytes[i] = binary.charCodeAt(i);
  }
  return bytes;
}

// The module's own instance: its heap, its library state and its log (which
// goes nowhere: reports come back as data).
const core = await createPQUtilsCore({
  wasmBinary: bytesOfBase64(wasmBase64),
  print() {},
  printErr() {},
});
core._pq_init();

const encoder = new TextEncoder();
const kShortText = 64;
const decoder = new TextDecoder();

// The most bytes a text field can take in a request.
function boundOf(text) {
  return 4 + (typeof text === 'string' ? 3 * text.length : text.length);
}

function textOf(value, what) {
  if (typeof value === 'string' || value instanceof Uint8Array) {
    return value;
  }
  if (typeof value === 'number' || typeof value === 'boolean' || typeof value === 'bigint') {
    return String(value);
  }
  throw new TypeError(`${what} must be a string or a Uint8Array, not ${typeof value}`);
}

// A request written straight into the module's heap, in a buffer sized by a
// bound given up front (no allocation happens while it is written).
class Request {
  constructor(bound) {
    this.capacity = Math.max(bound, 1);
    this.ptr = core._pq_alloc(this.capacity);
    if (this.ptr === 0) {
      throw new RangeError('out of memory');
    }
    this.heap = core.HEAPU8;
    this.end = this.ptr;
  }

  byte(value) {
    this.heap[this.end++] = value;
  }

  number(value) {
    const heap = this.heap;
    heap[this.end] = value;
    heap[this.end + 1] = value >>> 8;
    heap[this.end + 2] = value >>> 16;
    heap[this.end + 3] = value >>> 24;
    this.end += 4;
  }

  // The text's bytes, without their length.
  bytes(text) {
    if (typeof text === 'string') {
      // Short ASCII texts are copied here: cheaper than a call to encodeInto.
      const heap = this.heap;
      let at = this.end;
      let i = 0;
      if (text.length <= kShortText) {
        for (; i < text.length; ++i) {
          const code = text.charCodeAt(i);
          if (code >= 0x80) {
            break;
          }
          heap[at++] = code;
        }
      }
      if (i === text.length) {
        this.end = at;
        return;
      }
      this.end += encoder.encodeInto(text, heap.subarray(this.end, this.ptr + this.capacity)).written;
    } else {
      this.heap.set(text, this.end);
      this.end += text.length;
    }
  }

  text(text) {
    const at = this.end;
    this.end += 4;
    this.bytes(text);
    const length = this.end - at - 4;
    this.end = at;
    this.number(length);
    this.end += length;
  }

  get size() {
    return this.end - this.ptr;
  }

  // Wipes what was written and frees the buffer.
  free() {
    core._pq_free(this.ptr, this.size);
  }
}

// The reply of the last call: its numbers and its texts, read in step.
class Reply {
  constructor() {
    const heap = core.HEAPU8;
    const start = core._pq_reply_data();
    const size = core._pq_reply_size();
    this.numbers = core.HEAPU32;
    this.nextNumber = core._pq_reply_numbers() >>> 2;
    this.bytes = heap.subarray(start, start + size);
    this.nextByte = 0;
    this.all = undefined;
  }

  // All the texts decoded in one call, when each byte decodes alone (ASCII,
  // and bytes that are not UTF-8 at all), so that cutting the result cuts
  // between the same characters as decoding text by text would: several
  // times faster than one call per text. Null otherwise.
  decodedAtOnce() {
    if (this.all === undefined) {
      const all = decoder.decode(this.bytes);
      this.all = all.length === this.bytes.length ? all : null;
    }
    return this.all;
  }

  number() {
    return this.numbers[this.nextNumber++];
  }

  text(asBytes) {
    const length = this.number();
    const at = this.nextByte;
    this.nextByte += length;
    if (asBytes) {
      return this.bytes.slice(at, at + length);
    }
    const all = this.decodedAtOnce();
    return all !== null
      ? all.slice(at, at + length)
      : decoder.decode(this.bytes.subarray(at, at + length));
  }

  texts(asBytes) {
    const list = [];
    for (let count = this.number(); count > 0; --count) {
      list.push(this.text(asBytes));
    }
    return list;
  }
}

// Runs a function of the module on a request, and reads its reply.
function run(request, call, read) {
  let status;
  try {
    status = call(request.ptr, request.size);
  } finally {
    request.free();
  }
  try {
    const reply = new Reply();
    if (status !== 0) {
      throw new Error(decoder.decode(reply.bytes));
    }
    return read(reply);
  } finally {
    core._pq_reply_release();
  }
}

// A function of one text, answering one text of the same kind.
function runOnText(call, text, what) {
  const input = textOf(text, what);
  const request = new Request(boundOf(input));
  request.bytes(input);
  return run(request, call, (reply) => reply.text(input instanceof Uint8Array));
}

function writeAction(request, action) {
  if (typeof action === 'number') {
    if (!Number.isInteger(action)) {
      throw new TypeError(`action ${action} is not an integer`);
    }
    request.byte(1);
    request.text(String(action));
  } else {
    request.byte(0);
    request.text(textOf(action, 'action'));
  }
}

function entriesOf(pairs) {
  if (Array.isArray(pairs)) {
    return pairs;
  }
  if (pairs !== null && typeof pairs === 'object') {
    return Object.entries(pairs);
  }
  throw new TypeError('pairs must be an array of [key, value] or an object');
}

/**
 * The order text of an action and its pieces.
 *   renderOrder('log', {level: 3, text: 'hi'}) -> 'action=log&level=3&text=hi&//'
 */
export function renderOrder(action, pairs) {
  const entries = entriesOf(pairs);
  const texts = [];
  let bound = 24 + boundOf(textOf(action, 'action'));
  let asBytes = false;
  for (const entry of entries) {
    if (!Array.isArray(entry) || entry.length !== 2) {
      throw new TypeError('each piece must be a [key, value] pair');
    }
    const key = textOf(entry[0], 'key');
    const value = textOf(entry[1], 'value');
    asBytes ||= key instanceof Uint8Array || value instanceof Uint8Array;
    bound += boundOf(key) + boundOf(value);
    texts.push(key, value);
  }
  const request = new Request(bound);
  writeAction(request, action);
  request.number(entries.length);
  for (const text of texts) {
    request.text(text);
  }
  return run(request, core._pq_render_order, (reply) => reply.text(asBytes));
}

/**
 * The pieces of order text, in order, and the elements dropped as malformed.
 *   parseOrder('action=log&a=1&junk&//')
 *     -> {pieces: [{key: 'action', value: 'log'}, {key: 'a', value: '1'}],
 *         dropped: [{index: 2, element: 'junk', reason: 'not key=value'}]}
 */
export function parseOrder(text, { removeEntities = true } = {}) {
  const input = textOf(text, 'order text');
  const asBytes = input instanceof Uint8Array;
  const request = new Request(boundOf(input));
  request.bytes(input);
  return run(
    request,
    (ptr, size) => core._pq_parse_order(ptr, size, removeEntities ? 1 : 0),
    (reply) => {
      const pieces = [];
      for (let count = reply.number(); count > 0; --count) {
        const key = reply.text(asBytes);
        pieces.push({ key, value: reply.text(asBytes) });
      }
      const dropped = [];
      for (let count = reply.number(); count > 0; --count) {
        const index = reply.number();
        const element = reply.text(asBytes);
        dropped.push({ index, element, reason: reply.text(false) });
      }
      return { pieces, dropped };
    },
  );
}

// The tags of a JSON value, as the module reads and writes them.
const kObject = 0x7b; // {
const kObjectEnd = 0x7d; // }
const kArray = 0x5b; // [
const kArrayEnd = 0x5d; // ]
const kKey = 0x6b; // k
const kString = 0x73; // s
const kLiteral = 0x6c; // l

// The most depth a JSON value may have.
const kMaxJsonDepth = 10000;

// Calls `visit(tag, text)` for each tag of `value`, walking with its own
// stack; a member whose value is undefined is left out, as JSON.stringify
// does.
function walkJson(value, visit) {
  const stack = [];
  let next = value;
  for (;;) {
    if (next !== undefined) {
      const item = next;
      next = undefined;
      if (typeof item === 'string' || item instanceof Uint8Array) {
        visit(kString, item);
      } else if (item === null || typeof item === 'boolean') {
        visit(kLiteral, String(item));
      } else if (typeof item === 'number') {
        if (!Number.isFinite(item)) {
          throw new TypeError(`${item} has no JSON text`);
        }
        visit(kLiteral, JSON.stringify(item));
      } else if (Array.isArray(item)) {
        visit(kArray);
        stack.push({ isArray: true, entries: item, index: 0 });
      } else if (typeof item === 'object') {
        visit(kObject);
        stack.push({ isArray: false, entries: Object.entries(item), index: 0 });
      } else {
        throw new TypeError(`a ${typeof item} has no JSON text`);
      }
      if (stack.length > kMaxJsonDepth) {
        throw new RangeError(`JSON nested deeper than ${kMaxJsonDepth} levels`);
      }
    }
    const top = stack[stack.length - 1];
    if (top === undefined) {
      return;
    }
    if (top.index === top.entries.length) {
      visit(top.isArray ? kArrayEnd : kObjectEnd);
      stack.pop();
    } else if (top.isArray) {
      next = top.entries[top.index++];
    } else {
      const [key, member] = top.entries[top.index++];
      if (member !== undefined) {
        visit(kKey, key);
        next = member;
      }
    }
  }
}

/**
 * The text of a JSON order: its content is `value` (an object's members
 * become the members of the order; an array or a string is the content
 * itself), built as the library's JSON tree and rendered by it.
 *   renderJsonOrder('log', {user: {name: 'a', id: 7}})
 *     -> 'action=log&content={"user":{"name":"a","id":7}}&//'
 */
export function renderJsonOrder(action, value) {
  let bound = 24 + boundOf(textOf(action, 'action'));
  let asBytes = false;
  const tags = [];
  walkJson(value, (tag, text) => {
    tags.push(tag, text);
    bound += 1 + (text === undefined ? 0 : boundOf(text));
    asBytes ||= text instanceof Uint8Array;
  });
  const request = new Request(bound);
  writeAction(request, action);
  for (let i = 0; i < tags.length; i += 2) {
    request.byte(tags[i]);
    if (tags[i + 1] !== undefined) {
      request.text(tags[i + 1]);
    }
  }
  return run(request, core._pq_render_json_order, (reply) => reply.text(asBytes));
}

/**
 * The content of a JSON order, decoded: strings unescaped as the library
 * unescapes them, numbers, booleans and null as JavaScript values. With a
 * Uint8Array, strings come back as Uint8Array (keys stay strings).
 *   parseJsonContent('action=log&content={"a":["x"]}&//') -> {a: ['x']}
 */
export function parseJsonContent(text) {
  const input = textOf(text, 'order text');
  const asBytes = input instanceof Uint8Array;
  const request = new Request(boundOf(input));
  request.bytes(input);
  return run(request, core._pq_parse_json_content, (reply) => {
    const stack = [];
    let key;
    let result;
    const place = (value) => {
      const top = stack[stack.length - 1];
      if (top === undefined) {
        result = value;
      } else if (Array.isArray(top)) {
        top.push(value);
      } else {
        // As JSON.parse does: "__proto__" is a member like any other.
        Object.defineProperty(top, key, { value, enumerable: true, writable: true, configurable: true });
      }
    };
    do {
      const tag = reply.number();
      if (tag === kKey) {
        key = reply.text(false);
      } else if (tag === kString) {
        place(reply.text(asBytes));
      } else if (tag === kLiteral) {
        const literal = reply.text(false);
        let parsed;
        try {
          parsed = JSON.parse(literal);
        } catch {
          throw new Error(`content is not JSON: ${literal} is not a value`);
        }
        place(parsed);
      } else if (tag === kObject || tag === kArray) {
        const container = tag === kObject ? {} : [];
        place(container);
        stack.push(container);
      } else {
        stack.pop();
      }
    } while (stack.length > 0);
    return result;
  });
}

/**
 * The order writer's escaping: "=" -> "--equ--", "&" -> "--amp--",
 * "//" -> "--dbsl--".
 */
export function escape(text) {
  return runOnText(core._pq_escape, text, 'text');
}

/** The order reader's unescaping, the tokens back to their characters. */
export function unescape(text) {
  return runOnText(core._pq_unescape, text, 'text');
}

// The policy's limits, named as the option names of `pqorder password`
// ("min-length"), and here in camel case (minLength).
const limitNames = run(new Request(0), core._pq_password_limits, (reply) =>
  reply.texts(false).map((name) => name.replace(/-([a-z])/g, (_, letter) => letter.toUpperCase())),
);

/**
 * Checks a password against the library's policy, changed for this check by
 * the limits given (minLength, maxLength, minDigits, maxDigits, minLetters,
 * maxLetters, minSpecial, maxSpecial, minLower, maxLower, minUpper,
 * maxUpper; a negative limit is none) and forbid (the bytes it must not
 * hold). The words are those of `pqorder password`.
 *   checkPassword('abcdefg1')
 *     -> {valid: false, broken: ['no upper-case letter'],
 *         holds: ['letters', 'digits', 'lower-case']}
 */
export function checkPassword(text, policy = {}) {
  const password = textOf(text, 'password');
  for (const name of Object.keys(policy)) {
    if (name !== 'forbid' && !limitNames.includes(name)) {
      throw new TypeError(`unknown password limit ${name}`);
    }
  }
  const forbid = policy.forbid === undefined ? '' : textOf(policy.forbid, 'forbid');
  const request = new Request(5 * limitNames.length + 1 + boundOf(forbid) + boundOf(password));
  for (const name of limitNames) {
    const limit = policy[name];
    if (limit !== undefined && !Number.isInteger(limit)) {
      throw new TypeError(`password limit ${name} must be an integer`);
    }
    request.byte(limit === undefined ? 0 : 1);
    request.number(limit === undefined ? 0 : limit);
  }
  request.byte(policy.forbid === undefined ? 0 : 1);
  request.text(forbid);
  request.text(password);
  return run(request, core._pq_check_password, (reply) => ({
    valid: reply.number() === 1,
    broken: reply.texts(false),
    holds: reply.texts(false),
  }));
}

/**
 * The Luhn check, the brand (null when no brand matches) and the masked
 * form of a card number, and the brand in the words of `pqorder card`.
 *   checkCard('4111111111111111')
 *     -> {luhn: true, brand: 'PAYMENT_TYPE_VISA', masked: 'XXXX XXXX XXXX 1111',
 *         brandWords: 'PAYMENT_TYPE_VISA'}
 */
export function checkCard(number) {
  const input = textOf(number, 'card number');
  const request = new Request(boundOf(input));
  request.bytes(input);
  return run(request, core._pq_check_card, (reply) => {
    const luhn = reply.number() === 1;
    const brand = reply.text(false);
    const masked = reply.text(input instanceof Uint8Array);
    return { luhn, brand: brand === '' ? null : brand, masked, brandWords: reply.text(false) };
  });
}

/** The Base64 text of bytes (a string is taken as its UTF-8 bytes). */
export function toBase64(bytes) {
  const input = textOf(bytes, 'bytes');
  const request = new Request(boundOf(input));
  request.bytes(input);
  return run(request, core._pq_to_base64, (reply) => reply.text(false));
}

/** Percent-decoding, as the library does it. */
export function urlDecode(text) {
  return runOnText(core._pq_url_decode, text, 'text');
}

/**
 * The action vocabulary, in the library's order: each action's name and
 * value (the number an order's action stands for).
 *   actions() -> [{name: 'NO_TYPE', value: 0}, ..., {name: 'log', value: ...}, ...]
 */
export function actions() {
  return run(new Request(0), core._pq_actions, (reply) => {
    const list = [];
    for (let count = reply.number(); count > 0; --count) {
      const value = reply.number() | 0;
      list.push({ name: reply.text(false), value });
    }
    return list;
  });
}

/** Bytes in use on the module's heap: for tests that calls give back what they take. */
export function heapInUse() {
  return core._pq_heap_in_use();
}

/** The size of the module's memory in bytes (it grows, never shrinks). */
export function memorySize() {
  return core.HEAPU8.buffer.byteLength;
}
