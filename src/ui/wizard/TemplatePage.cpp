#include "ui/wizard/TemplatePage.h"

#include "render/ScoreboardImage.h"
#include "render/ScoreboardTemplate.h"
#include "ui/common/ScoreboardView.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/BoardPanel.h"

#include <algorithm>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

namespace pointloom {

namespace {

constexpr double largestCardScale = 2; // of the scoreboard's own size

// Names, flags, and enough sets for a tie-break.
MatchConfig exampleMatch(SportID sport) {
    MatchConfig match;
    match.sport = sport;
    match.team1 = {QStringLiteral("Dravnik"), {}, QStringLiteral("FR"), {}};
    match.team2 = {QStringLiteral("Solvane"), {}, QStringLiteral("SE"), {}};
    match.numberOfSets = 3;
    return match;
}

class TemplateCard final : public PickerCard {
public:
    TemplateCard(TemplateID templateID, SportID sport, QWidget* parent)
        : PickerCard(parent)
        , m_templateID(templateID)
        , m_sport(sport) {}

protected:
    double pictureShape() const override { return 0.46; }

    void paintPicture(QPainter& painter, const QRectF& area) override {
        if (m_pictureSize != area.size() || m_picture.devicePixelRatio() != devicePixelRatioF()) {
            m_picture = drawPicture(area.size());
            m_pictureSize = area.size();
        }
        painter.drawPixmap(area.topLeft(), m_picture);
    }

private:
    QPixmap drawPicture(QSizeF size) const {
        const MatchConfig match = exampleMatch(m_sport);
        const QSizeF natural =
            scoreboardImageSize(TemplateRegistry::templateFor(m_templateID), match.numberOfSets, match);
        const double scale = std::min({largestCardScale, (size.width() - Space::s) / natural.width(),
                                       (size.height() - Space::s) / natural.height()});
        QPixmap picture = courtGround(m_sport, size, devicePixelRatioF());
        QImage scoreboard = renderScoreboardImage(m_templateID, exampleScore(m_sport, match.numberOfSets),
                                                  match, {}, scale * devicePixelRatioF());
        scoreboard.setDevicePixelRatio(devicePixelRatioF());
        const QSizeF shown = scoreboard.deviceIndependentSize();
        QPainter(&picture).drawImage(
            QPointF((size.width() - shown.width()) / 2, (size.height() - shown.height()) / 2), scoreboard);
        return picture;
    }

    TemplateID m_templateID;
    SportID m_sport;
    QPixmap m_picture; // drawn again when the size changes
    QSizeF m_pictureSize;
};

}

TemplatePage::TemplatePage(const UiContext& context, WizardFlow& flow, QWidget* parent)
    : WizardPage(context, flow, L10nKey::chooseTemplate, L10nKey::chooseTemplateSubtitle, parent)
    , m_grid(new PickerGrid({.narrowest = 480, .fewest = 2, .most = 3}, this)) {
    m_scroll = addScrolled(m_grid);
    connect(m_grid, &PickerGrid::picked, this,
            [this](int index) { m_flow.pickTemplate(m_templates[static_cast<std::size_t>(index)]); });
    connect(m_grid, &PickerGrid::chosen, this, &WizardPage::continueRequested);
    connect(m_grid, &PickerGrid::currentMoved, m_scroll,
            [this](QWidget* card) { m_scroll->ensureWidgetVisible(card); });
    m_bindings.watch(m_context.state.selectedSport, [this] { showTemplates(); });
    m_bindings.watch(m_context.state.language, [this] { nameCards(); });
    m_bindings.watch(m_context.state.selectedTemplate, [this] {
        showPicked();
        Q_EMIT obstacleChanged();
    });
}

void TemplatePage::showTemplates() {
    m_templates = filteredTemplates(m_context.state.selectedSport);
    m_cards.clear();
    for (const TemplateID each : m_templates)
        m_cards.push_back(new TemplateCard(each, m_context.state.selectedSport, m_grid));
    nameCards();
    m_grid->setCards(m_cards);
    m_scroll->verticalScrollBar()->setValue(0);
    showPicked();
}

void TemplatePage::nameCards() {
    for (std::size_t i = 0; i < m_cards.size(); ++i)
        m_cards[i]->setTexts(displayName(m_templates[i]), m_context.text(description(m_templates[i])));
}

void TemplatePage::showPicked() {
    const auto& chosen = m_context.state.selectedTemplate.value();
    const auto found = chosen ? std::ranges::find(m_templates, *chosen) : m_templates.end();
    m_grid->setPicked(found == m_templates.end() ? -1 : static_cast<int>(found - m_templates.begin()));
}

QString TemplatePage::obstacle() const {
    return m_context.state.selectedTemplate.value() ? QString()
                                                    : m_context.text(L10nKey::selectTemplateToContinue);
}

bool TemplatePage::confirm() {
    return m_context.state.selectedTemplate.value().has_value();
}

void TemplatePage::takeFocus() {
    m_grid->takeFocus();
}

}
