// The table of packages, a page of it at a time.

const rowsOfAPage = 50;
const mostPrinted = 2000;
const table = {shown: [], page: 0, open: new Set(), isPrinted: false};

function columns() {
  const profiles = report.profiles.length < 2 ? [] : report.profiles.map((name, at) =>
    ({key: `profile-${at}`, title: name, profile: at, class: 'profile'}));
  return [
    {key: 'verdict', title: 'Verdict', class: 'verdict'},
    {key: 'name', title: 'Package', class: 'name'},
    ...profiles,
    {key: 'errors', title: 'Errors', class: 'count', isDescendingFirst: true},
    {key: 'warnings', title: 'Warnings', class: 'count optional', isDescendingFirst: true},
    // Beside the columns of several profiles there is no room for it.
    ...(profiles.length ? [] : [{key: null, title: 'First of all', class: 'chief optional'}]),
  ];
}

function sortBy(column) {
  const again = order.key === column.key;
  order.descending = again ? !order.descending : Boolean(column.isDescendingFirst);
  order.key = column.key;
  filterChanged();
}

function headCell(column) {
  if (column.key === null) {
    return element('th', {scope: 'col', class: column.class, text: column.title});
  }
  const isSorted = order.key === column.key;
  const direction = order.descending ? 'descending' : 'ascending';
  return element('th', {scope: 'col', class: column.class, 'aria-sort': isSorted ? direction : 'none'},
    element('button', {type: 'button', onclick: () => {
      sortBy(column);
      byId('table').querySelectorAll('thead th')[columns().findIndex((one) => one.key === column.key)]
        .firstChild.focus();
    }}, element('span', {text: column.title}),
    element('span', {class: 'arrow', 'aria-hidden': 'true',
      text: isSorted ? (order.descending ? '↓' : '↑') : ''})));
}

function pill(verdict) {
  return element('span', {class: `pill ${verdict}`}, icon(verdict),
    element('span', {text: verdictWords[verdict]}));
}

function profileCell(item, column) {
  const verdict = verdictUnder(item, column.profile);
  const cell = element('td', {class: column.class});
  if (verdict) {
    const errors = item.cause ? [0, 0, 0, 0] : tally(item, column.profile);
    const count = errors[2] + errors[3];
    cell.append(element('span', {class: `mark ${verdict}`, title: `${column.title}: ${verdictWords[verdict]}`},
      icon(verdict), element('span', {class: 'unseen', text: verdictWords[verdict]}),
      count > 0 && element('span', {text: ` ${number(count)}`})));
  }
  return cell;
}

// The rule to look at first: one that nothing excuses, or the most severe.
function chiefKind(item) {
  let chief = null;
  eachFinding(item, (at) => {
    const kind = report.kinds[at];
    const rank = (one) => (isGrave(one) ? severityNames.length : 0) + one.severity;
    if (kind.standing === counts && (chief === null || rank(kind) > rank(chief))) {
      chief = kind;
    }
  });
  return chief;
}

function chiefCell(item, column) {
  if (item.cause) {
    return element('td', {class: `${column.class} cause`}, foreign(item.cause));
  }
  const chief = chiefKind(item);
  return element('td', {class: column.class}, chief && foreign(report.rules[chief.rule].id));
}

function nameCell(item, column) {
  const isOpen = table.open.has(item.index);
  return element('th', {scope: 'row', class: column.class},
    element('button', {type: 'button', class: 'opener', 'aria-expanded': String(isOpen),
      onclick: () => togglePackage(item)},
      element('span', {class: 'chevron', 'aria-hidden': 'true'}),
      foreign(item.title, {class: 'title'})),
    element('div', {class: 'below'},
      element('span', {class: 'edition', text: editionOf(item)}),
      item.name && foreign(item.path || '', {class: 'path'}),
      item.cause && report.profiles.length > 1 && foreign(item.cause, {class: 'cause'})));
}

function countCell(item, column) {
  const count = item[column.key];
  return element('td', {class: column.class + (count ? '' : ' none'),
    text: item.cause ? '–' : number(count)});
}

function cellOf(item, column) {
  if (column.key === 'verdict') {
    return element('td', {class: column.class}, pill(shownVerdict(item)));
  }
  if (column.key === 'name') {
    return nameCell(item, column);
  }
  if (column.profile !== undefined) {
    return profileCell(item, column);
  }
  return column.key === null ? chiefCell(item, column) : countCell(item, column);
}

function rowsOf(item, all) {
  const row = element('tr', {class: `package ${shownVerdict(item)}`, 'data-key': item.key},
    ...all.map((column) => cellOf(item, column)));
  if (!table.open.has(item.index)) {
    return [row];
  }
  return [row, element('tr', {class: 'opened'},
    element('td', {colspan: String(all.length)}, packageDetails(item)))];
}

function pageCount() {
  return Math.max(Math.ceil(table.shown.length / rowsOfAPage), 1);
}

function rowsToDraw() {
  const first = table.page * rowsOfAPage;
  return table.isPrinted ? table.shown.slice(0, mostPrinted)
                         : table.shown.slice(first, first + rowsOfAPage);
}

function drawPlace() {
  const all = report.packages.length;
  byId('shown').textContent = isFiltered()
    ? `${number(table.shown.length)} of ${counted(all, 'package')}`
    : counted(all, 'package');
  document.querySelector('.pages').hidden = pageCount() < 2;
  byId('place').textContent = `Page ${number(table.page + 1)} of ${number(pageCount())}`;
  byId('previous').disabled = table.page === 0;
  byId('next').disabled = table.page + 1 >= pageCount();
}

function drawTable() {
  const all = columns();
  byId('table').tHead.replaceChildren(element('tr', {}, ...all.map(headCell)));
  const rows = rowsToDraw().flatMap((item) => rowsOf(item, all));
  const none = element('tr', {}, element('td', {class: 'nothing', colspan: String(all.length),
    text: report.packages.length ? 'No package is like that.' : 'The run had no packages.'}));
  byId('table').tBodies[0].replaceChildren(...(rows.length ? rows : [none]));
  drawPlace();
}

function rowOf(item) {
  return [...byId('table').tBodies[0].rows].find((row) => row.dataset.key === item.key);
}

// Draws the one package anew where it stands.
function redraw(item) {
  const row = rowOf(item);
  if (row.nextElementSibling && row.nextElementSibling.className === 'opened') {
    row.nextElementSibling.remove();
  }
  row.replaceWith(...rowsOf(item, columns()));
}

function togglePackage(item) {
  const isOpen = table.open.delete(item.index);
  if (!isOpen) {
    table.open.add(item.index);
  }
  showAddress(isOpen ? addressOfFilter() : packageAddress(item));
  redraw(item);
  rowOf(item).querySelector('.opener').focus();
}

function turnTo(page) {
  table.page = page;
  drawTable();
  byId('packages').scrollIntoView();
}

// Turns to the page of the package and opens it there.
function bringUp(item) {
  table.open.add(item.index);
  const at = table.shown.indexOf(item);
  table.page = Math.floor(at / rowsOfAPage);
  drawTable();
}
