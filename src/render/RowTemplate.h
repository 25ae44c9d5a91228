// The horizontal scoreboards of two rows: one recipe, and a row of data for each.
#pragma once

#include "render/ScoreboardLayout.h"
#include "render/ScoreboardTemplate.h"
#include "render/Shadow.h"

#include <optional>

namespace pointloom {

/// Drawn besides or instead of the recipe's plain panel.
enum class Decoration {
    none,
    splitBand,     // a blue and a red rectangle in place of the rounded panel
    gradientPanel, // the panel runs from its own colour to `decorationColor`
    border,        // a rule between the rows and a line around the scoreboard in `decorationColor`
    edgeBand,      // a band of `decorationColor` along the left edge
    glass,         // a veil of white on the panel and a line around it in `decorationColor`
};

struct RowTemplateStyle {
    TemplateID id;
    double rowH = usualRowH;
    double setW = usualSetW;
    double gameW = usualGameW;
    Shadow shadow;
    double radius;
    Rgba panel;
    RowColors team1;
    RowColors team2;
    std::optional<Rgba> divider{}; // between the rows
    Decoration decoration = Decoration::none;
    Rgba decorationColor{};
    BoardFont font = BoardFont::sans;
    BoardOrder order = BoardOrder::setsFirst;
    BoardLogo logo = BoardLogo::left;
    bool cutsCells = false; // at the rounded corners
};

/// The data of a row template; `id` is any of which a board can be made.
const RowTemplateStyle& rowTemplateStyle(TemplateID id);

/// Draws the board of a match in place of its own style, where the match has one.
class RowTemplate final : public ScoreboardTemplate {
public:
    /// The style must outlive the template, as the rows of the table do.
    explicit RowTemplate(const RowTemplateStyle& style);

    TemplateID id() const override { return m_style.id; }
    QString displayName() const override { return m_displayName; }
    void draw(QPainter& painter, const TemplatePayload& payload, QPointF origin) const override;
    QSizeF boardSize(std::int64_t numSets, const MatchConfig& config) const override;

private:
    const RowTemplateStyle& m_style;
    QString m_displayName;
};

}
