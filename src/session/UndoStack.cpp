#include "session/UndoStack.h"

#include <algorithm>
#include <memory>
#include <QScopedValueRollback>
#include <QUndoCommand>
#include <utility>

namespace pointloom {

/// Holds the actions that its next undo or redo runs; running them registers those of the one after.
class UndoStack::Step final : public QUndoCommand {
public:
    Step(UndoStack& owner, Action inverse)
        : m_owner(owner) {
        m_actions.push_back(std::move(inverse));
    }

    std::optional<L10nKey> name;

    void undo() override { replay(); }

    void redo() override {
        // Pushing a command runs it, but the edit has been made already.
        if (std::exchange(m_isBeingPushed, false))
            return;
        replay();
    }

private:
    void replay() {
        std::vector<Action> inverse;
        {
            const QScopedValueRollback collect(m_owner.m_replayed, &inverse);
            std::for_each(m_actions.rbegin(), m_actions.rend(), [](const Action& action) { action(); });
        }
        m_actions = std::move(inverse);
        if (m_actions.empty())
            setObsolete(true);
    }

    UndoStack& m_owner;
    std::vector<Action> m_actions; // in the order of registration
    bool m_isBeingPushed = true;
};

UndoStack::UndoStack() = default;
UndoStack::~UndoStack() = default;

void UndoStack::registerUndo(Action inverse) {
    if (m_replayed) {
        m_replayed->push_back(std::move(inverse));
        return;
    }
    auto step = std::make_unique<Step>(*this, std::move(inverse));
    m_latest = step.get();
    m_steps.push(step.release()); // which owns it from here
    publish();
}

void UndoStack::setActionName(L10nKey name) {
    if (m_replayed || !m_latest)
        return;
    m_latest->name = name;
    publish();
}

void UndoStack::undo() {
    replay(&QUndoStack::undo);
}

void UndoStack::redo() {
    replay(&QUndoStack::redo);
}

void UndoStack::replay(void (QUndoStack::*direction)()) {
    if (m_replayed)
        return;
    m_latest = nullptr;
    (m_steps.*direction)();
    publish();
}

void UndoStack::removeAllActions() {
    if (m_replayed)
        return;
    m_latest = nullptr;
    m_steps.clear();
    publish();
}

void UndoStack::publish() {
    m_canUndo = m_steps.canUndo();
    m_canRedo = m_steps.canRedo();
    m_undoActionName = nameOfStep(m_steps.index() - 1);
    m_redoActionName = nameOfStep(m_steps.index());
}

std::optional<L10nKey> UndoStack::nameOfStep(int index) const {
    const auto* step = static_cast<const Step*>(m_steps.command(index));
    return step ? step->name : std::nullopt;
}

}
