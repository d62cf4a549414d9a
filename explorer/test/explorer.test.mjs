// Tests of the page in a browser. Each opens it anew from the disk; nothing but the page itself may be asked for, and
// the console must stay empty.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createServer } from "node:net";
import path from "node:path";
import { after, before, beforeEach, afterEach, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";
import { launchChromium, noiseOf } from "../../tests/support/chromium.mjs";

const root = path.dirname(path.dirname(path.dirname(fileURLToPath(import.meta.url))));
const address = pathToFileURL(process.env.MURV_EXPLORER ?? path.join(root, "build/explorer/explorer.html")).href;
const examples = JSON.parse(readFileSync(path.join(root, "explorer/examples.json"), "utf8"));

let browser;
let page;
let noise; // what the page asked for or complained about

before(async () => {
  browser = await launchChromium(chromium);
});
after(() => browser?.close());

async function open({ fragment = "", ...context } = {}) {
  page = await (await browser.newContext({ viewport: { width: 1440, height: 900 }, ...context })).newPage();
  noise = noiseOf(page, (url) => url.split("#")[0] === address);
  await page.goto(address + fragment);
  await page.waitForSelector("html[data-ready]");
}

beforeEach(() => open());
afterEach(async () => {
  await page.context().close();
  assert.deepEqual(noise, []);
});

// What a person sees.

const text = (selector) => page.locator(selector).innerText();
const marked = (pane, mark) => page.locator(`#${pane} .${mark}`).allInnerTexts();
const joined = async (pane, mark) => (await marked(pane, mark)).join(" ").trim();

/** Until what was typed is worked in and painted. */
async function settle() {
  const frame = () => page.evaluate(() => new Promise((done) => requestAnimationFrame(() => setTimeout(done))));
  await frame();
  await page.waitForFunction(() => !document.querySelector("main[aria-busy]"));
  await frame();
}


async function choose(title) {
  await page.selectOption("#example", { label: title });
  await settle();
}

/** Where a byte is on the screen; it must be in sight. */
async function placeOf(offset) {
  return page.evaluate((at) => {
    const perRow = Number(document.querySelector("#bytes").getAttribute("aria-colcount"));
    const row = document.querySelector(`.hex-row[aria-rowindex="${Math.floor(at / perRow) + 1}"] .hex-cells`);
    const box = row.getBoundingClientRect();
    const letter = document.querySelector(".hex-ruler").getBoundingClientRect().width / 10;
    return { x: box.left + ((at % perRow) * 3 + 1.5) * letter, y: box.top + box.height / 2 };
  }, offset);
}

async function hoverByte(offset) {
  const { x, y } = await placeOf(offset);
  await page.mouse.move(x, y);
  await settle();
}

async function clickByte(offset) {
  const { x, y } = await placeOf(offset);
  await page.mouse.click(x, y);
  await settle();
}

const bytesOf = (from, to) =>
  page.evaluate(
    ([begin, end]) => {
      const cells = [...document.querySelectorAll(".hex-cells > span")].map((cell) => cell.textContent).join(" ");
      return cells.split(/\s+/).filter(Boolean).slice(begin, end).join(" ");
    },
    [from, to],
  );

/** Replaces a text in an editor by typing: selects it by searching, then types. */
async function replaceIn(pane, what, by) {
  const content = page.locator(`#${pane} .cm-content`);
  const place = await content.evaluate((element, wanted) => {
    const lines = [...element.querySelectorAll(".cm-line")];
    const index = lines.findIndex((line) => line.textContent.includes(wanted));
    const walker = document.createTreeWalker(lines[index], NodeFilter.SHOW_TEXT);
    const begin = lines[index].textContent.indexOf(wanted);
    const range = document.createRange();
    for (let at = 0, node = walker.nextNode(); node; at += node.length, node = walker.nextNode()) {
      if (begin >= at && begin <= at + node.length) range.setStart(node, begin - at);
      if (begin + wanted.length <= at + node.length) {
        range.setEnd(node, begin + wanted.length - at);
        break;
      }
    }
    element.focus();
    getSelection().removeAllRanges();
    getSelection().addRange(range);
    return index;
  }, what);
  assert.ok(place >= 0, `${what} is in sight`);
  await settle();
  await page.keyboard.insertText(by);
  await settle();
}

const problems = () => page.locator("#problems li").allInnerTexts();

for (const { title, layout } of examples) {
  test(`example: ${title}`, async () => {
    await choose(title);
    assert.match(await text("#layout-state"), /^[\d,]+ parts$/, layout);
    assert.match(await text("#tree-state"), /^[\d,]+ values?$/);
    const isDamaged = /damaged|wrong|among/.test(title);
    assert.equal((await text("#problems-title")) !== "No problems", isDamaged, (await problems()).join("\n"));
    // Each of the first bytes is part of something, which tree and layout show as well.
    await page.focus("#bytes");
    let ties = 0;
    for (let offset = 0; offset < 12; ++offset) {
      await page.keyboard.press("ArrowRight");
      await settle();
      const inTree = await joined("tree", "selected");
      if (inTree === "") continue;
      const name = (await text("#details .path strong")).split(".").at(-1);
      assert.ok(name.endsWith("]") || inTree.includes(name), `${name} in ${inTree}`);
      assert.notEqual(await joined("layout", "selected"), "");
      ++ties;
    }
    assert.ok(ties > 0, "something of the tree was marked");
  });
}

test("pointing at a byte marks value and part", async () => {
  await hoverByte(13); // in "station"
  assert.match(await joined("tree", "hover"), /"station" = 1001/);
  assert.match(await joined("layout", "hover"), /"station" = \(BNF8\) 0/);
  assert.equal(await text("#bytes .hex-cells .hover >> nth=0"), "E9 03 00 00 00 00 00 00");
  assert.match(await text("#details"), /station\s+BNF8\s+8 bytes at 0x7 \(7\)\s+1001/);
  await page.mouse.move(5, 5);
  await settle();
  assert.deepEqual(await marked("tree", "hover"), []);
});

test("pointing at a value or a group marks its bytes", async () => {
  await page.locator("#tree .cm-line", { hasText: '"latitude"' }).hover();
  await settle();
  assert.equal(await joined("bytes .hex-cells", "hover"), "00 00 00 00 00 40 48 40");
  await page.locator("#tree .cm-line", { hasText: '"position"' }).hover({ position: { x: 60, y: 8 } });
  await settle();
  const bytes = (await joined("bytes .hex-cells", "hover")).split(/\s+/);
  assert.equal(bytes.length, 16);
  assert.match(await text("#details"), /position\s+16 bytes at 0x13/);
});

test("pointing at a part marks it wherever it is in the packet", async () => {
  await page.locator("#layout .cm-line", { hasText: '"channel"' }).hover({ position: { x: 130, y: 8 } });
  await settle();
  assert.deepEqual((await joined("bytes .hex-cells", "hover")).split(/\s+/), ["01", "02", "03"]);
  assert.match(await text("#details"), /3 times/);
  // A rule is about its part.
  await page.locator("#layout .cm-line", { hasText: "@crc" }).locator(".t-rule").hover();
  await settle();
  assert.equal(await joined("bytes .hex-cells", "hover"), "0D 8B 99 2F");
});

test("a length before a value and a mark after it belong to the value", async () => {
  await hoverByte(45); // the prefix of "open"
  assert.match(await text("#details"), /readings\[1\]\.value\.text/);
  await hoverByte(60); // the zero after "Roof"
  assert.match(await text("#details"), /^name/);
});

test("a click keeps the marks and brings the others into sight", async () => {
  await choose("ACH, with a wrong total");
  await page.focus("#bytes");
  await page.keyboard.press("Control+End");
  await page.keyboard.press("ArrowUp");
  await settle();
  const path_ = await text("#details .path strong");
  assert.match(path_, /^file control\./);
  assert.match(await joined("tree", "selected"), /=/);
  assert.ok(await page.locator("#layout .selected").first().isVisible());
});

test("bytes that change make another tree", async () => {
  await clickByte(7);
  await page.keyboard.type("ea");
  await settle();
  assert.match(await text("#tree .cm-content"), /"station" = 1002/);
  assert.match((await problems()).join(), /crc/); // the checksum is now another one
  await page.keyboard.press("Control+z");
  await page.keyboard.press("Control+z");
  await settle();
  assert.match(await text("#tree .cm-content"), /"station" = 1001/);
  assert.deepEqual(await problems(), []);
});

test("a tree that changes makes other bytes, and stays as it was typed", async () => {
  await replaceIn("tree", "1001", "4711  ");
  assert.equal(await bytesOf(7, 9), "67 12");
  assert.deepEqual(await problems(), []);
  assert.match(await text("#tree .cm-content"), /"station" = 4711 {2},/);
  await hoverByte(8);
  assert.match(await joined("tree", "hover"), /"station" = 4711/);
});

test("members in another order are still tied to their bytes", async () => {
  await replaceIn("tree", '"magic" = "MSR1",', '"name" = "Roof", "magic" = "MSR1",');
  await replaceIn("tree", '"station" = 1001,', "");
  assert.deepEqual(await problems(), [(await problems())[0]], "two names are one mistake");
});

test("a layout that changes reads the bytes anew", async () => {
  await replaceIn("layout", '"station" = (BNF8)', '"place" = (BNF8)');
  assert.match(await text("#tree .cm-content"), /"place" = 1001/);
  assert.deepEqual(await problems(), []);
});

test("mistakes of a layout stand at line and column, all of them", async () => {
  await replaceIn("layout", "size of .", "size of nowhere");
  await replaceIn("layout", "count of readings", "count of nothing");
  const list = await problems();
  assert.equal(list.length, 2, list.join("\n"));
  assert.match(list[0], /^Error\s*Layout 8:\d+/);
  assert.match(list[1], /^Error\s*Layout 16:\d+/);
  assert.match(await text("#layout-state"), /^2 mistakes$/);
  assert.ok((await page.locator("#layout .cm-lintRange-error").count()) >= 2);
  assert.equal(await page.locator("#layout .cm-lint-marker-error").count(), 2);
  await page.locator("#problems button").nth(1).click();
  assert.ok(await page.evaluate(() => document.querySelector("#layout").contains(document.activeElement)));
  await replaceIn("layout", "size of nowhere", "size of .");
  await replaceIn("layout", "count of nothing", "count of readings");
  assert.deepEqual(await problems(), []);
  assert.match(await text("#tree-state"), /values$/);
});

test("a fault of a packet stands at its bytes", async () => {
  await choose("ACH, with a letter among digits");
  const list = await problems();
  assert.deepEqual(list.length, 1);
  assert.match(list[0], /Byte 1359\s*batches\[0\]\.entries\[12\]\.entry\.amount: Other characters stand where digits/);
  await page.locator("#problems button").click();
  await settle();
  assert.match(await joined("bytes .hex-cells", "error"), /30 *58 30 30 32 35 30 30 30 30/);
  assert.ok((await page.locator("#bytes .unread").count()) > 0, "the rest of the record is not read");
  assert.match(await joined("layout", "selected"), /"amount" = \(ANF10\)/);
  assert.match(await text("#details"), /Other characters stand where digits must/);
});

test("a finding stands at its bytes and in the tree", async () => {
  await choose("Sensor, with a damaged byte");
  const list = await problems();
  assert.equal(list.length, 1);
  assert.match(list[0], /^Warning\s*Byte 61\s*crc: /);
  assert.equal(await joined("bytes .hex-cells", "warning"), "0D 8B 99 2F");
  assert.match(await joined("tree", "cm-lintRange-warning"), /crc/);
});

test("a packet that ends too soon says how much is missing", async () => {
  await page.focus("#bytes");
  await page.keyboard.press("Control+End");
  for (let i = 0; i < 3; ++i) await page.keyboard.press("Backspace");
  await settle();
  assert.match((await problems()).join(), /at least 3 bytes/);
  assert.match(await text("#bytes-state"), /62 bytes, 1 problem/);
});

test("a mistake in the text of the tree stands at its line, and leaves the bytes", async () => {
  const before_ = await bytesOf(0, 65);
  await replaceIn("tree", "1001,", "1001 1002,");
  const list = await problems();
  assert.equal(list.length, 1);
  assert.match(list[0], /^Error\s*Tree 10:\d+/);
  assert.equal(await page.locator("#tree .cm-lint-marker-error").count(), 1);
  assert.equal(await bytesOf(0, 65), before_);
  assert.match(await text("#tree-state"), /does not fit/);
  await replaceIn("tree", "1001 1002,", "1001,");
  assert.deepEqual(await problems(), []);
});

test("a tree that does not fit stands at its member, and leaves the bytes", async () => {
  const before_ = await bytesOf(0, 65);
  await replaceIn("tree", "1001", "-1");
  const list = await problems();
  assert.equal(list.length, 1);
  assert.match(list[0], /^Error\s*Tree 10:\d+\s*station: /);
  assert.equal(await bytesOf(0, 65), before_);
  // When the layout learns to take it, the tree is what counts.
  await replaceIn("layout", '"station" = (BNF8) 0', '"station" = (BNF8) 0, "@station" = "signed"');
  assert.deepEqual(await problems(), []);
  assert.equal(await bytesOf(7, 9), "FF FF");
});

test("a link holds everything", async () => {
  await replaceIn("layout", '"station"', '"Straße"');
  await replaceIn("tree", "1001", "1002 // second, €");
  await clickByte(0);
  await page.keyboard.press("Control+a");
  await page.click("#link");
  await page.waitForFunction(() => location.hash.length > 100);
  const fragment = await page.evaluate(() => location.hash);
  assert.match(fragment, /^#1\.[-\w]+$/);
  const shown = [await text("#layout .cm-content"), await text("#tree .cm-content"), await bytesOf(0, 65)];
  assert.match(shown[1], /"Straße" = 1002 \/\/ second, €/);
  await page.context().close();
  assert.deepEqual(noise, []);
  await open({ fragment });
  assert.deepEqual([await text("#layout .cm-content"), await text("#tree .cm-content"), await bytesOf(0, 65)], shown);
  assert.equal(await page.locator("#example").inputValue(), "");
});

test("a link that is opened in the same page replaces what is there", async () => {
  await choose("Modbus/TCP: a request");
  await page.click("#link");
  await page.waitForFunction(() => location.hash.length > 100);
  const fragment = await page.evaluate(() => location.hash);
  await choose("HSRP: a coup");
  await page.evaluate((hash) => (location.hash = hash), fragment);
  await page.waitForFunction(() => document.querySelector("#tree .cm-content").textContent.includes('"unit" = 17'));
});

test("a damaged link is said to be damaged", async () => {
  await page.context().close();
  await open({ fragment: "#1.AAAAnonsense" });
  assert.match(await text("#toast"), /damaged/);
  assert.match(await text("#layout-state"), /19 parts/);
});

test("bytes: keys move, extend, overwrite, insert, remove and undo", async () => {
  const label = () => page.locator("#byte").getAttribute("aria-label");
  await page.focus("#bytes");
  assert.equal(await label(), "4D, magic");
  await page.keyboard.press("ArrowDown");
  await settle();
  assert.equal(await label(), "5E, time");
  await page.keyboard.press("End");
  await page.keyboard.press("ArrowRight");
  await page.keyboard.press("ArrowUp");
  await page.keyboard.press("ArrowLeft");
  await settle();
  assert.equal(await label(), "80, time");
  await page.keyboard.press("Control+End");
  await settle();
  assert.equal(await label(), "end");
  await page.keyboard.press("Control+Home");
  await page.keyboard.press("Shift+ArrowRight");
  await page.keyboard.press("Shift+ArrowRight");
  await settle();
  assert.equal(await joined("bytes .hex-cells", "picked"), "4D 53 52");
  await page.keyboard.press("Escape");
  await settle();
  assert.deepEqual(await marked("bytes", "picked"), []);
  assert.deepEqual(await marked("tree", "selected"), []);
  await page.keyboard.press("Control+Home");
  await page.keyboard.type("0f");
  await page.keyboard.press("Insert");
  await page.keyboard.press("Delete");
  await page.keyboard.press("Delete");
  await settle();
  assert.equal(await bytesOf(0, 3), "0F 52 31");
  await page.keyboard.press("Control+Home");
  await page.keyboard.press("Enter"); // to the characters
  await page.keyboard.type("MS");
  await settle();
  assert.equal(await bytesOf(0, 3), "4D 53 31");
  for (let i = 0; i < 7; ++i) await page.keyboard.press("Control+z");
  await settle();
  assert.equal(await bytesOf(0, 4), "4D 53 52 31");
  await page.keyboard.press("Control+y");
  await settle();
  assert.equal(await bytesOf(0, 1), "0D");
});

test("bytes: copy gives hex digits, and paste takes them", async () => {
  await clickByte(0);
  const copied = await page.evaluate(() => {
    const data = new DataTransfer();
    document.querySelector("#bytes").dispatchEvent(new ClipboardEvent("copy", { clipboardData: data }));
    return data.getData("text/plain");
  });
  assert.equal(copied, "4D");
  await page.evaluate(() => {
    const data = new DataTransfer();
    data.setData("text/plain", "DE AD be ef");
    document.querySelector("#bytes").dispatchEvent(new ClipboardEvent("paste", { clipboardData: data }));
  });
  await settle();
  assert.equal(await bytesOf(0, 5), "DE AD BE EF 4D");
});

test("Tab leads through all controls, and no editor holds it", async () => {
  await page.focus("#example");
  const seen = [];
  for (let i = 0; i < 16; ++i) {
    await page.keyboard.press("Tab");
    seen.push(
      await page.evaluate(() => {
        const active = document.activeElement;
        return active.closest(".editor")?.id ?? (active.id || active.className || active.tagName);
      }),
    );
  }
  const order = ["link", "keys", "theme", "layout-open", "layout-save", "layout", "bytes-open", "bytes-save", "bytes"];
  assert.deepEqual(seen.slice(0, 12), [...order, "tree-save", "tree", "details"]);
});

test("F6 goes from pane to pane", async () => {
  const where = () => page.evaluate(() => document.activeElement.closest(".pane")?.id);
  const seen = [];
  for (let i = 0; i < 4; ++i) {
    await page.keyboard.press("F6");
    seen.push(await where());
  }
  assert.deepEqual(seen, ["layout-pane", "bytes-pane", "tree-pane", "layout-pane"]);
  await page.keyboard.press("Shift+F6");
  assert.equal(await where(), "tree-pane");
});

test("everything that can be operated has a role and a name", async () => {
  await page.click("#keys");
  assert.ok(await page.locator("#keys-dialog").isVisible());
  await page.keyboard.press("Escape");
  assert.ok(!(await page.locator("#keys-dialog").isVisible()));
  for (const role of ["button", "combobox", "grid", "textbox"]) {
    const all = await page.getByRole(role).count();
    const named = await page.getByRole(role, { name: /\S/ }).count();
    assert.ok(all > 0 && all === named, `${named} of ${all} with the role ${role} have a name`);
  }
  for (const name of ["Layout", "Tree"]) assert.equal(await page.getByRole("textbox", { name }).count(), 1);
  assert.equal(await page.getByRole("grid", { name: "Bytes" }).count(), 1);
  assert.equal(await page.locator("#bytes").getAttribute("aria-activedescendant"), "byte");
  assert.equal(await page.getByRole("region", { name: "Details" }).count(), 1);
});

test("colours follow the system until they are chosen", async () => {
  const back = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
  const light = await back();
  await page.emulateMedia({ colorScheme: "dark" });
  const dark = await back();
  assert.notEqual(dark, light);
  await page.click("#theme");
  assert.equal(await back(), light);
  await page.click("#theme");
  assert.equal(await back(), dark);
  await page.emulateMedia({ colorScheme: "light" });
  assert.equal(await back(), dark);
  await page.reload();
  await page.waitForSelector("html[data-ready]");
  assert.equal(await back(), dark);
});

test("a narrow window shows the panes one below the other", async () => {
  await page.setViewportSize({ width: 390, height: 800 });
  await settle();
  const boxes = [];
  for (const id of ["layout-pane", "bytes-pane", "tree-pane"]) boxes.push(await page.locator(`#${id}`).boundingBox());
  assert.ok(boxes[0].y + boxes[0].height <= boxes[1].y && boxes[1].y + boxes[1].height <= boxes[2].y);
  assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), "nothing sticks out");
  assert.equal(await page.locator("#bytes").getAttribute("aria-colcount"), "8");
  await page.locator("#bytes").scrollIntoViewIfNeeded();
  await clickByte(7);
  assert.match(await text("#details"), /^station/);
});

