// The page as different readers meet it: by day and by night, on paper, by keyboard, in a narrow
// window, and through a screen reader.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {launch, narrow, open, openAll, reportOf, shownPaths} from './support.mjs';

const report = reportOf('all');
const leastContrast = 4.5;
let browser;

before(async () => { browser = await launch(); });
after(() => browser.close());

async function withOpened(settings, run) {
  const page = await open(browser, 'all', settings);
  await openAll(page);
  await page.evaluate(() => document.querySelectorAll('details').forEach((one) => { one.open = true; }));
  try {
    await run(page);
    assert.deepEqual(page.troubles, []);
  } finally {
    await page.context().close();
  }
}

// In the browser: texts whose contrast to what lies behind them is too small.
function faintTexts(least) {
  const channels = (color) => {
    const canvas = new OffscreenCanvas(1, 1).getContext('2d');
    canvas.fillStyle = color;
    canvas.fillRect(0, 0, 1, 1);
    return [...canvas.getImageData(0, 0, 1, 1).data];
  };
  const light = (color) => color.slice(0, 3)
    .map((value) => value / 255)
    .map((value) => (value <= 0.04045 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4))
    .reduce((sum, value, i) => sum + value * [0.2126, 0.7152, 0.0722][i], 0);
  const ground = (element) => {
    for (let one = element; one; one = one.parentElement) {
      const color = channels(getComputedStyle(one).backgroundColor);
      if (color[3] === 255) {
        return color;
      }
    }
    return [255, 255, 255, 255];
  };
  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  const faint = new Set();
  while (walker.nextNode()) {
    const element = walker.currentNode.parentElement;
    if (walker.currentNode.textContent.trim() && element.checkVisibility({opacityProperty: true})) {
      const levels = [light(channels(getComputedStyle(element).color)), light(ground(element))];
      const contrast = (Math.max(...levels) + 0.05) / (Math.min(...levels) + 0.05);
      if (contrast < least) {
        faint.add(`${element.className || element.tagName} ${contrast.toFixed(2)}`);
      }
    }
  }
  return [...faint];
}

for (const colorScheme of ['light', 'dark']) {
  test(`all text stands out, ${colorScheme}`, () => withOpened({colorScheme}, async (page) => {
    assert.deepEqual(await page.evaluate(faintTexts, leastContrast), []);
  }));

  test(`and without scripts, ${colorScheme}`, async () => {
    const page = await open(browser, 'all', {colorScheme, javaScriptEnabled: false});
    assert.deepEqual(await page.evaluate(faintTexts, leastContrast), []);
    await page.context().close();
  });
}

test('the ground follows the reader\'s setting', async () => {
  const grounds = [];
  for (const colorScheme of ['light', 'dark']) {
    const page = await open(browser, 'all', {colorScheme});
    grounds.push(await page.evaluate(() => getComputedStyle(document.body).backgroundColor));
    await page.context().close();
  }
  assert.deepEqual(grounds, ['rgb(247, 248, 250)', 'rgb(14, 17, 22)']);
});

test('paper has all rows with their findings, black on white', async () => {
  const page = await open(browser, 'all', {colorScheme: 'dark'});
  await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
  await page.emulateMedia({media: 'print', colorScheme: 'dark'});
  assert.equal((await shownPaths(page)).length, report.packages.length);
  assert.equal(await page.locator('.details').count(), report.packages.length);
  assert.equal(await page.locator('.filters').isVisible(), false);
  assert.deepEqual(await page.evaluate(faintTexts, leastContrast), []);
  assert.equal(await page.evaluate(() => getComputedStyle(document.body).backgroundColor), 'rgb(255, 255, 255)');
  await page.evaluate(() => window.dispatchEvent(new Event('afterprint')));
  assert.equal(await page.locator('.details').count(), 0);
  await page.context().close();
});

test('a narrow window scrolls one way only', () => withOpened({viewport: narrow}, async (page) => {
  assert.equal(await page.evaluate(() => document.documentElement.scrollWidth - innerWidth), 0);
}));

test('the keyboard finds, opens and closes', async () => {
  const page = await open(browser, 'all');
  await page.keyboard.press('/');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'text');
  await page.locator('.opener').first().focus();
  await page.keyboard.press('Enter');
  assert.equal(await page.locator('.details').count(), 1);
  assert.equal(await page.evaluate(() => document.activeElement.className), 'opener');
  await page.keyboard.press('Tab');
  await page.keyboard.press('Escape');
  assert.equal(await page.locator('.details').count(), 0);
  assert.equal(await page.evaluate(() => document.activeElement.className), 'opener');
  await page.context().close();
});

test('the keyboard reaches all that can be pressed', async () => {
  const page = await open(browser, 'all');
  const wanted = await page.evaluate(() => [...document.querySelectorAll('a[href], button, input, select, summary')]
    .filter((one) => one.checkVisibility() && !one.disabled).length);
  const reached = new Set();
  for (let i = 0; i < wanted * 2; ++i) {
    await page.keyboard.press('Tab');
    reached.add(await page.evaluate(() => [...document.querySelectorAll('*')].indexOf(document.activeElement)));
  }
  assert.ok(reached.size >= wanted, `${reached.size} of ${wanted}`);
  await page.context().close();
});

test('headings step down one at a time, and everything has a name', () => withOpened({}, async (page) => {
  const levels = await page.evaluate(() => [...document.querySelectorAll('h1,h2,h3,h4,h5')]
    .filter((one) => one.checkVisibility()).map((one) => Number(one.tagName[1])));
  assert.equal(levels[0], 1);
  levels.reduce((before, level) => { assert.ok(level <= before + 1, levels.join()); return level; });
  const nameless = await page.evaluate(() => [...document.querySelectorAll('button, input, select, a[href]')]
    .filter((one) => one.checkVisibility())
    .filter((one) => !(one.textContent.trim() || one.getAttribute('aria-label') || (one.labels && one.labels.length)))
    .length);
  assert.equal(nameless, 0);
  const tables = await page.evaluate(() => [...document.querySelectorAll('table')].every((one) => one.caption));
  assert.ok(tables);
  const ids = await page.evaluate(() => [...document.querySelectorAll('[id]')].map((one) => one.id));
  assert.equal(new Set(ids).size, ids.length);
}));
