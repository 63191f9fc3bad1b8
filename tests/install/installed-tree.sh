#!/usr/bin/env bash
# installed-tree.sh SOURCE BUILD: installs the build into folders of the test's own and uses what is there.
set -euo pipefail
export LC_ALL=C
source_dir=$1
build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "FAILED: $*" >&2
    exit 1
}
same() { # WHAT EXPECTED FOUND
    [ "$2" = "$3" ] || fail "$1: expected:"$'\n'"$2"$'\n'"found:"$'\n'"$3"
}

# A prefix of one's own, moved away afterwards: the parts must find each other where they are then.
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/tree"
tree=$work/tree
checker=$tree/bin/code-analyzer
"$checker" --version | grep -q '^code-analyzer [0-9]*\.[0-9]*\.[0-9]*' || fail "--version"
mkdir "$work/site"
printf '<?php\n$a = 1\n$b = 2;\n' >"$work/site/a.php"
record="$work/site/a.php:2:6: error: Expected ';' before '\$b' [1001]"
for command in check project; do
    status=0
    found=$("$checker" "$command" --quiet "$work/site") || status=$?
    same "status of $command" 1 "$status"
    same "$command" "$record" "$found"
done

# As packages are made: a staging folder before the same prefix.
DESTDIR=$work/stage cmake --install "$build" --prefix /opt/ca >/dev/null
same "what DESTDIR changes" "$(cd "$tree" && find . | sort)" "$(cd "$work/stage/opt/ca" && find . | sort)"
same "files outside the prefix" "" "$(find "$work/stage" -type f -not -path "$work/stage/opt/ca/*")"

# The libraries offer what is kept in the list, and nothing else.
libdir=$(dirname "$(find "$tree" -name libCodeAnalyzer.so.1)")
for library in libCodeAnalyzer.so.1 libCodeAnalyzerChecks.so.1 libCodeAnalyzerCheck.so.1; do
    nm -D --defined-only --with-symbol-versions "$libdir/$library" | awk -v l="$library" '$2 != "A" { print l, $3 }'
done | sort >"$work/symbols"
same "exported symbols" "$(cat "$source_dir/tests/install/exported-symbols.txt")" "$(cat "$work/symbols")"
# What shows nothing loads nothing that shows something.
for file in "$checker" "$libdir/libCodeAnalyzerChecks.so.1" "$libdir/libCodeAnalyzerCheck.so.1"; do
    needed=$(readelf -d "$file" | sed -n 's/.*(NEEDED).*\[\(lib[A-Za-z0-9_+-]*\).*/\1/p' | grep -v '^libc$\|^libm$\|san$\|^libgcc_s$\|^libstdc++$')
    same "libraries that $file needs" libQt5Core "$needed"
done
# Nor does it when it is at work.
mapped() { # COMMAND...: the Qt libraries that it has loaded by the time it ends
    LD_DEBUG=files LD_DEBUG_OUTPUT=$work/loaded "$@" </dev/null >/dev/null 2>&1 || true
    sed -n 's/.*calling init: .*\/\(libQt5[A-Za-z]*\).*/\1/p' "$work"/loaded.* | sort -u
    rm -f "$work"/loaded.*
}
for command in "check $work/site" "project $work/site" language-server; do
    # shellcheck disable=SC2086 # words of a command
    same "Qt libraries that $command loads" libQt5Core "$(mapped "$checker" $command)"
done

# The example host, with what is installed and nothing else.
cmake -S "$tree"/share/doc/libcodeanalyzer-dev/examples/host -B "$work/host" -G Ninja \
    -DCMAKE_PREFIX_PATH="$tree" >/dev/null
