-- Shows what code-analyzer finds in PHP, HTML and CSS; for Neovim 0.7 and later. Before it is loaded, vim.g.code_analyzer
-- may say otherwise: { cmd = { ... }, filetypes = { ... }, settings = { checkProject = false } }.

if vim.g.loaded_code_analyzer then return end
vim.g.loaded_code_analyzer = true

local chosen = vim.g.code_analyzer or {}
local filetypes = chosen.filetypes or { 'php', 'html', 'css' }
local clients, deaths = {}, {} -- by root

local function serve(buffer)
  local file = vim.api.nvim_buf_get_name(buffer)
  local found = vim.fs and vim.fs.find({ 'code-analyzer.json', 'composer.json', '.git' },
    { upward = true, path = vim.fn.fnamemodify(file, ':h') })[1]
  local root = found and vim.fn.fnamemodify(found, ':h') or vim.fn.getcwd()
  local config = {
    name = 'code-analyzer',
    cmd = chosen.cmd or { 'code-analyzer', 'language-server' },
    init_options = chosen.settings,
    root_dir = root,
    workspace_folders = { { uri = vim.uri_from_fname(root), name = root } },
    on_exit = function(code, signal)
      clients[root] = nil
      deaths[root] = (deaths[root] or 0) + 1
      if (code == 0 and signal == 0) or deaths[root] > 3 then return end
      vim.defer_fn(function() -- it has died: another one takes its place
        for _, open in ipairs(vim.api.nvim_list_bufs()) do
          if vim.tbl_contains(filetypes, vim.bo[open].filetype) then serve(open) end
        end
      end, 500)
    end,
  }
  if vim.lsp.start then -- since Neovim 0.8; one for each root
    vim.lsp.start(config, { bufnr = buffer })
  else
    clients[root] = clients[root] or vim.lsp.start_client(config)
    vim.lsp.buf_attach_client(buffer, clients[root])
  end
end

vim.api.nvim_create_autocmd('FileType', {
  group = vim.api.nvim_create_augroup('code-analyzer', {}),
  pattern = filetypes,
  callback = function(args) serve(args.buf) end,
})
