// The table of all trades, and links to the page of one.

// All entries with their positions; the first trade with an id is the one the site means.
const entries = (view('trades').trades ?? []).map((trade, position) => ({...trade, position}));
const positionOf = new Map([...entries].reverse().map(({id, position}) => [id, position]));

function linkTo(position, name) {
  return el('a', {href: '#trade=' + position}, foreign(name === '' ? '(no name)' : name));
}

function tradeLink(id, name) {
  return positionOf.has(id) ? linkTo(positionOf.get(id), name) : foreign(name);
}

const spans = [['60', 'last 60 minutes'], ['24', 'last 24 hours'], ['07', 'last 7 days']];

function tradeColumns(span) {
  const counters = [['in', 'In'], ['uniq', 'Unique'], ['out', 'Out'], ['clk', 'Clicks']];
  return [
    {title: 'Trade', head: true, value: row => row.name, cell: row => linkTo(row.position, row.name)},
    ...counters.map(([key, title], i) =>
      ({title, kind: 'number', help: traffic[i].help, value: row => row[key + span]})),
    {title: 'Ratio', kind: 'number', value: row => row.ratio, cell: row => percent(row.ratio),
      help: 'out per in of the last 24 hours'},
    {title: 'Quality', kind: 'number', value: row => row.quality,
      help: 'points of an incoming hit of the last 24 hours; an ordinary one has 10'},
    {title: 'Proxies', kind: 'number', value: row => row.proxy, cell: row => percent(row.proxy),
      help: 'share of proxies in the incoming hits of the last 24 hours'},
    {title: '24 hours', cell: row => sparkline(tradeView(row.position).hours)},
  ];
}

function spanSwitch(draw) {
  return el('fieldset', {class: 'switch'}, el('legend', {}, 'Traffic of the'),
    spans.map(([span, text]) => el('label', {},
      el('input', {type: 'radio', name: 'span', value: span, checked: span === '24',
        onchange: () => draw(span, text)}), ' ', text)));
}

function notable(title, positions, say) {
  if (positions.length === 0) return null;
  return el('div', {class: 'card'}, el('h3', {}, title), el('ul', {}, positions.map(position => {
    const trade = entries[position];
    return el('li', {}, linkTo(position, trade.name), ' ', el('span', {class: 'quiet'}, say(trade)));
  })));
}

function tradesSection() {
  return viewSection('trades', 'Who sends and who is sent', view('trades'), ({last_run: last}) => {
    const place = el('div');
    const real = entries.filter(trade => trade.collects === '');
    const draw = (span, text) => place.replaceChildren(
      sortableTable(`Trades, ${text}`, tradeColumns(span), real,
        {sort: 'In', name: row => `${row.name} ${row.id}`}));
    draw(...spans[1]);
    const {worst_payers: payers, newcomers} = view('notable');
    return [
      el('p', {class: 'quiet'}, `${counted(real.length, 'trade')}, windows up to ${clean(last)}. A click on a name opens the trade.`),
      el('div', {class: 'cards'},
        notable('Worst payers of the day', payers,
          trade => `got ${number(trade.out24)}, sent ${number(trade.in24)}`),
        notable('Newcomers of the week', newcomers,
          trade => `sent ${number(trade.in24)}, got ${number(trade.out24)}`)),
      spanSwitch(draw),
      place,
    ];
  });
}
