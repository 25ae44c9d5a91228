// The scoreboard of the match being entered, over a court out of focus.
#pragma once

#include "ui/common/UiContext.h"

#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace pointloom {

class ScoreboardView;

class BoardPanel final : public QWidget {
    Q_OBJECT

public:
    BoardPanel(const UiContext& context, QWidget* parent);

    /// Sides without a name go by "Team 1" and "Team 2".
    void showMatch(const MatchConfig& match, const QImage& logo);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    UiContext m_context;
    SportID m_sport = SportID::tennis;
    ScoreboardView* m_board;
    QPixmap m_ground; // kept until size or sport change
    SportID m_groundSport = SportID::tennis;
};

}
