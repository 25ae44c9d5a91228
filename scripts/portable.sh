#!/bin/bash
# Makes a folder and an archive that run on other Linux systems with everything but the C library, the graphics driver
# and the display server in them: build/portable/pointloom-VERSION-x86_64.tar.xz.
# Usage: scripts/portable.sh
# The folder is laid out as an AppDir: "appimagetool FOLDER" packs it into one file where that tool is at hand. It runs
# where the C library is as new as on the machine that made it, or newer: glibc 2.36 for Debian 12.
set -euo pipefail
export LC_ALL=C.UTF-8
umask 022
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/linked-libraries.sh
source scripts/linked-libraries.sh

application=org.pointloom.Pointloom
version=$(sed -nE 's/^project\(Pointloom VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
folder=build/portable/pointloom-$version-$(uname -m)
files=$folder/usr
system=/usr/lib/$(uname -m)-linux-gnu

# Always the machine's own.
c_library='/(ld-linux.*|lib(c|m|mvec|dl|pthread|rt|resolv|anl|util|nsl|nss_.*|BrokenLocale|thread_db))\.so'

# The machine's own where it has the first of them, which fits its drivers and servers.
declare -A of_machine=(
    [libGL.so.1]='lib(GL|EGL|GLX|GLESv2|OpenGL|GLdispatch|gbm|drm.*)\.so'
    [libX11.so.6]='lib(X11.*|Xext|Xau|Xdmcp|Xfixes|Xrender|xcb)\.so'
    [libwayland-client.so.0]='libwayland-.*\.so'
    [libvulkan.so.1]='libvulkan\.so'
    [libva.so.2]='lib(va|va-.*|vdpau)\.so'
    [libasound.so.2]='libasound\.so'
    [libstdc++.so.6]='lib(stdc\+\+|gcc_s)\.so'
)

# Loaded by name while the program runs.
plugins=(platforms/libqxcb.so platforms/libqoffscreen.so xcbglintegrations/libqxcb-glx-integration.so
    xcbglintegrations/libqxcb-egl-integration.so imageformats/libqjpeg.so imageformats/libqsvg.so
    iconengines/libqsvgicon.so platforminputcontexts/libcomposeplatforminputcontextplugin.so
    platforminputcontexts/libibusplatforminputcontextplugin.so tls/libqopensslbackend.so)
loaded=(libssl.so.3 libcrypto.so.3 libsecret-1.so.0)
fonts=(fonts-urw-base35 fonts-liberation fonts-noto-color-emoji fonts-dejavu-core)

main() {
    scripts/setup.sh
    command -v patchelf >/dev/null || apt-get install -qq -y --no-install-recommends patchelf >/dev/null
    scripts/package.sh
    rm -rf build/portable
    mkdir -p "$files/lib" "$files/share"
    install_programs
    copy_libraries
    copy_data
    lay_out
    check_is_complete
    tar --sort=name --owner=0 --group=0 --numeric-owner --mtime="@${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}" \
        -C build/portable -cJf "$folder.tar.xz" "${folder##*/}"
    printf 'portable: made\n'
    ls -1 "$folder.tar.xz"
}

fail() {
    printf 'portable: %s\n' "$*" >&2
    exit 1
}

install_programs() {
    cmake --install build/package --strip --prefix "$PWD/$files" >/dev/null
    rm -rf "$files/share/doc" "$files/share/man"
    local plugin
    for plugin in "${plugins[@]}"; do
        install -D "$system/qt6/plugins/$plugin" "$files/plugins/$plugin"
    done
    printf '[Paths]\nPrefix=..\nPlugins=plugins\nTranslations=share/qt6/translations\n' >"$files/bin/qt.conf"
}

# Each library under the name that programs ask for.
copy_libraries() {
    local library name
    libraries >build/portable/libraries
    while read -r library; do
        name=$(basename "$library")
        [[ ! /$name =~ $c_library ]] || continue
        cp -L "$library" "$(folder_of "$name")/$name"
    done <build/portable/libraries
    # Found from the programs on, also by what is loaded later; no library looks into folders of this machine.
    find "$files/lib" "$files/fallback" "$files/plugins" -name '*.so*' -type f -exec chmod 755 {} + -exec patchelf --remove-rpath {} \;
    for name in pointloom pointloom-cli; do
        patchelf --force-rpath --set-rpath '$ORIGIN/../lib' "$files/bin/$name"
    done
}

libraries() {
    local object
    {
        for object in "$files"/bin/pointloom{,-cli} "$files"/plugins/*/*.so; do
            all_libraries "$object"
        done
        for object in "${loaded[@]}"; do
            [[ -e $system/$object ]] || continue
            printf '%s\n' "$system/$object"
            all_libraries "$system/$object"
        done
    } | sort -u
}

folder_of() {
    local group place=$files/lib
    for group in "${!of_machine[@]}"; do
        [[ ! $1 =~ ^${of_machine[$group]} ]] || place=$files/fallback/$group
    done
    mkdir -p "$place"
    printf '%s' "$place"
}

copy_data() {
    local package file
    mkdir -p "$files/share/fonts" "$files/share/X11" "$files/share/qt6/translations" "$files/share/licences"
    for package in "${fonts[@]}"; do
        dpkg -L "$package" 2>/dev/null | grep -E '/(NimbusSans(Narrow)?-(Regular|Bold)|URWGothic-(Book|Demi)|C059-(Roman|Bold)|LiberationSans-(Regular|Bold)|NotoColorEmoji|DejaVuSans(-Bold)?)\.(otf|ttf|t1)$' |
            while read -r file; do cp -L "$file" "$files/share/fonts/"; done
    done
    cp packaging/portable/fonts.conf "$files/share/fonts/"
    cp -r /usr/share/X11/xkb "$files/share/X11/"
    cp /usr/share/qt6/translations/qtbase_{de,es,fr,it,sv,pt*}.qm "$files/share/qt6/translations/" 2>/dev/null || true
    # The licences of what is in the folder.
    while read -r package; do
        mkdir -p "$files/share/licences/$package"
        cp -L "/usr/share/doc/$package/copyright" "$files/share/licences/$package/"
    done < <({ packages_of_libraries <build/portable/libraries; printf '%s\n' "${fonts[@]}"; } | sort -u)
    cp packaging/copyright "$files/share/licences/"
}

lay_out() {
    install -m 755 packaging/portable/AppRun "$folder/AppRun"
    ln -s AppRun "$folder/pointloom"
    ln -s AppRun "$folder/pointloom-cli"
    cp "packaging/desktop/$application.desktop" "$folder/"
    cp packaging/desktop/pointloom.svg "$folder/$application.svg"
    ln -s "$application.svg" "$folder/.DirIcon"
}

# All that the folder's programs and libraries ask for is in it, or the C library's.
check_is_complete() {
    local object missing
    missing=$(find "$files/bin" "$files/lib" "$files/fallback" "$files/plugins" -type f | while read -r object; do
        readelf -d "$object" 2>/dev/null | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p'
    done | sort -u | while read -r object; do
        [[ /$object =~ $c_library || -n $(find "$files/lib" "$files/fallback" -name "$object") ]] || printf '%s ' "$object"
    done)
    [[ -z $missing ]] || fail "the folder lacks $missing"
}

main "$@"
