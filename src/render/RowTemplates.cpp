// The data of the row templates.
#include "render/RowTemplate.h"

#include <algorithm>
#include <array>

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

/// All point sports share measures, shape and white texts; both rows share the game cell.
constexpr RowTemplateStyle pointTemplate(TemplateID id, PointRow row1, PointRow row2, GameCell game,
                                         Rgba divider, double shadowAlpha = 0.5) {
    return {
        .id = id,
        .rowH = 38,
        .setW = 28,
        .gameW = 46,
        .shadow = blackShadow(shadowAlpha, 8),
        .radius = 6,
        .panel = row1.bg,
        .team1 = {row1.bg, white, row1.accent, game.fill, game.text},
        .team2 = {row2.bg, white, row2.accent, game.fill, game.text},
        .divider = divider,
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
        .rowH = 38,
        .setW = 28,
        .gameW = 46,
        .shadow = blackShadow(0.5, 8),
        .radius = 6,
        .panel = classicNavy,
        .team1 = {classicNavy, white, {0.086, 0.188, 0.349}, classicClay, white},
        .team2 = {{0.102, 0.2, 0.329}, white, {0.071, 0.157, 0.282}, classicClay, white},
        .divider = whiteAt(0.15),
    },
    RowTemplateStyle{
        .id = TemplateID::dark,
        .rowH = 38,
        .setW = 28,
        .gameW = 46,
        .shadow = blackShadow(0.7, 10),
        .radius = 4,
        .panel = {0.067, 0.067, 0.067},
        .team1 = {{0.067, 0.067, 0.067}, white, {0.102, 0.102, 0.102}, darkGold, white},
        .team2 = {{0.039, 0.039, 0.039}, {0.8, 0.8, 0.8}, {0.067, 0.067, 0.067}, darkGold, white},
        .divider = {},
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
        .divider = {},
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
        .rowH = 38,
        .setW = 28,
        .gameW = 46,
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
        .rowH = 38,
        .setW = 28,
        .gameW = 46,
        .shadow = blackShadow(0.5, 8),
        .radius = 4,
        .panel = {0.102, 0.227, 0.102},
        .team1 = {{0.102, 0.227, 0.102}, {0.961, 0.902, 0.255}, {0.086, 0.18, 0.086}, retroGold, black},
        .team2 = {{0.082, 0.18, 0.082}, {0.831, 0.784, 0.29}, {0.067, 0.141, 0.067}, retroGold, black},
        .divider = {},
        .decoration = Decoration::border,
        .decorationColor = retroGold,
    },
    RowTemplateStyle{
        .id = TemplateID::rolandgarros,
        .rowH = 38,
        .setW = 28,
        .gameW = 46,
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
        .rowH = 38,
        .setW = 28,
        .gameW = 46,
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
        .rowH = 38,
        .setW = 28,
        .gameW = 46,
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

}

const RowTemplateStyle& rowTemplateStyle(TemplateID id) {
    if (const auto* found = std::ranges::find(tennisTemplates, id, &RowTemplateStyle::id);
        found != tennisTemplates.end())
        return *found;
    const auto* found = std::ranges::find(pointTemplates, id, &RowTemplateStyle::id);
    Q_ASSERT(found != pointTemplates.end());
    return *found;
}

}
