// One browser for a test file, and pages that remember what went wrong on them.
import { chromium } from 'playwright-core';

export async function launch() {
  const isRoot = process.getuid() === 0;
  return chromium.launch({
    executablePath: '/usr/bin/chromium',
    args: [...(isRoot ? ['--no-sandbox'] : []), '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
}

// options: those of a browser context. The page's "troubles" lists console errors, script errors, failed requests and
// requests that leave home, the address that all of the site begins with.
export async function openPage(browser, home, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, reducedMotion: 'reduce', ...options });
  const page = await context.newPage();
  page.troubles = [];
  const note = (text) => page.troubles.push(text);
  page.on('console', (message) => { if (['error', 'warning'].includes(message.type())) note(`console: ${message.text()}`); });
  page.on('pageerror', (error) => note(`script: ${error.message}`));
  page.on('requestfailed', (request) => { if (request.failure().errorText !== 'net::ERR_ABORTED') note(`failed: ${request.url()}`); });
  page.on('response', (response) => { if (response.status() >= 400) note(`${response.status()}: ${response.url()}`); });
  page.on('request', (request) => {
    if (!request.url().startsWith(home) && !request.url().startsWith('data:')) note(`outside the site: ${request.url()}`);
  });
  return page;
}

// Scrolls nothing, but has every lazy picture loaded.
export async function loadAllPictures(page) {
  await page.evaluate(async () => {
    for (const image of document.images) image.loading = 'eager';
    await Promise.all([...document.images].map((image) => image.decode().catch(() => {})));
  });
}
