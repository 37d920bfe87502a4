// What the extension decides and sends, without a browser: `node --test tests/extension`.
import assert from "node:assert/strict";
import { test } from "node:test";

import { sitesOf, suggestedName } from "../../extension/core/addresses.js";
import { isToBeSaved } from "../../extension/core/answers.js";
import { Pace } from "../../extension/core/pace.js";
import { batches, cookieHeader, requestFor } from "../../extension/core/requests.js";
import { filterFrom, takesOver } from "../../extension/core/rules.js";
import { SeenRequests, bodyOf, repeatable } from "../../extension/core/seen_requests.js";

const SETTINGS = {
  takesOver: true, which: "all", types: "zip, .iso", usesFilter: true, leastMebibytes: 0,
  never: "", always: "", takesPosts: true,
};
const DOWNLOAD = {
  address: "https://dl.example.org/a.zip", page: "https://www.example.org/p", method: "GET",
  name: "a.zip", size: 5,
};
const taken = (download = {}, settings = {}, filter = null) =>
  takesOver({ ...DOWNLOAD, ...download }, { ...SETTINGS, ...settings }, filter);

test("rules", () => {
  assert.ok(taken());
  assert.ok(!taken({}, { takesOver: false }));
  assert.ok(!taken({ isKeyHeld: true }, { always: "example.org" }), "the key goes before all");
  for (const address of ["blob:https://x/1", "data:,x", "ftp://x/a.zip", "file:///a", "nonsense"])
    assert.ok(!taken({ address }), address);
  assert.ok(!taken({ method: "POST" }), "its body is not known");
  assert.ok(taken({ method: "POST", body: new Uint8Array(1) }));
  assert.ok(!taken({ method: "POST", body: new Uint8Array(1) }, { takesPosts: false }));
  assert.ok(!taken({ method: "PUT" }));
  assert.ok(!taken({}, { leastMebibytes: 1 }));
  assert.ok(taken({ size: -1 }, { leastMebibytes: 1 }), "an unknown size may be any");
  assert.ok(taken({ size: 1 << 20 }, { leastMebibytes: 1 }));
  const some = { which: "some" };
  assert.ok(taken({}, some));
  assert.ok(taken({ name: "image.ISO", address: "https://x/get" }, some));
  assert.ok(!taken({ name: "a.txt", address: "https://x/a.txt" }, some));
  const filter = filterFrom("\\.TXT$");
  assert.ok(taken({ name: "", address: "https://x/a.txt" }, some, filter));
  assert.ok(!taken({ name: "", address: "https://x/a.txt" }, { ...some, usesFilter: false }, filter));
  assert.equal(filterFrom("("), null);
});

test("sites", () => {
  assert.deepEqual(sitesOf("Example.org\n*.b.net, https://c.de:80/x\n.d.fr\nbücher.de ://"),
    ["example.org", "b.net", "c.de", "d.fr", "xn--bcher-kva.de"]);
  assert.ok(!taken({}, { never: "example.org" }));
  assert.ok(taken({}, { never: "ample.org" }), "a part of a name is another's");
  assert.ok(taken({}, { never: "dl.example.org" }), "the page's site counts");
  assert.ok(!taken({ page: undefined }, { never: "dl.example.org" }));
  assert.ok(taken({ size: 0, name: "x.txt" },
    { which: "some", always: "www.example.org", leastMebibytes: 9 }));
});

test("names and answers", () => {
  const name = (disposition) => suggestedName(disposition, "https://x/a%20b.bin?q");
  assert.equal(name(undefined), "a b.bin");
  assert.equal(name("attachment; filename=\"../\\\"x\\\"; y.zip\""), "\"x\"; y.zip");
  assert.equal(name("attachment; filename=a.zip; filename*=UTF-8''gr%C3%B6%C3%9Fe.zip"), "größe.zip");
  assert.equal(name("attachment; filename*=UTF-8''%ff; filename=b.zip"), "b.zip");
  const saved = (type, disposition, status = 200) => isToBeSaved({ status, type, disposition });
  assert.ok(saved("application/octet-stream") && saved("application/zip"));
  assert.ok(saved("text/html", "Attachment; filename=x"));
  for (const type of ["text/plain", "image/png", "application/pdf", "application/ld+json", "", undefined,
    "application/xhtml+xml; charset=x", "multipart/x-mixed-replace"])
    assert.ok(!saved(type), type);
  assert.ok(!saved("application/zip", "attachment", 404) && !saved("application/zip", "", 204));
});

