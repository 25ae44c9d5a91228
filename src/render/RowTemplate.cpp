#include "render/RowTemplate.h"

#include "render/BoardLook.h"
#include "render/DevicePixels.h"
#include "render/TemplateRenderer.h"

#include <algorithm>
#include <array>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>

namespace pointloom {

namespace {

constexpr Rgba white{1, 1, 1, 1};
constexpr Rgba black{0, 0, 0, 1};
constexpr Rgba clear{0, 0, 0, 0};

constexpr Rgba whiteAt(double alpha) {
    return {1, 1, 1, alpha};
}

constexpr Shadow blackShadow(double alpha, double blur) {
    return {{0, 0, 0, alpha}, blur, {}};
}

struct PointRow {
    Rgba bg;
    Rgba accent;
};

struct GameCell {
    Rgba fill;
    Rgba text;
};

/// All point sports have the same measures, shape and white texts; both rows have the same game cell.
constexpr RowTemplateStyle pointTemplate(TemplateID id, PointRow row1, PointRow row2, GameCell game,
                                         Rgba divider, double shadowAlpha = 0.5) {
    return {
        .id = id,
        .shadow = blackShadow(shadowAlpha, 8),
        .radius = 6,
        .panel = row1.bg,
        .team1 = {row1.bg, white, row1.accent, game.fill, game.text},
        .team2 = {row2.bg, white, row2.accent, game.fill, game.text},
        .divider = divider,
        .logo = BoardLogo::none,
    };
}

constexpr RowTemplateStyle pointMinimal(TemplateID id, double dividerAlpha, double shadowAlpha = 0.5) {
    constexpr PointRow row{{0, 0, 0, 0.65}, {0, 0, 0, 0.55}};
    return pointTemplate(id, row, row, {whiteAt(0.15), white}, whiteAt(dividerAlpha), shadowAlpha);
}

constexpr Rgba classicNavy{0.118, 0.227, 0.373};
constexpr Rgba classicClay{0.784, 0.294, 0.067};
constexpr Rgba darkGold{0.722, 0.525, 0.043};
constexpr Rgba broadcastBlue{0, 0.188, 0.529};
constexpr Rgba broadcastRed{0.784, 0.063, 0.18};
constexpr Rgba retroGold{0.722, 0.588, 0.047};
constexpr Rgba terracotta{0.627, 0.259, 0.102};
constexpr Rgba wimbledonPurple{0.298, 0.153, 0.459};
constexpr Rgba nightBlue{0, 0.439, 1};
constexpr RowColors minimalRow{clear, white, whiteAt(0.08), whiteAt(0.15), white};
constexpr RowColors gradientRow{clear, {0.91, 0.835, 1}, whiteAt(0.08), {0.706, 0.392, 1, 0.6}, white};

constexpr std::array tennisTemplates{
    RowTemplateStyle{
        .id = TemplateID::classic,
        .shadow = blackShadow(0.5, 8),
        .radius = 6,
        .panel = classicNavy,
        .team1 = {classicNavy, white, {0.086, 0.188, 0.349}, classicClay, white},
        .team2 = {{0.102, 0.2, 0.329}, white, {0.071, 0.157, 0.282}, classicClay, white},
        .divider = whiteAt(0.15),
    },
    RowTemplateStyle{
        .id = TemplateID::dark,
        .shadow = blackShadow(0.7, 10),
        .radius = 4,
        .panel = {0.067, 0.067, 0.067},
        .team1 = {{0.067, 0.067, 0.067}, white, {0.102, 0.102, 0.102}, darkGold, white},
        .team2 = {{0.039, 0.039, 0.039}, {0.8, 0.8, 0.8}, {0.067, 0.067, 0.067}, darkGold, white},
    },
    RowTemplateStyle{
        .id = TemplateID::broadcast,
        .rowH = 40,
        .setW = 30,
        .gameW = 48,
        .shadow = blackShadow(0.5, 8),
        .radius = 0,
        .panel = broadcastBlue,
        .team1 = {broadcastBlue, white, {0, 0.255, 0.627}, white, broadcastBlue},
        .team2 = {broadcastRed, white, {0.851, 0.125, 0.208}, white, broadcastRed},
        .decoration = Decoration::splitBand,
    },
    RowTemplateStyle{
        .id = TemplateID::minimal,
        .rowH = 36,
        .setW = 26,
        .gameW = 42,
        .shadow = blackShadow(0.4, 6),
        .radius = 8,
        .panel = {0, 0, 0, 0.72},
        .team1 = minimalRow,
        .team2 = minimalRow,
        .divider = whiteAt(0.2),
    },
    RowTemplateStyle{
        .id = TemplateID::gradient,
        .shadow = {{0.39, 0, 1, 0.4}, 12, {}},
        .radius = 10,
        .panel = {0.102, 0.063, 0.251},
        .team1 = gradientRow,
        .team2 = gradientRow,
        .divider = whiteAt(0.1),
        .decoration = Decoration::gradientPanel,
        .decorationColor = {0.176, 0.106, 0.431},
    },
    RowTemplateStyle{
        .id = TemplateID::retro,
        .shadow = blackShadow(0.5, 8),
        .radius = 4,
        .panel = {0.102, 0.227, 0.102},
        .team1 = {{0.102, 0.227, 0.102}, {0.961, 0.902, 0.255}, {0.086, 0.18, 0.086}, retroGold, black},
        .team2 = {{0.082, 0.18, 0.082}, {0.831, 0.784, 0.29}, {0.067, 0.141, 0.067}, retroGold, black},
        .decoration = Decoration::border,
        .decorationColor = retroGold,
    },
    RowTemplateStyle{
        .id = TemplateID::rolandgarros,
        .shadow = blackShadow(0.6, 10),
        .radius = 6,
        .panel = {0.11, 0.055, 0.031},
        .team1 = {{0.11, 0.055, 0.031}, white, {0.165, 0.082, 0.063}, terracotta, white},
        .team2 = {{0.086, 0.043, 0.024}, {0.91, 0.788, 0.627}, {0.133, 0.067, 0.047}, terracotta, white},
        .divider = Rgba{1, 0.784, 0.392, 0.2},
        .decoration = Decoration::edgeBand,
        .decorationColor = terracotta,
    },
    RowTemplateStyle{
        .id = TemplateID::wimbledon,
        .shadow = blackShadow(0.5, 8),
        .radius = 4,
        .panel = {0, 0.259, 0.184},
        .team1 = {{0, 0.259, 0.184}, white, {0, 0.322, 0.22}, wimbledonPurple, white},
        .team2 = {{0, 0.22, 0.149}, {0.831, 0.929, 0.855}, {0, 0.271, 0.184}, wimbledonPurple, white},
        .divider = whiteAt(0.15),
        .decoration = Decoration::edgeBand,
        .decorationColor = wimbledonPurple,
    },
    RowTemplateStyle{
        .id = TemplateID::nightsession,
        .shadow = {{0, 0.392, 1, 0.5}, 16, {}},
        .radius = 10,
        .panel = {0.02, 0.039, 0.118, 0.82},
        .team1 = {clear, white, {0, 0.588, 1, 0.1}, nightBlue, white},
        .team2 = {clear, {0.667, 0.831, 1}, {0, 0.588, 1, 0.08}, nightBlue, white},
        .divider = Rgba{0, 0.588, 1, 0.3},
        .decoration = Decoration::glass,
        .decorationColor = {0, 0.588, 1, 0.45},
    },
};

// Each: background and accent of team 1, of team 2, then the game cell with its text, then the divider.
constexpr std::array pointTemplates{
    // clang-format off
    pointTemplate(TemplateID::volleyArena, {{0, 0.18, 0.52}, {0, 0.14, 0.44}}, {{0, 0.14, 0.44}, {0, 0.1, 0.36}},
                  {{0.95, 0.73, 0}, black}, whiteAt(0.15)),
    pointTemplate(TemplateID::volleyCourt, {{0.55, 0.35, 0.15}, {0.48, 0.3, 0.12}}, {{0.46, 0.28, 0.1}, {0.4, 0.24, 0.08}},
                  {{0.2, 0.55, 0.2}, white}, whiteAt(0.15)),
    pointTemplate(TemplateID::volleyNeon, {{0.05, 0.05, 0.1, 0.92}, {0.08, 0.08, 0.14, 0.92}}, {{0.08, 0.08, 0.14, 0.92}, {0.11, 0.11, 0.18, 0.92}},
                  {{0, 0.85, 0.9}, black}, {0, 0.85, 0.9, 0.4}),
    pointMinimal(TemplateID::volleyMinimal, 0.12, 0.4),
    pointTemplate(TemplateID::badmintonSmash, {{0.05, 0.1, 0.3}, {0.04, 0.08, 0.25}}, {{0.04, 0.08, 0.25}, {0.03, 0.06, 0.2}},
                  {{0.8, 0.1, 0.1}, white}, whiteAt(0.15)),
    pointTemplate(TemplateID::badmintonGym, {{0.1, 0.3, 0.15}, {0.08, 0.24, 0.12}}, {{0.08, 0.24, 0.12}, {0.06, 0.18, 0.09}},
                  {{0.9, 0.9, 0.9}, black}, whiteAt(0.15)),
    pointTemplate(TemplateID::badmintonNeon, {{0.1, 0, 0.2, 0.92}, {0.14, 0.04, 0.26, 0.92}}, {{0.14, 0.04, 0.26, 0.92}, {0.18, 0.08, 0.3, 0.92}},
                  {{0.6, 1, 0}, black}, {0.6, 1, 0, 0.3}),
    pointMinimal(TemplateID::badmintonMinimal, 0.12),
    pointTemplate(TemplateID::ttClassic, {{0, 0.35, 0.7}, {0, 0.28, 0.6}}, {{0, 0.28, 0.6}, {0, 0.22, 0.5}},
                  {white, {0, 0.35, 0.7}}, whiteAt(0.15)),
    pointTemplate(TemplateID::ttNeon, {{0.05, 0.05, 0.05, 0.92}, {0.1, 0.1, 0.1, 0.92}}, {{0.1, 0.1, 0.1, 0.92}, {0.15, 0.15, 0.15, 0.92}},
                  {{1, 0.45, 0}, white}, {1, 0.45, 0, 0.4}),
    pointTemplate(TemplateID::ttRetro, {{0.6, 0.05, 0.05}, {0.7, 0.1, 0.1}}, {{0.48, 0.03, 0.03}, {0.58, 0.08, 0.08}},
                  {{0.05, 0.05, 0.05}, white}, {0, 0, 0, 0.3}),
    pointMinimal(TemplateID::ttMinimal, 0.1),
    pointTemplate(TemplateID::squashCourt, {{0.08, 0.08, 0.08}, {0.12, 0.12, 0.12}}, {{0.08, 0.08, 0.08}, {0.12, 0.12, 0.12}},
                  {{0.95, 0.8, 0}, black}, whiteAt(0.1)),
    pointTemplate(TemplateID::squashDark, {{0.15, 0.15, 0.15}, {0.12, 0.12, 0.12}}, {{0.11, 0.11, 0.11}, {0.12, 0.12, 0.12}},
                  {{0.83, 0.68, 0.21}, black}, whiteAt(0.1)),
    pointTemplate(TemplateID::squashNeon, {{0.06, 0.06, 0.06, 0.92}, {0.1, 0.1, 0.1, 0.92}}, {{0.1, 0.1, 0.1, 0.92}, {0.1, 0.1, 0.1, 0.92}},
                  {{0.5, 1, 0}, black}, {0.5, 1, 0, 0.3}),
    pointMinimal(TemplateID::squashMinimal, 0.15),
    pointTemplate(TemplateID::pickleballClassic, {{0, 0.27, 0.53}, {0, 0.18, 0.38}}, {{0, 0.22, 0.45}, {0, 0.18, 0.38}},
                  {{0.83, 0.68, 0.21}, black}, whiteAt(0.15)),
    pointTemplate(TemplateID::pickleballNeon, {{0.05, 0.05, 0.08, 0.92}, {0.08, 0.08, 0.12, 0.92}}, {{0.08, 0.08, 0.12, 0.92}, {0.08, 0.08, 0.12, 0.92}},
                  {{0, 0.9, 0.6}, black}, whiteAt(0.1)),
    pointMinimal(TemplateID::pickleballMinimal, 0.12),
    pointTemplate(TemplateID::pickleballRetro, {{0.12, 0.1, 0.08}, {0.15, 0.13, 0.1}}, {{0.15, 0.13, 0.1}, {0.15, 0.13, 0.1}},
                  {{0.9, 0.4, 0.05}, white}, whiteAt(0.12)),
    // clang-format on
};

void strokeShape(QPainter& painter, const QPainterPath& path, const Rgba& color, double width) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(path, QPen(color.color(), width));
    painter.restore();
}

class RowDrawing {
public:
    RowDrawing(QPainter& painter, const RowTemplateStyle& style, const ScoreboardLayout& layout,
               const QRectF& scoreboard)
        : m_painter(painter)
        , m_style(style)
        , m_layout(layout)
        , m_scoreboard(scoreboard)
        , m_panel(cgRoundRect(scoreboard, style.radius))
        , m_outline(style.cutsCells ? m_panel : QPainterPath()) {}

