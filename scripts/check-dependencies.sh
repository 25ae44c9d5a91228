#!/bin/bash
# Holds the includes under src/ to the one-way dependencies between its folders, the modules, and outside
# libraries to the modules that may see them. The folders of src/ui are modules too. docs/ARCHITECTURE.md has the
# drawing.
# Usage: scripts/check-dependencies.sh [--self-test]
#   --self-test  proves on small trees of its own that each kind of fault is found
set -euo pipefail
export LC_ALL=C.UTF-8

# What each module may include besides itself. A new module needs a line here. A folder inside a module that has a line
# is a module of its own; a folder whose modules alone have lines has no sources.
declare -A allowed=(
    [json]=""
    [files]=""
    [http]=""
    [model]="json"
    [rules]="model json"
    [info]="json"
    [l10n]="json"
    [render]="model l10n json"
    [media]=""
    [sample]="media files"
    [crash]="http info json"
    [export]="render media crash rules model files json"
    [export/segments]="export render media model files json"
    [export/preview]="export/segments export media files"
    [session]="export render media rules model l10n json"
    [licensing]="http info files json"
    [persistence]="session export/segments export render rules model l10n crash files json"
    [playback]="media"
    [ui/style]="l10n json"
    [ui/common]="ui/style persistence session export render media crash rules model l10n files json"
    [ui/timeline]="ui/common ui/style session export media rules model l10n json"
    [ui/wizard]="ui/common ui/style persistence session render media rules model l10n files json"
    [ui/editor]="ui/timeline ui/common ui/style playback persistence session export/preview export render media crash rules model l10n json"
    [ui/export]="ui/common ui/style persistence session export/segments export render media model l10n files json"
    [ui/settings]="ui/common ui/style licensing persistence session export/segments media model l10n info files json"
    [cli]="persistence licensing session export/segments export render media crash rules model l10n info files json"
    [app]="sample ui/settings ui/export ui/editor ui/wizard ui/common ui/style playback persistence licensing session export render media crash model l10n info files json"
)

# Which modules may see an outside library: included header, CMake name (none: any module may link it), modules.
libraries=(
    '<lib(av|sw|postproc)[a-z]*/|PkgConfig::FFMPEG|media'
    '<(QtNetwork/.*|QNetwork[A-Za-z]*|QTcp[A-Za-z]*|QUdp[A-Za-z]*|QSsl[A-Za-z]*)>||http'
    '<sodium|PkgConfig::SODIUM|licensing'
    '<qt6keychain/|qt6keychain|licensing'
    '<mpv/|PkgConfig::MPV|playback'
    '<(QtWidgets/.*|QApplication|Q[A-Za-z]*Widget|Q[A-Za-z]*Dialog|QMainWindow|QLayout|QBoxLayout)>|Qt6::Widgets|ui app playback'
)

main() {
    case "${1-}" in
    "") check "$(dirname "${BASH_SOURCE[0]}")/../src" ;;
    --self-test) self_test ;;
    *)
        printf 'usage: scripts/check-dependencies.sh [--self-test]\n' >&2
        exit 2
        ;;
    esac
}

# Prints every fault of the tree as `file:line: fault`; fails when there is one.
check() {
    local source=$1 faults
    faults=$(cd "$source" && { check_modules; check_libraries; })
    if [[ -n $faults ]]; then
        printf '%s\n' "$faults" >&2
        return 1
    fi
}

# Sets `module` to the module of a file or of an included header.
module_of() {
    local inside=${1#*/}
    module=${1%%/*}
    inside=$module/${inside%%/*}
    if [[ -n ${allowed[$inside]+known} ]] ||
        [[ -z ${allowed[$module]+known} && " ${!allowed[*]}" == *" $module/"* ]]; then
        module=$inside
    fi
}

check_modules() {
    local module of_file file line text included
    for file in */ */*/; do
        [[ -d $file ]] || continue
        module_of "$file"
        # Folders inside a module belong to it; a folder of modules needs no line.
        if [[ $file == "$module/" && -z ${allowed[$module]+known} ]]; then
            printf 'src/%s: a module without a line in scripts/check-dependencies.sh\n' "$module"
        fi
    done
    while IFS=: read -r file line text; do
        module_of "$file"
        of_file=$module
        included=${text#*\"}
        included=${included%%\"*}
        if [[ /$included/ == */../* ]]; then
            printf 'src/%s:%s: "%s" climbs with ".."; name the module instead\n' "$file" "$line" "$included"
        elif [[ $included == *.moc ]]; then
            continue
        elif [[ $included != */* ]]; then
            printf 'src/%s:%s: "%s" does not name its module\n' "$file" "$line" "$included"
        else
            module_of "$included"
            if [[ " $of_file ${allowed[$of_file]-} " != *" $module "* ]]; then
                printf 'src/%s:%s: %s may not include "%s"\n' "$file" "$line" "$of_file" "$included"
            fi
        fi
    done < <(grep_sources '^[[:space:]]*#[[:space:]]*include[[:space:]]*"')
}

