// The scenario that is played: edited, checked, played from now on.
import { get, post } from './api.js';
import { button, byId, el, save, toast } from './dom.js';

const place = byId('scenario');
let text = null;

function say(message, wrong) {
  byId('scenario-verdict').textContent = message;
  byId('scenario-verdict').className = wrong ? 'note wrong' : 'note';
  byId('scenario-text').setAttribute('aria-invalid', wrong);
}

async function send(path, done) {
  try {
    await post(path, { text: byId('scenario-text').value });
    say(done, false);
    return true;
  } catch (error) {
    say(error.message, true);
    const line = /line (\d+)/.exec(error.message);
    if (line) goTo(Number(line[1]));
    return false;
  }
}

function goTo(line) {
  const area = byId('scenario-text');
  const lines = area.value.split('\n');
  const start = lines.slice(0, line - 1).join('\n').length + (line > 1 ? 1 : 0);
  area.focus();
  area.setSelectionRange(start, start + (lines[line - 1]?.length ?? 0));
}

async function load() {
  text = (await get('scenario')).text;
  byId('scenario-text').value = text;
  say('This is what is played now.', false);
}

export async function refresh() {
  if (place.hidden || text !== null) return;
  text = '';
  place.replaceChildren(
    el('div', { class: 'toolbar card' },
      button('Check', () => send('scenario/check', 'A right scenario.')),
      button('Play', async () => {
        if (await send('scenario', 'Played from now on; no file was changed.')) toast('The scenario is played');
      }, { class: 'main' }),
      button('Load what is played', load),
      button('Save', () => save('scenario.json', byId('scenario-text').value)),
      el('span', { class: 'grow hint' }, 'Only keys must be there; the rest is taken from the built-in one.')),
    el('p', { id: 'scenario-verdict', class: 'note', role: 'status' }),
    el('textarea', { id: 'scenario-text', 'aria-label': 'Scenario, as JSON', 'aria-describedby': 'scenario-verdict', spellcheck: 'false', autocomplete: 'off' }));
  await load();
}
