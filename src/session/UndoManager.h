// What an undoable edit is given to say how it is taken back.
#pragma once

#include "l10n/Language.h"

#include <functional>
#include <utility>

namespace pointloom {

class UndoManager {
public:
    using Action = std::function<void()>;

    virtual ~UndoManager() = default;

    /// Remembers `inverse`, which takes back the edit just made. An edit made while an action is being
    /// undone becomes its redo, and the other way round.
    virtual void registerUndo(Action inverse) = 0;

    /// Names the edit registered last by the text that a menu shows, as in "Add Marker". While undoing or
    /// redoing, the name that the edit was given first stays.
    virtual void setActionName(L10nKey name) = 0;
};

/// Registers an edit with its name; nothing without an undo manager.
inline void registerEdit(UndoManager* undoManager, L10nKey name, UndoManager::Action inverse) {
    if (!undoManager)
        return;
    undoManager->registerUndo(std::move(inverse));
    undoManager->setActionName(name);
}

}
