// main.js - ties the three panes to the session, and to each other.
import examples from "murv-examples";
import { showDetails, showProblems } from "./details.js";
import { Editor } from "./editor.js";
import { loadEngine } from "./engine.js";
import { HexView } from "./hex.js";
import { LONGEST_LINK, fragmentOf, stateOf } from "./share.js";
import { Session } from "./session.js";
import { startTheme } from "./theme.js";
import { Ties } from "./ties.js";

const QUICK = 12; // milliseconds: what takes no longer may follow every key
const LONGEST_WAIT = 600;
const MOST_TIMES = 1000; // how far a part's occurrences are counted

const byId = (id) => document.getElementById(id);
const state = { hovered: null, selected: null };

startTheme(byId("theme"));
const session = new Session(await loadEngine());
const ties = new Ties(session);

// What each pane marks.

const strength = (isIn) => (isIn(state.hovered) ? "hover" : isIn(state.selected) ? "selected" : "");

function classOfByte(offset, problems) {
  const row = ties.leafAtByte(offset);
  let classes = row < 0 ? "" : row % 2 === 0 ? "even" : "odd";
  if (row >= 0 && !ties.isValue(row, offset)) classes += " between";
  for (const { offset: begin, length, finding, unread, unreadEnd } of problems) {
    if (!finding && offset >= unread && offset < unreadEnd) classes += " unread";
    if (offset >= begin && offset < begin + Math.max(1, length)) classes += finding ? " warning" : " error";
  }
  const mark = row < 0 ? "" : strength((target) => ties.isIn(target, row));
  return mark ? `${classes} ${mark}` : classes;
}

function classesOfBytes(from, to) {
  const isNear = ({ offset, length, unreadEnd }) => offset < to && Math.max(offset + length, unreadEnd) >= from;
  const problems = session.packet.problems.filter(isNear);
  return Array.from({ length: to - from }, (_, i) => classOfByte(from + i, problems));
}

function describeByte(offset) {
  if (offset >= session.bytes.length) return "end";
  const row = ties.leafAtByte(offset);
  const digits = session.bytes[offset].toString(16).toUpperCase().padStart(2, "0");
  return row < 0 ? digits : `${digits}, ${ties.pathOfLeaf(row)}`;
}

function marksInTree(from, to) {
  const marks = [];
  if (!session.agrees) return marks;
  for (const row of ties.leavesInText(from, to)) {
    const mark = strength((target) => target?.kind !== "group" && ties.isIn(target, row));
    const { begin, end } = ties.leaf(row);
    if (mark) marks.push({ from: begin, to: end, className: mark });
  }
  for (const [target, className] of [[state.selected, "selected"], [state.hovered, "hover"]]) {
    if (target?.kind !== "group") continue;
    const { begin, end } = ties.group(target.group);
    if (begin >= 0 && begin < to && end > from) marks.push({ from: begin, to: end, className, line: true });
  }
  return marks;
}

function marksInLayout(from, to) {
  const marks = [];
  if (!session.isCompiled) return marks;
  for (const [target, className] of [[state.selected, "selected"], [state.hovered, "hover"]]) {
    if (target === null) continue;
    for (const [, begin, end] of ties.placesOf(target.part)) {
      if (begin > to || end < from) continue;
      const isLeaf = session.parts[target.part].kind === 0;
      marks.push({ from: begin, to: end, className, line: !isLeaf });
    }
  }
  return marks;
}

const layout = new Editor(byId("layout"), "Layout", marksInLayout);
const hex = new HexView(byId("bytes"), classesOfBytes, describeByte);
const tree = new Editor(byId("tree"), "Tree", marksInTree);

// What is pointed at.

/** A group or part is meant only on the line on which it begins; elsewhere in it nothing is. */
function startsOnLine(editor, begin, position) {
  const line = editor.line(position);
  return begin >= line.from && begin <= line.to;
}

