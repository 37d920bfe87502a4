// Answers of servers that the browser would save, held before a byte of them has come. Firefox only.
import { suggestedName } from "../core/addresses.js";
import { api } from "../core/api.js";
import { isToBeSaved } from "../core/answers.js";
import { repeatable } from "../core/seen_requests.js";
import { leave } from "./left.js";
import { seen } from "./requests.js";
import { pageIn, takeOver } from "./take_over.js";

const headerOf = (details, name) =>
  details.responseHeaders.find((header) => header.name.toLowerCase() === name)?.value;

async function described(details) {
  const download = repeatable(seen.byId(details.requestId));
  const length = headerOf(details, "content-length");
  return {
    ...download,
    page: (await pageIn(details.tabId)) ?? download.page,
    name: suggestedName(headerOf(details, "content-disposition"), details.url),
    size: /^\d+$/.test(length ?? "") ? Number(length) : -1,
    isPrivate: details.incognito,
    storeId: details.cookieStoreId,
  };
}

async function decide(details, context) {
  const download = await described(details);
  const isTaken = await takeOver(download, { kind: "answer", drop() {}, letGo() {} }, context);
  if (!isTaken) leave(details.url);
  return { cancel: isTaken };
}

export function watchAnswers(context) {
  api.webRequest.onHeadersReceived.addListener((details) => {
    const answer = {
      status: details.statusCode,
      type: headerOf(details, "content-type"),
      disposition: headerOf(details, "content-disposition"),
    };
    if (!isToBeSaved(answer) || !seen.byId(details.requestId)) return {};
    return decide(details, context).catch((problem) => {
      console.error(problem);
      return {};
    });
  }, { urls: ["http://*/*", "https://*/*"], types: ["main_frame", "sub_frame"] },
  ["blocking", "responseHeaders"]);
}
