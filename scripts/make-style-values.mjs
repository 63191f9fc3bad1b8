// Writes resources/style-values.inc, what properties, descriptors and media features take, from the npm packages
// of package.json and from resources/style-gaps.txt. Run "npm ci" once, then this script; commit what it writes.
import { readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';
import { parseSyntax } from './value-syntax.mjs';

const require = createRequire(import.meta.url);
const drafts = require('@webref/css/css.json');
const mdn = Object.fromEntries(['properties', 'syntaxes', 'at-rules', 'selectors']
    .map((name) => [name, require(`mdn-data/css/${name}.json`)]));
const resource = (name) => fileURLToPath(new URL(`../resources/${name}`, import.meta.url));

// What the matcher knows itself, in the order of its enumeration.
const basics = ['any-value', 'component', 'ident', 'custom-ident', 'dashed-ident', 'string', 'url', 'number', 'integer',
    'percentage', 'length', 'angle', 'time', 'frequency', 'resolution', 'flex', 'dimension', 'hex-color', 'hash',
    'unicode-range', 'zero', 'function'];
const same = {
    'declaration-value': 'any-value', 'whole-value': 'any-value', declaration: 'any-value', syntax: 'any-value',
    'style-feature-value': 'any-value', 'ident-token': 'ident', identifier: 'custom-ident',
    'custom-property-name': 'dashed-ident', 'string-token': 'string', uri: 'url', 'url-token': 'url',
    'number-token': 'number', 'dimension-token': 'dimension', 'hash-token': 'hash', id: 'hash',
    'unicode-range-token': 'unicode-range', 'function-token': 'function', 'dashed-function': 'function',
    semitones: 'dimension', decibel: 'dimension', 'extension-name': 'dashed-ident',
    'attr-unit': 'ident', 'attr-name': 'ident', x: 'number', y: 'number',
};

const definitions = new Map(); // of types and functions, by name: syntaxes
const add = (map, name, syntax) => {
    if (!map.has(name))
        map.set(name, new Set());
    map.get(name).add(syntax.replace(/\s+/g, ' ').trim());
};
const properties = new Map();
const descriptors = new Map(); // "@rule/name"
for (const { name, syntax } of [...drafts.types, ...drafts.functions])
    if (syntax && !syntax.includes(';'))
        add(definitions, name, syntax);
for (const [name, { syntax }] of Object.entries(mdn.syntaxes))
    add(definitions, name, syntax);
for (const { name, syntax, legacyAliasOf } of drafts.properties)
    if (syntax || legacyAliasOf)
        add(properties, name, syntax ?? `<'${legacyAliasOf}'>`);
for (const [name, { syntax }] of Object.entries(mdn.properties))
    if (name !== '--*')
        add(properties, name, syntax);
for (const rule of drafts.atrules)
    for (const { name, syntax } of rule.descriptors ?? [])
        if (syntax)
            add(descriptors, `${rule.name}/${name}`, syntax);
for (const [rule, { descriptors: own }] of Object.entries(mdn['at-rules']))
    for (const [name, { syntax }] of Object.entries(own ?? {}))
        add(descriptors, `${rule}/${name}`, syntax);

const pseudos = new Set([...drafts.selectors.map(({ name }) => name), ...Object.keys(mdn.selectors)]
    .filter((name) => /^::?[a-z-]+(\(\))?$/.test(name)));

const extraWords = [];

// Lines "kind name = syntax"; "kind name := syntax" replaces what the packages say.
for (const line of readFileSync(resource('style-gaps.txt'), 'utf8').split('\n')) {
    if (line.startsWith('#') || line.trim() === '')
        continue;
    const [, kind, name, replaces, syntax] = line.match(/^(\S+) (\S+)(?: (:?)= (.*))?$/);
    const map = { type: definitions, property: properties, descriptor: descriptors }[kind];
    if (kind === 'pseudo')
        pseudos.add(name);
    if (kind === 'word')
        extraWords.push(name);
    if (map && replaces)
        map.delete(name);
    if (map)
        add(map, name, syntax);
}

const nodes = [];
const children = [];
const words = new Set();
const ranges = [];
const kept = new Map(); // nodes and lists of children by what they are
const keep = (array, item) => {
    const key = `${array === nodes ? 'n' : array === ranges ? 'r' : ''}${item}`;
    if (!kept.has(key))
        kept.set(key, array.push(item) - 1);
    return kept.get(key);
};
const node = (kind, a = 0, b = 0, min = 0, max = 0) => keep(nodes, [kind, a, b, min, max].join('\u0001'));
const word = (name) => {
    words.add(name.toLowerCase());
    return `w:${name.toLowerCase()}`;
};
function list(kind, items) {
    if (items.length === 1)
        return items[0];
    const key = `c${items}`;
    if (!kept.has(key)) {
        kept.set(key, children.length);
        children.push(...items);
    }
    return node(kind, kept.get(key), items.length);
}

const types = new Map(); // "name" or "'property'": index; its node comes later
const wanted = [];
function reference(name, range) {
    const basic = same[name] ?? name;
    if (basics.includes(basic))
        return node('Basic', basics.indexOf(basic), range ? keep(ranges, range.join()) + 1 : 0);
    if (range && name === 'length-percentage')
        return list('One', [reference('length', range), reference('percentage', range)]);
    const known = name.startsWith("'") ? properties.has(name.slice(1, -1)) : definitions.has(name);
    if (!known) {
        console.warn(`no syntax of ${name}: anything`);
        return node('Basic', basics.indexOf('component'));
    }
    if (!types.has(name)) {
        types.set(name, types.size);
        wanted.push(name);
    }
    return node('Type', types.get(name));
}

// The nodes of a parsed syntax; the index of its own.
function compile(tree) {
    switch (tree.kind) {
    case 'word': return node('Word', word(tree.name));
    case 'sign': return node('Sign', tree.sign.codePointAt(0));
    case 'type': return reference(tree.name, tree.range);
    case 'function': return node('Function', word(tree.name), compile(tree.inner));
    case 'repeat': return node(tree.comma ? 'List' : 'Repeat', compile(tree.item), 0, tree.min, Math.min(tree.max, 255));
    case 'nonempty': return node('NonEmpty', compile(tree.item));
    default: return list(tree.kind, tree.items.map(compile));
    }
}
const compileAll = (syntaxes) => list('One', [...new Set([...syntaxes].map((syntax) => compile(parseSyntax(syntax))))]);

extraWords.forEach(word);
const compiled = (map) => [...map].map(([name, syntaxes]) => [name.toLowerCase(), compileAll(syntaxes)])
    .sort(([a], [b]) => (a < b ? -1 : 1));
const propertyList = compiled(properties);
const descriptorList = compiled(descriptors);
const typeNodes = [];
while (wanted.length) {
    const name = wanted.shift();
    typeNodes[types.get(name)] = compileAll(name.startsWith("'") ? properties.get(name.slice(1, -1)) : definitions.get(name));
}

const wordList = [...words].sort();
const wordIndexes = new Map(wordList.map((name, index) => [`w:${name}`, index]));
const rangeFeatures = drafts.atrules.flatMap(({ name: rule, descriptors: own }) =>
    (own ?? []).filter(({ type }) => type === 'range').map(({ name }) => `${rule}/${name}`));

function wrap(items) {
    const lines = [];
    for (const item of items) {
        if (lines.length === 0 || lines.at(-1).length + item.length + 2 > 118)
            lines.push('   ');
        lines[lines.length - 1] += ` ${item},`;
    }
    return lines.join('\n');
}
const array = (type, name, items) => `constexpr ${type} ${name}[] = {\n${wrap(items)}\n};\n`;
const number = (text) => (text.includes('∞') ? `${text.startsWith('-') ? '-' : ''}Infinite` : `${parseFloat(text)}`);
writeFileSync(
    resource('style-values.inc'),
    '// Written by scripts/make-style-values.mjs. Names are ASCII, in lower case and sorted.\n' +
        array('std::string_view', 'Words', wordList.map((name) => `"${name}"`)) +
        array('SRange', 'Ranges', ranges.map((range) => `{${range.split(',').map(number).join(', ')}}`)) +
        array('SSyntax', 'Syntaxes', nodes.map((text) => {
            const [kind, a, b, min, max] = text.split('\u0001');
            const first = wordIndexes.get(a) ?? a;
            return `{EN::${kind}, ${min}, ${max}, ${first}, ${b}}`;
        })) +
        array('std::uint16_t', 'Children', children.map(String)) +
        array('std::uint16_t', 'Types', typeNodes.map(String)) +
        array('std::string_view', 'TypeNames', [...types.keys()].map((name) => `"${name}"`)) +
        array('SNamedSyntax', 'Properties', propertyList.map(([name, index]) => `{"${name}", ${index}}`)) +
        array('SNamedSyntax', 'Descriptors', descriptorList.map(([name, index]) => `{"${name}", ${index}}`)) +
        array('std::string_view', 'RangeFeatures', [...new Set(rangeFeatures)].sort().map((name) => `"${name}"`)) +
        array('std::string_view', 'PseudoNames', [...pseudos].sort().map((name) => `"${name}"`)),
);
console.log(`${nodes.length} nodes, ${children.length} children, ${types.size} types, ${wordList.length} words`);
