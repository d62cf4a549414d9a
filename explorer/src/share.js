// share.js - the whole state as the fragment of an address, which browsers do not send to anybody.
//
// Layout, bytes and, when it says more than the bytes, the tree: each after its length, compressed, in base64 for URLs.
import { deflate, inflate } from "./squeeze.js";

/** Browsers take addresses of two megabytes; many programs that pass them on take less. */
export const LONGEST_LINK = 1_500_000;

const PREFIX = "#1.";

/** \param tree  null when it is what reading the bytes gives */
export async function fragmentOf({ layout, bytes, tree }) {
  const encoder = new TextEncoder();
  const pieces = [encoder.encode(layout), bytes, ...(tree === null ? [] : [encoder.encode(tree)])];
  const joined = new Uint8Array(pieces.reduce((size, piece) => size + 4 + piece.length, 0));
  const view = new DataView(joined.buffer);
  let at = 0;
  for (const piece of pieces) {
    view.setUint32(at, piece.length);
    joined.set(piece, at + 4);
    at += 4 + piece.length;
  }
  return PREFIX + base64(await deflate(joined));
}

/** \return null for a fragment that is none of ours, or is damaged */
export async function stateOf(fragment) {
  if (!fragment.startsWith(PREFIX)) return null;
  try {
    const joined = await inflate(bytes4Base64(fragment.slice(PREFIX.length)));
    const view = new DataView(joined.buffer);
    const pieces = [];
    for (let at = 0; at < joined.length; ) {
      const length = view.getUint32(at);
      if (length > joined.length - at - 4) return null;
      pieces.push(joined.slice(at + 4, at + 4 + length));
      at += 4 + length;
    }
    if (pieces.length < 2 || pieces.length > 3) return null;
    const decoder = new TextDecoder();
    return {
      layout: decoder.decode(pieces[0]),
      bytes: pieces[1],
      tree: pieces.length > 2 ? decoder.decode(pieces[2]) : null,
    };
  } catch {
    return null;
  }
}

function base64(bytes) {
  const piece = 0x8000; // arguments of one call
  let text = "";
  for (let at = 0; at < bytes.length; at += piece)
    text += String.fromCharCode(...bytes.subarray(at, at + piece));
  return btoa(text).replaceAll("+", "-").replaceAll("/", "_").replaceAll("=", "");
}

function bytes4Base64(text) {
  return Uint8Array.from(atob(text.replaceAll("-", "+").replaceAll("_", "/")), (c) => c.charCodeAt(0));
}
