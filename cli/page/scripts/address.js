// Addresses that can be sent to somebody: "#package=SHA-256", "#finding=FINGERPRINT", and the filter.

function packageAddress(item) {
  return `#package=${encodeURIComponent(item.key)}`;
}

function findingAddress(item, name) {
  return `#finding=${name}&package=${encodeURIComponent(item.key)}`;
}

// The beginnings of the fingerprints of a package's findings. What has the same fingerprint as
// a finding before it gets a number.
function findingNames(item) {
  const seen = new Map();
  const names = [];
  for (let i = 0; i < item.prints.length; i += printSize) {
    const print = item.prints.slice(i, i + printSize);
    const time = (seen.get(print) || 0) + 1;
    seen.set(print, time);
    names.push(time === 1 ? print : `${print}-${time}`);
  }
  return names;
}

// A whole fingerprint, as other reports tell it, leads to the finding as well.
function shortened(name) {
  return name.replace(/^([0-9a-f]{12})[0-9a-f]*/, '$1');
}

function packageWithFinding(name) {
  const print = name.slice(0, printSize);
  return report.packages.find((item) =>
    item.prints.includes(print) && findingNames(item).includes(name));
}

function addressOfFilter() {
  const parameters = new URLSearchParams();
  for (const [name, value] of Object.entries(filter)) {
    if (value) {
      parameters.set(name, value);
    }
  }
  if (order.key !== defaultOrder.key || order.descending !== defaultOrder.descending) {
    parameters.set('sort', (order.descending ? '-' : '') + order.key);
  }
  const text = parameters.toString();
  return text ? `#${text}` : '#';
}

function showAddress(address) {
  history.replaceState(null, '', address);
}

// What the address asks for.
function readAddress() {
  const parameters = new URLSearchParams(location.hash.slice(1));
  const finding = shortened(parameters.get('finding') || '');
  const key = parameters.get('package');
  const item = key ? report.packages.find((one) => one.key === key)
                   : finding && packageWithFinding(finding);
  return {parameters, finding, item: item || null, isLost: Boolean((key || finding) && !item)};
}
