# Sourced by ./run and ./test: brings what the build needs and builds. Does nothing that has been done already, and says
# each step that takes its time.

say() { printf '%s\n' "$*" >&2; }

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# Whether one of the packages is installed.
is_installed() {
    local package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ]; then
            return
        fi
    done
    return 1
}

# The first of the packages that this release has.
known_package() {
    local package
    for package in "$@"; do
        # To its end: a reader that stops early would make a failure of the writer's broken pipe.
        if [ -n "$(apt-cache policy "$package" | sed -n '/^  Candidate: [0-9]/p')" ]; then
            echo "$package"
            return
        fi
    done
    say "This release of Debian has no package $*"
    return 1
}

# Installs the packages of lists that are missing.
install_packages() {
    local lines=() missing=() names=() line name
    mapfile -t lines < <(grep -hv '^#' "$@")
    for line in "${lines[@]}"; do
        is_installed ${line//|/ } || missing+=("$line")
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    say "Installing ${#missing[@]} packages of Debian and what they need (about 2 minutes, this time only)"
    as_root apt-get update -q >&2
    for line in "${missing[@]}"; do
        name=$(known_package ${line//|/ })
        names+=("$name")
    done
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${names[@]}" >&2
}

# Brings the packages of tests/browser/package-lock.json, and Node itself if the machine has none.
install_node_packages() {
    if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
        install_packages packaging/node-packages.txt
    fi
    local folder=tests/browser
    if ! cmp -s "$folder/package-lock.json" "$folder/node_modules/.installed-lock.json"; then
        say "Installing what checks pages in the browser (some seconds, this time only)"
        (cd "$folder" && npm ci --no-audit --no-fund >&2)
        cp "$folder/package-lock.json" "$folder/node_modules/.installed-lock.json"
    fi
}

# Configures the preset once, with the cache entries that follow (NAME=VALUE); again if one of them has another value.
configure() {
    local preset=$1 entry definitions=() is_done=yes
    shift
    local cache=build/$preset/CMakeCache.txt
    [ -f "build/$preset/build.ninja" ] || is_done=no
    for entry in "$@"; do
        definitions+=("-D$entry")
        [ $is_done = yes ] && grep -q "^${entry%%=*}:[A-Z]*=${entry#*=}\$" "$cache" || is_done=no
    done
    if [ $is_done = no ]; then
        say "Configuring in build/$preset (about 10 seconds, this time only)"
        cmake --preset "$preset" "${definitions[@]}" >&2
    fi
}

# Builds what has changed under the configured preset: all, or the targets that follow. Says nothing if nothing has.
build() {
    local preset=$1
    shift
    local steps minutes
    # The last line of the list is "[312/312] Linking ..." or "ninja: no work to do."
    steps=$(ninja -C "build/$preset" -n "$@" | sed -n '$ s|^\[[0-9]*/\([0-9]*\)\].*|\1|p')
    if [ -z "$steps" ]; then
        return
    fi
    # A step takes one and a half seconds of a usual processor.
    minutes=$(((steps * 3 / 2 / $(nproc) + 59) / 60))
    say "Building in build/$preset: $steps steps, at most about $minutes min on $(nproc) processors (later only what has" \
        "changed)"
    cmake --build --preset "$preset" ${1:+--target "$@"} >&2
}
