// What stands in a request, in words.
const headers = {
  'accept': 'Which answers the client takes',
  'accept-encoding': 'How an answer may be packed',
  'accept-language': 'Languages of the transport; the service does not look at it',
  'connection': 'Whether the connection is kept',
  'content-length': 'Bytes of the body',
  'content-type': 'Must be application/json; charset=utf-8',
  'host': 'The address that the client asked',
  'user-agent': 'Must be iOS, whatever the system',
  'x-trz-client-device-id': 'The device, an upper-case UUID; may be empty',
  'x-trz-client-key': 'The client key: which host app this is',
  'x-trz-encrypted': '1: the body is encrypted',
  'x-trz-lang': 'The language in which texts are wanted',
  'x-trz-os': 'The system and its version',
  'x-trz-req-signature': 'HMAC-SHA256 of timestamp, dash and parameters, in Base64',
  'x-trz-req-timestamp': 'When it was signed, in milliseconds that end in 000',
  'x-trz-sdk-version': 'The version of the protocol: 1.0',
};

export const ofHeader = (name) => headers[name.toLowerCase()] ?? 'Not a header of a request';

const codes = {
  403001: 'user not found: the client key is not the scenario’s',
  403002: 'token not found: the client key is empty',
  403003: 'signature mismatch',
  403026: 'encryption required',
};

export const ofErrorCode = (code) => codes[code] ?? '';

const effects = {
  'close': 'closes the connection', 'reset': 'resets the connection',
  'half-close': 'ends its own half of the connection', 'stall': 'sends nothing more',
  'drip': 'sends a byte a second', 'cut': 'ends before the promised length',
  'garbage': 'sends random bytes', 'endless': 'sends bytes without end',
  'silence': 'never answers',
};
const moments = {
  accept: 'as soon as it is there', request: 'while the request arrives', before: 'before any answer',
  head: 'within the head of the answer', body: 'within the body of the answer', after: 'behind the answer',
};

export function ofFault(fault) {
  const [effect, moment] = fault.split('+')[0].split('@');
  if (!effects[effect]) return 'spoils the answer';
  return `${effects[effect]}${moment ? ` ${moments[moment] ?? ''}` : ''}`;
}
