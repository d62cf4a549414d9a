// The browser for tests of pages: Chromium without what would ask for anything besides the page under test.

/** \param chromium  of playwright-core, which each test has in a folder of its own */
export function launchChromium(chromium) {
  const quiet = ["--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking"];
  return chromium.launch({
    executablePath: "/usr/bin/chromium",
    args: ["--no-sandbox", "--disable-component-update", "--disable-sync", ...quiet],
  });
}

/** Notes what a page complains about, and what it asks for besides addresses that are its own. */
export function noiseOf(page, isOwn) {
  const noise = [];
  page.on("console", (message) => noise.push(`${message.type()}: ${message.text()}`));
  page.on("pageerror", (error) => noise.push(error.stack));
  page.on("request", (request) => {
    if (!isOwn(request.url())) noise.push(`request: ${request.url().slice(0, 100)}`);
  });
  return noise;
}
