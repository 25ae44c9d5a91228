#include "ui/editor/EditorSidebar.h"

#include "crash/CrashReporter.h"
#include "l10n/Format.h"
#include "persistence/MarkerImport.h"
#include "ui/editor/EditorTexts.h"
#include "ui/editor/Heading.h"
#include "ui/editor/InitialScoreRow.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int narrowest = 260; // points
constexpr int highestBoard = 104;

void reportImport(const CSVParseError& error) {
    CrashReporter::shared().captureError(error.description(),
                                         {{QStringLiteral("step"), QStringLiteral("csv_import")}});
}

}

EditorSidebar::EditorSidebar(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_logo(context.state)
    , m_board(new BoardView(this))
    , m_markers(new MarkerListView(context, this))
    , m_messages(new MessageBar(context, this))
    , m_panel(new ScorePanel(context, this)) {
    setProperty("background", QStringLiteral("surface"));
    setAttribute(Qt::WA_StyledBackground);
    auto* initialScore = new InitialScoreRow(context, this);
    auto* listArea = new QVBoxLayout;
    listArea->setContentsMargins(Space::xs, 0, Space::xs, Space::xs);
    listArea->setSpacing(Space::xs);
    listArea->addWidget(m_messages);
    listArea->addWidget(m_markers, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeLiveScore());
    column->addWidget(initialScore);
    column->addSpacing(Space::xs);
    column->addWidget(Controls::separator(Qt::Horizontal, this));
    column->addWidget(makeListHead());
    column->addLayout(listArea, 1);
    column->addWidget(Controls::separator(Qt::Horizontal, this));
    column->addWidget(m_panel);
    column->addWidget(Controls::separator(Qt::Horizontal, this));
    column->addWidget(makeButtons());

    setTabOrder(initialScore->findChild<QToolButton*>(), m_import);
    setTabOrder(m_import, m_markers);
    setTabOrder(m_add, m_export);
    m_panel->chainTabs(m_markers, m_add);

    connect(m_markers, &MarkerListView::seekRequested, this, &EditorSidebar::seekRequested);
    connect(initialScore, &InitialScoreRow::editRequested, m_panel, &ScorePanel::editInitialScore);
    connect(&m_logo, &LogoWatch::changed, this, &EditorSidebar::showLiveScore);
    AppState& state = m_context.state;
    auto liveScore = state.bindableLiveScore();
    m_bindings.watch(liveScore, [this] { showLiveScore(); });
    m_bindings.watchAll([this] { showLiveScore(); }, state.selectedTemplate, state.matchConfig);
}

QSize EditorSidebar::minimumSizeHint() const {
    return {narrowest, QWidget::minimumSizeHint().height()};
}

QWidget* EditorSidebar::makeLiveScore() {
    auto* area = new QWidget(this);
    QLabel* title = makeHeading(area);
    m_board->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* column = new QVBoxLayout(area);
    column->setContentsMargins(Space::m, Space::m, Space::m, Space::xs);
    column->setSpacing(Space::xs);
    column->addWidget(title);
    column->addWidget(m_board);
    m_bindings.watch(m_context.state.language, [this, title] {
        title->setText(m_context.text(L10nKey::liveScore));
        m_board->setAccessibleName(m_context.text(L10nKey::liveScore));
    });
    return area;
}

QWidget* EditorSidebar::makeListHead() {
    auto* area = new QWidget(this);
    QLabel* title = makeHeading(area);
    m_import = Controls::iconButton(QStringLiteral("import"), area);
    m_import->setObjectName(QStringLiteral("importMarkers"));
    auto* row = new QHBoxLayout(area);
    row->setContentsMargins(Space::m, Space::s, Space::s, Space::xs);
    row->addWidget(title, 1);
    row->addWidget(m_import);
    connect(m_import, &QToolButton::clicked, this, &EditorSidebar::importMarkersFromFile);
    AppState& state = m_context.state;
    m_bindings.watchAll(
        [this, title] {
            const auto count = static_cast<qint64>(m_context.state.markers.value().size());
            title->setText(format(m_context.text(L10nKey::markersSection), count));
        },
        state.markers, state.language);
    m_bindings.watch(state.language, [this] {
        m_import->setToolTip(m_context.text(L10nKey::importMarkersCSVTooltip));
        m_import->setAccessibleName(m_context.text(L10nKey::importMarkersCSV));
    });
    return area;
}

QWidget* EditorSidebar::makeButtons() {
    auto* area = new QWidget(this);
    m_add = Controls::button(Controls::ButtonKind::normal, area);
    m_export = Controls::button(Controls::ButtonKind::primary, area);
    m_add->setIcon(Icons::icon(QStringLiteral("plus")));
    m_add->setObjectName(QStringLiteral("addMarker"));
    for (QPushButton* button : {m_add, m_export})
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the keys with the editor
    auto* row = new QHBoxLayout(area);
    row->setContentsMargins(Space::m, Space::s, Space::m, Space::s);
    row->setSpacing(Space::s);
    row->addWidget(m_add, 1);
    row->addWidget(m_export, 1);
    connect(m_add, &QPushButton::clicked, this, &EditorSidebar::addMarkerRequested);
    connect(m_export, &QPushButton::clicked, this, &EditorSidebar::exportRequested);
    m_bindings.watch(m_context.state.matchConfig,
                     [this] { m_add->setEnabled(m_context.state.matchConfig.value().has_value()); });
    m_bindings.watch(m_context.state.language, [this] {
        m_add->setText(m_context.text(EditorTexts::markerButton));
        m_add->setAccessibleName(m_context.text(L10nKey::addMarker));
        m_add->setToolTip(m_context.text(L10nKey::addMarkerTooltip));
        m_export->setText(m_context.text(EditorTexts::exportButton));
        m_export->setAccessibleName(m_context.text(L10nKey::exportVideo));
        m_export->setToolTip(m_context.text(L10nKey::exportVideo));
    });
    return area;
}

void EditorSidebar::importMarkersFromFile() {
    const auto path = m_context.dialogs.chooseFileToOpen(this, m_context.text(L10nKey::importMarkersCSV),
                                                         {QStringLiteral("CSV (*.csv *.CSV)")});
    if (!path)
        return;
    m_messages->hide();
    if (const auto error = importMarkers(*path, m_context.state, &m_context.undo, reportImport))
        m_messages->showMessage(*error);
}

void EditorSidebar::resizeEvent(QResizeEvent*) {
    fitBoard();
}

// No higher than the board is drawn at this width.
void EditorSidebar::fitBoard() {
    const QSize natural = m_board->sizeHint();
    const int available = width() - 2 * Space::m;
    const int height =
        natural.width() > available ? natural.height() * available / natural.width() : natural.height();
    m_board->setFixedHeight(std::min(height, highestBoard));
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
    fitBoard();
}

}
