import { post } from './api.js';
import { byId, orTell, toast } from './dom.js';
import * as exchanges from './exchanges.js';
import * as outcomes from './outcomes.js';
import * as people from './people.js';
import * as scenario from './scenario.js';

const tabs = [...document.querySelectorAll('[role=tab]')];

function open(tab, focus = true) {
  for (const each of tabs) {
    const isOpen = each === tab;
    each.setAttribute('aria-selected', isOpen);
    each.tabIndex = isOpen ? 0 : -1;
    byId(each.getAttribute('aria-controls')).hidden = !isOpen;
  }
  if (focus) tab.focus();
  history.replaceState(null, '', `#${tab.getAttribute('aria-controls')}`);
  for (const view of [people, outcomes, scenario]) view.refresh();
}

for (const tab of tabs) {
  tab.addEventListener('click', () => open(tab));
  tab.addEventListener('keydown', (event) => {
    const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
    if (step) open(tabs[(tabs.indexOf(tab) + step + tabs.length) % tabs.length]);
  });
}

document.addEventListener('keydown', (event) => {
  const typing = event.target.closest('input, textarea, select');
  if (event.key === '/' && !typing) {
    event.preventDefault();
    open(tabs[0], false);
    byId('search').focus();
  }
  if (event.key === 'Escape' && event.target === byId('search')) byId('list').focus();
});

byId('reset').addEventListener('click', orTell(async () => {
  if (!confirm('Forget all sessions, codes, exchanges and outcomes?')) return;
  await post('reset');
  toast('All that happened is forgotten');
  people.refresh();
  outcomes.refresh(true);
}));

outcomes.fillCalls(byId('call'));
const asked = tabs.find((tab) => `#${tab.getAttribute('aria-controls')}` === location.hash);
open(asked ?? tabs[0], false);

// Sessions and codes change with calls only; a storm of them is looked at once.
let due = 0;
exchanges.start((news, isBack) => { // the service is back, and may have been started again
  if (due || !(isBack || news.some(({ call }) => ['start', 'check', 'send-otp', 'check-otp', 'message'].includes(call)))) return;
  due = setTimeout(() => {
    due = 0;
    people.refresh().catch(() => {}); // the state says when the service is not reachable
  }, 200);
});
