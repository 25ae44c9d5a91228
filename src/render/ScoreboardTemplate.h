// What every scoreboard template offers, and what it is given when it draws.
#pragma once

#include "model/MatchConfig.h"
#include "model/ScoreState.h"
#include "render/TemplateID.h"

#include <QImage>
#include <QPointF>
#include <QSizeF>
#include <QString>

class QPainter;

namespace pointloom {

/// Made fresh for each drawing.
struct TemplatePayload {
    SportScoreState score;
    MatchConfig config;
    QSizeF canvasSize; // of what is drawn on, in the painter's units
    QImage logo;       // null when there is none
};

/// Templates hold no state: they draw from several threads at once.
class ScoreboardTemplate {
public:
    virtual ~ScoreboardTemplate() = default;

    virtual TemplateID id() const = 0;
    virtual QString displayName() const = 0;

    /// Draws with the scoreboard's top left corner at `origin`, y growing downward. Draws nothing when
    /// the score is not of the family that the template is made for.
    virtual void draw(QPainter& painter, const TemplatePayload& payload, QPointF origin) const = 0;

    /// Size that a scoreboard of `numSets` set columns is placed with: a margin of `canvasMargin` on every
    /// side is included.
    virtual QSizeF canvasSize(std::int64_t numSets, const MatchConfig& config) const;

    /// Size of the scoreboard as this template draws it, margin not included; may be larger than what the
    /// canvas leaves for it.
    virtual QSizeF boardSize(std::int64_t numSets, const MatchConfig& config) const = 0;
};

/// Distance of the scoreboard from the edges of its canvas, in template units.
constexpr double canvasMargin = 10;

}
