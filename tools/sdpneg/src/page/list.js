// The list of calls: only the rows that can be seen are elements.

const ROW_HEIGHT = 30;
const SPARE_ROWS = 8;

const list = {
  shown: data.rows,  // what search and filter leave, sorted
  active: 0,         // a place in it
  sortBy: 'number',
  isDescending: false,
  textsFound: null,  // numbers of calls whose messages have what is searched for
  searches: 0,
  withDates: false,  // where not all calls begin on one day
};

const resultOf = (row) => (row.result === null ? '' : String(row.result));

const COLUMNS = [
  {key: 'number', title: '#', value: (row) => row.number},
  {key: 'start', title: 'Start (UTC)', value: (row) => row.startMicros},
  {key: 'duration', title: 'Length', value: (row) => row.duration},
  {key: 'from', title: 'From', value: (row) => shortUri(row.from).toLowerCase()},
  {key: 'to', title: 'To', value: (row) => shortUri(row.to).toLowerCase()},
  {key: 'state', title: 'State', value: (row) => row.state},
  {key: 'result', title: 'Result', value: (row) => row.result},
  {key: 'codecs', title: 'Codecs', value: (row) => row.codecs.join(',')},
  {key: 'security', title: 'Security', value: (row) => row.security},
  {key: 'messages', title: 'Messages', value: (row) => row.messages},
  {key: 'problems', title: 'Problems', value: (row) => errorsOf(row) * 1e6 + row.problems.length},
];

function problemCell(row) {
  const errors = errorsOf(row);
  const warnings = row.problems.length - errors;
  const rules = shortened([...new Set(row.problems.map((problem) => problem.rule))].join(', '), 300);
  return make('span', {role: 'gridcell', class: 'cell problems', title: rules},
    errors > 0 ? make('b', {class: 'badge error', title: plural(errors, 'error', 'errors')}, String(errors)) : null,
    warnings > 0
      ? make('b', {class: 'badge warning', title: plural(warnings, 'warning', 'warnings')}, String(warnings))
      : null,
    make('span', {class: 'rules'}, rules));
}

function listRow(row, place) {
  const cell = (key, text, title) => make('span', {role: 'gridcell', class: 'cell ' + key, title}, text);
  const uri = (key) => cell(key, shortened(shortUri(row[key]), 120), row[key] === null ? null : shortened(row[key], 1000));
  const codecs = shortened(row.codecs.join(', '), 200);
  return make('div', {
    role: 'row', id: 'row-of-' + row.number, class: 'row call-row', 'data-place': place, 'aria-rowindex': place + 2,
    'aria-selected': String(place === list.active), 'data-open': view.call !== null && view.call.number === row.number,
  },
  cell('number', String(row.number)),
  cell('start', list.withDates ? `${dateOf(row.start)} ${clockOf(row.start)}` : clockOf(row.start), row.start),
  cell('duration', row.duration === null ? '' : durationOf(row.duration)),
  uri('from'), uri('to'),
  make('span', {role: 'gridcell', class: 'cell state'}, make('span', {class: 'pill ' + row.state}, row.state)),
  cell('result ' + row.state, resultOf(row)),
  cell('codecs', codecs, codecs),
  cell('security', row.security === null ? '' : shortened(row.security, 60)),
  cell('messages', row.messages.toLocaleString('en')),
  problemCell(row));
}

function drawList() {
  const rows = byId('rows');
  const first = Math.max(0, Math.floor(rows.scrollTop / ROW_HEIGHT) - SPARE_ROWS);
  const end = Math.min(list.shown.length, first + Math.ceil(rows.clientHeight / ROW_HEIGHT) + 2 * SPARE_ROWS);
  byId('rowSpace').style.height = list.shown.length * ROW_HEIGHT + 'px';
  byId('rowWindow').style.transform = `translateY(${first * ROW_HEIGHT}px)`;
  const nodes = [];
  for (let place = first; place < end; ++place) nodes.push(listRow(list.shown[place], place));
  replaceAll(byId('rowWindow'), nodes);
  const active = list.shown[list.active];
  const isSeen = list.active >= first && list.active < end;
  if (active !== undefined && isSeen) rows.setAttribute('aria-activedescendant', 'row-of-' + active.number);
  else rows.removeAttribute('aria-activedescendant');
}
const redrawList = eachFrame(drawList);

function drawColumns() {
  replaceAll(byId('columns'), COLUMNS.map(({key, title}) => {
    const isSorted = list.sortBy === key;
    const order = list.isDescending ? 'descending' : 'ascending';
    return make('span', {role: 'columnheader', class: 'cell ' + key, 'aria-sort': isSorted ? order : 'none'},
      button(title + (isSorted ? (list.isDescending ? ' ▾' : ' ▴') : ''), 'Sort', () => sortBy(key)));
  }));
}

function sortBy(key) {
  const wasSorted = list.sortBy === key;
  // Most problems, messages and the longest are wanted first.
  const beginsWithMost = ['problems', 'messages', 'duration'].includes(key);
  list.isDescending = wasSorted ? !list.isDescending : beginsWithMost;
  list.sortBy = key;
  drawColumns();
  applyFilters();
}

