// node session.test.mjs PROGRAM: how an editor and the server meet, part, and what is asked in between.

import assert from 'node:assert/strict'
import { spawn } from 'node:child_process'
import { once } from 'node:events'
import { join } from 'node:path'
import { test } from 'node:test'
import rpc from 'vscode-languageserver-protocol/node.js'
import { brief, eachWithServer, program } from './client.mjs'

let folder
let client
eachWithServer((...made) => ([folder, client] = made))

const wrong = '<?php\n$a = 1;\n$b = = 2;\n'
const found = '2:5-2:6 1025'

for (const [name, transport] of [
  ['a socket at a path', () => rpc.createClientPipeTransport(join(folder.path, 'socket')).then((made) => [made, ['--pipe', join(folder.path, 'socket')]])],
  ['a port', () => rpc.createClientSocketTransport(45871).then((made) => [made, ['--socket=45871']])],
])
  test(`an editor may talk through ${name}`, async () => {
    const [made, args] = await transport()
    const server = spawn(program, ['language-server', ...args], { stdio: 'ignore' })
    const exited = once(server, 'exit')
    const connection = rpc.createProtocolConnection(...(await made.onConnected()))
    const published = new Promise((resolve) => connection.onNotification('textDocument/publishDiagnostics', resolve))
    connection.listen()
    await connection.sendRequest('initialize', { processId: process.pid, rootUri: null, capabilities: {} })
    await connection.sendNotification('initialized', {})
    await connection.sendNotification('textDocument/didOpen', { textDocument: { uri: 'file:///a.php', languageId: 'php', version: 1, text: wrong } })
    assert.deepEqual((await published).diagnostics.map(brief), [found])
    await connection.sendRequest('shutdown')
    await connection.sendNotification('exit')
    assert.deepEqual(await exited, [0, null])
  })

test('a client that is not there is named', async () => {
  const server = spawn(program, ['language-server', '--pipe', join(folder.path, 'nobody')], { stdio: ['pipe', 'ignore', 'pipe'] })
  let message = ''
  server.stderr.on('data', (text) => (message += text))
  const [code] = await once(server, 'close')
  assert.equal(code, 2)
  assert.match(message, /^code-analyzer: cannot reach the client at .*nobody: /)
})

test('the server ends when the editor that it serves was killed', async () => {
  const editor = spawn('sleep', ['600'])
  client.owner = editor.pid
  await client.start(folder)
  editor.kill('SIGKILL')
  assert.equal(await client.exited, 1)
})

test('the user\'s settings are asked for, and again when they change', async () => {
  const uri = folder.write('a.php', wrong)
  client.settings.codeAnalyzer = { checkProject: false }
  await client.start(folder, { workspace: { configuration: true } })
  const open = folder.uri('b.php')
  await client.open(open, wrong)
  await client.see(open, found)
  assert.equal(client.published.has(uri), false)
  client.settings = { codeAnalyzer: { checkProject: true } }
  await client.notify('workspace/didChangeConfiguration', { settings: null })
  await client.see(uri, found)
})

test('the first results of the workspace are waited for', async () => {
  for (let i = 0; i < 50; ++i) folder.write(`${i}.php`, wrong)
  await client.start(folder, { textDocument: { diagnostic: {} } })
  const { items } = await client.request('workspace/diagnostic', { previousResultIds: [] })
  assert.equal(items.length, 50)
  for (const item of items) assert.deepEqual(item.items.map(brief), [found])
})

test('a hover says what a mistake means', async () => {
  const { capabilities } = await client.start(folder)
  assert.equal(capabilities.hoverProvider, true)
  const uri = folder.uri('a.php')
  await client.open(uri, wrong)
  await client.diagnostics(uri, 1)
  const at = (line, character) => client.request('textDocument/hover', { textDocument: { uri }, position: { line, character } })
  const { contents, range } = await at(2, 5)
  assert.equal(contents.kind, 'markdown')
  assert.match(contents.value, /^## 1025\n[^]*To fix it: /)
  assert.deepEqual(range, client.published.get(uri).diagnostics[0].range)
  assert.equal(await at(1, 0), null)
  assert.equal(await client.request('textDocument/hover', { textDocument: { uri: folder.uri('none.php') }, position: { line: 0, character: 0 } }), null)
})

for (const resolves of [false, true])
  test(`all that can be fixed is fixed at once (${resolves ? 'looked for when it is picked' : 'with its edit'})`, async () => {
    const codeAction = resolves ? { dataSupport: true, resolveSupport: { properties: ['edit'] } } : {}
    const { capabilities } = await client.start(folder, { textDocument: { codeAction } })
    assert.equal(capabilities.codeActionProvider.resolveProvider, resolves)
    const uri = folder.uri('a.php')
    const text = '<?php\nf(1;\ng(2;\n'
    await client.open(uri, text)
    const range = { start: { line: 0, character: 0 }, end: { line: 0, character: 0 } }
    let [action] = await client.request('textDocument/codeAction', { textDocument: { uri }, range, context: { diagnostics: [], only: ['source.fixAll'] } })
    assert.equal('edit' in action, !resolves)
    if (resolves) action = await client.request('codeAction/resolve', action)
    const [edit] = action.edit.changes[uri]
    await client.change(uri, 2, { range: edit.range, text: edit.newText })
    assert.deepEqual(await client.diagnostics(uri, 2), [])
    const again = await client.request('textDocument/codeAction', { textDocument: { uri }, range, context: { diagnostics: [], only: ['source.fixAll'] } })
    assert.deepEqual(again, [])
  })
