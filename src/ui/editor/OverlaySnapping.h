// Snapping of a dragged scoreboard to the picture's centre lines and to a margin at its edges.
#pragma once

#include <optional>
#include <QRectF>
#include <QSizeF>

namespace pointloom::OverlaySnapping {

/// Distance kept from the picture's edges, of its shorter side.
constexpr double edgeMargin = 0.04;

/// How near, in points, the scoreboard must come.
constexpr double reach = 7;

struct Snap {
    QSizeF translation;
    std::optional<double> verticalGuide;   // x of a line to show, points
    std::optional<double> horizontalGuide; // y

    bool operator==(const Snap&) const = default;
};

/// The drag by `translation` of `board` (where it stands without the drag), drawn to what is within reach.
/// Each axis goes by itself.
Snap snapped(const QRectF& videoRect, const QRectF& board, QSizeF translation);

}
