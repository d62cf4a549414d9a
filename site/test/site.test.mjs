// Tests of the site in a browser, opened from the disk without a network: the search, and how pages fit their windows.
import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import path from "node:path";
import { after, afterEach, before, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";
import { launchChromium, noiseOf } from "../../tests/support/chromium.mjs";

const root = path.dirname(path.dirname(path.dirname(fileURLToPath(import.meta.url))));
const folder = process.env.MURV_SITE ?? path.join(root, "build/site");
const site = `${pathToFileURL(folder).href}/`;

let browser;
let page;
let noise; // what pages asked for outside of the site, or complained about

before(async () => {
  browser = await launchChromium(chromium);
});
after(() => browser?.close());

async function open(name, { width = 1440, height = 900, colorScheme = "light" } = {}) {
  const context = await browser.newContext({ viewport: { width, height }, colorScheme, offline: true });
  page = await context.newPage();
  noise = noiseOf(page, (url) => url.startsWith(site));
  page.on("requestfailed", (request) => {
    const why = request.failure().errorText;
    if (why !== "net::ERR_ABORTED") noise.push(`${why}: ${request.url()}`); // aborted: the next page came before it
  });
  await page.goto(site + name);
}

afterEach(async () => {
  await page?.context().close();
  page = undefined;
  assert.deepEqual(noise, []);
});

const results = () => page.locator("#found a");
const here = () => decodeURIComponent(page.url().slice(site.length));

/** Types as a person does, key by key, and waits until there is a list. */
async function search(words) {
  await page.locator("#search").pressSequentially(words);
  await page.locator("#found li").first().waitFor();
}

test("a word that is typed shows results, and a click leads to the place", async () => {
  await open("index.html");
  await search("bitmaps");
  const first = results().first();
  assert.match(await first.locator("b").innerText(), /^Bitmaps, with a second one$/);
  await first.click();
  await page.waitForURL(`${site}layouts--cookbook.html#*`);
  const heading = page.locator(`a#${here().split("#")[1]}`).locator("xpath=..");
  assert.match(await heading.innerText(), /Bitmaps, with a second one/);
  await page.waitForFunction((id) => {
    const { top, bottom } = document.getElementById(id).parentElement.getBoundingClientRect();
    return top >= 0 && bottom <= innerHeight;
  }, here().split("#")[1]);
});

test("every result has each word, in any case", async () => {
  await open("text.html");
  await search("CHECKSUM packet");
  const found = await results().evaluateAll((links) => links.map((link) => link.getAttribute("href")));
  assert.ok(found.length > 2, `${found.length} results`);
  const sections = new Map(searchText().map(([url, ...texts]) => [url, texts.join(" ").toLowerCase()]));
  for (const url of found)
    for (const word of ["checksum", "packet"]) assert.ok(sections.get(url).includes(word), `${url}: ${word}`);
});

/** What finish.py wrote for the search. */
function searchText() {
  const script = readFileSync(path.join(folder, "search-text.js"), "utf8");
  return JSON.parse(script.slice(script.indexOf("["), script.lastIndexOf("]") + 1));
}

test("classes, functions, verbs and faults are found by their names", async () => {
  await open("index.html");
  for (const [words, url] of [
    ["CPacketReader", /^classmurv_1_1CPacketReader\.html/],
    ["findAll", /^namespacemurv\.html#/],
    ["gen samples", /^tool\.html#/],
    ["PF_ambiguous", /^namespacemurv\.html#/],
    ["Kaitai", /^(comparison|index)\.html/],
  ]) {
    await page.locator("#search").fill("");
    await search(words);
    assert.match(await results().first().getAttribute("href"), url, words);
  }
});

test("a word that is nowhere is said to be nowhere, and Escape ends the search", async () => {
  await open("index.html");
  await search("zzyzx");
  assert.equal(await page.locator("#found").innerText(), "Nothing found");
  await page.keyboard.press("Escape");
  assert.equal(await page.locator("#found").isVisible(), false);
  assert.equal(await page.locator("#search").inputValue(), "");
});

test("keys are enough: slash, words, arrows, Enter", async () => {
  await open("classmurv_1_1CFields.html");
  await page.keyboard.press("/");
  await page.keyboard.type("explain");
  await results().nth(1).waitFor();
  const second = await results().nth(1).getAttribute("href");
  await page.keyboard.press("ArrowDown");
  await page.keyboard.press("ArrowDown");
  await page.keyboard.press("Enter");
  await page.waitForURL(site + second);
});

test("a page may be opened with a question", async () => {
  await open("index.html?search=zoned");
  await results().first().waitFor();
  assert.match(await page.locator("#found").innerText(), /zoned/i);
});

test("markup in a question is text", async () => {
  await open("index.html");
  await search("<b>");
  assert.equal(await page.locator("#found b b, #found span b").count(), 0);
  await open(`index.html?search=${encodeURIComponent("<img src=x onerror=alert(1)>")}`);
  await page.locator("#found li").first().waitFor();
  assert.equal(await page.locator("#found img").count(), 0);
});

test("the search fits a narrow window", async () => {
  await open("index.html", { width: 390, height: 844 });
  await search("layout");
  for (const box of [await page.locator("#search").boundingBox(), await page.locator("#found").boundingBox()])
    assert.ok(box.x >= 0 && box.x + box.width <= 390, JSON.stringify(box));
  await results().first().click();
  await page.waitForURL((url) => !url.href.endsWith("index.html"));
});

test("in a narrow window, wide tables keep their first column in sight", async () => {
  await open("comparison.html", { width: 390, height: 844 });
  const table = page.locator("table.markdownTable", { hasText: "Kaitai Struct" }).nth(1);
  const cell = table.getByText("Offsets that point elsewhere");
  const last = table.locator("tr").first().locator("th").last();
  const before = (await cell.boundingBox()).x;
  assert.ok((await last.boundingBox()).x > 200);
  await last.scrollIntoViewIfNeeded();
  const { x, width } = await last.boundingBox();
  assert.ok(x + width <= 390, `the last column ends at ${x + width}`);
  assert.equal((await cell.boundingBox()).x, before);
});

test("the side tree leads to every kind of page", async () => {
  await open("index.html");
  for (const [label, name] of [
    ["Install", "install"], ["Tutorial", "layouts"], ["Cookbook", "layouts--cookbook"], ["Headers", "headers"],
    ["The tool", "tool"], ["Binary files", "file-format"], ["Comparison", "comparison"], ["Benchmarks", "benchmarks"],
  ]) {
    const entry = (text) => page.locator("#nav-tree .label a", { hasText: new RegExp(`^${text}$`) });
    await entry("Changelog").waitFor(); // the tree is there, and its groups are open, but for that of the API
    if (label !== "Headers") {
      await entry(label).click();
    } else {
      await entry("API").click(); // leads to a page of links
      await page.locator("#doc-content a", { hasText: /^Headers$/ }).click();
    }
    await page.waitForURL(`${site}${name}.html`);
  }
});

test("every kept figure is a bar", async () => {
  const kept = readFileSync(path.join(root, "bench/baseline/tree.txt"), "utf8").split("\n");
  const rows = kept.map((line) => line.match(/^(\S+) : \S+ +[\d.]+ +[\d.]+ +[\d.]+$/)).filter(Boolean);
  const groups = new Set(rows.map(([, group]) => group));
  assert.ok(groups.size > 10, `${groups.size} groups`);
  await open("benchmarks.html");
  assert.equal(await page.locator("svg.bars rect.own").count(), groups.size);
  assert.equal(await page.locator("svg.bars rect.peer").count(), rows.length);
});

// Contrast as WCAG 2 defines it.
const contrast = ([one, other]) => {
  const light = (color) => {
    const [r, g, b] = color.match(/[\d.]+/g).slice(0, 3).map((part) => {
      const share = part / 255;
      return share <= 0.03928 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const [low, high] = [light(one), light(other)].sort((a, b) => a - b);
  return (high + 0.05) / (low + 0.05);
};

/** Colours of the text of every kind of element, and of the ground below it. */
const colors = () => page.evaluate(() => {
  const ground = (element) => {
    const color = getComputedStyle(element).backgroundColor;
    return /^rgb\(|, 1\)$/.test(color) || !element.parentElement ? color : ground(element.parentElement);
  };
  const kinds = ".contents :is(p, li, a, th, td, code, .fragment span)";
  return [...document.querySelectorAll(kinds)].filter((element) => element.textContent.trim()).map((element) => [
    getComputedStyle(element).color, ground(element), element.textContent.slice(0, 30)]);
});

const pages = readdirSync(folder).filter((name) => /^[a-z][\w-]*\.html$/.test(name)
  && !/^(class|struct|union|namespace|functions|dir_|usergroup)|_8h/.test(name));

for (const colorScheme of ["light", "dark"])
  for (const width of [1440, 390])
    test(`pages fit: ${colorScheme}, ${width} wide`, async () => {
      assert.ok(pages.includes("comparison.html") && pages.includes("benchmarks.html"), pages.join(" "));
      let texts = 0;
      await open("index.html", { width, colorScheme });
      for (const name of pages) {
        await page.goto(site + name);
        const wide = await page.evaluate(() => document.documentElement.scrollWidth);
        assert.ok(wide <= width, `${name} is ${wide} wide`);
        const rows = await page.evaluate(() => [...document.querySelectorAll("table.markdownTable")].filter((table) => {
          const box = table.getBoundingClientRect();
          return box.width && (box.left < 0 || box.right > innerWidth);
        }).length);
        assert.equal(rows, 0, `${name}: tables leave the window`);
        for (const [color, ground, text] of await colors()) {
          ++texts;
          assert.ok(contrast([color, ground]) >= 4.5, `${name}: ${text}: ${color} on ${ground}`);
        }
      }
      assert.ok(texts > 5000, `${texts} texts`);
    });
