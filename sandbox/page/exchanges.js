// The list of exchanges: thousands of rows of which only those in view are elements.
import { get, post } from './api.js';
import { byId, clock, el, orTell, save, toast } from './dom.js';
import { show, showNothing } from './detail.js';

const most = 10000; // as the service holds
const pause = 30; // ms between two questions, so that a storm of news comes in batches
const rest = 1000; // ms, where the service lets no more pages wait

let rows = []; // summaries, the oldest first
let chosen = 0; // id
let run = '';
let revision = 0;
let paused = false;
let lost = false;
let asking = new AbortController();
let onNews = () => {};

const list = byId('list');
const spacer = byId('spacer');
const drawn = new Map(); // id to element

const rowHeight = () => parseFloat(getComputedStyle(list).getPropertyValue('--row'));
// Where it stands, or would.
const indexFor = (id) => {
  let low = 0;
  let high = rows.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (rows[middle].id < id) low = middle + 1;
    else high = middle;
  }
  return low;
};
const indexOf = (id) => (rows[indexFor(id)]?.id === id ? indexFor(id) : -1);
// The newest stands first.
const placeOf = (index) => rows.length - 1 - index;

const filters = () => ['search', 'call', 'verdict'].filter((name) => byId(name).value);

function query(names = filters()) {
  const parts = new URLSearchParams({ view: 'list', limit: most });
  for (const name of names) parts.set(name, byId(name).value);
  return parts;
}

function rowOf(exchange) {
  const reason = el('span', { class: 'reason' }, exchange.reason || exchange.fault || '');
  return el('div', { role: 'option', class: `row ${exchange.verdict}` },
    el('time', { datetime: exchange.time }, clock(exchange.time)),
    el('span', { class: 'verdict' }, exchange.verdict),
    el('span', { class: 'call' }, exchange.call),
    reason,
    el('span', { class: 'mark' }, exchange.fault ? 'fault' : ''),
    el('span', { class: 'status' }, exchange.status ? String(exchange.status) : '–'),
    el('span', { class: 'ms' }, exchange.verdict === 'waiting' ? '…' : `${exchange.durationMs < 10 ? exchange.durationMs.toFixed(1) : Math.round(exchange.durationMs)} ms`));
}

function draw() {
  const height = rowHeight();
  spacer.style.height = `${rows.length * height}px`;
  const first = Math.max(0, Math.floor(list.scrollTop / height) - 6);
  const last = Math.min(rows.length, Math.ceil((list.scrollTop + list.clientHeight) / height) + 6);
  const wanted = new Set();
  const order = [];
  for (let place = first; place < last; ++place) {
    const exchange = rows[rows.length - 1 - place];
    wanted.add(exchange.id);
    let row = drawn.get(exchange.id);
    if (row?.revision !== exchange.revision) {
      row?.element.remove();
      row = { element: rowOf(exchange), revision: exchange.revision };
      row.element.id = `row-${exchange.id}`;
      row.element.dataset.id = exchange.id;
      drawn.set(exchange.id, row);
    }
    const { element } = row;
    order.push(element);
    element.style.transform = `translateY(${place * height}px)`;
    element.setAttribute('aria-setsize', rows.length);
    element.setAttribute('aria-posinset', place + 1);
    element.setAttribute('aria-selected', exchange.id === chosen);
  }
  for (const [id, row] of drawn)
    if (!wanted.has(id)) {
      row.element.remove();
      drawn.delete(id);
    }
  // In the order in which they are seen, since readers go by it.
  let next = spacer.firstChild;
  for (const element of order) {
    if (element === next) next = next.nextSibling;
    else spacer.insertBefore(element, next);
  }
  if (drawn.has(chosen)) list.setAttribute('aria-activedescendant', `row-${chosen}`);
  else list.removeAttribute('aria-activedescendant');
  byId('empty').hidden = rows.length > 0;
  list.hidden = rows.length === 0;
}

function tellEmpty() {
  byId('empty').replaceChildren(...(filters().length > 0
    ? [el('p', {}, 'No exchange matches.')]
    : [el('p', {}, el('strong', {}, 'Nothing has come yet.')),
        el('p', {}, 'Start your app against this sandbox, or try:'),
        el('pre', {}, `./demo\ncurl -d '{}' ${location.origin}/sandbox/sessions`)]));
}

function choose(id, focusDetail = false) {
  chosen = id;
  const place = placeOf(indexOf(id));
  const height = rowHeight();
  if (place * height < list.scrollTop) list.scrollTop = place * height;
  else if ((place + 1) * height > list.scrollTop + list.clientHeight)
    list.scrollTop = (place + 1) * height - list.clientHeight;
  draw();
  show(id, focusDetail);
}

export function leave() {
  document.body.classList.remove('reading');
  list.focus();
}

