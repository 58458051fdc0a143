// The page of one trade.

const counterWords = {
  rin: 'incoming hits', uin: 'unique visitors in', out: 'visitors sent', clk: 'clicks of its visitors',
  ctt: 'of these, to trades', ctg: 'of these, to the gallery', cef: 'of these, within the limit',
  rec: 'returned visitors', proxy_in: 'incoming through proxies', proxy_out: 'sent through proxies',
  proxy_clk: 'clicks through proxies', rti: 'quality of incoming', rto: 'quality of sent',
  rtc: 'quality of clicks',
};

function countersTable(trade) {
  const rows = Object.keys(trade.last24).map(key => ({key, words: counterWords[key],
    hour: trade.last60[key], day: trade.last24[key], week: trade.last07[key]}));
  return plainTable('Counters', [
    {title: 'Counter', head: true, value: row => row.key},
    {title: 'What it counts', value: row => row.words},
    {title: '60 minutes', kind: 'number', value: row => row.hour},
    {title: '24 hours', kind: 'number', value: row => row.day},
    {title: '7 days', kind: 'number', value: row => row.week},
  ], rows);
}

function settingText(value) {
  if (Array.isArray(value)) return value.every(one => one === value[0]) ? `${value[0]} in every hour` : value.join(', ');
  if (value === null) return 'none';
  if (typeof value === 'object') {
    return Object.entries(value).map(([key, one]) => `${key.replaceAll('_', ' ')} ${one ?? 'none'}`).join(', ');
  }
  return String(value);
}

function settingsTable(settings) {
  const rows = Object.entries(settings).map(([key, value]) => ({key: key.replaceAll('_', ' '), text: settingText(value)}));
  return plainTable('Settings', [{title: 'Setting', head: true, value: row => row.key},
    {title: 'Value', value: row => row.text}], rows);
}

function dayText(date) {
  return clean(date).replace(/^(\d{4})(\d\d)(\d\d)$/, '$1-$2-$3');
}

function drawTrade(place, position) {
  const trade = tradeView(position);
  const days = trade.days.map(day => ({...day, date: dayText(day.date)}));
  place.replaceChildren(
    el('p', {}, el('a', {href: '#trades'}, '← All trades')),
    el('h2', {tabindex: '-1'}, foreign(trade.name === '' ? '(no name)' : trade.name)),
    el('p', {class: 'quiet'}, `id ${number(trade.id)}, windows up to ${clean(trade.last_run)}`,
      trade.collects === '' ? '' : `; reserved entry: ${trade.collects}`,
      trade.settings.url === '' ? '' : [' · ', foreign(trade.settings.url)]),
    section('trade-counters', 'Its counters', countersTable(trade)),
    section('trade-day', 'Its day', figure('The last 24 hours', trade.hours, 'hour', row => row.hour.slice(11))),
    section('trade-days', 'Its 14 days', figure('Daily history', days, 'date', row => row.date.slice(5))),
    section('trade-settings', 'Its settings', settingsTable(trade.settings)));
}
