// The interface of all scoreboard templates, and the registry that holds one of each.
#pragma once

#include "model/MatchConfig.h"
#include "model/ScoreState.h"
#include "render/TemplateID.h"

#include <memory>
#include <QImage>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <vector>

class QPainter;

namespace pointloom {

/// Made fresh for each drawing.
struct TemplatePayload {
    SportScoreState score;
    MatchConfig config;
    QSizeF canvasSize; // of the image or frame that is drawn on, in the painter's units
    QImage logo;       // null for none
};

/// Templates hold no state: they draw from several threads at once.
class ScoreboardTemplate {
public:
    virtual ~ScoreboardTemplate() = default;

    virtual TemplateID id() const = 0;
    virtual QString displayName() const = 0;

    /// Draws with the scoreboard's top left corner at `origin`, y growing downward. Draws nothing when
    /// the score is not of the kind (tennis or points) that the template is made for.
    virtual void draw(QPainter& painter, const TemplatePayload& payload, QPointF origin) const = 0;

    /// Size by which a scoreboard of `numSets` set columns is placed, a margin of `canvasMargin` on every
    /// side included. The same for all row templates, whatever their own measures, so that a scoreboard stays
    /// in its place when another template is chosen.
    virtual QSizeF canvasSize(std::int64_t numSets, const MatchConfig& config) const;

    /// Size of the scoreboard as this template draws it, without margin; may be larger than the canvas within
    /// its margins.
    virtual QSizeF boardSize(std::int64_t numSets, const MatchConfig& config) const = 0;
};

/// Distance of the scoreboard from the edges of its canvas, in template units.
constexpr double canvasMargin = 10;

namespace TemplateRegistry {

/// One instance of every template, in catalogue order, made on first use.
const std::vector<std::unique_ptr<const ScoreboardTemplate>>& all();

/// The template with that identifier. Every identifier has one.
const ScoreboardTemplate& templateFor(TemplateID id);

}

}
