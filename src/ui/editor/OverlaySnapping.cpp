#include "ui/editor/OverlaySnapping.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pointloom::OverlaySnapping {

namespace {

struct Axis {
    double low; // of the picture
    double high;
    double margin;
};

struct AxisSnap {
    double shift = 0;
    std::optional<double> guide;
};

// `from` and `to` are the dragged board's ends on this axis.
AxisSnap snapAxis(const Axis& axis, double from, double to) {
    struct Candidate {
        double place; // of the board
        double line;  // of the picture
    };
    const std::array<Candidate, 3> candidates = {{
        {(from + to) / 2, (axis.low + axis.high) / 2},
        {from, axis.low + axis.margin},
        {to, axis.high - axis.margin},
    }};
    const auto distance = [](const Candidate& candidate) {
        return std::abs(candidate.line - candidate.place);
    };
    const auto& nearest = *std::ranges::min_element(candidates, {}, distance);
    if (distance(nearest) > reach)
        return {};
    return {nearest.line - nearest.place, nearest.line};
}

}

Snap snapped(const QRectF& videoRect, const QRectF& board, QSizeF translation) {
    const QRectF dragged = board.translated(translation.width(), translation.height());
    const double margin = edgeMargin * std::min(videoRect.width(), videoRect.height());
    const AxisSnap x =
        snapAxis({videoRect.left(), videoRect.right(), margin}, dragged.left(), dragged.right());
    const AxisSnap y =
        snapAxis({videoRect.top(), videoRect.bottom(), margin}, dragged.top(), dragged.bottom());
    return {translation + QSizeF(x.shift, y.shift), x.guide, y.guide};
}

}