test("the page can make no connections", async () => {
  let connections = 0;
  const server = createServer((socket) => {
    ++connections;
    socket.destroy();
  });
  await new Promise((done) => server.listen(0, "127.0.0.1", done));
  const elsewhere = `http://127.0.0.1:${server.address().port}/`;
  const refused = await page.evaluate(async (url) => {
    const load = (tag, place) =>
      new Promise((good, bad) => {
        const element = document.createElement(tag);
        [element.onload, element.onerror] = [good, bad];
        element.src = url;
        if (place) place.append(element);
      });
    const tries = {
      fetch: () => fetch(url, { mode: "no-cors" }),
      image: () => load("img"),
      script: () => load("script", document.head),
      socket: () => new Promise((good, bad) => Object.assign(new WebSocket(url), { onopen: good, onerror: bad })),
    };
    const failed = [];
    for (const [name, attempt] of Object.entries(tries)) await attempt().catch(() => failed.push(name));
    return failed;
  }, elsewhere);
  server.close();
  assert.deepEqual(refused, ["fetch", "image", "script", "socket"]);
  assert.equal(connections, 0);
  assert.ok(noise.filter((line) => /Content Security Policy/.test(line)).length >= 4, noise.join("\n"));
  noise = noise.filter((line) => !/Content Security Policy/.test(line) && !line.includes(elsewhere));
});

