// node workspace.test.mjs PROGRAM: folders, their settings and baselines, and what happens on disk.

import assert from 'node:assert/strict'
import { execFileSync } from 'node:child_process'
import { renameSync, rmSync } from 'node:fs'
import { join } from 'node:path'
import { test } from 'node:test'
import { Folder, brief, eachWithServer, program, until } from './client.mjs'

let folder
let client
eachWithServer((...made) => ([folder, client] = made))

const wrong = '<?php\n$a = 1;\n$b = = 2;\n'
const found = '2:5-2:6 1025'
const right = '<?php\n$a = 1;\n'
const pause = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds))
const generateBaseline = (...paths) =>
  execFileSync(program, ['check', '--generate-baseline', ...(paths.length ? paths : ['.'])], { cwd: folder.path, stdio: 'ignore' })

test('a baseline silences what was there, wherever its lines have moved, and nothing else', async () => {
  folder.write('code-analyzer.json', '{ "baseline": "old.json" }')
  const uri = folder.write('a.php', wrong)
  const closed = folder.write('b.php', wrong + '$c = = 3;\n')
  generateBaseline()
  const fresh = folder.write('c.php', wrong)
  await client.start(folder)
  await client.see(fresh, found)
  await client.open(uri, wrong)
  const cases = [
    [wrong, []],
    ['<?php\n\n\n$a = 1;\n    $b = = 2;\n', []],
    ['<?php\n$a = 1;\n$b = = 2;\n$b = = 2;\n', ['3:5-3:6 1025']],
    ['<?php\n$a = 1;\n$b = = 3;\n', [found]],
    ['<?php\n$a = 1;\n$b = = 2; // code-analyzer-ignore 1025\n', []],
    ['<?php\n$a = 1; // code-analyzer-ignore 1025\n$b = = 2;\n', ['1:11-1:31 9001']],
    [wrong, []],
  ]
  for (const [i, [text, expected]] of cases.entries()) {
    await client.change(uri, i + 2, { text })
    assert.deepEqual(await client.diagnostics(uri, i + 2), expected, text)
  }
  assert.equal(client.published.get(closed)?.diagnostics.length ?? 0, 0)
})

test('a baseline that is written anew, fails to be one, or goes, is followed', async () => {
  folder.write('code-analyzer.json', '{ "baseline": "base-*.json" }')
  const uri = folder.write('a.php', wrong)
  const open = folder.write('b.php', wrong)
  const file = folder.write('base-*.json', '{ "version": 1, "findings": [] }')
  await client.start(folder, { workspace: { didChangeWatchedFiles: { dynamicRegistration: true } } })
  await client.open(open, wrong)
  await client.see(open, found)
  await client.see(uri, found)
  const watched = () => JSON.stringify(client.registrations)
  assert.match(watched(), /base-\?\.json/)
  assert.match(watched(), /code-analyzer/)

  generateBaseline()
  await client.changedFiles(file)
  await client.see(uri)
  await client.see(open)
  folder.write('base-*.json', '{ "version": 1, "findings": [')
  await client.changedFiles(file)
  await client.change(open, 2, { text: '<?php\n' + wrong.slice(6) })
  assert.deepEqual(await client.diagnostics(open, 2), [], 'what was read before goes on')
  assert.match(client.messages.join('\n'), /base-\*\.json: no baseline/)
  const settings = folder.write('code-analyzer.json', '{ "baseline": "other.json" }')
  await client.changedFiles(settings)
  await client.see(uri, found)
  await client.see(open, found)
  assert.match(client.messages.at(-1), /other\.json: No such file/)
  assert.match(watched(), /other\.json/)
  assert.doesNotMatch(watched(), /base-/)
  assert.equal(client.registrations.length, 1)
})

