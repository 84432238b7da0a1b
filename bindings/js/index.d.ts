// pqutils-wasm: the order text codec, the JSON orders, the escapes and the
// validators of PQUtils, compiled to WebAssembly.
//
// Every text may be a string (sent as UTF-8) or a Uint8Array (sent as it
// is); a text comes back as a Uint8Array when the text it comes from was
// one. Misuse throws an Error with the library's message.

/** A text: a string, or bytes that need not be UTF-8. */
export type Text = string | Uint8Array;

/** A piece value; numbers, booleans and bigints are written as String() writes them. */
export type PieceValue = Text | number | boolean | bigint;

/** The pieces of an order: [key, value] pairs in order, or an object's own members. */
export type Pairs = ReadonlyArray<readonly [Text, PieceValue]> | Readonly<Record<string, PieceValue>>;

/** An action: its name ("log") or its value (303). */
export type Action = string | number;

export interface Piece<T extends Text = Text> {
  key: T;
  value: T;
}

export interface DroppedElement<T extends Text = Text> {
  /** Where it stands among the "&"-separated elements (the first is 0, empty ones counted). */
  index: number;
  /** Its text as received. */
  element: T;
  /** "not key=value", or the message of the failure that stopped it. */
  reason: string;
}

export interface ParsedOrder<T extends Text = Text> {
  pieces: Piece<T>[];
  dropped: DroppedElement<T>[];
}

export interface ParseOptions {
  /** Turn the escape tokens back into their characters (default true). */
  removeEntities?: boolean;
}

/** A JSON value as the orders carry it; strings may be bytes. */
export type JsonValue =
  | Text
  | number
  | boolean
  | null
  | JsonValue[]
  | { [key: string]: JsonValue | undefined };

export interface PasswordPolicy {
  minLength?: number;
  maxLength?: number;
  minDigits?: number;
  maxDigits?: number;
  minLetters?: number;
  maxLetters?: number;
  minSpecial?: number;
  maxSpecial?: number;
  minLower?: number;
  maxLower?: number;
  minUpper?: number;
  maxUpper?: number;
  /** Bytes the password must not hold. */
  forbid?: Text;
}

export interface PasswordReport {
  valid: boolean;
  /** The rules broken, in words: "fewer than 8 characters", "no digit", "a forbidden character". */
  broken: string[];
  /** The classes held: "letters", "digits", "lower-case", "upper-case", "special". */
  holds: string[];
}

export interface CardReport<T extends Text = Text> {
  luhn: boolean;
  /** The brand's name ("PAYMENT_TYPE_VISA"), or null when none matches. */
  brand: string | null;
  masked: T;
  /** The brand as `pqorder card` words it: the name, or "none (stored as NAME)", "unnamed (stored as NAME)". */
  brandWords: string;
}

/** The order text of an action and its pieces: renderOrder('log', {level: 3}) -> 'action=log&level=3&//'. */
export function renderOrder(action: Action, pairs: Pairs): string | Uint8Array;

/** The pieces of order text, and the elements dropped as malformed. */
export function parseOrder(text: string, options?: ParseOptions): ParsedOrder<string>;
export function parseOrder(text: Uint8Array, options?: ParseOptions): ParsedOrder<Uint8Array>;

/** The text of a JSON order whose content is `value`, rendered by the library's JSON tree. */
export function renderJsonOrder(action: Action, value: JsonValue): string | Uint8Array;

/** The decoded content of a JSON order. */
export function parseJsonContent(text: Text): JsonValue;

/** The order writer's escaping: "=" -> "--equ--", "&" -> "--amp--", "//" -> "--dbsl--". */
export function escape(text: string): string;
export function escape(text: Uint8Array): Uint8Array;

/** The order reader's unescaping. */
export function unescape(text: string): string;
export function unescape(text: Uint8Array): Uint8Array;

/** Checks a password against the library's policy, changed for this check by `policy`. */
export function checkPassword(text: Text, policy?: PasswordPolicy): PasswordReport;

/** The Luhn check, brand and masked form of a card number. */
export function checkCard(number: string): CardReport<string>;
export function checkCard(number: Uint8Array): CardReport<Uint8Array>;

/** The Base64 text of bytes (a string is taken as its UTF-8 bytes). */
export function toBase64(bytes: Text): string;

/** Percent-decoding, as the library does it. */
export function urlDecode(text: string): string;
export function urlDecode(text: Uint8Array): Uint8Array;

/** An action of the vocabulary: its name and value. */
export interface Action {
  name: string;
  value: number;
}

/** The action vocabulary, in the library's order. */
export function actions(): Action[];

/** Bytes in use on the module's heap. */
export function heapInUse(): number;

/** The size of the module's memory in bytes. */
export function memorySize(): number;
