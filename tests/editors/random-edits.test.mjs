// node random-edits.test.mjs PROGRAM: 1,000 random edits of 20 documents of a project, some closed and opened
// again, settings changed meanwhile, end in what a fresh check of the final texts finds. SEED chooses others.

import assert from 'node:assert/strict'
import { execFileSync, spawnSync } from 'node:child_process'
import { readFileSync } from 'node:fs'
import { join } from 'node:path'
import { test } from 'node:test'
import { Client, Folder, applyEdits, brief, program, units, until } from './client.mjs'

const seed = Number(process.env.SEED ?? 11)

/** The same numbers for the same seed. */
function makeRandom(state) {
  return (limit) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0
    return Math.floor((state / 2 ** 32) * limit)
  }
}

const pieces = [
  '$a = 1;\n', '$b = 2\n', 'if ($a) {\n', '}\n', 'f(', ')', ';', '😀', "'", '"', '<strng>', '</p>', '?>', '<?php\n',
  ' colr: red; ', '\n', '\n\n', '/* ', ' */', 'é', '<p widht="1">', 'foreach ($a as $b)', '// code-analyzer-ignore 102\n',
  'else', '<style>', '</style>', 'class A {', 'function () {', '',
]
const beginnings = {
  php: "<?php\nfunction f($a) {\n  return '😀' . $a;\n}\n?>\n<p class=\"x\">text</p>\n",
  html: '<!DOCTYPE html>\n<body>\n<p id="a">😀</p>\n<style>\na { color: red }\n</style>\n</body>\n',
  css: 'a { color: red }\n@media print { p { margin: 0 } }\n',
}

const wrong = '<?php\n$b = 2\n$c = 3;\n'
const settings = [
  '{ "baseline": "old.json" }',
  '{ "codes": { "2001": "warning" }, "overrides": [{ "paths": ["d1?.*"], "codes": { "102": "off", "2002": "off" } }] }',
  '{ "grammar": false, "ownNames": { "tags": ["strng"] } }',
  '{ "phpVersion": "7.4", "exclude": ["d7.css"] }',
]

test(`random edits (SEED=${seed})`, async () => {
  const random = makeRandom(seed)
  const folder = new Folder()
  const client = new Client()
  const encoding = ['utf-16', 'utf-8', 'utf-32'][seed % 3]
  folder.write('was.php', wrong)
  execFileSync(program, ['check', '--no-config', '--generate-baseline', '--baseline', 'old.json', '.'], { cwd: folder.path, stdio: 'ignore' })
  // What the documents were: the baseline knows some of it.
  folder.write('old.json', readFileSync(join(folder.path, 'old.json'), 'utf8').replaceAll('was.php', 'd0.php'))
  folder.write('code-analyzer.json', settings[0])
  await client.start(folder, { general: { positionEncodings: [encoding] } })
  const documents = []
  for (let i = 0; i < 20; ++i) {
    const language = ['php', 'php', 'html', 'css'][i % 4]
    const text = i === 0 ? wrong : beginnings[language]
    const document = { uri: folder.uri(`d${i}.${language}`), language, text, version: 1, name: `d${i}.${language}` }
    documents.push(document)
    folder.write(document.name, beginnings[language])
    await client.open(document.uri, text, language)
  }
  const place = (text) => {
    const lines = text.split('\n')
    const line = random(lines.length)
    return { line, character: units([...lines[line]].slice(0, random([...lines[line]].length + 1)).join(''), encoding) }
  }
  for (let edits = 0; edits < 1000; ) {
    const document = documents[random(documents.length)]
    if (random(40) === 0) {
      await client.close(document.uri)
      await client.open(document.uri, document.text, document.language, ++document.version)
      continue
    }
    if (random(100) === 0) {
      folder.write('code-analyzer.json', settings[random(settings.length)])
      await client.changedFiles(folder.uri('code-analyzer.json'))
    }
    ++edits
    const changes = []
    for (let j = random(3); j >= 0; --j) {
      const [a, b] = [place(document.text), place(document.text)]
      const forward = a.line < b.line || (a.line === b.line && a.character <= b.character)
      // Mostly something is typed; now and then much goes at once.
      const range = random(4) ? { start: a, end: a } : { start: forward ? a : b, end: forward ? b : a }
      const newText = pieces[random(pieces.length)]
      document.text = applyEdits(document.text, [{ range, newText }], encoding)
      changes.push({ range, text: newText })
    }
    await client.change(document.uri, ++document.version, ...changes)
    if (random(10) === 0) await new Promise((resolve) => setTimeout(resolve, random(60)))
    if (random(50) === 0) await new Promise((resolve) => setTimeout(resolve, 230))
  }
  for (const { uri, version } of documents)
    await until(`the last version of ${uri}`, () => client.published.get(uri)?.version === version, 120000)

  for (const { name, text } of documents) folder.write(name, text)
  const { stdout } = spawnSync(program, ['check', '--format', 'json', ...documents.map(({ name }) => name)], { cwd: folder.path, encoding: 'utf8' })
  const found = Object.fromEntries(documents.map(({ name }) => [name, []]))
  for (const record of JSON.parse(stdout)) {
    const lines = documents.find(({ name }) => name === record.file).text.split('\n')
    const at = (line, column) => `${line - 1}:${units([...lines[line - 1]].slice(0, column - 1).join(''), encoding)}`
    const place = `${at(record.startLine, record.startColumn)}-${at(record.endLine, record.endColumn)}`
    found[record.file].push(`${place} ${record.code} ${record.severity}`)
  }
  const served = ({ uri }) =>
    client.published.get(uri).diagnostics.map((diagnostic) => `${brief(diagnostic)} ${diagnostic.severity === 1 ? 'error' : 'warning'}`)
  // The last settings may have come behind the last edit.
  const isSettled = (document) => served(document).sort().join() === found[document.name].sort().join()
  await until('all', () => documents.every(isSettled)).catch(() => {})
  for (const document of documents) assert.deepEqual(served(document).sort(), found[document.name].sort(), document.name)
  assert.equal(await client.stop(), 0)
  folder.remove()
})