function targetInTree(position) {
  if (position < 0 || !session.agrees) return null;
  const found = ties.inText(position);
  if (found === null) return null;
  if ("leaf" in found) return ties.targetOfLeaf(found.leaf);
  return startsOnLine(tree, ties.group(found.group).begin, position) ? ties.targetOfGroup(found.group) : null;
}

function targetInLayout(position) {
  const index = position < 0 ? -1 : ties.placeAt(position);
  if (index < 0) return null;
  const [part, begin] = session.places[index];
  return startsOnLine(layout, begin, position) ? ties.targetOfPart(part) : null;
}

/** A target by its first leaf: { path, part, offset, length, value, wrong, times, more }. */
function about(target) {
  if (target === null) return null;
  const part = session.parts[target.part];
  const first = ties.firstLeaf(target);
  const known = { path: part.path, part, offset: null, length: 0, value: "", wrong: "", times: 1, more: false };
  if (target.kind === "fault") {
    const { path, offset, length, message } = target.fault;
    return { ...known, path, offset, length, wrong: message };
  }
  if (first < 0) return known;
  const leaf = ties.leaf(first);
  known.offset = leaf.offset;
  known.length = leaf.length;
  const finding = session.packet.problems.find((problem) => problem.finding && problem.offset === leaf.offset);
  if (target.kind === "leaf" && finding) known.wrong = finding.message;
  if (target.kind === "group") {
    const last = ties.leaf(target.after - 1);
    known.path = ties.pathOfGroup(target.group);
    known.length = last.offset + last.length - leaf.offset;
  } else if (part.kind === 0) {
    if (target.kind === "leaf") known.path = ties.pathOfLeaf(first);
    if (leaf.value >= 0) known.value = session.treeText.slice(leaf.value, leaf.end);
    if (target.kind === "part") Object.assign(known, count(target));
    if (known.times > 1) known.value = "";
  } else known.offset = null;
  return known;
}

function count(target) {
  let times = 0;
  for (let row = 0; row < ties.leafCount && times < MOST_TIMES; ++row) if (ties.isIn(target, row)) ++times;
  return { times, more: times === MOST_TIMES };
}

const IDLE = "Point at a byte, a value or a line of the layout.";

function paintMarks() {
  hex.refresh();
  layout.refreshMarks();
  tree.refreshMarks();
  showDetails(byId("details"), about(state.hovered ?? state.selected), IDLE);
}

function same(a, b) {
  return a === b || (a !== null && b !== null && JSON.stringify(a) === JSON.stringify(b));
}

function hover(target) {
  if (same(target, state.hovered)) return;
  state.hovered = target;
  paintMarks();
}

/** \param from  the pane that a person acts in, which need not be scrolled */
function select(target, from) {
  if (same(target, state.selected)) return;
  state.selected = target;
  paintMarks();
  if (target === null) return;
  const first = ties.firstLeaf(target);
  if (first >= 0 && from !== hex) hex.reveal(ties.leaf(first).offset);
  const places = ties.placesOf(target.part);
  if (places.length > 0 && from !== layout) layout.show(places[0][1]);
  const begin = target.kind === "group" ? ties.group(target.group).begin : first >= 0 ? ties.leaf(first).begin : -1;
  if (begin >= 0 && from !== tree) tree.show(begin);
}

layout.addEventListener("hover", ({ detail }) => hover(targetInLayout(detail)));
layout.addEventListener("select", ({ detail }) => select(targetInLayout(detail), layout));
tree.addEventListener("hover", ({ detail }) => hover(targetInTree(detail)));
tree.addEventListener("select", ({ detail }) => select(targetInTree(detail), tree));
hex.addEventListener("hover", ({ detail }) => hover(detail < 0 ? null : ties.targetOfByte(detail)));
hex.addEventListener("select", ({ detail: { from, to } }) => {
  const [first, last] = [ties.leafAtByte(from), ties.leafAtByte(to)];
  const isRow = first >= 0 && last > first;
  select(isRow ? { kind: "leaf", first, after: last + 1, part: ties.leaf(first).part } : ties.targetOfByte(from), hex);
});
for (const pane of [layout, hex, tree])
  pane.addEventListener("escape", () => {
    state.hovered = null;
    select(null, pane);
  });

