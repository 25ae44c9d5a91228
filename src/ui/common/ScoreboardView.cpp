#include "ui/common/ScoreboardView.h"

#include "render/ScoreboardImage.h"
#include "render/ScoreboardTemplate.h"

#include <algorithm>
#include <QMouseEvent>
#include <QPainter>

namespace pointloom {

ScoreboardView::ScoreboardView(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void ScoreboardView::setScoreboard(std::optional<Scoreboard> scoreboard) {
    m_scoreboard = std::move(scoreboard);
    updateGeometry();
    update();
}

void ScoreboardView::setLargestScale(double scale) {
    m_largestScale = scale;
    updateGeometry();
    update();
}

QSizeF ScoreboardView::naturalSize() const {
    if (!m_scoreboard)
        return {270, 97};
    return scoreboardImageSize(TemplateRegistry::templateFor(m_scoreboard->templateID),
                               static_cast<std::int64_t>(setsOf(m_scoreboard->score).size()),
                               m_scoreboard->config);
}

QSize ScoreboardView::sizeHint() const {
    return (naturalSize() * m_largestScale).toSize();
}

QSize ScoreboardView::minimumSizeHint() const {
    return (naturalSize() * std::min(0.5, m_largestScale)).toSize();
}

void ScoreboardView::paintEvent(QPaintEvent*) {
    if (!m_scoreboard)
        return;
    const QSizeF natural = naturalSize();
    const double scale = std::min({m_largestScale, width() / natural.width(), height() / natural.height()});
    QImage image = renderScoreboardImage(m_scoreboard->templateID, m_scoreboard->score, m_scoreboard->config,
                                         m_scoreboard->logo, scale * devicePixelRatioF());
    image.setDevicePixelRatio(devicePixelRatioF());
    const QSizeF shown = image.deviceIndependentSize();
    QPainter(this).drawImage(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), image);
}

// The sides are rows, or columns of the template that stacks the sets.
void ScoreboardView::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_scoreboard || event->button() != Qt::LeftButton || !rect().contains(event->pos()))
        return;
    const bool isFirst = m_scoreboard->templateID == TemplateID::stacked ? event->pos().x() < width() / 2
                                                                         : event->pos().y() < height() / 2;
    Q_EMIT sideClicked(isFirst ? Side::first : Side::second);
}

namespace {

// The points to which a set is usually played.
std::int64_t pointsOfASet(SportID sport) {
    switch (sport) {
    case SportID::volleyball:
        return 25;
    case SportID::badminton:
        return 21;
    default:
        return 11;
    }
}

}

SportScoreState exampleScore(SportID sport, std::int64_t numberOfSets) {
    const auto count = static_cast<std::size_t>(std::clamp<std::int64_t>(numberOfSets, 1, 7));
    if (usesTennisScoring(sport)) {
        const std::vector<SetScore> sets = {{6, 4, {}}, {6, 7, 5},  {3, 3, {}}, {0, 0, {}},
                                            {0, 0, {}}, {0, 0, {}}, {0, 0, {}}};
        const bool isOneSet = count == 1;
        return ScoreState{isOneSet
                              ? std::vector{SetScore{6, 7, 5}}
                              : std::vector(sets.begin(), sets.begin() + static_cast<std::ptrdiff_t>(count)),
                          {GamePoint::advantage, GamePoint::forty},
                          1};
    }
    // One set each; the third is being played.
    const std::int64_t points = pointsOfASet(sport);
    std::vector<SetScore> sets = {{points, points - 4, {}}, {points - 5, points, {}}};
    sets.resize(count);
    return PointScoreState{std::move(sets), {points * 3 / 5, points * 2 / 5}, 2};
}

}
