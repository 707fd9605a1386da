#!/usr/bin/env bash
# Unpacks servers of FTP and SSH for the tests below the given folder. They are not installed: their packages exclude one
# another, and an installed server would serve the whole machine.
set -euo pipefail
update_lists() {
    if [ "$(id -u)" -eq 0 ]; then
        apt-get update -q
    else
        sudo apt-get update -q
    fi
}
mkdir -p "$1"
cd "$1"
for package in vsftpd proftpd-core proftpd-mod-crypto pure-ftpd openssh-server; do
    if [ -d "$package" ]; then
        continue
    fi
    rm -rf fetched
    mkdir fetched
    # The lists may name a version that is gone by now.
    (cd fetched && { apt-get download -q "$package" || { update_lists && apt-get download -q "$package"; }; }) >&2
    dpkg-deb --extract fetched/*.deb fetched/content
    mv fetched/content "$package"
    rm -rf fetched
done
# ProFTPD looks for its modules in one folder.
cp proftpd-mod-crypto/usr/lib/proftpd/mod_tls.so proftpd-core/usr/lib/proftpd/
