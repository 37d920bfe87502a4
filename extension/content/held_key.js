// Tells which keys are held when the user, and not the page, clicks or presses Enter.
(() => {
  let hasTold = false;
  const tell = (event) => {
    if (!event.isTrusted || (event.type === "keydown" && event.key !== "Enter")) return;
    const heldKeys = ["Alt", "Control", "Shift"].filter((key) => event.getModifierState(key));
    if (heldKeys.length > 0 || hasTold)
      (globalThis.browser ?? chrome).runtime.sendMessage({ heldKeys }).catch(() => {});
    hasTold = heldKeys.length > 0;
  };
  for (const type of ["click", "keydown"]) window.addEventListener(type, tell, true);
})();
