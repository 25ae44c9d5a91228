// The keys of the editor, in the order in which Help lists them.
#pragma once

#include "l10n/UiText.h"

#include <Qt>
#include <span>

namespace pointloom {

enum class EditorAction {
    playPause,
    frameBack,
    frameForward,
    secondBack,
    secondForward,
    previousMarker,
    nextMarker,
    jumpBack,
    pause,
    playFaster,
    goToStart,
    goToEnd,
    addMarker,
    pointTeam1,
    pointTeam2,
    pointBackTeam1,
    pointBackTeam2,
    swapServe,
    trimStart,
    trimEnd,
    addCut,
    deleteSelection,
    zoomIn,
    zoomOut,
    zoomToFit,
};

/// A row of the list in Help.
struct ShortcutRow {
    UiText keys;
    UiText does;
};

/// What a key does in the editor, with these modifiers and no others.
struct EditorKey {
    int key; // Qt::Key
    Qt::KeyboardModifiers modifiers;
    EditorAction action;
};

std::span<const ShortcutRow> editorShortcuts();

std::span<const EditorKey> editorKeys();

}
