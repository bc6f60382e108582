// Opens a large page in a browser and filters it. Arguments: the page, the driver's modules, the
// browser, how often.
import {statSync} from 'node:fs';
import {createRequire} from 'node:module';
import {resolve} from 'node:path';
import {pathToFileURL} from 'node:url';

const [file, modules, executablePath, runs] = process.argv.slice(2);
const {chromium} = createRequire(`${resolve(modules)}/`)('playwright-core');

// What each filter takes until its rows stand on the page and are laid out. It runs in the page.
function timeFilters() {
  const timed = (change) => {
    const begin = performance.now();
    change();
    document.body.getBoundingClientRect();
    return performance.now() - begin;
  };
  const choose = (id, value) => () => {
    document.getElementById(id).value = value;
    document.getElementById(id).dispatchEvent(new Event(id === 'text' ? 'input' : 'change'));
  };
  const rule = document.getElementById('rule').options[5].value;
  return {
    'filter by text, the first time': timed(choose('text', 'component4711')),
    'filter by text': timed(choose('text', 'component47')),
    'clear the text': timed(choose('text', '')),
    'filter by verdict': timed(choose('verdict', 'rejected')),
    'filter by rule': timed(choose('rule', rule)),
    'filter by severity': timed(choose('severity', 'error')),
    'sort by name': timed(() => document.querySelector('thead th.name button').click()),
    'clear all': timed(() => document.getElementById('clear').click()),
  };
}

async function measure(browser) {
  const page = await browser.newPage();
  const begin = performance.now();
  await page.goto(pathToFileURL(file).href);
  await page.locator('tr.package').first().waitFor();
  const opened = performance.now() - begin;
  await page.waitForTimeout(500);  // a reader looks at it first
  const times = {'open': opened, ...await page.evaluate(timeFilters)};
  await page.close();
  return times;
}

console.log(`size of the page: ${(statSync(file).size / 1e6).toFixed(1)} MB`);
const browser = await chromium.launch({executablePath, args: ['--no-sandbox', '--disable-gpu']});
const all = [];
for (let i = 0; i < Number(runs); ++i) {
  all.push(await measure(browser));
}
await browser.close();
for (const name of Object.keys(all[0])) {
  const sorted = all.map((times) => times[name]).sort((a, b) => a - b);
  console.log(`${name}: ${sorted[0].toFixed(0)} ms at the least, ${sorted.at(-1).toFixed(0)} ms at the most`);
}
