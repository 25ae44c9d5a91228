// The vertical card: the players side by side on top, the game in large figures, the sets below.
#pragma once

#include "render/ScoreboardTemplate.h"

namespace pointloom {

class StackedTemplate final : public ScoreboardTemplate {
public:
    TemplateID id() const override { return TemplateID::stacked; }
    QString displayName() const override { return pointloom::displayName(TemplateID::stacked); }
    void draw(QPainter& painter, const TemplatePayload& payload, QPointF origin) const override;
    QSizeF canvasSize(std::int64_t numSets, const MatchConfig& config) const override;
    QSizeF boardSize(std::int64_t numSets, const MatchConfig& config) const override;
};

}
