// What is shown of a message, of two beside each other, and of a hop.

const MOST_LINES = 3000;
const MOST_CHARACTERS = 3000;
const CONTEXT = 3;

/** A text with what is searched for marked. */
function marked(text) {
  const words = byId('search').value.toLowerCase().split(/\s+/).filter((word) => word.length > 1);
  const lower = text.toLowerCase();
  const nodes = [];
  let done = 0;
  // Where lower case has another length, places do not fit.
  while (lower.length === text.length && words.length > 0) {
    const hits = words.map((word) => ({at: lower.indexOf(word, done), size: word.length})).filter(({at}) => at >= 0);
    if (hits.length === 0 || nodes.length > 200) break;
    const hit = hits.reduce((a, b) => (b.at < a.at ? b : a));
    nodes.push(text.slice(done, hit.at), make('mark', {}, text.slice(hit.at, hit.at + hit.size)));
    done = hit.at + hit.size;
  }
  nodes.push(text.slice(done));
  return nodes;
}

/** A line as it may be shown: visible, and not without end. */
function shownLine(line) {
  if (view.showAll || line.length <= MOST_CHARACTERS) return visible(line);
  return visible(line.slice(0, MOST_CHARACTERS)) + ` … ${plural(line.length - MOST_CHARACTERS, 'character', 'characters')} more`;
}

function showAllButton(text) {
  return button(text, 'May take a while', () => {
    view.showAll = true;
    drawDetail();
  });
}

/** The parts of a line: what it is called, and the rest. */
function lineNodes(line, index, isBody) {
  const shown = shownLine(line);
  if (index === 0) return [make('span', {class: 'start-line'}, ...marked(shown))];
  const name = (isBody ? /^[a-z]=/ : /^[^\s:]+:/).exec(shown);
  if (name === null) return marked(shown);
  return [make('span', {class: 'key'}, ...marked(name[0])), ...marked(shown.slice(name[0].length))];
}

function noteOf(problem) {
  return make('div', {class: 'note ' + problem.severity},
    make('b', {}, visible(problem.rule)), ' ', visible(problem.text));
}

function textNodes(message, problems) {
  const lines = linesOf(message.text);
  const end = view.showAll ? lines.length : Math.min(lines.length, MOST_LINES);
  const notes = new Map();
  for (const problem of problems) notes.set(problem.line, (notes.get(problem.line) || []).concat(problem));
  const nodes = (notes.get(null) || []).map(noteOf);
  let isBody = false;
  for (let index = 0; index < end; ++index) {
    const found = notes.get(index + 1) || [];
    const number = make('span', {class: 'line-number', 'aria-hidden': 'true', 'data-number': index + 1});
    nodes.push(make('div', {class: 'text-line' + (found.length > 0 ? ' ' + found[0].severity : ''), 'data-line': index + 1},
      number, make('span', {class: 'line-rest'}, ...lineNodes(lines[index], index, isBody))));
    for (const problem of found) nodes.push(noteOf(problem));
    if (lines[index] === '') isBody = true;
  }
  if (end < lines.length) nodes.push(showAllButton(`Show ${plural(lines.length - end, 'more line', 'more lines')}`));
  return nodes;
}

const DIFF_CLASS = {' ': 'same', '-': 'gone', '+': 'come', '@': 'place', '\\': 'place'};

/** A row of a diff. Its text is the mark and the line, as the tool prints it. */
function diffRow([mark, line], ends) {
  const shown = shownLine(line);
  const parts = [shown];
  if (ends && shown === line) {
    const to = line.length - ends.tail;
    parts.splice(0, 1, line.slice(0, ends.head), make('b', {}, line.slice(ends.head, to)), line.slice(to));
  }
  return make('div', {class: 'diff-line ' + (DIFF_CLASS[mark] || 'same')}, make('span', {class: 'sign'}, mark), ...parts);
}

/** A diff with its rows, long runs of equal lines behind a button. */
function diffNodes(rows) {
  const edits = markEdits(rows);
  const nodes = [];
  for (let i = 0; i < rows.length;) {
    let end = i;
    while (end < rows.length && rows[end][0] === ' ') ++end;
    const begin = i === 0 ? 0 : i + CONTEXT;
    const rest = end === rows.length ? end : end - CONTEXT;
    if (rest - begin > 4) {
      for (; i < begin; ++i) nodes.push(diffRow(rows[i]));
      nodes.push(foldedRows(rows.slice(begin, rest)));
      i = rest;
    }
    for (; i < end; ++i) nodes.push(diffRow(rows[i]));
    for (; i < rows.length && rows[i][0] !== ' '; ++i) nodes.push(diffRow(rows[i], edits.get(i)));
    if (nodes.length > MOST_LINES && !view.showAll) return [...nodes, showAllButton('Show the rest')];
  }
  return nodes;
}

function foldedRows(rows) {
  const node = button(`⋯ ${plural(rows.length, 'equal line', 'equal lines')}`, 'Show them', () => {
    const fragment = document.createDocumentFragment();
    for (const row of rows) fragment.append(diffRow(row));
    node.replaceWith(fragment);
  });
  node.className = 'folded';
  return node;
}

