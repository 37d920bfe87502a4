// Addresses whose answers were left to the browser a moment ago, so that the download which comes
// of them is not taken for another.
const LIFETIME = 30_000;
const left = new Map();

export function leave(address, now = Date.now()) {
  left.set(address, now);
  for (const [one, time] of left) if (now - time > LIFETIME) left.delete(one);
}

export const wasLeft = (address, now = Date.now()) => now - (left.get(address) ?? 0) <= LIFETIME;
