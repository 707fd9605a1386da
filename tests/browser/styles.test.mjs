// A style changes the folder that the pages name, and nothing else.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import path from 'node:path';
import test from 'node:test';
import { STYLES, dataFolder, filesBelow, siteFolder, sitesFolder } from './sites.mjs';

const namesIn = (folder) => filesBelow(folder).map((file) => path.relative(folder, file));

test('a site dressed in another style is the site that the program deploys', () => {
  const deployed = path.join(sitesFolder, 'proof');
  const dressed = siteFolder('cards', 'Film');
  assert.deepEqual(namesIn(dressed), namesIn(deployed));
  for (const name of namesIn(deployed).filter((file) => /\.(html|css|js|svg)$/.test(file))) {
    assert.equal(fs.readFileSync(path.join(dressed, name), 'utf8'), fs.readFileSync(path.join(deployed, name), 'utf8'), name);
  }
});

test('every style sets the same variables', () => {
  const variables = (style) => [...new Set(fs.readFileSync(path.join(dataFolder, 'Styles', style, 'style.css'), 'utf8').match(/^ {2}--(?!heading|label)[\w-]+/gm))].sort();
  for (const style of STYLES) assert.deepEqual(variables(style), variables('Paper'), style);
});

test('the places of an overview differ by their number only', () => {
  for (const layout of fs.readdirSync(path.join(dataFolder, 'Templates')).filter((name) => !/\.xml$|^Common$/.test(name))) {
    const text = fs.readFileSync(path.join(dataFolder, 'Templates', layout, 'index.html'), 'utf8');
    const places = text.split(/^(?=<%if <%=p\d+\.file_name%>)/m).slice(1).map((place) => place.split(/^%>\n/m)[0]);
    assert.ok(places.length >= 8, layout);
    const shapes = places.map((place, index) => place.replaceAll(`p${index + 1}`, 'pN').replaceAll('" loading="lazy', ''));
    // The first picture may be larger than the others.
    const compared = /width="1600"/.test(shapes[0]) ? shapes.slice(1) : shapes;
    assert.equal(new Set(compared).size, 1, layout);
  }
});