test('settings count for files by their place, and each folder has its own', async () => {
  const second = new Folder()
  folder.write(
    'code-analyzer.json',
    `{ "codes": { "1025": "warning" }, "exclude": ["gen"], "include": ["*.module", "*.php"],
       "overrides": [{ "paths": ["t", "*.inc.php"], "codes": { "1025": "off" } }, { "paths": ["t/u/*.php"], "codes": { "1025": "error" } }] }`,
  )
  const places = { 'a.php': 2, 't/a.php': 0, 't/u/a.php': 1, 'a.inc.php': 0, 'gen/a.php': 0, 'm.module': 2, 'h.html': 0 }
  for (const name in places) folder.write(name, wrong)
  const beside = second.write('a.php', wrong)
  await client.start(folder)
  await client.notify('workspace/didChangeWorkspaceFolders', { event: { added: [second.asWorkspaceFolder()], removed: [] } })
  await client.see(beside, found)
  const severities = () =>
    Object.fromEntries(Object.keys(places).map((name) => [name, client.published.get(folder.uri(name))?.diagnostics[0]?.severity ?? 0]))
  assert.deepEqual(severities(), places)
  assert.equal(client.published.get(beside).diagnostics[0].severity, 1)
  for (const name in places) await client.open(folder.uri(name), wrong, name.endsWith('html') ? 'html' : 'php')
  for (const name in places) await client.diagnostics(folder.uri(name), 1)
  assert.deepEqual(severities(), places)

  // A command changes the settings of the folder that it is about.
  await client.open(beside, wrong)
  await client.diagnostics(beside, 1)
  const { range } = client.published.get(beside).diagnostics[0]
  const actions = await client.request('textDocument/codeAction', { textDocument: { uri: beside }, range, context: { diagnostics: [] } })
  await client.request('workspace/executeCommand', actions.find(({ command }) => command?.title.includes('in this project')).command)
  await client.see(beside)
  assert.deepEqual(severities(), places)
  second.remove()
})

test('folders come and go with what is known of their files', async () => {
  const second = new Folder()
  const uri = folder.write('a.php', wrong)
  const other = second.write('sub/b.css', 'a { colr: red }\n')
  const change = (added, removed) =>
    client.notify('workspace/didChangeWorkspaceFolders', {
      event: { added: added.map((f) => f.asWorkspaceFolder()), removed: removed.map((f) => f.asWorkspaceFolder()) },
    })
  await client.start(folder, { window: { workDoneProgress: true } })
  await client.see(uri, found)
  await change([second], [])
  await client.see(other, '0:4-0:8 2502')
  await client.see(uri, found)
  await change([], [folder])
  await client.see(uri)
  await client.see(other, '0:4-0:8 2502')
  await client.open(uri, wrong)
  await client.see(uri, found)
  await client.close(uri)
  await client.see(uri)
  await change([folder], [second])
  await client.see(other)
  await client.see(uri, found)
  await change([], [folder])
  await client.see(uri)
  await change([folder], [])
  await client.see(uri, found)
  await client.notify('workspace/didChangeConfiguration', { settings: { codeAnalyzer: { checkProject: false } } })
  await client.see(uri)
  await client.open(uri, wrong)
  await client.see(uri, found)
  await client.notify('workspace/didChangeConfiguration', { settings: { codeAnalyzer: { checkProject: true } } })
  await client.see(uri, found)
  assert.equal(await client.stop(), 0)
  second.remove()
})

test('a folder that is renamed or deleted takes along what is known of its files, and its settings', async () => {
  folder.write('code-analyzer.json', '{ "codes": { "1025": "warning" } }')
  const old = folder.write('old/deep/a.php', wrong)
  folder.write('old/code-analyzer.json', '{ "codes": { "1025": "error" } }')
  await client.start(folder)
  await client.see(old, found)
  assert.equal(client.published.get(old).diagnostics[0].severity, 1)
  renameSync(join(folder.path, 'old'), join(folder.path, 'new'))
  const renamed = folder.uri('new/deep/a.php')
  await client.notify('workspace/didRenameFiles', { files: [{ oldUri: folder.uri('old'), newUri: folder.uri('new') }] })
  await client.see(renamed, found)
  await client.see(old)
  assert.equal(client.published.get(renamed).diagnostics[0].severity, 1)
  rmSync(join(folder.path, 'new'), { recursive: true })
  await client.notify('workspace/didDeleteFiles', { files: [{ uri: folder.uri('new') }] })
  await client.see(renamed)
})

