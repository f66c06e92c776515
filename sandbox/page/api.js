async function ask(path, options) {
  const response = await fetch(`/sandbox/${path}`, options).catch(() => {
    throw new Error('The sandbox is not reachable'); // else each browser has words of its own
  });
  const body = await response.json();
  if (!response.ok) throw new Error(body.error ?? `HTTP ${response.status}`);
  return body;
}

export const get = (path, signal) => ask(path, { signal });

export const post = (path, body = {}) =>
  ask(path, {
    method: 'POST',
    headers: { 'Content-Type': 'application/json' },
    body: JSON.stringify(body),
  });
