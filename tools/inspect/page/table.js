// Tables: sorted by a click on a column's title, filtered by name, a hundred rows at a time.
const rowsAtOnce = 100;

// A column: {title, value(row), cell(row) or nothing for the value, kind: 'number' or nothing,
// help}. Columns without a value cannot be sorted by.
function cellOf(column, row) {
  const content = column.cell ? column.cell(row)
    : column.kind === 'number' ? number(column.value(row)) : foreign(column.value(row));
  return el(column.head ? 'th' : 'td', {class: column.kind, scope: column.head && 'row'}, content);
}

function compare(a, b) {
  if (a == null || b == null) return (a != null) - (b != null);
  return typeof a === 'string' ? a.localeCompare(b) : a - b;
}

function sortedBy(rows, column, descending) {
  const keyed = rows.map((row, i) => [column.value(row), i, row]);
  const sign = descending ? -1 : 1;
  keyed.sort((a, b) => sign * compare(a[0], b[0]) || a[1] - b[1]);
  return keyed.map(entry => entry[2]);
}

// A plain table of a few rows.
function plainTable(caption, columns, rows) {
  return el('div', {class: 'scroll', tabindex: '0', role: 'region', 'aria-label': caption},
    el('table', {}, el('caption', {}, caption),
      el('thead', {}, el('tr', {}, columns.map(column =>
        el('th', {scope: 'col', class: column.kind, title: column.help}, column.title)))),
      el('tbody', {}, rows.map(row => el('tr', {}, columns.map(column => cellOf(column, row)))))));
}

// A table to sort. options: sort (title of the first order), name(row) for the filter.
function sortableTable(caption, columns, rows, options = {}) {
  const state = {shown: rowsAtOnce, rows, column: null, descending: false};
  const body = el('tbody');
  const more = el('button', {type: 'button', class: 'more', onclick: () => {
    state.shown += rowsAtOnce;
    draw();
  }});
  const filter = el('input', {type: 'search', placeholder: 'Filter by name or id',
    'aria-label': `Filter: ${caption}`, oninput: () => { state.shown = rowsAtOnce; arrange(); }});
  const heads = columns.map(column => el('th', {scope: 'col', class: column.kind, title: column.help},
    column.value ? el('button', {type: 'button', onclick: () => order(column)}, column.title)
      : column.title));

  function draw() {
    body.replaceChildren(...state.rows.slice(0, state.shown).map(row =>
      el('tr', {}, columns.map(column => cellOf(column, row)))));
    const rest = state.rows.length - state.shown;
    more.hidden = rest <= 0;
    more.textContent = `Show more (${number(rest)} left)`;
  }

  function arrange() {
    const wanted = filter.value.trim().toLowerCase();
    const fitting = wanted === '' ? rows
      : rows.filter(row => options.name(row).toLowerCase().includes(wanted));
    state.rows = state.column ? sortedBy(fitting, state.column, state.descending) : fitting;
    draw();
  }

  // Of numbers one wants to see the largest first.
  function order(column) {
    state.descending = column === state.column ? !state.descending : column.kind === 'number';
    state.column = column;
    columns.forEach((each, i) => each === column
      ? heads[i].setAttribute('aria-sort', state.descending ? 'descending' : 'ascending')
      : heads[i].removeAttribute('aria-sort'));
    arrange();
  }

  const first = columns.find(column => column.title === options.sort);
  first ? order(first) : draw();
  return el('div', {class: 'sortable'},
    options.name && rows.length > 10 ? filter : null,
    el('div', {class: 'scroll', tabindex: '0', role: 'region', 'aria-label': caption},
      el('table', {}, el('caption', {}, caption), el('thead', {}, el('tr', {}, heads)), body)),
    more);
}
