// The guide for layout authors keeps its word: its first layout is written out, deployed and looked at, and each error
// that it shows is the one that comes.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test, { after, before } from 'node:test';
import { launch, openPage } from './browser.mjs';
import { addressOf, dataFolder, filesBelow, siteFolder } from './sites.mjs';

const guide = fs.readFileSync(path.join(dataFolder, '..', 'docs', 'layouts.md'), 'utf8');
const part = (title) => guide.split(/^##+ /m).find((text) => text.startsWith(title));

let folder;
let browser;
before(async () => {
  folder = fs.mkdtempSync(path.join(os.tmpdir(), 'vistorama-guide-'));
  browser = await launch();
});
after(async () => {
  await browser.close();
  fs.rmSync(folder, { recursive: true, force: true });
});

function write(name, text) {
  const file = path.join(folder, name);
  fs.mkdirSync(path.dirname(file), { recursive: true });
  fs.writeFileSync(file, text);
}

function run(command, cwd) {
  const [, ...words] = command.match(/"[^"]*"|\S+/g).map((word) => word.replaceAll('"', ''));
  return spawnSync(process.env.VISTORAMA_PROGRAM, words, { cwd, encoding: 'utf8' });
}

test('the first layout in ten minutes becomes a site', async () => {
  const text = part('A first layout in ten minutes');
  const files = [...text.matchAll(/\*\*(\S+)\*\*\n {3}```\w+\n([\s\S]*?)\n {3}```/g)];
  assert.equal(files.length, 5);
  for (const [, name, content] of files) write(`project/${name}`, content.replaceAll(/^ {3}/gm, ''));
  const pictures = filesBelow(path.join(siteFolder('cards', 'Paper'), 'pictures')).filter((file) => file.includes('599599') && file.endsWith('.jpg'));
  pictures.slice(0, 4).forEach((file, index) => write(`Photos/Photo ${index}.jpg`, fs.readFileSync(file)));
  pictures.slice(4, 6).forEach((file, index) => write(`Photos/Second/Other ${index}.jpg`, fs.readFileSync(file)));

  const project = path.join(folder, 'project');
  const commands = text.match(/```sh\n([\s\S]*?)```/)[1].trim().split('\n').map((line) => line.trim());
  assert.equal(commands.length, 3);
  for (const command of commands) {
    const result = run(command, project);
    assert.equal(result.status, 0, `${command}\n${result.stdout}${result.stderr}`);
    if (command.includes(' check ')) assert.equal(result.stdout, '');
  }

  const site = path.join(project, 'site');
  const page = await openPage(browser, addressOf(site, ''));
  for (const file of filesBelow(site).filter((name) => name.endsWith('.html'))) {
    await page.goto(`file://${file}`);
    const links = await page.evaluate(() => [...document.links].map((link) => link.href));
    assert.ok(links.length > 0, file);
    for (const link of links) assert.ok(fs.existsSync(decodeURIComponent(new URL(link).pathname)), `${file} -> ${link}`);
    assert.ok(await page.evaluate(() => [...document.images].every((image) => image.complete && image.naturalWidth && image.alt)), file);
  }
  assert.deepEqual(page.troubles, []);
  await page.goto(addressOf(site, 'index.html'));
  assert.equal(await page.locator('main img').count(), 3);
  await page.context().close();
});

test('each error of the guide is the one that comes', () => {
  const rows = [...part('Error texts').matchAll(/^\| `([^`]+)` \| `([^`]+)` \|/gm)];
  assert.ok(rows.length >= 10);
  for (const [, text, page] of rows) {
    write('errors/own.xml', '<template name="Own" folder="Own"><page file="index.html"/></template>');
    write('errors/Own/index.html', page);
    const { stdout } = run('vistorama-cli check own.xml', path.join(folder, 'errors'));
    assert.ok(stdout.endsWith(`index.html:1: ${text}\n`), `${page}: ${stdout}`);
  }
});

test('the guide has every keyword and every attribute', () => {
  const program = path.join(dataFolder, '..', 'src', 'template');
  const read = (file) => fs.readFileSync(path.join(program, file), 'utf8');
  const keywords = [...read('TemplateLanguage.cpp').matchAll(/\{"(\w+)", Make<\w+>\}/g)];
  assert.equal(keywords.length, 18);
  const language = part('The language') + guide.slice(guide.indexOf('### Keywords'), guide.indexOf('### Objects'));
  for (const [, keyword] of keywords) assert.match(language, new RegExp(`^#### .*\`${keyword}\``, 'm'));
  // The rows of the sections' tables: {"width", 3, ...} and {"alt", Optional, ...}.
  const sections = filesBelow(path.join(program, 'sections')).filter((file) => file.endsWith('.cpp'));
  const rows = sections.flatMap((file) => [...fs.readFileSync(file, 'utf8').matchAll(/\{"(\w+)",\s*(?:Optional|\d+)[,}]/g)]);
  assert.ok(rows.length >= 48, `${rows.length} attributes`);
  for (const [, attribute] of rows) assert.ok(language.includes(`\`${attribute}\``), attribute);
});
