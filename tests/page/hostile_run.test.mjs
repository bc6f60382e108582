// Texts that would be more than text if the page let them.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {launch, narrow, open, openAll, reportOf, shown, wide} from './support.mjs';

const report = reportOf('hostile');
let browser;

before(async () => { browser = await launch(); });
after(() => browser.close());

// Bytes that are not UTF-8 stand differently in JSON, which cannot hold them.
function comparable(text) {
  return shown(text).replace(/\ufffd|\\x(?:ff|fe|80)/g, '?');
}

async function assertHarmless(page) {
  const seen = await page.evaluate(() => ({
    images: document.images.length,
    scripts: document.scripts.length,
    styles: document.querySelectorAll('style').length,
    headings: document.querySelectorAll('h1').length,
    title: document.title,
  }));
  assert.deepEqual(seen, {images: 0, scripts: 2, styles: 1, headings: 1,
    title: `${report.summary.rejected} rejected, ${report.summary.not_judged} not judged of ` +
           `${report.summary.packages} packages – pkgvet`});
  assert.deepEqual(page.troubles, []);
}

async function assertNothingSticksOut(page) {
  assert.equal(await page.evaluate(() => document.documentElement.scrollWidth - innerWidth), 0);
}

for (const [size, viewport] of Object.entries({wide, narrow})) {
  test(`hostile texts are text and break nothing, ${size}`, async () => {
    const page = await open(browser, 'hostile', {viewport});
    await assertNothingSticksOut(page);
    await openAll(page);
    await assertHarmless(page);
    await assertNothingSticksOut(page);
    await page.context().close();
  });

  test(`so they are without scripts, ${size}`, async () => {
    const page = await open(browser, 'hostile', {viewport, javaScriptEnabled: false});
    await assertHarmless(page);
    await assertNothingSticksOut(page);
    await page.context().close();
  });
}

test('each name is read as it stands in the report', async () => {
  const page = await open(browser, 'hostile');
  await openAll(page);
  const names = new Set((await page.locator('.full-name bdi').allTextContents()).map(comparable));
  const messages = new Set((await page.locator('.message').allTextContents()).map(comparable));
  for (const one of report.packages) {
    assert.ok(names.has(comparable(one.name || one.path)), one.name || one.path);
    for (const finding of one.judgements.flatMap((judgement) => judgement.findings)) {
      assert.ok(messages.has(comparable(finding.message)), finding.message);
    }
  }
  await page.context().close();
});

test('the direction of writing stays in its own element', async () => {
  const page = await open(browser, 'hostile');
  const isolated = await page.locator('.title').evaluateAll((all) =>
    all.every((one) => getComputedStyle(one).unicodeBidi === 'isolate'));
  assert.ok(isolated);
  await page.context().close();
});

test('the policy lets no other script run', async () => {
  const page = await open(browser, 'hostile');
  const ran = await page.evaluate(() => {
    const script = document.createElement('script');
    script.textContent = 'window.hasRun = true';
    document.body.append(script);
    return Boolean(window.hasRun);
  });
  assert.equal(ran, false);
  await page.context().close();
});