    void drawPanel();
    void drawRows(const TemplatePayload& payload);
    void drawDivider();
    void drawFinish();
    void drawLogo(const QImage& logo);

private:
    QPainter& m_painter;
    const RowTemplateStyle& m_style;
    const ScoreboardLayout& m_layout;
    QRectF m_scoreboard;
    QPainterPath m_panel;
    QPainterPath m_outline; // empty: cells are whole rectangles
};

void RowDrawing::drawPanel() {
    drawShadow(m_painter, m_panel, m_style.shadow, m_style.panel.alpha);
    switch (m_style.decoration) {
    case Decoration::splitBand: {
        // They meet in the gap between the rows, which would otherwise show what is below the scoreboard.
        const double seam = m_scoreboard.top() + m_style.rowH;
        fillCell(m_painter, {m_scoreboard.topLeft(), QPointF(m_scoreboard.right(), seam)}, m_style.team1.bg,
                 m_outline);
        fillCell(m_painter, {QPointF(m_scoreboard.left(), seam), m_scoreboard.bottomRight()},
                 m_style.team2.bg, m_outline);
        return;
    }
    case Decoration::gradientPanel: {
        QLinearGradient gradient(m_scoreboard.topLeft(), m_scoreboard.bottomRight());
        gradient.setColorAt(0, m_style.panel.color());
        gradient.setColorAt(1, m_style.decorationColor.color());
        fillShape(m_painter, m_panel, gradient);
        return;
    }
    case Decoration::glass: {
        constexpr Rgba veil{1, 1, 1, 0.08};
        fillShape(m_painter, m_panel, m_style.panel.color());
        fillShape(m_painter, m_panel, veil.color());
        strokeShape(m_painter, m_panel, m_style.decorationColor, 1);
        return;
    }
    case Decoration::none:
    case Decoration::border:
    case Decoration::edgeBand:
        fillShape(m_painter, m_panel, m_style.panel.color());
        return;
    }
    Q_UNREACHABLE();
}

void RowDrawing::drawRows(const TemplatePayload& payload) {
    const MatchConfig& config = payload.config;
    const MatchFormat format = drawnFormat(config);
    const std::vector<SetScore>& sets = setsOf(payload.score);
    const auto [game1, game2] = gameTexts(payload.score);
    const QPointF origin = m_scoreboard.topLeft();
    drawScoreboardRow(m_painter, m_layout, origin, config.team1.flagDisplayName(format), sets, Side::first,
                      game1, isServing(payload.score, Side::first), m_style.team1, m_outline);
    drawScoreboardRow(m_painter, m_layout, origin + QPointF(0, m_layout.rowH + 1),
                      config.team2.flagDisplayName(format), sets, Side::second, game2,
                      isServing(payload.score, Side::second), m_style.team2, m_outline);
}

void RowDrawing::drawDivider() {
    if (!m_style.divider)
        return;
    QPainterPath gap;
    gap.addRect(m_scoreboard.left(), m_scoreboard.top() + m_layout.rowH, m_scoreboard.width(), 1);
    fillShape(m_painter, gap, m_style.divider->color());
}

/// Decorations on top of the rows, which cover the whole panel.
void RowDrawing::drawFinish() {
    if (m_style.decoration == Decoration::border) {
        QPainterPath rule;
        rule.addRect(m_scoreboard.left(), m_scoreboard.top() + m_style.rowH, m_scoreboard.width(), 1);
        fillShape(m_painter, rule, m_style.decorationColor.color());
        strokeShape(m_painter, m_panel, m_style.decorationColor, 2);
    }
    if (m_style.decoration == Decoration::edgeBand) {
        constexpr double width = 3; // leaves the serve dot free
        fillCell(m_painter, {m_scoreboard.left(), m_scoreboard.top(), width, m_scoreboard.height()},
                 m_style.decorationColor, m_outline);
    }
}

void RowDrawing::drawLogo(const QImage& logo) {
    if (m_layout.logo == BoardLogo::left)
        drawLogoInScoreboard(m_painter, logo, m_scoreboard.topLeft(), m_scoreboard.height());
    else if (m_layout.logo == BoardLogo::right)
        drawLogoAfterNames(m_painter, logo, m_scoreboard.topLeft(), m_layout);
}

ScoreboardLayout layoutOf(const RowTemplateStyle& style, const MatchConfig& config) {
    ScoreboardLayout layout(style.rowH, style.setW, style.gameW, config);
    layout.order = style.order;
    layout.logo = style.logo;
    layout.font = style.font;
    return layout;
}

}

