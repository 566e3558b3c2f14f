// The calls: a short row of each is read at once, all of it when it is opened.

const data = {
  rows: [],
  summary: {title: '', messages: 0, retransmissions: 0, otherMessages: 0, notes: [], rules: {}},
};

const callNode = (number) => byId('call-' + number);

function readData() {
  for (const node of document.querySelectorAll('script.call-summary')) {
    const row = JSON.parse(node.textContent);
    row.search = textToSearch(row);
    row.startMicros = microsOf(row.start);
    row.duration = row.start === null || row.end === null ? null : microsOf(row.end) - row.startMicros;
    data.rows.push(row);
  }
  data.rows.sort((a, b) => a.number - b.number);
  const summary = byId('summary');
  if (summary !== null) data.summary = JSON.parse(summary.textContent);
}

function textToSearch(row) {
  const problems = row.problems.flatMap((problem) => [problem.rule, problem.text]);
  const parts = [row.from, row.to, row.state, row.result, row.security, row.joinedBy, ...row.codecs, ...row.callIds];
  return parts.concat(row.participants, row.names, problems).filter((part) => part !== null).join('\n').toLowerCase();
}

const errorsOf = (row) => row.problems.filter((problem) => problem.severity === 'error').length;

/** A call as its JSON has it, with what is asked often beside it. */
function readCall(number) {
  const call = JSON.parse(callNode(number).textContent);
  call.indexOf = new Map(call.messages.map((message, index) => [message.number, index]));
  call.legOf = new Map(call.callIds.map((callId, index) => [callId, index]));
  call.startMicros = microsOf(call.start);
  call.problemsOf = new Map();
  for (const problem of call.problems) {
    const known = call.problemsOf.get(problem.message);
    if (known === undefined) call.problemsOf.set(problem.message, [problem]);
    else known.push(problem);
  }
  return call;
}

/** "200 OK" and the like: what a message begins with, without what all of them have. */
function nameOf(message) {
  if (message.first === message.method || message.text === null) return shortened(message.first, 40);
  const line = message.text.slice(0, 200).split(/\r?\n/, 1)[0];
  const reason = line.split(' ').slice(2).join(' ');
  return shortened(reason === '' ? message.first : `${message.first} ${reason}`, 40);
}

/** What colour a message has. */
function kindOf(message) {
  if (message.first === message.method) return 'request';
  return {1: 'provisional', 2: 'success', 3: 'redirection'}[message.first[0]] || 'failure';
}

/** The letter of a leg, "" where there is one leg. */
function letterOf(call, leg) {
  if (call.callIds.length < 2) return '';
  return leg < 26 ? String.fromCharCode(65 + leg) : String(leg + 1);
}

/** What a text would be in the JSON of a page. */
function asWritten(text) {
  const escape = (c) => '\\u' + c.charCodeAt(0).toString(16).padStart(4, '0');
  return JSON.stringify(text).slice(1, -1).replace(/[<>&\u2028\u2029]/g, escape);
}

const messagesHave = (call, lower) =>
  call.messages.some((message) => message.text !== null && message.text.toLowerCase().includes(lower));

/**
 * Looks for a text in all messages, a part of them at a time so that the page stays usable. Calls are read only where what
 * is written of them has the text. Gives the numbers of the calls that have it; null when `isWanted` says that nobody
 * waits for it any more.
 */
async function callsWith(text, isWanted) {
  const pattern = new RegExp(asWritten(text).replace(/[.*+?^${}()|[\]\\]/g, '\\$&'), 'i');
  const found = new Set();
  let begin = performance.now();
  for (const row of data.rows) {
    const written = callNode(row.number).textContent;
    if (pattern.test(written) && messagesHave(JSON.parse(written), text.toLowerCase())) found.add(row.number);
    if (performance.now() - begin < 25) continue;
    await new Promise((resume) => setTimeout(resume, 0));
    if (!isWanted()) return null;
    begin = performance.now();
  }
  return isWanted() ? found : null;
}
