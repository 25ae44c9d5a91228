#include "ui/common/TeamName.h"

namespace pointloom {

QString teamName(const UiContext& context, std::int64_t team) {
    const auto& config = context.state.matchConfig.value();
    const QString name = config ? (team == 2 ? config->team2 : config->team1).displayName() : QString();
    return name.isEmpty() ? context.text(team == 2 ? L10nKey::team2 : L10nKey::team1) : name;
}

}
