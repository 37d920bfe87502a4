// Remembers how downloads began. What was posted is remembered beyond the worker too, since asking
// for it as if it were not would be wrong.
import { withoutFragment } from "../core/addresses.js";
import { api, asksForNames } from "../core/api.js";
import { SeenRequests } from "../core/seen_requests.js";

const POSTED = "posted";
const MOST_POSTED = 100;

export const seen = new SeenRequests();

// One after the other, for two that write at once would lose one.
let writing = Promise.resolve();

function rememberPosted(address) {
  writing = writing.then(async () => {
    const { [POSTED]: known = [] } = await api.storage.session.get(POSTED);
    const others = known.filter((one) => one !== withoutFragment(address));
    await api.storage.session.set({
      [POSTED]: [...others, withoutFragment(address)].slice(-MOST_POSTED),
    });
  });
}

export async function wasPosted(address) {
  await writing;
  const { [POSTED]: known = [] } = await api.storage.session.get(POSTED);
  return known.includes(withoutFragment(address));
}

export function watchRequests() {
  const filter = { urls: ["http://*/*", "https://*/*"], types: ["main_frame", "sub_frame", "other"] };
  // Chromium gives cookies and referrers only to who asks for them by this name.
  const headers = asksForNames ? ["requestHeaders", "extraHeaders"] : ["requestHeaders"];
  api.webRequest.onBeforeRequest.addListener((details) => {
    seen.begin(details);
    if (details.method === "POST") rememberPosted(details.url);
  }, filter, ["requestBody"]);
  api.webRequest.onSendHeaders.addListener((details) => seen.send(details), filter, headers);
}
