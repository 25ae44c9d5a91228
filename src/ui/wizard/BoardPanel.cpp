#include "ui/wizard/BoardPanel.h"

#include "ui/common/ScoreboardView.h"
#include "ui/style/Tokens.h"

#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace pointloom {

namespace {

const CourtTokens& courtOf(SportID sport) {
    switch (sport) {
    case SportID::tennis:
        return Court::clay;
    case SportID::padel:
        return Court::hard;
    case SportID::volleyball:
        return Court::parquet;
    case SportID::badminton:
        return Court::green;
    case SportID::tableTennis:
        return Court::table;
    case SportID::squash:
        return Court::wood;
    case SportID::pickleball:
        return Court::plum;
    }
    return Court::hard;
}

// A court seen from behind the baseline, in so few pixels that scaling blurs it.
QImage smallCourt(const CourtTokens& court) {
    QImage image(48, 24, QImage::Format_RGB32);
    image.fill(court.surround);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPolygonF floor{{QPointF(13, 3), QPointF(35, 3), QPointF(50, 26), QPointF(-2, 26)}};
    QColor line = court.line;
    line.setAlphaF(0.5F);
    painter.setBrush(court.floor);
    painter.setPen(QPen(line, 0.9));
    painter.drawPolygon(floor);
    painter.drawLine(QPointF(9, 9), QPointF(39, 9));
    painter.drawLine(QPointF(24, 9), QPointF(24, 20));
    painter.drawLine(QPointF(2, 20), QPointF(46, 20));
    return image;
}

}

QPixmap courtGround(SportID sport, QSizeF size, double devicePixelRatio) {
    const QSize pixels = (size * devicePixelRatio).toSize().expandedTo({1, 1});
    QImage ground = smallCourt(courtOf(sport));
    while (ground.width() < pixels.width()) // in small steps, so that no squares are visible
        ground = ground.scaled(ground.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    ground = ground.scaled(pixels, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    ground = ground.copy((ground.width() - pixels.width()) / 2, (ground.height() - pixels.height()) / 2,
                         pixels.width(), pixels.height());
    QPixmap result = QPixmap::fromImage(std::move(ground));
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

BoardPanel::BoardPanel(const UiContext& context, QWidget* parent, double largestScale)
    : QWidget(parent)
    , m_context(context)
    , m_board(new ScoreboardView(this)) {
    m_board->setLargestScale(largestScale);
    m_board->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Space::s, Space::xs, Space::s, Space::xs);
    column->addWidget(m_board);
}

void BoardPanel::showBoard(TemplateID templateID, const MatchConfig& match, const QImage& logo) {
    m_sport = match.sport;
    update();
    m_board->setScoreboard(
        Scoreboard{templateID, exampleScore(match.sport, match.numberOfSets), match, logo});
}

void BoardPanel::showMatch(const MatchConfig& match, const QImage& logo) {
    const auto templateID = m_context.state.selectedTemplate.value();
    if (!templateID) {
        m_sport = match.sport;
        update();
        m_board->setScoreboard(std::nullopt);
        return;
    }
    MatchConfig named = match;
    const auto name = [this](QString& player, L10nKey replacement) {
        if (player.trimmed().isEmpty())
            player = m_context.text(replacement);
    };
    name(named.team1.player1, L10nKey::team1);
    name(named.team2.player1, L10nKey::team2);
    showBoard(*templateID, named, logo);
}

void BoardPanel::paintEvent(QPaintEvent*) {
    const double ratio = devicePixelRatioF();
    if (m_ground.isNull() || m_groundSport != m_sport || m_ground.devicePixelRatio() != ratio ||
        m_ground.size() != (QSizeF(size()) * ratio).toSize()) {
        m_ground = courtGround(m_sport, size(), ratio);
        m_groundSport = m_sport;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(rect(), Radius::card, Radius::card);
    painter.setClipPath(outline);
    painter.drawPixmap(0, 0, m_ground);
}

}
