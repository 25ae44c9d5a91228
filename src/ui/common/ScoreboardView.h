// A scoreboard drawn live by its template, sharp at every scale.
#pragma once

#include "model/MatchConfig.h"
#include "model/ScoreState.h"
#include "render/TemplateID.h"

#include <optional>
#include <QImage>
#include <QWidget>

namespace pointloom {

/// The content of a scoreboard, and the template that draws it.
struct Scoreboard {
    TemplateID templateID;
    SportScoreState score;
    MatchConfig config;
    QImage logo; // may be null

    bool operator==(const Scoreboard&) const = default;
};

/// Fits the scoreboard into the widget, never larger than `setLargestScale` times its own size.
class ScoreboardView : public QWidget {
    Q_OBJECT

public:
    explicit ScoreboardView(QWidget* parent = nullptr);

    /// Empty without one.
    void setScoreboard(std::optional<Scoreboard> scoreboard);
    void setLargestScale(double scale);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void sideClicked(Side side);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent*) override {} // accepted
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QSizeF naturalSize() const;

    std::optional<Scoreboard> m_scoreboard;
    double m_largestScale = 1;
};

/// A score that shows every feature of a template: a tie-break, an advantage, the serve.
SportScoreState exampleScore(SportID sport, std::int64_t numberOfSets);

}
