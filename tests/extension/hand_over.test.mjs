// Exactly once, whatever happens to Orlop, its host and the worker.
import assert from "node:assert/strict";
import { beforeEach, test } from "node:test";

function area() {
  const values = new Map();
  return {
    values,
    async get(keys) {
      const wanted = keys === null ? [...values.keys()] : [keys].flat();
      return Object.fromEntries(wanted.filter((key) => values.has(key)).map((key) =>
        [key, structuredClone(values.get(key))]));
    },
    async set(changes) {
      for (const [key, value] of Object.entries(changes)) values.set(key, structuredClone(value));
    },
    async remove(key) {
      values.delete(key);
    },
  };
}

const local = area();
const session = area();
globalThis.chrome = {
  storage: { local, session },
  runtime: {},
  downloads: { onDeterminingFilename: {} },
  cookies: { getAll: async () => [{ name: "secret", value: "1", path: "/" }] },
};
const { HandOvers } = await import("../../extension/core/hand_over.js");
const { NoAnswer } = await import("../../extension/core/host.js");
const journal = await import("../../extension/core/journal.js");

const DOWNLOAD = { address: "https://x/a.bin", method: "GET", name: "a.bin" };

// A host that answers calls by the functions given, the last one again and again.
function hostOf(...answers) {
  const calls = [];
  return {
    calls,
    async call(message) {
      calls.push(message);
      const answer = answers.length > 1 ? answers.shift() : answers[0];
      return answer(message);
    },
  };
}
const says = (answer) => () => answer;
const fails = (reason) => () => {
  throw new NoAnswer(reason);
};

async function run(host, download = DOWNLOAD) {
  const done = [];
  const hold = {
    kind: "download", downloadId: 7,
    drop: async () => done.push("dropped"), letGo: async () => done.push("let go"),
  };
  const answer = await new HandOvers(host).handOver(download, hold);
  return { ...answer, done };
}

beforeEach(() => {
  local.values.clear();
  session.values.clear();
});

test("what Orlop has, the browser drops", async () => {
  for (const outcome of ["ok", "known"]) {
    const host = hostOf(says({ outcome }));
    assert.deepEqual((await run(host)).done, ["dropped"]);
    assert.equal(host.calls[0].request.cookies, "secret=1");
    assert.ok(host.calls[0].within <= 2000);
    assert.equal(local.values.size, 0);
  }
});

test("what Orlop has not, goes on", async () => {
  for (const answer of [{ outcome: "refused", text: "no" }, { outcome: "unreachable" },
    { error: "invalid", text: "?" }]) {
    assert.deepEqual((await run(hostOf(says(answer)))).done, ["let go"]);
    assert.equal(local.values.size, 0);
  }
  assert.deepEqual((await run(hostOf(fails("missing")))).done, ["let go"]);
  assert.equal((await run(hostOf(says({})), { ...DOWNLOAD, address: "x" })).outcome, "unfit");
});

test("a host that dies is asked again under the same id", async () => {
  const host = hostOf(fails("lost"), fails("lost"), says({ outcome: "known" }));
  assert.deepEqual((await run(host)).done, ["dropped"]);
  assert.equal(new Set(host.calls.map(({ request }) => request.id)).size, 1);
});

test("no answer: withdrawn, or owed until it is", async () => {
  const gone = hostOf(says({ outcome: "timeout" }), says({ gone: true }));
  assert.deepEqual((await run(gone)).done, ["let go"]);
  assert.equal(gone.calls[1].id, gone.calls[0].request.id);
  assert.equal(local.values.size, 0);

  const kept = hostOf(says({ outcome: "timeout" }), says({ gone: false }));
  assert.deepEqual(await run(kept), { outcome: "known", done: ["dropped"] });

  const silent = hostOf(fails("late"), fails("late"));
  assert.deepEqual((await run(silent)).done, ["let go"]);
  const [entry] = await journal.all();
  assert.ok(entry.isOwed);
  assert.ok(!JSON.stringify(entry).includes("secret"), "no cookies on the disk");
  const later = new HandOvers(hostOf(says({ gone: true })));
  await later.settle();
  assert.equal(later.host.calls[0].id, entry.id);
  assert.equal(local.values.size, 0);
});

test("another worker asks under the same id", async () => {
  const entry = await journal.begin("id-1", "download", DOWNLOAD, 7);
  assert.deepEqual(await journal.leftovers(), [], "this worker's own is no other's");
  const host = hostOf(says({ outcome: "known" }));
  const done = [];
  await new HandOvers(host).askAgain(entry, { drop: () => done.push("dropped"), letGo() {} });
  assert.equal(host.calls[0].request.id, "id-1");
  assert.deepEqual(done, ["dropped"]);
  assert.equal(local.values.size, 0);
});

test("of private windows nothing goes to the disk", async () => {
  await run(hostOf(fails("late")), { ...DOWNLOAD, isPrivate: true });
  assert.equal(local.values.size, 0);
  assert.equal([...session.values.keys()].filter((key) => key.startsWith("handOver:")).length, 1);
});

test("many at once", async () => {
  const host = hostOf(({ requests }) => ({
    outcomes: requests.map(({ address }) => ({ outcome: address.endsWith("3") ? "refused" : "ok" })),
  }));
  const downloads = Array.from({ length: 1201 }, (_, at) => ({
    ...DOWNLOAD, address: at === 5 ? "mailto:x" : `https://x/${at}`,
  }));
  const answers = await new HandOvers(host).handOverAll(downloads);
  assert.equal(host.calls.length, 3);
  assert.deepEqual(answers.slice(3, 6).map(({ outcome }) => outcome), ["refused", "ok", "unfit"]);
  assert.equal(local.values.size, 0);
});
