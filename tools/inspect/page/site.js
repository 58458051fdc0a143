// The site as a whole: today against the days before, the last hours, the last days.

function tile(title, value, notes) {
  return el('div', {class: 'tile'}, el('div', {class: 'quiet'}, title), el('strong', {}, value),
    notes.map(note => el('div', {class: 'quiet'}, note)));
}

function todayTiles({today, yesterday, week_before: week}) {
  return el('div', {class: 'tiles'}, traffic.map(({key, label}) => tile(label, number(today[key]), [
    `yesterday ${number(yesterday?.[key])}`, `a week before ${number(week?.[key])}`])));
}

function periodsTable(site) {
  const dated = (name, day) => day && {name: `${name}, ${day.date}${day.until ? ` until ${day.until}` : ''}`, ...day};
  const rows = [
    {name: '60 minutes', ...site.last60}, {name: '24 hours', ...site.last24}, {name: '7 days', ...site.last07},
    dated('Today', site.today), dated('Yesterday', site.yesterday), dated('The same day last week', site.week_before),
    site.last30 && {name: counted(site.last30.days, 'day') + ' recorded', ...site.last30},
  ].filter(row => row);
  return plainTable('Periods', [
    {title: 'Period', head: true, value: row => row.name},
    ...trafficColumns,
    {title: 'Ratio', kind: 'number', help: 'out per in', value: row => row.out_per_in, cell: row => percent(row.out_per_in)},
    {title: 'Quality', kind: 'number', help: 'points of an incoming hit; an ordinary one has 10', value: row => row.quality_in},
    {title: 'of out', kind: 'number', help: 'points of a visitor sent', value: row => row.quality_out},
    {title: 'Proxies', kind: 'number', help: 'share of proxies in the incoming hits',
      value: row => row.proxy_in_share, cell: row => percent(row.proxy_in_share)},
  ], rows);
}

function reservedTable({last24}) {
  return plainTable('What no named trade is credited with, of 24 hours', [
    {title: 'Entry', head: true, value: row => row.name, cell: row => linkTo(row.position, row.name)},
    {title: 'Collects', value: row => row.collects},
    ...[['In', 'rin', 'share_in'], ['Clicks', 'clk', 'share_clk'], ['Out', 'out', 'share_out']].flatMap(([title, key, share]) => [
      {title, kind: 'number', value: row => row[key]},
      {title: 'Share', kind: 'number', value: row => row[share], cell: row => percent(row[share])}]),
  ], last24.entries);
}

function siteSection() {
  return viewSection('site', 'The site today', view('site'), site => [
    site.today ? [el('p', {class: 'quiet'}, `${clean(site.today.date)} until ${clean(site.today.until)}`), todayTiles(site)] : null,
    site.stale ? el('p', {class: 'verdict warn'}, `The figures are of ${clean(site.stored ?? site.last_run)}: no run has stored anything since.`) : null,
    figure('The last 24 hours', site.hours, 'hour', row => row.hour.slice(11)),
    figure(`The last ${counted(site.days.length, 'day')}`, site.days, 'date', row => row.date.slice(5)),
    el('details', {}, el('summary', {}, 'Periods, quality, and traffic of no trade'), periodsTable(site), reservedTable(site.reserved)),
  ].flat());
}
