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

function unpack(packed) {
  if (!Array.isArray(packed)) return packed;
  const [kind, ...items] = packed;
  if (items.length === 0) return typeof kind === 'string' ? countsOf(kind) : data.pool[kind];
  if (kind === 0) return items.map(unpack);
  return kind > 0 ? unpackObject(data.shapes[kind], items) : unpackTable(data.shapes[-kind], items);
}

// The data of a view, or {unavailable: reason}.
const views = {};
function view(name) {
  return views[name] ??= unpack(data[name]);
}

// Structures of a form; forms.h tells how.
const forms = [];
function formOf(number) {
  return forms[number] ??= unpack(data.forms[number]);
}

function unpackForm([number, digits, ...others]) {
  const counts = countsOf(digits).values();
  const rest = others.values();
  const count = () => counts.next().value;
  const filled = form => {
    if (form === null || form < 0) return form;
    if (form === true) return count() === 1;
    if (typeof form === 'string') return form.replace(/\u0001/g, count);
    if (Array.isArray(form)) return form.map(filled);
    if (typeof form === 'object') {
      return objectOf(Object.keys(form), Object.entries(form).map(([key, value]) =>
        filled(key === 'details' && typeof value === 'number' ? formOf(value) : value)));
    }
    if (form === 0) return count();
    return unpack(form === 1 ? rest.next().value : others[form - 2]);
  };
  return filled(formOf(number));
}

// A trade by its position, as "vantrel-inspect trade" shows it. Not kept: there may be thousands.
function tradeView(position) {
  return unpackForm(data.trade[position]);
}

// Why it stands where it stands, as "vantrel-inspect why" says it; nothing without a list.
function whyView(position) {
  return data.why[position] && unpackForm(data.why[position]);
}
