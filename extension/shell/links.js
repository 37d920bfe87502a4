// Links that the user chooses in menus and the picker, of which the browser downloads nothing yet.
import { nameOf } from "../core/addresses.js";
import { api, text } from "../core/api.js";
import { linksOfPage } from "../content/links.js";
import { isTaken } from "../core/hand_over.js";
import { tell, tellOutcome } from "./notices.js";

const NOTHING_DONE = ["refused", "unfit"];

// What came with the tab: where cookies come from, and where the links stood.
const originOf = (tab, frameUrl) => ({
  page: tab?.url,
  referrer: frameUrl ?? tab?.url,
  isPrivate: Boolean(tab?.incognito),
  storeId: tab?.cookieStoreId,
  userAgent: navigator.userAgent,
});

const downloadOf = (address, origin) => ({ ...origin, address, method: "GET" });

// Where Orlop cannot be had, the browser downloads what the user wanted.
async function downloadHere(download) {
  const options = { url: download.address };
  if (download.isPrivate) options.incognito = true;
  await api.downloads.download(options);
}

export async function handOverLink(address, tab, frameUrl, handOvers) {
  const download = downloadOf(address, originOf(tab, frameUrl));
  const hold = {
    kind: "none",
    drop() {},
    letGo() {},
  };
  const answer = await handOvers.handOver(download, hold);
  if (answer.outcome === "unfit") tell(text("noticeUnfit"));
  tellOutcome(answer, download);
  if (!isTaken(answer) && !NOTHING_DONE.includes(answer.outcome)) await downloadHere(download);
}

export async function collectLinks(tab, onlySelected) {
  const results = await api.scripting.executeScript({
    target: { tabId: tab.id, allFrames: true }, func: linksOfPage, args: [onlySelected],
  });
  const links = new Map();
  for (const { result } of results)
    for (const link of result ?? []) if (!links.has(link.address)) links.set(link.address, link);
  return [...links.values()];
}

// Shows the links of a page, or of what is selected there, to choose from.
export async function openPicker(tab, onlySelected, handOvers) {
  let links;
  try {
    links = await collectLinks(tab, onlySelected);
  } catch {
    tell(text("noticePageClosed"));
    return;
  }
  if (links.length === 0) {
    tell(text("noticeNoLinks"));
  } else if (onlySelected && links.length === 1) {
    await handOverLink(links[0].address, tab, undefined, handOvers);
  } else {
    const key = `picker:${crypto.randomUUID()}`;
    await api.storage.session.set({ [key]: { links, origin: originOf(tab), title: tab.title } });
    const options = { url: api.runtime.getURL(`pages/picker.html#${key}`) };
    if (!tab.incognito) Object.assign(options, { openerTabId: tab.id, windowId: tab.windowId });
    await api.tabs.create(options);
  }
}

// What was ticked in the picker. Answers how many Orlop has now, and why others are not there.
export async function handOverPicked({ addresses, origin }, handOvers) {
  const answers = await handOvers.handOverAll(addresses.map((one) => downloadOf(one, origin)));
  const left = addresses.flatMap((address, place) => isTaken(answers[place]) ? [] : [{
    address, name: nameOf(address), outcome: answers[place].outcome, text: answers[place].text ?? "",
  }]);
  return { taken: addresses.length - left.length, left };
}
