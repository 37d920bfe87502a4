// Runs in a page, for `scripting.executeScript`: must need nothing from outside itself.
export function linksOfPage(onlySelected) {
  const most = 5000;
  const selection = window.getSelection();
  const isWanted = (element) => !onlySelected || selection.containsNode(element, true);
  const found = new Map();
  const add = (kind, address, text) => {
    if (found.size < most && /^https?:/i.test(address) && !found.has(address))
      found.set(address, { kind, address, text: (text ?? "").trim().replace(/\s+/g, " ").slice(0, 200) });
  };
  for (const element of document.querySelectorAll("a[href], area[href]"))
    if (isWanted(element)) add("link", element.href, element.textContent || element.title);
  for (const element of document.querySelectorAll("video, audio, video source, audio source"))
    if (isWanted(element)) add("media", element.currentSrc || element.src, element.title);
  for (const element of document.images)
    if (isWanted(element)) add("image", element.currentSrc || element.src, element.alt);
  if (onlySelected)
    for (const [address] of selection.toString().matchAll(/https?:\/\/[^\s<>"']+/gi))
      add("link", address.replace(/[.,;:!?)\]]+$/, ""), "");
  return [...found.values()];
}
