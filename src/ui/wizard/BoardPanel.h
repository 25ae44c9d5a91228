// The scoreboard of the match being entered, on a blurred court.
#pragma once

#include "ui/common/UiContext.h"

#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace pointloom {

class ScoreboardView;

/// The background of a scoreboard where there is no video: a blurred court of the sport. `size` in points,
/// with `devicePixelRatio` pixels to a point.
QPixmap courtGround(SportID sport, QSizeF size, double devicePixelRatio);

class BoardPanel final : public QWidget {
    Q_OBJECT

public:
    BoardPanel(const UiContext& context, QWidget* parent, double largestScale = 1.6);

    void showBoard(TemplateID templateID, const MatchConfig& match, const QImage& logo);

    /// The same with the session's template. Sides without a name are shown as "Team 1" and "Team 2".
    void showMatch(const MatchConfig& match, const QImage& logo);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    UiContext m_context;
    SportID m_sport = SportID::tennis;
    ScoreboardView* m_board;
    QPixmap m_ground; // drawn again when size or sport change
    SportID m_groundSport = SportID::tennis;
};

}
