// Pictures of figures; under every one stands a table of the same figures.

// What is drawn of counters, in this order everywhere.
const traffic = [
  {key: 'rin', label: 'In', help: 'visitors that came'},
  {key: 'uin', label: 'Unique', help: 'of these, each visitor once'},
  {key: 'out', label: 'Out', help: 'visitors sent'},
  {key: 'clk', label: 'Clicks', help: 'clicks of visitors that came'},
];

const trafficColumns = traffic.map(({key, label, help}) =>
  ({title: label, help, kind: 'number', value: row => row[key]}));

function colour(name) {
  return getComputedStyle(document.documentElement).getPropertyValue('--' + name).trim();
}

const charts = new Set();

function paint(chart) {
  for (const set of chart.data.datasets) {
    set.backgroundColor = set.borderColor = colour(set.colourName);
  }
  for (const scale of Object.values(chart.options.scales)) {
    scale.ticks.color = colour('quiet');
    scale.grid.color = colour('line');
  }
  chart.options.plugins.legend.labels.color = colour('text');
  chart.update();
}

function repaint() {
  charts.forEach(paint);
}
matchMedia('(prefers-color-scheme: dark)').addEventListener('change', repaint);
// Paper is white: style.css has the light colours for it.
matchMedia('print').addEventListener('change', repaint);

function forgetCharts(within) {
  for (const chart of charts) {
    if (!within.contains(chart.canvas)) continue;
    chart.destroy();
    charts.delete(chart);
  }
}

// In and out as bars, unique and clicks as lines, by the rows' texts under label(row).
function drawChart(canvas, rows, label) {
  const datasets = traffic.map(({key, label: title}) => ({
    label: title, colourName: key, data: rows.map(row => row[key]),
    type: key === 'rin' || key === 'out' ? 'bar' : 'line',
    borderWidth: key === 'rin' || key === 'out' ? 0 : 2, pointRadius: 0, cubicInterpolationMode: 'monotone',
    order: key === 'rin' || key === 'out' ? 1 : 0,
  }));
  const chart = new Chart(canvas, {
    data: {labels: rows.map(label), datasets},
    options: {
      animation: false, maintainAspectRatio: false,
      interaction: {mode: 'index', intersect: false},
      scales: {x: {ticks: {maxRotation: 0}, grid: {display: false}},
        y: {beginAtZero: true, ticks: {precision: 0}, grid: {}}},
      plugins: {legend: {position: 'bottom', labels: {boxWidth: 12, boxHeight: 12,
        sort: (a, b) => a.datasetIndex - b.datasetIndex}}},
    },
  });
  charts.add(chart);
  paint(chart);
}

// A chart and its table. key: the rows' member with the time; label(row): the short form of it.
function figure(title, rows, key, label) {
  if (rows.length === 0) return el('p', {class: 'quiet'}, title + ': none.');
  const canvas = el('canvas', {role: 'img', 'aria-label': title + '; the table below has the figures'});
  const table = plainTable(title, [{title: key, value: row => row[key], head: true},
    ...trafficColumns], rows);
  // Chart.js measures the place it draws in, so the canvas has to stand in the page first.
  requestAnimationFrame(() => canvas.isConnected && drawChart(canvas, rows, label));
  return el('figure', {}, el('figcaption', {}, title), el('div', {class: 'chart'}, canvas),
    el('details', {}, el('summary', {}, 'Table'), table));
}

// The day of a trade as small lines: in, and out behind it. The last hour is not over yet.
function sparkline(all) {
  const hours = all.slice(0, -1);
  const width = 96, height = 22;
  const most = Math.max(1, ...hours.map(row => Math.max(row.rin, row.out)));
  const points = key => hours.map((row, i) =>
    `${i * width / (hours.length - 1)},${height - 1 - Math.max(0, row[key]) / most * (height - 2)}`).join(' ');
  const sum = key => hours.reduce((total, row) => total + row[key], 0);
  return svg('svg', {class: 'spark', viewBox: `0 0 ${width} ${height}`, role: 'img',
    'aria-label': `24 hours: ${sum('rin')} in, ${sum('out')} out`},
  svg('polyline', {class: 'out', points: points('out')}),
  svg('polyline', {class: 'rin', points: points('rin')}));
}
