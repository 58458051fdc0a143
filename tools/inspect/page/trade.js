// The page of one trade.

function countersTable(trade) {
  const windows = [['60 minutes', 'last60'], ['24 hours', 'last24'], ['7 days', 'last07']];
  return plainTable('Counters', [
    {title: 'Counter', head: true, cell: key => [view('counters')[key], ' ', el('span', {class: 'quiet'}, key)]},
    ...windows.map(([title, window]) => ({title, kind: 'number', value: key => trade[window][key]})),
  ], Object.keys(trade.last24));
}

// A step of the way to the weight: what came out and what it is; what went in can be opened.
function whyStep({value, description, details}) {
  const said = typeof value === 'boolean' ? (value ? 'yes' : 'no') : typeof value === 'string' ? foreign(value) : number(value);
  const words = [el('b', {}, said), ' ', foreign(description)];
  return el('li', {}, details.length === 0 ? words
    : el('details', {}, el('summary', {}, words), el('ul', {class: 'why'}, details.map(whyStep))));
}

function whySection(position) {
  const why = whyView(position);
  if (why == null) return null;
  return section('trade-why', 'Why it stands where it stands', el('p', {}, foreign(why.sentence)),
    el('ul', {class: 'why'}, why.tree.details.map(whyStep)));
}

function drawTrade(place, position) {
  const trade = tradeView(position);
  place.replaceChildren(
    el('p', {}, el('a', {href: '#trades'}, '← All trades')),
    el('h2', {tabindex: '-1'}, foreign(trade.name === '' ? '(no name)' : trade.name)),
    el('p', {class: 'quiet'}, `id ${number(trade.id)}, windows up to ${clean(view('trades').last_run)}`,
      trade.collects === '' ? '' : `; reserved entry: ${trade.collects}`),
    whySection(position) ?? '',
    section('trade-counters', 'Its counters', countersTable(trade)),
    section('trade-day', 'Its day', figure('The last 24 hours', trade.hours, 'hour', row => row.hour.slice(11))),
    section('trade-days', 'Its 14 days', figure('Daily history', trade.days, 'date', row => row.date.slice(5))),
    section('trade-settings', 'Its settings', plainTable('What they mean', [
      {title: 'Setting', head: true, value: row => row.setting},
      {title: 'Meaning', value: row => row.meaning}], trade.words)));
}
