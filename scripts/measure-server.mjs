// measure-server.mjs [FILE]: what a keystroke costs in the language server, and a large document. A key in a PHP file of
// 1 MB, until its diagnostics are there and without the pause that the server makes for the next key; then the memory of
// the server with a document of 50 MB, at rest and at most, as a multiple of the document's bytes. The texts are FILE's
// code over and over, or made ones. The program is $CODE_ANALYZER, or build/release/bin/code-analyzer.
import { spawn } from 'node:child_process'
import { readFileSync } from 'node:fs'

const program = process.env.CODE_ANALYZER ?? 'build/release/bin/code-analyzer'
const pause = 50 // milliseconds
const uri = 'file:///measure/a.php'

const made = (i) =>
  `function f${i}($a, $b) {\n    if ($a > 1 && $b) {\n        return 'é' . g($a, [1, 2, 'x' => $b]);\n    }\n` +
  `    foreach ($a as $k => $v) { echo $k, $v; }\n}\n`
const code = process.argv[2] ? readFileSync(process.argv[2], 'utf8').replace(/^<\?php/, '').replace(/\?>\s*$/, '') : null

function textOf(bytes) {
  const parts = ['<?php\n']
  for (let i = 0, size = 0; size < bytes; ++i) {
    parts.push(code ?? made(i))
    size += Buffer.byteLength(parts.at(-1))
  }
  return parts.join('')
}

/** A server that is spoken to in bytes, so that no client's own work counts. */
class Server {
  #waiting = []
  #received = Buffer.alloc(0)

  constructor() {
    this.process = spawn(program, ['language-server'], { stdio: ['pipe', 'pipe', 'inherit'] })
    this.process.stdout.on('data', (bytes) => {
      this.#received = Buffer.concat([this.#received, bytes])
      for (;;) {
        const end = this.#received.indexOf('\r\n\r\n')
        if (end < 0) return
        const whole = end + 4 + Number(/Content-Length: (\d+)/i.exec(this.#received.toString('latin1', 0, end))[1])
        if (this.#received.length < whole) return
        const message = JSON.parse(this.#received.toString('utf8', end + 4, whole))
        this.#received = this.#received.subarray(whole)
        this.#waiting = this.#waiting.filter((one) => !one(message))
      }
    })
  }
  send(message) {
    const body = Buffer.from(JSON.stringify({ jsonrpc: '2.0', ...message }))
    this.process.stdin.write(`Content-Length: ${body.length}\r\n\r\n`)
    this.process.stdin.write(body)
  }
  /** The first message that `wanted` takes. */
  next(wanted) {
    return new Promise((resolve) => this.#waiting.push((message) => wanted(message) && (resolve(message), true)))
  }
  async open(text) {
    const ready = this.next((message) => message.id === 1)
    this.send({ id: 1, method: 'initialize', params: { capabilities: {}, processId: null, initializationOptions: { delay: pause } } })
    await ready
    this.send({ method: 'initialized', params: {} })
    const known = this.diagnostics(1)
    this.send({
      method: 'textDocument/didOpen',
      params: { textDocument: { uri, languageId: 'php', version: 1, text } },
    })
    await known
  }
  diagnostics(version) {
    return this.next(({ method, params }) => method === 'textDocument/publishDiagnostics' && params.version === version)
  }
  /** One key at the beginning of a line; answers how long its diagnostics took, in ms. */
  async key(version, line) {
    const at = { line, character: 0 }
    const known = this.diagnostics(version)
    const begin = performance.now()
    this.send({
      method: 'textDocument/didChange',
      params: { textDocument: { uri, version }, contentChanges: [{ range: { start: at, end: at }, text: ' ' }] },
    })
    await known
    return performance.now() - begin
  }
  /** In bytes; `VmRSS`, or `VmHWM` for the most so far. */
  memory(name) {
    return 1024 * Number(new RegExp(`${name}:\\s+(\\d+)`).exec(readFileSync(`/proc/${this.process.pid}/status`, 'latin1'))[1])
  }
  end() {
    this.process.kill('SIGKILL')
  }
}

{
  const text = textOf(1e6)
  const lines = text.split('\n').length
  const server = new Server()
  await server.open(text)
  const times = []
  for (let i = 0; i < 15; ++i) times.push((await server.key(i + 2, Math.floor((lines * (i + 1)) / 17))) - pause)
  times.sort((a, b) => a - b)
  console.log(`a key in 1 MB: ${times[7].toFixed(0)} ms beside the pause, at best ${times[0].toFixed(0)} ms`)
  server.end()
}
{
  const server = new Server()
  await server.open('<?php\n')
  const empty = server.memory('VmRSS')
  server.end()
  const text = textOf(50e6)
  const bytes = Buffer.byteLength(text)
  const large = new Server()
  await large.open(text)
  const times = (memory) => `${((large.memory(memory) - empty) / bytes).toFixed(1)} times`
  console.log(`50 MB open: ${times('VmRSS')} its bytes at rest, ${times('VmHWM')} at most`)
  await large.key(2, 1000)
  console.log(`and edited: ${times('VmRSS')} at rest, ${times('VmHWM')} at most`)
  large.end()
}
