"use strict";
// A finding is shown when each panel in which something is chosen has its value chosen, and its
// text holds what is searched for. The bars of a panel count what the other panels let through.
const findings = [...document.querySelectorAll(".finding")];
const choices = [...document.querySelectorAll(".choice")];
const search = document.querySelector("input");
const texts = new Map(findings.map((finding) => [finding, finding.textContent.toLowerCase()]));

function chosen(field) {
  return choices
    .filter((choice) => choice.dataset.field === field && choice.ariaPressed === "true")
    .map((choice) => choice.dataset.value);
}

function update() {
  const fields = [...new Set(choices.map((choice) => choice.dataset.field))];
  const wanted = Object.fromEntries(fields.map((field) => [field, chosen(field)]));
  const sought = search.value.toLowerCase();
  const counts = Object.fromEntries(fields.map((field) => [field, new Map()]));
  let shown = 0;
  for (const finding of findings) {
    const isFound = texts.get(finding).includes(sought);
    const failing = fields.filter(
      (field) => wanted[field].length > 0 && !wanted[field].includes(finding.dataset[field]));
    finding.hidden = !isFound || failing.length > 0;
    shown += finding.hidden ? 0 : 1;
    for (const field of fields) {
      if (isFound && failing.every((other) => other === field)) {
        const value = finding.dataset[field];
        counts[field].set(value, (counts[field].get(value) ?? 0) + 1);
      }
    }
  }
  for (const choice of choices) {
    const count = counts[choice.dataset.field].get(choice.dataset.value) ?? 0;
    const most = Math.max(1, ...counts[choice.dataset.field].values());
    choice.querySelector(".count").textContent = count;
    choice.querySelector(".bar").style.setProperty("--share", `${(100 * count) / most}%`);
    choice.classList.toggle("none", count === 0);
  }
  document.querySelector("#shown").textContent = `${shown} of ${findings.length} shown`;
}

for (const choice of choices) {
  choice.addEventListener("click", () => {
    choice.ariaPressed = choice.ariaPressed === "true" ? "false" : "true";
    update();
  });
}
search.addEventListener("input", update);
document.querySelector("#reset").addEventListener("click", () => {
  choices.forEach((choice) => { choice.ariaPressed = "false"; });
  search.value = "";
  update();
});
update();
