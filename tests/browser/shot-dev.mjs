import { chromium } from 'playwright-core';
const [,, out, ...jobs] = process.argv; // job: url|w|h|full|name|scheme
const b = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox','--disable-gpu','--disable-quic','--no-first-run','--disable-background-networking','--disable-component-update','--disable-sync'] });
for (const j of jobs) {
  const [url, w, h, full, name, scheme, touch] = j.split('|');
  const c = await b.newContext({ viewport: { width: +w, height: +h }, reducedMotion: 'reduce', colorScheme: scheme || 'light', hasTouch: touch === 't', isMobile: touch === 't' });
  const p = await c.newPage();
  p.on('console', (m) => console.log(name, m.type(), m.text())); p.on('pageerror', (e) => console.log(name, e.message));
  await p.goto(url); 
  await p.evaluate(async () => { for (const i of document.images) { i.loading = 'eager'; } await Promise.all([...document.images].map((i) => i.decode().catch(() => {}))); });
  await p.waitForTimeout(150);
  const sw = await p.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);
  if (sw > 0) console.log(name, 'HSCROLL', sw);
  await p.screenshot({ path: `${out}/${name}.png`, fullPage: full === 'f' });
  await c.close();
}
await b.close();
