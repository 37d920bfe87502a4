// Exactly once: what the browser holds goes only when Orlop has saved it, and what Orlop may have
// is withdrawn when the browser goes on.
import { cookiesFor } from "./cookies.js";
import { NoAnswer } from "./host.js";
import * as journal from "./journal.js";
import { batches, requestFor } from "./requests.js";

// Milliseconds. A download is held for 2 seconds at most: for Orlop's answer, then for what becomes
// of the hand-over that was not answered.
const PATIENCE = 1700;
const LAST_WORD = 300;
const WAY = 150;
const LEAST = 100;
const PAUSE = 50;
const WITHDRAWAL = 200_000;

export const isTaken = ({ outcome }) => outcome === "ok" || outcome === "known";

const pause = (time) => new Promise((resolve) => setTimeout(resolve, time));

// Asks until there is an answer or the time is over; a host that went away is started again, since
// equal ids make nothing new.
async function ask(host, message) {
  const end = performance.now() + PATIENCE;
  for (;;) {
    const left = Math.floor(end - performance.now());
    if (left < LEAST) return { outcome: "timeout" };
    try {
      const within = Math.max(left - WAY, LEAST / 2);
      const answer = await host.call({ ...message, within }, left);
      return answer.error ? { outcome: "failed", text: answer.text } : answer;
    } catch (problem) {
      if (!(problem instanceof NoAnswer)) throw problem;
      if (problem.reason === "missing") return { outcome: "missing" };
      if (problem.reason === "late") return { outcome: "timeout" };
      await pause(PAUSE);
    }
  }
}

export class HandOvers {
  #settling = false;

  constructor(host) {
    this.host = host;
  }

  // hold: { kind, downloadId, drop, letGo }: how the browser's own download ends or goes on.
  async handOver(download, hold) {
    const id = crypto.randomUUID();
    const whole = { ...download, cookies: download.cookies ?? (await cookiesFor(download)) };
    const request = requestFor(id, whole);
    if (!request) {
      await hold.letGo();
      return { outcome: "unfit" };
    }
    const entry = await journal.begin(id, hold.kind, download, hold.downloadId);
    return this.#decide(entry, await ask(this.host, { do: "handOver", request }), hold);
  }

  async #decide(entry, answer, hold) {
    if (answer.outcome === "timeout") return this.#giveUp(entry, answer, hold);
    if (isTaken(answer)) await hold.drop();
    else await hold.letGo();
    await journal.end(entry);
    return answer;
  }

  // Orlop may have been too slow and yet be done with the file, which only asking shows.
  async #giveUp(entry, answer, hold) {
    await journal.owe(entry);
    const hasKept = await this.#withdraw(entry, LAST_WORD).then(
      (isGone) => !isGone,
      () => null,
    );
    if (hasKept) await hold.drop();
    else await hold.letGo();
    if (hasKept === null) this.settle();
    else await journal.end(entry);
    return hasKept ? { outcome: "known" } : answer;
  }

  // Many links at once, of which the browser has nothing yet. Answers an outcome for each.
  async handOverAll(downloads) {
    const requests = [];
    const answers = new Map();
    for (const download of downloads) {
      const cookies = download.cookies ?? (await cookiesFor(download));
      const request = requestFor(crypto.randomUUID(), { ...download, cookies });
      if (request) requests.push({ request, download });
      answers.set(download, { outcome: "unfit" });
    }
    const byId = new Map(requests.map((one) => [one.request.id, one.download]));
    for (const batch of batches(requests.map((one) => one.request))) {
      const entries = await Promise.all(
        batch.map((request) => journal.begin(request.id, "none", byId.get(request.id))));
      const answer = await ask(this.host, { do: "handOverAll", requests: batch });
      for (const [place, entry] of entries.entries()) {
        const one = answer.outcomes?.[place] ?? { outcome: answer.outcome, text: answer.text };
        answers.set(byId.get(entry.id), one);
        await (one.outcome === "timeout" ? journal.owe(entry) : journal.end(entry));
      }
    }
    this.settle();
    return downloads.map((download) => answers.get(download));
  }

  // Asks again under the same id for what a worker that is gone had asked.
  async askAgain(entry, hold) {
    const cookies = await cookiesFor(entry.download);
    const request = requestFor(entry.id, { ...entry.download, cookies });
    if (!request) return journal.end(entry);
    return this.#decide(entry, await ask(this.host, { do: "handOver", request }), hold);
  }

  // Withdraws what is owed; what cannot be asked now stays owed.
  async settle() {
    if (this.#settling) return;
    this.#settling = true;
    try {
      for (const entry of await journal.all()) {
        if (Date.now() - entry.time > journal.LIFETIME) await journal.end(entry);
        else if (entry.isOwed) await this.#settleOne(entry);
      }
    } catch (problem) {
      if (!(problem instanceof NoAnswer)) throw problem;
    } finally {
      this.#settling = false;
    }
  }

  async #settleOne(entry) {
    if (!(await this.#withdraw(entry, WITHDRAWAL))) await this.onKept?.(entry);
    await journal.end(entry);
  }

  // Whether nothing of it exists now. Throws NoAnswer.
  async #withdraw(entry, limit) {
    const answer = await this.host.call({ do: "withdraw", id: entry.id }, limit);
    if (answer.error) throw new NoAnswer("lost");
    return answer.gone;
  }
}
