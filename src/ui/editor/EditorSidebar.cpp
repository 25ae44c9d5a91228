#include "ui/editor/EditorSidebar.h"

#include "crash/CrashReporter.h"
#include "l10n/Format.h"
#include "model/ScoringEngine.h"
#include "ui/common/MarkerText.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int narrowest = 260; // points
constexpr int largestScoreboardHeight = 104;

void reportImport(const CSVParseError& error) {
    CrashReporter::shared().captureError(error.description(),
                                         {{QStringLiteral("step"), QStringLiteral("csv_import")}});
}

}

EditorSidebar::EditorSidebar(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_scoreboard(context.state)
    , m_scoreboardView(new ScoreboardView(this))
    , m_markers(new MarkerListView(context, this))
    , m_messages(new MessageBar(context, this))
    , m_count(new CountBar(context, this))
    , m_panel(new ScorePanel(context, this)) {
    setProperty("background", QStringLiteral("surface"));
    setAttribute(Qt::WA_StyledBackground);
    auto* listArea = new QVBoxLayout;
    listArea->setContentsMargins(Space::xs, 0, Space::xs, Space::xs);
    listArea->setSpacing(Space::xs);
    listArea->addWidget(m_messages);
    listArea->addWidget(m_count);
    listArea->addWidget(m_markers, 1);
    auto* column = Controls::layout<QVBoxLayout>(this, {0, 0, 0, 0}, 0);
    column->addWidget(makeLiveScore());
    column->addWidget(makeInitialScore());
    column->addSpacing(Space::xs);
    column->addWidget(Controls::separator(Qt::Horizontal, this));
    column->addWidget(makeListHead());
    column->addLayout(listArea, 1);
    column->addWidget(Controls::separator(Qt::Horizontal, this));
    column->addWidget(m_panel);
    column->addWidget(Controls::separator(Qt::Horizontal, this));
    column->addWidget(makeButtons());

    setTabOrder(m_back, m_editMatch);
    setTabOrder(m_editMatch, m_editInitial);
    setTabOrder(m_editInitial, m_import);
    setTabOrder(m_import, m_markers);
    setTabOrder(m_add, m_export);
    m_panel->chainTabs(m_markers, m_add);

    connect(m_markers, &MarkerListView::seekRequested, this, &EditorSidebar::seekRequested);
    connect(m_markers, &MarkerListView::addMarkerRequested, this, &EditorSidebar::addMarkerRequested);
    connect(m_count, &CountBar::seekRequested, this, &EditorSidebar::seekRequested);
    connect(m_messages, &MessageBar::firstActionChosen, this, [this] {
        shiftMarkers(m_imported.firstPoint, m_context.state.currentTime, m_context.state, &m_context.undo);
        m_imported.afterEnd.clear(); // of the times before
        showImport();
    });
    connect(m_messages, &MessageBar::secondActionChosen, this, &EditorSidebar::takeNames);
    connect(m_editInitial, &QToolButton::clicked, m_panel, &ScorePanel::editInitialScore);
    connect(&m_scoreboard, &LiveScoreboard::changed, this, &EditorSidebar::showLiveScore);
    m_bindings.watch(m_context.state.markers, [this] { forgetImport(); });
    showLiveScore();
}

QSize EditorSidebar::minimumSizeHint() const {
    return {narrowest, QWidget::minimumSizeHint().height()};
}

QWidget* EditorSidebar::makeLiveScore() {
    auto* area = new QWidget(this);
    QLabel* title = Controls::label(Controls::TextRole::strong, area);
    m_scoreboardView->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_back = Controls::iconButton(QStringLiteral("chevron-left"), area);
    m_back->setObjectName(QStringLiteral("backToVideo"));
    m_editMatch = Controls::iconButton(QStringLiteral("edit"), area);
    m_editMatch->setIconSize(QSize(16, 16));
    m_editMatch->setObjectName(QStringLiteral("editMatch"));
    auto* head = new QHBoxLayout;
    head->setSpacing(Space::xs);
    head->addWidget(m_back);
    head->addWidget(title, 1);
    head->addWidget(m_editMatch);
    auto* column = Controls::layout<QVBoxLayout>(area, {Space::s, Space::s, Space::s, Space::xs}, Space::xs);
    column->addLayout(head);
    column->addWidget(m_scoreboardView);
    connect(m_back, &QToolButton::clicked, this, [this] { Q_EMIT screenRequested(Screen::video); });
    connect(m_editMatch, &QToolButton::clicked, this, [this] { Q_EMIT screenRequested(Screen::match); });
    connect(m_scoreboardView, &ScoreboardView::sideClicked, this, &EditorSidebar::nameRequested);
    m_scoreboardView->setCursor(Qt::PointingHandCursor);
    m_bindings.watch(m_context.state.language, [this, title] {
        title->setText(m_context.text(L10nKey::liveScore));
        nameLiveScore();
        m_scoreboardView->setToolTip(m_context.text(L10nKey::editorEditMatch));
        Controls::setName(m_back, m_context.text(L10nKey::backToVideoImport));
        Controls::setName(m_editMatch, m_context.text(L10nKey::editorEditMatch));
    });
    return area;
}

// The score before the first marker, on one line.
QWidget* EditorSidebar::makeInitialScore() {
    auto* area = new QWidget(this);
    QLabel* title = Controls::label(Controls::TextRole::quiet, area);
    QLabel* shown = Controls::label(Controls::TextRole::quiet, area);
    m_editInitial = Controls::iconButton(QStringLiteral("edit"), area);
    m_editInitial->setIconSize(QSize(16, 16));
    m_editInitial->setObjectName(QStringLiteral("editInitialScore"));
    auto* row = Controls::layout<QHBoxLayout>(area, {Space::m, 0, Space::s, 0}, Space::s);
    row->addWidget(title);
    row->addStretch(1);
    row->addWidget(shown);
    row->addWidget(m_editInitial);
    AppState& state = m_context.state;
    m_bindings.watchAll(
        [this, area, shown] {
            const AppState& session = m_context.state;
            const auto& config = session.matchConfig.value();
            area->setEnabled(config.has_value());
            if (!config) {
                shown->setText(m_context.text(L10nKey::noConfig));
                return;
            }
            const SportScoreState score =
                session.initialScore.value().value_or(ScoringEngine::getInitialScore(*config));
            const QStringList words{setsText(score), gameText(score)};
            shown->setText(words.join(QStringLiteral("  ")).trimmed());
        },
        state.initialScore, state.matchConfig, state.language);
    m_bindings.watch(state.language, [this, title] {
        title->setText(m_context.text(L10nKey::initialScore));
        Controls::setName(m_editInitial, m_context.text(L10nKey::editorEditInitial));
    });
    return area;
}

QWidget* EditorSidebar::makeListHead() {
    auto* area = new QWidget(this);
    QLabel* title = Controls::label(Controls::TextRole::strong, area);
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
    auto* row = Controls::layout<QHBoxLayout>(area, {Space::m, Space::s, Space::m, Space::s}, Space::s);
    row->addWidget(m_add, 1);
    row->addWidget(m_export, 1);
    connect(m_add, &QPushButton::clicked, this, &EditorSidebar::addMarkerRequested);
    connect(m_export, &QPushButton::clicked, this, &EditorSidebar::exportRequested);
    m_bindings.watch(m_context.state.matchConfig,
                     [this] { m_add->setEnabled(m_context.state.matchConfig.value().has_value()); });
    m_bindings.watch(m_context.state.language, [this] {
        m_add->setText(m_context.text(L10nKey::marker));
        m_add->setAccessibleName(m_context.text(L10nKey::addMarker));
        m_add->setToolTip(m_context.text(L10nKey::addMarkerTooltip));
        m_export->setText(m_context.text(L10nKey::editorExportButton));
        Controls::setName(m_export, m_context.text(L10nKey::exportVideo));
    });
    return area;
}

void EditorSidebar::importMarkersFromFile() {
    const QString filter = m_context.text(L10nKey::importFiles) +
                           QStringLiteral(" (*.csv *.CSV *.tsv *.TSV *.txt *.TXT *.dvw *.DVW)");
    const auto path =
        m_context.dialogs.chooseFileToOpen(this, m_context.text(L10nKey::importMarkersCSV), {filter});
    if (!path)
        return;
    m_imported = importMarkers(*path, m_context.state, &m_context.undo, reportImport);
    showImport();
}

void EditorSidebar::showImport() {
    if (m_imported.message.isEmpty())
        return m_messages->hide();
    QStringList details = m_imported.details;
    if (!m_imported.afterEnd.isEmpty())
        details += m_imported.afterEnd;
    const bool hasNames = !m_imported.teams.front().isEmpty();
    if (hasNames)
        details += format(m_context.text(L10nKey::importNames),
                          m_imported.teams.front() + QStringLiteral(" – ") + m_imported.teams.back());
    const bool hasPoints = !m_imported.firstPoint.isNull();
    if (hasPoints)
        details += m_context.text(L10nKey::importShiftHint);
    m_messages->showMessage(m_imported.message, details.join(u'\n'),
                            hasPoints ? m_context.text(L10nKey::importFirstHere) : QString(),
                            hasNames ? m_context.text(L10nKey::importUseNames) : QString());
}

// Once the imported points are gone, as after undo, nothing can be done with them.
void EditorSidebar::forgetImport() {
    const QUuid& first = m_imported.firstPoint;
    const auto& markers = m_context.state.markers.value();
    if (first.isNull() || std::ranges::find(markers, first, &Marker::id) != markers.end())
        return;
    m_imported = {};
    m_messages->hide();
}

void EditorSidebar::takeNames() {
    AppState& state = m_context.state;
    if (auto config = state.matchConfig.value()) {
        config->team1.player1 = m_imported.teams.front();
        config->team2.player1 = m_imported.teams.back();
        state.matchConfig = config;
        state.save();
    }
    m_imported.teams = {};
    showImport();
}

void EditorSidebar::resizeEvent(QResizeEvent*) {
    fitScoreboard();
}

// The height at which the scoreboard fills this width, within limits.
void EditorSidebar::fitScoreboard() {
    const QSize natural = m_scoreboardView->sizeHint();
    const int available = width() - 2 * Space::m;
    const int height =
        natural.width() > available ? natural.height() * available / natural.width() : natural.height();
    constexpr int shareOfHeight = 7; // a low sidebar needs the rest
    m_scoreboardView->setFixedHeight(
        std::min({height, largestScoreboardHeight, this->height() / shareOfHeight}));
}

void EditorSidebar::showLiveScore() {
    m_scoreboardView->setScoreboard(m_scoreboard.scoreboard());
    nameLiveScore();
    fitScoreboard();
}

void EditorSidebar::nameLiveScore() {
    const auto& score = m_context.state.liveScore();
    const QString name = m_context.text(L10nKey::liveScore);
    m_scoreboardView->setAccessibleName(score ? name + QStringLiteral(": ") + scoreAsSpoken(m_context, *score)
                                              : name);
}

}
