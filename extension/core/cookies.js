// The cookies that the browser itself would send to exactly that address from that page.
import { hostOf } from "./addresses.js";
import { api, asksForNames } from "./api.js";
import { cookieHeader } from "./requests.js";

function storeOf(download) {
  if (download.storeId) return download.storeId;
  if (!asksForNames) return download.isPrivate ? "firefox-private" : "firefox-default";
  return download.isPrivate ? "1" : "0";
}

export async function cookiesFor(download) {
  const query = { url: download.address, storeId: storeOf(download), partitionKey: {} };
  if (!asksForNames) query.firstPartyDomain = null;
  try {
    const host = hostOf(download.page || download.referrer || download.address);
    return cookieHeader(await api.cookies.getAll(query), host);
  } catch {
    return "";
  }
}
