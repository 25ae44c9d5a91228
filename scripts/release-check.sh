#!/bin/bash
# Holds the Debian packages to what a release promises; run it before publishing. Makes the packages first.
# Usage: scripts/release-check.sh [CHECK...]     all checks unless some are named
#   versions      whatever names the version names the same one
#   licences      docs/THIRD_PARTY.md lists what the programs are linked with
#   libraries     the packages depend on what their programs are linked with, and on nothing else
#   reproducible  built again in another folder, the packages are the same byte for byte
# RELEASE_CHECK_FOLDER in the environment is that other folder: kept, and quicker the next time.
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/linked-libraries.sh
source scripts/linked-libraries.sh

packages=build/packages
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
version=$(sed -nE 's/^project\(Pointloom VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)

# Dependencies written by hand in cmake/Packaging.cmake: files that are opened, and our other package.
opened_by_file=(fonts-urw-base35 fonts-liberation fonts-noto-color-emoji hicolor-icon-theme pointloom-cli)

main() {
    local checks=("$@") check
    ((${#checks[@]} > 0)) || checks=(versions licences libraries reproducible)
    for check in "${checks[@]}"; do
        declare -F "check_$check" >/dev/null || fail "there is no check \"$check\""
    done
    SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)} # one for both builds
    export SOURCE_DATE_EPOCH
    scripts/package.sh >"$work/package.log" || fail "the packages cannot be made"
    unpack
    for check in "${checks[@]}"; do
        "check_$check"
    done
    printf 'release-check: %s passed: %s\n' "$version" "${checks[*]}"
}

fail() {
    printf 'release-check: %s\n' "$*" >&2
    exit 1
}

unpack() {
    local package
    for package in pointloom pointloom-cli; do
        local file=("$packages/${package}"_*.deb)
        [[ -e ${file[0]} && ${#file[@]} == 1 ]] || fail "$packages does not hold one package $package"
        dpkg-deb --extract "${file[0]}" "$work/$package"
        ln -s "$PWD/${file[0]}" "$work/$package.deb"
    done
}

# --- versions

check_versions() {
    local package share
    share=$work/pointloom-cli/usr/share
    expect_version "the newest release in CHANGELOG.md" "$(sed -nE 's/^## \[([0-9.]+)\].*/\1/p' CHANGELOG.md | head -n 1)"
    expect_version "the newest release in the metainfo" \
        "$(sed -nE 's/.*<release version="([^"]*)".*/\1/p' "$work"/pointloom/usr/share/metainfo/*.xml | head -n 1)"
    expect_version "pointloom-cli --version" "$("$work/pointloom-cli/usr/bin/pointloom-cli" --version | sed 's/^pointloom-cli //')"
    expect_version "the manual page" \
        "$(zcat "$share/man/man1/pointloom-cli.1.gz" | sed -nE '1s/.*"[^"]* ([0-9]+\.[0-9]+\.[0-9]+)".*/\1/p')"
    expect_version "Info.json" "$(sed -nE 's/.*"CFBundleShortVersionString": "(.*)".*/\1/p' "$share/pointloom/Info.json")"
    for package in pointloom pointloom-cli; do
        expect_version "the package $package" "$(dpkg-deb --field "$work/$package.deb" Version)"
        expect_version "the name of the file of $package" \
            "$(readlink "$work/$package.deb" | sed -E "s/.*\/${package}_(.*)_[a-z0-9]+\.deb/\1/")"
        expect_version "the Debian changelog of $package" \
            "$(zcat "$work/$package/usr/share/doc/$package/changelog.gz" | dpkg-parsechangelog --file - --show-field Version)"
    done
    expect_version "what pointloom needs of pointloom-cli" \
        "$(dpkg-deb --field "$work/pointloom.deb" Depends | sed -nE 's/.*pointloom-cli \(= ([^)]*)\).*/\1/p')"
    check_versions_in_docs
    printf 'versions: all are %s: CMakeLists.txt, CHANGELOG.md, metainfo, --version, manual page, Info.json, packages, docs\n' \
        "$version"
}

# expect_version WHERE FOUND
expect_version() {
    [[ $2 == "$version" ]] || fail "versions: $1 says \"$2\", CMakeLists.txt says \"$version\""
}

check_versions_in_docs() {
    local place
    while IFS= read -r place; do
        expect_version "${place%:*}" "$(grep -oE '[0-9]+\.[0-9]+\.[0-9]+$' <<<"$place")"
    done < <(grep -rnoiE '(pointloom(-cli)?[-_ v]+|"version": *")[0-9]+\.[0-9]+\.[0-9]+' README.md docs --include='*.md')
}

# --- licences

check_licences() {
    scripts/third-party.sh --check 2>"$work/licences" || fail "licences: $(tail -n 1 "$work/licences")"
}

# --- libraries

check_libraries() {
    local package program count=0
    for package in pointloom pointloom-cli; do
        while IFS= read -r program; do
            check_symbols "$program"
            direct_libraries "$program" | packages_of_libraries >>"$work/$package.needed" ||
                fail "libraries: a library of $package belongs to no package"
            count=$((count + 1))
        done < <(find "$work/$package" -type f -exec sh -c 'head -c 4 "$1" | grep -q ELF' sh {} \; -print)
        compare_dependencies "$package"
    done
    ((count > 0)) || fail "libraries: the packages hold no program"
    printf 'libraries: %d programs have all their symbols, and their packages depend on just what they are linked with\n' "$count"
}

check_symbols() {
    local missing
    missing=$(ldd -r "$1" 2>&1 | grep -m 1 -E 'not found|undefined symbol') || true
    [[ -z $missing ]] || fail "libraries: ${1#"$work/"}: $(cut -f 1 <<<"${missing#$'\t'}")"
}

compare_dependencies() {
    local needed provided declared undeclared unneeded
    needed=$(sort -u "$work/$1.needed")
    # Names beside their own, as of Qt's private interface.
    # shellcheck disable=SC2086
    provided=$(dpkg-query --show --showformat='${Provides},' $needed | tr ',' '\n' | sed -E 's/^ *([^ ]*).*/\1/')
    declared=$(dpkg-deb --field "$work/$1.deb" Depends | tr ',|' '\n' | sed -E 's/^ *([^ ]+).*/\1/' | sort -u)
    undeclared=$(comm -23 <(printf '%s\n' "$needed") <(printf '%s\n' "$declared"))
    unneeded=$(comm -13 <(printf '%s\n' "$needed" "$provided" "${opened_by_file[@]}" | sort -u) <(printf '%s\n' "$declared"))
    [[ -z $undeclared ]] || fail "libraries: $1 is linked with, but does not depend on: ${undeclared//$'\n'/ }"
    [[ -z $unneeded ]] || fail "libraries: $1 depends on, but is not linked with: ${unneeded//$'\n'/ }"
}

# --- reproducible

check_reproducible() {
    local elsewhere=${RELEASE_CHECK_FOLDER:-$work/elsewhere} file
    mkdir -p "$elsewhere"
    git ls-files -z --cached --others --exclude-standard | tar --null --files-from=- --create | tar --extract -C "$elsewhere"
    CCACHE_DISABLE=1 "$elsewhere/scripts/package.sh" >"$work/second.log" || fail "reproducible: the second build failed"
    for file in "$packages"/*.deb; do
        cmp --silent "$file" "$elsewhere/$file" || fail "reproducible: ${file##*/} differs: $(first_difference "$file" "$elsewhere/$file")"
    done
    printf 'reproducible: built in %s and in %s, the packages have the same SHA-256:\n' "$PWD" "$elsewhere"
    (cd "$packages" && sha256sum -- *.deb)
}

# Names what differs inside two packages.
first_difference() {
    rm -rf "$work/first" "$work/second"
    dpkg-deb --raw-extract "$1" "$work/first"
    dpkg-deb --raw-extract "$2" "$work/second"
    diff -rq "$work/first" "$work/second" | head -n 1 | sed "s|$work/||g" | grep . || printf 'the archive itself\n'
}

main "$@"