check_libraries() {
    local entry header target modules file line text
    for entry in "${libraries[@]}"; do
        # The header is a pattern that may hold bars itself.
        modules=${entry##*|}
        entry=${entry%|*}
        target=${entry##*|}
        header=${entry%|*}
        while IFS=: read -r file line text; do
            if [[ " $modules " != *" ${file%%/*} "* ]]; then
                printf 'src/%s:%s: only %s may see this library: %s\n' "$file" "$line" "${modules// /, }" "$text"
            fi
        done < <(
            grep_sources "^[[:space:]]*#[[:space:]]*include[[:space:]]*$header"
            if [[ -n $target ]]; then
                grep -rn --include=CMakeLists.txt -F "$target" . | sed 's|^\./||' || true
            fi
        )
    done
}

grep_sources() {
    grep -rnE --include='*.h' --include='*.cpp' "$1" . | sed 's|^\./||' || true
}

self_test() {
    scratch=$(mktemp -d)
    trap 'rm -r "$scratch"' EXIT
    failures=0

    expect_clean 'model/Score.h' '#include "json/Json.h"'
    expect_clean 'model/Score.h' '#include <vector>'
    expect_clean 'media/Reader.cpp' '#include <libavformat/avformat.h>'
    expect_clean 'ui/editor/Window.h' '#include <QWidget>'
    expect_clean 'ui/editor/Window.h' '#include "ui/common/Dialogs.h"'
    expect_clean 'ui/editor/deep/Window.h' '#include "ui/editor/Keys.h"'
    expect_fault 'json/Json.h' '#include "model/Score.h"' 'json may not include "model/Score.h"'
    expect_fault 'render/Draw.cpp' '#  include "media/Frame.h"' 'render may not include "media/Frame.h"'
    expect_fault 'cli/main.cpp' '#include "ui/editor/Window.h"' 'cli may not include "ui/editor/Window.h"'
    expect_fault 'model/deep/Score.cpp' '#include "session/AppState.h"' 'src/model/deep/Score.cpp:1: model may not'
    expect_fault 'model/Score.cpp' '#include "../json/Json.h"' 'climbs'
    expect_fault 'model/Score.cpp' '#include "Score.h"' 'does not name its module'
    expect_fault 'shed/Tool.h' '#include <vector>' 'a module without a line'
    expect_fault 'ui/shed/Tool.h' '#include <vector>' 'src/ui/shed: a module without a line'
    expect_fault 'ui/Tool.h' '#include "json/Json.h"' 'ui/Tool.h may not include'
    expect_fault 'ui/editor/Keys.cpp' '#include "ui/settings/Sheet.h"' 'ui/editor may not include "ui/settings/Sheet.h"'
    expect_clean 'export/segments/Plan.cpp' '#include "export/Export.h"'
    expect_fault 'export/Export.cpp' '#include "export/segments/Plan.h"' 'export may not include "export/segments/Plan.h"'
    expect_fault 'ui/style/Theme.cpp' '#include "ui/common/Dialogs.h"' 'ui/style may not include'
    expect_fault 'export/Export.h' 'extern "C" {
#include <libavcodec/avcodec.h>' 'src/export/Export.h:2: only media may see'
    expect_fault 'ui/editor/Player.cpp' '#include <mpv/client.h>' 'only playback may see'
    expect_fault 'crash/Upload.cpp' '#include <QNetworkReply>' 'only http may see'
    expect_fault 'export/Export.cpp' '#include <QtWidgets/QLabel>' 'only ui, app, playback may see'
    expect_fault 'cli/Main.cpp' '#include <QApplication>' 'only ui, app, playback may see'
    expect_fault 'cli/CMakeLists.txt' 'pointloom_module(cli USES Qt6::Widgets)' 'only ui, app, playback may see'

    if ((failures > 0)); then
        return 1
    fi
    printf 'check-dependencies: every kind of fault is found\n'
}

expect_clean() {
    local output
    plant "$1" "$2"
    if ! output=$(check "$scratch/src" 2>&1); then
        printf 'self-test: %s with %s was refused: %s\n' "$1" "$2" "$output" >&2
        failures=$((failures + 1))
    fi
}

expect_fault() {
    local output
    plant "$1" "$2"
    if output=$(check "$scratch/src" 2>&1); then
        printf 'self-test: %s with %s passed\n' "$1" "$2" >&2
        failures=$((failures + 1))
    elif [[ $output != *"$3"* ]]; then
        printf 'self-test: %s with %s: expected "%s", found: %s\n' "$1" "$2" "$3" "$output" >&2
        failures=$((failures + 1))
    fi
}

# A tree of one file.
plant() {
    rm -rf "$scratch/src"
    mkdir -p "$scratch/src/$(dirname "$1")"
    printf '%s\n' "$2" >"$scratch/src/$1"
}

main "$@"
