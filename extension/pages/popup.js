import { hostOf, isAtSite, sitesOf } from "../core/addresses.js";
import { api, text } from "../core/api.js";
import { loadSettings, saveSettings } from "../core/settings.js";
import { STATE } from "../shell/button.js";
import { putTexts, send } from "./texts.js";

const at = (id) => document.getElementById(id);

function lineOf({ isMissing, isHere, count }) {
  if (isMissing) return "stateMissing";
  if (!isHere) return "stateResting";
  return ["stateRunningNone", "stateRunningOne"][count] ?? "stateRunning";
}

function showState(state = {}) {
  at("state").textContent = text(lineOf(state), state.count ?? 0);
  at("state").classList.toggle("bad", Boolean(state.isMissing));
  at("advice").hidden = !state.isMissing;
  at("advice").textContent = text("adviceMissing");
  at("show").disabled = Boolean(state.isMissing);
}

const withoutSite = (lines, host) =>
  sitesOf(lines).filter((site) => !isAtSite(host, site)).join("\n");

async function showSite(host) {
  at("siteRow").hidden = !host;
  at("siteText").textContent = text("notFromSite", host);
  const { never } = await loadSettings();
  at("site").checked = sitesOf(never).some((site) => isAtSite(host, site));
  at("site").addEventListener("change", async () => {
    const settings = await loadSettings();
    const others = withoutSite(settings.never, host);
    const never = at("site").checked ? `${others}\n${host}`.trim() : others;
    await saveSettings({ never });
  });
}

async function start() {
  putTexts();
  const [tab] = await api.tabs.query({ active: true, currentWindow: true });
  const { takesOver } = await loadSettings();
  at("takesOver").checked = takesOver;
  at("takesOver").addEventListener("change", () =>
    saveSettings({ takesOver: at("takesOver").checked }));
  at("show").addEventListener("click", async () => {
    const answer = await send({ do: "show" });
    if (answer?.error) at("state").textContent = text("stateUnreachable");
    else window.close();
  });
  at("pick").disabled = !hostOf(tab?.url ?? "");
  at("pick").addEventListener("click", async () => {
    await send({ do: "pick", tabId: tab.id });
    window.close();
  });
  at("options").addEventListener("click", async () => {
    await api.runtime.openOptionsPage();
    window.close();
  });
  await showSite(hostOf(tab?.url ?? ""));
  const { [STATE]: state } = await api.storage.session.get(STATE);
  showState(state);
  api.storage.onChanged.addListener((changes, area) => {
    if (area === "session" && changes[STATE]) showState(changes[STATE].newValue);
  });
  send({ do: "connect" });
}

start();
