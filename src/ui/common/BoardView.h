// A scoreboard drawn live by its template, sharp at every scale.
#pragma once

#include "model/MatchConfig.h"
#include "model/ScoreState.h"
#include "render/TemplateID.h"

#include <QImage>
#include <QWidget>

namespace pointloom {

/// Fits the board into the widget, never larger than `setLargestScale` times its own size.
class BoardView : public QWidget {
    Q_OBJECT

public:
    explicit BoardView(QWidget* parent = nullptr);

    void setBoard(TemplateID templateID, const SportScoreState& score, const MatchConfig& config,
                  const QImage& logo = {});
    void clear();
    void setLargestScale(double scale);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Board {
        TemplateID templateID;
        SportScoreState score;
        MatchConfig config;
        QImage logo;
    };
    QSizeF naturalSize() const;

    std::optional<Board> m_board;
    double m_largestScale = 1;
};

/// A score that shows every feature of a template: a tie-break, an advantage, the serve.
SportScoreState tellingScore(SportID sport, std::int64_t numberOfSets);

}
