// The call that is open, and what is chosen in it.

const view = {
  call: null,
  ladder: null,
  selected: null,  // a message, by its place in the call
  line: null,      // of its text, that a problem is about
  pinned: null,    // the message that the next one is compared with
  compared: null,  // two messages
  hop: null,
  showAll: false,
  options: {bodiesOnly: false, withoutRepeats: false, clock: false},
};

function choose(changes) {
  Object.assign(view, {selected: null, line: null, compared: null, hop: null, showAll: false}, changes);
  drawDetail();
  drawLadder();
  keepAddress();
}

function select(index, isToBeSeen, line = null) {
  if (view.pinned !== null && view.pinned !== index) {
    compare(view.pinned, index);
    return;
  }
  choose({selected: index, line});
  if (isToBeSeen) scrollToMessage(index);
}

function pin(index) {
  view.pinned = view.pinned === index ? null : index;
  drawDetail();
  drawLadder();
}

function compare(first, second) {
  view.pinned = null;
  choose({compared: [first, second], selected: second});
}

function showHop(index) {
  view.pinned = null;
  choose({hop: index});
}

function closeDetail() {
  view.pinned = null;
  choose({});
  byId('ladder').focus();
}

function callFacts(call) {
  const again = call.messages.filter((message) => message.retransmission).length;
  const length = call.start === null || call.end === null ? null : durationOf(microsOf(call.end) - call.startMicros);
  return [
    call.start === null ? 'unknown time' : `${dateOf(call.start)} ${clockOf(call.start)} UTC`,
    length, call.codecs.length === 0 ? null : shortened(call.codecs.join(', '), 300),
    call.security === null ? null : shortened(call.security, 100),
    plural(call.messages.length, 'message', 'messages') + (again > 0 ? `, ${again} again` : ''),
    call.givenUp ? 'given up: what came later is another call' : null,
  ].filter((fact) => fact !== null);
}

function legNodes(call) {
  return make('ul', {class: 'legs'}, call.legs.map((leg, index) => {
    const by = leg.joinedBy === null ? '' : `joined by ${leg.joinedBy}: ${shortened(leg.joinDetail || '', 300)}`;
    return make('li', {}, letterOf(call, index) === '' ? null : make('b', {class: 'leg'}, letterOf(call, index)),
      make('span', {class: 'call-id', title: shortened(leg.callId, 1000)}, shortened(leg.callId, 120)), by === '' ? null : make('span', {class: 'join'}, by));
  }));
}

function callHead(call) {
  const end = (uri) => (uri === null ? 'unknown' : shortened(shortUri(uri), 80));
  return make('header', {class: 'call-head'},
    make('h2', {}, make('span', {class: 'call-number'}, `#${call.number}`), ` ${end(call.from)} → ${end(call.to)} `,
      make('span', {class: 'pill ' + call.state}, call.state),
      call.result === null ? null : make('span', {class: 'result ' + call.state}, ` ${call.result}`)),
    make('p', {class: 'facts'}, ...callFacts(call).map((fact) => make('span', {}, fact))),
    legNodes(call));
}

function problemItem(call, problem) {
  const meaning = Object.hasOwn(data.summary.rules, problem.rule) ? data.summary.rules[problem.rule] : null;
  const where = `message ${problem.message}` + (problem.line === null ? '' : `, line ${problem.line}`);
  return make('li', {class: problem.severity},
    make('button', {type: 'button', class: 'problem', title: meaning, click: () => {
      view.pinned = null;
      select(call.indexOf.get(problem.message), true, problem.line);
    }},
    make('span', {class: 'severity'}, problem.severity === 'error' ? '● error' : '▲ warning'),
    make('span', {class: 'rule'}, visible(problem.rule)),
    make('span', {class: 'what'}, shortened(problem.text, 1000)),
    make('span', {class: 'where'}, where)));
}

function problemNodes(call, most) {
  if (call.problems.length === 0) return [];
  const items = call.problems.slice(0, most).map((problem) => problemItem(call, problem));
  const rest = call.problems.length - items.length;
  if (rest > 0) {
    const all = () => replaceAll(byId('callProblems'), problemNodes(call, call.problems.length));
    items.push(make('li', {}, button(`${rest.toLocaleString('en')} more`, 'Show all problems', all)));
  }
  return [make('ol', {class: 'problem-list', 'aria-label': 'Problems'}, items)];
}

