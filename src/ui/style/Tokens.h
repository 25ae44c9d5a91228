// The names that every colour and distance of the screens goes by. No colour literal stands anywhere else.
#pragma once

#include <QColor>

namespace pointloom {

struct ColorTokens {
    QColor window;
    QColor surface; // cards, sidebar
    QColor raised;  // hover, fields
    QColor line;
    QColor text;
    QColor quietText;
    QColor accent;   // one: the ball
    QColor onAccent; // text on the accent
    QColor danger;
    QColor warning;
    QColor success;
};

const ColorTokens& darkTokens();
const ColorTokens& lightTokens();

/// The ground that scoreboards are shown on before there is a video: a court, the same in every theme.
struct CourtTokens {
    QColor floor;
    QColor surround;
    QColor line;
};

namespace Court {
const CourtTokens& clay();
const CourtTokens& hard();
const CourtTokens& green();
const CourtTokens& table();
const CourtTokens& wood();
const CourtTokens& parquet();
const CourtTokens& plum();
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

}