const RowTemplateStyle& rowTemplateStyle(TemplateID id) {
    if (const auto* found = std::ranges::find(tennisTemplates, id, &RowTemplateStyle::id);
        found != tennisTemplates.end())
        return *found;
    const auto* found = std::ranges::find(pointTemplates, id, &RowTemplateStyle::id);
    Q_ASSERT(found != pointTemplates.end());
    return *found;
}

RowTemplate::RowTemplate(const RowTemplateStyle& style)
    : m_style(style)
    // The one template whose own name differs from the catalogue's.
    , m_displayName(style.id == TemplateID::squashDark ? QStringLiteral("Dark")
                                                       : pointloom::displayName(style.id)) {}

void RowTemplate::draw(QPainter& painter, const TemplatePayload& payload, QPointF origin) const {
    const bool servesTennis = sportOf(m_style.id) == SportID::tennis;
    if (std::holds_alternative<ScoreState>(payload.score) != servesTennis)
        return;
    const auto& board = payload.config.board;
    const RowTemplateStyle style = board ? styleOf(m_style.id, *board) : m_style;
    const ScoreboardLayout measures = layoutOf(style, payload.config);
    const auto numSets = static_cast<std::int64_t>(setsOf(payload.score).size());
    const QSizeF size(measures.totalW(numSets), measures.totalH());

    RowDrawing drawing(painter, style, measures, {alignedToPixels(painter, origin), size});
    drawing.drawPanel();
    drawing.drawRows(payload);
    drawing.drawDivider();
    drawing.drawFinish();
    drawing.drawLogo(payload.logo);
}

QSizeF RowTemplate::boardSize(std::int64_t numSets, const MatchConfig& config) const {
    const ScoreboardLayout measures = layoutOf(m_style, config);
    return {measures.totalW(numSets), measures.totalH()};
}

}
