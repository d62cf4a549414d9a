// build.mjs - joins everything to one page: node build.mjs MODULE_DIRECTORY PAGE
//
// MODULE_DIRECTORY holds what emscripten made. The page has no parts elsewhere, and its policy allows no connections;
// its one script is allowed by its hash.
import { execFileSync } from "node:child_process";
import { createHash } from "node:crypto";
import { existsSync, readFileSync, readdirSync, writeFileSync } from "node:fs";
import path from "node:path";
import { fileURLToPath } from "node:url";
import { deflateRawSync } from "node:zlib";

const here = path.dirname(fileURLToPath(import.meta.url));
const root = path.dirname(here);
const [moduleDirectory, page] = process.argv.slice(2).map((name) => path.resolve(name));

/** Layouts with bytes to read: files of the tests, pieces of them, hex digits, or texts. */
function examples() {
  return JSON.parse(readFileSync(path.join(here, "examples.json"), "utf8")).map((example) => {
    let bytes = example.text
      ? Buffer.from(example.text, "latin1")
      : example.hex
      ? Buffer.from(example.hex.replaceAll(" ", ""), "hex")
      : readFileSync(path.join(root, "tests/data/layouts", example.file));
    if (example.from !== undefined) bytes = bytes.subarray(example.from, example.from + example.length);
    for (const [offset, text] of example.changed ?? []) bytes.write(text, offset, "latin1");
    const layout = readFileSync(path.join(root, "share/murv/layouts", `${example.layout}.murv`), "utf8");
    return { title: example.title, layout, bytes: bytes.toString("base64") };
  });
}

function bundle(generated) {
  writeFileSync(path.join(generated, "examples.json"), JSON.stringify(examples()));
  const wasm = deflateRawSync(readFileSync(path.join(moduleDirectory, "murv_explorer.wasm")), { level: 9 });
  writeFileSync(path.join(generated, "wasm.txt"), wasm.toString("base64"));
  const output = path.join(generated, "bundle.js");
  const options = [
    path.join(here, "src/main.js"),
    "--bundle", "--minify", "--format=esm", "--target=es2022", "--charset=utf8", "--legal-comments=none",
    "--log-level=warning", "--loader:.txt=text", `--outfile=${output}`,
    `--alias:murv-module=${path.join(moduleDirectory, "murv_explorer.js")}`,
    `--alias:murv-wasm=${path.join(generated, "wasm.txt")}`,
    `--alias:murv-examples=${path.join(generated, "examples.json")}`,
  ];
  execFileSync("esbuild", options, { stdio: "inherit", cwd: here });
  return readFileSync(output, "utf8");
}

/** The licences of the packages that are in the page. */
function licenses() {
  const lock = JSON.parse(readFileSync(path.join(here, "package-lock.json"), "utf8"));
  return Object.entries(lock.packages)
    .filter(([name, entry]) => name !== "" && !entry.dev)
    .map(([name]) => {
      const directory = path.join(here, name);
      const file = existsSync(directory) && readdirSync(directory).find((entry) => /^licen[cs]e/i.test(entry));
      if (!file) throw new Error(`${name} has no licence`);
      return `${name.replace("node_modules/", "")}\n\n${readFileSync(path.join(directory, file), "utf8").trim()}`;
    })
    .join("\n\n----\n\n")
    .replaceAll("--", "- -");
}

const script = bundle(moduleDirectory).replaceAll("</script", "<\\/script").trim();
const hash = createHash("sha256").update(script).digest("base64");
const policy = [
  "default-src 'none'",
  `script-src 'sha256-${hash}' 'wasm-unsafe-eval'`,
  "style-src 'unsafe-inline'",
  "img-src data:",
  "base-uri 'none'",
  "form-action 'none'",
].join("; ");

const parts = {
  "@POLICY@": policy,
  "@STYLE@": readFileSync(path.join(here, "style.css"), "utf8"),
  "<script>@SCRIPT@": `<script type="module">${script}`,
  "@LICENSES@": licenses(),
};
let html = readFileSync(path.join(here, "index.html"), "utf8");
for (const [mark, text] of Object.entries(parts)) {
  if (html.split(mark).length !== 2) throw new Error(`index.html must have ${mark} once`);
  html = html.replace(mark, () => text);
}
writeFileSync(page, html);
console.log(`${path.relative(process.cwd(), page)}: ${html.length} characters`);
