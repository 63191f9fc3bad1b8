// Holds the tokenizer's parse errors against those of parse5, over texts that cover its states: the same names at the
// same places. Usage: node html-oracle.test.mjs PROGRAM [TEXTS] [SEED]
import { spawnSync } from 'node:child_process';
import { createRequire } from 'node:module';
import { pathToFileURL } from 'node:url';

const [program, count = '20000', seed = '21'] = process.argv.slice(2);
const require = createRequire(new URL('../editors/package.json', import.meta.url));
const { parse } = await import(pathToFileURL(require.resolve('parse5')));
const allowed = 0.001;

let state = Number(seed) >>> 0;
// A number below `limit`: a linear congruential generator, so that each run sees the same texts.
function random(limit) {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 4294967296) * limit);
}
const pick = (items) => items[random(items.length)];
const maybe = (text, odds = 2) => (random(odds) === 0 ? text : '');
const repeat = (most, make) => Array.from({ length: random(most + 1) }, make).join('');

// Characters of every class that a state tells apart.
const characters = [
    ...'<>/!?-="\'`&;#[]aAzZx019 \t\n\f', '\r', '\r\n', '\0', '\x01', '\x0B', '\x7F', '\x85', '\u00E4', '\u2028', '\uD800',
    '\uDC00', '\uFDD0', '\uFFFE', '\u{1F600}', '\u{1FFFF}', '\u{10FFFF}',
];
const junk = (most = 4) => repeat(most, () => pick(characters));
const space = () => pick([' ', ' ', ' ', '\n', '\t', '\f', '\r\n', '', '  ']);
const word = () => pick(['a', 'b', 'A', 'id', 'class', 'x-y', 'style', 'data', '=c', 'e"', "f'", 'g<h', '\u00E4', '\0']);

const references = [
    'amp', 'AMP', 'copy', 'lt', 'notit', 'notin', 'not', 'quot', 'foo', 'nbsp', 'frac12', 'there4', 'amps', 'x', '', '#',
    '#x', '#X', '#65', '#x41', '#0', '#x0', '#128', '#x80', '#13', '#9', '#1', '#xD800', '#xFDD0', '#x1FFFF', '#x110000',
    '#99999999999', '#xFFFFFFFFFF', '#a', '#xg', 'CounterClockwiseContourIntegral', 'fjlig',
];
const reference = () => `&${pick(references)}${pick([';', ';', '', '=', 'a', ' ', '1', '&', '<'])}`;
const value = () => repeat(3, () => pick([word, reference, junk])());
function attribute() {
    const name = pick([word, word, junk])();
    switch (random(6)) {
        case 0: return name;
        case 1: return `${name}${space()}=${space()}${value()}`;
        case 2: return `${name}='${value().replaceAll("'", '')}'`;
        default: return `${name}${space()}=${space()}"${value().replaceAll('"', '')}${maybe('"', 1.1)}`;
    }
}
const attributes = () => repeat(4, () => pick([' ', ' ', ' ', space(), '/', '']) + attribute());
const tagNames = ['p', 'P', 'b', 'i', 'span', 'br', 'img', 'em', 'x-y', 'hr', 'div'];
const startTag = () => `<${pick(tagNames)}${attributes()}${space()}${maybe('/', 4)}${maybe('>', 1.05)}`;
const endTag = () => `</${pick(tagNames)}${maybe(attributes(), 5)}${space()}${maybe('/', 8)}>`;
const dashes = ['-', '--', '-->', '--!>', '--!', '<!--', '<!-', '<!', '<', '!', '>', '--!--', '->', '<!-->', '<!--->', 'a'];
const comment = () => `<!--${repeat(5, () => pick(dashes))}${junk(2)}${pick(['-->', '-->', '-->', '--!>', '>', ''])}`;
const declaration = () => pick(['<!', '<?', '</', '<![CDATA[', '<!-', '<!d', '</>', '<']) + junk();
const identifier = () => pick(['"a"', "'a'", '"a', "'a>", '"', 'a', '', '"\0"', '>']);
const doctype = () =>
    `<!${pick(['doctype', 'DOCTYPE', 'DocType'])}${space()}${pick(['html', 'HTML', '', 'a', '\0', 'x"'])}${space()}` +
    pick(['', '', 'public', 'PUBLIC', 'system', 'SYSTEM', 'publi', 'x']) +
    `${space()}${identifier()}${maybe(space())}${maybe(identifier())}${space()}${maybe(junk(2), 3)}${maybe('>', 1.1)}`;
