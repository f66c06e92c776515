// One exchange, whole.
import { get, post } from './api.js';
import { button, byId, clock, copy, el, pretty, save, toast } from './dom.js';
import { leave } from './exchanges.js';
import { ofErrorCode, ofFault, ofHeader } from './words.js';

const place = byId('detail');
let wanted = 0;

export function showNothing() {
  wanted = 0;
  document.body.classList.remove('reading');
  place.replaceChildren(el('p', { class: 'hint' }, 'Choose an exchange to read it.'));
}

// Both texts up to and from where they first differ.
function compared(comparison) {
  const { expected, received } = comparison;
  let at = 0;
  while (at < expected.length && expected[at] === received[at]) ++at;
  const marked = (text) => el('pre', { tabindex: '0' }, text.slice(0, at),
    el('mark', {}, text.slice(at, at + 1) || '⏎'), el('span', { class: 'rest' }, text.slice(at + 1)));
  return [el('dl', { class: 'compared' },
    el('dt', {}, 'Expected'), el('dd', {}, marked(expected)),
    el('dt', {}, 'Received'), el('dd', {}, marked(received)))];
}

const section = (title, ...content) => el('section', {}, el('h3', {}, title), ...content);

async function again(exchange, asItWas) {
  const { status } = await post(`journal/${exchange.id}/replay`, { asItWas });
  toast(status ? `Sent again; the answer was ${status}` : 'Sent again; there was no answer');
}

function actions(exchange) {
  return el('div', { class: 'actions' },
    button('Back', leave, { class: 'back' }),
    exchange.request.target ? button('Send again', () => again(exchange, false), { title: 'Signed anew, with the time of now' }) : null,
    exchange.request.target ? button('Send as it was', () => again(exchange, true), { title: 'Every byte as it came, its old timestamp too' }) : null,
    button('Copy curl', () => copy(exchange.curl, 'the curl line')),
    button('Save JSON', () => save(`exchange-${exchange.id}.json`, JSON.stringify(exchange, null, 2))));
}

function headers(exchange) {
  const rows = exchange.request.headers.map(({ name, value }) =>
    el('tr', {}, el('th', { scope: 'row' }, name, el('small', {}, ofHeader(name))), el('td', {}, value || '(empty)')));
  return el('table', { class: 'headers' }, el('tbody', {}, ...rows));
}

function draw(exchange) {
  const { request, answer, comparison } = exchange;
  const parts = [
    el('div', { class: 'head' },
      el('h2', {}, el('span', { class: `badge ${exchange.verdict}` }, exchange.verdict), exchange.call),
      el('p', { class: 'facts' }, [
        `#${exchange.id}`, clock(exchange.time), exchange.status ? `HTTP ${exchange.status}` : 'no answer',
        exchange.verdict === 'waiting' ? 'held back' : `${exchange.durationMs} ms`, exchange.number,
      ].filter(Boolean).join(' · '))),
    el('p', { class: `why ${exchange.verdict}` }, exchange.reason || '–',
      exchange.errorCode ? el('small', {}, `${exchange.errorCode}: ${ofErrorCode(exchange.errorCode)}`) : null,
      exchange.fault ? el('small', {}, `Fault ${exchange.fault}: ${ofFault(exchange.fault)}`) : null),
    actions(exchange),
  ];
  if (comparison)
    parts.push(section(`Difference: ${comparison.of}`,
      comparison.note ? el('p', { class: 'note' }, comparison.note) : null, ...compared(comparison)));
  if (request.parameters !== null) parts.push(section('Parameters', pretty(request.parameters)));
  if (answer.content !== null)
    parts.push(section(answer.encrypted ? 'Answer, decrypted' : 'Answer, sent in clear', pretty(answer.content)));
  if (request.target)
    parts.push(section('Headers', headers(exchange)),
      section('Request as it came', pretty(`${exchange.method} ${request.target}\n\n${request.body}`)));
  place.replaceChildren(...parts);
}

export async function show(id, focus = false) {
  const other = wanted !== id;
  wanted = id;
  try {
    const exchange = await get(`journal/${id}`);
    if (wanted !== id) return; // another was chosen meanwhile
    draw(exchange);
    if (other) place.scrollTop = 0;
  } catch (error) {
    if (wanted === id) place.replaceChildren(el('p', { class: 'hint' }, error.message));
  }
  if (focus) {
    document.body.classList.add('reading');
    place.focus();
  }
}

place.addEventListener('keydown', (event) => {
  if (event.key === 'Escape') leave();
});
