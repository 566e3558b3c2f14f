// Keys, colours, widths, printing, and the beginning of all.

const KEYS = [
  ['/', 'search'],
  ['↑ ↓ PgUp PgDn Home End', 'choose a call or a message'],
  ['Enter', 'open the call; show the message'],
  ['Escape', 'close the message, then the call'],
  ['[ ]', 'the call before, the call behind'],
  ['n p', 'next problem of the call, the one before'],
  ['h', 'what the hop made of the message'],
  ['c', 'compare the message with the next one that is chosen'],
  ['Ctrl or Shift and click', 'compare the message with the chosen one'],
  ['t', 'light or dark'],
  ['?', 'this list'],
];

/** The address tells what is open, so that it can be kept and opened again. */
function keepAddress() {
  const {call, selected, compared, hop} = view;
  const parts = [];
  if (call !== null) {
    const number = (index) => call.messages[index].number;
    parts.push(`call=${call.number}`);
    if (compared !== null) parts.push(`compare=${compared.map(number).join('-')}`);
    else if (hop !== null) parts.push(`hop=${hop + 1}`);
    else if (selected !== null) parts.push(`message=${number(selected)}`);
  }
  const address = '#' + parts.join('&');
  if (address !== (location.hash || '#')) history.replaceState(null, '', address);
}

function openAddress() {
  const parts = new URLSearchParams(location.hash.slice(1));
  const number = (name) => Number.parseInt(parts.get(name), 10);
  if (!parts.has('call')) return false;
  openCall(number('call'), true);
  if (view.call === null) return false;
  const index = view.call.indexOf.get(number('message'));
  if (index !== undefined) select(index, true);
  const [first, second] = (parts.get('compare') || '').split('-').map((each) => view.call.indexOf.get(Number(each)));
  if (first !== undefined && second !== undefined) compare(first, second);
  if (view.call.hops[number('hop') - 1] !== undefined) showHop(number('hop') - 1);
  return true;
}

function moveInLadder(by) {
  const {items, placeOf} = view.ladder;
  if (items.length === 0) return;
  const place = view.selected === null ? undefined : placeOf.get(view.selected);
  const outside = by === -1 ? items.length : -1;
  const to = Math.min(Math.max((place === undefined ? outside : place) + by, 0), items.length - 1);
  choose({selected: items[to].index});
  scrollToMessage(items[to].index);
}

function moveToProblem(by) {
  const places = [...new Set(view.call.problems.map((problem) => view.call.indexOf.get(problem.message)))].sort((a, b) => a - b);
  if (places.length === 0) return;
  const now = view.selected === null ? (by > 0 ? -1 : Infinity) : view.selected;
  const place = by > 0 ? places.find((each) => each > now) : places.findLast((each) => each < now);
  if (place === undefined) return;
  const problem = view.call.problems.find((each) => view.call.indexOf.get(each.message) === place);
  choose({selected: place, line: problem.line});
  scrollToMessage(place);
}

function hopOfSelected() {
  if (view.selected === null) return;
  const {number} = view.call.messages[view.selected];
  const after = view.call.hops.findIndex((hop) => hop.after === number);
  const index = after >= 0 ? after : view.call.hops.findIndex((hop) => hop.before === number);
  if (index >= 0) showHop(index);
}

function ladderKey(event) {
  const page = Math.max(1, Math.floor(byId('ladder').clientHeight / BODY_ROW) - 1);
  const by = {ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity}[event.key];
  if (by !== undefined) moveInLadder(by);
  else if (event.key === 'Enter') {
    if (view.selected === null) moveInLadder(1);
    else select(view.selected, true);
  } else return;
  event.preventDefault();
}

function openBeside(by) {
  const row = list.shown[list.active + by];
  if (row !== undefined) openCall(row.number, true);
}

const PAGE_KEYS = {
  '/': () => byId('search').focus(),
  '?': () => byId('keys').showModal(),
  t: switchTheme,
};
const CALL_KEYS = {
  '[': () => openBeside(-1),
  ']': () => openBeside(1),
  n: () => moveToProblem(1),
  p: () => moveToProblem(-1),
  h: hopOfSelected,
  c: () => view.selected !== null && pin(view.selected),
};

function escape(event) {
  if (byId('keys').open) return;
  if (event.target === byId('search')) byId('rows').focus();
  else if (view.pinned !== null) pin(view.pinned);
  else if (!byId('detail').hidden) closeDetail();
  else if (view.call !== null) closeCall();
}

function pageKey(event) {
  if (event.key === 'Escape') {
    escape(event);
    return;
  }
  const isTyping = event.target.matches('select, input:not([type=checkbox])');
  if (isTyping || event.ctrlKey || event.metaKey || event.altKey || byId('keys').open) return;
  const action = PAGE_KEYS[event.key] || (view.call !== null && CALL_KEYS[event.key]);
  if (!action) return;
  event.preventDefault();
  action();
}

const isDark = () => {
  const chosen = document.documentElement.dataset.theme;
  return chosen ? chosen === 'dark' : matchMedia('(prefers-color-scheme: dark)').matches;
};

function nameTheme() {
  byId('theme').textContent = isDark() ? 'Light' : 'Dark';
}

function switchTheme() {
  document.documentElement.dataset.theme = isDark() ? 'light' : 'dark';
  nameTheme();
}

