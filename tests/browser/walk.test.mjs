// From the overview to the last picture and back with the keyboard alone, in every style, with scripts and without.
import assert from 'node:assert/strict';
import test, { after, before } from 'node:test';
import { launch, openPage } from './browser.mjs';
import { STYLES, addressOf, siteFolder } from './sites.mjs';

const layout = process.env.VISTORAMA_LAYOUT;
const ENTRIES = 15;
// In the first style the walk passes every picture, in the others the last ones.
const FIRST_STOP = { Paper: 3 };
const LATER_STOP = 11;
const nameOf = (page) => decodeURIComponent(new URL(page.url()).pathname.split('/').pop());
const pictureName = (index) => `picture${index || ''}.html`;

let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());

async function press(page, key) {
  await Promise.all([page.waitForNavigation({ waitUntil: 'domcontentloaded' }), page.keyboard.press(key)]);
}

async function tabTo(page, selector) {
  for (let i = 0; i < 120; ++i) {
    await page.keyboard.press('Tab');
    if (await page.evaluate((wanted) => document.activeElement.matches(wanted), selector)) return;
  }
  assert.fail(`Tab never reaches ${selector} on ${nameOf(page)}`);
}

for (const style of STYLES) {
  const folder = siteFolder(layout, style);
  const home = addressOf(folder, '');
  const start = FIRST_STOP[style] ?? LATER_STOP;

  test(`${layout} in ${style}: arrows, Home, End and Escape`, async () => {
    const page = await openPage(browser, home);
    await page.goto(addressOf(folder, 'index.html'));
    await page.keyboard.press('Home');
    for (let i = 0; i < start; ++i) {
      // Some overviews have more than one page.
      if (await page.evaluate(() => document.activeElement === [...document.querySelectorAll('.shot > div > a')].at(-1))) {
        await page.goto(addressOf(folder, 'index1.html'));
        await page.keyboard.press('Home');
      } else {
        await page.keyboard.press('ArrowRight');
      }
    }
    await press(page, 'Enter');
    assert.equal(nameOf(page), pictureName(start));
    for (let index = start + 1; index < ENTRIES; ++index) {
      await press(page, 'ArrowRight');
      assert.equal(nameOf(page), pictureName(index));
    }
    await press(page, 'ArrowLeft');
    assert.equal(nameOf(page), pictureName(ENTRIES - 2));
    await press(page, 'Home');
    assert.equal(nameOf(page), pictureName(0));
    await press(page, 'End');
    assert.equal(nameOf(page), pictureName(ENTRIES - 1));
    await press(page, 'Escape');
    assert.match(nameOf(page), /^index\d*\.html$/);
    await page.waitForFunction(() => document.readyState === 'complete' && document.activeElement !== document.body);
    const place = await page.evaluate(() => {
      const box = document.getElementById(decodeURIComponent(location.hash.slice(1))).getBoundingClientRect();
      return { isSeen: box.bottom > 0 && box.top < innerHeight, focused: document.activeElement.closest('.shot')?.id };
    });
    assert.deepEqual(place, { isSeen: true, focused: pictureName(ENTRIES - 1) });
    assert.deepEqual(page.troubles, []);
    await page.context().close();
  });

  test(`${layout} in ${style}: the same without scripts, by Tab and Enter`, async () => {
    const page = await openPage(browser, home, { javaScriptEnabled: false });
    await page.goto(addressOf(folder, 'index.html'));
    if (!await page.locator(`[id="${pictureName(start)}"]`).count()) {
      await tabTo(page, '.pages a[href="index1.html"]');
      await press(page, 'Enter');
    }
    await tabTo(page, `.shot a[href="${pictureName(start)}"]`);
    await press(page, 'Enter');
    for (let index = start + 1; index < ENTRIES; ++index) {
      await tabTo(page, 'a[rel="next"]');
      await press(page, 'Enter');
      assert.equal(nameOf(page), pictureName(index));
    }
    assert.equal(await page.locator('a[rel="next"]').count(), 0);
    await tabTo(page, 'a.tool[rel="up"]');
    await press(page, 'Enter');
    assert.match(nameOf(page), /^index\d*\.html$/);
    assert.ok(await page.locator(`[id="${pictureName(ENTRIES - 1)}"]`).isVisible());
    assert.deepEqual(page.troubles, []);
    await page.context().close();
  });
}

test(`${layout}: whatever has the focus shows it`, async () => {
  const folder = siteFolder(layout, 'Paper');
  const page = await openPage(browser, addressOf(folder, ''));
  for (const name of ['index.html', 'picture5.html']) {
    await page.goto(addressOf(folder, name));
    for (let i = 0; i < 12; ++i) {
      await page.keyboard.press('Tab');
      const outline = await page.evaluate(() => {
        const style = getComputedStyle(document.activeElement);
        return document.activeElement === document.body ? 'page' : `${style.outlineStyle} ${style.outlineWidth}`;
      });
      assert.match(outline, /^(page|solid 3px)$/, `${name}, ${i}`);
    }
  }
  await page.context().close();
});
