// Within the page, before its own scripts: a clock that moves when a step says so, who tells of what
// leaves the page, and who knows when the page is at rest.
(() => {
const long = 1000; // ms: what takes that long waits for the step that lets it pass
const Real = Date, stands = Real.UTC(2026, 2, 7, 20, 34, 5), step = 240000;
window.Date = class extends Real {
  constructor(time) { super(typeof time === 'string' ? Date.parse(time) : time ?? Date.now()); }
  static parse(text) { return stands + Math.round((Real.parse(text) - Real.now()) / step) * step; }
  static now() { return stands + 1; }
};
// Codes and durations differ from run to run, and with them the widths of their columns.
const even = new CSSStyleSheet();
even.replaceSync('#people td:nth-child(2) { font-family: monospace; } .row .ms { width: 58px; }');
document.adoptedStyleSheets = [even];

window.told = [];
const { createObjectURL } = URL;
let saved; // the page may not fetch it
URL.createObjectURL = (blob) => createObjectURL.call(URL, saved = blob);
HTMLAnchorElement.prototype.click = async function () {
  told.push(`saved ${this.download}: ${saved.type} ${await saved.text()}`); };
Object.defineProperty(navigator, 'clipboard', { value: { async writeText(text) {
  if (window.refuses) throw new Error();
  told.push(`copied ${text}`);
} } });
window.confirm = (text) => { told.push(`asked ${text}`); return !window.refuses; };

let busy = 0; // what will come by itself
let moved = false;
const { setTimeout, clearTimeout } = window;
const soon = new Set();
const waiting = new Map();
let time = 0, last = 0;
const wait = (done, after, every) => waiting.set(--last, { done, due: time + after, every }) && last;
window.setTimeout = (done, after = 0) => {
  if (after >= long) return wait(done, after);
  const id = setTimeout(() => { soon.delete(id); done(); }, after);
  soon.add(id);
  return id;
};
window.setInterval = (done, after) => wait(done, after, after);
window.clearTimeout = (id) => { soon.delete(id); waiting.delete(id); clearTimeout(id); };
performance.now = () => time;
window.pass = (after) => {
  time += after;
  for (const [id, each] of waiting)
    if (each.due <= time) {
      if (each.every) each.due += each.every;
      else waiting.delete(id);
      each.done();
    }
};

const { fetch } = window;
let held = null; // answers that are kept from the page
let asked = null; // the question that waits for news
let known = null; // what came last of the journal
window.hold = () => { held = []; };
window.arrive = (path) => {
  if (path) return held.findLast((each) => each.path.includes(path)).come();
  held.forEach(({ come }) => come());
  held = null;
};
window.fetch = async (path, options = {}) => {
  if (options.method) told.push(`${options.method} ${path} ${options.body}`);
  const isLong = path.includes('wait=');
  const may = !isLong && held && new Promise((come) => held.push({ path, come }));
  if (isLong) asked = path;
  else ++busy;
  try {
    const answer = await fetch(path, options);
    const text = await answer.text();
    if (may) { --busy; await may; ++busy; }
    if (path.startsWith('/sandbox/journal?')) known = JSON.parse(text);
    return { ok: answer.ok, status: answer.status, json: async () => JSON.parse(text) };
  } finally {
    if (isLong) asked = null;
    else --busy;
  }
};
async function hasNews() {
  const { run, exchanges, held: count } = await (await fetch(asked.replace(/wait=\d+/, 'wait=0'))).json();
  return run !== known.run || exchanges.length > 0 || (count === 0 && known.held > 0);
}

new MutationObserver(() => { moved = true; })
  .observe(document, { subtree: true, childList: true, attributes: true, characterData: true });
document.addEventListener('scroll', () => { moved = true; }, true);
const frame = () => new Promise((done) => requestAnimationFrame(done));
const isBusy = () => moved || busy > 0 || soon.size > 0 || document.getAnimations().length > 0;
window.rest = async (patience) => {
  const end = Real.now() + patience;
  do {
    if (Real.now() > end) return 'never at rest';
    moved = false;
    await frame();
    await frame();
  } while (isBusy() || (asked && await hasNews().catch(() => true)) || isBusy());
};
})();
