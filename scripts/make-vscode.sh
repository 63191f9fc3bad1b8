#!/usr/bin/env bash
# scripts/make-vscode.sh [BUILD] [FOLDER]: makes the extension for Visual Studio Code with the program of a build in it:
# FOLDER/code-analyzer-VERSION-linux-x64.vsix (BUILD/channels by default). Its packages come from npm, at the versions of the
# lock file.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
here=$PWD
build=$(realpath -- "${1:-build/release}")
out=$(realpath -m -- "${2:-$build/channels}")
version=$(project_version)
unpacked=$build/bundle/code-analyzer-$version-linux-$(uname -m)
[ -x "$unpacked/bin/code-analyzer" ] || scripts/make-bundle.sh "$build"
mkdir -p "$out"

cd editors/vscode
if ! cmp -s package-lock.json node_modules/installed-lock.json; then
    npm ci --ignore-scripts --no-audit --no-fund --loglevel=error
    cp package-lock.json node_modules/installed-lock.json
fi
npm run --silent check
npm run --silent build
# What is in the script comes under these terms.
for package in vscode-languageclient vscode-languageserver-protocol vscode-languageserver-types vscode-jsonrpc \
    semver minimatch brace-expansion balanced-match; do
    printf '== %s\n' "$package"
    cat node_modules/"$package"/[Ll][Ii][Cc][Ee][Nn][Ss][Ee]*
    echo
done >dist/licenses.txt
rm -rf server
cp -r "$unpacked" server
cp "$here/LICENSE" LICENSE.txt
cp "$here/CHANGELOG.md" "$here/docs/code-analyzer.schema.json" .
sed -i 's|\[\([^]]*\)](docs/[^)]*)|\1|g' CHANGELOG.md
node_modules/.bin/vsce package --target linux-x64 --no-dependencies --out "$out/code-analyzer-$version-linux-x64.vsix" "$version" \
    --no-update-package-json --no-git-tag-version --allow-missing-repository >/dev/null
ls -l "$out"/*.vsix | awk '{ n = split($NF, p, "/"); printf "%s: %d KiB\n", p[n], $5 / 1024 }'
