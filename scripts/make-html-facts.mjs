// Writes resources/html-facts.inc from the npm packages of package.json and from resources/html-values.txt.
// Run "npm ci" once, then this script; commit what it writes.
import { readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';
import webref from '@webref/elements';
import { htmlTagNames } from 'html-tag-names';

const resource = (name) => fileURLToPath(new URL(`../resources/${name}`, import.meta.url));
const compat = createRequire(import.meta.url)('@mdn/browser-compat-data');
const forms = {
    '=': 'Keyword', '?=': 'KeywordOrNothing', '+=': 'Keywords', '~=': 'NoMistypedKeyword', boolean: 'Boolean',
    integer: 'Integer', count: 'Count', number: 'Number', dimension: 'Dimension', id: 'Id', target: 'Target', url: 'Url',
};

const sections = { values: [], void: [], obsolete: [], current: [] };
let section;
for (const line of readFileSync(resource('html-values.txt'), 'utf8').split('\n')) {
    if (line in sections)
        section = sections[line];
    else if (line !== '' && !line.startsWith('#'))
        section.push(line.split(' '));
}
// Every pair of an element and an attribute that a line names.
const pairs = ([elements, attributes]) =>
    elements.split(',').flatMap((element) => attributes.split(',').map((attribute) => `${element} ${attribute}`));

const { html } = await webref.listAll();
const obsoleteElements = html.elements.filter((element) => element.obsolete).map((element) => element.name);
const elements = [...new Set([...htmlTagNames, ...html.elements.map((element) => element.name)])].sort();
const voids = new Set(sections.void.flat());

const obsolete = new Set(sections.obsolete.flatMap(pairs));
for (const [element, features] of Object.entries(compat.html.elements)) {
    for (const [attribute, feature] of Object.entries(features)) {
        if (attribute !== '__compat' && feature.__compat?.status?.deprecated && elements.includes(element))
            obsolete.add(`${element} ${attribute}`);
    }
}
for (const pair of sections.current.flatMap(pairs))
    obsolete.delete(pair);
// Whoever hears of the element need not hear of its attributes.
const worthTelling = [...obsolete].filter((pair) => !obsoleteElements.includes(pair.split(' ')[0])).sort();

const values = sections.values.flatMap((line) =>
    pairs(line).map((pair) => [pair, forms[line[2]], line.slice(3).join(' ')]),
);
values.sort(([a], [b]) => (a < b ? -1 : 1));

function wrap(items) {
    const lines = ['   '];
    for (const item of items) {
        if (lines.at(-1).length + item.length + 2 > 110)
            lines.push('   ');
        lines[lines.length - 1] += ` ${item},`;
    }
    return lines.join('\n');
}
const array = (type, name, items) => `constexpr ${type} ${name}[] = {\n${wrap(items)}\n};\n`;
const flags = (name) => [voids.has(name) && 'FactVoid', obsoleteElements.includes(name) && 'FactObsolete'].filter(Boolean);
writeFileSync(
    resource('html-facts.inc'),
    '// Written by scripts/make-html-facts.mjs. All is sorted.\n' +
        array('SElement', 'Elements', elements.map((name) => `{"${name}", ${flags(name).join(' | ') || 0}}`)) +
        array('std::string_view', 'ObsoleteAttributes', worthTelling.map((pair) => `"${pair}"`)) +
        array('SAttributeValue', 'AttributeValues', values.map(([pair, form, words]) => `{"${pair}", {EValueForm::${form}, "${words}"}}`)),
);
