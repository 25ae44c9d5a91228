#!/bin/bash
# Tries the packages as a person would: installs them in a new Debian of this release, starts the application from its desktop
# entry, opens a document, exports a video, removes everything and looks for traces.
# Usage: scripts/package-check.sh [ROOT]
#   ROOT  where the new Debian is made; build/package-root unless told. Needs root and the network.
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

root=$(realpath -m "${1:-build/package-root}")
application=org.pointloom.Pointloom

main() {
    ((EUID == 0)) || fail "making a Debian root needs root"
    scripts/package.sh
    install_tools debootstrap lintian ffmpeg
    step "lintian"
    lintian --fail-on error --suppress-tags bad-distribution-in-changes-file build/packages/*.deb
    step "a new Debian $(release) in $root"
    make_root
    trap unmount EXIT
    # What any desktop has, and what the check itself uses.
    in_root apt-get install -qq -y --no-install-recommends shared-mime-info hicolor-icon-theme fonts-urw-base35 \
        fonts-noto-color-emoji xvfb xauth xdotool x11-apps libglib2.0-bin dbus >build/package-root.log 2>&1
    list_files >build/files-before.txt

    step "installing"
    cp build/packages/*.deb "$root/root/"
    in_root sh -c 'apt-get install -qq -y --no-install-recommends /root/pointloom*.deb >/dev/null 2>&1'
    in_root sh -c 'cd / && for package in pointloom pointloom-cli; do dpkg --verify $package; done'
    step "exporting"
    export_video
    step "starting from the desktop entry"
    start_application
    step "removing"
    in_root apt-get purge -qq -y pointloom pointloom-cli >/dev/null 2>&1
    # Also what another package merely recommends, as libc6 does libidn2-0 on Debian 13.
    in_root apt-get autoremove -qq -y --purge -o APT::AutoRemove::RecommendsImportant=false \
        -o APT::AutoRemove::SuggestsImportant=false >/dev/null 2>&1
    rm -rf "$root"/root/pointloom*.deb "$root"/root/match # with the home in it: what a user's programs keep is the user's
    list_files >build/files-after.txt
    diff build/files-before.txt build/files-after.txt || fail "removing left the files above behind"
    printf 'package-check: all done; nothing was left behind\n'
}

step() { printf '== %s\n' "$*"; }

fail() {
    printf 'package-check: %s\n' "$*" >&2
    exit 1
}

# Packages fit the release that they were built on.
release() { sed -n 's/^VERSION_CODENAME=//p' /etc/os-release; }

install_tools() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null || apt-get install -qq -y --no-install-recommends "$tool" >/dev/null
    done
}

make_root() {
    local mirror=${DEBIAN_MIRROR:-http://deb.debian.org/debian}
    rm -rf "$root"
    mkdir -p "$root"
    debootstrap --variant=minbase "$(release)" "$root" "$mirror" >build/debootstrap.log || {
        tail -n 5 build/debootstrap.log >&2
        fail "debootstrap could not make a Debian $(release)"
    }
    # This machine's own way to the packages.
    cp -r /etc/apt/auth.conf.d /etc/apt/keyrings "$root/etc/apt/" 2>/dev/null || true
    cp /etc/resolv.conf "$root/etc/"
    mount -t proc proc "$root/proc"
    mount --bind /dev "$root/dev"
    in_root apt-get update -qq
}

unmount() {
    umount -l "$root/proc" "$root/dev" 2>/dev/null || true
}

in_root() {
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}

# As a user, whose home is beside the video. Mesa asks the system for the home unless it is told where to keep things.
as_user() {
    in_root env HOME=/root/match/home XDG_CACHE_HOME=/root/match/home/.cache "$@"
}

# Everything but what package management and the system keep for themselves.
list_files() {
    (cd "$root" && find . -xdev \( -path ./proc -o -path ./dev -o -path ./tmp -o -path ./run -o -path ./var/lib/dpkg \
        -o -path ./var/lib/apt -o -path ./var/cache -o -path ./var/log -o -path ./var/lib/systemd \) -prune -o -print | sort)
}

export_video() {
    mkdir -p "$root/root/match/home"
    ffmpeg -nostdin -v error -y -f lavfi -i testsrc2=s=640x360:r=25:d=4 -f lavfi -i sine=d=4 -c:v libx264 -pix_fmt yuv420p \
        -c:a aac "$root/root/match/match.mp4"
    as_user pointloom-cli new -o /root/match/final.plp --sport tennis --template classic --team1 Dravnik --team2 Solvane \
        --flags1 FR --flags2 SE --video /root/match/match.mp4 >/dev/null
    as_user pointloom-cli export /root/match/final.plp -o /root/match/out.mp4 --progress none
    [[ $(ffprobe -v error -select_streams v:0 -count_frames -show_entries stream=nb_read_frames -of csv=p=0 \
        "$root/root/match/out.mp4") == 100 ]] || fail "the exported video does not have its 100 frames"
    in_root sh -c 'test -s /usr/share/bash-completion/completions/pointloom-cli && test -s /usr/share/applications/'$application.desktop
}

start_application() {
    cat >"$root/root/match/start.sh" <<'END'
set -eu
export XDG_RUNTIME_DIR=/root/match/runtime LIBGL_ALWAYS_SOFTWARE=1
mkdir -m 700 "$XDG_RUNTIME_DIR"
gio launch /usr/share/applications/org.pointloom.Pointloom.desktop /root/match/final.plp &
for i in $(seq 60); do
    sleep 0.5
    xdotool key Escape # the question about crash reports, at the first start
    if xdotool search --name 'final' >/dev/null 2>&1; then
        sleep 3
        xwd -root -silent >/root/match/window.xwd
        xdotool key ctrl+q
        sleep 2
        exit 0
    fi
done
echo "no window with the document's name came up" >&2
exit 1
END
    as_user xvfb-run -a -s '-screen 0 1280x900x24' dbus-run-session -- sh /root/match/start.sh 2>build/package-start.log ||
        fail "the application did not open the document"
    cp "$root/root/match/window.xwd" build/package-window.xwd
    if command -v convert >/dev/null; then
        convert build/package-window.xwd build/package-window.png && printf 'the window: build/package-window.png\n'
    fi
}

main
