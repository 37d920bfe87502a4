// The button in the toolbar, and what the popup shows of Orlop.
import { api, text } from "../core/api.js";

export const STATE = "orlop";

export async function showState(state, { showsCount }) {
  await api.storage.session.set({ [STATE]: state });
  const count = state.isHere && showsCount ? state.count : 0;
  await api.action.setBadgeBackgroundColor({ color: "#2b6cb0" });
  await api.action.setBadgeText({ text: count > 999 ? "999+" : count > 0 ? String(count) : "" });
  const title = state.isHere && state.count > 0 ? text("buttonRunning", state.count) : "Orlop";
  await api.action.setTitle({ title });
}
