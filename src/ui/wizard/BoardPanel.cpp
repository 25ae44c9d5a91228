#include "ui/wizard/BoardPanel.h"

#include "ui/common/ScoreboardView.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/CourtGround.h"

#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace pointloom {

BoardPanel::BoardPanel(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_board(new ScoreboardView(this)) {
    constexpr double largestScale = 1.6;
    m_board->setLargestScale(largestScale);
    m_board->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Space::s, Space::xs, Space::s, Space::xs);
    column->addWidget(m_board);
}

void BoardPanel::showMatch(const MatchConfig& match, const QImage& logo) {
    const auto templateID = m_context.state.selectedTemplate.value();
    m_sport = match.sport;
    update();
    if (!templateID) {
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
    m_board->setScoreboard(
        Scoreboard{*templateID, exampleScore(match.sport, match.numberOfSets), named, logo});
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
