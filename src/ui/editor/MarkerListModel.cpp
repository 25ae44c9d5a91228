#include "ui/editor/MarkerListModel.h"

#include "model/ScoringEngine.h"
#include "session/PointEdits.h"
#include "ui/common/MarkerText.h"

#include <algorithm>

namespace pointloom {

MarkerListModel::MarkerListModel(const UiContext& context, QObject* parent)
    : QAbstractListModel(parent)
    , m_context(context) {
    AppState& state = m_context.state;
    m_bindings.watch(state.markers, [this] { followMarkers(); });
    m_bindings.watchAll([this] { followCount(); }, state.initialScore, state.matchConfig, state.rules);
    m_bindings.watch(state.currentTime, [this] { followPlayhead(); });
}

int MarkerListModel::rowOf(const std::optional<QUuid>& id) const {
    if (!id)
        return -1;
    const auto found = std::ranges::find(m_markers, *id, &Marker::id);
    return found == m_markers.end() ? -1 : static_cast<int>(found - m_markers.begin());
}

int MarkerListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_markers.size());
}

QVariant MarkerListModel::data(const QModelIndex& index, int role) const {
    const Marker& marker = this->marker(index.row());
    switch (role) {
    case Qt::EditRole:
        return marker.label.value_or(QString());
    case Qt::AccessibleTextRole:
    case Qt::DisplayRole:
        return markerAsSpoken(m_context, marker, m_breaks.contains(marker.id));
    case Qt::ToolTipRole:
        return markerAsToolTip(m_context, marker, m_breaks.contains(marker.id));
    case HoldsRole:
        return m_holding == marker.id;
    case BreaksRole:
        return m_breaks.contains(marker.id);
    default:
        return {};
    }
}

bool MarkerListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole)
        return false;
    const QString text = value.toString().trimmed();
    const auto label = text.isEmpty() ? std::nullopt : std::optional(text);
    const Marker& marker = this->marker(index.row());
    if (label != marker.label)
        m_context.state.updateMarkerLabel(QUuid(marker.id), label, &m_context.undo);
    return true;
}

Qt::ItemFlags MarkerListModel::flags(const QModelIndex& index) const {
    return QAbstractListModel::flags(index) | Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
}

// Replaces the rows between those that are the same at both ends.
void MarkerListModel::followMarkers() {
    const std::vector<Marker>& now = m_context.state.markers;
    const auto isSame = [](const Marker& left, const Marker& right) { return left.id == right.id; };
    const auto [oldBegin, newBegin] = std::ranges::mismatch(m_markers, now, isSame);
    auto oldEnd = m_markers.end();
    auto newEnd = now.end();
    while (oldEnd != oldBegin && newEnd != newBegin && isSame(*std::prev(oldEnd), *std::prev(newEnd))) {
        --oldEnd;
        --newEnd;
    }
    const int first = static_cast<int>(oldBegin - m_markers.begin());
    const auto added = static_cast<int>(newEnd - newBegin);
    auto place = oldBegin;
    if (oldBegin != oldEnd) {
        beginRemoveRows({}, first, first + static_cast<int>(oldEnd - oldBegin) - 1);
        place = m_markers.erase(oldBegin, oldEnd);
        endRemoveRows();
    }
    if (added > 0) {
        beginInsertRows({}, first, first + added - 1);
        m_markers.insert(place, newBegin, newEnd);
        endInsertRows();
    }
    for (std::size_t row = 0; row < now.size(); ++row) {
        if (m_markers[row] == now[row])
            continue;
        m_markers[row] = now[row];
        const QModelIndex changed = index(static_cast<int>(row));
        Q_EMIT dataChanged(changed, changed);
    }
    followPlayhead();
    followCount();
}

void MarkerListModel::followCount() {
    QSet<QUuid> breaks;
    if (const auto match = PointEdits::countedMatch(m_context.state)) {
        const auto steps = stepsOf(*match);
        const auto isPoint = [&](std::size_t i) {
            return i < steps.size() && steps[i].kind == CountStep::Kind::point;
        };
        for (std::size_t i = 0; i < steps.size(); ++i) {
            if (steps[i].kind == CountStep::Kind::entered && (isPoint(i - 1) || isPoint(i + 1)))
                breaks.insert(match->markers[i].id);
        }
    }
    m_breaks.swap(breaks);
    for (std::size_t row = 0; row < m_markers.size(); ++row) {
        const QUuid& id = m_markers[row].id;
        const QModelIndex changed = index(static_cast<int>(row));
        if (breaks.contains(id) != m_breaks.contains(id))
            Q_EMIT dataChanged(changed, changed, {BreaksRole});
    }
}

void MarkerListModel::followPlayhead() {
    const Marker* holding = ScoringEngine::markerAtTime(m_markers, m_context.state.currentTime);
    const std::optional<QUuid> id = holding ? std::optional(holding->id) : std::nullopt;
    if (id == m_holding)
        return;
    const int rows[] = {rowOf(m_holding), rowOf(id)};
    m_holding = id;
    for (const int row : rows) {
        if (row >= 0)
            Q_EMIT dataChanged(index(row), index(row), {HoldsRole});
    }
}

}
