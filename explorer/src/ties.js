// ties.js - what belongs together: a range of bytes, a leaf of the tree, a line of the layout.
//
// A target is what is pointed at: a range of leaves (from bytes or tree) or a range of parts (from the layout), since a
// part may be in a packet many times.
import { GROUP, GROUP_COLUMNS, LEAF, LEAF_COLUMNS } from "./engine.js";

const LONGEST_MARK = 2; // bytes after the last value that may be its mark

/** The last row of a table whose number in a column is at most `limit`; -1 when there is none. */
function lastAtMost(count, number, limit) {
  let [low, high] = [0, count];
  while (low < high) {
    const middle = (low + high) >>> 1;
    if (number(middle) <= limit) low = middle + 1;
    else high = middle;
  }
  return low - 1;
}

export class Ties {
  #session;
  #leaves = new Int32Array();
  #groups = new Int32Array();
  #leafOrder = new Int32Array();
  #groupOrder = new Int32Array();

  constructor(session) {
    this.#session = session;
  }

  /** After a change of the session. */
  refresh() {
    const { leaves, groups, leafOrder, groupOrder } = this.#session.packet;
    this.#leaves = leaves;
    this.#groups = groups;
    this.#leafOrder = leafOrder;
    this.#groupOrder = groupOrder;
  }

  get leafCount() {
    return this.#leaves.length / LEAF_COLUMNS;
  }

  leaf(row) {
    const at = row * LEAF_COLUMNS;
    const [part, offset, length, from, begin, value, end, group, index] = this.#leaves.subarray(at, at + LEAF_COLUMNS);
    return { part, offset, length, from, begin, value, end, group, index };
  }

  group(row) {
    const at = row * GROUP_COLUMNS;
    const [part, first, after, begin, value, end, group, index] = this.#groups.subarray(at, at + GROUP_COLUMNS);
    return { part, first, after, begin, value, end, group, index };
  }

  /** The leaf of a byte: whose value it is, or to whose value a length or mark belongs. -1 for none. */
  leafAtByte(offset) {
    const row = lastAtMost(this.leafCount, (i) => this.#leaves[i * LEAF_COLUMNS + LEAF.from], offset);
    if (row < 0 || this.#endOf(row) > offset) return row;
    const isMark = row + 1 < this.leafCount || offset - this.#endOf(row) < LONGEST_MARK;
    const isPacket = offset < this.#session.bytes.length;
    return isMark && isPacket && !this.unreadAt(offset) && this.faultAt(offset) === null ? row : -1;
  }

  #endOf(row) {
    const at = row * LEAF_COLUMNS;
    return this.#leaves[at + LEAF.offset] + this.#leaves[at + LEAF.length];
  }

  /** The fault of a byte that could not be read as what it must be, or null. */
  faultAt(offset) {
    const isThere = ({ offset: begin, length }) => offset >= begin && offset < begin + Math.max(1, length);
    return this.#session.packet.problems.find((problem) => !problem.finding && isThere(problem)) ?? null;
  }

  /** Whether the byte is of the value of its leaf, not a length or mark beside it. */
  isValue(row, offset) {
    return row >= 0 && offset < this.#endOf(row) && offset >= this.#leaves[row * LEAF_COLUMNS + LEAF.offset];
  }

  /** Whether a fault kept the byte from being read. */
  unreadAt(offset) {
    return this.#session.packet.problems.some(
      (problem) => !problem.finding && offset >= problem.unread && offset < problem.unreadEnd,
    );
  }

