// node pull.test.mjs PROGRAM: an editor that asks for diagnostics gets those of the text and settings that it
// knows, however it asks.

import assert from 'node:assert/strict'
import { test } from 'node:test'
import rpc from 'vscode-languageserver-protocol/node.js'
import { brief, eachWithServer, until } from './client.mjs'

let folder
let client
eachWithServer((...made) => ([folder, client] = made))

const capabilities = { textDocument: { diagnostic: {} }, workspace: { diagnostics: { refreshSupport: true } } }
const wrong = '<?php\n$a = 1;\n$b = = 2;\n'
const found = '2:5-2:6 1025'
const ask = (uri, ...token) => client.connection.sendRequest('textDocument/diagnostic', { textDocument: { uri } }, ...token)
const askAll = async (previousResultIds = []) => (await client.request('workspace/diagnostic', { previousResultIds })).items
const briefs = ({ items }) => items.map(brief)

test('an answer waits for the check of the newest text', async () => {
  await client.start(null, capabilities)
  const uri = folder.uri('a.php')
  await client.open(uri, wrong)
  const answers = []
  for (let version = 2; version < 12; ++version) {
    await client.change(uri, version, { range: { start: { line: 1, character: 0 }, end: { line: 1, character: 0 } }, text: '\n' })
    answers.push(ask(uri))
  }
  // The mistake moves down with each version; who asked for one may get a newer one, never an older one.
  const lines = (await Promise.all(answers)).map(({ items }) => items[0].range.start.line)
  for (const [i, line] of lines.entries()) assert.ok(line >= i + 3, `${lines}`)
  assert.equal(lines.at(-1), 12)
  assert.equal(client.history.length, 0)
})

test('a question can be taken back, and others are still answered', async () => {
  await client.start(null, capabilities)
  const uri = folder.uri('a.php')
  await client.open(uri, wrong)
  const source = new rpc.CancellationTokenSource()
  const cancelled = ask(uri, source.token)
  const other = ask(uri)
  source.cancel()
  await assert.rejects(cancelled, { code: -32800 })
  assert.deepEqual(briefs(await other), [found])
  await client.notify('$/cancelRequest', { id: 4711 })
  await client.notify('$/cancelRequest', {})
  await client.change(uri, 2, { text: '<?php\n' })
  const closing = ask(uri)
  await client.close(uri)
  assert.deepEqual(briefs(await closing), [])
  assert.deepEqual(briefs(await ask(uri)), [])
})

test('documents that nobody checks are answered at once', async () => {
  await client.start(null, capabilities)
  for (const [name, language] of [['a.txt', 'plaintext'], ['a.tpl', 'php'], ['a.ctp', 'php'], ['untitled:x', 'sql']]) {
    const uri = name.includes(':') ? name : folder.uri(name)
    await client.open(uri, wrong, language)
    assert.deepEqual(briefs(await ask(uri)), [], name)
  }
})

test('changed settings are never answered by what was found under the old ones', async () => {
  folder.write('code-analyzer.json', '{}')
  await client.start(folder, capabilities)
  const uri = folder.uri('a.php')
  await client.open(uri, '<?php\n$a = [1, 2;\n')
  assert.deepEqual((await ask(uri)).items.length, 1)
  const settings = [
    ['{ "grammar": false }', 1103],
    ['{}', 1075],
  ]
  const codes = []
  for (let round = 0; round < 4; ++round) {
    for (const [text] of settings) {
      folder.write('code-analyzer.json', text)
      await client.changedFiles(folder.uri('code-analyzer.json'))
      codes.push((await ask(uri)).items.map(({ code }) => code).join())
    }
  }
  // Each of the two has its own findings, round after round.
  assert.notEqual(codes[0], codes[1])
  for (const [i, code] of codes.entries()) assert.equal(code, codes[i % 2])

  const page = folder.uri('page.html')
  await client.open(page, '<x:y></x:y><p a-b @click="c" v-if="d"></p>\n', 'html')
  for (const [text, expected] of [
    ['{ "markup": false }', [2001, 2002, 2002, 2002]],
    ['{ "markup": false, "ownNames": { "tags": ["x:*"] } }', [2002, 2002, 2002]],
    ['{ "markup": false, "ownNames": { "tags": ["x:*"], "attributes": ["*-*"] } }', [2002]],
    ['{ "markup": false, "ownNames": { "tags": ["x:*"], "attributes": ["a-b"] }, "presets": ["vue"] }', []],
  ]) {
    folder.write('code-analyzer.json', text)
    await client.changedFiles(folder.uri('code-analyzer.json'))
    assert.deepEqual((await ask(page)).items.map(({ code }) => code), expected, text)
  }

  const before = client.refreshes
  folder.write('code-analyzer.json', `{ "codes": { "${codes[1].split(',')[0]}": "off" } }`)
  await client.changedFiles(folder.uri('code-analyzer.json'))
  await until('the news', () => client.refreshes > before)
  assert.deepEqual((await ask(uri)).items, [])
})

test('a project’s files are told of, changes by few requests, and what has gone as gone', async () => {
  for (let i = 0; i < 150; ++i) folder.write(`${i}.php`, wrong)
  await client.start(folder, capabilities)
  let items = []
  for (let i = 0; i < 500 && items.filter((item) => item.items.length).length < 150; ++i) {
    items = await askAll()
    await new Promise((resolve) => setTimeout(resolve, 20))
  }
  assert.equal(items.length, 150)
  await until('the news', () => client.refreshes > 0)
  assert.ok(client.refreshes < 50, `${client.refreshes} requests`)
  const known = items.map(({ uri, resultId }) => ({ uri, value: resultId }))
  assert.ok((await askAll(known)).every(({ kind }) => kind === 'unchanged'))
  const before = client.refreshes
  await client.notify('workspace/didChangeWorkspaceFolders', { event: { added: [], removed: [folder.asWorkspaceFolder()] } })
  await until('the news', () => client.refreshes > before)
  let gone = []
  const isGone = (item) => item.kind === 'full' && item.items.length === 0
  for (let i = 0; i < 500 && !(gone.length && gone.every(isGone)); ++i) {
    gone = await askAll(known)
    await new Promise((resolve) => setTimeout(resolve, 20))
  }
  assert.ok(gone.every(isGone))
  assert.equal(gone.length, 150)
  assert.deepEqual(await askAll(), [])
})
