// Orlop's host: one port, many calls on it, and what it tells by itself.
import { api } from "./api.js";

const NAME = "com.tarnworks.orlop";
const MISSING = /not found|no such native|forbidden/i;

// Why a call was not answered: "lost" (the host went away), "late" or "missing" (there is none).
export class NoAnswer extends Error {
  constructor(reason) {
    super(reason);
    this.reason = reason;
  }
}

export class OrlopHost {
  #port = null;
  #calls = new Map();
  #number = 0;

  // `connected`, `told` and `disconnected(isMissing)` are called as things happen.
  constructor(listener, connect = () => api.runtime.connectNative(NAME)) {
    this.listener = listener;
    this.connect = connect;
  }

  get isConnected() {
    return this.#port !== null;
  }

  open() {
    if (this.#port) return;
    const port = this.connect();
    this.#port = port;
    port.onMessage.addListener((message) => this.#hear(message));
    port.onDisconnect.addListener((lost) => {
      const reason = lost.error?.message ?? api.runtime.lastError?.message ?? "";
      this.#close(port, MISSING.test(reason));
    });
    this.listener.connected();
  }

  // The answer; throws NoAnswer. `limit` in milliseconds.
  call(message, limit) {
    return new Promise((resolve, reject) => {
      this.open();
      const number = (this.#number += 1);
      const timer = setTimeout(() => {
        this.#calls.delete(number);
        reject(new NoAnswer("late"));
      }, limit);
      this.#calls.set(number, { resolve, reject, timer });
      this.#port.postMessage({ call: number, ...message });
    });
  }

  #hear(message) {
    if (message.event) {
      this.listener.told(message);
      return;
    }
    const call = this.#calls.get(message.call);
    this.#calls.delete(message.call);
    clearTimeout(call?.timer);
    call?.resolve(message);
  }

  #close(port, isMissing) {
    if (this.#port !== port) return;
    this.#port = null;
    const calls = [...this.#calls.values()];
    this.#calls.clear();
    for (const { reject, timer } of calls) {
      clearTimeout(timer);
      reject(new NoAnswer(isMissing ? "missing" : "lost"));
    }
    this.listener.disconnected(isMissing);
  }
}
