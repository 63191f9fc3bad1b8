#!/usr/bin/env bash
# scripts/check-packages.sh [BUILD] [ROOT]: makes the Debian packages of a build, has lintian look at them, and installs,
# runs, upgrades and removes them in a clean Debian 12 root (SUITE=trixie: Debian 13, with packages that were built there).
# Builds the C example with what is installed. ROOT is a folder with such a root; without one it is made with mmdebstrap. Run
# as root; takes minutes and the network, so that ./test leaves it out.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
source scripts/clean-root.sh
build=$(realpath -- "${1:-build/release}")
work=$(mktemp -d)
root=${2:-$work/root}
newer=1.0.99
installed=(code-analyzer libcodeanalyzerchecks1 libcodeanalyzer1 code-analyzer-workbench libcodeanalyzercheck1 libcodeanalyzercheck-dev)
trap 'umount "$root/proc" 2>/dev/null || true; rm -rf "$work"' EXIT

cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/debs" >/dev/null 2>&1
same="(= $newer-1)"
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/newer" -R "$newer" \
    -D CPACK_DEBIAN_CLI_PACKAGE_DEPENDS="libcodeanalyzerchecks1 $same" \
    -D CPACK_DEBIAN_WORKBENCH_PACKAGE_DEPENDS="code-analyzer $same, libcodeanalyzer1 $same" \
    -D CPACK_DEBIAN_CHECK_DEV_PACKAGE_DEPENDS="libcodeanalyzercheck1 $same, libc6-dev" \
    -D CPACK_DEBIAN_DEV_PACKAGE_DEPENDS="libcodeanalyzer1 $same, libcodeanalyzerchecks1 $same, qtbase5-dev, libboost-dev" >/dev/null 2>&1
install_missing lintian mandoc
# What cannot be mended: there is no bug of Debian's that the first version would close.
lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs "$work"/debs/*.deb
for page in "$build"/manual/man1/*.gz; do
    said=$(zcat "$page" | mandoc -T lint -W warning || true)
    [ -z "$said" ] || fail "mandoc of $page: $said"
done
ls -l "$work"/debs/*.deb | awk '{ print $5, $NF }'
[ -d "$root/usr" ] || bare_root "${SUITE:-bookworm}" "$root"
mountpoint -q "$root/proc" || mount -t proc proc "$root/proc"
mkdir -p "$root/debs/newer" "$root/site"
cp "$work"/debs/*.deb "$root/debs/"
cp "$work"/newer/*.deb "$root/debs/newer/"
site "$root/site"

inside() {
    chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 sh -ec "$1"
}
checks() {
    found=$(inside 'code-analyzer check --quiet /site || [ $? -eq 1 ]')
    [ "$found" = "$(mistake /site/)" ] || fail "check says: $found"
    found=$(inside 'code-analyzer project --quiet /site || [ $? -eq 1 ]')
    [ "$found" = "$(mistake /site/)" ] || fail "project says: $found"
}

# needs PACKAGE: how many packages it brings besides itself, and how large all of them are.
needs() {
    inside "apt-get install -y --no-install-recommends $(printf '/debs/%s_*.deb ' "$@")" >"$work/said"
    sed -n "s/^\\([0-9]*\\) upgraded, \\([0-9]*\\) newly installed.*/$1: \\2 new packages with itself/p;
        s/^After this operation, \\(.*\\) of additional.*/$1: \\1/p" "$work/said"
}
inside 'apt-get update -qq' >/dev/null
needs code-analyzer libcodeanalyzerchecks1
inside 'dpkg-query -W -f "\${Package}\n"' >"$work/there"
if grep -q 'libqt5gui5\|libqt5widgets5\|libx11-6' "$work/there"; then
    fail "a command line without a window brings: $(grep 'libqt5gui5\|libqt5widgets5\|libx11-6' "$work/there" | tr '\n' ' ')"
fi
checks
needs libcodeanalyzercheck1
needs libcodeanalyzercheck-dev
inside 'apt-get install -y -qq --no-install-recommends gcc pkg-config python3-minimal' >/dev/null
inside 'gcc -Wall -Werror /usr/share/doc/libcodeanalyzercheck-dev/examples/c/check.c -o /c-example \
    $(pkg-config --cflags --libs code-analyzer-check)'
found=$(inside '/c-example /site/a.php || [ $? -eq 1 ]')
[[ $found == "$(mistake /site/ | sed 's/error: //')"*"mended by: Insert ';'"* ]] || fail "the C example says: $found"
inside 'code-analyzer --version'
inside 'apt-get install -y -qq --no-install-recommends /debs/libcodeanalyzer1_*.deb /debs/code-analyzer-workbench_*.deb' >/dev/null
inside 'code-analyzer-workbench --version'
if [ -n "${WITH_EXAMPLE:-}" ]; then # brings a compiler into the root
    inside 'apt-get install -y -qq --no-install-recommends /debs/libcodeanalyzer-dev_*.deb cmake g++ make
        cmake -S /usr/share/doc/libcodeanalyzer-dev/examples/host -B /host
        cmake --build /host' >/dev/null
    installed+=(libcodeanalyzer-dev)
    found=$(inside '/host/example-host || [ $? -eq 1 ]')
    [ "$found" = "3:1: Missing ';' [102]" ] || fail "the example says: $found"
fi
inside "apt-get install -y -qq --no-install-recommends $(printf '/debs/newer/%s_*.deb ' "${installed[@]}")" >/dev/null
checks
inside 'apt-get purge -y -qq "code-analyzer*" "libcodeanalyzer*"' >/dev/null
left=$(inside 'find /usr /etc -name "*code-analyzer*" -o -iname "libcodeanalyzer*"')
[ -z "$left" ] || fail "left behind: $left"
echo "packages: fine"
