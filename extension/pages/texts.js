// Puts the texts of the user's language into a page; they are text and never markup.
import { api, text } from "../core/api.js";

export function putTexts(root = document) {
  for (const element of root.querySelectorAll("[data-text]"))
    element.textContent = text(element.dataset.text);
  for (const element of root.querySelectorAll("[data-label]"))
    element.setAttribute("aria-label", text(element.dataset.label));
  for (const element of root.querySelectorAll("[data-hint]"))
    element.placeholder = text(element.dataset.hint);
  document.documentElement.lang = api.i18n.getUILanguage();
}

export const send = (message) => api.runtime.sendMessage(message);
