// Ties the parts of the page together.

const selects = ['verdict', 'severity', 'rule', 'profile', 'cause'];
const mostOpenedForPrint = 20;
const packagesAtOnce = 250;

function fillSelect(id, all, options) {
  byId(id).append(element('option', {value: '', text: all}),
    ...options.map(([value, text]) => element('option', {value, text})));
}

function fillSelects() {
  const usedRules = new Set(report.kinds.map((kind) => report.rules[kind.rule].id));
  const causes = new Set(report.packages.map((item) => item.code).filter(Boolean));
  fillSelect('verdict', 'Any', verdictNames.map((name) => [name, verdictWords[name]]));
  fillSelect('severity', 'Any', [...severityNames].reverse().map((name) => [name, name]));
  fillSelect('rule', 'Any', [...usedRules].sort().map((id) => [id, id]));
  fillSelect('profile', 'Any', report.profiles.map((name) => [name, name]));
  fillSelect('cause', 'Any', [...causes].sort().map((code) => [code, causeWords[code] || code]));
  byId('profile-label').hidden = report.profiles.length < 2;
  byId('cause-label').hidden = causes.size === 0;
}

function showFilter() {
  for (const id of selects) {
    byId(id).value = filter[id];
  }
  if (byId('text').value !== filter.text) {
    byId('text').value = filter.text;
  }
  byId('clear').hidden = !isFiltered();
  markChosen();
}

function applyFilter() {
  table.shown = sorted(filteredPackages());
  table.page = 0;
  showFilter();
}

function filterChanged() {
  applyFilter();
  drawTable();
  showAddress(addressOfFilter());
}

function pointAt(item, finding) {
  const row = rowOf(item);
  const target = finding
    ? [...row.nextElementSibling.querySelectorAll('li')].find((one) => one.dataset.finding === finding)
    : row.querySelector('.opener');
  if (target) {
    target.classList.add('pointed');
    target.focus({preventScroll: true});
    (finding ? target : row).scrollIntoView({block: finding ? 'center' : 'start'});
  }
}

// A package that the filter hides is shown all the same: whoever was sent its address wants to see
// it.
function showItem(item, finding) {
  item.wanted = finding;
  if (!table.shown.includes(item)) {
    Object.assign(filter, emptyFilter);
    applyFilter();
  }
  bringUp(item);
  pointAt(item, finding);
}

function takeFilter(parameters) {
  for (const name of Object.keys(filter)) {
    filter[name] = parameters.get(name) || '';
  }
  const sort = parameters.get('sort') || defaultOrder.key;
  order.descending = sort.startsWith('-');
  order.key = order.descending ? sort.slice(1) : sort;
  if (!columns().some((column) => column.key === order.key)) {
    Object.assign(order, defaultOrder);
  }
}

function followAddress() {
  if (location.hash && !location.hash.includes('=')) {
    return;  // leads to a place on the page
  }
  const {parameters, finding, item, isLost} = readAddress();
  if (item) {
    showItem(item, finding);
    return;
  }
  takeFilter(parameters);
  applyFilter();
  drawTable();
  if (isLost) {
    byId('shown').textContent = 'The package or finding of this address is not on this page.';
  }
}

function listenToFilters() {
  for (const id of selects) {
    byId(id).addEventListener('change', () => {
      filter[id] = byId(id).value;
      filterChanged();
    });
  }
  byId('text').addEventListener('input', () => {
    filter.text = byId('text').value;
    filterChanged();
  });
  byId('clear').addEventListener('click', () => {
    Object.assign(filter, emptyFilter);
    filterChanged();
    byId('text').focus();
  });
}

function closeInnermost(event) {
  const opened = event.target.closest && event.target.closest('tr.opened');
  const row = opened ? opened.previousElementSibling : event.target.closest && event.target.closest('tr.package');
  const item = row && report.packages.find((one) => one.key === row.dataset.key);
  if (item && table.open.has(item.index)) {
    togglePackage(item);
  }
}

function listenToKeys() {
  document.addEventListener('keydown', (event) => {
    const isTyping = /^(INPUT|SELECT|TEXTAREA)$/.test(event.target.tagName);
    if (event.key === '/' && !isTyping && !event.ctrlKey && !event.metaKey && !event.altKey) {
      event.preventDefault();
      byId('text').focus();
    } else if (event.key === 'Escape' && !isTyping) {
      closeInnermost(event);
    }
  });
}

// Paper has no pages to turn and nothing to open: all rows are printed, and where they are few,
// with their findings and the explanations.
function listenToPrinter() {
  let before = null;
  window.addEventListener('beforeprint', () => {
    before = {open: new Set(table.open), page: table.page};
    table.isPrinted = true;
    if (table.shown.length <= mostOpenedForPrint) {
      table.shown.forEach((item) => table.open.add(item.index));
    }
    drawTable();
    document.querySelectorAll('details').forEach((one) => { one.open = true; });
    const left = table.shown.length - mostPrinted;
    byId('print-note').textContent = left > 0 ? `${counted(left, 'more package')} left out.` : '';
  });
  window.addEventListener('afterprint', () => {
    table.isPrinted = false;
    Object.assign(table, before);
    drawTable();
  });
}

// Makes ready what the filter on text looks at while nothing else is to be done.
function prepareText(from) {
  const soon = window.requestIdleCallback || ((call) => setTimeout(call, 50));
  soon(() => {
    const next = from + packagesAtOnce;
    report.packages.slice(from, next).forEach(haystackOf);
    if (next < report.packages.length) {
      prepareText(next);
    }
  });
}

function start() {
  byId('page').hidden = false;
  byId('keys').hidden = false;
  fillSelects();
  drawCharts();
  listenToFilters();
  listenToKeys();
  listenToPrinter();
  byId('previous').addEventListener('click', () => turnTo(table.page - 1));
  byId('next').addEventListener('click', () => turnTo(table.page + 1));
  window.addEventListener('hashchange', followAddress);
  // Whoever is sent the report on one package wants to see what is wrong with it.
  if (report.packages.length === 1) {
    table.open.add(0);
    document.body.classList.add('single');
  }
  applyFilter();
  followAddress();
  prepareText(0);
}

start();
