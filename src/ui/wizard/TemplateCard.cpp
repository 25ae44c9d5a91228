#include "ui/wizard/TemplateCard.h"

#include "render/ScoreboardImage.h"
#include "render/ScoreboardTemplate.h"
#include "ui/common/ScoreboardView.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/CourtGround.h"

#include <algorithm>
#include <QPainter>

namespace pointloom {

namespace {

constexpr double largestScale = 2; // of the scoreboard's own size

// Names, flags, and enough sets for a tie-break.
MatchConfig exampleMatch(SportID sport) {
    MatchConfig match;
    match.sport = sport;
    match.team1 = {QStringLiteral("Dravnik"), {}, QStringLiteral("FR"), {}};
    match.team2 = {QStringLiteral("Solvane"), {}, QStringLiteral("SE"), {}};
    match.numberOfSets = 3;
    return match;
}

}

TemplateCard::TemplateCard(TemplateID templateID, SportID sport, QWidget* parent)
    : PickerCard(parent)
    , m_templateID(templateID)
    , m_sport(sport) {}

double TemplateCard::pictureShape() const {
    return 0.46;
}

void TemplateCard::paintPicture(QPainter& painter, const QRectF& area) {
    if (m_pictureSize != area.size() || m_picture.devicePixelRatio() != devicePixelRatioF()) {
        m_picture = drawPicture(area.size());
        m_pictureSize = area.size();
    }
    painter.drawPixmap(area.topLeft(), m_picture);
}

QPixmap TemplateCard::drawPicture(QSizeF size) const {
    const MatchConfig match = exampleMatch(m_sport);
    const QSizeF natural =
        scoreboardImageSize(TemplateRegistry::templateFor(m_templateID), match.numberOfSets, match);
    const double scale = std::min({largestScale, (size.width() - Space::s) / natural.width(),
                                   (size.height() - Space::s) / natural.height()});
    QPixmap picture = courtGround(m_sport, size, devicePixelRatioF());
    QImage board = renderScoreboardImage(m_templateID, exampleScore(m_sport, match.numberOfSets), match, {},
                                         scale * devicePixelRatioF());
    board.setDevicePixelRatio(devicePixelRatioF());
    const QSizeF shown = board.deviceIndependentSize();
    QPainter(&picture).drawImage(
        QPointF((size.width() - shown.width()) / 2, (size.height() - shown.height()) / 2), board);
    return picture;
}

}
