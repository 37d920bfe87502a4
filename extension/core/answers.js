// Whether a browser saves an answer rather than showing it. Errs towards showing: what is saved
// after all is met when the download begins.
const SHOWN = /^(text\/|image\/|audio\/|video\/|font\/|multipart\/)/;
const SHOWN_APPLICATIONS = /^application\/([\w.-]+\+)?(json|xml|javascript|ecmascript|pdf|wasm)$/;
const SHOWN_XHTML = /^application\/(xhtml\+xml|x-javascript|http-index-format|x-xpinstall|ogg)$/;

export function isToBeSaved({ status, type, disposition }) {
  if (status < 200 || status > 299 || status === 204 || status === 205) return false;
  if (/^\s*attachment\b/i.test(disposition ?? "")) return true;
  const kind = (type ?? "").split(";")[0].trim().toLowerCase();
  if (!kind.includes("/")) return false;
  return !SHOWN.test(kind) && !SHOWN_APPLICATIONS.test(kind) && !SHOWN_XHTML.test(kind);
}
