// node actions.test.mjs PROGRAM: what each quick fix leaves of the text and of the project's settings.

import assert from 'node:assert/strict'
import { readFileSync, writeFileSync } from 'node:fs'
import { join } from 'node:path'
import { test } from 'node:test'
import { applyEdits, eachWithServer, units, until } from './client.mjs'

let folder
let client
eachWithServer((...made) => ([folder, client] = made))

const position = (line, character) => ({ line, character })
const wrong = '<?php\n$a = 1;\n$b = = 2;\n'
const actionsAt = (uri, range, only) => client.request('textDocument/codeAction', { textDocument: { uri }, range, context: { diagnostics: [], only } })

// File, language, text, action, and the text that it leaves; undefined: it must not be offered.
const cases = [
  ['a.html', 'html', '<p>😀<strng>x</strng></p>', "Replace by 'strong'", '<p>😀<strong>x</strong></p>'],
  ['b.html', 'html', '<img widht="1">', "Replace by 'width'", '<img width="1">'],
  ['c.css', 'css', 'stong { color: red }', "Replace by 'strong'", 'strong { color: red }'],
  ['d.css', 'css', 'a { colr: red }', "Replace by 'color'", 'a { color: red }'],
  ['e.php', 'php', wrong, 'Ignore error 1025 here', '<?php\n$a = 1;\n// code-analyzer-ignore 1025\n$b = = 2;\n'],
  ['f.php', 'php', '<?php $a $b;\n', 'Ignore error 1012 here', '<?php $a /* code-analyzer-ignore 1012 */ $b;\n'],
  ['g.php', 'php', "<?php\n$a = '\n' $b;\n", 'Ignore error 1012 here', "<?php\n$a = '\n' /* code-analyzer-ignore 1012 */ $b;\n"],
  ['h.html', 'html', '<p>\n  <strng>x</strng>\n', 'Ignore error 2001 here', '<p>\n  <!-- code-analyzer-ignore 2001 -->\n  <strng>x</strng>\n'],
  ['i.css', 'css', 'a {\n\tcolr: red }', 'Ignore error 2502 here', 'a {\n\t/* code-analyzer-ignore 2502 */\n\tcolr: red }'],
  ['j.html', 'html', '<style>\na { colr: red }</style>', 'Ignore error 2502 here', '<style>\n/* code-analyzer-ignore 2502 */\na { colr: red }</style>'],
  ['l.php', 'php', '<?php\nf(1;\n', "Insert ')'", '<?php\nf(1);\n'],
  ['m.php', 'php', '<?php\nf(1));\n', "Remove ')'", '<?php\nf(1);\n'],
  ['n.php', 'php', '<?php\n$a = 1 // one\n$b = 2;\n', "Insert ';'", '<?php\n$a = 1; // one\n$b = 2;\n'],
  ['o.php', 'php', '<?php\nif ($a);\nf();\n', "Remove ';'", '<?php\nif ($a)\nf();\n'],
  ['k.html', 'html', '<img\nwidht="1">', 'Ignore error 2002 here', undefined], // no comment can stand inside a tag
  ['q.php', 'php', "<?php\nfunction f($a) {\n  if ($a) {\n    g();\n\n  return '😀';\n}\n", "Insert '}'", "<?php\nfunction f($a) {\n  if ($a) {\n    g();\n  }\n\n  return '😀';\n}\n"],
  ['r.php', 'php', '<?php\nf(1;\r\n$a = 2;\r\n', "Insert ')'", '<?php\nf(1);\r\n$a = 2;\r\n'],
  ['s.php', 'php', '<?php\r\n$é = "😀";\r\n\t$b = = 2;\r\n', 'Ignore error 1025 here', '<?php\r\n$é = "😀";\r\n\t// code-analyzer-ignore 1025\r\n\t$b = = 2;\r\n'],
  ['t.php', 'php', '<?php\n// code-analyzer-ignore 101\n$a = 1;\n', 'Remove this line', '<?php\n$a = 1;\n'],
  ['u1.php', 'php', '<?php\n$a = 1; // code-analyzer-ignore 101\n', 'Remove this comment', '<?php\n$a = 1;\n'],
  ['u2.php', 'php', '<?php\n$a = 1; # code-analyzer-ignore 101 ?>\n', 'Remove this comment', '<?php\n$a = 1;?>\n'],
  ['u3.php', 'php', '<?php\n$a /* code-analyzer-ignore */ = 1;\n', 'Remove this comment', '<?php\n$a = 1;\n'],
  ['u4.html', 'html', '<p>\n  <!-- code-analyzer-ignore 2001 -->\n</p>', 'Remove this line', '<p>\n</p>'],
  ['u5.css', 'css', 'a { color: red /* code-analyzer-ignore-start 2502 */\n}', 'Remove this comment', 'a { color: red\n}'],
  ['u6.php', 'php', '<?php\n/**\n * a */ // code-analyzer-ignore-end\n', 'Remove this comment', '<?php\n/**\n * a */\n'],
  ['u7.php', 'php', '<?php\n/* code-analyzer-ignore 101\n */ $a = 1;\n', 'Remove this comment', undefined],
  ['u8.php', 'php', '<?php\n$b = = 2; // code-analyzer-ignore 101, 1025\n', 'Remove this comment', undefined],
  ['v.php', 'php', '<p>\n😀<strng><?= $a ?></strng>', "Replace by 'strong'", '<p>\n😀<strong><?= $a ?></strong>'],
  ['w.php', 'php', '<?php\n/*\n😀 */ $a = [1, 2;\n', "Insert ']'", '<?php\n/*\n😀 */ $a = [1, 2];\n'],
  ['x.php', 'php', '<?php\n$😀 = <<<E\n a\n E;\n$b = = 2;\n', 'Ignore error 1025 here', '<?php\n$😀 = <<<E\n a\n E;\n// code-analyzer-ignore 1025\n$b = = 2;\n'],
  ['y.html', 'html', '<img title="😀" widht="1">é', "Replace by 'width'", '<img title="😀" width="1">é'],
  ['1.php', 'php', '<p><?php foo(12; ?></p>\n', 'Ignore error 1002 here', '<p><?php foo(12 /* code-analyzer-ignore 1002 */; ?></p>\n'],
  ['2.php', 'php', '<p><?= foo() bar() ?></p>\n', 'Ignore error 1007 here', '<p><?= foo(/* code-analyzer-ignore 1007 */ ) bar() ?></p>\n'],
  ['3.php', 'php', '<div>\n<?php if ($a): ?>\n<b></i></b>\n<?php endif ?>\n</div>\n', 'Ignore error 2101 here', '<div>\n<?php if ($a): ?>\n<!-- code-analyzer-ignore 2101 -->\n<b></i></b>\n<?php endif ?>\n</div>\n'],
  ['4.php', 'php', '<?php\nforeach ($a $b) {}\n', "Insert 'as'", '<?php\nforeach ($a as $b) {}\n'],
  ['5.php', 'php', '<?php\n$a = 1\n\n\n$b = 2;\n', "Insert ';'", '<?php\n$a = 1;\n\n\n$b = 2;\n'],
  ['6.php', 'php', '<?php\nretrun 1;\n', "Replace by 'return'", '<?php\nreturn 1;\n'],
  ['7.php', 'php', "<?php\nclass A {\n  const B = '/\n/u'\n}\n", "Ignore error 1001 here", undefined], // the line begins in a string
  ['8.php', 'php', "<?php\nf('\n' . 'a' b);\n", "Ignore error 1002 here", undefined],
  ['9.php', 'php', '<?php\nresponse = 2;\n', "Insert '$'", '<?php\n$response = 2;\n'],
  ['z.php', 'php', '<?php\nif ($a) {\n  f();\n}}\n', "Remove '}'", '<?php\nif ($a) {\n  f();\n}\n'],
]

