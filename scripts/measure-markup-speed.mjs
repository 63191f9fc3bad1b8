// measure-markup-speed.mjs FOLDER: how many times as fast the check is as stylelint (with a checker of values) over the
// style sheets of a folder and as html-validate over its HTML documents: one run of each, in one process with one thread,
// without the start of Node and of what it loads. Run "npm i --no-save stylelint stylelint-csstree-validator
// html-validate" first; the program is $CODE_ANALYZER, or build/release/bin/code-analyzer.
import { HtmlValidate } from 'html-validate';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import stylelint from 'stylelint';
import csstreeValidator from 'stylelint-csstree-validator';

const program = process.env.CODE_ANALYZER ?? 'build/release/bin/code-analyzer';
const folder = resolve(process.argv[2]);
const all = readdirSync(folder, { recursive: true });

const rules = [
    'block-no-empty', 'color-no-invalid-hex', 'declaration-block-no-duplicate-properties', 'function-no-unknown',
    'media-feature-name-no-unknown', 'no-invalid-position-at-import-rule', 'property-no-unknown',
    'selector-pseudo-class-no-unknown', 'selector-pseudo-element-no-unknown', 'selector-type-no-unknown', 'string-no-newline',
    'unit-no-unknown',
];
const config = {
    plugins: [csstreeValidator],
    rules: { ...Object.fromEntries(rules.map((rule) => [rule, true])), 'csstree/validator': true },
};
const html = new HtmlValidate({ extends: ['html-validate:standard'] });

const judges = {
    css: async (text) => {
        await stylelint.lint({ code: text, config });
    },
    html: (text) => html.validateString(text),
};

for (const [ending, judge] of Object.entries(judges)) {
    const texts = all
        .filter((name) => name.endsWith(`.${ending}`))
        .map((name) => readFileSync(join(folder, name), 'utf8'));
    if (texts.length === 0)
        continue;
    const bytes = texts.reduce((sum, text) => sum + Buffer.byteLength(text), 0);
    await judge(texts[0]);
    const begin = performance.now();
    for (const text of texts)
        await judge(text);
    const theirs = performance.now() - begin;

    // The same texts, and none of the others in the folder; the start of the program counts.
    const copies = mkdtempSync(join(tmpdir(), 'measure-speed-'));
    texts.forEach((text, number) => writeFileSync(join(copies, `${number}.${ending}`), text));
    const run = () => {
        const start = performance.now();
        spawnSync(program, ['check', '--no-config', '--jobs', '1', '-q', '--format', 'json', '-o', '/dev/null', copies]);
        return performance.now() - start;
    };
    run();
    const times = [run(), run(), run()].sort((a, b) => a - b);
    rmSync(copies, { recursive: true });
    const name = ending === 'css' ? 'stylelint' : 'html-validate';
    console.log(
        `${texts.length} .${ending}, ${(bytes / 1e6).toFixed(1)} MB: ${name} ${theirs.toFixed(0)} ms, ` +
            `the check ${times[1].toFixed(0)} ms: ${(theirs / times[1]).toFixed(0)} times as fast`,
    );
}
