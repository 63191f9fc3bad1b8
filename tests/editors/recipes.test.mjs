// node recipes.test.mjs PROGRAM: the recipes of docs/editors-and-ci.md, taken from there, do what they say.

import assert from 'node:assert/strict'
import { spawnSync } from 'node:child_process'
import { chmodSync, readFileSync } from 'node:fs'
import { dirname, join } from 'node:path'
import { test } from 'node:test'
import { fileURLToPath } from 'node:url'
import { Folder, program } from './client.mjs'

const page = readFileSync(join(dirname(fileURLToPath(import.meta.url)), '../../docs/editors-and-ci.md'), 'utf8')
const plugin = join(dirname(fileURLToPath(import.meta.url)), '../../editors/neovim')
const blocks = [...page.matchAll(/```(\w+)\n([^]*?)```/g)].map(([, language, text]) => ({ language, text }))
const block = (language, mark) => blocks.find((b) => b.language === language && b.text.includes(mark)).text
const env = { ...process.env, PATH: `${dirname(program)}:${process.env.PATH}`, GIT_CONFIG_GLOBAL: '/dev/null' }
const wrong = '<?php\n$a = 1;\n$b = = 2;\n'

test('the hook stops a commit with an error, and only that', () => {
  const folder = new Folder()
  const git = (...args) =>
    spawnSync('git', ['-c', 'user.name=a', '-c', 'user.email=a@b', ...args], { cwd: folder.path, env, encoding: 'utf8' })
  assert.equal(git('init', '-q').status, 0)
  folder.write('.git/hooks/pre-commit', block('sh', '--changed'))
  chmodSync(join(folder.path, '.git/hooks/pre-commit'), 0o755)
  folder.write('a.php', wrong)
  git('add', '.')
  const stopped = git('commit', '-qm', 'a')
  assert.notEqual(stopped.status, 0)
  assert.match(stopped.stdout + stopped.stderr, /a\.php:3:6: error: Unexpected operator '=' \[1025\]/)
  folder.write('a.php', '<?php\n$a = 1;\n')
  git('add', '.')
  folder.write('untracked.php', wrong)
  assert.equal(git('commit', '-qm', 'a').status, 0)
  folder.remove()
})

test('the hook of the pre-commit framework takes the names of files that are checked', () => {
  const hooks = readFileSync(join(dirname(fileURLToPath(import.meta.url)), '../../.pre-commit-hooks.yaml'), 'utf8')
  const [, entry] = hooks.match(/entry: code-analyzer (.*)\n/)
  const [, files] = hooks.match(/files: \(\?i\)(.*)\n/)
  for (const [name, taken] of [['a.php', true], ['s/B.HTML', true], ['a.inc', true], ['php', false], ['a.phps', false]])
    assert.equal(new RegExp(files, 'i').test(name), taken, name)
  const folder = new Folder()
  folder.write('a.php', wrong)
  folder.write('b.css', 'a { color: red }')
  const run = spawnSync(program, [...entry.split(' '), 'a.php', 'b.css'], { cwd: folder.path, encoding: 'utf8' })
  assert.deepEqual([run.status, run.stdout], [1, "a.php:3:6: error: Unexpected operator '=' [1025]\n"])
  folder.remove()
})

test('Neovim shows what it is told, also by a server that takes the place of one that was killed', () => {
  const folder = new Folder()
  folder.write('a.php', wrong)
  folder.write(
    'look.lua',
    `local function look()
       vim.wait(20000, function() return #vim.diagnostic.get(0) > 0 end, 10)
       local found = vim.diagnostic.get(0)[1]
       io.stdout:write(found and (found.lnum .. ' ' .. found.message) or 'nothing', '\\n')
     end
     look()
     vim.diagnostic.reset()
     local pid = vim.fn.getpid()
     local children = io.open('/proc/' .. pid .. '/task/' .. pid .. '/children'):read('*a')
     for child in children:gmatch('%d+') do vim.loop.kill(tonumber(child), 'sigkill') end
     look()
     vim.cmd('qall!')`,
  )
  const { stdout } = spawnSync(
    'nvim',
    ['--clean', '--headless', '-n', '--cmd', `set rtp^=${plugin}`, '-c', 'filetype on', '-c', 'edit a.php', '-c', 'luafile look.lua'],
    { cwd: folder.path, env, encoding: 'utf8', timeout: 60000 },
  )
  assert.equal(stdout, "2 Unexpected operator '='\n".repeat(2))
  folder.remove()
})

test('the jobs’ commands write what the services collect', () => {
  const folder = new Folder()
  folder.write('a.php', wrong)
  const commands = blocks
    .filter((b) => b.language === 'yaml')
    .flatMap((b) => b.text.split('\n'))
    .map((line) => line.match(/(code-analyzer check .*)$/)?.[1])
    .filter(Boolean)
  assert.equal(commands.length, 2)
  for (const command of commands) {
    const { status } = spawnSync('sh', ['-c', command], { cwd: folder.path, env, encoding: 'utf8' })
    assert.equal(status, 1)
  }
  for (const file of ['code-analyzer.sarif', 'gl-code-quality-report.json'])
    assert.match(readFileSync(join(folder.path, file), 'utf8'), /Unexpected operator/)
  assert.match(readFileSync(join(folder.path, 'junit.xml'), 'utf8'), /<failure/)
  folder.remove()
})

test('what is JSON is JSON', () => {
  const found = blocks.filter((b) => b.language === 'json')
  assert.ok(found.length >= 2)
  for (const { text } of found) JSON.parse(text)
})
