# Sourced by ./run and ./test: brings what the build needs and builds. Does nothing that has been done already.

# Installs the packages of a list that are missing.
install_packages() {
    local missing=()
    local package
    while read -r package; do
        if ! dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed; then
            missing+=("$package")
        fi
    done < <(grep -v '^#' "$1")
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    echo "Installing ${missing[*]}" >&2
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        root=(sudo)
    fi
    "${root[@]}" apt-get update -q >&2
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}" >&2
}

# Brings the packages of tests/browser/package-lock.json, and Node itself if the machine has none.
install_node_packages() {
    if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
        install_packages packaging/node-packages.txt
    fi
    local folder=tests/browser
    if ! cmp -s "$folder/package-lock.json" "$folder/node_modules/.installed-lock.json"; then
        (cd "$folder" && npm ci --no-audit --no-fund >&2)
        cp "$folder/package-lock.json" "$folder/node_modules/.installed-lock.json"
    fi
}

# Configures once and builds what has changed, under the named preset: all, or the targets that follow. Speaks only
# while there is work to do.
build() {
    local preset=$1
    shift
    if [ ! -f "build/$preset/build.ninja" ]; then
        cmake --preset "$preset" >&2
    fi
    cmake --build --preset "$preset" ${1:+--target "$@"} >&2
}
