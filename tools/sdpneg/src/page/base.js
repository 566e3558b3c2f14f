// Elements, texts and times. Whatever comes from a capture goes into the page as a text node or as an attribute's value
// that nothing runs.

const byId = (id) => document.getElementById(id);

function fill(node, attributes, children) {
  for (const [name, value] of Object.entries(attributes || {})) {
    if (value === null || value === undefined || value === false) continue;
    if (typeof value === 'function') node.addEventListener(name, value);
    else node.setAttribute(name, value === true ? '' : value);
  }
  for (const child of children.flat()) {
    if (child !== null && child !== undefined) node.append(child);
  }
  return node;
}

/** An element; functions among its attributes listen to events of that name, texts become text nodes, null is nothing. */
const make = (name, attributes, ...children) => fill(document.createElement(name), attributes, children);

/** The same for what SVG draws. */
const draw = (name, attributes, ...children) =>
  fill(document.createElementNS('http://www.w3.org/2000/svg', name), attributes, children);

const button = (text, title, click) => make('button', {type: 'button', title, click}, text);

function replaceAll(node, children) {
  const fragment = document.createDocumentFragment();
  for (const child of children) fragment.append(child);
  node.replaceChildren(fragment);
}

// Control characters, and what changes the direction of writing or cannot be seen.
const HIDDEN = /[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff]/g;

/** A text in which characters that would not be seen are written out. */
const visible = (text) =>
  text.replace(HIDDEN, (c) => '\\u' + c.charCodeAt(0).toString(16).padStart(4, '0'));

/** A text of one line that takes no more room than so many characters. */
function shortened(text, most) {
  const line = visible(text.length > 4 * most ? text.slice(0, 4 * most) : text).replaceAll('\n', ' ');
  return line.length > most ? line.slice(0, Math.max(1, most - 1)) + '…' : line;
}

const plural = (count, one, many) => `${count.toLocaleString('en')} ${count === 1 ? one : many}`;

/** Microseconds since 1970, null where the time is not known. */
function microsOf(iso) {
  return iso === null ? null : Date.parse(iso.slice(0, 19) + 'Z') * 1000 + Number(iso.slice(20, 26));
}

/** "0.020", "75.300": seconds with milliseconds. */
const secondsOf = (micros) => (micros / 1e6).toFixed(3);

/** "0.8 s", "1:15", "2:00:07". */
function durationOf(micros) {
  if (micros < 60e6) return (micros / 1e6).toFixed(1) + ' s';
  const seconds = Math.floor(micros / 1e6);
  const two = (number) => String(number).padStart(2, '0');
  const minutes = Math.floor(seconds / 60);
  if (minutes < 60) return `${minutes}:${two(seconds % 60)}`;
  return `${Math.floor(minutes / 60)}:${two(minutes % 60)}:${two(seconds % 60)}`;
}

const dateOf = (iso) => (iso === null ? '' : iso.slice(0, 10));
const clockOf = (iso) => (iso === null ? '' : iso.slice(11, 23));

/** A URI without what all of them begin with. */
const shortUri = (uri) => (uri === null ? '' : uri.replace(/^sips?:/i, ''));

/** Calls a function once in the next frame, however often it was asked for. */
function eachFrame(work) {
  let isAsked = false;
  return () => {
    if (isAsked) return;
    isAsked = true;
    requestAnimationFrame(() => {
      isAsked = false;
      work();
    });
  };
}
