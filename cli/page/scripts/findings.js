// A package opened: its findings in groups, with what their rules ask for.

const firstFindings = 25;
const neverExcused = -1;

// Chapters as the catalogue has them, with what nothing excuses ahead of all. A rule that the
// catalogue does not know comes last.
function chapterOf(kind) {
  const chapter = report.rules[kind.rule].chapter;
  return isGrave(kind) ? neverExcused : chapter === undefined ? report.chapters.length : chapter;
}

function chapterTitle(chapter) {
  return chapter === neverExcused ? 'Never excused' : report.chapters[chapter] || 'Other rules';
}

// [{chapter, rules: [{rule, severity, findings}]}], all in the order of the catalogue.
function groupsOf(item) {
  const names = findingNames(item);
  const rules = new Map();
  eachFinding(item, (at, subject, place) => {
    const kind = report.kinds[at];
    const chapter = chapterOf(kind);
    const id = `${chapter} ${kind.rule}`;
    if (!rules.has(id)) {
      rules.set(id, {chapter, rule: report.rules[kind.rule], severity: kind.severity, findings: []});
    }
    const group = rules.get(id);
    group.severity = Math.max(group.severity, kind.severity);
    group.findings.push({kind, subject, name: names[place]});
  });
  const placeOf = (rule) => (rule.place === undefined ? Infinity : rule.place);
  const ordered = [...rules.values()].sort((a, b) =>
    a.chapter - b.chapter || (placeOf(a.rule) < placeOf(b.rule) ? -1 : 1));
  const groups = [];
  for (const group of ordered) {
    if (!groups.length || groups[groups.length - 1].chapter !== group.chapter) {
      groups.push({chapter: group.chapter, rules: []});
    }
    groups[groups.length - 1].rules.push(group);
  }
  return groups;
}

function explanation(rule) {
  if (!rule.title) {
    return null;
  }
  return element('details', {class: 'explanation'},
    element('summary', {text: 'Why, and what to do'}),
    element('dl', {},
      element('dt', {text: 'Rule'}), prose('dd', rule.demand),
      element('dt', {text: 'Why'}), prose('dd', rule.why),
      element('dt', {text: 'What to do'}), prose('dd', rule.fix)),
    rule.example && element('pre', {}, element('code', {text: rule.example})),
    element('p', {}, element('a', {href: rule.uri, rel: 'noreferrer', text: `More on ${rule.id}`})));
}

function notesOf(item, kind) {
  const notes = [];
  if (kind.standing === 1) {
    notes.push(`waived: ${kind.reason || ''}`);
  } else if (kind.standing === 2) {
    notes.push('known to the baseline');
  }
  if (kind.profiles.length < item.profiles.length) {
    notes.push(kind.profiles.map((at) => report.profiles[at]).join(', '));
  }
  return notes.map((note) => element('span', {class: 'finding-note'}, foreign(note)));
}

// The library's message as it is, with the subject set off.
function message(kind, subject) {
  const text = element('bdi', {class: 'message'});
  kind.text.split(subjectMark).forEach((piece, i) => {
    if (i > 0) {
      text.append(element('span', {class: 'subject', text: subject}));
    }
    text.append(piece);
  });
  return text;
}

function findingItem(item, finding) {
  const excused = finding.kind.standing === counts ? '' : ' excused';
  return element('li', {class: `finding${excused}`, 'data-finding': finding.name, tabindex: '-1'},
    message(finding.kind, finding.subject),
    !finding.kind.text.includes(subjectMark) && finding.subject && foreign(finding.subject, {class: 'finding-note'}),
    ...notesOf(item, finding.kind),
    element('a', {class: 'address', href: findingAddress(item, finding.name),
      'aria-label': 'Address of this finding', text: '#'}));
}

function findingList(item, findings, wanted) {
  const list = element('ul', {});
  const isAllShown = findings.length <= firstFindings + 5 || table.isPrinted ||
    findings.slice(firstFindings).some((finding) => finding.name === wanted);
  const first = isAllShown ? findings : findings.slice(0, firstFindings);
  list.append(...first.map((finding) => findingItem(item, finding)));
  if (isAllShown) {
    return [list];
  }
  const rest = findings.slice(firstFindings);
  const more = element('button', {type: 'button', class: 'quiet', text: `Show ${counted(rest.length, 'more finding')}`,
    onclick: () => {
      list.append(...rest.map((finding) => findingItem(item, finding)));
      list.children[firstFindings].focus();
      more.remove();
    }});
  return [list, more];
}

