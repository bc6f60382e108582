// Which packages are shown, and in which order.

const emptyFilter = {verdict: '', severity: '', rule: '', profile: '', cause: '', text: ''};
const filter = {...emptyFilter};
const defaultOrder = {key: 'verdict', descending: false};
const order = {...defaultOrder};

function isFiltered() {
  return Object.values(filter).some(Boolean);
}

// The number of the profile that is asked for, or null.
function chosenProfile() {
  const at = report.profiles.indexOf(filter.profile);
  return at < 0 ? null : at;
}

// Rule, severity and profile must fit one and the same finding.
function wantedKinds() {
  if (!filter.rule && !filter.severity) {
    return null;
  }
  const profile = chosenProfile();
  return report.kinds.map((kind) =>
    kind.standing === counts &&
    (!filter.rule || report.rules[kind.rule].id === filter.rule) &&
    (!filter.severity || severityNames[kind.severity] === filter.severity) &&
    (profile === null || kind.profiles.includes(profile)));
}

function hasKind(item, wanted) {
  for (let i = 0; i < item.findings.length; i += 2) {
    if (wanted[item.findings[i]]) {
      return true;
    }
  }
  return false;
}

function shownVerdict(item) {
  const profile = chosenProfile();
  return profile === null ? item.verdict : verdictUnder(item, profile);
}

function filteredPackages() {
  const words = filter.text.toLowerCase().split(/\s+/).filter(Boolean);
  const wanted = wantedKinds();
  return report.packages.filter((item) => {
    const verdict = shownVerdict(item);
    return verdict !== null &&
      (!filter.verdict || verdict === filter.verdict) &&
      (!filter.cause || item.code === filter.cause) &&
      (wanted === null || hasKind(item, wanted)) &&
      words.every((word) => haystackOf(item).includes(word));
  });
}

// What the column of that key sorts by. Numbers go up, so that ascending puts the worst first
// where that is what people look for.
function sortValue(item, key) {
  if (key === 'verdict') {
    return verdictNames.indexOf(shownVerdict(item));
  }
  if (key === 'name') {
    return item.sortName;
  }
  if (key.startsWith('profile-')) {
    return verdictNames.indexOf(verdictUnder(item, Number(key.slice('profile-'.length))));
  }
  return item[key];
}

function sorted(items) {
  const direction = order.descending ? -1 : 1;
  const rows = items.map((item) => ({item, value: sortValue(item, order.key)}));
  rows.sort((a, b) => {
    if (a.value !== b.value) {
      return a.value < b.value ? -direction : direction;
    }
    return b.item.errors - a.item.errors || a.item.index - b.item.index;
  });
  return rows.map((row) => row.item);
}
