#!/bin/bash
# Holds the desktop entry, the AppStream file and the document type to their formats' own validators.
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
application=org.pointloom.Pointloom

desktop-file-validate packaging/desktop/$application.desktop

cmake -DCHANGELOG=CHANGELOG.md -DPATTERN=packaging/desktop/$application.metainfo.xml.in \
    -DMETAINFO="$work/$application.metainfo.xml" -DDEBIAN="$work/changelog" -P packaging/ReleaseNotes.cmake
appstreamcli validate --no-net "$work/$application.metainfo.xml"
grep -q '<release ' "$work/$application.metainfo.xml" || {
    printf 'CHANGELOG.md holds no release that software centres could show\n' >&2
    exit 1
}
dpkg-parsechangelog --all --file "$work/changelog" >/dev/null

# The type is known for documents once it is installed.
mkdir -p "$work/mime/packages"
cp packaging/desktop/$application.mime.xml "$work/mime/packages/$application.xml"
update-mime-database "$work/mime"
grep -q 'application/x-pointloom-project:\*.plp' "$work/mime/globs"
printf 'the desktop entry, the AppStream file, the changelog and the document type are valid\n'
