#include "persistence/StoredFields.h"

#include "model/ScoringEngine.h"

namespace pointloom {

QPointF StoredValues::scoreboardPosition() const {
    if (scoreboardPositionX > 1.0 || scoreboardPositionY > 1.0)
        return AppState::defaultScoreboardPosition;
    return {scoreboardPositionX, scoreboardPositionY};
}

void StoredValue::read(const std::optional<QUrl>& value, std::optional<QString>& field) {
    field = value ? std::optional(value->path(QUrl::FullyDecoded)) : std::nullopt;
}

void StoredValue::read(const std::vector<std::string>& value,
                       std::optional<std::vector<std::string>>& field) {
    field = value.empty() ? std::nullopt : std::optional(value);
}

void StoredValue::read(const std::vector<QString>& value, std::optional<std::vector<QString>>& field) {
    field = value.size() < 2 ? std::nullopt : std::optional(value);
}

void StoredValue::read(const PartChoice& value, std::optional<PartChoice>& field) {
    field = value == PartChoice() ? std::nullopt : std::optional(value);
}

void StoredValue::restore(const std::vector<Marker>& field, QProperty<std::vector<Marker>>& property) {
    property = ScoringEngine::sortedByTime(field);
}

void StoredValue::restore(const std::optional<QString>& field, QProperty<std::optional<QUrl>>& property) {
    if (field)
        property = QUrl::fromLocalFile(*field);
}

}
