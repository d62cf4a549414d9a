// session.js - layout, bytes and tree, and what follows when one of them changes.
//
// Layout or bytes changed: the bytes are read, which makes the tree. Tree changed: the packet is made, and the tree
// stays as it was typed. What does not fit leaves the other side as it is, and says so.

const NONE = new Int32Array();
const NOTHING_READ = { leaves: NONE, groups: NONE, leafOrder: NONE, groupOrder: NONE, problems: [], more: 0 };

export class Session extends EventTarget {
  layoutText = "";
  bytes = new Uint8Array();
  treeText = "";

  mistakes = []; // of the layout
  parts = []; // of the last layout without mistakes
  places = [];
  packet = NOTHING_READ;
  treeMistakes = [];
  treeFault = null; // why no packet can be made of the tree
  treeLeads = false; // the tree was edited last: it may say more than the bytes
  milliseconds = 0; // that the last change took

  #engine;

  constructor(engine) {
    super();
    this.#engine = engine;
  }

  get isCompiled() {
    return this.mistakes.length === 0;
  }

  /** Whether bytes and tree say the same. */
  get agrees() {
    return this.isCompiled && this.treeMistakes.length === 0 && this.treeFault === null;
  }

  open({ layout, bytes, tree = null }) {
    this.#change(() => {
      this.layoutText = layout;
      this.bytes = bytes;
      this.#compile();
      this.#read();
      if (tree === null) return;
      this.treeText = tree;
      this.treeLeads = true;
      this.#make();
    }, "all");
  }

  setLayout(text) {
    this.#change(() => {
      this.layoutText = text;
      this.#compile();
      if (!this.isCompiled) {
        this.packet = NOTHING_READ;
        return;
      }
      // What was typed into the tree and did not fit yet is not thrown away.
      const waits = this.treeLeads && (this.treeMistakes.length !== 0 || this.treeFault !== null);
      if (waits) this.#make();
      else this.#read();
    }, "layout");
  }

  setBytes(bytes) {
    this.#change(() => {
      this.bytes = bytes;
      this.#read();
    }, "bytes");
  }

  setTree(text) {
    this.#change(() => {
      this.treeText = text;
      this.treeLeads = true;
      this.#make();
    }, "tree");
  }

  /** \param source  which of the three a person changed: it need not be shown anew */
  #change(work, source) {
    const before = performance.now();
    work();
    this.milliseconds = performance.now() - before;
    this.dispatchEvent(new CustomEvent("change", { detail: source }));
  }

  #compile() {
    const answer = this.#engine.compile(this.layoutText);
    this.mistakes = answer.mistakes;
    if (!this.isCompiled) return;
    this.parts = answer.parts;
    this.places = answer.places;
    this.parts.forEach((part, number) => (part.after = number + 1));
    for (let number = this.parts.length - 1; number > 0; --number) {
      const around = this.parts[this.parts[number].parent];
      around.after = Math.max(around.after, this.parts[number].after);
    }
  }

  #read() {
    this.treeLeads = false;
    this.treeMistakes = [];
    this.treeFault = null;
    if (!this.isCompiled) {
      this.packet = NOTHING_READ;
      return;
    }
    const { tree, ...packet } = this.#engine.read(this.bytes);
    this.packet = packet;
    this.treeText = tree;
  }

  #make() {
    this.treeMistakes = [];
    this.treeFault = null;
    if (!this.isCompiled) return;
    const { bytes, mistakes, fault, ...packet } = this.#engine.make(this.treeText);
    this.treeMistakes = mistakes;
    this.treeFault = fault ?? null;
    if (!bytes) return;
    this.bytes = bytes;
    this.packet = packet;
  }
}
