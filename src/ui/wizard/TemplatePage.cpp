#include "ui/wizard/TemplatePage.h"

#include "ui/wizard/PageColumn.h"
#include "ui/wizard/PageHeader.h"
#include "ui/wizard/TemplateCard.h"

#include <algorithm>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace pointloom {

TemplatePage::TemplatePage(const UiContext& context, WizardFlow& flow, QWidget* parent)
    : WizardPage(parent)
    , m_context(context)
    , m_flow(flow)
    , m_grid(new PickerGrid({.narrowest = 480, .fewest = 2, .most = 3}, this)) {
    QVBoxLayout* column = pageColumn(this);
    column->addWidget(
        new PageHeader(context, L10nKey::chooseTemplate, L10nKey::chooseTemplateSubtitle, this));
    m_scroll = scrollAround(m_grid, this);
    column->addWidget(m_scroll, 1);

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
