// node --test vscode.test.mjs PROGRAM: what an editor built on VS Code's libraries sees of the server.

import assert from 'node:assert/strict'
import { existsSync, readFileSync } from 'node:fs'
import { join } from 'node:path'
import { test } from 'node:test'
import { Client, Folder, brief, eachWithServer, until } from './client.mjs'

let folder
let client
eachWithServer((...made) => ([folder, client] = made))

const position = (line, character) => ({ line, character })
const wrong = '<?php\n$a = 1;\n$b = = 2;\n'

test('a mistake behind an emoji and CR LF is shown in the columns that were agreed on, and goes when mended', async () => {
  const text = "<?php\r\n$é = '😀'  $b;\r\n"
  for (const [encoding, column] of [[undefined, 11], ['utf-8', 14], ['utf-32', 10]]) {
    const each = new Client()
    const result = await each.start(null, encoding ? { general: { positionEncodings: [encoding, 'utf-16'] } } : {})
    assert.equal(result.capabilities.positionEncoding, encoding ?? 'utf-16')
    const uri = folder.uri('a.php')
    await each.open(uri, text)
    assert.deepEqual(await each.diagnostics(uri, 1), [`1:${column}-1:${column + 2} 1012`])
    const [diagnostic] = each.published.get(uri).diagnostics
    assert.equal(diagnostic.source, 'code-analyzer')
    assert.equal(diagnostic.severity, 1)
    const [, list, line] = diagnostic.codeDescription.href.match(/^(.*errors\.md)#L(\d+)$/)
    assert.equal(readFileSync(new URL(list), 'utf8').split('\n')[line - 1], '## 1012')
    const at = position(1, column)
    await each.change(uri, 2, { range: { start: at, end: at }, text: '. ' })
    assert.deepEqual(await each.diagnostics(uri, 2), [])
    assert.equal(await each.stop(), 0)
  }
})

test('edits that come while a check waits or runs never let older results through', async () => {
  await client.start(null)
  const uri = folder.uri('a.php')
  await client.open(uri, wrong)
  let version = 1
  for (const pause of [0, 50, 190, 200, 205, 210, 250, 0, 0]) {
    await new Promise((resolve) => setTimeout(resolve, pause))
    const at = position(2, 0)
    await client.change(uri, ++version, { range: { start: at, end: at }, text: '\n' })
  }
  await client.change(uri, ++version, { text: '<?php\n$a = 1;\n' })
  assert.deepEqual(await client.diagnostics(uri, version), [])
  // Each version that was told of is the one whose text was looked at: the mistake moves down with it.
  for (const { version: v, diagnostics } of client.history)
    if (v < version) assert.equal(diagnostics[0]?.range.start.line, 2 + v - 1)
})

test('an error says where the bracket that it is about was opened', async () => {
  await client.start(null)
  const uri = folder.uri('a.php')
  await client.open(uri, "<?php\n$a = '😀' . f(1;\n")
  await client.diagnostics(uri, 1)
  const [{ relatedInformation }] = client.published.get(uri).diagnostics
  assert.equal(relatedInformation.length, 1)
  assert.equal(relatedInformation[0].location.uri, uri)
  assert.deepEqual(relatedInformation[0].location.range, { start: position(1, 13), end: position(1, 14) })
})

test('PHP is judged by the version that composer.json asks for', async () => {
  folder.write('composer.json', '{ "require": { "php": "^7.4" } }')
  await client.start(folder)
  const uri = folder.uri('a.php')
  await client.open(uri, '<?php\n$a = match (1) { default => 2 };\n')
  assert.equal((await client.diagnostics(uri, 1)).length, 1)
  folder.write('code-analyzer.json', '{ "phpVersion": "8.1" }')
  await client.notify('workspace/didChangeConfiguration', { settings: {} })
  await until('the error to go', () => client.published.get(uri).diagnostics.length === 0)
})

test('a project is checked with progress, and keeps what is known of its files', async () => {
  folder.write('src/a.php', wrong)
  folder.write('vendor/b.php', wrong)
  folder.write('c.php', '<?php\n')
  await client.start(folder, {
    window: { workDoneProgress: true },
    workspace: { didChangeWatchedFiles: { dynamicRegistration: true } },
  })
  const uri = folder.uri('src/a.php')
  await until('the end of the progress', () => client.progress.at(-1)?.kind === 'end')
  await until('the project’s errors', () => client.published.get(uri)?.diagnostics.length === 1)
  assert.equal(client.progress[0].kind, 'begin')
  assert.equal(client.published.get(folder.uri('vendor/b.php')), undefined)
  assert.ok(client.registrations.some((r) => r.method === 'workspace/didChangeWatchedFiles'))
  assert.ok(!existsSync(join(folder.path, '.code-analyzer')))

  // Typed, then given up: the file on disk counts again.
  await client.open(uri, wrong)
  await client.change(uri, 2, { text: '<?php\n' })
  assert.deepEqual(await client.diagnostics(uri, 2), [])
  await client.close(uri)
  await until('the error of the file', () => client.published.get(uri).diagnostics.length === 1)

  folder.write('src/a.php', '<?php\n')
  await client.notify('workspace/didChangeWatchedFiles', { changes: [{ uri, type: 2 }] })
  await until('the error to go', () => client.published.get(uri).diagnostics.length === 0)

  // A file that belongs to no project.
  const other = new Folder()
  const stray = other.write('x.php', wrong)
  await client.open(stray, wrong)
  assert.equal((await client.diagnostics(stray, 1)).length, 1)
  await client.close(stray)
  await until('the stray file’s error to go', () => client.published.get(stray).diagnostics.length === 0)
  other.remove()
})

test('diagnostics are there for clients that ask', async () => {
  folder.write('other.php', wrong)
  const { capabilities } = await client.start(folder, { textDocument: { diagnostic: {} } })
  assert.equal(capabilities.diagnosticProvider.workspaceDiagnostics, true)
  const uri = folder.uri('a.php')
  const ask = (previousResultId) =>
    client.request('textDocument/diagnostic', { textDocument: { uri }, previousResultId })
  await client.open(uri, wrong)
  const first = await ask()
  assert.deepEqual(first.items.map(brief), ['2:5-2:6 1025'])
  assert.equal((await ask(first.resultId)).kind, 'unchanged')
  await client.change(uri, 2, { text: '<?php\n$a = 1;\n' })
  assert.deepEqual((await ask(first.resultId)).items, [])
  let workspace
  for (let i = 0; i < 200 && !workspace?.items.some((item) => item.uri === folder.uri('other.php')); ++i) {
    workspace = await client.request('workspace/diagnostic', { previousResultIds: [] })
    await new Promise((resolve) => setTimeout(resolve, 20))
  }
  const other = workspace.items.find((item) => item.uri === folder.uri('other.php'))
  assert.deepEqual(other.items.map(brief), ['2:5-2:6 1025'])
  assert.equal(client.history.length, 0)
})

test('whatever comes is answered, and the server goes on', async () => {
  await assert.rejects(client.request('textDocument/codeAction', {}), { code: -32002 })
  await client.start(null)
  await assert.rejects(client.request('initialize', { capabilities: {} }), { code: -32600 })
  await assert.rejects(client.request('no/such', {}), { code: -32601 })
  await assert.rejects(client.request('textDocument/codeAction', { textDocument: 7 }), { code: -32602 })
  const errors = []
  client.connection.onError((error) => errors.push(error))
  client.connection.onUnhandledNotification(() => {})
  const raw = (text) => client.process.stdin.write(text)
  const framed = (body) => `Content-Length: ${Buffer.byteLength(body)}\r\n\r\n${body}`
  raw(framed('{"jsonrpc":'))
  raw(framed('[1]'))
  raw(framed('"\\ud800"'))
  raw('Content-Length: none\r\n\r\n')
  raw(framed('{"jsonrpc":"2.0","method":7,"id":{"a":1}}'))
  raw(framed('['.repeat(100000)))
  await client.notify('textDocument/didChange', { textDocument: { uri: 'file:///nowhere.php', version: 1 }, contentChanges: [{ text: 'x' }] })
  await client.notify('textDocument/didClose', { textDocument: { uri: 'file:///nowhere.php' } })
  await client.notify('textDocument/didOpen', { textDocument: { uri: 5 } })
  const uri = 'untitled:Untitled-1'
  await client.open(uri, wrong)
  await client.change(uri, 2, { range: { start: position(99, 5), end: position(-1, 1e9) }, text: '' })
  await client.change(uri, 3, { text: wrong })
  assert.deepEqual(await client.diagnostics(uri, 3), ['2:5-2:6 1025'])
  assert.equal(await client.stop(), 0)
})

test('an end without a shutdown is not a success', async () => {
  await client.start(null)
  await client.notify('exit')
  assert.equal(await client.exited, 1)
  const second = new Client()
  await second.start(null)
  second.process.stdin.end()
  assert.equal(await second.exited, 1)
})

test('faulty settings are shown, and those from before go on', async () => {
  folder.write('code-analyzer.json', '{ "codes": { "1025": "off" } }')
  await client.start(folder)
  const uri = folder.uri('a.php')
  await client.open(uri, wrong)
  assert.deepEqual(await client.diagnostics(uri, 1), [])
  const settings = folder.write('code-analyzer.json', '{\n "cods": {} }')
  await client.notify('workspace/didChangeWatchedFiles', { changes: [{ uri: settings, type: 2 }] })
  await until('the message', () => client.messages.some((m) => m.startsWith('code-analyzer.json:2: unknown key')))
  await client.change(uri, 2, { text: wrong })
  assert.deepEqual(await client.diagnostics(uri, 2), [])
  folder.write('code-analyzer.json', '{}')
  await client.notify('workspace/didChangeConfiguration', { settings: {} })
  await until('the error', () => client.published.get(uri).diagnostics.length === 1)
})