test('own names are those of the settings nearest to each file, in the folder and in open documents', async () => {
  const texts = {
    'a.html': ['<mine any=1></mine><theirs></theirs>\n<p my-thing=1></p>\n', ['0:19-0:26 2001']],
    'sub/a.html': ['<mine any=1></mine><theirs></theirs>\n<p my-thing=1></p>\n', ['0:0-0:5 2001', '1:3-1:11 2002']],
    'a.css': ['mine { own: 1 } theirs { top: 0 }\n', ['0:16-0:22 2501']],
    'sub/a.css': ['mine { own: 1 } theirs { top: 0 }\n', ['0:0-0:4 2501', '0:7-0:10 2502']],
  }
  folder.write('code-analyzer.json', '{ "ownNames": { "tags": ["mine"], "attributes": ["my-*"], "properties": ["own"] } }')
  const nested = folder.write('sub/code-analyzer.json', '{ "ownNames": { "tags": ["theirs"] } }')
  for (const [name, [text]] of Object.entries(texts)) folder.write(name, text)
  await client.start(folder)
  const see = async () => {
    for (const [name, [, expected]] of Object.entries(texts)) await client.see(folder.uri(name), ...expected)
  }
  await see()
  for (const [name, [text]] of Object.entries(texts)) await client.open(folder.uri(name), text, name.split('.')[1])
  await see()
  folder.write('sub/code-analyzer.json', '{ "ownNames": { "tags": ["mine"], "attributes": ["my-*"], "properties": ["own"] } }')
  await client.changedFiles(nested)
  texts['sub/a.html'][1] = texts['a.html'][1]
  texts['sub/a.css'][1] = texts['a.css'][1]
  await see()
})

test('each file goes by the settings and the composer.json that are nearest to it', async () => {
  const text = '<?php\n$a?->b;\n$a{0};\nif ($a);\n'
  const second = new Folder()
  folder.write('code-analyzer.json', '{ "phpVersion": "7.4" }')
  second.write('code-analyzer.json', '{ "grammar": false }')
  folder.write('new/code-analyzer.json', '{ "codes": { "901": "off" } }')
  const composer = folder.write('new/composer.json', '{ "require": { "php": "^8.2" } }')
  const cases = [
    [folder.write('a.php', text), ['1:2-1:5 1091', '3:7-3:8 901']],
    [folder.write('new/b.php', text), ['2:2-2:3 1092']],
    [second.write('c.php', text), ['3:7-3:8 901']],
  ]
  const all = async (order) => {
    for (const [uri, expected] of order) await client.see(uri, ...expected)
  }
  await client.start(folder)
  await client.notify('workspace/didChangeWorkspaceFolders', {
    event: { added: [second.asWorkspaceFolder()], removed: [] },
  })
  await all(cases)
  for (const order of [cases, cases.toReversed()]) {
    for (const [uri] of order) await client.open(uri, text)
    for (const [uri, expected] of order) assert.deepEqual(await client.diagnostics(uri, 1), expected)
    folder.write('new/composer.json', '{ "require": { "php": "^7.2" } }')
    await client.changedFiles(composer)
    await client.see(cases[1][0], '1:2-1:5 1091')
    folder.write('new/composer.json', '{ "require": { "php": "^8.2" } }')
    await client.changedFiles(composer)
    await all(order)
    for (const [uri] of order) await client.close(uri)
    await all(order)
  }
  folder.write('new/code-analyzer.json', '{\n"grammer": 1 }')
  await client.changedFiles(composer)
  await until('the fault', () => client.messages.some((message) => message.includes('code-analyzer.json:2: unknown key')))
  await all(cases)
  second.remove()
})

test('files that come, change and go on disk are followed', async () => {
  const uri = folder.write('a.php', right)
  folder.write('code-analyzer.json', '{ "exclude": ["gen"], "include": ["*.php", "*.module"] }')
  await client.start(folder)
  await client.open(folder.uri('open.php'), wrong)
  await client.see(folder.uri('open.php'), found)
  const changed = (type, ...names) => client.notify('workspace/didChangeWatchedFiles', { changes: names.map((name) => ({ uri: folder.uri(name), type })) })
  const names = ['new.php', 'sub/new.php', 'sub/m.module', 'vendor/v.php', 'gen/g.php', '.hidden/h.php', 'n.txt']
  for (const name of names) folder.write(name, wrong)
  folder.write('a.php', wrong)
  folder.write('binary.php', 'ab\0\n<strng>')
  await changed(1, ...names)
  await changed(2, 'a.php', 'binary.php', 'open.php')
  for (const name of ['a.php', 'new.php', 'sub/new.php', 'sub/m.module']) await client.see(folder.uri(name), found)
  folder.write('sub/m.module', right)
  await changed(2, 'sub/m.module')
  await client.see(folder.uri('sub/m.module'))
  rmSync(join(folder.path, 'new.php'))
  rmSync(join(folder.path, 'sub'), { recursive: true })
  await changed(3, 'new.php', 'sub/new.php', 'sub/m.module')
  await client.see(folder.uri('new.php'))
  await client.see(folder.uri('sub/new.php'))
  await client.see(uri, found)
  for (const name of ['vendor/v.php', 'gen/g.php', '.hidden/h.php', 'n.txt', 'binary.php'])
    assert.equal(client.published.get(folder.uri(name))?.diagnostics.length ?? 0, 0, name)
  assert.deepEqual(client.published.get(folder.uri('open.php')).diagnostics.map(brief), [found])
  const many = Array.from({ length: 60 }, (_, i) => `many/${i}.php`)
  for (const name of many) folder.write(name, wrong)
  await changed(1, ...many)
  for (const name of many) await client.see(folder.uri(name), found)
  assert.equal(await client.stop(), 0)
})

