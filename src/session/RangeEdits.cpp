#include "session/RangeEdits.h"

#include "l10n/L10nKey.h"

#include <algorithm>
#include <utility>

namespace pointloom {

TrimTimes trimOf(const AppState& state) {
    return {state.trimStart, state.trimEnd};
}

void setTrim(AppState& state, const TrimTimes& trim, UndoManager* undoManager) {
    const TrimTimes previous = trimOf(state);
    if (trim == previous)
        return;
    state.trimStart = trim.start;
    state.trimEnd = trim.end;
    registerEdit(undoManager, L10nKey::undoSetTrim,
                 [&state, previous, undoManager] { setTrim(state, previous, undoManager); });
    state.save();
}

void addCut(AppState& state, const CutZone& cut, UndoManager* undoManager) {
    auto edited = state.cuts.value();
    edited.insert(std::ranges::upper_bound(edited, cut.start, {}, &CutZone::start), cut);
    state.cuts = std::move(edited);
    state.selectedCutID = cut.id;
    registerEdit(undoManager, L10nKey::undoAddCut,
                 [&state, id = cut.id, undoManager] { removeCut(state, id, undoManager); });
    state.save();
}

void updateCut(AppState& state, const CutZone& cut, UndoManager* undoManager) {
    auto edited = state.cuts.value();
    const auto found = std::ranges::find(edited, cut.id, &CutZone::id);
    if (found == edited.end() || *found == cut)
        return;
    const CutZone previous = std::exchange(*found, cut);
    std::ranges::stable_sort(edited, {}, &CutZone::start);
    state.cuts = std::move(edited);
    registerEdit(undoManager, L10nKey::undoMoveCut,
                 [&state, previous, undoManager] { updateCut(state, previous, undoManager); });
    state.save();
}

void removeCut(AppState& state, const QUuid& id, UndoManager* undoManager) {
    auto edited = state.cuts.value();
    const auto found = std::ranges::find(edited, id, &CutZone::id);
    if (found == edited.end())
        return;
    const CutZone removed = *found;
    edited.erase(found);
    state.cuts = std::move(edited);
    if (state.selectedCutID.value() == removed.id)
        state.selectedCutID = std::nullopt;
    registerEdit(undoManager, L10nKey::undoDeleteCut,
                 [&state, removed, undoManager] { addCut(state, removed, undoManager); });
    state.save();
}

}
