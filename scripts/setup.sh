# Sourced by ./run, ./test and other scripts: installs what is missing, and builds.

# What building, installing and packing need.
packages=(
    g++ cmake ninja-build ccache re2c bison git help2man file dpkg-dev
    qtbase5-dev libqt5xmlpatterns5-dev libqscintilla2-qt5-dev fonts-dejavu-core
    libboost-dev libcli11-dev libdtl-dev nlohmann-json3-dev
)
bench_packages=(libbenchmark-dev)

# Tests also compare with PHP itself, on PHP files that Debian ships.
test_packages=(
    "${bench_packages[@]}" libgtest-dev libgmock-dev
    doxygen binutils pkg-config php-cli php-mbstring python3 xvfb openbox xdotool
    php-twig php-symfony-console php-symfony-dependency-injection php-symfony-http-foundation
    neovim libxml2-utils
)
# Node and its package manager come in many ways; those that are there will do.
command -v node >/dev/null || test_packages+=(nodejs)
command -v npm >/dev/null || test_packages+=(npm)

say() {
    printf '\n== %s\n' "$*"
}

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# The version of what is checked out.
project_version() {
    sed -n 's/^project(CodeAnalyzer VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt
}

# Installs those of the named packages that are not there yet.
install_missing() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            printf '%s\n' "Packages are missing, and there is no sudo to install them with. As root, run" \
                "    apt-get install --no-install-recommends ${missing[*]}" "and then this again." >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    say "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Installs the clients and schemas that tests hold the program against, and the formatter, at the versions of their lock
# file.
install_clients() {
    local folder=tests/editors
    cmp -s "$folder/package-lock.json" "$folder/node_modules/installed-lock.json" && return
    say "Installing the clients of the tests"
    npm ci --prefix "$folder" --ignore-scripts --no-audit --no-fund --loglevel=error
    cp "$folder/package-lock.json" "$folder/node_modules/installed-lock.json"
}

# configure PRESET [OPTION...]: options hold from then on, so that no command undoes what another one has built.
configure() {
    say "Configuring ($1)"
    cmake --preset "$@" >/dev/null
}

# build PRESET [TARGET...]: everything when no target is named.
build() {
    local preset=$1
    shift
    say "Building ($preset)"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