function optionNodes(call) {
  const box = (key, text) => make('label', {class: 'check'},
    make('input', {type: 'checkbox', checked: view.options[key], change: (event) => {
      view.options[key] = event.target.checked;
      layOutCall();
    }}), text);
  return [
    box('bodiesOnly', ' SDP bodies only'),
    call.messages.some((message) => message.retransmission) ? box('withoutRepeats', ' without retransmissions') : null,
    box('clock', ' time of day'),
    make('span', {class: 'hint'}, 'Click a message for its text, Ctrl-click another one to compare them, click Δ for what a hop changed.'),
  ].filter((node) => node !== null);
}

function layOutCall() {
  if (view.call === null) return;
  const width = byId('ladder').clientWidth;
  view.ladder = layOut(view.call, {...view.options, width});
  byId('ladderSpace').style.height = view.ladder.height + 'px';
  byId('ladderSpace').style.width = view.ladder.width + 'px';
  drawLadder();
}

function drawLadder() {
  if (view.ladder === null) return;
  const scroller = byId('ladder');
  const width = scroller.clientWidth;
  const left = Math.min(scroller.scrollLeft, Math.max(0, view.ladder.width - width));
  const top = Math.max(0, Math.floor(scroller.scrollTop) - SPARE_HEIGHT);
  const bottom = Math.min(view.ladder.height, top + scroller.clientHeight + 2 * SPARE_HEIGHT);
  const head = drawParticipants(view.ladder, left, width);
  const part = drawPart(view.ladder, {left, width, top, bottom: Math.max(bottom, top + 1)});
  head.style.marginLeft = part.style.left = left + 'px';
  part.style.top = top + 'px';
  byId('ladderHead').replaceChildren(head);
  byId('ladderSpace').replaceChildren(part);
  if (view.selected !== null && byId('message-' + view.selected)) {
    scroller.setAttribute('aria-activedescendant', 'message-' + view.selected);
  } else {
    scroller.removeAttribute('aria-activedescendant');
  }
}
const redrawLadder = eachFrame(drawLadder);

/** Lets a message be seen, though a filter would leave it out. */
function scrollToMessage(index) {
  if (!view.ladder.placeOf.has(index)) {
    Object.assign(view.options, {bodiesOnly: false, withoutRepeats: false});
    replaceAll(byId('options'), optionNodes(view.call));
    layOutCall();
  }
  const item = view.ladder.items[view.ladder.placeOf.get(index)];
  const scroller = byId('ladder');
  const seen = scroller.clientHeight - HEAD_HEIGHT;
  if (item.top < scroller.scrollTop || item.top + item.height > scroller.scrollTop + seen) {
    scroller.scrollTop = Math.max(0, item.top - seen / 3);
  }
  drawLadder();
}

function drawDetail() {
  const {call, compared, hop, selected} = view;
  const isShown = call !== null && (compared !== null || hop !== null || selected !== null);
  const wasShown = !byId('detail').hidden;
  byId('detail').hidden = !isShown;
  byId('main').classList.toggle('has-detail', isShown);
  if (!isShown) byId('detail').replaceChildren();
  else if (compared !== null) replaceDetail(compareDetail(call, ...compared));
  else replaceDetail(hop !== null ? hopDetail(call, hop) : messageDetail(call, selected));
  const line = view.line === null ? null : byId('detail').querySelector(`[data-line="${Number(view.line)}"]`);
  if (line !== null) {
    line.classList.add('meant');
    line.scrollIntoView({block: 'center'});
  }
  if (isShown !== wasShown) layOutCall();
}

const replaceDetail = (nodes) => replaceAll(byId('detail'), nodes.filter((node) => node !== null));

function openCall(number, isToBeFocused) {
  const row = data.rows.find((each) => each.number === number);
  if (row === undefined) return;
  view.call = readCall(number);
  Object.assign(view, {ladder: null, selected: null, line: null, pinned: null, compared: null, hop: null, showAll: false});
  Object.assign(view.options, {bodiesOnly: false, withoutRepeats: false});
  byId('call').hidden = false;
  byId('back').hidden = false;
  byId('main').classList.add('has-call');
  replaceAll(byId('callHead'), [callHead(view.call)]);
  replaceAll(byId('callProblems'), problemNodes(view.call, 50));
  replaceAll(byId('options'), optionNodes(view.call));
  byId('ladder').scrollTo(0, 0);
  drawDetail();
  layOutCall();
  list.active = Math.max(0, list.shown.indexOf(row));
  moveInList(list.active);
  keepAddress();
  if (isToBeFocused) byId('ladder').focus();
}

function closeCall() {
  Object.assign(view, {call: null, ladder: null, selected: null, line: null, pinned: null, compared: null, hop: null});
  byId('call').hidden = true;
  byId('back').hidden = true;
  byId('main').classList.remove('has-call');
  drawDetail();
  moveInList(list.active);
  keepAddress();
  byId('rows').focus();
}
