#!/usr/bin/env bash
# Builds the package in a clean Debian, installs it in another one that has nothing else, and uses it there as a user of no
# special rights:
#
#   tests/package/clean-root.sh RELEASE FOLDER      RELEASE: bookworm (Debian 12) or trixie (13)
#
# What is built is the last commit of this checkout. The roots are made below FOLDER with the package sources of this
# machine; what needs the network or long stays for the next call. Needs root, a network, debootstrap, lintian, xvfb,
# xdotool and imagemagick. Half an hour and 6 GB the first time, then some minutes.
set -euo pipefail

if [ "$(id -u)" -ne 0 ]; then
    exec sudo --preserve-env=http_proxy,https_proxy,no_proxy "$0" "$@"
fi
# All mounts are gone with the process.
if [ "${CLEAN_ROOT_UNSHARED:-}" = "" ]; then
    exec env CLEAN_ROOT_UNSHARED=1 unshare --mount --propagation private "$0" "$@"
fi

release=$1
mkdir -p "$2"
folder=$(readlink -f "$2")
base=$folder/base
builder=$folder/builder
root=$folder/root
cd "$(dirname "$0")/../.."

say() { printf '%s\n' "$*"; }
fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}
in_root() { chroot "$root" "$@"; }
visitor=(chroot "$root" setpriv --reuid=visitor --regid=visitor --init-groups
    env -i HOME=/home/visitor USER=visitor PATH=/usr/bin:/bin LC_ALL=C.UTF-8)
as_visitor() { "${visitor[@]}" "$@"; }

