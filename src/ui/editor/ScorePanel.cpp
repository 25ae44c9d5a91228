#include "ui/editor/ScorePanel.h"

#include "model/ScoringEngine.h"
#include "session/PointEdits.h"
#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"
#include "ui/editor/EditorCommands.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

namespace pointloom {

ScorePanel::ScorePanel(const UiContext& context, QWidget* parent)
    : QScrollArea(parent)
    , m_context(context) {
    auto* content = new QWidget(this);
    m_title = new ElidedLabel(content);
    Controls::setRole(m_title, Controls::TextRole::strong);
    m_time = Controls::label(Controls::TextRole::quiet, content);
    m_swap = Controls::iconButton(QStringLiteral("swap"), content);
    m_remove = Controls::iconButton(QStringLiteral("trash"), content);
    m_point = Controls::label(Controls::TextRole::body, content);
    m_point->setObjectName(QStringLiteral("countedPoint"));
    m_hint = Controls::label(Controls::TextRole::quiet, content);
    m_label = new QLineEdit(content);
    m_editor = new ScoreEditor(context, content);
    for (QLabel* text : {m_point, m_hint})
        text->setWordWrap(true);
    constexpr int longestLabel = 200;
    m_label->setMaxLength(longestLabel);
    m_label->setObjectName(QStringLiteral("markerLabel"));

    auto* head = new QHBoxLayout;
    head->setSpacing(Space::xs);
    head->addWidget(m_title, 1);
    head->addWidget(m_time);
    head->addWidget(m_swap);
    head->addWidget(m_remove);
    auto* column = Controls::layout<QVBoxLayout>(content, {Space::m, Space::s, Space::m, Space::s}, Space::s);
    column->addLayout(head);
    column->addWidget(m_point);
    column->addWidget(m_hint);
    column->addWidget(m_label);
    column->addWidget(m_editor);
    column->addStretch();
    setWidget(content);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    setFocusPolicy(Qt::NoFocus);

    connect(m_editor, &ScoreEditor::scoreEdited, this, &ScorePanel::storeScore);
    connect(m_label, &QLineEdit::editingFinished, this, &ScorePanel::storeLabel);
    connect(m_label, &QLineEdit::returnPressed, m_label, &QWidget::clearFocus);
    const auto* forget = new QShortcut(Qt::Key_Escape, m_label, nullptr, nullptr, Qt::WidgetShortcut);
    connect(forget, &QShortcut::activated, this, [this] {
        const Marker* marker = EditorCommands::selectedMarker(m_context.state);
        m_label->setText(marker ? marker->label.value_or(QString()) : QString());
        m_label->clearFocus();
    });
    connect(m_swap, &QToolButton::clicked, this, [this] { storeScore(withServeSwapped(m_editor->score())); });
    connect(m_remove, &QToolButton::clicked, this, &ScorePanel::removeShown);
    AppState& state = m_context.state;
    m_bindings.watch(state.selectedMarkerID, [this] {
        if (m_context.state.selectedMarkerID.value())
            m_isInitial = false;
        refresh();
    });
    m_bindings.watchAll([this] { refresh(); }, state.markers, state.initialScore, state.matchConfig,
                        state.rules);
    m_bindings.watchAll([this] { showTexts(); }, state.language, context.keys.chosen());
}

void ScorePanel::editInitialScore() {
    m_isInitial = true;
    m_context.state.selectedMarkerID = std::nullopt;
    refresh();
}

void ScorePanel::chainTabs(QWidget* predecessor, QWidget* successor) {
    QWidget* chain[] = {predecessor, m_swap, m_remove, m_label, successor};
    for (std::size_t link = 1; link < std::size(chain); ++link)
        setTabOrder(chain[link - 1], chain[link]);
    m_editor->setTabPredecessor(m_label);
}

void ScorePanel::refresh() {
    if (m_isInitial && m_context.state.matchConfig.value())
        showInitialScore();
    else if (const Marker* marker = EditorCommands::selectedMarker(m_context.state))
        showMarker(*marker);
    else
        showNothing();
    updateGeometry();
}

void ScorePanel::showMarker(const Marker& marker) {
    m_title->setFullText(m_context.text(L10nKey::editMarker));
    m_time->setText(shortTime(marker.startTime, true));
    Controls::setName(m_remove, m_context.text(L10nKey::deleteMarker));
    // A text that is being typed is kept.
    if (!m_label->hasFocus() || m_shown != marker.id)
        m_label->setText(marker.label.value_or(QString()));
    m_shown = marker.id;
    m_editor->setScore(marker.score);
    showPoint(marker);
    for (QWidget* part : std::initializer_list<QWidget*>{m_swap, m_remove, m_label, m_editor})
        part->show();
    m_hint->hide();
}

void ScorePanel::showPoint(const Marker& marker) {
    const auto match = PointEdits::countedMatch(m_context.state);
    QString text;
    if (match) {
        const auto found = std::ranges::find(match->markers, marker.id, &Marker::id);
        text = countText(m_context, *match, static_cast<std::size_t>(found - match->markers.begin()));
    }
    m_point->setText(text);
    m_point->setVisible(!text.isEmpty());
}

void ScorePanel::showInitialScore() {
    const AppState& state = m_context.state;
    m_title->setFullText(m_context.text(L10nKey::initialScore));
    m_time->clear();
    Controls::setName(m_remove, m_context.text(L10nKey::editorClearInitial));
    m_editor->setScore(
        state.initialScore.value().value_or(ScoringEngine::getInitialScore(*state.matchConfig.value())));
    m_swap->show();
    m_remove->setVisible(state.initialScore.value().has_value());
    m_editor->show();
    m_label->hide();
    m_point->hide();
    m_hint->hide();
}

void ScorePanel::showNothing() {
    const bool hasMarkers = !m_context.state.markers.value().empty();
    m_title->setFullText(m_context.text(L10nKey::editMarker));
    m_time->clear();
    m_hint->setText(
        m_context.text(hasMarkers ? L10nKey::selectMarkerToEdit : L10nKey::addMarkerToDefineScore));
    for (QWidget* part : std::initializer_list<QWidget*>{m_swap, m_remove, m_label, m_point, m_editor})
        part->hide();
    m_hint->show();
}

void ScorePanel::storeScore(const SportScoreState& score) {
    if (m_isInitial)
        PointEdits::typeScore(m_context.state, std::nullopt, score, &m_context.undo);
    else if (const Marker* marker = EditorCommands::selectedMarker(m_context.state))
        PointEdits::typeScore(m_context.state, marker->id, score, &m_context.undo);
}

void ScorePanel::storeLabel() {
    const Marker* marker = EditorCommands::selectedMarker(m_context.state);
    if (!marker || m_isInitial)
        return;
    const QString text = m_label->text().trimmed();
    const auto label = text.isEmpty() ? std::nullopt : std::optional(text);
    if (label != marker->label)
        m_context.state.updateMarkerLabel(QUuid(marker->id), label, &m_context.undo);
}

void ScorePanel::removeShown() {
    if (m_isInitial)
        PointEdits::typeScore(m_context.state, std::nullopt, std::nullopt, &m_context.undo);
    else if (const Marker* marker = EditorCommands::selectedMarker(m_context.state))
        PointEdits::removeMarker(m_context.state, QUuid(marker->id), &m_context.undo);
}

void ScorePanel::showTexts() {
    m_swap->setAccessibleName(m_context.text(L10nKey::editorSwapServe));
    m_swap->setToolTip(m_context.textWithKey(L10nKey::editorSwapServe, Command::swapServe));
    m_label->setPlaceholderText(m_context.text(L10nKey::editorLabelHint));
    m_label->setAccessibleName(m_context.text(L10nKey::markerLabel));
    refresh();
}

// In a narrow panel the time is left out: the list has it too.
void ScorePanel::resizeEvent(QResizeEvent* event) {
    constexpr int roomForTime = 290; // points
    m_time->setVisible(width() >= roomForTime);
    QScrollArea::resizeEvent(event);
}

// The height of its content: the list above gets the rest.
QSize ScorePanel::sizeHint() const {
    const QSize content = widget()->sizeHint();
    return {content.width(), content.height()};
}

}
