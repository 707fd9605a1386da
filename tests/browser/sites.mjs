// The sites that the tests look at: the sample project, deployed with every layout in every style.
//
// Run as a program it makes them; imported it tells where they lie. A site of another style is the deployed one with
// the style's folder exchanged, which is all that a style changes: styles.test.mjs holds that against a deployment.
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

const { VISTORAMA_PROGRAM: program, VISTORAMA_DATA: data, VISTORAMA_SITES: root } = process.env;

export const LAYOUTS = ['mosaic', 'cards', 'filmstrip', 'slideshow', 'journal', 'portfolio'];
export const STYLES = ['Paper', 'Ink', 'Gallery-wall', 'Film', 'Auto'];
// Names that a person may give, and that a page has to bear.
export const HARD_NAMES = ['Donaudampfschifffahrt'.repeat(9), "Tom & Jerry's 50% off #1 <b>best", 'She said "cheese"'];
const DEPLOYED_STYLE = 'Paper';

export const dataFolder = data;
export const sitesFolder = root;
export const siteFolder = (layout, style) => path.join(root, `${layout}-${style}`);
// The sample project as it comes, in layouts and styles of its own.
export const sampleFolder = path.join(root, 'sample');
// A tree three galleries deep, with more pictures than any overview holds on one page.
export const deepSiteFolder = (layout) => path.join(root, `${layout}-deep`);
export const emptySiteFolder = (layout) => path.join(root, `${layout}-empty`);
export const addressOf = (folder, page) => `file://${path.join(folder, page).split(path.sep).map(encodeURIComponent).join('/')}`;

export function filesBelow(folder) {
  return fs.readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
    const file = path.join(folder, entry.name);
    return entry.isDirectory() ? filesBelow(file) : [file];
  }).sort();
}

function run(...command) {
  execFileSync(program, command, { stdio: ['ignore', 'ignore', 'inherit'] });
}

// Deploys the sample project with all its galleries in one layout and one style.
export function deploySample(layout, style, target) {
  const sample = path.join(data, 'sample');
  const project = fs.readFileSync(path.join(sample, 'sample.gallery'), 'utf8')
    .replaceAll(/<page_style [^>]*>/g, '')
    .replaceAll(/ template="[^"]*"/g, ` template="/anywhere/${layout}.xml"`)
    .replaceAll(/ css="[^"]*"/g, ` css="/anywhere/${style.toLowerCase()}.xml"`)
    .replaceAll(/ path="\/sample/g, ` path="${sample}`);
  const file = `${target}.gallery`;
  fs.writeFileSync(file, project);
  run('deploy', file, target, '--quiet');
}

function dressIn(style, from, to) {
  for (const file of filesBelow(from)) {
    const name = path.relative(from, file).split(path.sep).map((part) => part === DEPLOYED_STYLE ? style : part);
    const copy = path.join(to, ...name);
    fs.mkdirSync(path.dirname(copy), { recursive: true });
    if (name.at(-2) === style) {
      fs.copyFileSync(path.join(data, 'Styles', style, name.at(-1)), copy);
    } else if (file.endsWith('.html')) {
      fs.writeFileSync(copy, fs.readFileSync(file, 'utf8').replaceAll(`"${DEPLOYED_STYLE}/`, `"${style}/`));
    } else {
      fs.linkSync(file, copy);
    }
  }
}

function makeDeepTree(folder) {
  const pictures = filesBelow(path.join(siteFolder('cards', DEPLOYED_STYLE), 'pictures')).filter((file) => /240240/.test(file) && file.endsWith('.jpg'));
  const fill = (name, count) => {
    fs.mkdirSync(path.join(folder, name), { recursive: true });
    for (let i = 0; i < count; ++i) fs.copyFileSync(pictures[i % pictures.length], path.join(folder, name, `Picture ${i + 1} of ${name.replaceAll('/', ' ') || 'all'}.jpg`));
  };
  fill('', 1);
  HARD_NAMES.forEach((name, index) => fs.copyFileSync(pictures[index], path.join(folder, `${name}.jpg`)));
  fill('Valley', 27);
  fill('Valley/Farm', 2);
  fill('Valley/Farm/Barn', 1);
}

function makeSites() {
  fs.rmSync(root, { recursive: true, force: true });
  fs.mkdirSync(root, { recursive: true });
  for (const layout of LAYOUTS) {
    deploySample(layout, DEPLOYED_STYLE, siteFolder(layout, DEPLOYED_STYLE));
    for (const style of STYLES.filter((name) => name !== DEPLOYED_STYLE)) {
      dressIn(style, siteFolder(layout, DEPLOYED_STYLE), siteFolder(layout, style));
    }
  }
  deploySample('cards', 'Film', path.join(root, 'proof'));
  run('deploy', path.join(data, 'sample', 'sample.gallery'), sampleFolder, '--quiet');
  makeDeepTree(path.join(root, 'tree'));
  for (const layout of LAYOUTS) {
    const project = path.join(root, `${layout}-deep.gallery`);
    run('new', project, '--layout', layout, '--tree', path.join(root, 'tree'));
    run('deploy', project, deepSiteFolder(layout), '--quiet');
    const empty = path.join(root, `${layout}-empty.gallery`);
    run('new', empty, '--layout', layout);
    run('deploy', empty, emptySiteFolder(layout), '--quiet');
  }
}

if (process.argv[1] === fileURLToPath(import.meta.url)) makeSites();