const rawWords = () => pick(['<!--', '-->', '--', '<script>', '</script>', '<script/', '</script ', '<', '</', '-', junk(2), '</scriptx', '</SCRIPT', reference(), '</title', '</style']);
function raw() {
    const name = pick(['script', 'script', 'script', 'style', 'title', 'textarea', 'xmp', 'iframe', 'noembed', 'SCRIPT']);
    return `<${name}${maybe(attributes(), 4)}>${repeat(7, rawWords)}${maybe(`</${name}${maybe(attributes(), 5)}>`, 1.2)}`;
}
// The other one takes no CDATA in titles and descriptions of SVG, which the standard does.
const foreign = () =>
    `<${pick(['svg', 'math'])}>${repeat(3, () => pick(['<![CDATA[', ']]>', ']', ']]', '<g>', '<a/>', '\0', 'a', '<style>x']))}` +
    `${junk(2)}${maybe('</svg>')}${maybe('</math>')}`;
const piece = () => pick([startTag, startTag, startTag, endTag, comment, comment, declaration, doctype, raw, reference, junk, foreign])();
const text = () => `${maybe('<!doctype html>')}${maybe('<body>')}${piece()}${repeat(3, piece)}`;

// Errors of the tokenizer; the others are those of the tree. Two are ours, and come only where it recovers.
const names = new Set(
    [...(await import('node:fs')).readFileSync(new URL('../../SDK/Kesh/SyntaxParser/HtmlProblems.def', import.meta.url), 'utf8')
        .matchAll(/"([a-z-]+)"/g)].map((match) => match[1]).filter((name) => !/^unclosed-/.test(name)),
);
// Where in our span the other one reports: mostly at the first character that is wrong.
const atLast = new Set([
    'abrupt-closing-of-empty-comment', 'cdata-in-html-content', 'end-tag-with-trailing-solidus', 'incorrectly-closed-comment',
    'unknown-named-character-reference',
]);
const atEnd =
    /^(eof-.*|.*-character-reference|character-reference-outside-unicode-range|non-void-.*|end-tag-with-attributes|duplicate-attribute|nested-comment|unexpected-solidus-in-tag|incorrectly-opened-comment)$/;
const place = (name, begin, end) =>
    atLast.has(name) ? end - 1 : atEnd.test(name) ? end : begin;

// Errors of a whole tag are placed at its beginning.
const of = (name) => name.startsWith('non-void') ? 'endOffset' : 'startOffset';

function theirs(source) {
    const errors = [];
    const points = []; // of each UTF-16 unit
    let point = 0;
    for (const character of source) {
        for (let i = 0; i < character.length; ++i)
            points.push(point);
        ++point;
    }
    points.push(point);
    parse(source, {
        scriptingEnabled: false,
        sourceCodeLocationInfo: true,
        onParseError: (error) => names.has(error.code) && errors.push(`${error.code} ${points[error[of(error.code)]]}`),
    });
    return errors.sort();
}

// The other one does not look for names of references in attributes; the standard does.
function ours(output) {
    const lines = output.split('\n').filter(Boolean).map((line) => line.split(' ')).map(([name, begin, end]) => [name, +begin, +end]);
    const tags = lines.filter(([name]) => name === 'tag');
    const isKnown = ([name, at]) =>
        name !== 'tag' && (name !== 'unknown-named-character-reference' || !tags.some(([, begin, end]) => begin < at && at < end));
    return lines.filter(isKnown).map(([name, begin, end]) => `${name} ${place(name, begin, end)}`).sort();
}

const texts = Array.from({ length: Number(count) }, text);
const input = texts.map((source) => [...source].map((c) => c.codePointAt(0)).join(' ')).join('\n') + '\n';
const run = spawnSync(program, { input, encoding: 'utf8', maxBuffer: 1 << 28 });
const outputs = run.stdout.split(/(?<=^|\n)\n/);
if (run.status !== 0 || outputs.length !== texts.length + 1)
    throw new Error(`the program failed: ${run.status} ${run.stderr}, ${outputs.length} answers`);
let different = 0;
const seen = new Set();
texts.forEach((source, i) => {
    const [a, b] = [ours(outputs[i]), theirs(source)];
    for (const error of b)
        seen.add(error.split(' ')[0]);
    if (a.join('\n') === b.join('\n'))
        return;
    if (++different <= 20)
        console.log(JSON.stringify(source), '\n  missing:', b.filter((e) => !a.includes(e)), '\n  too much:', a.filter((e) => !b.includes(e)));
});
const unseen = [...names].filter((name) => !seen.has(name));
console.log(`${texts.length} texts, ${different} judged differently; errors never met: ${unseen.join(', ') || 'none'}`);
process.exit(different > allowed * texts.length || unseen.length > 0 ? 1 : 0);