function ruleBlock(item, group) {
  const isChosen = group.rule.id === filter.rule;
  return element('section', {class: `rule${isChosen ? ' chosen' : ''}`},
    element('h5', {},
      element('span', {class: `severity ${severityNames[group.severity]}`, text: severityNames[group.severity]}),
      foreign(group.rule.title || group.rule.id, {class: 'rule-title'}),
      element('code', {class: 'rule-id', text: group.rule.id}),
      group.findings.length > 1 && element('span', {class: 'times', text: `${group.findings.length}×`})),
    ...findingList(item, group.findings, item.wanted),
    explanation(group.rule));
}

function fact(label, value) {
  return value ? [element('dt', {text: label}), element('dd', {}, value)] : [];
}

function libraryNote(item) {
  const differing = item.judgements.filter((judgement) =>
    Boolean(judgement & bits.accepted) !== Boolean(judgement & bits.passes));
  if (differing.length === 0) {
    return null;
  }
  const words = differing[0] & bits.accepted
    ? 'The library itself accepts it; the integrity rules or the policy of the run do not.'
    : 'The library itself rejects it; waivers, the baseline or the policy of the run excuse that.';
  return element('span', {text: words});
}

function profileTable(item) {
  if (item.profiles.length < 2) {
    return null;
  }
  const rows = item.profiles.map((at) => {
    const some = tally(item, at);
    return element('tr', {}, element('th', {scope: 'row', text: report.profiles[at]}),
      element('td', {}, pill(verdictUnder(item, at))),
      element('td', {class: 'count', text: number(some[2] + some[3])}),
      element('td', {class: 'count', text: number(some[1])}));
  });
  return element('table', {class: 'small'},
    element('caption', {class: 'unseen', text: 'Verdicts by profile'}),
    element('thead', {}, element('tr', {}, ...['Profile', 'Verdict', 'Errors', 'Warnings'].map((title) =>
      element('th', {scope: 'col', class: title.endsWith('s') ? 'count' : null, text: title})))),
    element('tbody', {}, ...rows));
}

function packageFacts(item) {
  return element('dl', {class: 'facts'},
    ...fact('Path', foreign(item.path || '')),
    ...fact('SHA-256', item.sha256 && element('code', {text: item.sha256})),
    ...fact('Library', libraryNote(item)),
    ...fact('Validation', item.unvalidated && 'off'),
    ...fact('Took', item.seconds !== undefined && `${item.seconds.toFixed(2)} s`),
    ...fact('Address', element('a', {href: packageAddress(item), text: 'of this package'})));
}

// What was not looked at stands out as much as what was found.
function unjudgedNote(item) {
  if (!item.cause && !item.incomplete) {
    return null;
  }
  const rule = item.cause && report.rules.find((one) => one.id === 'not-judged');
  return element('div', {class: 'callout'},
    element('h4', {text: item.cause ? 'Not judged' : 'Not judged whole'}),
    element('p', {}, foreign(item.cause || item.incomplete)),
    item.last && element('p', {}, 'Last line: ', foreign(item.last, {class: 'subject'})),
    rule && explanation(rule));
}

function packageDetails(item) {
  const groups = groupsOf(item).map((group) =>
    element('section', {class: `group${group.chapter === neverExcused ? ' grave' : ''}`},
      element('h4', {text: chapterTitle(group.chapter)}),
      ...group.rules.map((one) => ruleBlock(item, one))));
  return element('section', {class: 'details', 'aria-label': `Details of ${item.title}`},
    element('h3', {class: 'full-name'}, foreign(item.title), ' ',
      element('span', {class: 'edition', text: editionOf(item)})),
    packageFacts(item), unjudgedNote(item), profileTable(item), ...groups,
    !groups.length && !item.cause && element('p', {class: 'hint', text: 'Nothing was found.'}));
}
