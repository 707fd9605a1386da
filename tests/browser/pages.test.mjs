// The pages of one layout in every style: nothing goes wrong on them, everybody can use them, nothing is cut off.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import test, { after, before } from 'node:test';
import { launch, loadAllPictures, openPage } from './browser.mjs';
import { HARD_NAMES, STYLES, addressOf, deepSiteFolder, siteFolder } from './sites.mjs';

const layout = process.env.VISTORAMA_LAYOUT;
const axe = fs.readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const RULES = ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa'];
const WIDTHS = [320, 768, 1280, 2560];
// An overview, a gallery shown among the pictures, a picture between two others, the last one, and the overview and a
// picture of a gallery below.
const PAGES = ['index.html', 'picture1.html', 'picture5.html', 'picture14.html', '1/index.html', '1/picture2.html'];
const LIGHTS = [...STYLES.map((style) => [style, 'light']), ['Auto', 'dark']];
const MOST_BYTES = 30000;

let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());

const violationsOn = (page) => page.evaluate(async (tags) => {
  const { violations } = await globalThis.axe.run(document, { runOnly: tags, resultTypes: ['violations'], preload: false });
  return violations.map(({ id, nodes }) => `${id}: ${nodes.map((node) => `${node.target} ${node.any[0]?.message ?? ''}`).join(' | ')}`);
}, RULES);

for (const [style, colorScheme] of LIGHTS) {
  const folder = siteFolder(layout, style);
  const home = addressOf(folder, '');

  test(`${layout} in ${style}, ${colorScheme}: no error, WCAG 2.1 A and AA, no sideways scroll`, async () => {
    const page = await openPage(browser, home, { colorScheme });
    for (const name of PAGES) {
      await page.goto(addressOf(folder, name));
      await loadAllPictures(page);
      assert.deepEqual(await page.evaluate(() => [...document.images].filter((image) => !image.naturalWidth).map((image) => image.src)), [], name);
      await page.evaluate(axe);
      for (const width of WIDTHS) {
        await page.setViewportSize({ width, height: 400 }); // a low window has less to paint
        const overhang = await page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);
        assert.equal(overhang, 0, `${name} at ${width} pixels`);
        if (width === 1280 || (width === 320 && style === 'Paper')) assert.deepEqual(await violationsOn(page), [], `${name} at ${width} pixels`);
      }
    }
    assert.deepEqual(page.troubles, []);
    await page.context().close();
  });
}

test(`${layout}: script and style of a page stay below ${MOST_BYTES} bytes`, () => {
  const folder = siteFolder(layout, 'Paper');
  for (const name of PAGES) {
    const text = fs.readFileSync(path.join(folder, name), 'utf8');
    const inline = [...text.matchAll(/<(style|script)[^>]*>([\s\S]*?)<\/\1>/g)].map((match) => match[2].length);
    const linked = [...text.matchAll(/(?:href|src)="([^"]+\.(?:css|js))"/g)].map((match) => fs.statSync(path.join(folder, path.dirname(name), match[1])).size);
    const bytes = [...inline, ...linked].reduce((sum, size) => sum + size, 0);
    assert.ok(linked.length >= 3 && bytes < MOST_BYTES, `${name}: ${bytes}`);
  }
});

test(`${layout}: what a page says of itself`, async () => {
  const folder = siteFolder(layout, 'Paper');
  const page = await openPage(browser, addressOf(folder, ''));
  const read = () => page.evaluate(() => ({
    mode: document.compatMode,
    charset: document.querySelector('meta[charset]')?.getAttribute('charset'),
    viewport: document.querySelector('meta[name="viewport"]')?.content,
    title: document.title,
    description: document.querySelector('meta[name="description"]')?.content,
    graph: document.querySelector('meta[property="og:title"]')?.content,
    graphText: document.querySelector('meta[property="og:description"]')?.content,
    prev: document.querySelector('head link[rel="prev"]')?.getAttribute('href'),
    next: document.querySelector('head link[rel="next"]')?.getAttribute('href'),
    alts: [...document.images].map((image) => image.getAttribute('alt')),
    lazy: [...document.querySelectorAll('.shot img')].filter((image) => image.loading === 'lazy').length,
    headings: document.querySelectorAll('h1').length,
  }));
  await page.goto(addressOf(folder, 'picture5.html'));
  const picture = await read();
  assert.deepEqual({ ...picture, alts: undefined, lazy: undefined }, {
    mode: 'CSS1Compat', charset: 'utf-8', viewport: 'width=device-width, initial-scale=1', title: 'Dunes at Dawn \u2013 Wide Open',
    description: 'Ten minutes of long shadows, then the light goes flat.', graph: 'Dunes at Dawn',
    graphText: 'Ten minutes of long shadows, then the light goes flat.', prev: 'picture4.html', next: 'picture6.html', headings: 1,
    alts: undefined, lazy: undefined,
  });
  assert.ok(picture.alts.includes('Dunes at Dawn'));
  assert.ok(picture.alts.every((alt) => alt));
  await page.goto(addressOf(folder, 'index.html'));
  const overview = await read();
  assert.equal(overview.title, 'Wide Open');
  assert.match(overview.description, /^Hills, weather/);
  assert.equal(overview.prev, undefined);
  assert.equal(overview.headings, 1);
  assert.ok(overview.alts.every((alt) => alt !== null));
  assert.ok(overview.lazy >= 4, `${overview.lazy} lazy pictures`);
  await page.context().close();
});

test(`${layout}: printed, the words are black on white and no control shows`, async () => {
  const folder = siteFolder(layout, 'Ink');
  const page = await openPage(browser, addressOf(folder, ''));
  await page.emulateMedia({ media: 'print' });
  for (const name of ['index.html', 'picture5.html']) {
    await page.goto(addressOf(folder, name));
    const look = await page.evaluate(() => ({
      text: getComputedStyle(document.querySelector('h1')).color,
      ground: getComputedStyle(document.body).backgroundColor,
      controls: [...document.querySelectorAll('.turn, .tools, .pages, .skip')].filter((part) => part.offsetParent).length,
      pictures: [...document.querySelectorAll('main img')].filter((image) => image.offsetParent).length > 0,
    }));
    assert.deepEqual(look, { text: 'rgb(0, 0, 0)', ground: 'rgb(255, 255, 255)', controls: 0, pictures: true }, name);
  }
  await page.context().close();
});

test(`${layout}: long and odd names break nothing`, async () => {
  const folder = deepSiteFolder(layout);
  const page = await openPage(browser, addressOf(folder, ''));
  const ENTRIES = 2 + HARD_NAMES.length; // a gallery, a plain picture, the hard ones
  for (const name of ['index.html', ...Array.from({ length: ENTRIES }, (_, index) => `picture${index || ''}.html`)]) {
    await page.goto(addressOf(folder, name));
    await loadAllPictures(page);
    assert.ok(await page.evaluate(() => [...document.images].every((image) => image.naturalWidth > 0)), name);
    for (const width of WIDTHS) {
      await page.setViewportSize({ width, height: 400 });
      assert.equal(await page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth), 0, `${name} at ${width} pixels`);
    }
  }
  assert.deepEqual(page.troubles, []);
  await page.context().close();
});
