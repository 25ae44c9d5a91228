#!/bin/bash
# Lists whose work the programs are linked with, and under which licences, in docs/THIRD_PARTY.md. Everything in it is
# read from the packages this machine links with; run scripts/package.sh before.
# Usage: scripts/third-party.sh [--check]
#   --check  writes nothing and fails when the page is not what would be written
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/linked-libraries.sh
source scripts/linked-libraries.sh

page=docs/THIRD_PARTY.md
desktop=build/package/pointloom
headless=build/package/pointloom-cli

# What the programs themselves call; one that is missing here stops the script.
declare -A purpose=(
    [libqt6core6]="texts, files, dates, observable properties"
    [libqt6gui6]="drawing scoreboards"
    [libqt6widgets6]="windows, menus, dialogs"
    [libqt6openglwidgets6]="the player's picture by the graphics card"
    [libqt6svg6]="icons"
    [libqt6dbus6]="keeping the desktop awake, showing files"
    [libqt6network6]="crash reports, licences, one instance"
    [libqt6keychain1]="keeping the licence in the desktop's keychain"
    [libavformat59]="reading and writing video files"
    [libavcodec59]="decoding and encoding"
    [libavfilter8]="converting pictures"
    [libswscale6]="converting pictures"
    [libavutil57]="what FFmpeg's libraries share"
    [libswresample4]="converting sound"
    [libmpv2]="playing the clip in the editor"
    [libsodium23]="verifying licences"
    [libstdc++6]="the C++ standard library"
    [libgcc-s1]="the compiler's own functions"
    [libc6]="the C library"
)

# In no library: compiled into the programs, or opened by file.
declare -A included=(
    [nlohmann-json3-dev]="compiled in: documents and settings"
    [libcli11-dev]="compiled in: the command line"
    [fonts-urw-base35]="font of the scoreboards"
    [fonts-liberation]="the same, where the first is missing"
    [fonts-noto-color-emoji]="flags"
    [fonts-dejavu-core]="names in scripts that the others leave out"
)

# Licences of the library in packages whose file names them in prose only.
declare -A licence_in_prose=(
    [libc6]="LGPL-2.1+"
    [libgcc-s1]="GPL-3+ with GCC Runtime Library Exception 3.1"
    [libstdc++6]="GPL-3+ with GCC Runtime Library Exception 3.1"
    [libgfortran5]="GPL-3+ with GCC Runtime Library Exception 3.1"
    [libgomp1]="GPL-3+ with GCC Runtime Library Exception 3.1"
    [libquadmath0]="LGPL-2.1+"
    [fonts-liberation]="GPL-2 with font exceptions"
    [libcairo2]="LGPL-2.1 or MPL-1.1"
    [libcairo-gobject2]="LGPL-2.1 or MPL-1.1"
    [libcdio-cdda2]="GPL-3+"
    [libcdio-paranoia2]="GPL-3+"
    [libdc1394-25]="LGPL-2.1+"
    [libflite1]="BSD-like (Carnegie Mellon)"
    [libgcrypt20]="LGPL-2.1+"
    [libgnutls30]="LGPL-2.1+"
    [libgssapi-krb5-2]="Expat-like (MIT Kerberos)"
    [libk5crypto3]="Expat-like (MIT Kerberos)"
    [libkrb5-3]="Expat-like (MIT Kerberos)"
    [libkrb5support0]="Expat-like (MIT Kerberos)"
    [libiec61883-0]="LGPL-2.1+"
    [libnuma1]="LGPL-2.1"
    [libproxy1v5]="LGPL-2.1+"
    [libraw1394-11]="LGPL-2.1+"
    [libselinux1]="public-domain"
    [libtasn1-6]="LGPL-2.1+"
    [libusb-1.0-0]="LGPL-2.1+"
    [libwebp7]="BSD-3-clause"
    [libwebpmux3]="BSD-3-clause"
)

main() {
    [[ -x $desktop && -x $headless ]] || fail "the programs are not built; run scripts/package.sh"
    written=$(mktemp)
    trap 'rm -f "$written"' EXIT
    write_page >"$written" || exit 1
    if [[ ${1-} == --check ]]; then
        diff -u "$page" "$written" >&2 || fail "$page is not what the programs link with; run scripts/third-party.sh"
        printf 'third-party: %s names all %d packages\n' "$page" "$(grep -c '' <(grep '^| ' "$page" | grep -o '`[^`]*`'))"
    else
        cp "$written" "$page"
        printf 'third-party: wrote %s\n' "$page"
    fi
}

fail() {
    printf 'third-party: %s\n' "$*" >&2
    exit 1
}

