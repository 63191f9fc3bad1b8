#!/usr/bin/env bash
# make-manual.sh BIN VERSION DATE FOLDER: man pages and shell completions from what the programs in BIN say themselves.
set -euo pipefail
bin=$1
version=$2
date=$3
folder=$(realpath -m -- "$4")
cd "$bin" # commands are named from here: their words are split at blanks
rm -rf "$folder"
mkdir -p "$folder/man1" "$folder/bash" "$folder/zsh" "$folder/fish"

# page NAME DESCRIPTION COMMAND: the date of a page is that of its program's version, never that of the build.
page() {
    SOURCE_DATE_EPOCH=0 LC_ALL=C help2man --no-info --version-string "$version" --name "$2" "$3" |
        sed -e "s|^\.TH [A-Z -]* \"1\" \"[^\"]*\" \"[^\"]*\"|.TH ${1^^} \"1\" \"$date\" \"code-analyzer $version\"|" \
            -e "s|^${3##*/} \\\\- |$1 \\\\- |" |
        gzip -9n >"$folder/man1/$1.1.gz"
}

page code-analyzer "check PHP, HTML and CSS" ./code-analyzer
page code-analyzer-workbench "editor that shows mistakes in PHP, HTML and CSS" ./code-analyzer-workbench
./code-analyzer --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z-]*\)  *\(.*\)/\1 \2/p' |
    while read -r command description; do
        page "code-analyzer-$command" "${description,}" "./code-analyzer $command"
    done

./code-analyzer completion bash >"$folder/bash/code-analyzer"
./code-analyzer completion zsh >"$folder/zsh/_code-analyzer"
./code-analyzer completion fish >"$folder/fish/code-analyzer.fish"
