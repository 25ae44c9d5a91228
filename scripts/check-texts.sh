#!/bin/bash
# Checks the texts of the interface (src/l10n/texts). Finds lines of a language that are missing, out of order or have
# other placeholders than the English ones; keys that no code uses; and texts that are written in the code of src/ui,
# src/app or src/session instead. A line of code that holds a word no translator should see, such as a name, ends in the
# comment "// not translated".
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
    faults=$(cd "$1" && { compare_languages; find_unused_keys; find_texts_in_code; })
    if [[ -n $faults ]]; then
        printf '%s\n' "$faults" >&2
        return 1
    fi
}

compare_languages() {
    local file
    for file in src/l10n/texts/*.json; do
        awk '
            { is_text = match($0, /^ *"[A-Za-z0-9_]+": "/); key = $1; gsub(/[":]/, "", key) }
            FNR == NR { if (is_text) { keys[++count] = key; english[count] = $0 } next }
            !is_text { next }
            key != keys[++at] {
                printf "%s:%d: \"%s\" belongs here, not \"%s\"\n", FILENAME, FNR, keys[at], key
                at = count
                exit
            }
            {
                split("%d %@ \\\\n", kept, " ")
                for (i in kept)
                    if (gsub(kept[i], "&", $0) != gsub(kept[i], "&", english[at]))
                        printf "%s:%d: \"%s\" has another number of %s\n", FILENAME, FNR, key, kept[i]
            }
            END { if (at < count) printf "%s: \"%s\" is missing at the end\n", FILENAME, keys[at + 1] }
        ' src/l10n/texts/en.json "$file"
    done
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
    french='{\n    "back": "Retour"\n}\n'

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

    french='{\n    "bac": "Retour"\n}\n'
    expect_fault 'use(L10nKey::back);' 'fr.json:2: "back" belongs here, not "bac"'
    french='{\n}\n'
    expect_fault 'use(L10nKey::back);' 'fr.json: "back" is missing at the end'
    french='{\n    "back": "Retour %%@"\n}\n'
    expect_fault 'use(L10nKey::back);' 'fr.json:2: "back" has another number of %@'

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

# A tree of one text in two languages and one file.
plant() {
    mkdir -p "$scratch/src/l10n/texts" "$scratch/src/ui" "$scratch/src/app" "$scratch/src/session"
    printf '{\n    "back": "Back"\n}\n' >"$scratch/src/l10n/texts/en.json"
    # shellcheck disable=SC2059 # the text holds its line breaks
    printf "$french" >"$scratch/src/l10n/texts/fr.json"
    printf '%s\n' "$1" >"$scratch/src/ui/Screen.cpp"
}

main "$@"
