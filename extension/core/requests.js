// What Orlop is sent of a download, in the bounds that its host has. Knows nothing of the browser.
import { baseName, isWeb } from "./addresses.js";

const LONGEST_ADDRESS = 32768;
const LONGEST_LINE = 65536;
const LARGEST_BODY = 512 * 1024;
const LONGEST_NAME = 1024;

// Controls and halves of pairs, which no request can carry.
const UNFIT = /[\p{Cc}\p{Cs}]/u;

const isLine = (value, longest) =>
  typeof value === "string" && value !== "" && value.length <= longest && !UNFIT.test(value);

const isAddress = (value) =>
  isLine(value, LONGEST_ADDRESS) && !value.includes(" ") && isWeb(value);

function base64(bytes) {
  let characters = "";
  for (const byte of bytes) characters += String.fromCharCode(byte);
  return btoa(characters);
}

// Null: it cannot be handed over whole. What merely helps is left out where it does not fit.
export function requestFor(id, download) {
  if (!isAddress(download.address)) return null;
  const request = { id, address: download.address };
  const addAddress = (name, value) => isAddress(value) && (request[name] = value);
  const addLine = (name, value, longest) => isLine(value, longest) && (request[name] = value);
  if (download.finalAddress !== download.address) addAddress("finalAddress", download.finalAddress);
  addAddress("referrer", download.referrer);
  addAddress("page", download.page);
  addLine("cookies", download.cookies, LONGEST_LINE);
  addLine("userAgent", download.userAgent, 2048);
  addLine("name", baseName(download.name ?? ""), LONGEST_NAME);
  if (Number.isSafeInteger(download.size) && download.size >= 0) request.size = download.size;
  if (download.isPrivate) request.private = true;
  if (download.method === "POST") {
    if (!download.body || download.body.length > LARGEST_BODY) return null;
    request.method = "POST";
    request.body = base64(download.body);
    addLine("contentType", download.contentType, 1024);
  }
  return request;
}

// The value of a Cookie header (RFC 6265, 5.4), of cookies that the browser has for the address.
// Longer paths go first. Of partitioned ones those count that belong to the page's site.
export function cookieHeader(cookies, pageHost) {
  const ofPage = cookies.filter(({ partitionKey }) => {
    const site = partitionKey?.topLevelSite;
    if (!site) return true;
    const host = new URL(site).hostname;
    return pageHost === host || pageHost.endsWith(`.${host}`);
  });
  return ofPage
    .map((cookie, place) => ({ cookie, place }))
    .sort((a, b) => b.cookie.path.length - a.cookie.path.length || a.place - b.place)
    .map(({ cookie: { name, value } }) => (name ? `${name}=${value}` : value))
    .join("; ");
}

// Requests by batches that stay below what a message may hold.
export function batches(requests, mostBytes = 900_000, most = 500) {
  const all = [];
  let bytes = Infinity;
  for (const request of requests) {
    const size = new TextEncoder().encode(JSON.stringify(request)).length + 1;
    if (bytes + size > mostBytes || all.at(-1).length === most) {
      all.push([]);
      bytes = 0;
    }
    all.at(-1).push(request);
    bytes += size;
  }
  return all;
}
