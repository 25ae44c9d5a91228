#!/bin/bash
# Finds keys of texts (src/l10n/texts/en.json) that no code uses, and texts of the interface that are written in the
# code of src/ui, src/app or src/session instead of there. A line that holds a word no translator should see, such as a
# name, ends in the comment "// not translated".
# Usage: scripts/check-texts.sh [--self-test]
#   --self-test  proves on small trees of its own that each kind of fault is found
set -euo pipefail
export LC_ALL=C.UTF-8

main() {
    case "${1-}" in
    "") check "$(dirname "${BASH_SOURCE[0]}")/.." ;;
    --self-test) self_test ;;
    *)
        printf 'usage: scripts/check-texts.sh [--self-test]\n' >&2
        exit 2
        ;;
    esac
}

# Prints every fault of the tree as `file:line: fault`; fails when there is one.
check() {
    local faults
    faults=$(cd "$1" && { find_unused_keys; find_texts_in_code; })
    if [[ -n $faults ]]; then
        printf '%s\n' "$faults" >&2
        return 1
    fi
}

# Part of every language from the start, and shown nowhere at present.
spare=(backToVideoImport optional_ remove reset resetTooltip)

find_unused_keys() {
    local key
    while read -r key; do
        printf 'src/l10n/texts/en.json: nothing uses "%s"\n' "$key"
    done < <(comm -23 \
        <(grep -oP '^ *"\K\w+(?=":)' src/l10n/texts/en.json | sort -u) \
        <({
            printf '%s\n' "${spare[@]}"
            grep -rhoP --include='*.h' --include='*.cpp' 'L10nKey::\K\w+' src
        } | sort -u))
}

# Calls that put a text before the user, and literals that read like one: a word that begins with a capital letter
# and goes on, or two words.
find_texts_in_code() {
    local shown='\b(set(Text|ToolTip|Title|WindowTitle|StatusTip|PlaceholderText|AccessibleName|AccessibleDescription|Label)'
    shown+='|add(Action|Menu|Item)|alert|confirm|choose\w+|showMessage|drawText|insertItem|registerEdit'
    shown+='|QLabel|QPushButton|QAction)\([^"]*"[^"]*[[:alpha:]]{2}'
    local prose='"(\\n|[^"<[:alpha:]])*([[:upper:]][[:lower:]]+|[[:alpha:]]+) [[:alpha:]][^"]*"'
    grep -rnP --include='*.h' --include='*.cpp' "$shown|$prose" src/ui src/app src/session 2>/dev/null |
        grep -vP '^[^:]*:\d*:\s*(//|#include|static_assert|"[[:lower:]].*"\);$)|// not translated$|^[^:]*:\d*:[^"]*//' |
        sed -E 's/^([^:]*:[0-9]*):\s*/\1: a text in the code: /' || true
}

self_test() {
    scratch=$(mktemp -d)
    trap 'rm -r "$scratch"' EXIT
    failures=0

    expect_clean 'button->setText(context.text(L10nKey::back));'
    expect_clean 'painter.drawText(place, context.text(L10nKey::back) + QStringLiteral(" (%1)"));'
    expect_clean 'use(L10nKey::back); widget->setObjectName(QStringLiteral("backButton"));'
    expect_clean 'use(L10nKey::back); // "Go back" is the shortest'
    expect_clean 'label->setText(QStringLiteral("Pointloom") + t(L10nKey::back)); // not translated'
    expect_fault 'use(L10nKey::done);' 'nothing uses "back"'
    expect_fault 'use(L10nKey::back); button->setText(QStringLiteral("Back"));' 'Screen.cpp:1: a text in the code'
    expect_fault 'use(L10nKey::back); menu->addAction(QStringLiteral("&Quit"));' 'Screen.cpp:1: a text in the code'
    expect_fault 'use(L10nKey::back); const QString name = QStringLiteral("Move Scoreboard");' 'a text in the code'
    expect_fault 'use(L10nKey::back); dialogs.alert(window, "Could not", reason);' 'a text in the code'

    if ((failures > 0)); then
        return 1
    fi
    printf 'check-texts: every kind of fault is found\n'
}

expect_clean() {
    local output
    plant "$1"
    if ! output=$(check "$scratch" 2>&1); then
        printf 'self-test: %s was refused: %s\n' "$1" "$output" >&2
        failures=$((failures + 1))
    fi
}

expect_fault() {
    local output
    plant "$1"
    if output=$(check "$scratch" 2>&1); then
        printf 'self-test: %s passed\n' "$1" >&2
        failures=$((failures + 1))
    elif [[ $output != *"$2"* ]]; then
        printf 'self-test: %s: expected "%s", found: %s\n' "$1" "$2" "$output" >&2
        failures=$((failures + 1))
    fi
}

# A tree of one text and one file.
plant() {
    mkdir -p "$scratch/src/l10n/texts" "$scratch/src/ui" "$scratch/src/app" "$scratch/src/session"
    printf '{\n    "back": "Back"\n}\n' >"$scratch/src/l10n/texts/en.json"
    printf '%s\n' "$1" >"$scratch/src/ui/Screen.cpp"
}

main "$@"
