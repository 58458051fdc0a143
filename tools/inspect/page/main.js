// The overview, or the page of a trade where the address ends in #trade=POSITION.

const overview = document.getElementById('overview');
const tradePlace = document.getElementById('trade');
let leftAt = 0;

function drawOverview() {
  document.title = `Site report: ${clean(data.directory)}`;
  document.getElementById('directory').append(foreign(data.directory));
  document.getElementById('made').append(`Page made ${clean(data.made)}, times are those of the site`);
  const sections = {Check: checkSection(), Site: siteSection(), List: listSection(), Trades: tradesSection(),
    Events: eventsSection(), Runs: runsSection()};
  document.getElementById('nav').append(...Object.entries(sections).map(([name, {id}]) =>
    el('a', {href: '#' + id}, name)));
  overview.append(...Object.values(sections));
}

function showTrade(position) {
  if (!overview.hidden) leftAt = scrollY;
  forgetCharts(tradePlace);
  drawTrade(tradePlace, position);
  overview.hidden = true;
  tradePlace.hidden = false;
  scrollTo(0, 0);
  tradePlace.querySelector('h2').focus();
}

// Back from a trade one is where one was; other addresses lead to their section.
function showOverview() {
  const id = location.hash.slice(1);
  const back = overview.hidden && ['', 'trades'].includes(id);
  forgetCharts(tradePlace);
  tradePlace.replaceChildren();
  tradePlace.hidden = true;
  overview.hidden = false;
  back ? scrollTo(0, leftAt) : document.getElementById(id)?.scrollIntoView();
}

function follow() {
  const position = Number(/^#trade=(\d+)$/.exec(location.hash)?.[1] ?? -1);
  data.trade[position] ? showTrade(position) : showOverview();
}

drawOverview();
addEventListener('hashchange', follow);
addEventListener('keydown', event => {
  if (event.key === 'Escape' && !tradePlace.hidden) location.hash = '#trades';
});
follow();
// For the browser's console. Usable is a page that has been painted.
window.report = {view, tradeView, whyView};
requestAnimationFrame(() => setTimeout(() => { window.report.usableAfter = performance.now(); }));