for (const [encoding, documentChanges] of [['utf-8', true], ['utf-16', false], ['utf-32', true]])
  test(`every code action leaves the text that it promises (${encoding})`, async () => {
    const workspace = { workspaceEdit: { documentChanges } }
    await client.start(null, { general: { positionEncodings: [encoding] }, workspace }, { delay: 10 })
    for (const [name, language, text] of cases) await client.open(folder.uri(name), text, language)
    for (const [name, , text, title, expected] of cases) {
      const uri = folder.uri(name)
      const [found] = await client.diagnostics(uri, 1)
      const { range } = client.published.get(uri).diagnostics[0]
      const actions = await actionsAt(uri, range)
      const action = actions.find((candidate) => candidate.title === title)
      assert.equal(Boolean(action), expected !== undefined, `${name} ${found}: ${actions.map((a) => a.title)}`)
      if (!action) continue
      assert.equal(action.kind, 'quickfix')
      // Only who knows them gets edits of a version.
      const [change] = action.edit.documentChanges ?? []
      assert.deepEqual(change?.textDocument, documentChanges ? { uri, version: 1 } : undefined)
      const mended = applyEdits(text, change?.edits ?? action.edit.changes[uri], encoding)
      assert.equal(mended, expected)
      await client.change(uri, 2, { text: mended })
    }
    for (const [name, , , , expected] of cases)
      if (expected) assert.deepEqual(await client.diagnostics(folder.uri(name), 2), [], `${name}: ${expected}`)
  })