function take(page, isWhole, belongs) {
  const height = rowHeight();
  const atTop = list.scrollTop < height;
  const place = Math.floor(list.scrollTop / height);
  const read = rows[placeOf(place)]?.id; // the first that is seen
  if (isWhole) {
    rows = [];
    drawn.forEach((row) => row.element.remove());
    drawn.clear();
  }
  for (const exchange of page.exchanges) {
    const index = indexFor(exchange.id); // an old one may match only once it is answered, or no more
    rows.splice(index, rows[index]?.id === exchange.id ? 1 : 0, ...(belongs(exchange) ? [exchange] : []));
    if (exchange.id === chosen) show(chosen);
  }
  rows.splice(0, page.held === 0 ? rows.length : indexFor(page.oldest));
  revision = page.revision;
  byId('count-exchanges').textContent = page.held;
  byId('gone').hidden = page.dropped === 0;
  byId('gone').textContent = `The oldest ${page.dropped} were let go; ${page.held} are held.`;
  if (chosen && indexOf(chosen) < 0) {
    chosen = 0;
    showNothing();
  }
  tellEmpty();
  draw();
  // What a person reads stays where it is while news comes in above, once there is room to go on.
  if (!atTop && indexOf(read) >= 0) list.scrollTop += (placeOf(indexOf(read)) - place) * height;
}

async function listen() {
  const { signal } = asking;
  let first = true;
  let reached = false; // that the service is there again is told at once, not when it has news
  while (!signal.aborted) {
    try {
      const parts = first ? query() : query([]); // the count and the other views show all that comes
      if (!first) parts.set('after', revision);
      if (reached) parts.set('wait', 25);
      parts.set('run', run);
      const asked = performance.now();
      const news = await get(`journal?${parts}`, signal);
      if (signal.aborted) return;
      const isSentAway = parts.has('wait') && news.exchanges.length === 0 && news.revision === revision
        && performance.now() - asked < rest;
      let belongs = () => true;
      if (!first && filters().length > 0 && news.exchanges.length > 0) {
        const matching = query();
        matching.set('after', revision);
        matching.set('run', run);
        const { run: same, exchanges } = await get(`journal?${matching}`, signal);
        if (signal.aborted) return;
        if (same !== news.run) continue; // started again between both questions
        const ids = new Set(exchanges.map(({ id }) => id));
        belongs = ({ id }) => ids.has(id) || id === chosen; // what is read stays
      }
      if (news.run !== run) list.scrollTop = 0; // the service was started again, and tells all
      take(news, first || news.run !== run, belongs);
      run = news.run;
      first = false;
      reached = true;
      byId('state').textContent = 'live';
      byId('state').className = 'state live';
      if (news.exchanges.length > 0 || lost) onNews(news.exchanges, lost);
      lost = false;
      await new Promise((done) => setTimeout(done, isSentAway ? rest : pause));
    } catch (error) {
      if (signal.aborted) return;
      reached = false;
      lost = true;
      byId('state').textContent = 'not reachable';
      byId('state').className = 'state lost';
      await new Promise((done) => setTimeout(done, 1000));
    }
  }
}

function restart() {
  asking.abort();
  asking = new AbortController();
  if (!paused) listen();
}

function sift() {
  list.scrollTop = 0;
  restart();
}

function move(event) {
  const page = Math.max(1, Math.floor(list.clientHeight / rowHeight()) - 1);
  const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -most, End: most };
  if (event.key === 'Enter' && chosen) return show(chosen, true);
  if (!(event.key in steps) || rows.length === 0) return;
  event.preventDefault();
  const index = chosen ? indexOf(chosen) : -1;
  const place = index < 0 ? 0 : placeOf(index) + steps[event.key];
  choose(rows[placeOf(Math.min(rows.length - 1, Math.max(0, place)))].id);
}

export function start(news) {
  onNews = news;
  let later = 0;
  byId('filters').addEventListener('submit', (event) => event.preventDefault());
  for (const name of ['call', 'verdict']) byId(name).addEventListener('change', sift);
  byId('search').addEventListener('input', () => {
    clearTimeout(later);
    later = setTimeout(sift, 150);
  });
  byId('pause').addEventListener('click', (event) => {
    paused = !paused;
    event.target.setAttribute('aria-pressed', paused);
    byId('state').textContent = paused ? 'paused' : 'live';
    byId('state').className = paused ? 'state' : 'state live';
    restart();
  });
  byId('clear').addEventListener('click', orTell(async () => {
    await post('journal');
    toast('The journal is empty');
  }));
  byId('export').addEventListener('click', orTell(async () => {
    const parts = query();
    parts.delete('view');
    save('parloquin-journal.json', JSON.stringify((await get(`journal?${parts}`)).exchanges, null, 2));
  }));
  list.addEventListener('scroll', () => requestAnimationFrame(draw));
  list.addEventListener('keydown', move);
  list.addEventListener('click', (event) => {
    const row = event.target.closest('.row');
    if (row) {
      document.body.classList.add('reading');
      choose(Number(row.dataset.id));
    }
  });
  new ResizeObserver(() => draw()).observe(list);
  showNothing();
  listen();
}
