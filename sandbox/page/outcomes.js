// Outcomes, delays and faults, set by hand.
import { get, post } from './api.js';
import { button, byId, el, pretty, toast } from './dom.js';

const place = byId('outcomes');
let names = null;

const whose = () => {
  const value = byId('whose').value.trim();
  if (!value) return null;
  return { [value.startsWith('+') ? 'numbers' : 'clients']: value };
};

function within(calls) {
  const scope = whose();
  if (!scope) return calls;
  const [[kind, name]] = Object.entries(scope);
  return { [kind]: { [name]: calls } };
}

async function set(calls, done) {
  try {
    await post('outcomes', within(calls));
    toast(done);
  } catch (error) {
    toast(error.message);
  }
  refresh();
}

function line(call) {
  const isCall = call !== 'connection' && call !== 'icon';
  const id = (what) => `${what}-${call}`;
  const outcome = el('select', { id: id('outcome'), disabled: !isCall },
    ...(isCall ? names.outcomes.filter((name) => name !== 'success') : []).reduce(
      (all, name) => [...all, el('option', {}, name)], [el('option', {}, 'success')]));
  const delay = el('input', { id: id('delay'), type: 'number', min: '0', max: '600000', placeholder: '0', disabled: call === 'connection' });
  const fault = el('input', { id: id('fault'), list: 'faults', placeholder: call === 'connection' ? 'reset@accept' : 'none', autocomplete: 'off', spellcheck: 'false' });
  const apply = (event) => {
    event.preventDefault();
    const value = {};
    if (outcome.value !== 'success') value.like = outcome.value;
    if (delay.value) value.delayMs = Number(delay.value);
    if (fault.value) value.fault = fault.value;
    set({ [call]: Object.keys(value).length > 0 ? value : 'success' }, `${call}: set`);
  };
  const field = (text, input) => el('label', {}, el('span', {}, text), input);
  return el('form', { class: 'outcome', onsubmit: apply, 'aria-label': `Outcome of ${call}` },
    el('h3', {}, call), field('Outcome', outcome), field('Delay in ms', delay), field('Fault', fault),
    el('div', { class: 'actions' }, el('button', { type: 'submit', class: 'main' }, 'Set'),
      button('End', () => set({ [call]: null }, `${call}: as usual again`), { title: 'As if nothing had been set' })));
}

export async function refresh() {
  if (place.hidden) return;
  if (!names) {
    names = await get('outcomes/names');
    place.replaceChildren(
      el('div', { class: 'toolbar card' },
        el('label', { class: 'grow' }, el('span', {}, 'For'),
          el('input', { id: 'whose', placeholder: 'everybody; or a number such as +905321234567; or a client key', autocomplete: 'off' })),
        button('End all', async () => {
          const lists = await get('outcomes');
          const ended = Object.fromEntries(Object.keys(lists).filter((name) => names.calls.includes(name)).map((name) => [name, null]));
          for (const kind of ['numbers', 'clients'])
            for (const [name, calls] of Object.entries(lists[kind] ?? {})) {
              ended[kind] ??= {};
              ended[kind][name] = Object.fromEntries(Object.keys(calls).map((call) => [call, null]));
            }
          await post('outcomes', ended);
          toast('Every call is answered as usual');
          refresh();
        })),
      el('div', { class: 'outcomes' }, ...names.calls.map(line)),
      el('datalist', { id: 'faults' }, ...names.faults.map((fault) => el('option', { value: fault }))),
      el('section', {}, el('h2', {}, 'What is set'), el('div', { id: 'set' })));
  }
  const lists = await get('outcomes');
  byId('set').replaceChildren(Object.keys(lists).length > 0 ? pretty(lists) : el('p', { class: 'hint' }, 'Nothing: every call is answered as usual.'));
  for (const form of place.querySelectorAll('form.outcome'))
    form.classList.toggle('on', form.querySelector('h3').textContent in lists);
}

export function fillCalls(select) {
  get('outcomes/names').then(({ calls }) =>
    select.append(...[...calls, 'message'].map((call) => el('option', {}, call))));
}
