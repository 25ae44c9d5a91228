// Every keyboard shortcut, for the help.
#pragma once

#include "l10n/UiText.h"

#include <span>
#include <vector>

namespace pointloom {

struct Shortcut {
    /// Alternatives parted by blanks; "⌘" and "⇧" stand for this desktop's keys, "Space" and "Delete" for
    /// the names of these keys in the language.
    const char* keys;
    UiText effect;
};

struct ShortcutGroup {
    UiText title;
    std::span<const Shortcut> shortcuts;
};

std::span<const ShortcutGroup> shortcutGroups();

/// The alternatives of `shortcut` as the keys are labelled.
std::vector<QString> keyLabels(const Shortcut& shortcut, Language language);

}
