// A page can begin downloads without anybody; past this pace they are left to the browser, which
// asks the user before it takes many.
const MOST = 40;
const WITHIN = 10_000;

export class Pace {
  #times = new Map();

  allows(host, now = Date.now()) {
    const times = (this.#times.get(host) ?? []).filter((time) => now - time < WITHIN);
    if (times.length >= MOST) return false;
    this.#times.set(host, [...times, now]);
    if (this.#times.size > 200) this.#times.delete(this.#times.keys().next().value);
    return true;
  }
}
