// The preview writes a strip of buttons before each picture, text and reference. On no page of a layout is a strip
// hidden, cut off or out of the mouse's reach, nor is the element that shows it.
import assert from 'node:assert/strict';
import test, { after, before } from 'node:test';
import { launch, loadAllPictures, openPage } from './browser.mjs';
import { addressOf, siteFolder } from './sites.mjs';

const layout = process.env.VISTORAMA_LAYOUT;
const PAGES = ['index.html', 'picture1.html', 'picture5.html'];

let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());

// Puts strips where the preview does and lists the elements with their number of buttons.
const addStrips = (page) => page.evaluate(() => {
  const strip = (id, buttons) => {
    const image = document.createElement('img');
    image.id = `${id}_menu`;
    image.width = 24 * buttons;
    image.height = 24;
    image.style.cssText = 'position:absolute;display:none';
    image.src = `data:image/svg+xml,<svg xmlns="http://www.w3.org/2000/svg" width="${24 * buttons}" height="24"><rect width="100%" height="100%" fill="red"/></svg>`;
    return image;
  };
  const names = [];
  const add = (element, before, buttons) => {
    const name = `edited${names.length}`;
    element.dataset.edited = name;
    before.before(strip(name, buttons));
    names.push(name);
  };
  for (const picture of document.querySelectorAll('div[align] > a > img[id]')) add(picture, picture.parentElement, 5);
  for (const span of document.querySelectorAll('span[id]')) { if (!span.textContent) span.textContent = 'A few words'; add(span, span, 1); }
  for (const reference of document.querySelectorAll('.logo a > img, .foot a')) add(reference, reference.matches('img') ? reference.parentElement : reference, 1);
  return names;
});

const look = (page, name) => page.evaluate((edited) => {
  const element = document.querySelector(`[data-edited="${edited}"]`);
  const strip = document.getElementById(`${edited}_menu`);
  if (!element.getClientRects().length) return 'not shown here';
  element.scrollIntoView({ block: 'center' });
  const at = (x, y) => document.elementFromPoint(x, y);
  const box = element.getClientRects()[0];
  if (at(box.left + box.width / 2, box.top + box.height / 2) !== element) return `${element.id || element.textContent}: the element is out of reach`;
  strip.style.display = 'inline';
  const size = strip.getBoundingClientRect();
  const corners = [[1, 1], [size.width - 1, 1], [1, size.height - 1], [size.width - 1, size.height - 1]].map(([x, y]) => at(size.left + x, size.top + y) === strip);
  const touches = size.left < box.right && size.right > box.left && size.top <= box.bottom && size.bottom >= box.top;
  strip.style.display = 'none';
  const where = (text) => `${element.id || element.textContent}: ${text}`;
  if (size.height !== 24 || size.width % 24) return where(`the strip is ${size.width} by ${size.height}`);
  if (!touches) return where('the strip lies apart from its element');
  return corners.every(Boolean) ? '' : where('the strip is covered or cut off');
}, name);

for (const width of [1280, 900]) {
  test(`${layout}: the strips of the preview are all there in a window of ${width} pixels`, async () => {
    const folder = siteFolder(layout, 'Paper');
    const page = await openPage(browser, addressOf(folder, ''), { viewport: { width, height: 800 } });
    for (const name of PAGES) {
      await page.goto(addressOf(folder, name));
      await loadAllPictures(page);
      const edited = await addStrips(page);
      assert.ok(edited.length >= 4, name);
      const seen = [];
      for (const one of edited) seen.push(await look(page, one));
      assert.deepEqual(seen.filter((text) => text && text !== 'not shown here'), [], name);
      assert.ok(seen.filter((text) => text === '').length >= 4, name);
    }
    await page.context().close();
  });
}
