// Colours, distances and sizes of text by name. No colour literal is anywhere else.
#pragma once

#include <QColor>
#include <QFont>

namespace pointloom {

/// Text in any colour has a contrast of at least 4.5 to 1 on any of the backgrounds, lines among them.
struct ColorTokens {
    QColor window;
    QColor surface; // cards, sidebar
    QColor raised;  // hover, fields
    QColor line;
    QColor text;
    QColor quietText;
    QColor accent;      // one: the ball
    QColor accentHover; // the same under the pointer
    QColor onAccent;    // text on both
    QColor danger;
    QColor warning;
    QColor success;
};

inline constexpr ColorTokens darkTokens{
    .window = QColor(0x14, 0x16, 0x1A),
    .surface = QColor(0x1C, 0x1F, 0x25),
    .raised = QColor(0x25, 0x29, 0x32),
    .line = QColor(0x32, 0x38, 0x44),
    .text = QColor(0xE9, 0xEC, 0xF1),
    .quietText = QColor(0xA3, 0xAB, 0xBA),
    .accent = QColor(0xC8, 0xF0, 0x31),
    .accentHover = QColor(0xD4, 0xF5, 0x5A),
    .onAccent = QColor(0x14, 0x16, 0x1A),
    .danger = QColor(0xFF, 0x78, 0x78),
    .warning = QColor(0xF2, 0xB2, 0x3E),
    .success = QColor(0x4C, 0xC3, 0x8A),
};

inline constexpr ColorTokens lightTokens{
    .window = QColor(0xF4, 0xF5, 0xF7),
    .surface = QColor(0xFF, 0xFF, 0xFF),
    .raised = QColor(0xEC, 0xEE, 0xF2),
    .line = QColor(0xD5, 0xD9, 0xE0),
    .text = QColor(0x16, 0x18, 0x1D),
    .quietText = QColor(0x55, 0x5C, 0x6A),
    .accent = QColor(0x49, 0x66, 0x00),
    .accentHover = QColor(0x3B, 0x53, 0x00),
    .onAccent = QColor(0xFF, 0xFF, 0xFF),
    .danger = QColor(0xB2, 0x28, 0x28),
    .warning = QColor(0x80, 0x55, 0x00),
    .success = QColor(0x1A, 0x69, 0x41),
};

/// Backgrounds of scoreboards before there is a video: a court, the same in every theme.
struct CourtTokens {
    QColor floor;
    QColor surround;
    QColor line;
};

namespace Court {
inline constexpr CourtTokens clay{.floor = QColor(0xB5, 0x62, 0x3A),
                                  .surround = QColor(0x8F, 0x45, 0x26),
                                  .line = QColor(0xF3, 0xE4, 0xD8)};
inline constexpr CourtTokens hard{.floor = QColor(0x2F, 0x6F, 0xB5),
                                  .surround = QColor(0x2B, 0x8A, 0x63),
                                  .line = QColor(0xFF, 0xFF, 0xFF)};
inline constexpr CourtTokens green{.floor = QColor(0x1F, 0x94, 0x68),
                                   .surround = QColor(0x14, 0x69, 0x4A),
                                   .line = QColor(0xFF, 0xFF, 0xFF)};
inline constexpr CourtTokens table{.floor = QColor(0x2A, 0x62, 0xB0),
                                   .surround = QColor(0x1B, 0x2F, 0x55),
                                   .line = QColor(0xFF, 0xFF, 0xFF)};
inline constexpr CourtTokens wood{.floor = QColor(0xD9, 0xA8, 0x66),
                                  .surround = QColor(0xB9, 0x87, 0x47),
                                  .line = QColor(0xC8, 0x38, 0x2F)};
inline constexpr CourtTokens parquet{.floor = QColor(0xE0, 0x7B, 0x39),
                                     .surround = QColor(0xB9, 0x5A, 0x22),
                                     .line = QColor(0xFF, 0xFF, 0xFF)};
inline constexpr CourtTokens plum{.floor = QColor(0x5A, 0x55, 0xB8),
                                  .surround = QColor(0x3A, 0xA6, 0xA0),
                                  .line = QColor(0xFF, 0xFF, 0xFF)};
}

/// Distances in points.
namespace Space {
constexpr int xs = 4;
constexpr int s = 8;
constexpr int m = 12;
constexpr int l = 16;
constexpr int xl = 24;
constexpr int xxl = 32;
}

namespace Radius {
constexpr int field = 6;
constexpr int card = 10;
}

/// Sizes of text, relative to the desktop's interface font.
namespace TypeScale {
constexpr double quiet = 0.85;
constexpr double body = 1.0;
constexpr double section = 1.25;
constexpr double title = 1.7;
}

/// Fonts of text that controls paint themselves, made from their own font.
inline QFont strongFont(QFont font) {
    font.setWeight(QFont::DemiBold);
    return font;
}

/// Smaller; a font that is sized in pixels stays as it is.
inline QFont quietFont(QFont font) {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * TypeScale::quiet);
    return font;
}

}
