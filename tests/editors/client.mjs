// A client of the language server, on the libraries that VS Code's own client is built on.

import { spawn } from 'node:child_process'
import { mkdtempSync, mkdirSync, rmSync, writeFileSync } from 'node:fs'
import { tmpdir } from 'node:os'
import { dirname, join, resolve } from 'node:path'
import { pathToFileURL } from 'node:url'
import { afterEach, beforeEach } from 'node:test'
import rpc from 'vscode-languageserver-protocol/node.js'

export const program = resolve(process.argv[2])

/** Waits for a condition; fails loudly instead of hanging. */
export async function until(what, condition, milliseconds = 30000) {
  const end = Date.now() + milliseconds
  for (;;) {
    const value = condition()
    if (value) return value
    if (Date.now() > end) throw new Error(`waited in vain for ${what}`)
    await new Promise((resolve) => setTimeout(resolve, 5))
  }
}

export class Folder {
  path = mkdtempSync(join(tmpdir(), 'code-analyzer-'))
  write(name, text) {
    const file = join(this.path, name)
    mkdirSync(dirname(file), { recursive: true })
    writeFileSync(file, text)
    return pathToFileURL(file).href
  }
  uri(name) {
    return pathToFileURL(join(this.path, name)).href
  }
  asWorkspaceFolder() {
    return { uri: pathToFileURL(this.path).href, name: 'test' }
  }
  remove() {
    rmSync(this.path, { recursive: true, force: true })
  }
}

export class Client {
  published = new Map() // URI: the last parameters
  history = []
  progress = []
  messages = []
  registrations = []
  refreshes = 0
  settings = {} // of the user, by section
  owner = process.pid
  faults = [] // what no server may do

  constructor() {
    this.process = spawn(program, ['language-server'], { stdio: ['pipe', 'pipe', 'inherit'] })
    this.exited = new Promise((resolve) => this.process.on('exit', (code) => resolve(code)))
    this.connection = rpc.createProtocolConnection(
      new rpc.StreamMessageReader(this.process.stdout),
      new rpc.StreamMessageWriter(this.process.stdin),
    )
    this.connection.onRequest('workspace/configuration', ({ items }) => items.map(({ section }) => this.settings[section] ?? null))
    this.connection.onNotification('textDocument/publishDiagnostics', (params) => {
      const last = this.published.get(params.uri)
      if (last?.version > params.version) this.faults.push(`version ${params.version} of ${params.uri} after ${last.version}`)
      this.published.set(params.uri, params)
      this.history.push(params)
    })
    this.connection.onNotification('$/progress', (params) => this.progress.push(params.value))
    this.connection.onNotification('window/showMessage', (params) => this.messages.push(params.message))
    this.connection.onNotification('window/logMessage', (params) => this.messages.push(params.message))
    this.connection.onRequest('window/workDoneProgress/create', () => null)
    this.connection.onRequest('workspace/diagnostic/refresh', () => {
      ++this.refreshes
      return null
    })
    this.connection.onRequest('client/registerCapability', (params) => {
      this.registrations.push(...params.registrations)
      return null
    })
    this.connection.onRequest('client/unregisterCapability', (params) => {
      const gone = params.unregisterations.map(({ id }) => id)
      this.registrations = this.registrations.filter(({ id }) => !gone.includes(id))
      return null
    })
    this.connection.listen()
  }

  async start(folder, capabilities = {}, options = {}) {
    const result = await this.request('initialize', {
      processId: this.owner,
      rootUri: null,
      workspaceFolders: folder ? [folder.asWorkspaceFolder()] : null,
      capabilities,
      initializationOptions: options,
    })
    await this.notify('initialized', {})
    return result
  }

  request(method, params) {
    return this.connection.sendRequest(method, params)
  }
  notify(method, params) {
    return this.connection.sendNotification(method, params)
  }
  open(uri, text, languageId = 'php', version = 1) {
    return this.notify('textDocument/didOpen', { textDocument: { uri, languageId, version, text } })
  }
  change(uri, version, ...contentChanges) {
    return this.notify('textDocument/didChange', { textDocument: { uri, version }, contentChanges })
  }
  close(uri) {
    return this.notify('textDocument/didClose', { textDocument: { uri } })
  }
  /** The diagnostics of a version, as "LINE:COLUMN-LINE:COLUMN CODE". */
  async diagnostics(uri, version) {
    const params = await until(`diagnostics of version ${version}`, () => {
      const last = this.published.get(uri)
      return last?.version === version && last
    })
    return params.diagnostics.map(brief)
  }
  /** Waits until the diagnostics of a file, open or not, are these. */
  async see(uri, ...expected) {
    const now = () => (this.published.get(uri)?.diagnostics ?? []).map(brief).join()
    try {
      await until('them', () => now() === expected.join())
    } catch {
      throw new Error(`${uri}: ${now()} instead of ${expected.join()}`)
    }
  }
  changedFiles(...uris) {
    return this.notify('workspace/didChangeWatchedFiles', { changes: uris.map((uri) => ({ uri, type: 2 })) })
  }
  async stop() {
    if (this.faults.length) throw new Error(this.faults.join('\n'))
    await this.request('shutdown')
    await this.notify('exit')
    return await this.exited
  }
}

/** A folder and a server for each test of a file; gone, whatever became of the test. */
export function eachWithServer(use) {
  let folder
  let client
  beforeEach(() => {
    folder = new Folder()
    client = new Client()
    use(folder, client)
  })
  afterEach(() => {
    client.process.kill()
    folder.remove()
  })
}

export function brief({ range: { start, end }, code }) {
  return `${start.line}:${start.character}-${end.line}:${end.character} ${code}`
}

/** How many units of an encoding the characters of a text take. */
export function units(text, encoding) {
  if (encoding === 'utf-8') return Buffer.byteLength(text)
  return encoding === 'utf-32' ? [...text].length : text.length
}

/** The text after edits whose positions count units of an encoding. */
export function applyEdits(text, edits, encoding = 'utf-16') {
  const offset = ({ line, character }) => {
    let at = 0
    for (; line > 0; --line) at = text.indexOf('\n', at) + 1
    let used = 0
    for (const c of text.slice(at)) {
      if (used >= character) break
      used += units(c, encoding)
      at += c.length
    }
    return at
  }
  const sorted = edits.map((edit) => ({ ...edit, from: offset(edit.range.start), to: offset(edit.range.end) }))
  sorted.sort((a, b) => b.from - a.from)
  for (const { from, to, newText } of sorted) text = text.slice(0, from) + newText + text.slice(to)
  return text
}
