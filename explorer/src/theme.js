// theme.js - light or dark: as the system has it, or as chosen here.

const NEXT = { auto: "light", light: "dark", dark: "auto" };
const WORDS = { auto: "Auto", light: "Light", dark: "Dark" };
const KEY = "murv-explorer-theme";

/** Pages from a disk may have no storage. */
function stored() {
  try {
    return localStorage.getItem(KEY);
  } catch {
    return null;
  }
}

function store(choice) {
  try {
    localStorage.setItem(KEY, choice);
  } catch {
    // then it holds until the page is closed
  }
}

export function startTheme(button) {
  let choice = stored() in NEXT ? stored() : "auto";
  const apply = () => {
    document.documentElement.dataset.theme = choice;
    button.textContent = WORDS[choice];
    button.setAttribute("aria-label", `Colours: ${WORDS[choice].toLowerCase()}. Change`);
    button.title = "Colours: as the system, light, dark";
  };
  button.addEventListener("click", () => {
    choice = NEXT[choice];
    store(choice);
    apply();
  });
  apply();
}
