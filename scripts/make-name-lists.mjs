// Writes resources/markup-names.inc from the npm packages of package.json and from resources/name-gaps.txt.
// Run "npm ci" once, then this script; commit what it writes.
import { readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { ariaAttributes } from 'aria-attributes';
import { htmlElementAttributes } from 'html-element-attributes';
import { htmlEventAttributes } from 'html-event-attributes';
import { htmlTagNames } from 'html-tag-names';
import { mathmlTagNames } from 'mathml-tag-names';
import { svgElementAttributes } from 'svg-element-attributes';
import { svgTagNames } from 'svg-tag-names';
import properties from 'known-css-properties';

// An attribute on so many SVG elements is taken for one of every SVG element: the package lists presentation
// attributes for some elements only, while the standard allows them on all.
const commonInSvg = 40;

const resource = (name) => fileURLToPath(new URL(`../resources/${name}`, import.meta.url));
const lists = new Map();

function add(list, names) {
    if (!lists.has(list))
        lists.set(list, new Set());
    for (const name of names)
        lists.get(list).add(name.toLowerCase());
}

function addGaps(text) {
    let list;
    for (const line of text.split('\n')) {
        if (line.startsWith('#') || line.trim() === '')
            continue;
        if (line.startsWith(' '))
            add(list, line.trim().split(/ +/));
        else
            list = line;
    }
}

function addSvgAttributes() {
    const uses = new Map();
    for (const attributes of Object.values(svgElementAttributes)) {
        for (const attribute of attributes)
            uses.set(attribute, (uses.get(attribute) ?? 0) + 1);
    }
    add('attributes @svg', svgElementAttributes['*']);
    add('attributes @svg', [...uses].filter(([, count]) => count >= commonInSvg).map(([name]) => name));
    for (const [tag, attributes] of Object.entries(svgElementAttributes)) {
        if (tag !== '*')
            add(`attributes ${tag.toLowerCase()}`, attributes);
    }
    const common = lists.get('attributes @svg');
    for (const tag of svgTagNames) {
        for (const attribute of common)
            lists.get(`attributes ${tag.toLowerCase()}`)?.delete(attribute);
    }
}

function wrap(names) {
    const lines = [];
    for (const name of names) {
        if (lines.length === 0 || lines.at(-1).length + name.length + 1 > 108)
            lines.push(' ');
        lines[lines.length - 1] += ` ${name}`;
    }
    return lines.join('\n');
}

add('html-tags', htmlTagNames);
add('svg-tags', svgTagNames);
add('math-tags', mathmlTagNames);
add('style-properties', properties.all);
addSvgAttributes();
for (const [tag, attributes] of Object.entries(htmlElementAttributes))
    add(`attributes ${tag}`, attributes);
add('attributes *', htmlEventAttributes);
add('attributes *', ariaAttributes);
addGaps(readFileSync(resource('name-gaps.txt'), 'utf8'));

const text = [...lists]
    .filter(([, names]) => names.size > 0)
    .sort(([a], [b]) => (a < b ? -1 : 1))
    .map(([list, names]) => `${list}\n${wrap([...names].sort())}\n`)
    .join('');
writeFileSync(resource('markup-names.inc'), `R"names(${text})names"\n`);
