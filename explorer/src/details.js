// details.js - the lower edge: what is pointed at, in words, and the list of everything that is wrong.

const LONGEST_VALUE = 2000; // characters; longer ones are in the tree

function element(tag, className, text = "") {
  const made = document.createElement(tag);
  made.className = className;
  made.textContent = text;
  return made;
}

const hex = (number) => `0x${number.toString(16).toUpperCase()}`;

function bytesWords(count) {
  return count === 1 ? "1 byte" : `${count.toLocaleString("en")} bytes`;
}

/** \param about  what main.js knows of a target, or null */
export function showDetails(root, about, idle) {
  root.replaceChildren();
  if (about === null) {
    root.append(element("p", "soft", idle));
    return;
  }
  const head = element("p", "path");
  head.append(element("strong", "", about.path || "(the whole)"));
  if (about.part.expression) head.append(element("code", "t-expression", about.part.expression));
  if (about.offset !== null) {
    const place = `${bytesWords(about.length)} at ${hex(about.offset)} (${about.offset})`;
    head.append(element("span", "soft", about.times > 1 ? `${about.times}${about.more ? "+" : ""} times` : place));
  }
  root.append(head);
  if (about.value !== "") {
    const value = about.value.length > LONGEST_VALUE ? `${about.value.slice(0, LONGEST_VALUE)}…` : about.value;
    root.append(element("p", "value", value));
  }
  if (about.wrong !== "") root.append(element("p", "wrong", about.wrong));
  if (about.part.comment) root.append(element("p", "comment", about.part.comment));
  for (const [rule, sentence] of about.part.rules) {
    const line = element("p", "rule");
    line.append(element("code", "t-rule", rule), element("span", "soft", sentence));
    root.append(line);
  }
}

/** \param problems  [{ severity, where, place, message, go }] */
export function showProblems(list, heading, problems, more) {
  const shown = problems.slice(0, 200);
  const left = problems.length - shown.length + more;
  const total = problems.length + more;
  heading.textContent = total === 0 ? "No problems" : total === 1 ? "1 problem" : `${total} problems`;
  list.replaceChildren(
    ...shown.map(({ severity, where, place, message, go }) => {
      const item = document.createElement("li");
      const button = element("button", `problem ${severity}`);
      button.type = "button";
      button.append(
        element("span", "badge", severity === "error" ? "Error" : "Warning"),
        element("span", "where", `${where} ${place}`),
        element("span", "message", message),
      );
      button.addEventListener("click", go);
      item.append(button);
      return item;
    }),
  );
  if (left > 0) list.append(element("li", "soft", `${left} more`));
}
