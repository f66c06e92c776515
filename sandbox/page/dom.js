// Builds elements. Texts only ever become text nodes or attributes, so that whatever a stranger
// sent stays text on the page.
export function el(tag, properties = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (name.startsWith('on')) element.addEventListener(name.slice(2), value);
    else if (value === true) element.setAttribute(name, '');
    else if (value !== false && value !== null && value !== undefined) element.setAttribute(name, value);
  }
  element.append(...children.flat().filter((child) => child !== null && child !== undefined));
  return element;
}

export const byId = (id) => document.getElementById(id);

let fading = 0;
export function toast(text) {
  const place = byId('toast');
  place.textContent = text;
  place.classList.add('shown');
  clearTimeout(fading);
  fading = setTimeout(() => place.classList.remove('shown'), 4000);
}

export async function copy(text, what) {
  try {
    await navigator.clipboard.writeText(text);
    toast(`Copied ${what}`);
  } catch {
    toast('The browser does not let this page copy');
  }
}

// Who pressed something hears why nothing came of it.
export const orTell = (work) => async (...given) => {
  try {
    await work(...given);
  } catch (error) {
    toast(error.message);
  }
};

export const button = (text, onclick, properties = {}) =>
  el('button', { type: 'button', onclick: orTell(onclick), ...properties }, text);

export function save(name, text, type = 'application/json') {
  const url = URL.createObjectURL(new Blob([text], { type }));
  el('a', { href: url, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(url), 1000);
}

export const clock = (time) => {
  const date = new Date(time);
  const two = (number) => String(number).padStart(2, '0');
  return `${two(date.getHours())}:${two(date.getMinutes())}:${two(date.getSeconds())}`;
};

// JSON with its strings, numbers and keys told apart by colour.
export function pretty(value) {
  const text = typeof value === 'string' ? value : JSON.stringify(value, null, 2);
  const code = el('code');
  if (typeof value === 'string') {
    code.append(text);
  } else {
    const token = /("(?:\\.|[^"\\])*")(\s*:)?|\b(?:true|false|null)\b|-?\d+(?:\.\d+)?(?:[eE][+-]?\d+)?/g;
    let end = 0;
    for (const match of text.matchAll(token)) {
      code.append(text.slice(end, match.index));
      const kind = match[2] !== undefined ? 'key' : match[1] ? 'string' : 'number';
      code.append(el('span', { class: kind }, match[1] ?? match[0]), match[2] ?? '');
      end = match.index + match[0].length;
    }
    code.append(text.slice(end));
  }
  return el('pre', { tabindex: '0' }, code);
}
