// hex.js - the bytes, as hex digits and as text, of which only the rows in sight are elements.
//
// It is a grid with one cursor, for keyboard and screen reader alike. What is typed overwrites; Insert makes room.

const ROW_HEIGHT = 20; // pixels, as in style.css
const PADDING = 10; // pixels at each side, as there
const CELL_LETTERS = 3; // that a byte takes
const SPARE_ROWS = 4; // above and below what is seen
const MOST_PIXELS = 8_000_000; // browsers cannot make elements much taller
const MOST_UNDO = 200;

const HEX = Array.from({ length: 256 }, (_, byte) => byte.toString(16).toUpperCase().padStart(2, "0"));
const ESCAPED = { "&": "&amp;", "<": "&lt;", ">": "&gt;" };
const TEXT = Array.from({ length: 256 }, (_, byte) => {
  const c = byte >= 32 && byte < 127 ? String.fromCharCode(byte) : "·";
  return ESCAPED[c] ?? c;
});

export class HexView extends EventTarget {
  #root;
  #sizer;
  #rows;
  #bytes = new Uint8Array();
  #classesOf;
  #describe;
  #perRow = 16;
  #ruler;
  #letter = 8; // pixels
  #cursor = 0;
  #anchor = 0;
  #inText = false; // the cursor is in the column of characters
  #half = false; // the first of two digits was typed
  #undo = [];
  #redo = [];
  #isDue = false;

