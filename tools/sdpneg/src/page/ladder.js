// The ladder of a call: where each message and each hop stands, and the part of it that can be seen as SVG.

const TIMES_WIDTH = 124;
const LEAST_COLUMN = 140;
const MOST_COLUMN = 340;
const HEAD_HEIGHT = 46;
const PLAIN_ROW = 32;
const BODY_ROW = 47;
const ARROW_AT = 20;
const SPARE_HEIGHT = 500;
const SHORT_LETTER = 6.7;
// That are drawn at once: no screen shows so many, and no sheet.
const MOST_COLUMNS = 200;

/**
 * The messages that are shown, from the top down. What is asked of it takes the same time however many there are.
 * options: {width, bodiesOnly, withoutRepeats, clock}
 */
function layOut(call, options) {
  const items = [];
  const placeOf = new Map();
  let top = 8;
  call.messages.forEach((message, index) => {
    if (options.bodiesOnly && message.body === null) return;
    if (options.withoutRepeats && message.retransmission) return;
    const height = message.short === null ? PLAIN_ROW : BODY_ROW;
    placeOf.set(index, items.length);
    items.push({message, index, top, height});
    top += height;
  });
  const count = Math.max(1, call.participants.length);
  const column = Math.min(MOST_COLUMN, Math.max(LEAST_COLUMN, (options.width - TIMES_WIDTH) / count));
  const hops = layOutHops(call, items, placeOf);
  return {call, options, items, placeOf, hops, height: top + 8, column,
    width: Math.max(options.width, TIMES_WIDTH + count * column)};
}

/** Hops by where they begin, with how far down those up to each one reach. */
function layOutHops(call, items, placeOf) {
  const columns = new Map(call.participants.map((participant, index) => [participant, index]));
  const hops = [];
  call.hops.forEach((hop, index) => {
    const [before, after] = [hop.before, hop.after].map((number) => placeOf.get(call.indexOf.get(number)));
    if (before === undefined || after === undefined) return;
    const [top, bottom] = [items[before].top + ARROW_AT, items[after].top + ARROW_AT];
    hops.push({hop, index, top: Math.min(top, bottom), bottom: Math.max(top, bottom), column: columns.get(hop.participant)});
  });
  return hops.sort((a, b) => a.top - b.top);
}

const columnAt = (ladder, column) => TIMES_WIDTH + ladder.column * (column + 0.5);

/** The place of the item at this height; the last one below all. */
function itemAt(ladder, y) {
  let [begin, end] = [0, ladder.items.length];
  while (begin < end) {
    const middle = (begin + end) >> 1;
    if (ladder.items[middle].top + ladder.items[middle].height <= y) begin = middle + 1;
    else end = middle;
  }
  return Math.min(begin, ladder.items.length - 1);
}

/** The columns that are drawn between two places, from the first to the one behind the last. */
function columnsBetween(ladder, left, right) {
  const first = Math.max(0, Math.floor((left - TIMES_WIDTH) / ladder.column));
  const end = Math.max(0, Math.ceil((right - TIMES_WIDTH) / ladder.column));
  return [first, Math.min(ladder.call.participants.length, end, first + MOST_COLUMNS)];
}

function drawParticipants(ladder, left, width) {
  const svg = draw('svg', {
    class: 'ladder-head', width, height: HEAD_HEIGHT, viewBox: `${left} 0 ${width} ${HEAD_HEIGHT}`, 'aria-hidden': 'true',
  });
  const [first, end] = columnsBetween(ladder, left, left + width);
  const most = Math.floor(ladder.column / 7.2);
  for (let column = first; column < end; ++column) {
    const name = ladder.call.names[column];
    const address = ladder.call.participants[column];
    const x = columnAt(ladder, column);
    svg.append(
      draw('g', {class: 'participant'},
        draw('title', {}, visible(name === null ? address : `${name}: ${address}`)),
        draw('rect', {x: x - ladder.column / 2 + 6, y: 4, width: ladder.column - 12, height: HEAD_HEIGHT - 8, rx: 5}),
        draw('text', {x, y: name === null ? 27 : 20, class: 'name'}, shortened(name === null ? address : name, most)),
        name === null ? null : draw('text', {x, y: 35, class: 'address'}, shortened(address, most))));
  }
  return svg;
}

function drawArrow(x1, x2, y) {
  if (x1 === x2) {
    return [draw('path', {class: 'line', d: `M${x1} ${y - 6}h34v10h-26`}),
      draw('path', {class: 'head', d: `M${x1 + 1} ${y + 4}l9 -4.5v9z`})];
  }
  const way = x2 > x1 ? 1 : -1;
  return [draw('path', {class: 'line', d: `M${x1} ${y}H${x2 - 8 * way}`}),
    draw('path', {class: 'head', d: `M${x2 - way} ${y}l${-9 * way} -4.5v9z`})];
}

/** Of a row the number and the time, and a mark where something is wrong. */
function drawTimes(ladder, item, problems) {
  const {message, top} = item;
  const micros = microsOf(message.time);
  const since = micros === null || ladder.call.startMicros === null ? '' : secondsOf(micros - ladder.call.startMicros);
  const nodes = [
    draw('text', {class: 'number', x: 44, y: top + ARROW_AT + 4}, String(message.number)),
    draw('text', {class: 'time', x: TIMES_WIDTH - 20, y: top + ARROW_AT + 4},
      draw('title', {}, message.time === null ? 'unknown time' : message.time),
      ladder.options.clock ? clockOf(message.time) : since),
  ];
  if (problems.length === 0) return nodes;
  const severity = problems.some((problem) => problem.severity === 'error') ? 'error' : 'warning';
  const texts = problems.map((problem) => shortened(`${problem.rule}: ${problem.text}`, 300)).slice(0, 20).join('\n');
  nodes.push(draw('g', {class: 'mark ' + severity}, draw('title', {}, texts),
    draw('rect', {x: 0, y: top, width: 4, height: item.height}),
    draw('text', {x: TIMES_WIDTH - 10, y: top + ARROW_AT + 5}, severity === 'error' ? '●' : '▲')));
  return nodes;
}

