// What the report says, made ready for asking. The element that holds it is described beside the
// function that writes it.

const verdictWords = {rejected: 'Rejected', unjudged: 'Not judged', accepted: 'Accepted'};
const verdictNames = Object.keys(verdictWords);  // the worst first
const severityNames = ['info', 'warning', 'error', 'critical'];
const severityError = 2;
const subjectMark = '\u0001';
const printSize = 12;
const bits = {passes: 1, accepted: 2, intact: 4};
const counts = 0;  // the standing of a finding that no waiver and no baseline excuses

const causeWords = {
  'unreadable': 'Could not be read',
  'not-a-package': 'Not an RPM package',
  'unpack-failed': 'Could not be unpacked',
  'too-large': 'Too large when unpacked',
  'too-many-files': 'Too many files',
  'out-of-time': 'Took too long',
  'out-of-memory': 'Took too much memory',
  'crashed': 'The judge crashed',
  'rule-failed': 'A rule failed',
  'interrupted': 'The run was interrupted',
};

const report = JSON.parse(byId('report').textContent);

// The subjects of findings stand in the part of the page for readers without scripts, each in a line
// of its own, in the order of the findings. To a browser that runs scripts that part is text.
const entities = {'&lt;': '<', '&gt;': '>', '&quot;': '"', '&#39;': "'", '&amp;': '&'};

function readSubjects() {
  const lines = document.querySelector('noscript').textContent.match(/^<dd>.*$/gm) || [];
  return lines.map((line) => (line.includes('&')
    ? line.slice(4).replace(/&(?:lt|gt|quot|#39|amp);/g, (entity) => entities[entity])
    : line.slice(4)));
}

// Takes what belongs to the package off the front of the subjects.
function findingsOf(item, subjects) {
  const findings = [];
  const groups = item.findings || [];
  for (let i = 0; i < groups.length; i += 2) {
    for (let left = groups[i + 1]; left > 0; --left) {
      findings.push(groups[i], report.kinds[groups[i]].subject ? subjects.next().value : null);
    }
  }
  return findings;
}

// Whether findings of this kind count against a package.
function isGrave(kind) {
  return kind.severity > severityError || Boolean(report.rules[kind.rule].grave);
}

function rejects(item, kind) {
  const asked = severityNames.indexOf(report.failOn);
  const least = asked >= 0 ? asked : item.unvalidated ? Infinity : severityError;
  return isGrave(kind) || kind.severity >= least;
}

// Calls visit(kind number, subject) for each finding of the package.
function eachFinding(item, visit) {
  for (let i = 0; i < item.findings.length; i += 2) {
    visit(item.findings[i], item.findings[i + 1], i / 2);
  }
}

function messageOf(kind, subject) {
  return subject === null ? kind.text : kind.text.replaceAll(subjectMark, () => subject);
}

function judgementOf(item, profile) {
  const at = item.profiles.indexOf(profile);
  return at < 0 ? null : item.judgements[at];
}

// "rejected", "unjudged" or "accepted"; null where the package was not judged under the profile.
function verdictUnder(item, profile) {
  if (item.cause) {
    return 'unjudged';
  }
  const judgement = judgementOf(item, profile);
  return judgement === null ? null : judgement & bits.passes ? 'accepted' : 'rejected';
}

// How many findings count under the profile, or under any of them where it is null.
function tally(item, profile) {
  const bySeverity = [0, 0, 0, 0];
  eachFinding(item, (number) => {
    const kind = report.kinds[number];
    if (kind.standing === counts && (profile === null || kind.profiles.includes(profile))) {
      bySeverity[kind.severity] += kind.count || 1;
    }
  });
  return bySeverity;
}

function prepare(item, index, subjects) {
  item.index = index;
  item.findings = findingsOf(item, subjects);
  item.profiles = item.profiles || report.profiles.slice(0, report.usual).map((_, at) => at);
  item.sha256 = item.sha256 || (/^[0-9a-f]{64}$/.test(item.key) ? item.key : '');
  item.prints = item.prints || '';
  item.title = item.name || item.path || '';
  item.sortName = item.title.toLowerCase();
  item.verdict = item.cause ? 'unjudged'
    : item.judgements.every((one) => one & bits.passes) ? 'accepted' : 'rejected';
  item.tally = tally(item, null);
  item.errors = item.tally[2] + item.tally[3];
  item.warnings = item.tally[1];
}

function editionOf(item) {
  const version = [item.version, item.release].filter(Boolean).join('-');
  return [version, item.arch].filter(Boolean).join('.');
}

// All that the filter on text looks at. It is long, and is made when it is first asked for.
function haystackOf(item) {
  if (item.haystack === undefined) {
    const texts = [item.title, item.path, editionOf(item), item.sha256, item.cause, item.last,
      item.incomplete];
    eachFinding(item, (number, subject) => {
      const kind = report.kinds[number];
      texts.push(report.rules[kind.rule].id, messageOf(kind, subject));
    });
    item.haystack = texts.filter(Boolean).join('\n').toLowerCase();
  }
  return item.haystack;
}

const subjects = readSubjects().values();
report.packages.forEach((item, index) => prepare(item, index, subjects));
