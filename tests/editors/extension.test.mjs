// node extension.test.mjs FOLDER: the extension for Visual Studio Code as it is unpacked: what it starts serves documents as
// it selects them, and what its manifest names is there.

import assert from 'node:assert/strict'
import { spawn } from 'node:child_process'
import { existsSync, readFileSync } from 'node:fs'
import { createRequire } from 'node:module'
import { join, resolve } from 'node:path'
import { test } from 'node:test'
import rpc from 'vscode-languageserver-protocol/node.js'

const folder = resolve(process.argv[2])
const require = createRequire(import.meta.url)
const { serverOf, optionsOf, selector } = require(join(folder, 'dist/server.js'))
const manifest = JSON.parse(readFileSync(join(folder, 'package.json'), 'utf8'))
const settings = { path: '', checkProject: false, configuration: '', delay: 0 }

test('the manifest names what is there, and lets no project name a program', () => {
  const { main, contributes } = manifest
  for (const file of [main, ...contributes.jsonValidation.map((v) => v.url)]) assert.ok(existsSync(join(folder, file)), file)
  const { properties } = contributes.configuration
  assert.equal(properties['codeAnalyzer.path'].scope, 'machine')
  // What the server is told has a setting each.
  const told = Object.keys(optionsOf({ ...settings, configuration: 'x' }))
  assert.deepEqual(told.sort(), Object.keys(properties).map((p) => p.split('.')[1]).filter((p) => p !== 'path').sort())
  const languages = manifest.activationEvents.map((event) => event.split(':')[1])
  assert.deepEqual(selector.map((s) => s.language), languages)
})

test('the program that the user names comes first', () => {
  assert.deepEqual(serverOf(folder, { path: '/mine' }), { command: '/mine', args: ['language-server'] })
  assert.equal(serverOf('/none', settings).command, 'code-analyzer')
})

test('the program in it serves', async () => {
  const { command, args } = serverOf(folder, settings)
  assert.ok(command.startsWith(folder))
  const server = spawn(command, args, { stdio: ['pipe', 'pipe', 'inherit'], env: { PATH: '/usr/bin:/bin' } })
  const connection = rpc.createProtocolConnection(
    new rpc.StreamMessageReader(server.stdout),
    new rpc.StreamMessageWriter(server.stdin),
  )
  const published = new Promise((done) => connection.onNotification(rpc.PublishDiagnosticsNotification.type, done))
  connection.listen()
  const begin = performance.now()
  await connection.sendRequest(rpc.InitializeRequest.type, {
    processId: process.pid,
    rootUri: null,
    capabilities: {},
    initializationOptions: optionsOf(settings),
  })
  console.log(`# from start to the answer of initialize: ${(performance.now() - begin).toFixed(0)} ms`)
  await connection.sendNotification(rpc.InitializedNotification.type, {})
  await connection.sendNotification(rpc.DidOpenTextDocumentNotification.type, {
    textDocument: { uri: 'file:///none/a.php', languageId: 'php', version: 1, text: '<?php\n$a = 1\n$b = 2;\n' },
  })
  const { diagnostics } = await published
  assert.deepEqual(diagnostics.map((d) => d.code), [1001])
  await connection.sendRequest(rpc.ShutdownRequest.type)
  await connection.sendNotification(rpc.ExitNotification.type)
  assert.equal(await new Promise((done) => server.on('exit', done)), 0)
})
