# Sourced by ./run and ./test: installs what is missing.

packages=(
    g++ cmake ninja-build ccache re2c bison git
    qtbase5-dev libqt5xmlpatterns5-dev libqscintilla2-qt5-dev fonts-dejavu-core
    libboost-dev libcli11-dev nlohmann-json3-dev libbenchmark-dev libgtest-dev libgmock-dev
    help2man
)

# Tests also compare with PHP itself, on PHP files that Debian ships.
test_packages=(
    clang-format doxygen binutils pkg-config php-cli php-mbstring python3 xvfb openbox xdotool
    php-twig php-symfony-console php-symfony-dependency-injection php-symfony-http-foundation
    neovim libxml2-utils
)
# Node and its package manager come in many ways; those that are there will do.
command -v node >/dev/null || test_packages+=(nodejs)
command -v npm >/dev/null || test_packages+=(npm)

say() {
    printf '\n== %s\n' "$*"
}

# Installs those of the named packages that are not there yet.
install_missing() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing: ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Installs the clients and schemas that tests hold the program against, at the versions of their lock file.
install_clients() {
    local folder=tests/editors
    cmp -s "$folder/package-lock.json" "$folder/node_modules/installed-lock.json" && return
    say "Installing the clients of the tests"
    npm ci --prefix "$folder" --ignore-scripts --no-audit --no-fund --loglevel=error
    cp "$folder/package-lock.json" "$folder/node_modules/installed-lock.json"
}

# Configures and builds a preset; the rest are targets, all of them when there are none.
build() {
    local preset=$1
    shift
    say "Building ($preset)"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
