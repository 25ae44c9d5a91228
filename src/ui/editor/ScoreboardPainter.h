// Paints a scoreboard over the video, sharp at the pixels of the screen.
#pragma once

#include "ui/common/ScoreboardView.h"

#include <QRectF>

class QPainter;

namespace pointloom {

/// Draws as the export does, beyond the template's canvas too where a template glows, and keeps the image
/// until the scoreboard or its place changes.
class ScoreboardPainter {
public:
    void setScoreboard(std::optional<Scoreboard> scoreboard);
    bool isEmpty() const { return !m_scoreboard; }

    /// Template units; empty without a scoreboard.
    QSizeF canvasSize() const;
    QSizeF boardSize() const;

    /// The top left corner of the scoreboard is at `origin`, `scale` is points per template unit. Nothing is
    /// painted outside of `videoRect`.
    void paint(QPainter& painter, const QRectF& videoRect, QPointF origin, double scale);

private:
    struct Place {
        QRectF videoRect; // all in device pixels
        QPointF origin;
        double scale = 0;

        bool operator==(const Place&) const = default;
    };
    void draw(const Place& place);

    std::optional<Scoreboard> m_scoreboard;
    Place m_place; // of m_image
    QImage m_image;
    QPoint m_imageOrigin; // device pixels
};

}
