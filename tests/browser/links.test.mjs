// Every address that a page of a site names leads to a file of the site, and every place in it exists.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import path from 'node:path';
import test from 'node:test';
import { LAYOUTS, STYLES, deepSiteFolder, emptySiteFolder, filesBelow, sampleFolder, siteFolder } from './sites.mjs';

const pages = new Map();
function read(file) {
  if (!pages.has(file)) {
    const text = fs.readFileSync(file, 'utf8');
    pages.set(file, { text, ids: new Set([...text.matchAll(/\sid="([^"]*)"/g)].map((match) => match[1])) });
  }
  return pages.get(file);
}

function brokenLinks(folder) {
  const broken = [];
  for (const page of filesBelow(folder).filter((file) => file.endsWith('.html'))) {
    for (const [, , address] of read(page).text.matchAll(/\s(href|src)="([^"]*)"/g)) {
      const [file, place] = address.split('#');
      const target = file ? path.join(path.dirname(page), decodeURIComponent(file)) : page;
      const isThere = /^(?![a-z]+:|\/)/i.test(address) && target.startsWith(folder) && fs.existsSync(target) && fs.statSync(target).isFile();
      if (!isThere || (place && !read(target).ids.has(place))) broken.push(`${path.relative(folder, page)} -> ${address}`);
    }
  }
  return broken;
}

function unreachedPages(folder) {
  const reached = new Set();
  const open = [path.join(folder, 'index.html')];
  while (open.length) {
    const page = open.pop();
    if (reached.has(page)) continue;
    reached.add(page);
    for (const [, address] of read(page).text.matchAll(/<a\s[^>]*?href="([^"#]+\.html)/g)) open.push(path.join(path.dirname(page), address));
  }
  return filesBelow(folder).filter((file) => file.endsWith('.html') && !reached.has(file));
}

test('the sample project uses three layouts and four styles, and holds together', () => {
  assert.deepEqual(brokenLinks(sampleFolder), []);
  assert.deepEqual(unreachedPages(sampleFolder), []);
  const named = (pattern) => new Set(filesBelow(sampleFolder).filter((file) => file.endsWith('.html')).map((file) => read(file).text.match(pattern)[1]));
  assert.deepEqual(named(/<body class="(\w+)"/).size, 3);
  assert.deepEqual(named(/href="([\w-]+)\/style\.css"/).size, 4);
});

for (const layout of LAYOUTS) {
  for (const folder of [...STYLES.map((style) => siteFolder(layout, style)), deepSiteFolder(layout)]) {
    test(`${path.basename(folder)} has no broken link and no page without a way to it`, () => {
      assert.deepEqual(brokenLinks(folder), []);
      assert.deepEqual(unreachedPages(folder), []);
    });
  }

  test(`${layout} says of a gallery without pictures that it has none, and leads back`, () => {
    const folder = emptySiteFolder(layout);
    assert.deepEqual(brokenLinks(folder), []);
    for (const name of ['index.html', 'picture.html']) assert.match(read(path.join(folder, name)).text, /There are no pictures in this gallery yet\./);
    const links = new Set([...read(path.join(folder, 'picture.html')).text.matchAll(/<a\s[^>]*?href="([^"]*)"/g)].map((match) => match[1]));
    assert.deepEqual([...links], ['index.html']);
  });

  test(`${layout} writes no error text of the template language`, () => {
    for (const folder of [siteFolder(layout, 'Paper'), deepSiteFolder(layout), emptySiteFolder(layout)]) {
      for (const page of filesBelow(folder).filter((file) => file.endsWith('.html'))) assert.ok(!read(page).text.includes('ERROR:'), page);
    }
  });
}
