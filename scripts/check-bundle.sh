#!/usr/bin/env bash
# scripts/check-bundle.sh [BUILD [ARCHIVE]]: makes the archive of a build, or takes one that is there, and runs what is in it,
# moved elsewhere and without a network, in a bare Debian 12 and a bare Debian 13, with nothing installed. Says sizes and start times. Run as root; the bare
# roots are made once, from the network.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
source scripts/clean-root.sh
build=$(realpath -- "${1:-build/release}")
work=$(mktemp -d)
trap 'rm -rf --one-file-system "$work"' EXIT

archive=${2:-}
if [ -z "$archive" ]; then
    scripts/make-bundle.sh "$build" "$work/made"
    archive=$(echo "$work"/made/*.tar.xz)
fi
for suite in bookworm trixie; do
    root=$work/$suite
    bare_root "$suite" "$root"
    mkdir -p "$root/opt/moved here"
    tar -C "$root/opt/moved here" --strip-components=1 -xJf "$archive"
    program="/opt/moved here/bin/code-analyzer"
    site "$root/site"
    status=0
    found=$(offline_in "$root" "$program" check --quiet /site/) || status=$?
    [ "$status $found" = "1 $(mistake /site/)" ] || fail "$suite: check ends with $status and says: $found"
    status=0
    found=$(offline_in "$root" "$program" project --quiet /site) || status=$?
    [ "$status $found" = "1 $(mistake /site/)" ] || fail "$suite: project ends with $status and says: $found"
    for encoding in C C.UTF-8 de_DE.ISO-8859-15; do # whose names and rules are not all in the bundle
        found=$(offline_in "$root" env LC_ALL=$encoding "$program" check --quiet /site/ || true)
        [ "$found" = "$(mistake /site/)" ] || fail "$suite: in $encoding check says: $found"
    done
    body='{"jsonrpc":"2.0","id":1,"method":"initialize","params":{"capabilities":{}}}'
    found=$(printf 'Content-Length: %d\r\n\r\n%s' "${#body}" "$body" |
        offline_in "$root" "$program" language-server || true)
    [[ $found == *'"serverInfo"'* ]] || fail "$suite: the server says: $found"
    offline_in "$root" "$program" explain 1001 | grep -q semicolon || fail "$suite: explain"
    printf '%s: check of one file from start to end: %s\n' "$suite" \
        "$(start_time_in "$root" "$program" check --quiet /site/a.php)"
    printf '%s: --version: %s\n' "$suite" "$(start_time_in "$root" "$program" --version)"
done
echo "bundle: fine"
