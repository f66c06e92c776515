// Sessions, codes and messages on their way, and how to make some by hand.
import { get, post } from './api.js';
import { button, byId, clock, copy, el, toast } from './dom.js';

const place = byId('people');
const lists = el('div', {});
const nameOf = (element) => element.ariaLabel ?? element.textContent;

function table(caption, columns, rows, none) {
  if (rows.length === 0)
    return el('section', {}, el('h2', {}, caption), el('p', { class: 'hint' }, none));
  return el('section', {}, el('h2', {}, caption),
    el('div', { class: 'scroller', tabindex: '0', role: 'region', 'aria-label': caption },
      el('table', {},
        el('thead', {}, el('tr', {}, ...columns.map((name) => el('th', { scope: 'col' }, name)))),
        el('tbody', {}, ...rows.map((cells) => el('tr', {}, ...cells.map((cell) => el('td', {}, cell))))))));
}

async function deliver(message) {
  await post('messages', { app: message.app, text: message.text });
  toast('The message was delivered');
  refresh();
}

function maker() {
  const state = el('select', { id: 'new-state' }, ...['verified', 'expired', 'unknown'].map((name) => el('option', {}, name)));
  const number = el('input', { id: 'new-number', placeholder: '+905321234567', inputmode: 'tel', autocomplete: 'off' });
  const make = async (event) => {
    event.preventDefault();
    try {
      const made = await post('sessions', number.value ? { state: state.value, phoneNumber: number.value } : { state: state.value });
      copy(made.sessionId, 'the session’s id');
      refresh();
    } catch (error) {
      toast(error.message);
    }
  };
  return el('form', { class: 'toolbar card', onsubmit: make, 'aria-label': 'Make a session' },
    el('strong', {}, 'Make a session'),
    el('label', {}, el('span', {}, 'State'), state),
    el('label', { class: 'grow' }, el('span', {}, 'Number'), number),
    el('button', { type: 'submit', class: 'main' }, 'Make'));
}

let asked = 0;
let shown = null;

export async function refresh() {
  const mine = ++asked;
  const [{ sessions }, { codes }, { messages }] =
    await Promise.all([get('sessions'), get('codes'), get('messages')]);
  if (mine !== asked) return; // an answer that was overtaken says what no longer is
  const last = codes[0];
  byId('code').hidden = !last;
  if (last) {
    byId('code-label').textContent = `Last code, to ${last.phoneNumber}`;
    byId('code-text').textContent = last.code;
    byId('code-copy').onclick = () => copy(last.code, 'the code');
  }
  if (place.hidden) return;
  const most = 200; // rows; the calls give all
  // The form is never moved: a field that leaves the page, even to come back, loses what is being typed.
  if (!lists.isConnected) place.replaceChildren(maker(), lists);
  const tooOld = ({ expiresAt }) => Date.parse(expiresAt) < Date.now();
  const state = JSON.stringify([sessions, codes, messages, codes.filter(tooOld).length]);
  if (shown === state) return; // what a mouse is just pressing stays there
  shown = state;
  const chosen = lists.contains(document.activeElement) ? document.activeElement : null;
  lists.replaceChildren(
    table('Sessions', ['Number', 'How', 'State', 'When', 'Session'],
      sessions.slice(0, most).map((each) => [each.phoneNumber ?? 'not known', each.app ?? 'SMS', each.state, clock(each.confirmedAt),
        button(each.sessionId, () => copy(each.sessionId, 'the session’s id'), { class: 'id', title: 'Copy' })]),
      'Nobody has verified a number yet.'),
    table('Codes', ['Number', 'Code', 'Sent', 'Attempts left', 'State'],
      codes.slice(0, most).map((each) => [each.phoneNumber,
        button(each.code, () => copy(each.code, 'the code'), { class: 'id', title: 'Copy' }), clock(each.sentAt),
        String(each.attemptsLeft), each.sessionId ? 'used' : tooOld(each) ? 'too old' : 'waits']),
      'No code was sent yet.'),
    table('Messages', ['App', 'Text', 'Prepared', ''],
      messages.slice(0, most).map((each) => [each.app, each.text, clock(each.preparedAt),
        each.sessionId ? 'delivered' : button('Deliver', () => deliver(each), { 'aria-label': `Deliver the message of ${each.app}` })]),
      'No app was asked to send a message yet.'));
  if (chosen) [...lists.querySelectorAll('[tabindex], button')].find((each) => nameOf(each) === nameOf(chosen))?.focus();
}
