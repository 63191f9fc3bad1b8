#!/usr/bin/env bash
# scripts/check-fresh.sh [--suite SUITE] [--all] [COMMAND...]: does on a fresh machine what the README says.
#
# The machine is a clean Debian root (bookworm, or SUITE), the commit that is checked out is cloned into a folder with a
# blank and an umlaut, and a user without root rights but with sudo runs COMMAND there. Without one: what ./run says when
# there is no sudo either, then ./run and each command in the README's boxes, then ./run again for root. --all also does
# those that take long. Needs root, since it enters another root.
#
# A base of the root, packages and a compiler cache are kept in CACHE (by default in the user's cache folder).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
source scripts/clean-root.sh

suite=bookworm
all=
while [ $# -gt 0 ]; do
    case $1 in
        --suite) suite=${2:?--suite needs a name} && shift 2 ;;
        --all) all=yes && shift ;;
        *) break ;;
    esac
done
[ "$(id -u)" -eq 0 ] || fail "scripts/check-fresh.sh needs root, since it enters another root"
[ -z "$(git status --porcelain --untracked-files=no)" ] || echo "What is not committed is not checked." >&2
cache=${CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/code-analyzer-fresh}/$suite
base=$cache/base.tar
root=$cache/root
folder="/home/user/Prüfung neu"
mkdir -p "$cache/ccache"
exec 9>"$cache/lock"
flock -n 9 || fail "another check uses $cache"

# Nothing is ever mounted where this can see it, so that nothing else can be deleted. What still runs in the root goes
# with the process that entered it, a moment later.
remove_root() {
    local job
    for job in $(jobs -p); do
        kill -KILL "$job" 2>/dev/null && sleep 2
    done
    rm -rf --one-file-system "$root"
}
trap remove_root EXIT
remove_root

# in_root USER COMMAND...: in the root and the clone, with mounts and processes that end with it.
in_root() {
    local user=$1
    shift
    setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child bash -euc '
        root=$0 cache=$1
        mount -t proc proc "$root/proc"
        mount --rbind /dev "$root/dev"
        mount --bind "$cache/archives" "$root/var/cache/apt/archives"
        mount --bind "$cache/ccache" "$root/ccache"
        shift
        chroot "$root" "$@" </dev/null || exit $?' "$root" "$cache" \
        runuser -u "$user" -- env -i LANG=C.UTF-8 CCACHE_DIR=/ccache "${npm[@]}" \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin USER="$user" LOGNAME="$user" \
        bash -euc 'HOME=$(getent passwd "$USER" | cut -d: -f6); export HOME; cd "$0"; "$@"' "$folder" "$@" &
    wait $! # unlike a command in the foreground, it is ended by a signal
}

# What the README says to type after ./run; FOLDER is the reader's own.
readme_commands() {
    sed -n '/^```/,/^```/p' README.md | sed -e '/^```/d' -e 's/ *#.*//' -e 's/FOLDER/examples/'
}

# The example site has mistakes; the workbench stays open.
run_line() {
    local line=$1 status=0
    say "$line"
    case $line in
        *code-analyzer-workbench*) in_root user env QT_QPA_PLATFORM=offscreen timeout 5 bash -c "$line" || status=$? ;;
        *) in_root user bash -ec "$line" || status=$? ;;
    esac
    case "$status $line" in
        0\ * | "124 "*code-analyzer-workbench* | "1 "*code-analyzer\ check* | "1 ./run examples") ;;
        *) fail "'$line' ends with $status" ;;
    esac
}

check_readme() {
    local line commands
    mapfile -t commands < <(readme_commands)
    [ ${#commands[@]} -gt 10 ] || fail "the README has hardly a command: ${commands[*]}"
    for line in "${commands[@]}"; do
        case $line in
            ./test*) echo "Left out, since it is a check of its own: $line" ;;
            "./run bench" | bench/* | *clang* | *fuzz*)
                if [ -n "$all" ]; then run_line "$line"; else echo "Left out without --all: $line"; fi
                ;;
            *) run_line "$line" ;;
        esac
    done
}

npm=()
if [ $# -gt 0 ] && command -v npm >/dev/null; then
    for key in registry proxy https-proxy noproxy; do
        value=$(npm config get "$key")
        case $value in '' | null | undefined) ;; *) npm+=("npm_config_${key//-/_}=$value") ;; esac
    done
    npm+=(npm_config_cafile=/etc/ssl/certs/ca-certificates.crt)
fi

if [ -z "$(find "$base" -mtime -30 2>/dev/null)" ]; then
    say "Making a clean root ($suite)"
    rm -rf "$cache/archives"
    mkdir "$cache/archives"
    # shellcheck disable=SC2016 # for the shell of mmdebstrap's hook
    make_base "$suite" "$cache" "$base" --include=git,ca-certificates \
        --customize-hook='cp /etc/ssl/certs/ca-certificates.crt "$1/etc/ssl/certs/" 2>/dev/null || true' \
        --customize-hook='chroot "$1" useradd --create-home --shell /bin/bash user'
fi
say "Unpacking it"
mkdir -p "$root"
tar -C "$root" -xf "$base" --exclude='./dev/*'
mkdir "$root/ccache"
cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
# Objects are copied, since their owner changes.
git clone --quiet --no-hardlinks . "$root$folder"
chown -R --reference="$root/home/user" "$root$folder" "$cache/ccache"

if [ $# -eq 0 ]; then
    say "./run without sudo"
    status=0
    said=$(in_root user ./run 2>&1) || status=$?
    if [ "$status" -ne 1 ] || [[ $said != *"As root, run"*"apt-get install"* ]] || [[ $said == *"command not found"* ]]; then
        fail "without sudo ./run ends with $status and says: $said"
    fi
fi
in_root root apt-get update -qq
in_root root apt-get install -qq --no-install-recommends sudo >/dev/null
echo 'user ALL=(ALL) NOPASSWD: ALL' >"$root/etc/sudoers.d/user"

if [ $# -gt 0 ]; then
    say "$*"
    in_root user "$@"
    exit
fi
say "./run as a user with sudo"
in_root user ./run
check_readme
say "./run as root, with a package to install"
in_root root apt-get purge -qq re2c >/dev/null
chown -R root:root "$root$folder"
in_root root ./run
echo "fresh machine ($suite): fine"
