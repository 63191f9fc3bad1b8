# Sourced by scripts that need a clean Debian: makes one, whose packages come from where this machine's come from.

# machine_sources SUITE FOLDER: what apt has to know, in FOLDER/sources.list and FOLDER/apt.conf.
machine_sources() {
    local suite=$1 folder=$2 codename scheme proxy
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Identifier: Packages' 'Component: main' |
        grep -E " $codename(-updates|-security)? " | sort -u | sed "s/ $codename/ $suite/" >"$folder/sources.list"
    {
        apt-config dump | grep '^Acquire::' | grep -v '::IndexTargets\|::cdrom' || true
        for scheme in http https; do
            proxy=${scheme}_proxy
            [ -z "${!proxy:-}" ] || echo "Acquire::$scheme::Proxy \"${!proxy}\";"
        done
        echo 'APT::Get::Assume-Yes "true";'
    } >"$folder/apt.conf"
}

# make_base SUITE FOLDER TAR [OPTION...]: a base system as an archive; options are those of mmdebstrap.
make_base() {
    local suite=$1 folder=$2 tar=$3
    shift 3
    install_missing mmdebstrap gpg mount
    machine_sources "$suite" "$folder"
    # shellcheck disable=SC2016 # for the shell of mmdebstrap's hook
    unshare --mount mmdebstrap --quiet --variant=minbase --dpkgopt=force-unsafe-io \
        --setup-hook="mkdir -p \"\$1/etc/apt/apt.conf.d\" && cp '$folder/apt.conf' \"\$1/etc/apt/apt.conf.d/99machine\"" \
        --customize-hook='cp -rn /etc/apt/trusted.gpg.d /etc/apt/keyrings "$1/etc/apt/" 2>/dev/null || true' \
        "$@" "$suite" "$tar.new.tar" "$folder/sources.list"
    mv "$tar.new.tar" "$tar"
}

# bare_root SUITE FOLDER: nothing but a base system, in FOLDER; an archive of it is kept for a month.
bare_root() {
    local suite=$1 root=$2 cache=${CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/code-analyzer-bare}/$1
    mkdir -p "$cache" "$root"
    if [ -z "$(find "$cache/base.tar" -mtime -30 2>/dev/null)" ]; then
        say "Making a bare root ($suite)"
        make_base "$suite" "$cache" "$cache/base.tar"
    fi
    tar -C "$root" -xf "$cache/base.tar" --exclude='./dev/*'
    mknod -m 666 "$root/dev/null" c 1 3
}

# beside ROOT COMMAND...: outside of the root, which has its /proc for the time, and a network that leads nowhere.
beside() {
    local root=$1
    shift
    unshare --net --mount sh -ec 'mkdir -p "$0/proc"; mount -t proc proc "$0/proc"; exec "$@"' "$root" "$@"
}

# offline_in ROOT COMMAND...: in the root, with a network that leads nowhere, and nothing of this machine's environment.
offline_in() {
    local root=$1
    shift
    beside "$root" env -i PATH=/usr/local/bin:/usr/bin:/bin HOME=/ LANG=C.UTF-8 "$(command -v chroot)" "$root" "$@"
}

# start_time COMMAND...: milliseconds, the least of twenty runs; whatever status they end with.
start_time() {
    local least='' i begin end
    for i in {1..20}; do
        begin=$(date +%s%N)
        "$@" >/dev/null 2>&1 || true
        end=$(date +%s%N)
        [ -n "$least" ] && [ $((end - begin)) -ge "$least" ] || least=$((end - begin))
    done
    awk -v n="$least" 'BEGIN { printf "%.1f ms\n", n / 1e6 }'
}

# start_time_in ROOT COMMAND...: the same in a root, the time to enter it included.
start_time_in() {
    local root=$1
    shift
    beside "$root" bash -c "$(declare -f start_time); start_time chroot \"\$@\"" bash "$root" "$@"
}

# site FOLDER: a project with one mistake, and what is said of it with PREFIX before the name: mistake PREFIX.
site() {
    mkdir -p "$1"
    printf '<?php\n$a = 1\n$b = 2;\n' >"$1/a.php"
}
mistake() {
    echo "$1a.php:2:6: error: Expected ';' before '\$b' [1001]"
}
