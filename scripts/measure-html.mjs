// measure-html.mjs FOLDER [REPORT]: which errors of the check the Nu checker confirms, and which parse errors of its own
// the check finds, over the HTML documents of a folder. Run "npm i --no-save vnu-jar" first, with Java installed; the
// program is $CODE_ANALYZER, or build/dev/bin/code-analyzer. What the Nu checker says is kept in REPORT and read from there
// if it exists. Not part of ./test: it needs a folder of documents that others wrote.
import { spawnSync } from 'node:child_process';
import { closeSync, existsSync, mkdtempSync, openSync, readFileSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const folder = resolve(process.argv[2]);
const temporary = mkdtempSync(join(tmpdir(), 'measure-html-'));
const report = process.argv[3] ?? join(temporary, 'report.json');
if (!existsSync(report)) {
    const jar = createRequire(import.meta.url).resolve('vnu-jar/build/dist/vnu.jar');
    const output = openSync(report, 'w');
    spawnSync('java', ['-Xss4m', '-jar', jar, '--format', 'json', '--exit-zero-always', folder], {
        stdio: ['ignore', 'inherit', output],
    });
    closeSync(output);
}

// What the HTML parser says, as against the schema, whose rules of what may stand where are not the check's.
const parseErrors = [
    /^Stray (start|end) tag/, /^Unclosed element/, /^End tag/, /^Duplicate attribute/, /^Quote /, /^No space between/,
    /^Saw /, /^Named character reference/, /^Bad start tag/, /^A? ?[“"]?.*start tag seen but an element of the same type/,
    /^Misplaced non-space/, /^Heading cannot be a child/, /^Self-closing syntax/,
    /^No .* element (in scope|to close)/, /^Forbidden code point/, /^Bogus comment/, /^Consecutive hyphens/,
    /^& did not start/, /^Start tag .* seen in/, /^Start tag for/, /^Non-space character/, /^Expected/, /^Garbage/, /^Bad character/,
    /^Attribute without value/, /^An? .* start tag seen/, /^Character reference/, /^A numeric character reference/,
    /^End of file/, /^.* element between .* and/, /^Unclosed elements/, /^Cannot recover/, /^A slash was not immediately/,
    /^Nested/, /^Comment/, /^Premature end/, /^.*in the trailing/, /^Missing/, /^Unquoted/, /^CDATA/, /^File ended/,
];
// What is not about a slip in the text: doctypes, the head of XHTML, encodings.
const leftAlone = [/doctype/i, /encoding/i, /forbidden character|private use/i, /XML processing instruction/, /^Cannot recover/];
// What the parser says again and again of one tag that was lost or is too much, of which the check tells once.
const followUps = [/open elements/, /^Unclosed element/, /unclosed elements/, /violates nesting/, /^End of file/];

const theirs = new Map();
const givenUp = new Map(); // files that the Nu checker has read up to a line
const { messages } = JSON.parse(readFileSync(report, 'utf8'));
for (const { type, url, firstLine, lastLine, message } of messages) {
    if (type !== 'error')
        continue;
    const file = fileURLToPath(url);
    if (/^Cannot recover/.test(message))
        givenUp.set(file, lastLine);
    const isParse = parseErrors.some((pattern) => pattern.test(message)) && !leftAlone.some((pattern) => pattern.test(message));
    theirs.set(file, [...(theirs.get(file) ?? []), { begin: firstLine ?? lastLine, end: lastLine, message, isParse }]);
}

const program = process.env.CODE_ANALYZER ?? 'build/dev/bin/code-analyzer';
const sarif = join(temporary, 'ours.sarif');
spawnSync(program, ['check', '--no-config', '--include', '*.html', '--format', 'sarif', '-o', sarif, '-q', folder]);
const lines = ({ physicalLocation: { region } }) => ({ begin: region.startLine, end: region.endLine ?? region.startLine });
const ours = new Map();
const log = JSON.parse(readFileSync(sarif, 'utf8'));
for (const { ruleId, level, message, locations, relatedLocations } of log.runs[0].results) {
    const file = resolve(fileURLToPath(new URL(locations[0].physicalLocation.artifactLocation.uri, `file://${process.cwd()}/`)));
    const places = [...locations, ...(relatedLocations ?? [])].map(lines);
    ours.set(file, [...(ours.get(file) ?? []), { code: Number(ruleId), level, message: message.text, places }]);
}
rmSync(temporary, { recursive: true });

// The parser names the tag that it takes or leaves, the check the place of the slip: a line more or less.
const meet = (record, error) => record.places.some(({ begin, end }) => begin <= error.end + 1 && end >= error.begin - 1);
const isOfNesting = ({ code }) => (code > 2100 && code < 2200) || code === 2014;
// HTML beyond names; what styles hold is measured by measure-css.mjs.
const isJudged = ({ code, level }) => level === 'error' && code > 2000 && code < 2500;

const show = (file) => file.slice(folder.length + 1);
const tally = new Map();
const count = (what, isGood) => {
    const [good, all] = tally.get(what) ?? [0, 0];
    tally.set(what, [good + (isGood ? 1 : 0), all + 1]);
};
for (const [file, records] of ours)
    for (const record of records.filter(isJudged)) {
        if (record.places[0].begin > (givenUp.get(file) ?? Infinity))
            continue;
        const isConfirmed = (theirs.get(file) ?? []).some((error) => meet(record, error));
        count('confirmed', isConfirmed);
        count(`  ${record.code}`, isConfirmed);
        if (!isConfirmed)
            console.log(`not confirmed: ${show(file)}:${record.places[0].begin}: [${record.code}] ${record.message}`);
    }
for (const [file, errors] of theirs)
    for (const error of errors.filter(({ isParse }) => isParse)) {
        const records = (ours.get(file) ?? []).filter(({ code }) => code > 2000 && code < 2500);
        const isFound = records.some((record) => meet(record, error));
        const follows = records.some((record) => isOfNesting(record) && record.places[0].begin <= error.end);
        if (!isFound && follows && followUps.some((pattern) => pattern.test(error.message))) {
            count('follow from one that is told', true);
            continue;
        }
        count('found', isFound);
        count(`  ${error.message.replace(/“[^”]*”/g, '…').slice(0, 60)}`, isFound);
        if (!isFound)
            console.log(`not found: ${show(file)}:${error.begin}: ${error.message}`);
    }
for (const [what, [good, all]] of [...tally].sort(([a], [b]) => (a < b ? -1 : 1)))
    console.log(`${what}: ${good} of ${all}`);
