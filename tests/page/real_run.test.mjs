// The page of a real run, held against the JSON report of the same run.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {
  countOf, findingsOf, launch, open, reportOf, rowOf, rows, shown, shownPaths, verdictOf,
} from './support.mjs';

const report = reportOf('all');
const rejected = report.packages.filter((one) => verdictOf(one) === 'Rejected');
const worst = rejected.reduce((a, b) => (countOf(a, ['error']) >= countOf(b, ['error']) ? a : b));
let browser;

before(async () => { browser = await launch(); });
after(() => browser.close());

function withPage(name, run, settings) {
  test(name, async () => {
    const page = await open(browser, 'all', settings);
    try {
      await run(page);
      assert.deepEqual(page.troubles, []);
    } finally {
      await page.context().close();
    }
  });
}

function pathsOf(packages) {
  return packages.map((one) => shown(one.path)).sort();
}

async function assertShown(page, packages) {
  assert.deepEqual((await shownPaths(page)).sort(), pathsOf(packages));
}

function hasFinding(one, predicate) {
  return findingsOf(one).some((finding) => finding.standing === 'counts' && predicate(finding));
}

withPage('totals are those of the report', async (page) => {
  const totals = [['rejected', 'rejected'], ['unjudged', 'not_judged'], ['accepted', 'accepted']];
  for (const [verdict, key] of totals) {
    assert.equal(await page.locator(`.figure.${verdict} .figure-number`).textContent(),
      String(report.summary[key]));
  }
  for (const severity of ['critical', 'error', 'warning', 'info']) {
    const sum = report.packages.reduce((all, one) => all + countOf(one, [severity]), 0);
    const bar = page.locator('#severities .bar', {hasText: severity});
    assert.equal(await bar.locator('.bar-value').textContent(), String(sum));
  }
});

withPage('the table has each package with its verdict and counts', async (page) => {
  await assertShown(page, report.packages);
  for (const one of report.packages) {
    const row = rowOf(page, one);
    assert.equal(await row.locator('.pill').textContent(), verdictOf(one));
    if (!one.cause) {
      const counts = await row.locator('td.count').allTextContents();
      assert.deepEqual(counts, [String(countOf(one, ['error', 'critical'])), String(countOf(one, ['warning']))]);
    }
  }
});

withPage('the matrix has the verdict of each package under each profile', async (page) => {
  const profiles = report.provenance.profiles.map((one) => one.name);
  assert.ok(profiles.length > 1);
  assert.deepEqual(await page.locator('thead th.profile button span:first-child').allTextContents(), profiles);
  for (const one of report.packages) {
    const row = rowOf(page, one);
    const expected = profiles.map((_, i) => (one.cause ? 'Not judged'
      : one.judgements[i].passes ? 'Accepted' : 'Rejected'));
    assert.deepEqual(await row.locator('td.profile .unseen').allTextContents(), expected);
  }
});

withPage('what was not judged stands out with its cause', async (page) => {
  const lost = report.packages.filter((one) => one.cause);
  assert.ok(lost.length > 0);
  assert.ok(await page.locator('#causes-panel').isVisible());
  for (const one of lost) {
    const row = rowOf(page, one);
    assert.equal(await row.locator('.cause').textContent(), one.cause);
  }
  await page.locator('#causes .bar').first().click();
  const code = await page.locator('#cause').inputValue();
  await assertShown(page, lost.filter((one) => one.cause_code === code));
});

withPage('bars filter, and let go when pressed once more', async (page) => {
  const bar = page.locator('.figure.rejected');
  await bar.click();
  await assertShown(page, rejected);
  assert.equal(await bar.getAttribute('aria-pressed'), 'true');
  assert.equal(await page.locator('#shown').textContent(),
    `${rejected.length} of ${report.packages.length} packages`);
  await bar.click();
  await assertShown(page, report.packages);
  const rule = page.locator('#rules .bar').first();
  const id = await rule.locator('.note').textContent();
  await rule.click();
  await assertShown(page, rejected.filter((one) => hasFinding(one, (finding) => finding.rule === id)));
  assert.equal(await rule.locator('.bar-value').textContent(), String(await rows(page).count()));
});

withPage('fields filter by rule, severity, profile and text', async (page) => {
  const {rule} = findingsOf(worst).find((finding) => finding.severity === 'warning');
  await page.selectOption('#rule', rule);
  await assertShown(page, report.packages.filter((one) => hasFinding(one, (f) => f.rule === rule)));
  await page.selectOption('#severity', 'critical');
  assert.ok(await page.getByText('No package is like that.').isVisible());
  await page.getByRole('button', {name: 'Clear filters'}).click();
  await page.selectOption('#severity', 'warning');
  await assertShown(page, report.packages.filter((one) => hasFinding(one, (f) => f.severity === 'warning')));
  await page.selectOption('#severity', '');
  await page.selectOption('#profile', 'mdm');
  await page.selectOption('#verdict', 'accepted');
  await assertShown(page, report.packages.filter((one) =>
    one.judgements.some((judgement) => judgement.profile === 'mdm' && judgement.passes)));
  await page.getByRole('button', {name: 'Clear filters'}).click();
  const {message} = findingsOf(worst).at(-1);
  await page.fill('#text', message.toUpperCase());
  await assertShown(page, report.packages.filter((one) => hasFinding(one, (f) => f.message === message)));
});

