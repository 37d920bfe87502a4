// What the browser asked servers for lately: where a download began, how, and with which headers.
// Knows nothing of the browser but the shape of what `webRequest` tells.
import { withoutFragment } from "./addresses.js";

const MOST = 300;
const LONGEST_AGE = 10 * 60 * 1000;

const headerOf = (headers, name) =>
  headers?.find((header) => header.name.toLowerCase() === name)?.value;

// The body that a form has sent, as far as it is whole and can be sent again. Undefined: it is not.
export function bodyOf(requestBody, contentType) {
  if (!requestBody || requestBody.error) return undefined;
  if (requestBody.formData) {
    if (!/^application\/x-www-form-urlencoded\b/i.test(contentType ?? "")) return undefined;
    const pairs = Object.entries(requestBody.formData).flatMap(([name, values]) =>
      values.map((value) => [name, value]));
    if (pairs.some(([, value]) => typeof value !== "string")) return undefined;
    return new TextEncoder().encode(new URLSearchParams(pairs).toString());
  }
  const parts = requestBody.raw ?? [];
  if (parts.length === 0 || parts.some((part) => !part.bytes)) return undefined;
  const whole = new Uint8Array(parts.reduce((sum, part) => sum + part.bytes.byteLength, 0));
  let at = 0;
  for (const { bytes } of parts) {
    whole.set(new Uint8Array(bytes), at);
    at += bytes.byteLength;
  }
  return whole;
}

export class SeenRequests {
  #requests = new Map();

  // A request begins, or goes on to where it was redirected.
  begin(details, now = Date.now()) {
    const known = this.#requests.get(details.requestId);
    const request = known ?? { hops: [], tabId: details.tabId };
    request.time = now;
    request.isPrivate = Boolean(details.incognito);
    request.storeId = details.cookieStoreId;
    request.page = details.documentUrl ?? details.originUrl ?? request.page;
    request.hops.push({ address: details.url, method: details.method, body: details.requestBody });
    this.#requests.delete(details.requestId);
    this.#requests.set(details.requestId, request);
    for (const [key, { time }] of this.#requests) {
      if (this.#requests.size <= MOST && now - time <= LONGEST_AGE) break;
      this.#requests.delete(key);
    }
  }

  // The headers that go out with it.
  send(details) {
    const hop = this.#requests.get(details.requestId)?.hops.at(-1);
    if (!hop) return;
    hop.cookies = headerOf(details.requestHeaders, "cookie") ?? "";
    hop.referrer = headerOf(details.requestHeaders, "referer");
    hop.userAgent = headerOf(details.requestHeaders, "user-agent");
    hop.contentType = headerOf(details.requestHeaders, "content-type");
  }

  byId(requestId) {
    return this.#requests.get(requestId);
  }

  // The last one that has come to that address.
  at(address) {
    const wanted = withoutFragment(address);
    return [...this.#requests.values()].findLast(
      ({ hops }) => withoutFragment(hops.at(-1).address) === wanted);
  }
}

// How the file of a request can be asked for again: from where it began, or, where a form led to it
// and it came by an ordinary request then, from there.
export function repeatable(request) {
  const last = request.hops.at(-1);
  const first = request.hops[0];
  const start = first.method === last.method ? first : last;
  const isPost = start.method === "POST";
  return {
    address: start.address,
    finalAddress: last.address,
    method: start.method,
    body: isPost ? bodyOf(start.body, start.contentType) : undefined,
    contentType: isPost ? start.contentType : undefined,
    cookies: start.cookies,
    referrer: start.referrer,
    userAgent: start.userAgent,
    page: request.page,
    isPrivate: request.isPrivate,
    storeId: request.storeId,
    tabId: request.tabId,
  };
}
