// The scoreboard of the moment as a picture over the video, sharp at the pixels of the screen.
#pragma once

#include "model/MatchConfig.h"
#include "model/ScoreState.h"
#include "render/TemplateID.h"

#include <optional>
#include <QImage>
#include <QRectF>

class QPainter;

namespace pointloom {

/// Draws as the export does, beyond the template's canvas too where a template glows, and keeps the picture
/// until something about it changes.
class ScoreboardImageView {
public:
    struct Board {
        TemplateID templateID;
        SportScoreState score;
        MatchConfig config;
        QImage logo;

        bool operator==(const Board&) const = default;
    };

    void setBoard(std::optional<Board> board);
    bool isEmpty() const { return !m_board; }

    /// Template units; empty without a board.
    QSizeF canvasSize() const;
    QSizeF boardSize() const;

    /// With the board's own top left corner at `origin`, `scale` points to a template unit, nothing outside
    /// of `videoRect`.
    void paint(QPainter& painter, const QRectF& videoRect, QPointF origin, double scale);

private:
    struct Place {
        QRectF videoRect; // all in device pixels
        QPointF origin;
        double scale = 0;

        bool operator==(const Place&) const = default;
    };
    void draw(const Place& place);

    std::optional<Board> m_board;
    Place m_place; // that m_picture was drawn for
    QImage m_picture;
    QPoint m_pictureOrigin; // device pixels
};

}
