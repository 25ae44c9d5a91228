// Every keyboard shortcut, for the help.
#pragma once

#include "ui/common/Shortcuts.h"

#include <span>
#include <vector>

namespace pointloom {

struct ShortcutGroup {
    UiText title;
    std::span<const ShortcutRow> rows;
};

/// The editor's, then the menu's.
std::span<const ShortcutGroup> shortcutGroups();

/// The keys of a row one by one, as they are labelled.
std::vector<QString> keyLabels(const ShortcutRow& row, Language language);

}
