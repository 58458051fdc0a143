// Everything a site says goes into the page as text, never as markup.

// Controls and characters that turn, join or hide text become a visible sign.
function clean(text) {
  return String(text).replace(/[\p{Cc}\p{Cf}\p{Zl}\p{Zp}\p{Cs}\p{Co}]/gu, '\ufffd');
}

// el('td', {class: 'number'}, 'text', el('b', {}, 'more')): attributes that are false are left out.
function el(tag, attributes = {}, ...children) {
  return fill(document.createElement(tag), attributes, children);
}

function svg(tag, attributes = {}, ...children) {
  return fill(document.createElementNS('http://www.w3.org/2000/svg', tag), attributes, children);
}

function fill(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) element.addEventListener(name.slice(2), value);
    else if (value !== false && value != null) element.setAttribute(name, value === true ? '' : value);
  }
  element.append(...children.flat().filter(child => child != null));
  return element;
}

// A text of the site: its direction does not reach beyond it.
function foreign(text) {
  return el('bdi', {}, clean(text));
}

const numbers = new Intl.NumberFormat('en', {maximumFractionDigits: 2});
function number(value) {
  return value == null ? '–' : typeof value === 'number' ? numbers.format(value) : clean(value);
}

function percent(value) {
  return value == null ? '–' : number(value) + '\u202f%';
}

function counted(count, noun) {
  return `${number(count)} ${noun}${count === 1 ? '' : 's'}`;
}

function section(id, title, ...children) {
  return el('section', {id, 'aria-labelledby': id + '-title'},
    el('h2', {id: id + '-title'}, title), ...children.filter(child => child != null));
}

// The section of a view: what draws it, or why it is not there.
function viewSection(id, title, data, draw) {
  const children = data.unavailable == null ? draw(data)
    : [el('p', {class: 'card bad'}, 'Not available: ', foreign(data.unavailable))];
  return section(id, title, ...children);
}
