// Teams, flags and positions as they are typed: "Ana/Bea", "FR,GB", "0.15,0.1".
#pragma once

#include "model/MatchConfig.h"

#include <QPointF>
#include <string>

namespace pointloom::cli {

/// A team of one name or, around a slash, two; flags as two-letter codes around a comma, empty for none.
/// `number` of the team is for the message. Throws UsageError.
TeamConfig parseTeam(const QString& names, const QString& flags, int number);

/// Two numbers of 0 to 1 around a comma. Throws UsageError.
QPointF parsePosition(const std::string& text);

}
