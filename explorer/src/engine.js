// engine.js - the library: text and bytes in, plain objects and tables of numbers out.
//
// Nothing outside this file knows of WebAssembly.
import createModule from "murv-module";
import wasm from "murv-wasm";
import { inflate } from "./squeeze.js";

/** The tables of leaves and groups: rows of so many numbers, and what the columns are. */
export const LEAF_COLUMNS = 9;
export const LEAF = { part: 0, offset: 1, length: 2, from: 3, begin: 4, value: 5, end: 6, group: 7, index: 8 };
export const GROUP_COLUMNS = 8;
export const GROUP = { part: 0, first: 1, after: 2, begin: 3, value: 4, end: 5, group: 6, index: 7 };

const [LEAVES, GROUPS, LEAF_ORDER, GROUP_ORDER, PACKET, TREE] = [0, 1, 2, 3, 4, 5];

export async function loadEngine() {
  const wasmBinary = await inflate(Uint8Array.from(atob(wasm), (c) => c.charCodeAt(0)));
  const module = await createModule({ wasmBinary });
  return new Engine(module);
}

class Engine {
  #module;
  #encoder = new TextEncoder();
  #decoder = new TextDecoder();

  constructor(module) {
    this.#module = module;
  }

  /** Compiles a layout: { mistakes, parts, places }; places are [part, from, to], in the order of the text. */
  compile(text) {
    return this.#call("_explorerCompile", this.#encoder.encode(text));
  }

  /** Reads a packet: { problems, more, tables, tree }; see #tables. */
  read(bytes) {
    const answer = this.#call("_explorerRead", bytes);
    return { ...answer, ...this.#tables(), tree: this.#decoder.decode(this.#data(TREE)) };
  }

  /** Makes a packet of a tree: { mistakes } or { fault } or { bytes, problems, more, tables }. */
  make(text) {
    const answer = this.#call("_explorerMake", this.#encoder.encode(text));
    if (!answer.problems) return answer;
    return { ...answer, ...this.#tables(), bytes: this.#data(PACKET).slice() };
  }

  /** Leaves and groups in the order of the packet, and their rows in the order of the tree's text. */
  #tables() {
    const table = (what) => {
      const bytes = this.#data(what);
      return new Int32Array(bytes.slice().buffer);
    };
    return {
      leaves: table(LEAVES),
      groups: table(GROUPS),
      leafOrder: table(LEAF_ORDER),
      groupOrder: table(GROUP_ORDER),
    };
  }

  #data(what) {
    const begin = this.#module._explorerData(what);
    return this.#module.HEAPU8.subarray(begin, begin + this.#module._explorerSize(what));
  }

  #call(name, input) {
    const room = this.#module._explorerRoom(input.length);
    this.#module.HEAPU8.set(input, room); // the heap may have grown: look at it only now
    const answer = JSON.parse(this.#module.UTF8ToString(this.#module[name]()));
    if (answer.failed) throw new Error(answer.failed);
    return answer;
  }
}