function placeText(call, message) {
  const [from, to] = message.path.map((place) => call.names[place]);
  const end = (name, address) => (name === null ? address : `${visible(name)} (${address})`);
  return `${end(from, message.source)} → ${end(to, message.destination)}`;
}

function detailHead(title, lines, buttons) {
  return make('header', {class: 'detail-head'},
    make('div', {class: 'detail-title'}, make('h2', {}, title),
      make('div', {class: 'tools'}, ...buttons, button('✕', 'Close (Escape)', closeDetail))),
    ...lines.filter((line) => line !== null).map((line) => make('p', {}, line)));
}

/** Where the message belongs: its offer or answers, the message that it repeats, the hops that it is part of. */
function relatedButtons(call, message) {
  const link = (number, text) => button(text, `Show message ${number}`, () => select(call.indexOf.get(number), true));
  const nodes = [];
  for (const {offer, answer} of call.exchanges) {
    if (offer === message.number && answer !== null) nodes.push(link(answer, `answer: message ${answer}`));
    if (answer === message.number) nodes.push(link(offer, `offer: message ${offer}`));
  }
  if (message.retransmissionOf !== null) nodes.push(link(message.retransmissionOf, `first sent: message ${message.retransmissionOf}`));
  call.hops.forEach((hop, index) => {
    if (hop.before !== message.number && hop.after !== message.number) return;
    const way = hop.after === message.number ? `came from message ${hop.before}` : `went on as message ${hop.after}`;
    nodes.push(button(hop.diff.length > 0 ? way + ', changed' : way, 'Show the hop', () => showHop(index)));
  });
  return nodes.length === 0 ? null : make('div', {class: 'related'}, nodes);
}

function messageDetail(call, index) {
  const message = call.messages[index];
  const isPinned = view.pinned === index;
  const compare = button(isPinned ? 'Choose the other …' : 'Compare', 'Compare with the next message that is chosen (c)', () => pin(index));
  compare.setAttribute('aria-pressed', String(isPinned));
  const copy = button('Copy', 'Copy the text', () => navigator.clipboard.writeText(message.text).catch(() => {}));
  const time = message.time === null ? 'unknown time' : message.time.replace('T', ' ').replace('Z', ' UTC');
  return [
    detailHead(`${nameOf(message)}, message ${message.number}`,
      [placeText(call, message), `${message.transport}, ${time}`, message.short === null ? null : `${message.body}: ${visible(message.short)}`],
      [compare, copy]),
    relatedButtons(call, message),
    make('div', {class: 'text', id: 'text', tabindex: 0, 'aria-label': 'Text of the message'},
      message.text === null ? 'The text is not part of this page.' : textNodes(message, call.problemsOf.get(message.number) || [])),
  ];
}

function compareDetail(call, first, second) {
  const [before, after] = [call.messages[first], call.messages[second]];
  const rows = diffOf(before.text || '', after.text || '');
  const swap = button('Swap', 'Compare the other way round', () => compare(second, first));
  return [
    detailHead(`Messages ${before.number} and ${after.number}`,
      [`− ${nameOf(before)}: ${placeText(call, before)}`, `+ ${nameOf(after)}: ${placeText(call, after)}`], [swap]),
    make('div', {class: 'text', id: 'text', tabindex: 0, 'aria-label': 'What differs'},
      rows.every(([mark]) => mark === ' ') ? make('p', {class: 'empty'}, 'Both are the same.') : diffNodes(rows)),
  ];
}

/** The lines of a section as the tool tells them, mark by mark. */
function sectionNodes({section, lines}) {
  const rows = lines.split('\n').slice(0, -1).map((line) => [line.slice(0, 1), line.slice(1)]);
  const edits = markEdits(rows);
  return make('section', {class: 'changed-section', 'data-section': section},
    make('h3', {}, visible(section)), rows.map((row, index) => diffRow(row, edits.get(index))));
}

function hopDetail(call, index) {
  const hop = call.hops[index];
  const [first, second] = [hop.before, hop.after].map((number) => call.indexOf.get(number));
  const column = call.participants.indexOf(hop.participant);
  const name = call.names[column] === null || column < 0 ? hop.participant : visible(call.names[column]);
  const show = (text, place) => button(text, 'Show the message', () => select(place, true));
  const none = hopHasBody(call, hop) ? 'It passed the body on as it came.' : 'There is no body in these messages.';
  return [
    detailHead(`What ${name} changed`,
      [`${nameOf(call.messages[first])} came in as message ${hop.before} and went out as message ${hop.after}.`], []),
    make('div', {class: 'related'}, show(`message ${hop.before}`, first), show(`message ${hop.after}`, second),
      button('compare all of both', 'Headers as well', () => compare(first, second))),
    make('div', {class: 'text', id: 'text', tabindex: 0, 'aria-label': 'What the hop changed'},
      hop.diff.length > 0 ? hop.diff.map(sectionNodes) : make('p', {class: 'empty'}, none)),
  ];
}
