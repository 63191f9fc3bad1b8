#!/usr/bin/env bash
# scripts/check-packages.sh [BUILD] [ROOT]: makes the Debian packages of a build, has lintian look at them, and installs,
# runs, upgrades and removes them in a clean Debian 12 root. ROOT is a folder with such a root; without one it is made
# with mmdebstrap. Run as root; takes minutes and the network, so that ./test leaves it out.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(realpath -- "${1:-build/release}")
work=$(mktemp -d)
root=${2:-$work/root}
newer=1.0.99
installed=(code-analyzer code-analyzer-workbench)
trap 'umount "$root/proc" 2>/dev/null || true; rm -rf "$work"' EXIT
fail() {
    echo "FAILED: $*" >&2
    exit 1
}

cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/debs" >/dev/null
same="code-analyzer (= $newer-1)"
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/newer" -R "$newer" \
    -D CPACK_DEBIAN_WORKBENCH_PACKAGE_DEPENDS="$same" \
    -D CPACK_DEBIAN_DEV_PACKAGE_DEPENDS="$same, qtbase5-dev, libboost-dev" >/dev/null
if command -v lintian >/dev/null; then
    lintian --allow-root --fail-on error "$work"/debs/*.deb
fi
ls -l "$work"/debs/*.deb | awk '{ print $5, $NF }'
[ -d "$root/usr" ] || mmdebstrap --quiet --variant=minbase bookworm "$root"
mountpoint -q "$root/proc" || mount -t proc proc "$root/proc"
mkdir -p "$root/debs/newer" "$root/site"
cp "$work"/debs/*.deb "$root/debs/"
cp "$work"/newer/*.deb "$root/debs/newer/"
printf '<?php\n$a = 1\n$b = 2;\n' >"$root/site/a.php"

inside() {
    chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 sh -ec "$1"
}
checks() {
    found=$(inside 'code-analyzer check --quiet /site || [ $? -eq 1 ]')
    [ "$found" = "/site/a.php:2:6: error: Missing ';' at the end of the statement [1001]" ] || fail "check says: $found"
    found=$(inside 'code-analyzer project --quiet /site || [ $? -eq 1 ]')
    [ "$found" = "/site/a.php:2:6: error: Missing ';' at the end of the statement [1001]" ] || fail "project says: $found"
}

inside 'apt-get update -qq; apt-get install -y -qq --no-install-recommends /debs/code-analyzer_*.deb' >/dev/null
checks
inside 'code-analyzer --version'
inside 'apt-get install -y -qq --no-install-recommends /debs/code-analyzer-workbench_*.deb' >/dev/null
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
inside 'apt-get purge -y -qq code-analyzer code-analyzer-workbench libcodeanalyzer-dev' >/dev/null
left=$(inside 'find /usr /etc -name "*code-analyzer*" -o -name "libCodeAnalyzer*"')
[ -z "$left" ] || fail "left behind: $left"
echo "packages: fine"
