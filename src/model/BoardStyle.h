// A board: the colours and choices by which a user's own scoreboard differs from the template it was made
// from.
#pragma once

#include "json/JsonFields.h"

#include <cstdint>
#include <optional>
#include <QString>
#include <tuple>

namespace pointloom {

/// "#RRGGBB" or "#RRGGBBAA" in JSON.
struct BoardColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    bool operator==(const BoardColor&) const = default;

    /// In capitals; the alpha only where it is not 255.
    QString text() const;

    /// The colour of such a text, digits in any case; empty for any other.
    static std::optional<BoardColor> parse(const QString& text);
};

template <>
struct json::Codec<BoardColor> {
    static OrderedValue encode(BoardColor color);
    static BoardColor decode(const Value& value, const Path& path);
};

/// An absent colour follows the others as in the template.
struct BoardColors {
    std::optional<BoardColor> main{};       // ground of the rows and the panel
    std::optional<BoardColor> points{};     // cell of the points, bands and borders
    std::optional<BoardColor> row2{};       // ground of the second row
    std::optional<BoardColor> sets{};       // cells of the first, third, fifth set
    std::optional<BoardColor> text{};       // names and sets
    std::optional<BoardColor> pointsText{}; // digits in the cell of the points

    bool operator==(const BoardColors&) const = default;

    static constexpr auto jsonFields() {
        using Self = BoardColors;
        return std::tuple{json::field("main", &Self::main), json::field("points", &Self::points),
                          json::field("row2", &Self::row2), json::field("sets", &Self::sets),
                          json::field("text", &Self::text), json::field("pointsText", &Self::pointsText)};
    }
};

POINTLOOM_NAMED_ENUM(BoardFont, sans, narrow, geometric, serif);
POINTLOOM_NAMED_ENUM(BoardOrder, setsFirst, pointsFirst); // after the names
POINTLOOM_NAMED_ENUM(BoardLogo, left, right, none);       // beside the names

/// What is absent is as in the template.
struct BoardStyle {
    QString name;
    BoardColors colors{};
    std::optional<BoardFont> font{};
    std::optional<double> corner{}; // radius in template units; drawn within 0..19
    std::optional<BoardOrder> order{};
    std::optional<BoardLogo> logo{};

    bool operator==(const BoardStyle&) const = default;

    static constexpr auto jsonFields() {
        using Self = BoardStyle;
        return std::tuple{json::field("name", &Self::name),   json::field("colors", &Self::colors),
                          json::field("font", &Self::font),   json::field("corner", &Self::corner),
                          json::field("order", &Self::order), json::field("logo", &Self::logo)};
    }
};

constexpr double largestBoardCorner = 19; // half of a row

/// The name on one line, without spaces around it, at most 60 characters long.
QString boardName(const QString& name);

}
