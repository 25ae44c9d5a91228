// The part of a count for which scores have no field: a fixed phrase in the marker's label, alone or among
// other words. "Tie-break 5–4": points of the first and the second side in a running tie-break. "Server 2":
// the serving side's second server serves.
#pragma once

#include "model/ScoreState.h"

#include <optional>
#include <QString>

namespace pointloom {

QString tieBreakPhrase(const PointGameScore& points);
QString secondServerPhrase();

std::optional<PointGameScore> tieBreakPoints(const QString& label);
bool namesSecondServer(const QString& label);

/// The label with `phrase` in place of the one that it has; other words stay. Empty when nothing is left.
std::optional<QString> withPhrase(const std::optional<QString>& label, const std::optional<QString>& phrase);

/// What the user wrote.
inline std::optional<QString> withoutPhrase(const std::optional<QString>& label) {
    return withPhrase(label, std::nullopt);
}

}
