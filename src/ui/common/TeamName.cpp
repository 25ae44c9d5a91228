#include "ui/common/TeamName.h"

namespace pointloom {

QString teamName(const UiContext& context, Side side) {
    const auto& config = context.state.matchConfig.value();
    const QString name = config ? ofSide(*config, side).displayName() : QString();
    return name.isEmpty() ? context.text(side == Side::first ? L10nKey::team1 : L10nKey::team2) : name;
}

}
