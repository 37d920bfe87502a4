// Puts the parts together. Everything listens from the first turn on, since browsers end this worker
// when it is idle and start it for the next event.
import { api, asksForNames } from "./core/api.js";
import { HandOvers } from "./core/hand_over.js";
import { OrlopHost } from "./core/host.js";
import * as journal from "./core/journal.js";
import { loadSettings } from "./core/settings.js";
import { showState } from "./shell/button.js";
import { handOverPicked, openPicker } from "./shell/links.js";
import { watchMenus } from "./shell/menus.js";
import { watchAnswers } from "./watch/answers.js";
import { removeFromBrowser, watchDownloads } from "./watch/downloads.js";
import { noteHeldKeys, watchKeys } from "./watch/keys.js";
import { watchRequests } from "./watch/requests.js";

const SHORTEST_WAIT = 500;
const LONGEST_WAIT = 60_000;
const CALL_LIMIT = 30_000;
const UNSEEN = 30_000;

const state = { isHere: false, isMissing: false, count: 0 };
let wait = SHORTEST_WAIT;

const show = async () => showState(state, await loadSettings());

const host = new OrlopHost({
  connected() {
    host.call({ do: "subscribe" }, CALL_LIMIT).then(() => {
      wait = SHORTEST_WAIT;
      state.isMissing = false;
      handOvers.settle();
    }, () => {});
  },
  told(message) {
    if (message.event !== "running") return;
    const hasCome = message.here && !state.isHere;
    Object.assign(state, { isHere: message.here, count: message.count });
    show();
    if (hasCome) handOvers.settle();
  },
  disconnected(isMissing) {
    Object.assign(state, { isHere: false, isMissing, count: 0 });
    show();
    setTimeout(() => host.open(), wait);
    wait = Math.min(wait * 2, LONGEST_WAIT);
  },
});

const handOvers = new HandOvers(host);

// The expression of Orlop's settings; the last known one while Orlop does not run, for which it is
// not started.
async function filterText() {
  const { filter: known } = await api.storage.local.get("filter");
  if (!state.isHere && known !== undefined) return known;
  try {
    const filter = JSON.parse((await host.call({ do: "filter" }, CALL_LIMIT)).filter);
    if (filter !== known) await api.storage.local.set({ filter });
    return filter;
  } catch {
    return known ?? "";
  }
}

const context = { handOvers, filterText };

// The browser's own copy of what Orlop has kept goes, unless it has been there for a while: the user
// may have seen it.
handOvers.onKept = async ({ downloadId }) => {
  if (downloadId === undefined) return;
  const [item] = await api.downloads.search({ id: downloadId });
  const age = item?.endTime ? Date.now() - Date.parse(item.endTime) : 0;
  if (item && age < UNSEEN) await removeFromBrowser(downloadId);
};

// Settles what a worker, or a browser that crashed, has left half done.
async function recover() {
  for (const entry of await journal.leftovers()) {
    const isHeld = entry.hold === "download";
    const [item] = isHeld ? await api.downloads.search({ id: entry.downloadId }) : [];
    const isSame = item?.url === entry.download.address || item?.url === entry.download.finalAddress;
    if (isSame && item.state === "complete") {
      await journal.owe(entry);
    } else if (entry.hold === "answer" && (await journal.isOfThisRun(entry))) {
      await journal.owe(entry);
    } else if (entry.hold === "none" || entry.download.method !== "GET") {
      await journal.end(entry);
    } else {
      const letGo = async () => isSame && item.canResume && api.downloads.resume(item.id);
      const drop = () => isSame ? removeFromBrowser(item.id) : undefined;
      await handOvers.askAgain(entry, { drop, letGo });
    }
  }
  await handOvers.settle();
}

const actions = {
  show: () => host.call({ do: "show" }, CALL_LIMIT).catch(() => ({ error: "unreachable" })),
  filter: async () => ({ filter: state.isHere ? await filterText() : "" }),
  connect: async () => host.open(),
  pick: async ({ tabId }) => openPicker(await api.tabs.get(tabId), false, handOvers),
  handOver: (message) => handOverPicked(message, handOvers),
};

// Pages of the web reach only the first of these, by our own script in them, and it hands nothing
// over.
api.runtime.onMessage.addListener((message, sender, answer) => {
  if (sender.id !== api.runtime.id) return false;
  if (Array.isArray(message?.heldKeys)) {
    noteHeldKeys(message.heldKeys);
    return false;
  }
  const isOurPage = sender.url?.startsWith(api.runtime.getURL("pages/"));
  if (!isOurPage || !Object.hasOwn(actions, message?.do)) return false;
  actions[message.do](message).then(answer, () => answer(null));
  return true;
});

api.storage.onChanged.addListener(async (changes, area) => {
  if (area !== "local") return;
  if (changes.key) await watchKeys(await loadSettings());
  if (changes.showsCount) await show();
});

watchRequests();
watchDownloads(context);
if (!asksForNames) watchAnswers(context);
watchMenus(context);
api.runtime.onStartup.addListener(() => {});
loadSettings().then(watchKeys);
host.open();
recover().catch(console.error);
