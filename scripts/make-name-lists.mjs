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
import knownProperties from 'known-css-properties';

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
    let current;
    for (const line of text.split('\n')) {
        if (line.startsWith('#') || line.trim() === '')
            continue;
        if (line.startsWith(' '))
            add(current, line.trim().split(/ +/));
        else
            current = line;
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

// Lines of C++ that hold `items`, separated by commas.
function wrap(items) {
    const lines = [];
    for (const item of items) {
        if (lines.length === 0 || lines.at(-1).length + item.length + 2 > 110)
            lines.push('   ');
        lines[lines.length - 1] += ` ${item},`;
    }
    return lines.join('\n');
}

const sorted = (names) => [...new Set(names)].sort();
const list = (name) => lists.get(name) ?? new Set();

add('html-tags', htmlTagNames);
add('svg-tags', svgTagNames);
add('math-tags', mathmlTagNames);
add('style-properties', knownProperties.all);
addSvgAttributes();
for (const [tag, attributes] of Object.entries(htmlElementAttributes))
    add(`attributes ${tag}`, attributes);
add('attributes *', htmlEventAttributes);
add('attributes *', ariaAttributes);
addGaps(readFileSync(resource('name-gaps.txt'), 'utf8'));

const tags = sorted(['html-tags', 'svg-tags', 'math-tags'].flatMap((name) => [...list(name)]));
const owns = tags.map((tag) => sorted(list(`attributes ${tag}`)));
const shared = [
    ['StylePropertyList', 'style-properties'],
    ['GlobalAttributeList', 'attributes *'],
    ['SvgTags', 'svg-tags'],
    ['SvgAttributes', 'attributes @svg'],
    ['MathTags', 'math-tags'],
    ['MathAttributes', 'attributes @math'],
].map(([array, name]) => [array, sorted(list(name))]);
const names = sorted([...tags, ...owns.flat(), ...shared.flatMap(([, items]) => items)]);
const indexes = new Map(names.map((name, index) => [name, index]));

const array = (type, name, items) => `constexpr ${type} ${name}[] = {\n${wrap(items)}\n};\n`;
const indexArray = (name, items) => array('TNameIndex', name, items.map((item) => `${indexes.get(item)}`));
let end = 0;
writeFileSync(
    resource('markup-names.inc'),
    '// Written by scripts/make-name-lists.mjs. All names are ASCII; names and indexes are sorted.\n' +
        array('std::string_view', 'Names', names.map((name) => `"${name}"`)) +
        indexArray('TagList', tags) +
        shared.map(([name, items]) => indexArray(name, items)).join('') +
        '// The attributes of each tag that are listed for it alone, one tag after another, and where its part ends.\n' +
        indexArray('OwnAttributes', owns.flat()) +
        array('std::uint16_t', 'OwnEnds', owns.map((own) => `${(end += own.length)}`)),
);
