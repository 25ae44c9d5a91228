#!/bin/bash
# Installs what building, testing and trying Pointloom needs on Debian 12 and 13. Instant when nothing is missing.
# Usage: scripts/setup.sh [--fuzz]
#   --fuzz  Clang and its libFuzzer too
set -euo pipefail
export LC_ALL=C.UTF-8

# The one list of Debian packages; docs/DEPENDENCIES.md says what each library is for.
packages=(
    # Build
    build-essential # g++ 12 or later
    cmake           # 3.25, the first that reads version 6 of the presets
    ninja-build
    pkg-config

    # Libraries
    qt6-base-dev # Core, Gui, Widgets, Network
    libqt6opengl6-dev
    qt6-svg-dev
    qt6-translations-l10n # Qt's own texts
    libmpv-dev
    libavcodec-dev
    libavfilter-dev
    libavformat-dev
    libavutil-dev
    libswresample-dev
    libswscale-dev
    nlohmann-json3-dev
    libcli11-dev
    libsodium-dev
    libsqlite3-dev # the development licence service
    qtkeychain-qt6-dev

    # Fonts that scoreboards are drawn with: Nimbus Sans, Liberation Sans where that is missing, and flags
    fonts-urw-base35
    fonts-liberation
    fonts-noto-color-emoji
    fonts-dejavu-core # names in scripts that those leave out

    # Tests, benchmarks, sample clips
    libgtest-dev
    libgmock-dev
    libbenchmark-dev
    xvfb xauth       # a screen for the tests in a real window
    xdotool          # ... and keys for it
    libgl1-mesa-dri  # ... and OpenGL without a graphics card
    ffmpeg # the program: encodes sample and test clips, and is what the benchmark compares with
    time   # peak memory in the benchmark

    # Packages, and the checks of what they install
    dpkg-dev
    file
    desktop-file-utils
    appstream
    shared-mime-info
)
fuzz_packages=(clang libclang-rt-dev)

main() {
    local missing
    if [[ ${1-} == --fuzz ]]; then
        packages+=("${fuzz_packages[@]}")
    fi
    if ! command -v dpkg-query >/dev/null; then
        fail "this script knows Debian and its relatives only; what to install has other names here, but the" \
            "list is: ${packages[*]}"
    fi
    mapfile -t missing < <(missing_packages)
    if ((${#missing[@]} == 0)); then
        return
    fi
    printf 'setup: installing %s\n' "${missing[*]}"
    as_root apt-get update -qq || fail "the package lists could not be fetched; is there a network?"
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -qq -y --no-install-recommends "${missing[@]}" >/dev/null ||
        fail "apt-get could not install ${missing[*]}"
    printf 'setup: done\n'
}

missing_packages() {
    local package
    for package in "${packages[@]}"; do
        if [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null) != installed ]] &&
            ! is_provided "$package"; then
            printf '%s\n' "$package"
        fi
    done
}

# By another package, as libqt6opengl6-dev is on Debian 13. grep reads to the end: --quiet would break the pipe.
is_provided() {
    dpkg-query --show --showformat='${db:Status-Status} ${Provides}\n' | grep -E "^installed (.* )?$1([ ,]|$)" >/dev/null
}

as_root() {
    if ((EUID == 0)); then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "installing packages needs root: run this as root, or install sudo"
    fi
}

fail() {
    printf 'setup: %s\n' "$*" >&2
    exit 1
}

main "$@"
