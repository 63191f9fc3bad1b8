-- What Neovim's own client sees of the server. Run as: PROGRAM=... nvim --headless -u NONE -c "luafile neovim.lua"

local program = assert(os.getenv('PROGRAM'))
local folder = vim.fn.tempname()
vim.fn.mkdir(folder, 'p')
local file = folder .. '/a.php'

local function fail(message)
  io.stderr:write('neovim: ' .. message .. '\n')
  vim.cmd('cquit 1')
end

local function expect(what, condition)
  if not vim.wait(20000, condition, 10) then
    fail('waited in vain for ' .. what .. '; there is ' .. vim.inspect(vim.diagnostic.get(0)))
  end
end

local ok, fault = pcall(function()
  vim.fn.writefile({ '<?php', "$a = '😀'  $b;", '?><strng>x</strng>' }, file)
  vim.cmd('edit ' .. file)
  local client = vim.lsp.start_client({ name = 'code-analyzer', cmd = { program, 'language-server' }, root_dir = folder })
  vim.lsp.buf_attach_client(0, client)

  expect('two diagnostics', function() return #vim.diagnostic.get(0) == 2 end)
  local found = vim.diagnostic.get(0)
  table.sort(found, function(a, b) return a.lnum < b.lnum end)
  -- Neovim counts bytes: the emoji takes four.
  assert(found[1].lnum == 1 and found[1].col == 13 and found[1].code == 1012, vim.inspect(found[1]))
  assert(found[2].lnum == 2 and found[2].col == 2 and found[2].code == 2001, vim.inspect(found[2]))

  -- Typed as a user would: the mistake goes.
  vim.api.nvim_buf_set_text(0, 1, 12, 1, 12, { '. ' })
  expect('the first one to go', function() return #vim.diagnostic.get(0) == 1 end)

  -- The quick fix that the user picks.
  vim.ui.select = function(items, _, choose)
    for _, item in ipairs(items) do
      local action = item.action or item[2] -- newer versions name it
      if action.title == "Replace by 'strong'" then return choose(item) end
    end
    fail('no such action: ' .. vim.inspect(items))
  end
  vim.api.nvim_win_set_cursor(0, { 3, 4 })
  vim.lsp.buf.code_action()
  expect('the replacement', function()
    return vim.api.nvim_buf_get_lines(0, 2, 3, true)[1] == '?><strong>x</strong>'
  end)
  expect('the last one to go', function() return #vim.diagnostic.get(0) == 0 end)
  vim.lsp.stop_client(client)
  expect('the end', function() return vim.lsp.client_is_stopped(client) end)
end)
vim.fn.delete(folder, 'rf')
if not ok then fail(fault) end
print('neovim: all as expected')
vim.cmd('qall!')