// Editing. What takes long waits until the typing stops.

function typed(apply) {
  let timer = 0;
  return ({ detail }) => {
    clearTimeout(timer);
    const wait = session.milliseconds < QUICK ? 0 : Math.min(LONGEST_WAIT, 3 * session.milliseconds);
    document.querySelector("main").setAttribute("aria-busy", "true");
    timer = setTimeout(() => {
      apply(detail);
      document.querySelector("main").removeAttribute("aria-busy");
    }, wait);
  };
}

layout.addEventListener("edit", typed((text) => session.setLayout(text)));
tree.addEventListener("edit", typed((text) => session.setTree(text)));
hex.addEventListener("edit", typed((bytes) => session.setBytes(bytes)));

function plural(count, noun) {
  return `${count.toLocaleString("en")} ${noun}${count === 1 ? "" : "s"}`;
}

function setState(id, text, isWrong) {
  byId(id).textContent = text;
  byId(id).classList.toggle("wrong", isWrong);
}

function problemList() {
  const list = session.mistakes.map(({ from, path, message }) => ({
    severity: "error",
    where: "Layout",
    place: layout.place(from),
    message: path ? `${path}: ${message}` : message,
    go: () => layout.go(from),
  }));
  const inTree = [...session.treeMistakes, ...(session.treeFault ? [session.treeFault] : [])];
  for (const { from, path, message } of inTree)
    list.push({
      severity: "error",
      where: "Tree",
      place: tree.place(from),
      message: path ? `${path}: ${message}` : message,
      go: () => tree.go(from),
    });
  for (const problem of session.packet.problems)
    list.push({
      severity: problem.finding ? "warning" : "error",
      where: "Byte",
      place: problem.offset.toString(),
      message: words(problem),
      go: () => hex.go(problem.offset),
    });
  return list;
}

function words({ path, message, missing }) {
  const more = missing ? `, at least ${plural(missing, "byte")}` : "";
  return `${path ? `${path}: ` : ""}${message}${more}`;
}

function treeProblems() {
  const list = session.treeMistakes.map((mistake) => ({ ...mistake, severity: "error" }));
  if (session.treeFault) list.push({ ...session.treeFault, severity: "error" });
  if (!session.agrees) return list;
  for (const problem of session.packet.problems)
    if (problem.finding) list.push({ ...problem, message: words(problem), severity: "warning" });
  return list;
}

session.addEventListener("change", ({ detail: source }) => {
  ties.refresh();
  state.hovered = null;
  state.selected = null;
  if (source === "all") layout.text = session.layoutText;
  if (source !== "bytes") hex.show(session.bytes, { isOther: source === "all" });
  if (source !== "tree") tree.text = session.treeText;
  layout.mistakes = session.mistakes.map((mistake) => ({ ...mistake, severity: "error" }));
  tree.mistakes = treeProblems();

  const { mistakes, packet } = session;
  const wrong = packet.problems.length + packet.more;
  setState("layout-state", mistakes.length ? plural(mistakes.length, "mistake") : plural(session.parts.length, "part"),
    mistakes.length > 0);
  setState("bytes-state", plural(session.bytes.length, "byte") + (wrong ? `, ${plural(wrong, "problem")}` : ""),
    wrong > 0);
  const isUnfit = session.treeMistakes.length > 0 || session.treeFault !== null;
  setState("tree-state", isUnfit ? "does not fit; the bytes are as before" : !session.isCompiled
    ? "as before the mistake in the layout" : plural(ties.leafCount, "value"), isUnfit || !session.isCompiled);
  byId("tree-pane").classList.toggle("stale", !session.isCompiled);
  byId("bytes-pane").classList.toggle("stale", isUnfit || !session.isCompiled);
  showProblems(byId("problems"), byId("problems-title"), problemList(), packet.more);
  paintMarks();
});

