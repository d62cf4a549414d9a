// editor.js - a text pane: layout or tree, with marks that the page sets and mistakes at their places.
import { defaultKeymap, history, historyKeymap } from "@codemirror/commands";
import { bracketMatching, codeFolding, foldGutter, foldKeymap, indentUnit } from "@codemirror/language";
import { lintGutter, lintKeymap, setDiagnostics } from "@codemirror/lint";
import { highlightSelectionMatches, search, searchKeymap } from "@codemirror/search";
import { Annotation, EditorState, StateEffect, Transaction } from "@codemirror/state";
import {
  Decoration,
  EditorView,
  ViewPlugin,
  drawSelection,
  highlightActiveLine,
  keymap,
  lineNumbers,
} from "@codemirror/view";
import { language } from "./language.js";

const refresh = StateEffect.define();
const byProgram = Annotation.define();

/** Marks of what is visible. \param marksIn  (from, to) => [{ from, to, className, line }] */
function marking(marksIn) {
  return ViewPlugin.fromClass(
    class {
      decorations = Decoration.none;
      constructor(view) {
        this.decorations = this.#make(view);
      }
      update(update) {
        const isAsked = update.transactions.some((one) => one.effects.some((effect) => effect.is(refresh)));
        if (update.docChanged || update.viewportChanged || isAsked) this.decorations = this.#make(update.view);
      }
      #make(view) {
        const made = [];
        const length = view.state.doc.length;
        for (const { from, to } of view.visibleRanges) {
          for (const mark of marksIn(from, to)) {
            if (mark.from > length || mark.to > length) continue; // the text has changed since
            if (!mark.line && mark.to > mark.from)
              made.push(Decoration.mark({ class: mark.className }).range(mark.from, mark.to));
            if (mark.line) this.#lines(view, mark, from, to, made);
          }
        }
        return Decoration.set(made, true);
      }
      #lines(view, mark, from, to, made) {
        const doc = view.state.doc;
        let line = doc.lineAt(Math.max(mark.from, from));
        for (;;) {
          made.push(Decoration.line({ class: mark.className }).range(line.from));
          if (line.to >= Math.min(mark.to, to) || line.number === doc.lines) break;
          line = doc.line(line.number + 1);
        }
      }
    },
    { decorations: (plugin) => plugin.decorations },
  );
}

export class Editor extends EventTarget {
  #view;

  /** Events: "edit" with the text, "hover" with a position or -1, "select" with a position, "escape". */
  constructor(parent, label, marksIn) {
    super();
    const say = (type, detail) => this.dispatchEvent(new CustomEvent(type, { detail }));
    const followsPerson = EditorView.updateListener.of((update) => {
      const isOurs = update.transactions.some((one) => one.annotation(byProgram));
      if (update.docChanged && !isOurs) this.#shown = null;
      if (update.docChanged && !isOurs) say("edit", update.state.doc.toString());
      else if (update.selectionSet && !isOurs) say("select", update.state.selection.main.head);
    });
    const pointer = EditorView.domEventHandlers({
      mousemove: (event, view) => {
        say("hover", event.buttons ? -1 : (view.posAtCoords({ x: event.clientX, y: event.clientY }) ?? -1));
      },
      mouseleave: () => say("hover", -1),
    });
    this.#view = new EditorView({
      parent,
      state: EditorState.create({
        extensions: [
          lineNumbers(),
          foldGutter({ openText: "▾", closedText: "▸" }),
          codeFolding(),
          history(),
          drawSelection(),
          highlightActiveLine(),
          bracketMatching(),
          search({ top: true }),
          highlightSelectionMatches(),
          lintGutter(),
          indentUnit.of("  "),
          language,
          marking(marksIn),
          followsPerson,
          pointer,
          EditorView.contentAttributes.of({ "aria-label": label, spellcheck: "false" }),
          keymap.of([
            ...searchKeymap,
            { key: "Escape", run: () => (say("escape"), true) },
            ...lintKeymap,
            ...foldKeymap,
            ...historyKeymap,
            ...defaultKeymap,
          ]),
        ],
      }),
    });
  }

  get text() {
    return this.#view.state.doc.toString();
  }

  #shown = ""; // set by the program, and not changed since

  /** Shows another text; what is equal at both ends stays, with the place that is looked at. */
  set text(text) {
    const old = this.#shown ?? this.text;
    if (old === text) return;
    const most = Math.min(old.length, text.length);
    let from = 0;
    while (from < most && old.charCodeAt(from) === text.charCodeAt(from)) ++from;
    let tail = 0;
    while (tail < most - from && old.charCodeAt(old.length - 1 - tail) === text.charCodeAt(text.length - 1 - tail))
      ++tail;
    this.#view.dispatch({
      changes: { from, to: old.length - tail, insert: text.slice(from, text.length - tail) },
      annotations: [byProgram.of(true), Transaction.addToHistory.of(false)],
    });
    this.#shown = text;
  }

  /** \param mistakes  [{ from, to, severity, message }] */
  set mistakes(mistakes) {
    const doc = this.#view.state.doc;
    const diagnostics = mistakes.map(({ from, to, severity, message }) => {
      const begin = Math.min(from, doc.length);
      const line = doc.lineAt(begin);
      const end = Math.min(Math.max(to, begin), doc.length);
      return { from: begin, to: end > begin ? end : Math.max(begin, line.to), severity, message };
    });
    this.#view.dispatch(setDiagnostics(this.#view.state, diagnostics));
  }

  /** "12:5" */
  place(position) {
    const line = this.#view.state.doc.lineAt(Math.min(position, this.#view.state.doc.length));
    return `${line.number}:${position - line.from + 1}`;
  }

  /** The line around a position: { from, to }. */
  line(position) {
    return this.#view.state.doc.lineAt(Math.min(position, this.#view.state.doc.length));
  }

  refreshMarks() {
    this.#view.dispatch({ effects: refresh.of(null) });
  }

  /** Scrolls only when the position is not seen yet. */
  show(position) {
    const at = Math.min(position, this.#view.state.doc.length);
    const box = this.#view.scrollDOM.getBoundingClientRect();
    const block = this.#view.lineBlockAt(at);
    const top = this.#view.documentTop + block.top;
    if (top >= box.top && top + block.height <= box.bottom) return;
    this.#view.dispatch({ effects: EditorView.scrollIntoView(at, { y: "center" }) });
  }

  /** Puts the cursor there. */
  go(position) {
    const at = Math.min(position, this.#view.state.doc.length);
    this.#view.dispatch({ selection: { anchor: at }, scrollIntoView: true, annotations: byProgram.of(true) });
    this.#view.focus();
  }

  focus() {
    this.#view.focus();
  }
}
