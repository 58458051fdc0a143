// The page of one trade.

function countersTable(trade) {
  const rows = Object.keys(trade.last24).map(key => ({key, words: view('counters')[key],
    hour: trade.last60[key], day: trade.last24[key], week: trade.last07[key]}));
  return plainTable('Counters', [
    {title: 'Counter', head: true, value: row => row.key},
    {title: 'What it counts', value: row => row.words},
    {title: '60 minutes', kind: 'number', value: row => row.hour},
    {title: '24 hours', kind: 'number', value: row => row.day},
    {title: '7 days', kind: 'number', value: row => row.week},
  ], rows);
}

function drawTrade(place, position) {
  const trade = tradeView(position);
  place.replaceChildren(
    el('p', {}, el('a', {href: '#trades'}, '← All trades')),
    el('h2', {tabindex: '-1'}, foreign(trade.name === '' ? '(no name)' : trade.name)),
    el('p', {class: 'quiet'}, `id ${number(trade.id)}, windows up to ${clean(view('trades').last_run)}`,
      trade.collects === '' ? '' : `; reserved entry: ${trade.collects}`,
      trade.settings.url === '' ? '' : [' · ', foreign(trade.settings.url)]),
    section('trade-counters', 'Its counters', countersTable(trade)),
    section('trade-day', 'Its day', figure('The last 24 hours', trade.hours, 'hour', row => row.hour.slice(11))),
    section('trade-days', 'Its 14 days', figure('Daily history', trade.days, 'date', row => row.date.slice(5))),
    section('trade-settings', 'Its settings', plainTable('What they mean', [
      {title: 'Setting', head: true, value: row => row.setting},
      {title: 'Meaning', value: row => row.meaning}], trade.words)));
}
