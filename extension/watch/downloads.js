// Downloads that the browser has begun. Chromium lets them be held before they have a name; in
// Firefox these are the few that no answer of a server has announced, and those that Orlop is to
// have are paused.
import { baseName } from "../core/addresses.js";
import { api, asksForNames } from "../core/api.js";
import { repeatable } from "../core/seen_requests.js";
import { wasLeft } from "./left.js";
import { seen, wasPosted } from "./requests.js";
import { pageIn, takeOver } from "./take_over.js";

const isOfAnExtension = (item) => Boolean(item.byExtensionId);

async function described(item) {
  const last = item.finalUrl || item.url;
  const request = seen.at(last);
  const download = request ? repeatable(request) : {
    address: item.url,
    finalAddress: last,
    method: (await wasPosted(last)) || (await wasPosted(item.url)) ? "POST" : "GET",
  };
  return {
    ...download,
    referrer: download.referrer ?? item.referrer,
    page: (await pageIn(download.tabId)) ?? download.page ?? item.referrer,
    name: baseName(item.filename ?? ""),
    size: item.totalBytes,
    isPrivate: item.incognito,
    storeId: download.storeId ?? item.cookieStoreId,
    userAgent: download.userAgent ?? navigator.userAgent,
  };
}

// Cancelled first and looked at then: what is complete stays so, and what is not may become so at
// any moment before.
export async function removeFromBrowser(downloadId) {
  await api.downloads.cancel(downloadId).catch(() => {});
  const [item] = await api.downloads.search({ id: downloadId });
  if (!item) return;
  if (item.state === "complete") await api.downloads.removeFile(downloadId).catch(() => {});
  await api.downloads.erase({ id: downloadId });
}

function watchNames(context) {
  api.downloads.onDeterminingFilename.addListener((item, suggest) => {
    if (isOfAnExtension(item)) return false;
    const hold = {
      kind: "download",
      downloadId: item.id,
      drop: () => removeFromBrowser(item.id),
      letGo: () => suggest(),
    };
    described(item)
      .then((download) => takeOver(download, hold, context))
      .catch((problem) => {
        console.error(problem);
        suggest();
      });
    return true;
  });
}

// Answers whether it stands still and can go on again.
async function pause(downloadId) {
  try {
    await api.downloads.pause(downloadId);
  } catch {
    return false;
  }
  const [{ state, paused }] = await api.downloads.search({ id: downloadId });
  return state !== "complete" && paused;
}

// To go on after a pause, Firefox asks anew, and by an ordinary request: what stays must not be
// paused, least of all what a page has made by itself and nobody can be asked for.
async function pauseAndTakeOver(item, context) {
  const download = await described(item);
  if (download.method !== "GET" || wasLeft(download.finalAddress)) return;
  let isPaused = false;
  await takeOver(download, {
    kind: "download",
    downloadId: item.id,
    begin: async () => (isPaused = await pause(item.id)),
    drop: () => removeFromBrowser(item.id),
    letGo: async () => isPaused && api.downloads.resume(item.id),
  }, context);
}

export function watchDownloads(context) {
  if (asksForNames) {
    watchNames(context);
    return;
  }
  api.downloads.onCreated.addListener((item) => {
    if (item.state === "in_progress" && !isOfAnExtension(item))
      pauseAndTakeOver(item, context).catch(console.error);
  });
}
