// Table of commands: what menus and keys can do, with texts and usual keys.
#pragma once

#include "l10n/Language.h"
#include "json/JsonFields.h"

#include <array>
#include <optional>
#include <QKeySequence>
#include <span>

namespace pointloom {

// The names are those in files of keys: none is renamed.
POINTLOOM_NAMED_ENUM(Command, playPause, frameBack, frameForward, secondBack, secondForward, previousMarker,
                     nextMarker, previousRallyEnd, nextRallyEnd, jumpBack, pause, playFaster, goToStart,
                     goToEnd, goToTime, playKept, addMarker, pointFirst, pointSecond, pointBackFirst,
                     pointBackSecond, swapServe, trimStart, trimEnd, addCut, deleteSelection, renameMarker,
                     moveScoreboard, scaleScoreboard, goToItem, moveItem, zoomIn, zoomOut, zoomToFit,
                     previewFrame, editNames, resetScoreboardPlace, resetScoreboardSize, undo, redo,
                     goToSport, goToScoreboard, goToMatch, goToVideo, goToEditor, newSession, openVideo,
                     openProject, saveProject, saveProjectAs, exportVideo, showQueue, showPreferences,
                     showHelp, quit, showAbout, showLicence, downloadSampleCSV, openSample, showNews);

enum class CommandGroup {
    editor, // of the editor, with keys that work whichever of its parts has the focus
    menu,   // of the window, with shortcuts that work on every screen
};

struct CommandRow {
    Command id;
    CommandGroup group = CommandGroup::menu;
    std::optional<L10nKey> does{};  // for lists of keys; neighbours with the same text share a line
    std::optional<L10nKey> title{}; // in menus and where keys are changed; there unless the keys are fixed
    std::array<QKeyCombination, 2> keys{};       // the usual ones; those left out are `Qt::Key_unknown`
    std::array<QKeyCombination, 2> hiddenKeys{}; // the same on other keyboards; not listed
    std::optional<L10nKey> fixedKeys{};          // names keys of a widget that cannot be chosen
    bool repeats = false;                        // while the key is held
};

/// In the order in which keys are listed.
std::span<const CommandRow> commandTable();

const CommandRow& commandRow(Command command);

}
