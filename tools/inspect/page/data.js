// The views of the inspector, as its option --json prints them, packed. pack.h has the forms.
const data = JSON.parse(document.getElementById('data').textContent);

const digits = new Map([...'ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_']
  .map((digit, value) => [digit, value]));

function countsOf(text) {
  const counts = [];
  let count = 0;
  for (const digit of text) {
    const value = digits.get(digit);
    count = count * 32 + value % 32;
    if (value < 32) {
      counts.push(count);
      count = 0;
    }
  }
  return counts;
}

function objectOf(keys, values) {
  return Object.fromEntries(keys.map((key, i) => [key, values[i]]));
}

function unpackColumn(column) {
  if (typeof column === 'string') return countsOf(column);
  return Array.isArray(column) ? column.map(unpack) : data.pool[column];
}

function unpackTable(keys, columns) {
  const values = columns.map(unpackColumn);
  return values[0].map((_, row) => objectOf(keys, values.map(column => column[row])));
}

function unpackObject(keys, values) {
  const counts = values.length < keys.length;
  return objectOf(keys, counts ? countsOf(values[0]) : values.map(unpack));
}

function unpackForm(text, counts) {
  return text.split('\u0001').reduce((all, part, i) => all + counts[i - 1] + part);
}

function unpack(packed) {
  if (!Array.isArray(packed)) return packed;
  const [kind, ...items] = packed;
  if (items.length === 0) return typeof kind === 'string' ? countsOf(kind) : data.pool[kind];
  if (kind === 0) return items.map(unpack);
  if (typeof kind === 'string') return unpackForm(data.pool[items[0]], countsOf(kind));
  return kind > 0 ? unpackObject(data.shapes[kind], items) : unpackTable(data.shapes[-kind], items);
}

// The data of a view, or {unavailable: reason}.
const views = {};
function view(name) {
  return views[name] ??= unpack(data[name]);
}

// A trade by its position, as "vantrel-inspect trade" shows it. Not kept: there may be thousands.
function tradeView(position) {
  return unpack(data.trade[position]);
}

// Why a trade stands where it stands, as "vantrel-inspect why" says it; nothing without a list.
function whyView(position) {
  return data.why[position] && unpack(data.why[position]);
}

// One member of it, without looking at the rest.
function whyMember(position, key) {
  const why = data.why[position];
  return why && unpack(why[1 + data.shapes[why[0]].indexOf(key)]);
}