  /**
   * Events: "edit" with the bytes, "hover" with an offset or -1, "select" with { from, to }, "escape".
   * \param classesOf  (from, to) => class names of each byte, and of the place after the last one
   * \param describe   (offset) => words for a screen reader
   */
  constructor(root, classesOf, describe) {
    super();
    this.#root = root;
    this.#classesOf = classesOf;
    this.#describe = describe;
    root.innerHTML =
      `<div class="hex-sizer" role="presentation"><div class="hex-rows" role="presentation"></div></div>` +
      `<span class="hex-ruler" aria-hidden="true">0123456789</span>`;
    [this.#sizer, this.#ruler] = root.children;
    this.#rows = this.#sizer.firstElementChild;
    root.addEventListener("scroll", () => this.refresh());
    root.addEventListener("keydown", (event) => this.#key(event));
    root.addEventListener("mousedown", (event) => this.#press(event));
    root.addEventListener("mousemove", (event) => this.#move(event));
    root.addEventListener("mouseleave", () => this.#say("hover", -1));
    root.addEventListener("focus", () => this.refresh());
    root.addEventListener("blur", () => this.refresh());
    root.addEventListener("copy", (event) => this.#copy(event));
    root.addEventListener("paste", (event) => this.#paste(event));
    new ResizeObserver(() => this.#fit()).observe(root);
  }

  get bytes() {
    return this.#bytes;
  }

  /** Shows other bytes. What was typed here can no longer be undone when another file is opened. */
  show(bytes, { isOther = false } = {}) {
    this.#bytes = bytes;
    if (isOther) {
      this.#undo = [];
      this.#redo = [];
      this.#cursor = this.#anchor = 0;
      this.#root.scrollTop = 0;
    }
    this.#cursor = Math.min(this.#cursor, bytes.length);
    this.#anchor = Math.min(this.#anchor, bytes.length);
    this.#fit();
  }

  /** Paints anew, once a frame. */
  refresh() {
    if (this.#isDue) return;
    this.#isDue = true;
    requestAnimationFrame(() => {
      this.#isDue = false;
      this.#paint();
    });
  }

  /** Scrolls only when the byte is not seen yet. */
  reveal(offset, { toMiddle = true } = {}) {
    const top = this.#scaled(Math.floor(offset / this.#perRow) * ROW_HEIGHT);
    const height = this.#root.clientHeight;
    if (top >= this.#root.scrollTop && top + ROW_HEIGHT <= this.#root.scrollTop + height) return;
    const isAbove = top < this.#root.scrollTop;
    this.#root.scrollTop = toMiddle ? top - height / 2 : isAbove ? top : top + ROW_HEIGHT - height;
    this.refresh();
  }

  go(offset) {
    this.#place(offset, false);
    this.reveal(offset);
    this.#root.focus({ preventScroll: true });
  }

  focus() {
    this.#root.focus({ preventScroll: true });
  }

  #say(type, detail) {
    this.dispatchEvent(new CustomEvent(type, { detail }));
  }

  get #rowCount() {
    return Math.floor(this.#bytes.length / this.#perRow) + 1; // with the place after the last byte
  }

  /** Between a place among all rows and one of the scroll bar, which differ for very long inputs. */
  #scaled(pixels) {
    const all = this.#rowCount * ROW_HEIGHT;
    return all <= MOST_PIXELS ? pixels : (pixels / all) * MOST_PIXELS;
  }

  #fit() {
    const width = this.#root.clientWidth;
    this.#letter = this.#ruler.getBoundingClientRect().width / 10;
    const letters = (count) => 8 + count * CELL_LETTERS + 1 + count;
    this.#perRow = width - 2 * PADDING >= letters(16) * this.#letter || width === 0 ? 16 : 8;
    this.#root.style.setProperty("--columns", this.#perRow);
    this.#root.setAttribute("aria-rowcount", this.#rowCount);
    this.#root.setAttribute("aria-colcount", this.#perRow);
    this.#sizer.style.height = `${Math.min(this.#rowCount * ROW_HEIGHT, MOST_PIXELS)}px`;
    this.#paint();
  }

  #paint() {
    const all = this.#rowCount * ROW_HEIGHT;
    const at = all <= MOST_PIXELS ? this.#root.scrollTop : (this.#root.scrollTop / MOST_PIXELS) * all;
    const first = Math.max(0, Math.floor(at / ROW_HEIGHT) - SPARE_ROWS);
    const count = Math.ceil(this.#root.clientHeight / ROW_HEIGHT) + 2 * SPARE_ROWS;
    const last = Math.min(this.#rowCount, first + count);
    const shift = all <= MOST_PIXELS ? 0 : at - this.#root.scrollTop;
    this.#rows.style.transform = `translateY(${first * ROW_HEIGHT - shift}px)`;
    const digits = Math.max(4, this.#bytes.length.toString(16).length);
    const base = first * this.#perRow;
    const classes = this.#classes(base, Math.min(this.#bytes.length + 1, last * this.#perRow));
    let markup = "";
    for (let row = first; row < last; ++row) markup += this.#row(row, digits, classes, base);
    this.#rows.innerHTML = markup;
    this.#root.setAttribute("aria-activedescendant", "byte");
  }

  #classes(from, to) {
    const classes = this.#classesOf(from, to);
    const [low, high] = this.#range();
    for (let offset = Math.max(low, from); low !== high && offset <= high && offset < to; ++offset)
      classes[offset - from] += " picked";
    return classes;
  }

  #row(row, digits, classes, base) {
    const from = row * this.#perRow;
    const to = Math.min(this.#bytes.length, from + this.#perRow);
    const hasFocus = document.activeElement === this.#root;
    let cells = "";
    let text = "";
    for (let offset = from; offset < to; ) {
      const isCursor = offset === this.#cursor;
      let end = offset + 1;
      while (!isCursor && end < to && end !== this.#cursor && classes[end - base] === classes[offset - base]) ++end;
      const [inHex, inText] = isCursor && hasFocus ? this.#cursorClasses() : ["", ""];
      const own = classes[offset - base];
      cells += this.#cell(offset, own + inHex, isCursor, this.#digits(offset, end));
      text += `<span class="${own}${inText}">${this.#characters(offset, end)}</span>`;
      offset = end;
    }
    if (to === this.#bytes.length && to < from + this.#perRow) {
      const isCursor = to === this.#cursor;
      const here = isCursor && hasFocus ? this.#cursorClasses()[0] : "";
      cells += this.#cell(to, `end ${classes[to - base] ?? ""}${here}`, isCursor, "  ");
    }
    const offset = from.toString(16).toUpperCase().padStart(digits, "0");
    return (
      `<div class="hex-row" role="row" aria-rowindex="${row + 1}"><span class="hex-offset" role="rowheader">` +
      `${offset}</span><span class="hex-cells" role="presentation">${cells}</span>` +
      `<span class="hex-text" aria-hidden="true">${text}</span></div>`
    );
  }

  /** Neighbours that look alike are one cell; the byte at the cursor always has its own. */
  #cell(offset, classes, isCursor, digits) {
    const label = isCursor ? ` id="byte" aria-selected="true" aria-label="${quoted(this.#describe(offset))}"` : "";
    const column = (offset % this.#perRow) + 1;
    return `<span role="gridcell" aria-colindex="${column}" class="${classes}"${label}>${digits}</span>`;
  }

  #cursorClasses() {
    return this.#inText ? [" shadow", " cursor"] : [" cursor", " shadow"];
  }

  #digits(from, to) {
    let digits = HEX[this.#bytes[from]];
    for (let offset = from + 1; offset < to; ++offset) digits += ` ${HEX[this.#bytes[offset]]}`;
    return digits;
  }

  #characters(from, to) {
    let text = "";
    for (let offset = from; offset < to; ++offset) text += TEXT[this.#bytes[offset]];
    return text;
  }

  /** First and last byte that are selected; only one of them when they are equal. */
  #range() {
    return this.#cursor < this.#anchor ? [this.#cursor, this.#anchor] : [this.#anchor, this.#cursor];
  }

  #place(offset, extends_) {
    this.#cursor = Math.max(0, Math.min(offset, this.#bytes.length));
    if (!extends_) this.#anchor = this.#cursor;
    this.#half = false;
    const [from, to] = this.#range();
    this.refresh();
    this.#say("select", { from, to });
  }

  /** The byte under the pointer, or null: { offset, inText }. */
  #hit(event) {
    const columns = event.target.closest?.(".hex-cells, .hex-text");
    if (!columns) return null;
    const inText = columns.className === "hex-text";
    const row = Number(columns.parentElement.getAttribute("aria-rowindex")) - 1;
    const width = this.#letter * (inText ? 1 : CELL_LETTERS);
    const column = Math.floor((event.clientX - columns.getBoundingClientRect().left) / width);
    const offset = row * this.#perRow + Math.max(0, Math.min(column, this.#perRow - 1));
    return offset <= this.#bytes.length ? { offset, inText } : null;
  }

  #press(event) {
    const cell = this.#hit(event);
    if (!cell || event.button !== 0) return;
    event.preventDefault(); // no selection of the page's text
    this.focus();
    this.#inText = cell.inText;
    this.#place(cell.offset, event.shiftKey);
  }

  #move(event) {
    const cell = this.#hit(event);
    if (event.buttons & 1) {
      if (cell && document.activeElement === this.#root) this.#place(cell.offset, true);
      return;
    }
    this.#say("hover", cell && cell.offset < this.#bytes.length ? cell.offset : -1);
  }

  #key(event) {
    const ways = {
      ArrowLeft: -1,
      ArrowRight: 1,
      ArrowUp: -this.#perRow,
      ArrowDown: this.#perRow,
      PageUp: -this.#perRow * Math.max(1, Math.floor(this.#root.clientHeight / ROW_HEIGHT) - 1),
      PageDown: this.#perRow * Math.max(1, Math.floor(this.#root.clientHeight / ROW_HEIGHT) - 1),
    };
    const isCommand = event.ctrlKey || event.metaKey;
    const rowBegin = this.#cursor - (this.#cursor % this.#perRow);
    if (event.altKey) return;
    if (event.key in ways && !isCommand) {
      const target = this.#cursor + ways[event.key];
      this.#go(event, target < 0 && event.key !== "PageUp" ? this.#cursor : target);
    } else if (event.key === "Home") this.#go(event, isCommand ? 0 : rowBegin);
    else if (event.key === "End") this.#go(event, isCommand ? this.#bytes.length : rowBegin + this.#perRow - 1);
    else if (isCommand) this.#command(event);
    else if (event.key === "Escape") {
      this.#anchor = this.#cursor;
      this.refresh();
      this.#say("escape");
    } else if (event.key === "Enter") {
      this.#inText = !this.#inText;
      event.preventDefault();
      this.refresh();
    } else if (event.key === "Delete" || event.key === "Backspace") this.#delete(event);
    else if (event.key === "Insert") this.#splice(event, this.#cursor, 0, [0], this.#cursor);
    else if (event.key.length === 1) this.#type(event);
  }

  #go(event, offset) {
    event.preventDefault();
    this.#place(offset, event.shiftKey);
    this.reveal(this.#cursor, { toMiddle: false });
  }

  #command(event) {
    const key = event.key.toLowerCase();
    if (key === "z" || key === "y") {
      event.preventDefault();
      if (key === "y" || event.shiftKey) this.#step(this.#redo, this.#undo);
      else this.#step(this.#undo, this.#redo);
    } else if (key === "a") {
      event.preventDefault();
      this.#anchor = 0;
      this.#place(Math.max(0, this.#bytes.length - 1), true);
    }
  }

  #step(from, to) {
    const before = from.pop();
    if (!before) return;
    to.push({ bytes: this.#bytes, cursor: this.#cursor });
    this.#bytes = before.bytes;
    this.#place(before.cursor, false);
    this.#fit();
    this.reveal(this.#cursor);
    this.#say("edit", this.#bytes);
  }

  #delete(event) {
    const [from, to] = this.#range();
    if (from !== to) this.#splice(event, from, to - from + 1, [], from);
    else if (event.key === "Delete") this.#splice(event, from, 1, [], from);
    else if (from > 0) this.#splice(event, from - 1, 1, [], from - 1);
  }

  #type(event) {
    if (this.#inText) {
      const code = event.key.charCodeAt(0);
      if (code < 128) this.#splice(event, this.#cursor, 1, [code], this.#cursor + 1);
      return;
    }
    const digit = "0123456789abcdef".indexOf(event.key.toLowerCase());
    if (digit < 0) return;
    const old = this.#bytes[this.#cursor] ?? 0;
    const isSecond = this.#half;
    const byte = isSecond ? (old & 0xf0) | digit : (digit << 4) | (old & 0x0f);
    this.#splice(event, this.#cursor, 1, [byte], this.#cursor + (isSecond ? 1 : 0));
    this.#half = !isSecond;
  }

  #splice(event, from, removed, inserted, cursor) {
    event.preventDefault();
    const end = Math.min(from + removed, this.#bytes.length);
    if (end === from && inserted.length === 0) return;
    const bytes = new Uint8Array(this.#bytes.length - (end - from) + inserted.length);
    bytes.set(this.#bytes.subarray(0, from));
    bytes.set(inserted, from);
    bytes.set(this.#bytes.subarray(end), from + inserted.length);
    this.#undo.push({ bytes: this.#bytes, cursor: this.#cursor });
    const held = this.#undo.reduce((sum, step) => sum + step.bytes.length, 0);
    if (this.#undo.length > MOST_UNDO || held > 256 << 20) this.#undo.shift();
    this.#redo = [];
    this.#bytes = bytes;
    this.#fit();
    this.#place(cursor, false);
    this.reveal(this.#cursor, { toMiddle: false });
    this.#say("edit", bytes);
  }

  #copy(event) {
    const [from, to] = this.#range();
    const picked = this.#bytes.subarray(from, to + 1);
    const text = this.#inText
      ? Array.from(picked, (byte) => String.fromCharCode(byte)).join("")
      : Array.from(picked, (byte) => HEX[byte]).join(" ");
    event.clipboardData.setData("text/plain", text);
    event.preventDefault();
  }

  /** Hex digits are bytes; other texts are what they are in UTF-8. What is selected is replaced. */
  #paste(event) {
    const text = event.clipboardData.getData("text/plain");
    const digits = text.replace(/\s|0x|,/g, "");
    const isHex = !this.#inText && digits.length % 2 === 0 && /^[0-9a-f]+$/i.test(digits);
    const bytes = isHex
      ? Uint8Array.from(digits.match(/../g), (pair) => parseInt(pair, 16))
      : new TextEncoder().encode(text);
    const [from, to] = this.#range();
    this.#splice(event, from, from === to ? 0 : to - from + 1, bytes, from + bytes.length);
  }
}

function quoted(text) {
  return text.replace(/[&<>"]/g, (c) => ESCAPED[c] ?? "&quot;");
}
