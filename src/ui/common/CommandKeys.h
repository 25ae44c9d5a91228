// The keys in use: those of the table of commands, but for commands whose keys the user chose. Menus, key
// handling, tool tips and lists of keys read them here.
#pragma once

#include "ui/common/Commands.h"

#include <map>
#include <QList>
#include <QProperty>
#include <QStringList>
#include <vector>

class QKeyEvent;

namespace pointloom {

class CommandKeys {
public:
    using Keys = QList<QKeyCombination>;
    /// Commands with other keys than the usual ones, which may be none. No key is in it twice.
    using Chosen = std::map<Command, Keys>;

    explicit CommandKeys(Chosen chosen = {})
        : m_chosen(std::move(chosen)) {}

    /// Follow it to show the keys that are in use.
    QBindable<Chosen> chosen() const { return &m_chosen; }
    void choose(Chosen chosen) { m_chosen = std::move(chosen); }

    /// Those that are shown to the user, the first one first; empty when the command has none. A usual key
    /// that was chosen for another command is left out.
    Keys shown(Command command) const;

    /// All of them.
    Keys of(Command command) const;

    /// Null when no command has the key.
    const CommandRow* commandOf(QKeyCombination key) const;

    bool areUsual(Command command) const;

    /// The choices after `command` got `keys`, taken from the commands that have them. A command that loses
    /// its only chosen key goes back to its usual ones.
    Chosen chosenWith(Command command, const Keys& keys) const;

private:
    bool isChosenForOther(Command command, QKeyCombination key) const;

    QProperty<Chosen> m_chosen;
};

/// Those of the table that are shown.
CommandKeys::Keys usualKeys(Command command);

/// The key that was pressed, as commands have it. Empty for Shift, Ctrl and the like alone, and for keys that
/// wait for a letter, such as accents.
std::optional<QKeyCombination> pressedKey(const QKeyEvent& event);

enum class KeyFault {
    reserved,    // for dialogs, the clipboard or the menus
    needControl, // writes or moves in fields, lists and buttons, where commands of the window work too
};

/// Why a key cannot be given to commands of `group`; empty when it can.
std::optional<KeyFault> faultOf(QKeyCombination key, CommandGroup group);

/// A key as it is labelled: "Ctrl+Shift+E", in German "Strg+Umschalt+E".
QString keyLabel(QKeyCombination key, Language language);

/// The title without dots: "Export Video"; of the pages "Go to “Match”". `command` has a title.
QString commandName(Command command, Language language);

/// The first key as it is labelled; the name in quotes of a command that has none.
QString keyOrName(Command command, const CommandKeys& keys, Language language);

/// `text`, one that names usual keys of the editor ("Press M or + to add a marker"), with those in use.
QString withKeysInUse(QString text, const CommandKeys& keys, Language language);

/// One line of a list of keys.
struct KeyListLine {
    QStringList keys; // labels
    L10nKey does;
};

std::vector<KeyListLine> keyList(CommandGroup group, const CommandKeys& keys, Language language);

}
