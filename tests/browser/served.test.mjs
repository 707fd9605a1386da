// What the script adds when a site is served: picture after picture in one page, swipes, the slide show, full screen.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import http from 'node:http';
import path from 'node:path';
import test, { after, before } from 'node:test';
import { launch, openPage } from './browser.mjs';
import { deepSiteFolder, sitesFolder, siteFolder } from './sites.mjs';

const TYPES = { '.html': 'text/html', '.css': 'text/css', '.js': 'text/javascript', '.svg': 'image/svg+xml', '.jpg': 'image/jpeg', '.png': 'image/png' };
let browser;
let server;
let home;
let asked = [];

before(async () => {
  browser = await launch();
  server = http.createServer((request, response) => {
    const name = decodeURIComponent(new URL(request.url, 'http://localhost').pathname);
    asked.push(name);
    const file = path.join(sitesFolder, path.normalize(name));
    if (!fs.existsSync(file)) { response.writeHead(404).end(); return; }
    response.writeHead(200, { 'Content-Type': TYPES[path.extname(file)] ?? 'application/octet-stream' });
    fs.createReadStream(file).pipe(response);
  });
  await new Promise((ready) => server.listen(0, '127.0.0.1', ready));
  home = `http://127.0.0.1:${server.address().port}/`;
});
after(async () => {
  await browser.close();
  server.closeAllConnections();
  server.close();
});

const addressIn = (folder, name) => `${home}${path.basename(folder)}/${name}`;
const mosaic = (name) => addressIn(siteFolder('mosaic', 'Paper'), name);
const slides = (name) => addressIn(siteFolder('slideshow', 'Ink'), name);
const shows = (page, title) => page.waitForFunction((wanted) => document.querySelector('h1').textContent.trim() === wanted, title);

test('the next picture comes into the same page, with its address, title and links', async () => {
  const page = await openPage(browser, home);
  await page.goto(mosaic('picture5.html'));
  await page.evaluate(() => { window.isSamePage = true; });
  await page.keyboard.press('ArrowRight');
  await shows(page, 'Morning Dew');
  assert.equal(page.url(), mosaic('picture6.html'));
  assert.equal(await page.title(), 'Morning Dew \u2013 Wide Open');
  assert.equal(await page.locator('head link[rel="next"]').getAttribute('href'), 'picture7.html');
  assert.equal(await page.locator('.tools button').count(), 1);
  await page.locator('.turn[rel="next"]').click();
  await shows(page, 'Storm over the Wheat');
  assert.equal(await page.evaluate(() => document.activeElement.getAttribute('rel')), 'next');
  await page.goBack();
  await shows(page, 'Morning Dew');
  assert.equal(await page.evaluate(() => window.isSamePage), true);
  assert.deepEqual(page.troubles, []);
  await page.context().close();
});

test('a turn of the page that the next one overtakes is no trouble', async () => {
  const page = await openPage(browser, home, { reducedMotion: 'no-preference' });
  await page.goto(mosaic('picture5.html'));
  // As the browser answers when another transition begins before this one could.
  await page.evaluate(() => {
    document.startViewTransition = (change) => {
      change();
      return { ready: Promise.reject(new DOMException('Transition was skipped', 'AbortError')), finished: Promise.resolve() };
    };
  });
  await page.keyboard.press('ArrowRight');
  await shows(page, 'Morning Dew');
  await page.keyboard.press('ArrowRight');
  await shows(page, 'Storm over the Wheat');
  assert.deepEqual(page.troubles, []);
  await page.context().close();
});

test('the neighbours of a picture are there before they are asked for', async () => {
  const page = await openPage(browser, home);
  asked = [];
  await page.goto(mosaic('picture5.html'), { waitUntil: 'networkidle' });
  for (const wanted of [/picture4\.html$/, /picture6\.html$/, /River10Stones1600/, /Morning10Dew1600/]) assert.ok(asked.some((name) => wanted.test(name)), `${wanted}`);
  await page.context().close();
});

test('a picture that the server has lost is left to the browser', async () => {
  const page = await openPage(browser, home);
  await page.route('**/picture6.html', (route) => route.fulfill({ status: 404, contentType: 'text/html', body: '<title>gone</title>' }));
  await page.goto(mosaic('picture5.html'));
  await page.keyboard.press('ArrowRight');
  await page.waitForURL(mosaic('picture6.html'));
  assert.equal(await page.title(), 'gone');
  await page.context().close();
});