test('actions are those of the place, the kind and the text that are asked for', async () => {
  await client.start(folder)
  const uri = folder.uri('a.html')
  await client.open(uri, '<strng>x</strng>\n<img widht="1">\n', 'html')
  await client.diagnostics(uri, 1)
  const titles = async (...args) => [...new Set((await actionsAt(uri, ...args)).map(({ title }) => title.match(/'(\w+)'/)?.[1]))].filter(Boolean).join()
  const at = (line, from, to = from) => ({ start: position(line, from), end: position(line, to) })
  assert.equal(await titles(at(0, 0)), 'strong,strng')
  assert.equal(await titles(at(0, 6)), 'strong,strng')
  assert.equal(await titles(at(0, 9)), '')
  assert.equal(await titles(at(1, 6, 7)), 'width,widht')
  assert.equal(await titles({ start: position(0, 0), end: position(5, 0) }), 'strong,strng,width,widht')
  assert.equal(await titles(at(0, 0), ['quickfix']), 'strong,strng')
  assert.equal(await titles(at(0, 0), ['refactor', 'source.fixAll']), '')
  assert.equal(await titles(at(0, 0), []), '')
  // Right after an edit the answer waits for the check: the places are those of the new text.
  await client.change(uri, 2, { range: at(0, 0), text: ' ' })
  assert.equal(await titles(at(0, 7)), 'strong,strng')
  await client.change(uri, 3, { range: at(0, 0, 8), text: '<p>' })
  assert.equal(await titles(at(0, 2)), '')
})

// Text, and of the first finding the titles of its fixes that are preferred and of those that only help.
const proved = [
  ['<?php\nf(1;\n', ["Insert ')'"], []],
  ["<?php\nf('a);\ng();\n", [], []], // nobody knows where the string was to end
  ['<?php\nfunction f() {\n  g(;\n  }\n}\n', [], ["Insert ')'"]], // then a brace is too much
]

test('a fix is preferred when it leaves nothing, and not offered when it does not help', async () => {
  await client.start(null, {}, { delay: 10 })
  for (const [i, [text, preferred, helping]] of proved.entries()) {
    const uri = folder.uri(`p${i}.php`)
    await client.open(uri, text, 'php')
    await client.diagnostics(uri, 1)
    const actions = (await actionsAt(uri, client.published.get(uri).diagnostics[0].range)).filter((a) => /^(Insert|Remove|Replace)/.test(a.title))
    const titles = (isPreferred) => actions.filter((a) => Boolean(a.isPreferred) === isPreferred).map((a) => a.title)
    assert.deepEqual([titles(true), titles(false)], [preferred, helping], text)
  }
})

test('all of a document is fixed at once, by the kind that is asked for', async () => {
  await client.start(null, {}, { delay: 10 })
  const uri = folder.uri('all.php')
  const text = '<?php\nf(1;\r\n$é = [1, 2;\n$b = "x" . ;\n$c = 3\n'
  await client.open(uri, text, 'php')
  assert.equal((await client.diagnostics(uri, 1)).length, 4)
  const range = { start: position(0, 0), end: position(0, 0) }
  for (const only of [['source.fixAll'], ['source.fixAll.code-analyzer'], ['source']]) {
    const [action, ...others] = await actionsAt(uri, range, only)
    assert.equal(others.length, 0)
    assert.equal(action.kind, 'source.fixAll.code-analyzer')
    // Behind what nobody can mend nothing is done without a look.
    assert.equal(applyEdits(text, action.edit.changes[uri], 'utf-16'), '<?php\nf(1);\r\n$é = [1, 2];\n$b = "x" . ;\n$c = 3\n'.replaceAll(/\r?\n/g, '\n'))
  }
  assert.deepEqual(await actionsAt(uri, range, ['source.fixAll.other']), [])
  assert.deepEqual(await actionsAt(uri, range, ['source.organizeImports']), [])
  await client.change(uri, 2, { text: '<?php\n$b = "x" . ;\n' })
  await client.diagnostics(uri, 2)
  assert.deepEqual(await actionsAt(uri, range, ['source.fixAll']), [])
})

test('names and codes are added to the settings, whose comments stay', async () => {
  const settings = join(folder.path, 'code-analyzer.json')
  await client.start(folder)
  const uri = folder.uri('a.html')
  const text = '<strng zoo="1">x</strng><p zoo="1" style="colr: red">y</p>'
  await client.open(uri, text, 'html')
  assert.equal((await client.diagnostics(uri, 1)).length, 3)
  const run = async (title) => {
    const actions = await actionsAt(uri, { start: position(0, 0), end: position(0, units(text, 'utf-16')) }, ['quickfix'])
    const { command } = actions.find((candidate) => candidate.title === title)
    await client.request('workspace/executeCommand', command)
  }
  const codes = async (...expected) =>
    until(`codes ${expected}`, () => {
      const { diagnostics } = client.published.get(uri)
      return diagnostics.map((d) => d.code).join() === expected.join()
    })
  await run("Add 'zoo' to the project's own names")
  await codes(2001, 2502)
  writeFileSync(settings, '// ours\n' + readFileSync(settings, 'utf8'))
  await run("Add 'strng' to the project's own names")
  await codes(2502)
  await run('Ignore error 2502 in this project')
  await codes()
  const written = readFileSync(settings, 'utf8')
  assert.match(written, /^\/\/ ours/)
  assert.match(written, /"tags": \["strng"\]/)
  assert.match(written, /"attributes": \["zoo"\]/)
  assert.match(written, /"2502": "off"/)
})