/** A packet of a megabyte, through the button that opens files. */
async function openMegabyte() {
  await choose("ITCH 5.0: a feed of an exchange");
  const piece = readFileSync(path.join(root, "tests/data/layouts/itch50/sample-length-prefixed.bin"));
  const buffer = Buffer.concat(Array(Math.ceil(1e6 / piece.length)).fill(piece));
  const chooser = page.waitForEvent("filechooser");
  await page.click("#bytes-open");
  const begin = Date.now();
  await (await chooser).setFiles({ name: "big.bin", mimeType: "application/octet-stream", buffer });
  const size = buffer.length.toLocaleString("en");
  await page.waitForFunction((words) => document.querySelector("#bytes-state").textContent.startsWith(words), size);
  return Date.now() - begin;
}

test("a megabyte opens, scrolls and changes without waiting", async (context) => {
  const opened = await openMegabyte();
  assert.ok(opened < 10_000, `opened in ${opened} ms`);
  assert.match(await text("#tree-state"), /^230,928 values$/);
  assert.ok((await page.locator("#bytes *").count()) < 5000, "only what is in sight is there");
  const scrolled = await page.evaluate(async () => {
    const frames = async (element) => {
      const times = [];
      for (let i = 0; i < 40; ++i) {
        const begin = performance.now();
        element.scrollTop = (i * element.scrollHeight) / 40;
        await new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
        times.push(performance.now() - begin);
      }
      return times.sort((a, b) => a - b)[20];
    };
    return [await frames(document.querySelector("#bytes")), await frames(document.querySelector("#tree .cm-scroller"))];
  });
  for (const time of scrolled) assert.ok(time < 150, `a frame takes ${time} ms`);
  await page.focus("#bytes");
  await page.keyboard.press("Control+End");
  await page.keyboard.press("ArrowLeft");
  await settle();
  assert.match(await joined("tree", "selected"), /=/, "the last byte is tied to the end of the tree");
  await page.keyboard.press("Control+Home");
  for (let i = 0; i < 4; ++i) await page.keyboard.press("ArrowRight"); // to the second byte of "locate"
  await settle();
  const begin = Date.now();
  await page.keyboard.type("7f");
  await page.waitForFunction(() => document.querySelector("#tree .cm-content").textContent.includes("127"));
  const changed = Date.now() - begin;
  assert.ok(changed < 5000, `followed in ${changed} ms`);
  const frames = scrolled.map((time) => Math.round(time));
  context.diagnostic(`opened in ${opened} ms, frames ${frames} ms, changed in ${changed} ms`);
});

test("what is too long for a link is said to be", async () => {
  await page.evaluate(async () => {
    const data = new DataTransfer();
    const noise_ = Uint8Array.from({ length: 2_000_000 }, () => Math.random() * 256);
    data.items.add(new File([noise_], "noise.bin"));
    document.querySelector("#bytes").dispatchEvent(new DragEvent("drop", { dataTransfer: data, bubbles: true }));
  });
  await page.waitForFunction(() => document.querySelector("#bytes-state").textContent.startsWith("2,000,000"));
  await page.click("#link");
  await page.waitForFunction(() => document.querySelector("#toast").textContent.startsWith("Too much"));
  assert.equal(await page.evaluate(() => location.hash), "");
});
