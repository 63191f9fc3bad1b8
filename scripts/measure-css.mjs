// measure-css.mjs FOLDER: which errors of the check css-tree's lexer or stylelint confirms, and which of theirs the check
// finds, over the style sheets of a folder. Run "npm i --no-save css-tree stylelint" first; the program is $CODE_ANALYZER,
// or build/dev/bin/code-analyzer. Not part of ./test: it needs a folder of sheets that others wrote.
import { spawnSync } from 'node:child_process';
import { readFileSync, readdirSync } from 'node:fs';
import { join, resolve } from 'node:path';
import * as csstree from 'css-tree';
import stylelint from 'stylelint';

const folder = resolve(process.argv[2]);
const sheets = readdirSync(folder, { recursive: true }).filter((name) => name.endsWith('.css'));
// Values that the check leaves alone on purpose, and names, which are another check's.
const unjudged = /var\(|-(ms|moz|webkit|o|khtml)-|progid|\\|expression\(|alpha\(|attr\(|env\(|filter|opacity=|zoom|@\w/;
// Right by older or newer standards than css-tree's.
const right = /^(speak: none|word-wrap: anywhere)$/;
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

// stylelint's rules that speak of mistakes; names of properties and tags are another check's.
const rules = {
    'color-no-invalid-hex': true,
    'function-linear-gradient-no-nonstandard-direction': true,
    'function-calc-no-unspaced-operator': true,
    'media-feature-name-no-unknown': true,
    'named-grid-areas-no-invalid': true,
    'no-invalid-position-at-import-rule': true,
    'selector-pseudo-class-no-unknown': true,
    'selector-pseudo-element-no-unknown': true,
    'string-no-newline': true,
    'unit-no-unknown': true,
    'at-rule-no-unknown': true,
};

async function lintErrorsOf(name) {
    const code = readFileSync(join(folder, name), 'utf8');
    const lines = code.split('\n');
    const { results } = await stylelint.lint({ code, config: { rules } });
    return results.flatMap(({ warnings }) =>
        warnings.map(({ line, endLine, rule, text }) => ({
            begin: line,
            end: endLine ?? line,
            text: lines[line - 1] ?? '',
            message: `${rule}: ${text}`,
        })),
    );
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

const theirs = { 'css-tree': 0, stylelint: 0 };
const found = { 'css-tree': 0, stylelint: 0 };
let mine = 0;
let confirmed = 0;
for (const name of sheets) {
    const records = ours.get(join(folder, name)) ?? [];
    const oracles = { 'css-tree': errorsOf(name), stylelint: await lintErrorsOf(name) };
    for (const [oracle, errors] of Object.entries(oracles))
        for (const error of errors.filter(({ text }) => !unjudged.test(text) && !right.test(text))) {
            ++theirs[oracle];
            if (records.some((record) => meets(record, error)))
                ++found[oracle];
            else
                console.log(`not found: ${name}:${error.begin}: ${error.text.slice(0, 100)} (${error.message})`);
        }
    const all = Object.values(oracles).flat();
    for (const record of records.filter(({ severity, code }) => severity === 'error' && code > 2502 && code < 3000)) {
        ++mine;
        if (all.some((error) => meets(record, error)))
            ++confirmed;
        else
            console.log(`not confirmed: ${name}:${record.startLine}: ${record.message}`);
    }
}
console.log(`${sheets.length} sheets: ${confirmed} of our ${mine} errors confirmed`);
for (const oracle of Object.keys(theirs))
    console.log(`${found[oracle]} of the ${theirs[oracle]} errors of ${oracle} found`);
