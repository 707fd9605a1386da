#!/bin/sh
# Turns CHANGELOG.md into the compressed changelog of the Debian package: make-changelog.sh CHANGELOG.md MAINTAINER
# OUTPUT.gz. Each item becomes one, after the name of its heading.
set -eu
awk -v maintainer="$2" '
function print_item() {
    if (item != "") {
        line = "  *"
        count = split(item, words, /[ \t]+/)
        for (i = 1; i <= count; ++i) {
            if (length(line) + 1 + length(words[i]) > 79) {
                print line
                line = "   "
            }
            line = line " " words[i]
        }
        print line
    }
    item = ""
}
function print_end() {
    print_item()
    if (date != "") {
        command = "LC_ALL=C date -u -R -d " date
        command | getline stamp
        close(command)
        printf "\n -- %s  %s\n", maintainer, stamp
    }
}
/^## \[/ {
    was_before = date != ""
    print_end()
    version = substr($2, 2, length($2) - 2)
    date = $4
    printf "%svistorama (%s) unstable; urgency=medium\n\n", was_before ? "\n" : "", version
    next
}
date == "" { next }
/^### / { print_item(); heading = $2; next }
/^- / { print_item(); item = heading ": " substr($0, 3); next }
/^  / { item = item $0; next }
{ print_item() }
END { print_end() }
' "$1" | tr -d '`' | gzip -9n >"$3"