test('a swipe turns the page, a scroll does not', async () => {
  const page = await openPage(browser, home, { hasTouch: true, isMobile: true, viewport: { width: 390, height: 800 } });
  await page.goto(mosaic('picture5.html'), { waitUntil: 'networkidle' });
  const drag = (x, y) => page.evaluate(([toX, toY]) => {
    const target = document.querySelector('main.stage img');
    const touch = (clientX, clientY) => new Touch({ identifier: 1, target, clientX, clientY });
    const send = (type, touches, changed) => target.dispatchEvent(new TouchEvent(type, { bubbles: true, touches, changedTouches: changed }));
    send('touchstart', [touch(200, 400)], [touch(200, 400)]);
    send('touchend', [], [touch(toX, toY)]);
  }, [x, y]);
  // The neighbours are loaded: whatever a drag has begun is done when a picture asked for later is decoded.
  const settled = () => page.evaluate(async () => {
    await Promise.all([...document.images].map((image) => image.decode()));
    await new Promise((done) => requestIdleCallback(done));
  });
  for (const [x, y] of [[180, 200], [130, 350], [175, 400]]) {
    await drag(x, y);
    await settled();
    assert.equal(page.url(), mosaic('picture5.html'), `${x}, ${y}`);
  }
  await drag(60, 410);
  await shows(page, 'Morning Dew');
  await drag(330, 410);
  await shows(page, 'Dunes at Dawn');
  await page.context().close();
});

test('the way back to the overview leads to the place that was left', async () => {
  const page = await openPage(browser, home, { viewport: { width: 700, height: 500 } });
  await page.goto(mosaic('index.html'), { waitUntil: 'load' });
  const shot = page.locator('[id="picture11.html"]');
  await shot.scrollIntoViewIfNeeded();
  await page.evaluate(() => scrollBy(0, 37));
  const left = await page.evaluate(() => scrollY);
  await shot.locator('a').click();
  await page.waitForURL(mosaic('picture11.html'));
  await page.locator('a.tool[rel="up"]').click();
  // While the page comes there is no element at all.
  await page.waitForFunction(() => document.activeElement?.closest('.shot'));
  assert.equal(await page.evaluate(() => document.activeElement.closest('.shot').id), 'picture11.html');
  assert.ok(Math.abs(await page.evaluate(() => scrollY) - left) < 2);
  await page.context().close();
});

test('the way up from a gallery leads on to its parent\'s overview', async () => {
  const page = await openPage(browser, home);
  const deep = (name) => addressIn(deepSiteFolder('cards'), name);
  await page.goto(deep('1/index.html'));
  await page.keyboard.press('Escape');
  await page.waitForURL((url) => url.pathname.endsWith('-deep/index.html'));
  assert.deepEqual(page.troubles, []);
  await page.context().close();
});

test('arrows walk over the pictures of an overview', async () => {
  const page = await openPage(browser, home);
  await page.goto(mosaic('index.html'));
  const focused = () => page.evaluate(() => document.activeElement.closest('.shot')?.id);
  for (const [key, wanted] of [['ArrowRight', '1/index.html'], ['ArrowRight', '2/index.html'], ['ArrowLeft', '1/index.html'], ['ArrowDown', 'picture4.html'], ['ArrowUp', '1/index.html'], ['End', 'picture14.html'], ['Home', '1/index.html']]) {
    await page.keyboard.press(key);
    assert.equal(await focused(), wanted, key);
  }
  await page.context().close();
});

test('the slide show plays by itself, goes round, and pauses at a key or a touch', async () => {
  const page = await openPage(browser, home, { reducedMotion: 'no-preference', hasTouch: true });
  await page.clock.install();
  await page.goto(slides('picture13.html'));
  const state = () => page.locator('.play').getAttribute('aria-label');
  assert.equal(await state(), 'Pause');
  await page.clock.runFor(6100);
  await page.waitForURL(slides('picture14.html'));
  await page.clock.runFor(500);
  await page.waitForFunction(() => document.body.classList.contains('playing') && document.querySelector('.place').textContent.includes('15 / 15'));
  await page.clock.runFor(6100);
  await page.waitForURL(slides('picture.html'));
  // A key that comes before the picture has come is none for it.
  await page.clock.runFor(500);
  await page.waitForFunction(() => document.body.classList.contains('playing') && /(^|\D)1 \/ 15/.test(document.querySelector('.place').textContent));
  await page.keyboard.press('ArrowRight');
  await page.clock.runFor(500);
  await page.waitForURL(slides('picture1.html'));
  assert.equal(await state(), 'Play');
  await page.clock.runFor(20000);
  assert.equal(page.url(), slides('picture1.html'));
  await page.locator('.play').click();
  assert.equal(await state(), 'Pause');
  await page.touchscreen.tap(600, 700);
  assert.equal(await state(), 'Play');
  assert.deepEqual(page.troubles, []);
  await page.context().close();
});

test('the slide show waits for its button where less motion is wanted', async () => {
  const page = await openPage(browser, home);
  await page.clock.install();
  await page.goto(slides('picture5.html'));
  await page.clock.runFor(20000);
  assert.equal(page.url(), slides('picture5.html'));
  assert.equal(await page.locator('.play').getAttribute('aria-label'), 'Play');
  await page.context().close();
});

test('a button and the key f open the full screen', async () => {
  const page = await openPage(browser, home);
  await page.goto(mosaic('picture5.html'));
  await page.keyboard.press('f');
  await page.waitForFunction(() => document.fullscreenElement === document.documentElement);
  await page.keyboard.press('ArrowRight');
  await shows(page, 'Morning Dew');
  assert.ok(await page.evaluate(() => !!document.fullscreenElement));
  await page.getByRole('button', { name: 'Full screen' }).click();
  await page.waitForFunction(() => !document.fullscreenElement);
  await page.context().close();
});
