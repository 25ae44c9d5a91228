#include "ui/editor/InitialScoreRow.h"

#include "model/ScoringEngine.h"
#include "ui/editor/EditorTexts.h"
#include "ui/editor/MarkerWords.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QHBoxLayout>

namespace pointloom {

InitialScoreRow::InitialScoreRow(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_title(Controls::label(Controls::TextRole::quiet, this))
    , m_score(Controls::label(Controls::TextRole::quiet, this))
    , m_edit(Controls::iconButton(QStringLiteral("edit"), this)) {
    m_edit->setIconSize(QSize(16, 16));
    m_edit->setObjectName(QStringLiteral("editInitialScore"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Space::m, 0, Space::s, 0);
    row->setSpacing(Space::s);
    row->addWidget(m_title);
    row->addStretch(1);
    row->addWidget(m_score);
    row->addWidget(m_edit);
    connect(m_edit, &QToolButton::clicked, this, &InitialScoreRow::editRequested);
    AppState& state = m_context.state;
    m_bindings.watchAll(
        [this] {
            const AppState& session = m_context.state;
            const auto& config = session.matchConfig.value();
            setEnabled(config.has_value());
            if (!config) {
                m_score->setText(m_context.text(L10nKey::noConfig));
                return;
            }
            const SportScoreState score =
                session.initialScore.value().value_or(ScoringEngine::getInitialScore(*config));
            const QStringList words{MarkerWords::sets(score), MarkerWords::game(score)};
            m_score->setText(words.join(QStringLiteral("  ")).trimmed());
        },
        state.initialScore, state.matchConfig, state.language);
    m_bindings.watch(state.language, [this] {
        m_title->setText(m_context.text(L10nKey::initialScore));
        m_edit->setToolTip(m_context.text(EditorTexts::editInitial));
        m_edit->setAccessibleName(m_context.text(EditorTexts::editInitial));
    });
}

}
