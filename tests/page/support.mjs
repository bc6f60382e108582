// A browser, and reports to hold against what it shows.
import {readFileSync} from 'node:fs';
import {createRequire} from 'node:module';
import {pathToFileURL} from 'node:url';

const {chromium} = createRequire(`${process.env.PAGE_TEST_MODULES}/`)('playwright-core');

export const work = process.env.PAGE_TEST_REPORTS;
export const wide = {width: 1280, height: 900};
export const narrow = {width: 360, height: 740};

// The pages are the test's own and are opened without the browser's sandbox, which root does not
// get.
export function launch() {
  return chromium.launch({
    executablePath: process.env.PAGE_TEST_BROWSER,
    args: ['--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking',
      '--disable-component-update', '--disable-sync'],
  });
}

export function reportOf(name) {
  return JSON.parse(readFileSync(`${work}/${name}.json`, 'utf8'));
}

// Opens the page of that name. What it asks the network for, and what goes wrong in it, is noted.
export async function open(browser, name, {address = '', ...settings} = {}) {
  const context = await browser.newContext({viewport: wide, ...settings});
  const page = await context.newPage();
  page.troubles = [];
  page.on('pageerror', (error) => page.troubles.push(String(error)));
  page.on('dialog', (dialog) => { page.troubles.push(dialog.message()); dialog.dismiss(); });
  page.on('console', (line) => line.type() === 'error' && page.troubles.push(line.text()));
  page.on('request', (request) => {
    if (!request.url().startsWith('file:')) {
      page.troubles.push(request.url());
    }
  });
  await page.goto(pathToFileURL(`${work}/${name}.html`).href + address);
  return page;
}

export function verdictOf(one) {
  return one.cause ? 'Not judged' : one.passes ? 'Accepted' : 'Rejected';
}

// Control characters and marks that turn the direction of writing, as the page shows them.
export function shown(text) {
  const escaped = /[\u0000-\u001f\u007f-\u009f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff]/g;
  return text.replace(escaped, (c) => {
    const code = c.charCodeAt(0);
    return code < 0x80 ? `\\x${code.toString(16).padStart(2, '0')}`
                       : `\\u{${code.toString(16).padStart(4, '0')}}`;
  });
}

// The findings that count, each told once whatever the number of profiles.
export function findingsOf(one) {
  const seen = new Map();
  for (const judgement of one.judgements) {
    const times = new Map();
    for (const finding of judgement.findings) {
      const key = [finding.rule, finding.severity, finding.subject, finding.message, finding.standing,
        finding.reason].join('\n');
      times.set(key, (times.get(key) || 0) + 1);
      seen.set(`${key} ${times.get(key)}`, finding);
    }
  }
  return [...seen.values()];
}

export function countOf(one, severities) {
  return findingsOf(one).filter((finding) =>
    finding.standing === 'counts' && severities.includes(finding.severity)).length;
}

export function rows(page) {
  return page.locator('tr.package');
}

export function rowOf(page, one) {
  return rows(page).filter({has: page.getByText(shown(one.path), {exact: true})});
}

export async function openAll(page) {
  const closed = page.locator('.opener[aria-expanded="false"]');
  while (await closed.count() > 0) {
    await closed.first().click();
  }
}

export async function shownPaths(page) {
  return page.locator('tr.package').evaluateAll((all) => all.map((row) => {
    const path = row.querySelector('.path') || row.querySelector('.title');
    return path.textContent;
  }));
}
