// Totals, drawn. Each bar is a button that filters.

const leastRules = 8;
const mostRules = 12;
let showsAllRules = false;

function setWidth(bar, share) {
  bar.style.width = `${Math.max(share * 100, share > 0 ? 0.5 : 0)}%`;
}

// settings are those parts of the filter that the bar stands for. Pressed once more, it lets go of
// them.
function barButton({label, note, value, share, color, settings}) {
  const fill = element('span', {class: `fill ${color}`});
  setWidth(fill, share);
  const button = element('button', {type: 'button', class: 'bar', onclick: () => toggle(settings)},
    element('span', {class: 'bar-label'}, label, note && element('span', {class: 'note', text: note})),
    element('span', {class: 'track', 'aria-hidden': 'true'}, fill),
    element('span', {class: 'bar-value', text: value}));
  button.settings = settings;
  return button;
}

function isChosen(settings) {
  return Object.entries(settings).every(([name, value]) => filter[name] === value);
}

function toggle(settings) {
  const chosen = isChosen(settings);
  for (const [name, value] of Object.entries(settings)) {
    filter[name] = chosen ? '' : value;
  }
  filterChanged();
}

function markChosen() {
  for (const button of document.querySelectorAll('.panels button[aria-pressed], .panels .bar')) {
    button.setAttribute('aria-pressed', String(isChosen(button.settings)));
  }
}

function countVerdicts(verdictOf) {
  const result = {rejected: 0, unjudged: 0, accepted: 0};
  for (const item of report.packages) {
    const verdict = verdictOf(item);
    if (verdict) {
      ++result[verdict];
    }
  }
  return result;
}

function percent(part, whole) {
  if (!whole) {
    return '';
  }
  const share = part / whole * 100;
  return part && share < 0.1 ? '< 0.1 %' : `${share.toFixed(share < 10 && part ? 1 : 0)} %`;
}

function drawVerdicts() {
  const totals = countVerdicts((item) => item.verdict);
  for (const verdict of verdictNames) {
    const segment = element('span', {class: `segment ${verdict}`});
    segment.style.flexGrow = String(totals[verdict]);
    segment.hidden = totals[verdict] === 0;
    segment.addEventListener('click', () => toggle({verdict}));
    byId('verdict-strip').append(segment);
    const button = element('button', {type: 'button', class: `figure ${verdict}`,
      'aria-pressed': 'false', onclick: () => toggle({verdict})},
      element('span', {class: 'figure-number', text: number(totals[verdict])}),
      element('span', {class: 'figure-label'}, icon(verdict), ` ${verdictWords[verdict]}`),
      element('span', {class: 'note', text: percent(totals[verdict], report.packages.length)}));
    button.settings = {verdict};
    byId('verdicts').append(button);
  }
}

function drawSeverities() {
  const findings = [0, 0, 0, 0];
  const packages = [0, 0, 0, 0];
  for (const item of report.packages) {
    item.tally.forEach((count, severity) => {
      findings[severity] += count;
      packages[severity] += count > 0 ? 1 : 0;
    });
  }
  const most = Math.max(...findings, 1);
  for (let severity = severityNames.length - 1; severity >= 0; --severity) {
    byId('severities').append(barButton({
      label: severityNames[severity],
      note: `in ${counted(packages[severity], 'package')}`,
      value: number(findings[severity]), share: findings[severity] / most,
      color: severityNames[severity], settings: {severity: severityNames[severity]}}));
  }
}

// How many rejected packages have a finding of each rule that rejects.
function rejectingRules() {
  const packages = new Map();
  for (const item of report.packages) {
    if (item.verdict === 'rejected') {
      const rules = new Set();
      eachFinding(item, (at) => {
        const kind = report.kinds[at];
        if (kind.standing === counts && rejects(item, kind)) {
          rules.add(kind.rule);
        }
      });
      rules.forEach((rule) => packages.set(rule, (packages.get(rule) || 0) + 1));
    }
  }
  return [...packages].sort((a, b) => b[1] - a[1] || (report.rules[a[0]].id < report.rules[b[0]].id ? -1 : 1));
}

// As many as stand beside the other panels.
function firstRules() {
  return byId('profiles-panel').hidden ? leastRules : mostRules;
}

function drawRules() {
  const ranked = rejectingRules();
  byId('rules-panel').hidden = ranked.length === 0;
  const most = ranked.length ? ranked[0][1] : 1;
  const first = firstRules();
  byId('rules').replaceChildren(...ranked.slice(0, showsAllRules ? undefined : first)
    .map(([at, packages]) => barButton({
      label: report.rules[at].title || report.rules[at].id,
      note: report.rules[at].title ? report.rules[at].id : '',
      value: number(packages), share: packages / most,
      color: report.rules[at].grave ? 'critical' : 'error',
      settings: {rule: report.rules[at].id, verdict: 'rejected'}})));
  const more = byId('all-rules');
  more.hidden = ranked.length <= first;
  more.setAttribute('aria-expanded', String(showsAllRules));
  more.textContent = showsAllRules ? 'Show fewer' : `Show all ${ranked.length} rules`;
  markChosen();
}

function drawCauses() {
  const packages = new Map();
  for (const item of report.packages) {
    if (item.cause) {
      packages.set(item.code || '', (packages.get(item.code || '') || 0) + 1);
    }
  }
  byId('causes-panel').hidden = packages.size === 0;
  const ranked = [...packages].sort((a, b) => b[1] - a[1]);
  for (const [code, count] of ranked) {
    byId('causes').append(barButton({
      label: causeWords[code] || code || 'Other', note: code, value: number(count),
      share: count / ranked[0][1], color: 'unjudged',
      settings: code ? {cause: code} : {verdict: 'unjudged'}}));
  }
}

// A row of the matrix: what becomes of the packages under each profile.
function drawProfiles() {
  byId('profiles-panel').hidden = report.profiles.length < 2;
  if (report.profiles.length < 2) {
    return;
  }
  report.profiles.forEach((name, at) => {
    const totals = countVerdicts((item) => verdictUnder(item, at));
    byId('profiles').append(barButton({
      label: name, note: `${number(totals.accepted)} accepted`,
      value: number(totals.rejected),
      share: totals.rejected / Math.max(report.packages.length, 1),
      color: 'rejected', settings: {profile: name}}));
  });
}

function drawCharts() {
  drawVerdicts();
  drawSeverities();
  drawCauses();
  drawProfiles();
  drawRules();
  byId('all-rules').addEventListener('click', () => {
    showsAllRules = !showsAllRules;
    drawRules();
  });
}
