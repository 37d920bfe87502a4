// What both ways of holding a download share: whether Orlop takes it, and what the user is told.
import { hostOf, isWeb } from "../core/addresses.js";
import { api } from "../core/api.js";
import { Pace } from "../core/pace.js";
import { filterFrom, takesOver } from "../core/rules.js";
import { loadSettings } from "../core/settings.js";
import { tellOutcome } from "../shell/notices.js";
import { takeHeldKey } from "./keys.js";

const pace = new Pace();

// The address of the page in that tab, where it is one of the web.
export async function pageIn(tabId) {
  try {
    const { url } = await api.tabs.get(tabId);
    return isWeb(url ?? "") ? url : undefined;
  } catch {
    return undefined;
  }
}

// Answers whether Orlop has the download now. `hold` as for HandOvers; with `begin` the browser's own
// goes on until Orlop is to have it, and that answers whether there is still something to be held.
export async function takeOver(download, hold, { handOvers, filterText }) {
  const settings = await loadSettings();
  const filter = settings.usesFilter ? filterFrom(await filterText()) : null;
  const isKeyHeld = takeHeldKey(settings.key);
  const isWanted = takesOver({ ...download, isKeyHeld }, settings, filter);
  if (!isWanted || !pace.allows(hostOf(download.page ?? download.address))) {
    await hold.letGo();
    return false;
  }
  if (hold.begin && !(await hold.begin())) return false;
  const answer = await handOvers.handOver(download, hold);
  tellOutcome(answer, download);
  return answer.outcome === "ok" || answer.outcome === "known";
}
