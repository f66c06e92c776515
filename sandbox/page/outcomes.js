// Outcomes, delays and faults, set by hand.
import { get, post } from './api.js';
import { button, byId, el, pretty, toast } from './dom.js';

const place = byId('outcomes');
const other = 'as below'; // what these forms cannot say, such as a text of its own
let names = null;
let built = null;
let asked = 0;
let shown = 0;

// For whom the forms stand: nothing is everybody.
const whose = () => {
  const value = byId('whose').value.trim();
  return value ? [value.startsWith('+') ? 'numbers' : 'clients', value] : null;
};

async function set(calls, done) {
  const scope = whose();
  try {
    await post('outcomes', scope ? { [scope[0]]: { [scope[1]]: calls } } : calls);
    toast(done);
  } catch (error) {
    return toast(error.message);
  }
  refresh(true);
}

function endAll(lists) {
  const ended = (calls) => Object.fromEntries(Object.keys(calls).map((call) => [call, null]));
  const { numbers = {}, clients = {}, ...everybody } = lists;
  const within = (scopes) => Object.fromEntries(Object.entries(scopes).map(([name, calls]) => [name, ended(calls)]));
  return { ...ended(everybody), numbers: within(numbers), clients: within(clients) };
}

function line(call) {
  const isCall = call !== 'connection' && call !== 'icon';
  const id = (what) => `${what}-${call}`;
  const outcome = el('select', { id: id('outcome'), disabled: !isCall },
    ...['success', ...(isCall ? names.outcomes.filter((name) => name !== 'success') : [])].map((name) => el('option', {}, name)));
  const delay = el('input', { id: id('delay'), type: 'number', min: '0', max: '600000', placeholder: '0', disabled: call === 'connection' });
  const fault = el('input', { id: id('fault'), list: 'faults', placeholder: call === 'connection' ? 'reset@accept' : 'none', autocomplete: 'off', spellcheck: 'false' });
  const note = el('p', { class: 'note', id: id('note') });
  const end = button('End', () => set({ [call]: null }, `${call}: as usual again`), { title: 'As if nothing had been set', 'aria-label': `End what is set for ${call}` });
  let kept = {};
  const form = el('form', {
    class: 'outcome',
    'aria-label': `Outcome of ${call}`,
    oninput: () => form.classList.add('edited'),
    onsubmit: (event) => {
      event.preventDefault();
      const value = outcome.value === other ? { ...kept } : {};
      if (outcome.value !== other && outcome.value !== 'success') value.like = outcome.value;
      if (delay.value) value.delayMs = Number(delay.value);
      if (fault.value) value.fault = fault.value;
      set({ [call]: Object.keys(value).length > 0 ? value : 'success' }, `${call}: set`);
    },
  });
  // What stands: of a list the first, as the rest is no matter of a form.
  form.fill = (list = []) => {
    const [first = 'success'] = list;
    const { like = 'success', delayMs = '', fault: spoilt = '', ...rest } = typeof first === 'string' ? { like: first } : first;
    const isOther = Object.keys(rest).length > 0;
    kept = like === 'success' ? rest : { like, ...rest };
    outcome.querySelector('.other')?.remove();
    if (isOther) outcome.append(el('option', { class: 'other' }, other));
    outcome.value = isOther ? other : like;
    delay.value = delayMs;
    fault.value = spoilt;
    note.textContent = list.length > 1 ? `The first of ${list.length} in turn; Set puts one in their place.` : '';
    note.hidden = list.length < 2;
    form.classList.remove('edited');
    form.classList.toggle('on', list.length > 0);
    end.disabled = list.length === 0;
  };
  form.call = call;
  const field = (text, input) => el('label', {}, el('span', {}, text), input);
  form.append(el('h3', {}, call), field('Outcome', outcome), field('Delay in ms', delay), field('Fault', fault),
    el('div', { class: 'actions' }, el('button', { type: 'submit', 'aria-label': `Set ${call}` }, 'Set'), end), note);
  return form;
}

async function build() {
  names = await get('outcomes/names');
  place.replaceChildren(
    el('div', { class: 'toolbar card' },
      el('label', { class: 'grow' }, el('span', {}, 'For'),
        el('input', { id: 'whose', list: 'scopes', oninput: () => refresh(true), placeholder: 'everybody; or a number such as +905321234567; or a client key', autocomplete: 'off' })),
      button('End all', async () => {
        await post('outcomes', endAll(await get('outcomes')));
        toast('Every call is answered as usual');
        refresh(true);
      })),
    el('div', { class: 'outcomes' }, ...names.calls.map(line)),
    el('datalist', { id: 'faults' }, ...names.faults.map((fault) => el('option', { value: fault }))),
    el('datalist', { id: 'scopes' }),
    el('section', {}, el('h2', {}, 'What is set'), el('div', { id: 'set' })));
}

// anew: also what is being edited.
export async function refresh(anew = false) {
  if (place.hidden) return;
  const mine = ++asked;
  await (built ??= build().catch((error) => { built = null; throw error; }));
  const lists = await get('outcomes');
  if (mine < shown) return; // an answer that was overtaken says what no longer is
  shown = mine;
  const scope = whose();
  const standing = scope ? lists[scope[0]]?.[scope[1]] ?? {} : lists;
  for (const form of place.querySelectorAll('form.outcome'))
    if (anew || !form.classList.contains('edited')) form.fill(standing[form.call]);
  byId('scopes').replaceChildren(...[...Object.keys(lists.numbers ?? {}), ...Object.keys(lists.clients ?? {})]
    .map((name) => el('option', { value: name })));
  const text = JSON.stringify(lists, null, 2);
  if (byId('set').textContent === text) return; // what somebody selects stays selected
  byId('set').replaceChildren(Object.keys(lists).length > 0 ? pretty(lists) : el('p', { class: 'hint' }, 'Nothing: every call is answered as usual.'));
}

// Others set them too: a test, a script.
setInterval(() => { if (!document.hidden) refresh().catch(() => {}); }, 1000);

export function fillCalls(select) {
  get('outcomes/names').then(({ calls }) =>
    select.append(...[...calls, 'message'].map((call) => el('option', {}, call))));
}