// Examples, files, links.

function toast(text) {
  byId("toast").textContent = text;
  clearTimeout(toast.timer);
  toast.timer = setTimeout(() => (byId("toast").textContent = ""), 6000);
}

const bytes4Base64 = (text) => Uint8Array.from(atob(text), (c) => c.charCodeAt(0));

function openExample(index) {
  const { layout, bytes } = examples[index];
  session.open({ layout, bytes: bytes4Base64(bytes) });
  byId("example").value = index;
}

byId("example").append(
  new Option("(yours)", "", false, false),
  ...examples.map(({ title }, index) => new Option(title, index)),
);
byId("example").options[0].hidden = true;
byId("example").addEventListener("change", ({ target }) => {
  openExample(Number(target.value));
  history.replaceState(null, "", location.pathname + location.search);
});
session.addEventListener("change", ({ detail }) => {
  if (detail !== "all") byId("example").value = "";
});

function pickFile(onFile) {
  const input = document.createElement("input");
  input.type = "file";
  input.addEventListener("change", () => input.files.length && onFile(input.files[0]));
  input.click();
}

async function openBytes(file) {
  session.setBytes(new Uint8Array(await file.arrayBuffer()));
  hex.show(session.bytes, { isOther: true });
}

async function openLayout(file) {
  const text = await file.text();
  layout.text = text;
  session.setLayout(text);
}

function save(name, content) {
  const anchor = document.createElement("a");
  anchor.href = URL.createObjectURL(new Blob([content]));
  anchor.download = name;
  anchor.click();
  setTimeout(() => URL.revokeObjectURL(anchor.href), 1000);
}

byId("layout-open").addEventListener("click", () => pickFile(openLayout));
byId("layout-save").addEventListener("click", () => save("layout.murv", session.layoutText));
byId("bytes-open").addEventListener("click", () => pickFile(openBytes));
byId("bytes-save").addEventListener("click", () => save("packet.bin", session.bytes));
byId("tree-save").addEventListener("click", () => save("tree.murv", session.treeText));

document.addEventListener("dragover", (event) => event.preventDefault());
document.addEventListener("drop", (event) => {
  const [file] = event.dataTransfer.files;
  if (!file) return;
  event.preventDefault();
  (event.target.closest?.("#layout-pane") ? openLayout : openBytes)(file);
});

byId("link").addEventListener("click", async () => {
  const tree = session.treeLeads ? session.treeText : null;
  const fragment = await fragmentOf({ layout: session.layoutText, bytes: session.bytes, tree });
  if (fragment.length > LONGEST_LINK) {
    toast("Too much for a link: save the files instead");
    return;
  }
  history.replaceState(null, "", fragment);
  try {
    await navigator.clipboard.writeText(location.href);
    toast(`Link copied, ${plural(location.href.length, "character")}`);
  } catch {
    toast("The address of this page now holds everything");
  }
});

async function openAddress() {
  const shared = await stateOf(location.hash);
  if (shared) {
    session.open(shared);
    byId("example").value = "";
  } else {
    if (location.hash.length > 1) toast("The link is damaged; this is an example");
    openExample(0);
  }
}
addEventListener("hashchange", openAddress);

// Keys of the whole page.

byId("keys").addEventListener("click", () => byId("keys-dialog").showModal());
document.addEventListener("keydown", (event) => {
  if (event.key !== "F6") return;
  event.preventDefault();
  const panes = [layout, hex, tree];
  const now = ["layout-pane", "bytes-pane", "tree-pane"].findIndex((id) => byId(id).contains(document.activeElement));
  panes[now < 0 ? 0 : (now + (event.shiftKey ? 2 : 1)) % 3].focus();
});

await openAddress();
document.documentElement.dataset.ready = "yes";
