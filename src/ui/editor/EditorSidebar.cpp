#include "ui/editor/EditorSidebar.h"

#include "ui/editor/EditorCommands.h"
#include "ui/editor/EditorTexts.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Tokens.h"

#include <QVBoxLayout>

namespace pointloom {

EditorSidebar::EditorSidebar(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_logo(context.state)
    , m_board(new BoardView(this)) {
    setProperty("room", QStringLiteral("surface"));
    setAttribute(Qt::WA_StyledBackground);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_board);
    column->addStretch();
    column->addWidget(makeButtons());

    AppState& state = m_context.state;
    connect(&m_logo, &LogoWatch::changed, this, &EditorSidebar::showLiveScore);
    auto liveScore = state.bindableLiveScore();
    m_bindings.watch(liveScore, [this] { showLiveScore(); });
    m_bindings.watchAll([this] { showLiveScore(); }, state.selectedTemplate, state.matchConfig);
}

QWidget* EditorSidebar::makeButtons() {
    auto* area = new QWidget(this);
    auto* add = Controls::button(Controls::ButtonKind::normal, area);
    auto* exportButton = Controls::button(Controls::ButtonKind::primary, area);
    add->setIcon(Icons::icon(QStringLiteral("plus")));
    auto* row = new QHBoxLayout(area);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Space::s);
    row->addWidget(add, 1);
    row->addWidget(exportButton, 1);
    connect(add, &QPushButton::clicked, this, [this] { EditorCommands::addMarkerAtPlayhead(m_context); });
    connect(exportButton, &QPushButton::clicked, this, &EditorSidebar::exportRequested);
    m_bindings.watch(m_context.state.language, [this, add, exportButton] {
        add->setText(m_context.text(EditorTexts::markerButton));
        add->setToolTip(m_context.text(L10nKey::addMarkerTooltip));
        exportButton->setText(m_context.text(EditorTexts::exportButton));
        exportButton->setToolTip(m_context.text(L10nKey::exportVideo));
    });
    return area;
}

void EditorSidebar::showLiveScore() {
    const AppState& state = m_context.state;
    const auto& templateID = state.selectedTemplate.value();
    const auto& config = state.matchConfig.value();
    const auto& score = state.liveScore();
    if (templateID && config && score)
        m_board->setBoard(*templateID, *score, *config, m_logo.image());
    else
        m_board->clear();
}

}
