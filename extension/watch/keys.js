// The key that leaves a download to the browser while it is held at a click.
import { api } from "../core/api.js";

const SCRIPT = "held-key";
// From a click to the download that it leads to.
const LIFETIME = 5000;
let held = { keys: [], time: 0 };

// Those of the last click; none: it was made without any.
export const noteHeldKeys = (keys, now = Date.now()) => {
  held = { keys, time: now };
};

// True for one download of a click.
export function takeHeldKey(key, now = Date.now()) {
  const isHeld = held.keys.includes(key) && now - held.time < LIFETIME;
  if (isHeld) noteHeldKeys([]);
  return isHeld;
}

// Pages hold our script only while a key is chosen.
export async function watchKeys({ key }) {
  const ids = (await api.scripting.getRegisteredContentScripts({ ids: [SCRIPT] })).map(({ id }) => id);
  if (key === "none" && ids.length > 0) {
    await api.scripting.unregisterContentScripts({ ids });
  } else if (key !== "none" && ids.length === 0) {
    await api.scripting.registerContentScripts([{
      id: SCRIPT, js: ["content/held_key.js"], matches: ["http://*/*", "https://*/*"],
      allFrames: true, runAt: "document_start", persistAcrossSessions: true,
    }]);
  }
}