# The sources of Debian that this machine has, for the release: with them a mirror near it, and no other packages.
write_package_sources() {
    local own
    own=$(. /etc/os-release && echo "$VERSION_CODENAME")
    rm -rf "$base/etc/apt"/sources.list*
    apt-get indextargets --format '$(CREATED_BY) $(ORIGIN) $(REPO_URI) $(RELEASE) $(COMPONENT)' |
        awk -v own="$own" -v release="$release" \
            '$1 == "Packages" && $2 == "Debian" { sub("^" own, release, $4); print "deb", $3, $4, $5 }' |
        sort -u >"$base/etc/apt/sources.list"
    # How packages are fetched here, such as proxies; what a package has brought would come into its way there.
    local file
    for file in /etc/apt/apt.conf.d/*; do
        dpkg-query -S "$file" >/dev/null 2>&1 || cp -a "$file" "$base/etc/apt/apt.conf.d/"
    done
    [ -s "$base/etc/apt/sources.list" ] || fail "this machine has no package sources of Debian"
}

# What programs expect of a running system; all mounts are gone with this process.
prepare_root() {
    cp -L /etc/resolv.conf /etc/hosts "$1/etc/"
    mount -t proc proc "$1/proc"
    mount -t tmpfs tmpfs "$1/dev/shm"
}

if [ ! -f "$base/.ready" ]; then
    say "Making a minimal Debian, $release (about 2 minutes)"
    rm -rf "$base"
    mirror=$(apt-get indextargets --format '$(CREATED_BY) $(ORIGIN) $(LABEL) $(REPO_URI)' |
        awk '$1 == "Packages" && $2 == "Debian" && $3 == "Debian" { print $4; exit }')
    debootstrap --variant=minbase "$release" "$base" "$mirror" >"$folder/debootstrap.log" 2>&1 ||
        fail "debootstrap; see $folder/debootstrap.log"
    write_package_sources
    touch "$base/.ready"
fi

say "--- The package is built from a clean clone (about 10 minutes the first time)"
if [ ! -f "$builder/.ready" ]; then
    rm -rf --one-file-system "$builder"
    cp -a "$base" "$builder"
fi
prepare_root "$builder"
mkdir -p "$folder/ccache" "$builder/ccache"
mount --bind "$folder/ccache" "$builder/ccache"
rm -rf "$builder/vistorama"
git -c safe.directory="*" clone -q . "$builder/vistorama"
chroot "$builder" env -i HOME=/root PATH="$PATH" LC_ALL=C.UTF-8 CCACHE_DIR=/ccache bash -euo pipefail -c '
    cd /vistorama
    source packaging/prepare.sh
    install_packages packaging/build-packages.txt
    touch /.ready
    configure release
    build release deb' >"$folder/build.log" 2>&1 || fail "the build; see $folder/build.log"
package=$(echo "$builder"/vistorama/build/release/package/vistorama_*.deb)
say "$(basename "$package"): $(dpkg-deb -f "$package" Depends)"
lintian --fail-on error,warning "$package"

say "--- A fresh root"
rm -rf --one-file-system "$root"
cp -a "$base" "$root"
prepare_root "$root"
# For the display, which is outside.
mkdir -p /tmp/.X11-unix "$root/tmp/.X11-unix"
mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"

say "Installing $(basename "$package")"
cp "$package" "$root/tmp/"
export DEBIAN_FRONTEND=noninteractive
{
    in_root apt-get update -q
    in_root apt-get install -q -y --no-install-recommends "/tmp/$(basename "$package")"
} >"$folder/install.log" 2>&1 || fail "the installation; see $folder/install.log"
in_root dpkg-query -W vistorama
in_root apt-get check -q >/dev/null
in_root useradd --create-home visitor

say "--- The programs say their version, without a display"
version=$(dpkg-deb -f "$package" Version)
for program in vistorama vistorama-cli; do
    [ "$(as_visitor $program --version)" = "$program $version" ] || fail "$program --version"
    as_visitor $program --version
done

say "--- Every library is found"
for program in vistorama vistorama-cli; do
    if in_root ldd /usr/bin/$program | grep 'not found'; then
        fail "$program misses libraries"
    fi
done

say "--- A user deploys the sample and a project of a folder tree"
as_visitor vistorama-cli deploy /usr/share/vistorama/sample/sample.gallery /home/visitor/site --quiet
as_visitor vistorama-cli new /home/visitor/trip.gallery --layout cards --style ink --signature Anna \
    --tree /usr/share/vistorama/sample
as_visitor vistorama-cli deploy /home/visitor/trip.gallery /home/visitor/trip --quiet
for site in site trip; do
    [ -s "$root/home/visitor/$site/index.html" ] || fail "no page in $site"
    say "$site: $(find "$root/home/visitor/$site" -type f | wc -l) files"
done

# The page comes later than the window: it is there when photographs stand in the window's left half, which has some flat
# colours before, and nothing moves any more.
wait_for_page() {
    local colours last=none now
    for _ in $(seq 120); do
        import -display ":$number" -window "$window" "$folder/desktop.png"
        now=$(convert "$folder/desktop.png" rgb:- | sha256sum)
        colours=$(convert "$folder/desktop.png" -gravity West -crop 50%x100%+0+0 -format %k info:)
        if [ "$colours" -gt 5000 ] && [ "$now" = "$last" ]; then
            return
        fi
        last=$now
        sleep 0.5
    done
    fail "no page in the window; see $folder/desktop.png"
}

say "--- The desktop program opens the sample"
# Of this machine's own tools, so that the root stays what a user has.
coproc display { exec Xvfb -displayfd 1 -screen 0 1440x900x24 -nolisten tcp -noreset 2>/dev/null; }
display_process=$display_PID
read -r number <&"${display[0]}"
trap 'kill $display_process' EXIT
cp -r "$root/usr/share/vistorama/sample" "$root/home/visitor/sample"
chroot "$root" chown -R visitor:visitor /home/visitor/sample
# Not through the function: the process to end is the program itself.
"${visitor[@]}" DISPLAY=":$number" QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu QT_QUICK_BACKEND=software \
    vistorama /home/visitor/sample/sample.gallery >"$folder/desktop.log" 2>&1 &
program=$!
window=
for _ in $(seq 120); do
    kill -0 $program 2>/dev/null || fail "vistorama has ended; see $folder/desktop.log"
    window=$(DISPLAY=":$number" xdotool search --onlyvisible --name 'Vistorama - ' 2>/dev/null | head -1) || true
    if [ -n "$window" ]; then
        break
    fi
    sleep 0.5
done
[ -n "$window" ] || fail "no window; see $folder/desktop.log"
say "Window: $(DISPLAY=":$number" xdotool getwindowname "$window")"
wait_for_page
say "Picture: $folder/desktop.png"
DISPLAY=":$number" xdotool search --onlyvisible --name 'Vistorama - ' >/dev/null || fail "the window is gone"
kill -TERM $program
wait $program || fail "vistorama ended with $?"

say "--- The desktop knows the program"
in_root apt-get install -q -y --no-install-recommends desktop-file-utils shared-mime-info man-db appstream xz-utils \
    >>"$folder/install.log" 2>&1 || fail "the tools; see $folder/install.log"
in_root desktop-file-validate /usr/share/applications/com.corvane.Vistorama.desktop
# The program has no home page, which newer versions of the tool miss.
findings=$(in_root appstreamcli validate --no-net --no-color /usr/share/metainfo/com.corvane.Vistorama.metainfo.xml |
    sed -n '/^[EW]:/{/url-homepage-missing/!p}' || true)
[ -z "$findings" ] || fail "$findings"
in_root grep -h vistorama /usr/share/mime/globs2 /usr/share/applications/mimeinfo.cache
in_root man -w vistorama vistorama-cli

say "--- It goes without a trace"
in_root apt-get purge -q -y vistorama >>"$folder/install.log" 2>&1
if find "$root/usr" "$root/etc" "$root/var/lib" -xdev -iname '*vistorama*' -not -path '*/apt/*' | grep .; then
    fail "files are left behind"
fi
say "All is well."
