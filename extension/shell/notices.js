// What the user is told.
import { nameOf } from "../core/addresses.js";
import { api, text } from "../core/api.js";

// Told once in a run of the browser: it does not change by itself.
let hasToldMissing = false;

export function tell(message) {
  api.notifications.create({
    type: "basic",
    iconUrl: api.runtime.getURL("icons/128.png"),
    title: "Orlop",
    message,
  });
}

const MESSAGES = {
  timeout: "noticeTimeout",
  unreachable: "noticeUnreachable",
  failed: "noticeFailed",
  missing: "noticeMissing",
};

// Of a download that goes on in the browser.
export function tellOutcome({ outcome, text: reason }, download) {
  const name = download.name || nameOf(download.address) || download.address.slice(0, 200);
  if (outcome === "missing" && hasToldMissing) return;
  hasToldMissing ||= outcome === "missing";
  if (outcome === "refused") tell(text("noticeRefused", name, reason));
  else if (MESSAGES[outcome]) tell(text(MESSAGES[outcome], name));
}