write_page() {
    local direct closure without_desktop dependencies
    direct=$({ direct_libraries "$desktop" && direct_libraries "$headless"; } | packages_of_libraries) || return 1
    closure=$({ all_libraries "$desktop" && all_libraries "$headless"; } | packages_of_libraries) || return 1
    without_desktop=$(direct_libraries "$headless" | packages_of_libraries) || return 1
    # shellcheck disable=SC2086 # one argument a package
    dependencies=$(dpkg-query --show --showformat='${Package}\t${Depends}, ${Pre-Depends}\n' $closure | sort)
    cat <<'END'
# Third-party software

What the programs of the Debian packages are made of and linked with. Made by `scripts/third-party.sh` from the packages'
own copyright files, which hold the full texts (`/usr/share/doc/PACKAGE/copyright`); versions are upstream's.

END
    what_decides "$closure" || return 1
    cat <<'END'

## What the programs call themselves

| Source | Version | Licence | Parts of it also under | Packages and what they are used for |
|---|---|---|---|---|
END
    local package note
    for package in $direct; do
        [[ -n ${purpose[$package]-} ]] || fail "say what $package is used for, in this script"
        note=" ${purpose[$package]}"
        grep -qxF "$package" <<<"$without_desktop" || note+=" (desktop only)"
        row "$package" "$note" || return 1
    done | table || return 1
    for package in $(printf '%s\n' "${!included[@]}" | sort); do
        row "$package" " ${included[$package]}" || return 1
    done | table || return 1
    cat <<'END'

## What those bring along

| Source | Version | Licence | Parts of it also under | Packages and what uses them |
|---|---|---|---|---|
END
    for package in $(comm -13 <(printf '%s\n' "$direct") <(printf '%s\n' "$closure")); do
        row "$package" " for $(users_of "$package")" || return 1
    done | table || return 1
}

what_decides() {
    local closure=$1 encoder
    for encoder in libx264 libx265; do
        grep -q "^$encoder-" <<<"$closure" || fail "$encoder is no longer linked; look at docs/decisions/gpl.md again"
    done
    cat <<'END'
Pointloom is under GPL-3.0-or-later ([why](decisions/gpl.md)). Debian builds FFmpeg with parts under the GPL, and with
x264 and x265 (both GPL-2+): so the whole, as people install it, can only be passed on under the GPL.
END
}

# row PACKAGE NOTE: source, version, licence, other licences, package, note
row() {
    local main
    main=$(main_licence "$1") || return 1
    [[ -n $main ]] || fail "the licence of $1 cannot be told; name it in this script"
    printf '%s\t%s\t%s\t%s\t%s\n' "$(source_and_version "$1")" "$main" "$(other_licences "$1" "$main")" "$1" "$2"
}

# One line a source: its packages share version and licences.
table() {
    sort -t "$(printf '\t')" -k 1,1 -k 2,2 -s | awk -F '\t' '
        function finish() {
            if (head != "")
                print head packages " |"
        }
        {
            this = "| " $1 " | " $2 " | " $3 " | " $4 " | "
            if (this != head) {
                finish()
                head = this
                packages = ""
            }
            packages = packages (packages ? "; " : "") "`" $5 "`" $6
        }
        END { finish() }'
}

source_and_version() {
    dpkg-query --show --showformat='${source:Package}\t${source:Upstream-Version}\n' "$1" |
        sed -E 's/[+~.](dfsg|ds|repack|really|git).*//'
}

main_licence() {
    if is_machine_readable "$1"; then
        licences "$1" | awk -F '\t' '$1 == "all" { all = all (all ? ", " : "") $2 }
            $1 == "part" { parts = parts (parts ? ", " : "") $2 }
            END { print all ? all : parts }'
    elif [[ -n ${licence_in_prose[$1]-} ]]; then
        printf '%s\n' "${licence_in_prose[$1]}"
    elif grep -qE 'Permission (is hereby granted, free of charge|to use, copy, modify)' "/usr/share/doc/$1/copyright"; then
        printf 'Expat or X11\n' # the families of X.Org and Wayland, which differ in a sentence
    fi
}

other_licences() {
    is_machine_readable "$1" || return 0
    licences "$1" | awk -F '\t' -v main="$2" '$1 == "part" && index(", " main ",", ", " $2 ",") == 0 {
        list = list (list ? ", " : "") $2 } END { print list }'
}

is_machine_readable() {
    head -n 3 "/usr/share/doc/$1/copyright" | grep -qi '^format:'
}

# The short names of a machine-readable copyright file: "all" and the licence of whatever is not named apart, "part" and
# that of the rest. The packaging's own files are left out.
licences() {
    awk '
        function finish() {
            if (files != "" && licence != "" && files !~ /^ *debian\/[^ ]* *$/) {
                kind = (" " files " ") ~ / \* / ? "all" : "part"
                if (!seen[kind, licence]++)
                    print kind "\t" licence
            }
            files = licence = field = ""
        }
        /^[ \t]*$/ { finish(); next }
        /^[^ \t]+:/ {
            field = tolower($1)
            value = $0
            sub(/^[^:]+:[ \t]*/, "", value)
            if (field == "files:") files = value
            if (field == "license:") licence = value
            next
        }
        field == "files:" { sub(/^[ \t]+/, " "); files = files $0 }
        END { finish() }' "/usr/share/doc/$1/copyright" | sort -u
}

# The packages that depend on this one directly, among those in `dependencies`.
users_of() {
    awk -F '\t' -v wanted="$1" '
        {
            count = split($2, names, / *[,|] */)
            for (i = 1; i <= count; ++i) {
                sub(/[ :(].*/, "", names[i])
                if (names[i] == wanted) {
                    list = list (list ? ", " : "") $1
                    break
                }
            }
        }
        END { print list }' <<<"$dependencies"
}

main "$@"
