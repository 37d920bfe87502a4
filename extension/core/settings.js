// What the user can choose; kept by the browser.
import { api, asksForNames } from "./api.js";

export const DEFAULTS = Object.freeze({
  takesOver: true,
  // "all", or "some": what has one of the types or matches the filter.
  which: "all",
  types:
    "7z apk bz2 deb dmg exe flac gz img iso jar mkv mov mp3 mp4 msi ogg pdf pkg rar rpm tar tgz wav webm xz zip zst",
  usesFilter: false,
  leastMebibytes: 0,
  never: "",
  always: "",
  // Held while a link is clicked, it leaves the download to the browser. Firefox follows no link
  // while Alt is held.
  key: asksForNames ? "Alt" : "Control",
  takesPosts: true,
  showsCount: true,
});

export async function loadSettings() {
  return { ...DEFAULTS, ...(await api.storage.local.get(Object.keys(DEFAULTS))) };
}

export const saveSettings = (changes) => api.storage.local.set(changes);
