// language.js - the notation of documents for the editor: colours, folding, brackets.
import { HighlightStyle, StreamLanguage, foldService, syntaxHighlighting } from "@codemirror/language";
import { tags } from "@lezer/highlight";

const notation = StreamLanguage.define({
  name: "murv",
  startState: () => ({ inComment: false }),
  token(stream, state) {
    if (state.inComment || stream.match("/*")) {
      state.inComment = !stream.match(/^.*?\*\//);
      if (state.inComment) stream.skipToEnd();
      return "comment";
    }
    if (stream.eatSpace()) return null;
    if (stream.match("//")) {
      stream.skipToEnd();
      return "comment";
    }
    if (stream.match(/^"(?:[^"\\]|\\.)*"?/)) {
      if (!stream.match(/^\s*=/, false)) return "string";
      return stream.string[stream.start + 1] === "@" ? "meta" : "propertyName";
    }
    if (stream.match(/^\([^)"]*\)/)) return "typeName";
    if (stream.match(/^#\d+/)) return "labelName";
    if (stream.match(/^[-+]?\d[\w.+-]*/)) return "number";
    if (stream.match(/^(?:true|false|null)\b/)) return "atom";
    stream.next();
    return null;
  },
  languageData: { commentTokens: { line: "//", block: { open: "/*", close: "*/" } } },
});

const colours = HighlightStyle.define([
  { tag: tags.propertyName, class: "t-name" },
  { tag: tags.string, class: "t-text" },
  { tag: [tags.number, tags.atom], class: "t-number" },
  { tag: tags.comment, class: "t-comment" },
  { tag: tags.typeName, class: "t-expression" },
  { tag: tags.meta, class: "t-rule" },
  { tag: tags.labelName, class: "t-id" },
]);

const LONGEST_FOLD = 5000; // lines that are looked through for the end

/** A line that ends with an opening bracket folds up to the line of the same indentation that closes it. */
const folding = foldService.of((state, from) => {
  const line = state.doc.lineAt(from);
  let head = line;
  if (/^\s*[{[]\s*$/.test(head.text)) return null; // folds with the name above it
  if (!/[{[]\s*(\/\/.*)?$/.test(head.text)) {
    if (!/=\s*$/.test(head.text) || head.number === state.doc.lines) return null;
    head = state.doc.line(head.number + 1);
    if (!/^\s*[{[]\s*$/.test(head.text)) return null;
  }
  const indent = line.text.search(/\S/);
  const last = Math.min(state.doc.lines, head.number + LONGEST_FOLD);
  for (let number = head.number + 1; number <= last; ++number) {
    const text = state.doc.line(number).text;
    if (text.search(/\S/) === indent && /^\s*[}\]]/.test(text))
      return { from: head.to, to: state.doc.line(number).from + indent };
  }
  return null;
});

export const language = [notation, syntaxHighlighting(colours), folding];
