// The hand-overs that are not settled, so that another worker, or the browser after a crash, can
// settle them: an id is never given up while Orlop may have something under it. Of private windows
// nothing goes to the disk, and of no download the cookies or the body.
import { api } from "./api.js";

const PREFIX = "handOver:";
const RUN = "run";
// As long as Orlop remembers ids.
export const LIFETIME = 24 * 60 * 60 * 1000;

const place = (entry) => (entry.download.isPrivate ? api.storage.session : api.storage.local);

// Names this run of the browser, whatever becomes of the worker.
async function currentRun() {
  const { [RUN]: known } = await api.storage.session.get(RUN);
  if (known) return known;
  const fresh = crypto.randomUUID();
  await api.storage.session.set({ [RUN]: fresh });
  return fresh;
}

const run = currentRun();

// What this worker itself has under way.
const own = new Set();

function lasting(download) {
  const { cookies: _cookies, body: _body, ...rest } = download;
  return rest;
}

// `hold`: "download" (with its `downloadId`), "answer" (of a server) or "none".
export async function begin(id, hold, download, downloadId) {
  own.add(id);
  const entry = {
    id, hold, downloadId, download: lasting(download), isOwed: false, time: Date.now(),
    run: await run,
  };
  await place(entry).set({ [PREFIX + id]: entry });
  return entry;
}

// Orlop did not answer: what it may have made must be withdrawn.
export async function owe(entry) {
  entry.isOwed = true;
  await place(entry).set({ [PREFIX + entry.id]: entry });
}

export async function end(entry) {
  await place(entry).remove(PREFIX + entry.id);
  own.delete(entry.id);
}

export async function all() {
  const stores = await Promise.all([api.storage.local.get(null), api.storage.session.get(null)]);
  return stores
    .flatMap((store) => Object.entries(store))
    .filter(([key]) => key.startsWith(PREFIX))
    .map(([, entry]) => entry);
}

// What another worker has left half done.
export const leftovers = async () =>
  (await all()).filter(({ id, isOwed }) => !isOwed && !own.has(id));

export const isOfThisRun = async (entry) => entry.run === (await run);
