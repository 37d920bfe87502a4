// The browser's own copy of what Orlop has goes, however far it has come by then.
import assert from "node:assert/strict";
import { test } from "node:test";

const area = { get: async () => ({}), set: async () => {} };
globalThis.chrome = {
  storage: { local: area, session: area },
  runtime: {},
  downloads: { onDeterminingFilename: {} },
};
const { removeFromBrowser } = await import("../../extension/watch/downloads.js");

// A browser with one download, which comes whole when it is looked at for the first time.
function browserWith(item) {
  const one = { id: 7, file: true, ...item };
  let items = [one];
  chrome.downloads = {
    async search() {
      const found = structuredClone(items);
      if (one.state === "in_progress") one.state = "complete";
      return found;
    },
    async cancel() {
      if (one.state === "in_progress") Object.assign(one, { state: "interrupted", file: false });
    },
    async removeFile() {
      if (one.state !== "complete") throw new Error("not complete");
      one.file = false;
    },
    async erase() {
      items = [];
    },
  };
  return { hasFile: () => one.file, isKnown: () => items.length > 0 };
}

for (const state of ["in_progress", "complete", "interrupted"]) {
  test(`what is ${state} leaves neither a row nor a file`, async () => {
    const browser = browserWith({ state, file: state !== "interrupted" });
    await removeFromBrowser(7);
    assert.equal(browser.hasFile(), false);
    assert.equal(browser.isKnown(), false);
  });
}