/** What stands at the arrow: the leg's letter, method or status, what the body is, whether it repeats another one. */
function drawLabel(ladder, item, x) {
  const {call} = ladder;
  const {message, top} = item;
  const letter = letterOf(call, call.legOf.get(message.callId));
  const label = draw('text', {class: 'label', x, y: top + ARROW_AT - 6});
  if (letter !== '') label.append(draw('tspan', {class: 'leg'}, letter + ' '));
  label.append(draw('tspan', {class: 'first'}, nameOf(message)));
  if (message.first !== message.method) label.append(draw('tspan', {class: 'method'}, ' ' + shortened(message.method, 20)));
  if (message.body !== null) label.append(draw('tspan', {class: 'body ' + message.body}, '  ' + message.body));
  if (message.retransmission) label.append(draw('tspan', {class: 'method'}, '  again'));
  if (message.cut) label.append(draw('tspan', {class: 'method'}, '  cut'));
  return label;
}

function describe(call, message) {
  const [from, to] = message.path.map((place) => call.names[place] || call.participants[place]);
  const body = message.body === null ? '' : `, ${message.body} ${message.short || ''}`;
  const again = message.retransmission ? ', again' : '';
  return visible(`Message ${message.number}: ${nameOf(message)} from ${from} to ${to}${body}${again}`);
}

function drawMessage(ladder, item) {
  const {call} = ladder;
  const {message, top, height, index} = item;
  const [x1, x2] = message.path.map((place) => columnAt(ladder, place));
  const y = top + ARROW_AT;
  const left = Math.min(x1, x2) + 14;
  const problems = call.problemsOf.get(message.number) || [];
  const node = draw('g', {
    id: 'message-' + index, role: 'option', 'data-message': index, 'aria-label': describe(call, message),
    'aria-selected': String(view.selected === index),
    class: `message ${kindOf(message)}${message.retransmission ? ' again' : ''}${view.pinned === index ? ' pinned' : ''}`,
  },
  draw('rect', {class: 'hit', x: 0, y: top, width: ladder.width, height}),
  ...drawTimes(ladder, item, problems),
  ...drawArrow(x1, x2, y),
  drawLabel(ladder, item, x1 === x2 ? x1 + 90 : (x1 + x2) / 2));
  if (message.short !== null) {
    // At its arrow, or as far to the left as it needs to be.
    const short = shortened(message.short, Math.floor((ladder.width - TIMES_WIDTH) / SHORT_LETTER));
    const x = Math.max(TIMES_WIDTH, Math.min(left, ladder.width - 6 - short.length * SHORT_LETTER));
    node.append(draw('text', {class: 'short', x, y: y + 17}, draw('title', {}, visible(message.short)), short));
  }
  return node;
}

/** "session, 1 audio": the sections that a hop changed. */
const changedBy = (hop) => hop.diff.map((part) => visible(part.section)).join(', ');

function hopHasBody(call, hop) {
  return [hop.before, hop.after].some((number) => call.messages[call.indexOf.get(number)].short !== null);
}

function drawHop(ladder, {hop, index, top, bottom, column}) {
  const x = columnAt(ladder, column);
  const isChanged = hop.diff.length > 0;
  const isBody = hopHasBody(ladder.call, hop);
  const middle = (top + bottom) / 2;
  const title = isChanged ? `${hop.participant} changed: ${changedBy(hop)}`
    : `${hop.participant} passed this on${isBody ? ' without changing the body' : ''}`;
  return draw('g', {
    class: 'hop' + (isChanged ? ' changed' : ''), 'data-hop': index, role: 'button',
    'aria-label': title, 'aria-pressed': String(view.hop === index),
  },
  draw('title', {}, title),
  draw('path', {class: 'hop-hit', d: `M${x} ${top}V${bottom}`}),
  draw('path', {class: 'hop-line', d: `M${x} ${top + 3}V${bottom - 3}`}),
  isBody ? draw('circle', {cx: x, cy: middle, r: 9}) : null,
  isBody ? draw('text', {x, y: middle + 4}, isChanged ? 'Δ' : '=') : null);
}

/** What of a ladder is between two heights. */
function drawPart(ladder, {left, width, top, bottom}) {
  const svg = draw('svg', {
    class: 'ladder-part', width, height: bottom - top, viewBox: `${left} ${top} ${width} ${bottom - top}`, role: 'presentation',
  });
  const [first, end] = columnsBetween(ladder, left, left + width);
  for (let column = first; column < end; ++column) {
    const x = columnAt(ladder, column);
    svg.append(draw('path', {class: 'lifeline', d: `M${x} ${top}V${bottom}`}));
  }
  for (let place = itemAt(ladder, top); place >= 0 && place < ladder.items.length; ++place) {
    if (ladder.items[place].top >= bottom) break;
    svg.append(drawMessage(ladder, ladder.items[place]));
  }
  for (const hop of ladder.hops) {
    if (hop.top >= bottom) break;
    if (hop.bottom > top) svg.append(drawHop(ladder, hop));
  }
  return svg;
}
