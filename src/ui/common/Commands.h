// Table of commands: what menus and keys can do, with texts and keys, and the keys in use.
#pragma once

#include "l10n/Language.h"

#include <array>
#include <map>
#include <optional>
#include <QKeySequence>
#include <QList>
#include <span>
#include <vector>

namespace pointloom {

enum class Command {
    playPause,
    frameBack,
    frameForward,
    secondBack,
    secondForward,
    previousMarker,
    nextMarker,
    previousRallyEnd,
    nextRallyEnd,
    jumpBack,
    pause,
    playFaster,
    goToStart,
    goToEnd,
    goToTime,
    playKept,
    addMarker,
    pointFirst,
    pointSecond,
    pointBackFirst,
    pointBackSecond,
    swapServe,
    trimStart,
    trimEnd,
    addCut,
    deleteSelection,
    renameMarker,
    moveScoreboard,
    scaleScoreboard,
    zoomIn,
    zoomOut,
    zoomToFit,
    previewFrame,
    editNames,
    resetScoreboardPlace,
    resetScoreboardSize,
    undo,
    redo,
    goToSport,
    goToScoreboard,
    goToMatch,
    goToVideo,
    goToEditor,
    newSession,
    openVideo,
    openProject,
    saveProject,
    saveProjectAs,
    exportVideo,
    showQueue,
    showPreferences,
    showHelp,
    quit,
    showAbout,
    showLicence,
    downloadSampleCSV,
    openSample,
    showNews,
};

enum class CommandGroup {
    editor, // of the editor, with keys that work whichever of its parts has the focus
    menu,   // of the window, with shortcuts that work on every screen
};

struct CommandRow {
    Command id;
    CommandGroup group = CommandGroup::menu;
    std::optional<L10nKey> does{};         // for lists of keys; neighbours with the same text share a line
    std::optional<L10nKey> title{};        // in menus
    std::array<QKeyCombination, 2> keys{}; // by default; those left out are `Qt::Key_unknown`
    std::array<QKeyCombination, 2> hiddenKeys{}; // the same on other keyboards; not listed
    std::optional<L10nKey> fixedKeys{};          // names keys of a widget that cannot be chosen
    bool repeats = false;                        // while the key is held
};

/// In the order in which keys are listed.
std::span<const CommandRow> commandTable();

const CommandRow& commandRow(Command command);

/// The keys in use: those of the table, but for commands whose keys were chosen. Menus, key handling, tool
/// tips and lists of keys read them here.
class CommandKeys {
public:
    using Chosen = std::map<Command, QList<QKeyCombination>>;

    explicit CommandKeys(Chosen chosen = {})
        : m_chosen(std::move(chosen)) {}

    /// The table's.
    static const CommandKeys& standard();

    /// Those that are shown to the user, the usual one first; empty when the command has none.
    QList<QKeyCombination> shown(Command command) const;

    /// All of them.
    QList<QKeyCombination> of(Command command) const;

    /// Null when the key does nothing in the editor.
    const CommandRow* editorCommand(QKeyCombination pressed) const;

private:
    Chosen m_chosen;
};

/// A key as it is labelled: "Ctrl+Shift+E", in German "Strg+Umschalt+E".
QString keyLabel(QKeyCombination key, Language language);

/// One line of a list of keys.
struct KeyListLine {
    QStringList keys; // labels
    L10nKey does;
};

std::vector<KeyListLine> keyList(CommandGroup group, const CommandKeys& keys, Language language);

}
