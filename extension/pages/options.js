import { api, asksForNames, text } from "../core/api.js";
import { filterFrom } from "../core/rules.js";
import { loadSettings, saveSettings } from "../core/settings.js";
import { STATE } from "../shell/button.js";
import { putTexts, send } from "./texts.js";

const ACCESS = { origins: ["http://*/*", "https://*/*"] };
const at = (id) => document.getElementById(id);
const fields = () => [...document.querySelectorAll("[name]")];

function put(settings) {
  for (const field of fields()) {
    const value = settings[field.name];
    if (field.type === "checkbox") field.checked = value;
    else if (field.type === "radio") field.checked = field.value === value;
    else if (document.activeElement !== field) field.value = value;
  }
  enable(settings);
}

function enable({ takesOver, which }) {
  for (const field of at("whichRows").querySelectorAll("[name]")) field.disabled = !takesOver;
  for (const field of at("someRows").querySelectorAll("[name]"))
    field.disabled = !takesOver || which !== "some";
}

function valueOf(field) {
  if (field.type === "checkbox") return field.checked;
  if (field.type !== "number") return field.value;
  return Math.min(Math.max(Math.round(field.valueAsNumber) || 0, 0), Number(field.max));
}

async function keep({ target }) {
  if (!target.name || (target.type === "radio" && !target.checked)) return;
  await saveSettings({ [target.name]: valueOf(target) });
  enable(await loadSettings());
}

function showState(state = {}) {
  at("state").textContent = text(
    state.isMissing ? "adviceMissing" : state.isHere ? "stateConnected" : "stateResting");
  at("state").classList.toggle("bad", Boolean(state.isMissing));
}

async function showFilter() {
  const { filter } = (await send({ do: "filter" })) ?? {};
  if (!filter) at("filter").textContent = text("filterNone");
  else if (filterFrom(filter)) at("filter").textContent = filter;
  else at("filter").textContent = text("filterBroken", filter);
}

async function showAccess() {
  at("access").hidden = await api.permissions.contains(ACCESS);
}

async function start() {
  putTexts();
  if (!asksForNames) document.querySelector("option[value=Alt]").remove();
  put(await loadSettings());
  document.addEventListener("input", keep);
  at("grant").addEventListener("click", async () => {
    await api.permissions.request(ACCESS);
    await showAccess();
  });
  api.storage.onChanged.addListener(async (changes, area) => {
    if (area === "local") put(await loadSettings());
    else if (changes[STATE]) showState(changes[STATE].newValue);
  });
  await showAccess();
  const { [STATE]: state } = await api.storage.session.get(STATE);
  showState(state);
  await showFilter();
}

start();