/** An edge between two parts of the page that can be drawn and moved with arrows. */
function startEdge(id, variable, widthAt, step) {
  const edge = byId(id);
  const setWidth = (width) => {
    const most = Math.max(240, innerWidth - 480);
    byId('main').style.setProperty(variable, Math.min(Math.max(width, 200), most) + 'px');
    layOutCall();
    drawList();
  };
  edge.addEventListener('pointerdown', (event) => {
    edge.setPointerCapture(event.pointerId);
    event.preventDefault();
  });
  edge.addEventListener('pointermove', (event) => {
    if (edge.hasPointerCapture(event.pointerId)) setWidth(widthAt(event.clientX));
  });
  edge.addEventListener('keydown', (event) => {
    const by = {ArrowLeft: -step, ArrowRight: step}[event.key];
    if (by === undefined) return;
    event.preventDefault();
    setWidth(widthAt(edge.getBoundingClientRect().left + by));
  });
}

// A sheet has whole rows, so a ladder is printed in parts of a few.
const PRINTED_ROWS = 6;
const PRINTED_WIDTH = 980;
const MOST_PRINTED_CALLS = 2000;
const MOST_PRINTED_MESSAGES = 3000;

function printedLadder(call) {
  const ladder = layOut(call, {...view.options, width: PRINTED_WIDTH});
  const parts = [];
  const end = Math.min(ladder.items.length, MOST_PRINTED_MESSAGES);
  for (let place = 0; place < end; place += PRINTED_ROWS) {
    const last = ladder.items[Math.min(place + PRINTED_ROWS, end) - 1];
    const part = drawPart(ladder, {left: 0, width: ladder.width, top: ladder.items[place].top, bottom: last.top + last.height});
    parts.push(make('tr', {}, make('td', {}, part)));
  }
  if (end < ladder.items.length) {
    const rest = plural(ladder.items.length - end, 'message more is', 'messages more are');
    parts.push(make('tr', {}, make('td', {class: 'empty'}, `${rest} not printed.`)));
  }
  return make('table', {class: 'printed-ladder'},
    make('thead', {}, make('tr', {}, make('td', {}, drawParticipants(ladder, 0, ladder.width)))),
    make('tbody', {}, parts));
}

function preparePrint() {
  const nodes = [];
  if (view.call !== null) {
    nodes.push(callHead(view.call), ...problemNodes(view.call, view.call.problems.length), printedLadder(view.call));
    if (!byId('detail').hidden) nodes.push(make('section', {class: 'printed-detail'}, byId('detail').cloneNode(true)));
  } else {
    const rows = list.shown.slice(0, MOST_PRINTED_CALLS);
    nodes.push(make('h2', {}, `${byId('title').textContent}: ${byId('count').textContent}`), ...rows.map(listRow));
    if (rows.length < list.shown.length) nodes.push(make('p', {}, `The first ${rows.length} are printed.`));
  }
  replaceAll(byId('print'), nodes);
}

function showTotals() {
  const {summary, rows} = data;
  const problems = rows.reduce((sum, row) => sum + row.problems.length, 0);
  const parts = [
    plural(rows.length, 'call', 'calls'), plural(summary.messages, 'message', 'messages'),
    summary.retransmissions > 0 ? plural(summary.retransmissions, 'retransmission', 'retransmissions') : null,
    summary.otherMessages > 0 ? `${summary.otherMessages.toLocaleString('en')} outside of calls` : null,
    plural(problems, 'problem', 'problems'), ...summary.notes.map(visible),
  ];
  byId('totals').textContent = parts.filter((part) => part !== null).join(' · ');
  if (summary.title === '') return;
  byId('title').textContent = shortened(summary.title, 80);
  document.title = shortened(summary.title, 80) + ' – SIP calls';
}

function startLadder() {
  const ladder = byId('ladder');
  ladder.addEventListener('scroll', redrawLadder);
  ladder.addEventListener('keydown', ladderKey);
  ladder.addEventListener('click', (event) => {
    const hop = event.target.closest('[data-hop]');
    const message = event.target.closest('[data-message]');
    if (hop !== null) return showHop(Number(hop.dataset.hop));
    if (message === null) return undefined;
    const index = Number(message.dataset.message);
    const isSecond = event.ctrlKey || event.shiftKey || event.metaKey;
    if (isSecond && view.selected !== null && view.selected !== index) return compare(view.selected, index);
    return select(index, false);
  });
}

function startKeys() {
  byId('keys').append(make('h2', {}, 'Keys'),
    make('dl', {}, ...KEYS.flatMap(([keys, meaning]) => [make('dt', {}, keys), make('dd', {}, meaning)])),
    button('Close', null, () => byId('keys').close()));
  document.addEventListener('keydown', pageKey);
  byId('help').addEventListener('click', () => byId('keys').showModal());
  byId('theme').addEventListener('click', switchTheme);
  byId('back').addEventListener('click', closeCall);
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', nameTheme);
  nameTheme();
}

function start() {
  readData();
  showTotals();
  startList();
  startLadder();
  startKeys();
  startEdge('listEdge', '--list', (x) => x - byId('main').getBoundingClientRect().left, 20);
  startEdge('detailEdge', '--detail', (x) => byId('main').getBoundingClientRect().right - x, 20);
  addEventListener('resize', eachFrame(() => {
    layOutCall();
    drawList();
  }));
  addEventListener('hashchange', openAddress);
  addEventListener('beforeprint', preparePrint);
  addEventListener('afterprint', () => byId('print').replaceChildren());
  if (!openAddress()) {
    if (data.rows.length === 1) openCall(data.rows[0].number, true);
    else byId('rows').focus();
  }
}

start();
