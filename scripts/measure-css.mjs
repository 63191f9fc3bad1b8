// measure-css.mjs FOLDER: which value errors of the check css-tree's lexer confirms, and which of its own the check
// finds, over the style sheets of a folder. Run "npm i --no-save css-tree" first; the program is $CODE_ANALYZER, or
// build/dev/bin/code-analyzer. Not part of ./test: it needs a folder of sheets that others wrote.
import { spawnSync } from 'node:child_process';
import { readFileSync, readdirSync } from 'node:fs';
import { join, resolve } from 'node:path';
import * as csstree from 'css-tree';

const folder = resolve(process.argv[2]);
const sheets = readdirSync(folder, { recursive: true }).filter((name) => name.endsWith('.css'));
// Values that the check leaves alone on purpose, and names, which are another check's.
const unjudged = /var\(|-(ms|moz|webkit|o|khtml)-|progid|\\|expression\(|alpha\(|attr\(|env\(|filter|opacity=|zoom|@\w/;
const descriptorRules = ['font-face', 'counter-style', 'property', 'page'];

function errorsOf(name) {
    const css = readFileSync(join(folder, name), 'utf8');
    const lines = css.split('\n');
    const errors = [];
    const add = (begin, end, text, message) => errors.push({ begin, end, text: text.replace(/\s+/g, ' '), message });
    const tree = csstree.parse(css, {
        positions: true,
        onParseError: (error) => add(error.line, error.line, lines[error.line - 1] ?? '', error.message),
    });
    csstree.walk(tree, function judge(node) {
        if (node.type !== 'Declaration' || node.property.startsWith('--'))
            return;
        const rule = this.atrule && !this.rule ? csstree.keyword(this.atrule.name).basename : '';
        const { error } = descriptorRules.includes(rule)
            ? csstree.lexer.matchAtruleDescriptor(this.atrule.name, node.property, node.value)
            : csstree.lexer.matchDeclaration(node);
        if (error && !/Unknown|var\(\)/.test(error.message))
            add(node.loc.start.line, node.loc.end.line, `${node.property}: ${csstree.generate(node.value)}`, error.message);
    });
    return errors;
}

const program = process.env.CODE_ANALYZER ?? 'build/dev/bin/code-analyzer';
const { stdout } = spawnSync(program, ['check', '--no-config', '--format', 'json', '-q', folder], {
    encoding: 'utf8',
    maxBuffer: 1 << 30,
});
const ours = new Map();
for (const record of JSON.parse(stdout))
    ours.set(resolve(record.file), [...(ours.get(resolve(record.file)) ?? []), record]);
const meets = (record, error) => record.startLine <= error.end && record.endLine >= error.begin;

let theirs = 0;
let found = 0;
let mine = 0;
let confirmed = 0;
for (const name of sheets) {
    const records = ours.get(join(folder, name)) ?? [];
    const all = errorsOf(name);
    for (const error of all.filter(({ text }) => !unjudged.test(text))) {
        ++theirs;
        if (records.some((record) => meets(record, error)))
            ++found;
        else
            console.log(`not found: ${name}:${error.begin}: ${error.text.slice(0, 100)}`);
    }
    for (const record of records.filter(({ severity, code }) => severity === 'error' && code > 2502 && code < 3000)) {
        ++mine;
        if (all.some((error) => meets(record, error)))
            ++confirmed;
        else
            console.log(`not confirmed: ${name}:${record.startLine}: ${record.message}`);
    }
}
console.log(`${sheets.length} sheets: ${confirmed} of our ${mine} errors confirmed, ${found} of their ${theirs} found`);
