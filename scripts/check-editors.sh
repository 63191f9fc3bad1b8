#!/usr/bin/env bash
# scripts/check-editors.sh [BUILD]: makes the extension for Visual Studio Code, unpacks it and talks to the server in it
# as the extension says it is to be started; and installs the plug-in file for Neovim as its users do.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
build=$(realpath -- "${1:-build/release}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
install_missing unzip neovim
install_clients
scripts/make-vscode.sh "$build" "$work"
unzip -q "$work"/*.vsix -d "$work/unpacked"
node tests/editors/extension.test.mjs "$work/unpacked/extension"

say "Neovim"
mkdir -p "$work/home/.config/nvim/plugin" "$work/site"
cp editors/neovim/plugin/code-analyzer.lua "$work/home/.config/nvim/plugin/"
printf '<?php\n$a = 1\n$b = 2;\n' >"$work/site/a.php"
cat >"$work/look.lua" <<'LUA'
vim.wait(20000, function() return #vim.diagnostic.get(0) > 0 end, 10)
io.stdout:write((vim.diagnostic.get(0)[1] or { message = 'nothing' }).message, '\n')
vim.cmd('qall!')
LUA
found=$(cd "$work/site" && HOME=$work/home XDG_CONFIG_HOME=$work/home/.config PATH=$work/unpacked/extension/server/bin:$PATH \
    nvim --headless -i NONE -n -c 'filetype on' -c 'edit a.php' -c "luafile $work/look.lua")
[ "$found" = "Expected ';' before '\$b'" ] || fail "Neovim shows: $found"
echo "editors: fine"
