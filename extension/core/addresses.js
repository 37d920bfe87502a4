// Addresses and names, without the browser.

export function parsed(address) {
  try {
    return new URL(address);
  } catch {
    return null;
  }
}

// Only these can be asked for again by another program.
export function isWeb(address) {
  return ["http:", "https:"].includes(parsed(address)?.protocol);
}

export const hostOf = (address) => (isWeb(address) ? parsed(address).hostname : "");

export function withoutFragment(address) {
  const at = address.indexOf("#");
  return at < 0 ? address : address.slice(0, at);
}

// Whether a host is one that the user named, or below it.
export const isAtSite = (host, site) => host === site || host.endsWith(`.${site}`);

// What the user wrote as a site: a host or an address, one a line, each as its host.
export function sitesOf(lines) {
  const hosts = lines.split(/[\s,]+/).map((line) => {
    const address = line.includes("://") ? line : `http://${line.replace(/^\*?\.+/, "")}`;
    return line ? (parsed(address)?.hostname ?? "") : "";
  });
  return [...new Set(hosts.filter(Boolean))];
}

// The last part of a path, on either kind of system.
export const baseName = (path) => path.split(/[/\\]/).pop() ?? "";

export function nameOf(address) {
  const name = baseName(parsed(address)?.pathname ?? "");
  try {
    return decodeURIComponent(name);
  } catch {
    return name;
  }
}

export function extensionOf(name) {
  const found = /\.([a-z0-9]{1,10})$/i.exec(name);
  return found ? found[1].toLowerCase() : "";
}

// The name that a server suggests (RFC 6266), else what the address ends in.
export function suggestedName(disposition, address) {
  const extended = /filename\*\s*=\s*utf-8'[^']*'([^;]+)/i.exec(disposition ?? "");
  if (extended) {
    try {
      return baseName(decodeURIComponent(extended[1].trim()));
    } catch {
      // Not what it says it is; the plain one may be.
    }
  }
  const plain = /filename\s*=\s*(?:"((?:[^"\\]|\\.)*)"|([^;]+))/i.exec(disposition ?? "");
  if (plain) return baseName((plain[1]?.replace(/\\(.)/g, "$1") ?? plain[2]).trim());
  return nameOf(address);
}