withPage('heads of columns sort', async (page) => {
  const errors = async () => (await page.locator('tr.package').evaluateAll((all) =>
    all.map((row) => row.querySelector('td.count').textContent))).filter((text) => text !== '–').map(Number);
  const head = page.locator('thead th', {hasText: 'Errors'});
  await head.getByRole('button').click();
  assert.equal(await head.getAttribute('aria-sort'), 'descending');
  const down = await errors();
  assert.deepEqual(down, [...down].sort((a, b) => b - a));
  await head.getByRole('button').click();
  assert.equal(await head.getAttribute('aria-sort'), 'ascending');
  assert.deepEqual(await errors(), [...down].reverse());
  await page.locator('thead th', {hasText: 'Package'}).getByRole('button').click();
  const names = await page.locator('.title').allTextContents();
  assert.deepEqual(names, [...names].sort());
});

withPage('a package opens into all its findings with their explanations', async (page) => {
  const row = rowOf(page, worst);
  await row.locator('.opener').click();
  const messages = await page.locator('.details .message').allTextContents();
  assert.deepEqual(messages.sort(), findingsOf(worst).map((finding) => shown(finding.message)).sort());
  assert.equal(await page.locator('.details .group h4').first().textContent(), 'Never excused');
  const titles = new Set(findingsOf(worst).map((finding) => finding.title));
  assert.deepEqual(new Set(await page.locator('.rule-title').allTextContents()), titles);
  const explanation = page.locator('.details .explanation').first();
  await explanation.locator('summary').click();
  assert.deepEqual(await explanation.locator('dt').allTextContents(), ['Rule', 'Why', 'What to do']);
  assert.ok((await explanation.locator('dd').nth(2).textContent()).length > 20);
  assert.ok(page.url().endsWith(`#package=${worst.sha256}`));
});

withPage('the address of a package opens it', async (page) => {
  assert.equal(await page.locator('.details .full-name bdi').textContent(), worst.name);
  assert.equal(await page.locator('.opener[aria-expanded="true"]').count(), 1);
}, {address: `#package=${worst.sha256}`});

const pointed = findingsOf(worst).at(-1);
withPage('a fingerprint of the report leads to its finding', async (page) => {
  assert.equal(await page.locator('.finding.pointed .message').textContent(), pointed.message);
  assert.ok(await page.locator('.finding.pointed').evaluate((one) => one === document.activeElement));
  const address = await page.locator('.finding.pointed .address').getAttribute('href');
  assert.ok(address.startsWith(`#finding=${pointed.fingerprint.slice(0, 12)}`));
}, {address: `#finding=${pointed.fingerprint}`});

withPage('an address that the filter hides is shown all the same', async (page) => {
  await page.locator('.figure.accepted').click();
  await page.evaluate((key) => { location.hash = `#package=${key}`; }, worst.sha256);
  await page.locator('.details').waitFor();
  assert.equal(await page.locator('#verdict').inputValue(), '');
});

withPage('an address of something else says so', async (page) => {
  assert.match(await page.locator('#shown').textContent(), /not on this page/);
}, {address: '#package=0123'});

withPage('a filter has an address too', async (page) => {
  await assertShown(page, rejected);
  assert.equal(await page.locator('#verdict').inputValue(), 'rejected');
}, {address: '#verdict=rejected&sort=-name'});

withPage('without scripts totals, verdicts and findings are there', async (page) => {
  const text = await page.locator('main.plain').innerText();
  for (const [label, key] of [['Accepted', 'accepted'], ['Rejected', 'rejected'], ['Not judged', 'not_judged']]) {
    assert.match(text, new RegExp(`${label}\\s+${report.summary[key]}\\b`));
  }
  for (const one of report.packages) {
    const heading = `${verdictOf(one).toLowerCase()}: ${one.name || one.path}`;
    const article = page.locator('article', {has: page.locator('h3', {hasText: heading})})
      .filter({hasText: shown(one.path)}).first();
    const body = await article.textContent();
    for (const finding of findingsOf(one)) {
      assert.ok(body.includes(finding.subject || finding.message), `${one.path}: ${finding.message}`);
    }
    assert.ok(body.includes(one.cause || ''));
  }
  assert.equal(await page.locator('#page').isVisible(), false);
}, {javaScriptEnabled: false});
