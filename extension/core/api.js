// The browser's interface, which both families answer with promises.
export const api = globalThis.browser ?? globalThis.chrome;

// Chromium asks extensions for a download's name before it finishes one; Firefox does not, and
// lets them hold an answer of a server instead.
export const asksForNames = Boolean(api?.downloads?.onDeterminingFilename);

export const text = (name, ...values) => api.i18n.getMessage(name, values.map(String));
