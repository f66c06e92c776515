#!/usr/bin/env node
// Asks the service whether a session is verified: result.mjs URL CLIENT_KEY SECRET SESSION_ID
import { createCipheriv, createDecipheriv, createHmac } from 'node:crypto';

const signingKey = 'GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/';

function encrypt(text, secret) {
  const cipher = createCipheriv('aes-256-ecb', secret, null);
  return cipher.update(text, 'utf8', 'base64') + cipher.final('base64');
}

function decrypt(text, secret) {
  const cipher = createDecipheriv('aes-256-ecb', secret, null);
  return cipher.update(text, 'base64', 'utf8') + cipher.final('utf8');
}

async function isVerified(url, clientKey, secret, sessionId) {
  const stamp = `${Math.floor(Date.now() / 1000)}000`;
  const plain = JSON.stringify({ session_id: sessionId });
  const headers = {
    'Content-Type': 'application/json; charset=utf-8', 'User-Agent': 'iOS', 'X-TRZ-Os': 'ios 1',
    'X-TRZ-Sdk-Version': '1.0', 'X-TRZ-Client-Key': clientKey, 'X-TRZ-Encrypted': '1', 'X-TRZ-Req-Timestamp': stamp,
    'X-TRZ-Req-Signature': createHmac('sha256', signingKey).update(`${stamp}-${plain}`).digest('base64'),
  };
  const body = JSON.stringify({ data: encrypt(plain.replaceAll('/', '\\/'), secret) });
  const { request } = await import('node:http'); // fetch adds headers of its own
  const answer = await new Promise((done, failed) =>
    request(`${url}/v1.0/result`, { method: 'POST', headers, timeout: 10000 }, done).on('error', failed).end(body));
  let envelope = JSON.parse(Buffer.concat(await answer.toArray()));
  if (answer.headers['x-trz-encrypted'] === '1') envelope = JSON.parse(decrypt(envelope.data, secret));
  const { meta, result } = envelope;
  if (![200, 201].includes(meta.httpStatusCode)) throw new Error(`refused: ${meta.errorMessage}`);
  return result?.sessionId === sessionId && result.validationStatus === true;
}

const [url, clientKey, secret, sessionId] = process.argv.slice(2);
isVerified(url, clientKey, Buffer.from(secret, 'hex'), sessionId).then((yes) => console.log(yes ? 'verified' : 'not verified'),
  (error) => { console.error(error.message); process.exitCode = 1; });
