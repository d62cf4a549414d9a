// search.js - full-text search in the browser, without a server.
//
// The sections of the site stand in search-text.js, which is loaded as a script when the first letter is typed: pages
// that are opened from a disk may not fetch anything else.
(() => {
  const s_limit = 30;
  const box = document.getElementById("search");
  const list = document.getElementById("found");
  let sections = null;
  let chosen = -1;

  function load(done) {
    if (sections)
      return done();
    const script = document.createElement("script");
    script.src = "search-text.js";
    script.onload = () => {
      sections = window.murvSearchText.map(([url, page, title, text]) => ({
        url, page, title, text, inTitle: title.toLowerCase(), inText: text.toLowerCase(),
      }));
      done();
    };
    document.head.append(script);
  }

  // 0 when a word is missing; words of the title count more, and most of all a title that is what was asked for.
  function weigh(section, words, whole) {
    let weight = section.inTitle === whole ? 100 : 0;
    for (const word of words) {
      const at = section.inTitle.indexOf(word);
      if (at >= 0)
        weight += at === 0 ? 30 : 20;
      else if (section.inText.includes(word) || section.page.toLowerCase().includes(word))
        weight += 1;
      else
        return 0;
    }
    return weight + 1 / (1 + section.text.length / 500);
  }

  function excerpt(section, words) {
    const at = Math.max(0, section.inText.indexOf(words[0]) - 30);
    return (at ? "... " : "") + section.text.slice(at, at + 110);
  }

  function element(tag, className, text) {
    const made = document.createElement(tag);
    made.className = className;
    made.textContent = text;
    return made;
  }

  function row(section, words) {
    const link = element("a", "", "");
    link.href = section.url;
    link.append(element("b", "", section.title));
    if (section.page !== section.title)
      link.append(element("i", "", section.page));
    link.append(element("span", "", excerpt(section, words)));
    const item = element("li", "", "");
    item.append(link);
    return item;
  }

  function show() {
    const whole = box.value.trim().toLowerCase();
    const words = whole.split(/\s+/).filter(Boolean);
    chosen = -1;
    list.hidden = !words.length;
    if (!words.length)
      return;
    const found = sections.map((section) => [weigh(section, words, whole), section])
      .filter(([weight]) => weight > 0).sort((a, b) => b[0] - a[0]).slice(0, s_limit);
    list.replaceChildren(...found.map(([, section]) => row(section, words)));
    if (!found.length)
      list.append(element("li", "nothing", "Nothing found"));
  }

  function choose(next) {
    const links = list.querySelectorAll("a");
    if (!links.length)
      return;
    links[chosen]?.classList.remove("chosen");
    chosen = (next + links.length) % links.length;
    links[chosen].classList.add("chosen");
    links[chosen].scrollIntoView({block: "nearest"});
  }

  box.addEventListener("input", () => load(show));
  box.addEventListener("keydown", (event) => {
    if (event.key === "ArrowDown" || event.key === "ArrowUp") {
      choose(event.key === "ArrowDown" ? chosen + 1 : Math.max(chosen, 0) - 1);
      event.preventDefault();
    } else if (event.key === "Enter") {
      (list.querySelectorAll("a")[Math.max(chosen, 0)])?.click();
    } else if (event.key === "Escape") {
      box.value = "";
      list.hidden = true;
    }
  });
  document.addEventListener("keydown", (event) => {
    if (event.key === "/" && document.activeElement !== box) {
      box.focus();
      event.preventDefault();
    }
  });
  document.addEventListener("click", (event) => {
    if (!event.target.closest("#titlearea") || event.target.closest("#found a"))
      list.hidden = true;
  });
  // A page may be opened with a question: index.html?search=bitmap
  const asked = new URLSearchParams(location.search).get("search");
  if (asked) {
    box.value = asked;
    load(show);
  }
})();
