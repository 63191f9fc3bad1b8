#!/usr/bin/env bash
# scripts/make-bundle.sh [BUILD] [FOLDER]: makes of a build an archive of the command line and the server that runs wherever
# it is unpacked, on x86-64 Linux with glibc 2.34 or later: FOLDER/code-analyzer-VERSION-linux-ARCH.tar.xz, and beside it the
# same as a folder. FOLDER is BUILD/bundle by default.
#
# With it come the libraries that it needs, but for those of the C library, and GCC's, which goes with it. Those of Debian's that
# ask for a newer C library for the sake of one function are taught to do without; of ICU's data only the names of encodings
# are taken, since the rest is for languages that no message is in.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
build=$(realpath -- "${1:-build/release}")
here=$PWD
out=$(realpath -m -- "${2:-$build/bundle}")
install_missing patchelf icu-devtools
glibc=2.34

version=$(project_version)
name=code-analyzer-$version-linux-$(uname -m)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for part in cli checks; do
    cmake --install "$build" --component $part --prefix "$work/tree" >/dev/null
done
rm -rf "$out/$name"
mkdir -p "$out/$name/bin" "$out/$name/lib" "$out/$name/share/licenses"
cd "$out/$name"
install -s "$work/tree/bin/code-analyzer" bin/
checks=$(find "$work/tree" -name libCodeAnalyzerChecks.so.1)
install -s -m 644 "$(realpath "$checks")" lib/libCodeAnalyzerChecks.so.1
cp -r "$work/tree/share/bash-completion" "$work/tree/share/zsh" "$work/tree/share/fish" "$work/tree/share/man" share/
mkdir -p share/doc
cp -r "$work/tree/share/doc/code-analyzer" share/doc/
rm -rf share/doc/code-analyzer/images share/doc/code-analyzer/changelog.Debian.gz share/doc/code-analyzer/workbench.md
rm -f share/doc/code-analyzer/hosting.md share/doc/code-analyzer/README.md # of what is not in here
cp "$here/LICENSE" share/licenses/code-analyzer
cp "$here/packaging/copyright" share/licenses/code-analyzer.copyright

# The libraries, under the names that are asked for, and what their packages say of their licences.
ldd "$work/tree/bin/code-analyzer" | awk '$2 == "=>" { print $1, $3 }' | sort | while read -r soname file; do
    case $soname in libc.so.* | libm.so.* | libdl.so.* | libpthread.so.* | librt.so.* | libgcc_s.so.*) continue ;; esac
    install -m 644 "$(realpath "$file")" "lib/$soname"
    strip --strip-unneeded "lib/$soname"
    package=$(dpkg -S "$(realpath "$file")" 2>/dev/null || dpkg -S "$(realpath "$file" | sed 's|^/usr||')")
    package=${package%%:*}
    cp "/usr/share/doc/$package/copyright" "share/licenses/$package"
    printf '%s %s %s\n' "$soname" "$package" "$(dpkg-query -W -f '${source:Package} ${source:Version}' "$package:$(dpkg --print-architecture)")"
done >share/licenses/LIBRARIES

# ICU's data, all but which is left out.
icu=$(basename lib/libicudata.so.*)
data=icudt${icu##*.}
read -r start size < <(nm -D -S lib/"$icu" | awk -v d="${data}_dat" '$4 == d { print $1, $2 }')
[ "$((16#$start))" -gt 0 ] || fail "no data in $icu"
section=$(readelf -SW lib/"$icu" | awk '$2 == ".rodata" || $3 == ".rodata" { sub(/.*\.rodata +PROGBITS +/, ""); print $1, $2 }')
read -r address offset <<<"$section"
dd if=lib/"$icu" of="$work/${data}l.dat" iflag=skip_bytes,count_bytes bs=1M status=none \
    skip=$((16#$offset + 16#$start - 16#$address)) count=$((16#$size))
mkdir "$work/kept" "$work/small"
icupkg -x cnvalias.icu -d "$work/kept" "$work/${data}l.dat"
icupkg -a cnvalias.icu -s "$work/kept" new "$work/small/${data}l.dat"
printf '.section .rodata\n.balign 16\n.globl %s_dat\n.type %s_dat, @object\n%s_dat:\n.incbin "%s"\n.size %s_dat, . - %s_dat\n.section .note.GNU-stack,"",@progbits\n' \
    "$data" "$data" "$data" "$work/small/${data}l.dat" "$data" "$data" >"$work/data.s"
gcc -shared -nostdlib -Wl,-soname,"$icu" -Wl,-s -o lib/"$icu" "$work/data.s"

# An older C library will do.
gcc -O2 -shared -fPIC -Wl,-soname,libarc4random.so.1 -Wl,-s -o lib/libarc4random.so.1 "$here/packaging/bundle/arc4random.c"
newer() { # FILE: the functions that it wants of a newer C library
    objdump -T "$1" | sed -n 's/.*(GLIBC_\(2\.[0-9]*\)) *\(.*\)/\1 \2/p' |
        while read -r wanted symbol; do
            [ "$(printf '%s\n' "$wanted" "$glibc" | sort -V | tail -1)" = "$glibc" ] || echo "$symbol"
        done
}
for file in lib/*; do
    for symbol in $(newer "$file"); do
        case $symbol in
            hypot) ;; # there in every version
            arc4random) patchelf --add-needed libarc4random.so.1 "$file" ;;
            *) fail "$file wants $symbol of a C library after $glibc" ;;
        esac
        patchelf --clear-symbol-version "$symbol" "$file"
    done
done
for file in bin/* lib/*; do
    [ -z "$(newer "$file")" ] || fail "$file wants a C library after $glibc: $(newer "$file")"
done
patchelf --force-rpath --set-rpath "\$ORIGIN/../lib" bin/code-analyzer
for file in lib/*; do
    patchelf --force-rpath --set-rpath "\$ORIGIN" "$file"
done

cat >share/licenses/README <<'TEXT'
LIBRARIES names each library in lib, the Debian package that it comes from, and the source of that; the terms of each are in
the file with the package's name. They may be replaced by other builds of theirs. libicudata has been made anew with the
names of encodings only; libQt5Core and libstdc++ ask for no version of single functions of the C library, and the
latter gets arc4random() from libarc4random, which is a part of code-analyzer. Rpaths lead to this folder.
TEXT
cd "$out"
tar --sort=name --owner=0 --group=0 --numeric-owner --mtime="@${SOURCE_DATE_EPOCH:-$(git -C "$here" log -1 --format=%ct 2>/dev/null || echo 0)}" \
    -cJf "$name.tar.xz" "$name"
du -sk "$name" | awk -v n="$name" '{ printf "%s: %d KiB\n", n, $1 }'
ls -l "$name.tar.xz" | awk '{ printf "%s: %d KiB\n", $NF, $5 / 1024 }'
