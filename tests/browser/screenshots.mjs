// Pictures of every layout in every style, for people to look at: an overview and a picture, on a desk and on a phone.
import fs from 'node:fs';
import path from 'node:path';
import { launch, loadAllPictures, openPage } from './browser.mjs';
import { LAYOUTS, STYLES, addressOf, siteFolder } from './sites.mjs';

const target = process.env.VISTORAMA_SCREENSHOTS;
const SCREENS = [
  { name: 'desk', options: { viewport: { width: 1280, height: 900 } } },
  { name: 'phone', options: { viewport: { width: 390, height: 844 }, hasTouch: true, isMobile: true } },
];
const PAGES = { overview: 'index.html', gallery: 'picture1.html', picture: 'picture5.html' };

fs.rmSync(target, { recursive: true, force: true });
fs.mkdirSync(target, { recursive: true });
const browser = await launch();
for (const [style, colorScheme] of [...STYLES.map((name) => [name, 'light']), ['Auto', 'dark']]) {
  for (const { name: screen, options } of SCREENS) {
    const page = await openPage(browser, 'file:', { ...options, colorScheme });
    for (const layout of LAYOUTS) {
      for (const [name, file] of Object.entries(PAGES)) {
        if (name === 'gallery' && style !== 'Paper') continue;
        await page.goto(addressOf(siteFolder(layout, style), file));
        await loadAllPictures(page);
        const dark = colorScheme === 'dark' ? '-dark' : '';
        await page.screenshot({ path: path.join(target, `${layout}-${style}${dark}-${name}-${screen}.jpg`), quality: 88 });
      }
    }
    await page.context().close();
  }
}
await browser.close();
