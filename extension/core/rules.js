// Which downloads Orlop takes over. Knows nothing of the browser.
import { extensionOf, hostOf, isAtSite, isWeb, nameOf, sitesOf } from "./addresses.js";

const MEBIBYTE = 1024 * 1024;

const hasSite = (download, lines) =>
  sitesOf(lines).some((site) => isAtSite(hostOf(download.page || download.address), site));

function hasType(download, settings) {
  const types = settings.types.toLowerCase().split(/[\s,;.]+/).filter(Boolean);
  return [download.name, nameOf(download.finalAddress ?? download.address)].some((name) =>
    types.includes(extensionOf(name ?? "")));
}

const matchesFilter = (download, filter) =>
  [download.address, download.finalAddress].some((address) => address && filter.test(address));

// An expression of the user's. Null: there is none, or it is none.
export function filterFrom(expression) {
  try {
    return expression?.trim() ? new RegExp(expression.trim(), "i") : null;
  } catch {
    return null;
  }
}

// Whether it can be asked for again from elsewhere.
export function canBeRepeated(download) {
  if (!isWeb(download.address)) return false;
  return download.method === "GET" || (download.method === "POST" && download.body !== undefined);
}

// download: { address, finalAddress, page, name, size, method, body, isKeyHeld }; a size below 0 is
// unknown and counts as large.
export function takesOver(download, settings, filter = null) {
  if (!settings.takesOver || download.isKeyHeld || !canBeRepeated(download)) return false;
  if (download.method === "POST" && !settings.takesPosts) return false;
  if (hasSite(download, settings.never)) return false;
  if (hasSite(download, settings.always)) return true;
  if (download.size >= 0 && download.size < settings.leastMebibytes * MEBIBYTE) return false;
  if (settings.which === "all") return true;
  return (
    hasType(download, settings) ||
    (settings.usesFilter && filter !== null && matchesFilter(download, filter))
  );
}