function compareValues(a, b) {
  if (a === b) return 0;
  if (a === null) return 1;
  if (b === null) return -1;
  return a < b ? -1 : 1;
}

function isShown(row, words, state, problem) {
  if (state !== '' && row.state !== state) return false;
  if (problem === 'any' && row.problems.length === 0) return false;
  if (problem === 'none' && row.problems.length > 0) return false;
  if (problem.startsWith('=') && !row.problems.some((each) => each.rule === problem.slice(1))) return false;
  if (words.every((word) => row.search.includes(word) || word === '#' + row.number)) return true;
  return list.textsFound !== null && list.textsFound.has(row.number);
}

function applyFilters() {
  const words = byId('search').value.toLowerCase().split(/\s+/).filter((word) => word !== '');
  const [state, problem] = [byId('state').value, byId('problem').value];
  const active = list.shown[list.active];
  const value = COLUMNS.find(({key}) => key === list.sortBy).value;
  const sign = list.isDescending ? -1 : 1;
  list.shown = data.rows.filter((row) => isShown(row, words, state, problem))
    .map((row) => ({row, value: value(row)}))
    .sort((a, b) => sign * compareValues(a.value, b.value) || a.row.number - b.row.number)
    .map(({row}) => row);
  list.active = Math.max(0, list.shown.indexOf(active));
  byId('count').textContent = `${list.shown.length.toLocaleString('en')} of ${plural(data.rows.length, 'call', 'calls')}`;
  byId('grid').setAttribute('aria-rowcount', list.shown.length + 1);
  byId('none').hidden = list.shown.length > 0;
  byId('none').textContent = data.rows.length === 0 ? 'There are no calls in the captures.' : 'No call is like that.';
  drawList();
}

/** What is typed is looked for in what the list knows at once, and in the texts of messages where that is asked for. */
async function search() {
  const number = ++list.searches;
  const text = byId('search').value.trim();
  list.textsFound = null;
  applyFilters();
  if (!byId('deep').checked || text === '') return;
  byId('count').textContent = 'searching …';
  list.textsFound = await callsWith(text, () => number === list.searches);
  if (list.textsFound !== null) applyFilters();
}

function moveInList(to) {
  if (list.shown.length === 0) return;
  list.active = Math.min(Math.max(to, 0), list.shown.length - 1);
  const rows = byId('rows');
  const top = list.active * ROW_HEIGHT;
  if (top < rows.scrollTop) rows.scrollTop = top;
  if (top + ROW_HEIGHT > rows.scrollTop + rows.clientHeight) rows.scrollTop = top + ROW_HEIGHT - rows.clientHeight;
  drawList();
}

function listKey(event) {
  const page = Math.max(1, Math.floor(byId('rows').clientHeight / ROW_HEIGHT) - 1);
  const target = {
    ArrowDown: list.active + 1, ArrowUp: list.active - 1, PageDown: list.active + page, PageUp: list.active - page,
    Home: 0, End: list.shown.length - 1,
  }[event.key];
  if (target !== undefined) moveInList(target);
  else if (event.key === 'Enter' && list.shown.length > 0) openCall(list.shown[list.active].number, true);
  else return;
  event.preventDefault();
}

function fillFilters() {
  const option = (value, text) => make('option', {value}, text);
  const count = (counts, key) => counts.set(key, (counts.get(key) || 0) + 1);
  const [states, rules] = [new Map(), new Map()];
  for (const row of data.rows) {
    count(states, row.state);
    for (const rule of new Set(row.problems.map((problem) => problem.rule))) count(rules, rule);
  }
  const options = (counts, mark) => [...counts].sort(([a], [b]) => compareValues(a, b))
    .map(([key, number]) => option(mark + key, `${visible(key)} (${number})`));
  replaceAll(byId('state'), [option('', 'any state'), ...options(states, '')]);
  const some = data.rows.filter((row) => row.problems.length > 0).length;
  replaceAll(byId('problem'), [option('', 'with or without problems'), option('any', `with problems (${some})`),
    option('none', `without problems (${data.rows.length - some})`), ...options(rules, '=')]);
}

function startList() {
  list.withDates = new Set(data.rows.map((row) => dateOf(row.start))).size > 1;
  byId('grid').classList.toggle('with-dates', list.withDates);
  fillFilters();
  drawColumns();
  let waiting = 0;
  byId('search').addEventListener('input', () => {
    clearTimeout(waiting);
    waiting = setTimeout(search, data.rows.length > 2000 ? 120 : 0);
  });
  for (const id of ['state', 'problem']) byId(id).addEventListener('change', applyFilters);
  byId('deep').addEventListener('change', search);
  byId('rows').addEventListener('scroll', redrawList);
  byId('rows').addEventListener('keydown', listKey);
  byId('rows').addEventListener('click', (event) => {
    const row = event.target.closest('.call-row');
    if (row === null) return;
    list.active = Number(row.dataset.place);
    openCall(list.shown[list.active].number, true);
  });
  applyFilters();
}