cmake --build "$work/host" >/dev/null
status=0
found=$(LD_LIBRARY_PATH=$libdir "$work/host/example-host") || status=$?
same "the example host" "3:1: Missing ';' [102]" "$found"
same "its status" 1 "$status"
if command -v pkg-config >/dev/null; then
    # The tree was moved.
    export PKG_CONFIG_PATH=$libdir/pkgconfig
    [[ $(pkg-config --cflags code-analyzer) == *"$tree/"*"/include/code-analyzer"* ]] ||
        fail "pkg-config: $(pkg-config --cflags code-analyzer)"
    found=$(pkg-config --cflags --libs code-analyzer-check)
    # shellcheck disable=SC2046 # flags
    ${CC:-cc} ${CXXFLAGS:-} -std=c99 -pedantic -Wall -Wextra -Werror \
        "$tree"/share/doc/libcodeanalyzercheck-dev/examples/c/check.c -o "$work/check" $found ||
        fail "the C example with $found"
    status=0
    found=$(LD_LIBRARY_PATH=$libdir "$work/check" "$work/site/a.php") || status=$?
    same "the C example" "$work/site/a.php:2:6: Expected ';' before '\$b' [1001]
  mended by: Insert ';' (bytes 12 to 12 become \";\")" "$found"
    same "its status" 1 "$status"
fi
if [ -z "${CXXFLAGS:-}" ]; then # a program without a sanitizer cannot load a library with one
    status=0
    found=$(printf '<?php\n$a = 1\n$b = 2;\n' | CODE_ANALYZER_LIBRARY=$libdir/libCodeAnalyzerCheck.so.1 \
        python3 "$tree"/share/doc/libcodeanalyzercheck-dev/examples/python/check.py) || status=$?
    same "the Python example" "2:6: error: Expected ';' before '\$b' [1001]" "$found"
    same "its status" 1 "$status"
fi

# One folder of documents, whose links lead somewhere.
python3 "$source_dir/tests/install/links.py" "$tree/share/doc/code-analyzer" || fail "dead links"

# The server links each error to its section there.
frame() { # MESSAGE
    printf 'Content-Length: %d\r\n\r\n%s' "${#1}" "$1"
}
serve() {
    frame '{"jsonrpc":"2.0","id":1,"method":"initialize","params":{"initializationOptions":{"delay":0},"capabilities":{"textDocument":{"publishDiagnostics":{"codeDescriptionSupport":true}}}}}'
    frame '{"jsonrpc":"2.0","method":"initialized","params":{}}'
    frame '{"jsonrpc":"2.0","method":"textDocument/didOpen","params":{"textDocument":{"uri":"file:///none/a.php","languageId":"php","version":1,"text":"<?php\n$a = 1\n$b = 2;\n"}}}'
    for _ in {1..200}; do
        grep -q publishDiagnostics "$work/served" && break
        sleep 0.1
    done
}
serve | "$checker" language-server >"$work/served" || true
grep -q "\"href\":\"file://$tree/share/doc/code-analyzer/errors.md#L" "$work/served" ||
    fail "the server links to: $(grep -o '"href":"[^"]*"' "$work/served")"

# Every command has its page, and each shell its completions.
for command in $("$checker" completion bash | sed -n "s/^        \([a-z-]*\)) words=.*/\1/p"); do
    page=$tree/share/man/man1/code-analyzer-$command.1.gz
    [ -s "$page" ] || fail "no man page of $command"
    # Letter for letter what the help text lists, but for the dashes that roff escapes.
    for option in $("$checker" "$command" --help | sed -n 's/^  \(-[a-zA-Z],\)\{0,1\}\(--[a-z-]*\).*/\2/p'); do
        zcat "$page" | tr -d '\\' | sed 's/f[BIR]//g' | grep -qF -e "$option" || fail "$option is not in $page"
    done
done
for name in bash-completion/completions/code-analyzer zsh/vendor-completions/_code-analyzer \
    fish/vendor_completions.d/code-analyzer.fish; do
    [ -s "$tree/share/$name" ] || fail "share/$name is missing"
done

# The desktop knows the workbench.
for name in applications/code-analyzer-workbench.desktop metainfo/code-analyzer-workbench.metainfo.xml \
    icons/hicolor/48x48/apps/code-analyzer-workbench.png; do
    [ -s "$tree/share/$name" ] || fail "share/$name is missing"
done
echo "installed tree: fine"
