// What differs between two texts, line by line.

// Of the table of lengths; texts that would take more are told apart as a whole.
const MOST_PAIRS = 4e6;

function linesOf(text) {
  const lines = text.split('\n').map((line) => (line.endsWith('\r') ? line.slice(0, -1) : line));
  if (lines[lines.length - 1] === '') lines.pop();
  return lines;
}

/** For each pair of lines how many the rest of both have in common, a row after the other. */
function commonLengths(before, after) {
  const width = after.length + 1;
  const lengths = new Uint32Array((before.length + 1) * width);
  for (let i = before.length - 1; i >= 0; --i) {
    for (let j = after.length - 1; j >= 0; --j) {
      lengths[i * width + j] = before[i] === after[j]
        ? lengths[(i + 1) * width + j + 1] + 1
        : Math.max(lengths[(i + 1) * width + j], lengths[i * width + j + 1]);
    }
  }
  return lengths;
}

function middleDiff(before, after) {
  const width = after.length + 1;
  if ((before.length + 1) * width > MOST_PAIRS) {
    return [...before.map((line) => ['-', line]), ...after.map((line) => ['+', line])];
  }
  const lengths = commonLengths(before, after);
  const rows = [];
  let i = 0;
  let j = 0;
  while (i < before.length || j < after.length) {
    if (i < before.length && j < after.length && before[i] === after[j]) {
      rows.push([' ', before[i]]);
      ++i;
      ++j;
    } else if (j === after.length || (i < before.length && lengths[(i + 1) * width + j] >= lengths[i * width + j + 1])) {
      rows.push(['-', before[i++]]);
    } else {
      rows.push(['+', after[j++]]);
    }
  }
  return rows;
}

/** Pairs of " ", "-" or "+" and a line. */
function diffOf(before, after) {
  const [old, now] = [linesOf(before), linesOf(after)];
  const shorter = Math.min(old.length, now.length);
  let head = 0;
  while (head < shorter && old[head] === now[head]) ++head;
  let tail = 0;
  while (tail < shorter - head && old[old.length - 1 - tail] === now[now.length - 1 - tail]) ++tail;
  const same = (line) => [' ', line];
  return [
    ...old.slice(0, head).map(same),
    ...middleDiff(old.slice(head, old.length - tail), now.slice(head, now.length - tail)),
    ...old.slice(old.length - tail).map(same),
  ];
}

/** For lines that stand in each other's place: what both begin and end with. Shared by a pair of rows. */
function markEdits(rows) {
  const edits = new Map();
  for (let i = 0; i < rows.length; ++i) {
    if (rows[i][0] !== '-') continue;
    let gone = i;
    while (gone < rows.length && rows[gone][0] === '-') ++gone;
    let come = gone;
    while (come < rows.length && rows[come][0] === '+') ++come;
    for (let k = 0; i + k < gone && gone + k < come; ++k) {
      const ends = commonEnds(rows[i + k][1], rows[gone + k][1]);
      if (ends === null) continue;
      edits.set(i + k, ends);
      edits.set(gone + k, ends);
    }
    i = come - 1;
  }
  return edits;
}

const WORD = /[\w.+-]/;

function commonEnds(a, b) {
  const shorter = Math.min(a.length, b.length, 2000);
  let head = 0;
  while (head < shorter && a[head] === b[head]) ++head;
  let tail = 0;
  while (tail < shorter - head && a[a.length - 1 - tail] === b[b.length - 1 - tail]) ++tail;
  // Whole words are told apart: numbers and names are read as such.
  const isInside = (text, place) => place > 0 && place < text.length && WORD.test(text[place - 1]) && WORD.test(text[place]);
  while (head > 0 && (isInside(a, head) || isInside(b, head))) --head;
  while (tail > 0 && (isInside(a, a.length - tail) || isInside(b, b.length - tail))) --tail;
  return head + tail < 3 ? null : {head, tail};
}