test("requests are within the host's bounds", () => {
  const whole = requestFor("i", {
    ...DOWNLOAD, finalAddress: DOWNLOAD.address, referrer: "about:blank", cookies: "a=1\r\nX: y",
    userAgent: "U", name: "../../x\u0000", size: 1.5, isPrivate: true, page: `https://x/${"y".repeat(40000)}`,
  });
  assert.deepEqual(whole, { id: "i", address: DOWNLOAD.address, userAgent: "U", private: true });
  assert.equal(requestFor("i", { ...DOWNLOAD, address: "javascript:1" }), null);
  assert.equal(requestFor("i", { ...DOWNLOAD, address: "https://x/a b" }), null);
  assert.equal(requestFor("i", { ...DOWNLOAD, name: "\ud800" }).name, undefined);
  const body = new Uint8Array([0, 255, 10]);
  const posted = requestFor("i", { ...DOWNLOAD, method: "POST", body, contentType: "a/b" });
  assert.deepEqual([posted.method, posted.body, posted.contentType], ["POST", "AP8K", "a/b"]);
  const large = new Uint8Array(512 * 1024 + 1);
  assert.equal(requestFor("i", { ...DOWNLOAD, method: "POST", body: large }), null);
  const many = Array.from({ length: 1200 }, (_, id) => ({ id, cookies: "ü".repeat(1000) }));
  const all = batches(many);
  assert.deepEqual(all.flat(), many);
  for (const batch of all)
    assert.ok(batch.length <= 500 && Buffer.byteLength(JSON.stringify(batch)) < 1_000_000);
  assert.deepEqual(batches([]), []);
});

test("cookies", () => {
  const cookie = (name, path, topLevelSite) => ({
    name, value: "v", path, ...(topLevelSite ? { partitionKey: { topLevelSite } } : {}),
  });
  const all = [cookie("a", "/"), cookie("b", "/long/"), cookie("c", "/", "https://page.org"),
    cookie("d", "/", "https://other.org"), cookie("", "/")];
  assert.equal(cookieHeader(all, "www.page.org"), "b=v; a=v; c=v; v");
});

test("what a download began with", () => {
  const seen = new SeenRequests();
  const begin = (requestId, url, method = "GET", requestBody = undefined) =>
    seen.begin({ requestId, url, method, requestBody, tabId: 1 });
  const send = (requestId, ...headers) => seen.send({
    requestId, requestHeaders: headers.map(([name, value]) => ({ name, value })),
  });
  begin(1, "https://a/start");
  send(1, ["Cookie", "c=1"], ["referer", "https://p/"]);
  begin(1, "https://b/end#x");
  send(1, ["cookie", "other=1"]);
  const plain = repeatable(seen.at("https://b/end"));
  assert.deepEqual([plain.address, plain.finalAddress, plain.cookies, plain.referrer],
    ["https://a/start", "https://b/end#x", "c=1", "https://p/"]);
  const form = { formData: { "k ä": ["1", "&"] } };
  begin(2, "https://a/form", "POST", form);
  send(2, ["Content-Type", "application/x-www-form-urlencoded"]);
  const posted = repeatable(seen.at("https://a/form"));
  assert.equal(new TextDecoder().decode(posted.body), "k+%C3%A4=1&k+%C3%A4=%26");
  begin(2, "https://a/result");
  assert.deepEqual(repeatable(seen.at("https://a/result")).method, "GET");
  assert.equal(repeatable(seen.at("https://a/result")).address, "https://a/result");
  assert.equal(bodyOf(form, "multipart/form-data; boundary=x"), undefined);
  assert.equal(bodyOf({ raw: [{ file: "/x" }] }, "text/plain"), undefined);
  assert.equal(bodyOf({ error: "too large" }, ""), undefined);
  for (let id = 10; id < 500; id += 1) begin(id, `https://a/${id}`);
  assert.equal(seen.byId(2), undefined, "it is bounded");
  assert.ok(seen.byId(499));
});

test("a page that begins downloads without end", () => {
  const pace = new Pace();
  const allowed = Array.from({ length: 1000 }, () => pace.allows("evil.example", 0)).filter(Boolean);
  assert.equal(allowed.length, 40);
  assert.ok(pace.allows("other.example", 0) && pace.allows("evil.example", 10_001));
});
