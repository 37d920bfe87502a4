// The entries in the browser's context menus.
import { api, text } from "../core/api.js";
import { handOverLink, openPicker } from "./links.js";

const ENTRIES = [
  { id: "link", contexts: ["link"], title: "menuLink" },
  { id: "image", contexts: ["image"], title: "menuImage" },
  { id: "media", contexts: ["audio", "video"], title: "menuMedia" },
  { id: "selection", contexts: ["selection"], title: "menuSelection" },
  { id: "page", contexts: ["page", "frame", "action"], title: "menuPage" },
];

async function makeMenus() {
  await api.contextMenus.removeAll();
  for (const { id, contexts, title } of ENTRIES)
    api.contextMenus.create({
      id, contexts, title: text(title), documentUrlPatterns: ["http://*/*", "https://*/*"],
    });
}

export async function chooseMenu({ menuItemId, linkUrl, srcUrl, frameUrl }, tab, handOvers) {
  if (menuItemId === "link") await handOverLink(linkUrl, tab, frameUrl, handOvers);
  else if (menuItemId === "selection") await openPicker(tab, true, handOvers);
  else if (menuItemId === "page") await openPicker(tab, false, handOvers);
  else await handOverLink(srcUrl, tab, frameUrl, handOvers);
}

export function watchMenus({ handOvers }) {
  api.runtime.onInstalled.addListener(makeMenus);
  api.contextMenus.onClicked.addListener((info, tab) => {
    chooseMenu(info, tab, handOvers).catch(console.error);
  });
}
