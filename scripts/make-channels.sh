#!/usr/bin/env bash
# scripts/make-channels.sh [BUILD] [FOLDER]: makes of the archive of a build (scripts/make-bundle.sh; made when it is not there)
# what package managers and CI take: a Composer package, an npm package and a container's root, in FOLDER (BUILD/channels).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
here=$PWD
build=$(realpath -- "${1:-build/release}")
out=$(realpath -m -- "${2:-$build/channels}")
version=$(project_version)
homepage=$(sed -n 's/^CODE_ANALYZER_HOMEPAGE:STRING=//p' "$build/CMakeCache.txt")
platform=$(uname -s)-$(uname -m)
bundle=linux-$(uname -m)
unpacked=$build/bundle/code-analyzer-$version-linux-$(uname -m)
[ -x "$unpacked/bin/code-analyzer" ] || scripts/make-bundle.sh "$build"
install_missing zip busybox-static
rm -rf "$out"
mkdir -p "$out"

fill() { # TEMPLATE FILE
    sed -e "s|@VERSION@|$version|g" -e "s|@HOMEPAGE@|$homepage|g" -e "s|@BUNDLE@|$bundle|g" -e "s|@PLATFORM@|$platform|g" "$1" >"$2"
    [ -n "$homepage" ] || sed -i '/"homepage"/d' "$2"
}
# package FOLDER: what is alike in both: the program beside a file that starts it. There are no links in it, which
# npm would leave out.
package() {
    mkdir -p "$1/bin"
    cp -r "$unpacked" "$1/$bundle"
    [ -z "$(find "$1/$bundle" -type l)" ] || fail "links in the bundle"
    fill packaging/bundle/launcher.sh "$1/bin/code-analyzer"
    chmod +x "$1/bin/code-analyzer"
    fill packaging/README.channel.md.in "$1/README.md"
    cp LICENSE "$1/LICENSE"
}

package "$out/composer"
fill packaging/composer/composer.json.in "$out/composer/composer.json"
(cd "$out/composer" && zip -qr -X "$out/codeanalyzer-code-analyzer-$version.zip" .)

package "$out/npm"
fill packaging/npm/package.json.in "$out/npm/package.json"
(cd "$out/npm" && npm pack --silent --pack-destination "$out" >/dev/null)

# A root with the C library, a shell for the scripts of jobs, and the program.
root=$out/container/root
mkdir -p "$root"/{bin,etc,tmp,work,usr/bin,usr/lib,opt,root,lib64}
chmod 1777 "$root/tmp"
cp -r "$unpacked" "$root/opt/code-analyzer"
ln -s ../../opt/code-analyzer/bin/code-analyzer "$root/usr/bin/code-analyzer"
loader=$(patchelf --print-interpreter "$unpacked/bin/code-analyzer")
cp -L "$loader" "$root$loader"
libraries=/usr/lib/$(gcc -print-multiarch)
mkdir -p "$root$libraries"
for name in libc.so.6 libm.so.6 libdl.so.2 libpthread.so.0 librt.so.1 libgcc_s.so.1; do
    cp -L "$libraries/$name" "$root$libraries/" 2>/dev/null || cp -L "/lib/$(gcc -print-multiarch)/$name" "$root$libraries/"
done
ln -s "usr/lib" "$root/lib"
cp "$(command -v busybox)" "$root/bin/busybox"
for name in sh cat cp echo env false find grep head ls mkdir mv printf pwd rm sed sort tail test true; do
    ln -s busybox "$root/bin/$name"
done
ln -s ../../bin/env "$root/usr/bin/env"
echo 'root:x:0:0:root:/root:/bin/sh' >"$root/etc/passwd"
for package in libc6 libgcc-s1 busybox-static; do
    cp "/usr/share/doc/$package/copyright" "$root/opt/code-analyzer/share/licenses/$package"
done
cp packaging/Containerfile "$out/container/"
tar -C "$root" --sort=name --owner=0 --group=0 --numeric-owner -cJf "$out/code-analyzer-$version-container.tar.xz" .
cp "$unpacked.tar.xz" "$out/code-analyzer-linux-$(uname -m).tar.xz"
ls -l "$out"/*.zip "$out"/*.tgz "$out"/*.tar.xz | awk -v h="$out/" '{ sub(h, "", $NF); printf "%s: %d KiB\n", $NF, $5 / 1024 }'