test('whatever moment a document is closed at, what is left is what the file on disk has', async () => {
  const filler = '$x = f([$a, 1, "x"]);\n'.repeat(4000)
  const cases = [
    // on disk, opened with, edited to
    [wrong + filler, wrong + filler, undefined, [found]],
    [wrong + filler, right + filler, undefined, [found]],
    [wrong + filler, wrong + filler, right + filler, [found]],
    [right + filler, wrong + filler, wrong + filler, []],
  ]
  for (const [i, [disk]] of cases.entries()) folder.write(`${i}.php`, disk)
  await client.start(folder)
  await client.see(folder.uri('0.php'), found)
  let version = 1
  for (const milliseconds of [0, 100, 199, 201, 203, 206, 210, 220, 240, 270, 400]) {
    for (const [i, [, text, edited]] of cases.entries()) {
      await client.open(folder.uri(`${i}.php`), text, 'php', ++version)
      if (edited) await client.change(folder.uri(`${i}.php`), ++version, { text: edited })
    }
    await pause(milliseconds)
    for (const i of cases.keys()) await client.close(folder.uri(`${i}.php`))
    await pause(300)
    for (const [i, [, , , expected]] of cases.entries()) await client.see(folder.uri(`${i}.php`), ...expected)
  }
  assert.equal(await client.stop(), 0)
})

test('settings that change while a check runs count for its results', async () => {
  const filler = '$x = f([$a, 1, "x"]);\n'.repeat(4000)
  const text = wrong + filler + 'f(1;\n'
  await client.start(folder)
  const uri = folder.uri('a.php')
  await client.open(uri, text)
  await client.diagnostics(uri, 1)
  let version = 1
  for (const milliseconds of [0, 150, 200, 205, 215, 230, 260]) {
    for (const [settings, expected] of [['{ "grammar": false, "codes": { "1025": "off" } }', 0], ['{}', 2]]) {
      await client.change(uri, ++version, { range: { start: { line: 0, character: 5 }, end: { line: 0, character: 5 } }, text: ' ' })
      await pause(milliseconds)
      folder.write('code-analyzer.json', settings)
      await client.changedFiles(folder.uri('code-analyzer.json'))
      await pause(300)
      await client.diagnostics(uri, version)
      const { diagnostics } = client.published.get(uri)
      if (expected === 0) assert.ok(!diagnostics.some(({ code }) => code === 1025), `after ${milliseconds}`)
      else assert.ok(diagnostics.length >= expected, `after ${milliseconds}: ${diagnostics.map(brief)}`)
    }
  }
  // Nothing that was known was ever taken back in between.
  assert.ok(!client.history.some(({ version: v, diagnostics }, i) => v === client.history[i + 1]?.version && diagnostics.length === 0 && i > 0 && client.history[i - 1].diagnostics.length > 0))
})

test('without a folder the first document tells where the settings are', async () => {
  folder.write('code-analyzer.json', '{ "codes": { "1025": "off" } }')
  const uri = folder.write('sub/a.php', wrong)
  await client.start(null)
  await client.open(uri, wrong)
  assert.deepEqual(await client.diagnostics(uri, 1), [])
})

test('a file is known under the name that the editor gives it', async () => {
  folder.write('a (1)!.php', wrong)
  const ours = folder.uri('a (1)!.php').replace(/[()!]/g, (c) => '%' + c.charCodeAt(0).toString(16).toUpperCase())
  const theirs = folder.uri('a (1)!.php')
  await client.start(folder)
  await client.see(ours, found)
  await client.open(theirs, wrong)
  await client.see(theirs, found)
  await client.see(ours)
  await client.close(theirs)
  await client.see(theirs, found)
  folder.write('a (1)!.php', right)
  await client.changedFiles(theirs)
  await client.see(theirs)
  await client.see(ours)
})
