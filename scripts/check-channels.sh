#!/usr/bin/env bash
# scripts/check-channels.sh [BUILD [MADE]]: makes the packages for Composer and npm, the container's root, and what forges run
# (or takes those that make-channels.sh has put into MADE), and uses each as a project would, without a network: installed here, where Composer and npm are, and run in a bare Debian
# 12 and 13 as well. Says sizes and start times. Run as root.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
source scripts/clean-root.sh
here=$PWD
build=$(realpath -- "${1:-build/release}")
work=$(mktemp -d)
trap 'rm -rf --one-file-system "$work"' EXIT
install_missing composer php-cli php-zip unzip
install_clients
made=${2:-$work/made}
[ -n "${2:-}" ] || scripts/make-channels.sh "$build" "$made"
made=$(realpath -- "$made")
for suite in bookworm trixie; do
    bare_root "$suite" "$work/$suite"
done

# finds WHAT FOLDER COMMAND...: the mistake of the site, in the folder where that is.
finds() {
    local what=$1 folder=$2 status=0 found
    shift 2
    found=$(cd "$folder" && unshare --net "$@" 2>&1) || status=$?
    [ "$status $found" = "1 $(mistake "")" ] || fail "$what ends with $status and says: $found"
}
# everywhere WHAT FOLDER COMMAND...: the same in the bare roots.
everywhere() {
    local what=$1 folder=$2 suite status found
    shift 2
    for suite in bookworm trixie; do
        rm -rf "$work/$suite/project"
        cp -a "$folder" "$work/$suite/project"
        status=0
        found=$(offline_in "$work/$suite" sh -c 'cd /project && exec "$@"' sh "$@" 2>&1) || status=$?
        [ "$status $found" = "1 $(mistake "")" ] || fail "$what in $suite ends with $status and says: $found"
    done
}

say "Composer"
site "$work/composer"
cat >"$work/composer/composer.json" <<JSON
{ "repositories": [{ "type": "artifact", "url": "$made" }, { "packagist": false }] }
JSON
(cd "$work/composer" && COMPOSER_ALLOW_SUPERUSER=1 COMPOSER_HOME=$work/composer-home COMPOSER_DISABLE_NETWORK=1 \
    unshare --net composer require --quiet --dev codeanalyzer/code-analyzer)
finds "vendor/bin/code-analyzer" "$work/composer" vendor/bin/code-analyzer check --quiet a.php
everywhere "vendor/bin/code-analyzer" "$work/composer" vendor/bin/code-analyzer check --quiet a.php
echo "vendor/bin/code-analyzer check: $(start_time "$work/composer/vendor/bin/code-analyzer" check --quiet "$work/composer/a.php")"

say "npm"
site "$work/npm"
echo '{ "private": true }' >"$work/npm/package.json"
(cd "$work/npm" && unshare --net npm install --offline --no-audit --no-fund --loglevel=error --cache "$work/npm-cache" \
    --save-dev "$made"/*.tgz >/dev/null)
finds "npx code-analyzer" "$work/npm" npx --offline --no code-analyzer check --quiet a.php
everywhere "node_modules/.bin/code-analyzer" "$work/npm" node_modules/.bin/code-analyzer check --quiet a.php
echo "node_modules/.bin/code-analyzer check: $(start_time "$work/npm/node_modules/.bin/code-analyzer" check --quiet "$work/npm/a.php")"

say "The container's root"
mkdir "$work/container"
tar -C "$work/container" -xJf "$made"/*-container.tar.xz
site "$work/container/work"
status=0
found=$(offline_in "$work/container" /bin/sh -c 'cd /work && exec code-analyzer check --quiet a.php') || status=$?
[ "$status $found" = "1 $(mistake "")" ] || fail "the container ends with $status and says: $found"
du -sk "$work/container" | awk '{ printf "unpacked: %d KiB\n", $1 }'
echo "code-analyzer check in it: $(start_time_in "$work/container" /usr/bin/code-analyzer check --quiet /work/a.php)"

say "GitHub's action and GitLab's template"
# job FILE NAME: the script of a step or a job, as the forge runs it.
job() {
    node -e '
        const { parse } = require(process.argv[1] + "/tests/editors/node_modules/yaml")
        const file = parse(require("fs").readFileSync(process.argv[2], "utf8"))
        const step = file.runs?.steps.find((s) => s.name === process.argv[3])
        console.log(step ? step.run : file[process.argv[3]].script.join("\n"))' "$here" "$1" "$2"
}
site "$work/github"
mkdir "$work/github-temp"
export GITHUB_ACTION_PATH=$here RUNNER_TEMP=$work/github-temp GITHUB_OUTPUT=$work/github-output
(cd "$work/github" && ARCHIVE=$made/code-analyzer-linux-$(uname -m).tar.xz unshare --net sh -ec "$(job "$here/action.yml" Install)") >/dev/null
status=0
found=$(cd "$work/github" && PATHS=. CODE_ANALYZER_ARGUMENTS=--quiet CODE_ANALYZER_FORGE=github CODE_ANALYZER_REPORTS=$RUNNER_TEMP \
    unshare --net sh -ec "$(job "$here/action.yml" Check)") || status=$?
[[ $status = 1 && $found == "::error file=a.php,line=2,col=6"* ]] || fail "the action ends with $status and says: $found"
sarif=$(sed -n 's/^sarif=//p' "$GITHUB_OUTPUT")
grep -q '"ruleId"' "$sarif" || fail "no report at $sarif"
if CODE_ANALYZER_SHA256=$(printf 0%.0s {1..64}) packaging/ci/install.sh "$made"/code-analyzer-linux-*.tar.xz "$work/wrong" 2>/dev/null; then
    fail "another archive than the one that is wanted was taken"
fi
rm "$work/container/work/a.php"
site "$work/container/work"
status=0
found=$(offline_in "$work/container" /bin/sh -c "cd /work && CODE_ANALYZER_PATHS=. && CODE_ANALYZER_ARGUMENTS=--quiet
    $(job packaging/ci/gitlab.yml .code-analyzer)") || status=$?
[ "$status $found" = "1 $(mistake ./)" ] || fail "GitLab's job ends with $status and says: $found"
for report in gl-code-quality-report.json junit.xml; do
    [ -s "$work/container/work/$report" ] || fail "no $report"
done
echo "channels: fine"
