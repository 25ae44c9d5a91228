// The undo manager of the edits of one window, over Qt's undo stack.
#pragma once

#include "l10n/Language.h"

#include <functional>
#include <optional>
#include <QProperty>
#include <QUndoStack>
#include <vector>

namespace pointloom {

/// Each `registerUndo` outside of undo and redo is one step. What the registered actions refer to must
/// outlive the stack or be removed from it with `removeAllActions`.
class UndoStack {
public:
    using Action = std::function<void()>;

    UndoStack();
    ~UndoStack();

    /// Remembers `inverse`, which takes back the edit just made. An edit made while an action is being
    /// undone becomes its redo, and the other way round.
    void registerUndo(Action inverse);

    /// Names the edit registered last by the text that a menu shows, as in "Add Marker". While undoing or
    /// redoing, the name that the edit was given first stays.
    void setActionName(L10nKey name);

    /// Takes back the latest step, or makes the step taken back last again. Nothing happens when there is
    /// none, or when called by an action that is itself being undone or redone. A step whose actions find
    /// nothing left to do is dropped.
    void undo();
    void redo();

    /// Forgets everything: for a session that has been replaced.
    void removeAllActions();

    // For a menu: readers inside a binding register themselves.
    QBindable<bool> canUndo() const { return &m_canUndo; }
    QBindable<bool> canRedo() const { return &m_canRedo; }
    QBindable<std::optional<L10nKey>> undoActionName() const { return &m_undoActionName; }
    QBindable<std::optional<L10nKey>> redoActionName() const { return &m_redoActionName; }

private:
    class Step;

    void replay(void (QUndoStack::*direction)());
    std::optional<L10nKey> nameOfStep(int index) const;
    void publish();

    QUndoStack m_steps;
    Step* m_latest = nullptr;                  // on top of `m_steps`, waiting for its name
    std::vector<Action>* m_replayed = nullptr; // where a step that is being replayed collects its inverse

    QProperty<bool> m_canUndo{false};
    QProperty<bool> m_canRedo{false};
    QProperty<std::optional<L10nKey>> m_undoActionName;
    QProperty<std::optional<L10nKey>> m_redoActionName;
};

}
