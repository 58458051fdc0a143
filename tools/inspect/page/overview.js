// The sections in the order in which a webmaster asks.

function badge(kind, text) {
  return el('span', {class: 'badge ' + kind}, text);
}

const severities = {ok: 'good', note: 'good', warning: 'warn', fatal: 'bad'};

function checkSection() {
  return viewSection('check', 'Is all well?', view('check'), check => {
    const finding = one => el('li', {class: severities[one.severity]},
      badge(severities[one.severity], one.severity), ' ', el('b', {}, foreign(one.subject)), ': ',
      foreign(one.finding),
      one.remedy === '' ? null : el('div', {class: 'remedy'}, 'What to do: ', foreign(one.remedy)));
    const fine = check.findings.filter(one => one.severity === 'ok');
    const off = check.findings.filter(one => one.severity !== 'ok')
      .sort((a, b) => (b.severity === 'fatal') - (a.severity === 'fatal'));
    return [
      el('p', {class: 'verdict ' + ['good', 'warn', 'bad'][check.status]}, check.verdict),
      off.length > 0 ? el('ul', {class: 'findings'}, off.map(finding)) : null,
      el('details', {}, el('summary', {}, counted(fine.length, 'thing') + ' found in order'),
        el('ul', {class: 'findings'}, fine.map(finding))),
      check.checked_as_root
        ? el('p', {class: 'quiet'}, 'Permissions were looked at as root, not as the user of the run.') : null,
    ];
  });
}

function shareBar(share) {
  return svg('svg', {class: 'share', viewBox: '0 0 100 10', preserveAspectRatio: 'none', 'aria-hidden': 'true'},
    svg('rect', {width: Math.max(0, Math.min(100, share)), height: 10}));
}

function listSection() {
  return viewSection('list', 'Where visitors go', view('list'), list => {
    const columns = [
      {title: 'Rank', kind: 'number', value: row => row.rank},
      {title: 'Trade', head: true, value: row => row.name, cell: row => tradeLink(row.id, row.name)},
      {title: 'Share', kind: 'number', value: row => row.share_percent,
        cell: row => [shareBar(row.share_percent), el('span', {class: 'figure'}, percent(row.share_percent))]},
      {title: 'Score', kind: 'number', value: row => row.score},
      {title: 'Weight', kind: 'number', value: row => row.weight},
      {title: 'Second', kind: 'number', value: row => row.second_weight,
        help: 'weight among the trades without a weight'},
      {title: 'State', value: row => row.state},
      {title: 'Skim', kind: 'number', value: row => row.skim},
      {title: 'Why', value: row => row.reason ?? '–'},
    ];
    return [
      el('p', {class: 'quiet'}, `The outgoing list of ${clean(list.written)}, ${counted(list.entries.length, 'trade')}.`,
        list.stray_bytes ? ' The file ends inside an entry.' : ''),
      sortableTable('Outgoing list', columns, list.entries,
        {name: row => `${row.name} ${row.id}`}),
    ];
  });
}

// Events that mean the same, newest first.
function groupedEvents(events) {
  const groups = new Map();
  for (const event of events) {
    const key = JSON.stringify([event.source, event.code, event.level, event.meaning || event.subject]);
    const group = groups.get(key) ?? {...event, count: 0, subjects: new Set()};
    groups.delete(key);
    groups.set(key, group);
    group.count += event.times;
    group.time = event.time;
    group.subjects.add(event.subject);
  }
  return [...groups.values()].reverse();
}

function eventItem(group) {
  const named = [...group.subjects].slice(0, 5);
  const more = group.subjects.size - named.length;
  const ended = group.level === '1';
  const when = group.count === 1 ? clean(group.time)
    : `${number(group.count)} times, ${clean(group.first)} to ${clean(group.time)}`;
  return el('li', {class: ended ? 'bad' : 'warn'},
    badge(ended ? 'bad' : 'warn', group.consequence || clean(group.source)), ' ',
    el('b', {}, group.meaning === '' ? [foreign(group.subject), ` (code ${clean(group.code)})`] : foreign(group.meaning)),
    el('div', {class: 'quiet'}, when, ' · ',
      named.map((subject, i) => [i > 0 ? ', ' : '', foreign(subject === '' ? 'gap' : subject)]),
      more > 0 ? ` and ${number(more)} more` : ''),
    group.remedy === '' ? null : el('div', {class: 'remedy'}, 'What to do: ', foreign(group.remedy)));
}

function eventsSection() {
  return viewSection('events', 'Recent events', view('events'), ({events, more}) => events.length === 0
    ? [el('p', {}, 'The event log is empty.')]
    : [el('ul', {class: 'findings'}, groupedEvents(events).map(eventItem)),
      more > 0 ? el('p', {class: 'quiet'}, `${number(more)} other events before these.`) : null]);
}

function runsSection() {
  return viewSection('runs', 'Runs', view('runs'), ({stretches, unreadable_lines: unreadable}) => {
    const gaps = stretches.map((stretch, i) => ({...stretch, before: stretches[i - 1]?.last}))
      .filter(stretch => stretch.minutes_missed_before !== 0).reverse();
    const last = stretches[stretches.length - 1];
    return [
      el('p', {}, last == null ? 'No run has been recorded.'
        : gaps.length === 0 ? `Every minute from ${clean(last.first)} to ${clean(last.last)} had its run.`
          : `The last ${counted(last.runs, 'run')} followed one another without a gap, from ${clean(last.first)} to ${clean(last.last)}.`),
      gaps.length > 0 ? sortableTable('Gaps', [
        {title: 'Last run before', value: row => row.before ?? ''},
        {title: 'Next run', value: row => row.first, head: true},
        {title: 'Minutes without a run', kind: 'number', value: row => row.minutes_missed_before,
          cell: row => row.minutes_missed_before ?? 'the clock went back'},
      ], gaps) : null,
      unreadable > 0 ? el('p', {class: 'warn'}, `${counted(unreadable, 'line')} of the run history are no run stamps.`) : null,
    ];
  });
}
