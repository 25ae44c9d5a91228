#include "render/BoardLook.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <vector>

namespace pointloom {

namespace {

constexpr Rgba white{1, 1, 1};
constexpr Rgba black{0, 0, 0};

Rgba rgbaOf(BoardColor color) {
    constexpr double most = 255;
    return {color.red / most, color.green / most, color.blue / most, color.alpha / most};
}

Rgba withAlpha(Rgba color, double alpha) {
    color.alpha = alpha;
    return color;
}

bool hasSameRgb(const Rgba& one, const Rgba& other) {
    return withAlpha(one, 1) == withAlpha(other, 1);
}

bool isGrey(const Rgba& color) {
    return color.red == color.green && color.green == color.blue;
}

// WCAG 2.1, of sRGB.
double luminance(const Rgba& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(const Rgba& one, const Rgba& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

Rgba over(const Rgba& upper, const Rgba& lower) { // which is opaque
    const auto mix = [&](double above, double below) {
        return above * upper.alpha + below * (1 - upper.alpha);
    };
    return {mix(upper.red, lower.red), mix(upper.green, lower.green), mix(upper.blue, lower.blue)};
}

/// What a cell of a board may look like: on both ends of its panel, over black and over white.
std::vector<Rgba> grounds(const RowTemplateStyle& style, const Rgba& cell) {
    std::vector<Rgba> panels{style.panel};
    if (style.decoration == Decoration::gradientPanel)
        panels.push_back(style.decorationColor);
    std::vector<Rgba> seen;
    for (const Rgba& panel : panels) {
        for (const Rgba& backdrop : {black, white})
            seen.push_back(over(cell, over(panel, backdrop)));
    }
    return seen;
}

double contrastOn(const std::vector<Rgba>& grounds, const Rgba& text) {
    double least = 21;
    for (const Rgba& ground : grounds)
        least = std::min(least, contrast(over(text, ground), ground));
    return least;
}

std::vector<Rgba> nameGrounds(const RowTemplateStyle& style, const RowColors& row) {
    std::vector<Rgba> all = grounds(style, row.bg);
    for (const Rgba& ground : grounds(style, row.accent))
        all.push_back(ground);
    return all;
}

Rgba blackOrWhite(const std::vector<Rgba>& grounds) {
    return contrastOn(grounds, white) >= contrastOn(grounds, black) ? white : black;
}

Rgba textOn(const Rgba& ground) {
    return contrast(ground, white) >= contrast(ground, black) ? white : black;
}

/// `color` with another lightness, 0..1.
Rgba withLightness(const Rgba& color, double lightness) {
    const QColor hsl = color.color().toHsl();
    const QColor result = QColor::fromHslF(hsl.hslHueF(), hsl.hslSaturationF(),
                                           static_cast<float>(std::clamp(lightness, 0.0, 1.0)))
                              .toRgb();
    return {result.redF(), result.greenF(), result.blueF(), color.alpha};
}

/// `shade` as it is to `of`, now to `color`: lighter or darker by as much, or the other way where that leaves
/// no room for it or makes the text on `color` harder to read.
Rgba shadeOf(const Rgba& shade, const Rgba& of, const Rgba& color) {
    constexpr double comfortable = 1.2 * readableContrast; // veils come on top
    const double step = shade.color().lightnessF() - of.color().lightnessF();
    const double lightness = color.color().lightnessF();
    const Rgba usual = withLightness(color, lightness + step);
    const Rgba other = withLightness(color, lightness - step);
    const bool hasRoom = lightness + step >= 0 && lightness + step <= 1;
    const Rgba text = textOn(color);
    const bool isComfortable = contrast(usual, text) >= std::min(comfortable, contrast(color, text));
    const Rgba& chosen = hasRoom && isComfortable ? usual : other;
    const double share = of.alpha > 0 ? shade.alpha / of.alpha : 1;
    return withAlpha(chosen, std::min(1.0, share * color.alpha));
}

/// Gives a style the colours of a board, each by its part in the template.
class Recoloring {
public:
    Recoloring(const RowTemplateStyle& base, const BoardColors& colors)
        : m_base(base)
        , m_style(base)
        , m_ground(base.team1.bg.alpha > 0 ? base.team1.bg : base.panel) {
        if (colors.main)
            applyMain(rgbaOf(*colors.main));
        if (colors.points)
            applyPoints(rgbaOf(*colors.points));
        if (colors.row2) {
            m_style.team2.accent = accentOn(m_base.team2, rgbaOf(*colors.row2));
            m_style.team2.bg = rgbaOf(*colors.row2);
        }
        if (colors.sets)
            m_style.team1.accent = m_style.team2.accent = rgbaOf(*colors.sets);
        settleNames(colors.text);
        settlePoints(m_style.team1, m_base.team1, colors.pointsText);
        settlePoints(m_style.team2, m_base.team2, colors.pointsText);
    }

    const RowTemplateStyle& style() const { return m_style; }

private:
    static bool isVeil(const Rgba& color) { return color.alpha < 0.5; }

    // A veil lightens a dark ground; on a light one it has to darken.
    Rgba veilOn(const Rgba& veil, const Rgba& ground) const {
        if (!isGrey(veil))
            return veil;
        return withAlpha(textOn(ground), veil.alpha);
    }

    Rgba accentOn(const RowColors& base, const Rgba& ground) const {
        if (isVeil(base.accent))
            return veilOn(base.accent, ground);
        const Rgba& before = base.bg.alpha > 0 ? base.bg : m_base.panel;
        if (!hasSameRgb(base.accent, before))
            return shadeOf(base.accent, before, ground);
        // Told apart by their alpha alone, which an opaque ground has not.
        constexpr double step = 0.06;
        const double shift = ground.color().lightnessF() > 0.5F ? -step : step;
        return shadeOf({0.5 + shift, 0.5 + shift, 0.5 + shift}, {0.5, 0.5, 0.5}, ground);
    }

    void applyMain(const Rgba& main) {
        const auto shade = [&](const Rgba& color) { return shadeOf(color, m_ground, main); };
        m_style.panel = shade(m_base.panel);
        if (m_base.team1.bg.alpha > 0)
            m_style.team1.bg = main;
        m_style.team1.accent = accentOn(m_base.team1, main);
        if (m_base.decoration != Decoration::splitBand) { // whose rows have a colour each
            if (m_base.team2.bg.alpha > 0)
                m_style.team2.bg = shade(m_base.team2.bg);
            m_style.team2.accent =
                accentOn(m_base.team2, m_base.team2.bg.alpha > 0 ? m_style.team2.bg : main);
        }
        if (m_base.decoration == Decoration::gradientPanel) {
            m_style.decorationColor = shade(m_base.decorationColor);
            m_style.shadow.color = withAlpha(main, m_base.shadow.color.alpha);
        }
        if (m_base.divider)
            m_style.divider = veilOn(*m_base.divider, main);
        for (RowColors* row : {&m_style.team1, &m_style.team2}) {
            if (isVeil(row->gameCell))
                row->gameCell = veilOn(row->gameCell, main);
        }
    }

    void applyPoints(const Rgba& points) {
        const auto tinted = [&](const Rgba& color) {
            return isGrey(color) ? color : withAlpha(points, color.alpha);
        };
        m_style.team1.gameCell = m_style.team2.gameCell = points;
        if (m_base.divider)
            m_style.divider = tinted(*m_style.divider);
        for (RowColors* row : {&m_style.team1, &m_style.team2}) {
            if (isVeil(row->accent))
                row->accent = tinted(row->accent);
        }
        if (m_base.decoration != Decoration::gradientPanel) {
            m_style.decorationColor = withAlpha(points, m_base.decorationColor.alpha);
            m_style.shadow.color = tinted(m_base.shadow.color);
        }
    }

    // A template's own texts stay where they can be read, in both rows or in none, and where nothing about
    // them has changed.
    void settleNames(const std::optional<BoardColor>& chosen) {
        struct Row {
            RowColors& colors;
            const RowColors& base;
        };
        const std::array rows{Row{m_style.team1, m_base.team1}, Row{m_style.team2, m_base.team2}};
        const auto isNew = [&](const Row& row) {
            return nameGrounds(m_style, row.colors) != nameGrounds(m_base, row.base);
        };
        const bool isHardToRead = std::ranges::any_of(rows, [&](const Row& row) {
            return isNew(row) &&
                   contrastOn(nameGrounds(m_style, row.colors), row.base.text) < readableContrast;
        });
        for (const Row& row : rows) {
            if (chosen)
                row.colors.text = rgbaOf(*chosen);
            else if (isNew(row) && isHardToRead)
                row.colors.text = blackOrWhite(nameGrounds(m_style, row.colors));
            constexpr double leastDotContrast = 2;
            if (isNew(row) && contrastOn(grounds(m_style, row.colors.bg), serveDotColor) < leastDotContrast)
                row.colors.serveDot = withAlpha(row.colors.text, 1);
        }
    }

    void settlePoints(RowColors& row, const RowColors& base, const std::optional<BoardColor>& chosen) const {
        if (hasSameRgb(base.gameText, base.bg))
            row.gameText = withAlpha(row.bg, 1);
        const std::vector<Rgba> cell = grounds(m_style, row.gameCell);
        const bool isNew = row.gameText != base.gameText || cell != grounds(m_base, base.gameCell);
        if (chosen)
            row.gameText = rgbaOf(*chosen);
        else if (isNew && contrastOn(cell, row.gameText) < readableContrast)
            row.gameText = blackOrWhite(cell);
    }

    const RowTemplateStyle& m_base;
    RowTemplateStyle m_style;
    Rgba m_ground; // of the template's first row
};

}

RowTemplateStyle styleOf(TemplateID id, const BoardStyle& board) {
    RowTemplateStyle style = Recoloring(rowTemplateStyle(id), board.colors).style();
    style.radius = std::clamp(board.corner.value_or(style.radius), 0.0, largestBoardCorner);
    style.cutsCells = board.corner && style.radius > 0;
    style.font = board.font.value_or(style.font);
    style.order = board.order.value_or(style.order);
    style.logo = board.logo.value_or(style.logo);
    return style;
}

BoardContrast contrastOf(const RowTemplateStyle& style) {
    const auto ofNames = [&](const RowColors& row) { return contrastOn(nameGrounds(style, row), row.text); };
    const auto ofPoints = [&](const RowColors& row) {
        return contrastOn(grounds(style, row.gameCell), row.gameText);
    };
    return {std::min(ofNames(style.team1), ofNames(style.team2)),
            std::min(ofPoints(style.team1), ofPoints(style.team2))};
}

}
