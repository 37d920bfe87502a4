import { extensionOf, nameOf } from "../core/addresses.js";
import { api, text } from "../core/api.js";
import { loadSettings } from "../core/settings.js";
import { putTexts, send } from "./texts.js";

const at = (id) => document.getElementById(id);
const KINDS = { link: "kindLink", image: "kindImage", media: "kindMediaOne" };
// Ends that are pages and no files, whatever else a site calls them.
const PAGES = /^(|html?|php|aspx?|jsp|cgi)$/;
const rows = [];

const isFile = ({ address }) => !PAGES.test(extensionOf(nameOf(address)));

// What the page says is text here and nothing else.
function element(name, className, content) {
  const made = document.createElement(name);
  if (className) made.className = className;
  if (content !== undefined) made.textContent = content;
  return made;
}

function addRow(link, isTicked) {
  const row = element("li");
  const label = element("label");
  const box = element("input");
  box.type = "checkbox";
  box.checked = isTicked;
  const words = element("span", "words");
  words.append(element("span", "", link.text || nameOf(link.address) || link.address));
  words.append(element("small", "", link.address));
  label.title = link.address;
  label.append(box, element("span", "kind", text(KINDS[link.kind])), words);
  row.append(label);
  at("links").append(row);
  rows.push({ link, row, box });
}

const ticked = () => rows.filter(({ row, box }) => !row.hidden && box.checked);

function count() {
  const number = ticked().length;
  at("handOver").textContent = text(number === 1 ? "handOverOne" : "handOverMany", number);
  at("handOver").disabled = number === 0;
}

function filter() {
  const kind = at("kind").value;
  const words = at("words").value.toLowerCase().split(/\s+/).filter(Boolean);
  for (const { link, row } of rows) {
    const fits = kind === "all" || (kind === "files" ? isFile(link) : link.kind === kind);
    const all = `${link.address} ${link.text}`.toLowerCase();
    row.hidden = !fits || !words.every((word) => all.includes(word));
  }
  count();
}

const tick = (isTicked) => {
  for (const { row, box } of rows) if (!row.hidden) box.checked = isTicked;
  count();
};

function showResult({ taken, left }, chosen) {
  const hasFailed = new Set(left.map(({ address }) => address));
  for (const one of chosen)
    if (!hasFailed.has(one.link.address)) {
      one.row.remove();
      rows.splice(rows.indexOf(one), 1);
    }
  const reason = left.find((one) => one.text)?.text ?? "";
  at("result").textContent = left.length === 0
    ? text("pickerDone", taken) : `${text("pickerPartly", taken, left.length)} ${reason}`;
  at("result").classList.toggle("bad", left.length > 0);
  count();
}

async function handOver(origin) {
  const chosen = ticked();
  at("handOver").disabled = true;
  at("result").textContent = text("pickerAsking");
  const addresses = chosen.map(({ link }) => link.address);
  const result = await send({ do: "handOver", addresses, origin });
  showResult(result ?? { taken: 0, left: addresses.map((address) => ({ address })) }, chosen);
}

async function start() {
  putTexts();
  const key = location.hash.slice(1);
  const { [key]: picked } = await api.storage.session.get(key);
  if (!picked) {
    at("result").textContent = text("pickerGone");
    at("handOver").hidden = true;
    return;
  }
  const types = (await loadSettings()).types.split(/[\s,;.]+/);
  document.title = text("pickerTitle");
  at("page").textContent = picked.title || picked.origin.page;
  at("page").title = picked.origin.page ?? "";
  for (const link of picked.links) addRow(link, types.includes(extensionOf(nameOf(link.address))));
  count();
  at("kind").addEventListener("change", filter);
  at("words").addEventListener("input", filter);
  at("everything").addEventListener("click", () => tick(true));
  at("nothing").addEventListener("click", () => tick(false));
  at("links").addEventListener("change", count);
  at("handOver").addEventListener("click", () => handOver(picked.origin));
}

start();