  /** Rows of the leaves whose members are in a range of the tree's text. */
  *leavesInText(from, to) {
    const begin = (i) => this.#leaves[this.#leafOrder[i] * LEAF_COLUMNS + LEAF.begin];
    const first = Math.max(0, lastAtMost(this.#leafOrder.length, begin, from));
    for (let i = first; i < this.#leafOrder.length && begin(i) < to; ++i) yield this.#leafOrder[i];
  }

  /** What the tree has at a place of its text: { leaf } or { group }, or null. */
  inText(position) {
    const leafBegin = (i) => this.#leaves[this.#leafOrder[i] * LEAF_COLUMNS + LEAF.begin];
    const nearest = lastAtMost(this.#leafOrder.length, leafBegin, position);
    if (nearest >= 0) {
      const leaf = this.#leafOrder[nearest];
      if (position <= this.#leaves[leaf * LEAF_COLUMNS + LEAF.end]) return { leaf };
    }
    const groupBegin = (i) => this.#groups[this.#groupOrder[i] * GROUP_COLUMNS + GROUP.begin];
    const around = lastAtMost(this.#groupOrder.length, groupBegin, position);
    let group = around < 0 ? -1 : this.#groupOrder[around];
    while (group >= 0 && position > this.#groups[group * GROUP_COLUMNS + GROUP.end])
      group = this.#groups[group * GROUP_COLUMNS + GROUP.group];
    return group < 0 ? null : { group };
  }

  /** The smallest place of the layout around a position, as its index; -1 for none. */
  placeAt(position) {
    const places = this.#session.isCompiled ? this.#session.places : [];
    let found = -1;
    places.forEach(([, from, to], index) => {
      const isSmaller = found < 0 || to - from <= places[found][2] - places[found][1];
      if (position >= from && position <= to && isSmaller) found = index;
    });
    return found;
  }

  /** Places of a part in the layout; those of what is around it when it has none of its own. */
  placesOf(part) {
    const { places, parts } = this.#session;
    for (; part >= 0; part = parts[part].parent) {
      const own = places.filter(([about]) => about === part);
      if (own.length > 0) return own;
    }
    return [];
  }

  targetOfLeaf(row) {
    return row < 0 ? null : { kind: "leaf", first: row, after: row + 1, part: this.leaf(row).part };
  }

  targetOfByte(offset) {
    const row = this.leafAtByte(offset);
    if (row >= 0) return this.targetOfLeaf(row);
    const fault = this.faultAt(offset);
    return fault === null || fault.part < 0 ? null : { kind: "fault", first: 0, after: 0, part: fault.part, fault };
  }

  targetOfGroup(row) {
    const { first, after, part } = this.group(row);
    return { kind: "group", first, after, part, group: row };
  }

  targetOfPart(part) {
    return { kind: "part", part, partAfter: this.#session.parts[part].after };
  }

  /** Whether a leaf is what a target points at, or in it. */
  isIn(target, row) {
    if (target === null || row < 0) return false;
    if (target.kind !== "part") return row >= target.first && row < target.after;
    const part = this.#leaves[row * LEAF_COLUMNS + LEAF.part];
    return part >= target.part && part < target.partAfter;
  }

  /** The first leaf of a target, or -1. */
  firstLeaf(target) {
    if (target === null) return -1;
    if (target.kind !== "part") return target.first < target.after ? target.first : -1;
    for (let row = 0; row < this.leafCount; ++row) if (this.isIn(target, row)) return row;
    return -1;
  }

  /** The path of a leaf, with the numbers of elements: orders[3].price. */
  pathOfLeaf(row) {
    const leaf = this.leaf(row);
    if (leaf.group < 0) return this.#session.parts[leaf.part].path;
    return this.#step(this.pathOfGroup(leaf.group), leaf);
  }

  pathOfGroup(row) {
    const steps = [];
    for (let at = row; at >= 0; ) {
      const group = this.group(at);
      if (group.group >= 0) steps.push(group);
      at = group.group;
    }
    return steps.reverse().reduce((path, step) => this.#step(path, step), "");
  }

  #step(path, { part, index }) {
    if (index >= 0) return `${path}[${index}]`;
    const { name, id } = this.#session.parts[part];
    const own = name || (id ? `#${id}` : "(no name)");
    return path === "" ? own : `${path}.${own}`;
  }
}
