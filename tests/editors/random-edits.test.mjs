// node random-edits.test.mjs PROGRAM: 1,000 random edits of 20 documents end in what a fresh check finds.

import assert from 'node:assert/strict'
import { execFileSync } from 'node:child_process'
import { test } from 'node:test'
import { Client, Folder, applyEdits, program, until } from './client.mjs'

const seed = Number(process.env.SEED ?? Date.now() % 1e9)

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

test(`random edits (SEED=${seed})`, async () => {
  const random = makeRandom(seed)
  const folder = new Folder()
  const client = new Client()
  await client.start(null)
  const documents = []
  for (let i = 0; i < 20; ++i) {
    const language = ['php', 'php', 'html', 'css'][i % 4]
    const text = beginnings[language]
    const document = { uri: folder.uri(`d${i}.${language}`), language, text, version: 1, name: `d${i}.${language}` }
    documents.push(document)
    await client.open(document.uri, text, language)
  }
  const place = (text) => {
    const lines = text.split('\n')
    const line = random(lines.length)
    return { line, character: [...lines[line]].slice(0, random([...lines[line]].length + 1)).join('').length }
  }
  for (let i = 0; i < 1000; ++i) {
    const document = documents[random(documents.length)]
    if (random(40) === 0) {
      await client.close(document.uri)
      await client.open(document.uri, document.text, document.language, ++document.version)
      continue
    }
    const changes = []
    for (let j = random(3); j >= 0; --j) {
      const [a, b] = [place(document.text), place(document.text)]
      const forward = a.line < b.line || (a.line === b.line && a.character <= b.character)
      // Mostly something is typed; now and then much goes at once.
      const range = random(4) ? { start: a, end: a } : { start: forward ? a : b, end: forward ? b : a }
      const newText = pieces[random(pieces.length)]
      document.text = applyEdits(document.text, [{ range, newText }])
      changes.push({ range, text: newText })
    }
    await client.change(document.uri, ++document.version, ...changes)
    if (random(10) === 0) await new Promise((resolve) => setTimeout(resolve, random(60)))
    if (random(50) === 0) await new Promise((resolve) => setTimeout(resolve, 230))
  }
  for (const { uri, version } of documents)
    await until(`the last version of ${uri}`, () => client.published.get(uri)?.version === version, 120000)
  assert.equal(await client.stop(), 0)

  for (const { name, text } of documents) folder.write(name, text)
  let fresh
  try {
    fresh = execFileSync(program, ['check', '--no-config', '--format', 'json', '.'], { cwd: folder.path, encoding: 'utf8' })
  } catch (error) {
    fresh = error.stdout // there are errors
  }
  const found = {}
  for (const record of JSON.parse(fresh)) {
    const line = documents.find((d) => `./${d.name}` === record.file).text.split('\n')
    const units = (y, x) => [...line[y - 1]].slice(0, x - 1).join('').length
    const at = `${record.startLine - 1}:${units(record.startLine, record.startColumn)}`
    const end = `${record.endLine - 1}:${units(record.endLine, record.endColumn)}`
    ;(found[record.file] ??= []).push(`${at}-${end} ${record.code} ${record.severity}`)
  }
  for (const { uri, name } of documents) {
    const served = client.published.get(uri).diagnostics.map(
      ({ range: { start, end }, code, severity }) =>
        `${start.line}:${start.character}-${end.line}:${end.character} ${code} ${severity === 1 ? 'error' : 'warning'}`,
    )
    assert.deepEqual(served.sort(), (found[`./${name}`] ?? []).sort(), name)
  }
  folder.remove()
})
