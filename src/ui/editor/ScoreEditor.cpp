#include "ui/editor/ScoreEditor.h"

#include "ui/common/MarkerText.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Tokens.h"

#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int titleColumn = 0;
constexpr int firstTeamColumn = 1;
constexpr int tiebreakColumn = 3;
constexpr int nameRow = 0;
constexpr int gameRow = 1;
constexpr int serveRow = 2;
constexpr int firstSetRow = 3;

constexpr std::int64_t largestNumber = 999;

// One key for each value of a game.
ValueStepper::Value gamePointOfKey(int key) {
    const auto point = [](GamePoint value) { return ValueStepper::Value(static_cast<int>(value)); };
    switch (key) {
    case Qt::Key_0:
        return point(GamePoint::zero);
    case Qt::Key_1:
        return point(GamePoint::fifteen);
    case Qt::Key_3:
        return point(GamePoint::thirty);
    case Qt::Key_4:
        return point(GamePoint::forty);
    case Qt::Key_D:
        return point(GamePoint::deuce);
    case Qt::Key_A:
        return point(GamePoint::advantage);
    default:
        return std::nullopt;
    }
}

// Deuce reads as 40 on a scoreboard; the table tells the two apart.
QString gamePointWords(std::int64_t value) {
    const auto point = static_cast<GamePoint>(value);
    return point == GamePoint::deuce ? QStringLiteral("40 D") : displayString(point);
}

constexpr std::size_t indexOf(Side side) {
    return static_cast<std::size_t>(side);
}

int columnOf(Side side) {
    return firstTeamColumn + static_cast<int>(side);
}

std::vector<SetScore>& setsIn(SportScoreState& score) {
    return std::visit([](auto& state) -> std::vector<SetScore>& { return state.sets; }, score);
}

}

ScoreEditor::ScoreEditor(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    rebuild();
    AppState& state = m_context.state;
    m_bindings.watchAll([this] { showTexts(); }, state.language, state.matchConfig);
}

void ScoreEditor::setScore(const SportScoreState& score) {
    const bool isSameShape =
        score.index() == m_score.index() && setsOf(score).size() == setsOf(m_score).size();
    m_score = score;
    if (!isSameShape) {
        rebuild();
        showTexts();
    }
    showValues();
}

void ScoreEditor::rebuild() {
    delete m_table;
    m_sets.clear();
    m_table = new QWidget(this);
    m_grid = new QGridLayout(m_table);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(Space::s - 2);
    m_grid->setVerticalSpacing(Space::s - 2);
    m_grid->setColumnStretch(firstTeamColumn, 1);
    m_grid->setColumnStretch(firstTeamColumn + 1, 1);
    for (const Side side : bothSides) {
        fieldsOf(side).name = new ElidedLabel(m_table);
        Controls::setRole(fieldsOf(side).name, Controls::TextRole::quiet);
        fieldsOf(side).name->setAlignment(Qt::AlignCenter);
        m_grid->addWidget(fieldsOf(side).name, nameRow, columnOf(side));
    }
    m_tiebreakTitle = nullptr;
    addGameRow();
    addServeRow();
    for (std::size_t set = 0; set < setsOf(m_score).size(); ++set)
        addSetRow(set);
    if (isTennis() && !m_sets.empty()) {
        m_tiebreakTitle = Controls::label(Controls::TextRole::quiet, m_table);
        m_tiebreakTitle->setAlignment(Qt::AlignCenter);
        m_grid->addWidget(m_tiebreakTitle, nameRow, tiebreakColumn);
    }
    layout()->addWidget(m_table);
    chainTabs();
}

void ScoreEditor::setTabPredecessor(QWidget* predecessor) {
    m_tabPredecessor = predecessor;
    chainTabs();
}

void ScoreEditor::chainTabs() {
    QWidget* previous = m_tabPredecessor;
    const auto append = [&previous](QWidget* next) {
        if (previous && next)
            setTabOrder(previous, next);
        previous = next ? next : previous;
    };
    for (const SideFields& side : m_sides)
        append(side.game);
    for (const SideFields& side : m_sides)
        append(side.serve);
    for (const SetRow& row : m_sets) {
        append(row.games[0]);
        append(row.games[1]);
        append(row.tiebreak);
    }
}

void ScoreEditor::addGameRow() {
    m_gameTitle = addTitle(gameRow);
    ValueStepper::Kind kind{.largest = largestNumber};
    if (isTennis())
        kind = {.largest = static_cast<int>(GamePoint::advantage),
                .mayBeAbsent = false,
                .words = gamePointWords,
                .valueOfKey = gamePointOfKey};
    for (const Side side : bothSides) {
        fieldsOf(side).game = addStepper(
            kind, gameRow, columnOf(side), [side](SportScoreState& score, ValueStepper::Value value) {
                if (auto* tennis = std::get_if<ScoreState>(&score))
                    ofSide(tennis->currentGame, side) = static_cast<GamePoint>(*value);
                else
                    ofSide(std::get<PointScoreState>(score).currentGame, side) = *value;
            });
        fieldsOf(side).game->setObjectName(QStringLiteral("game%1").arg(teamNumber(side)));
    }
}

void ScoreEditor::addServeRow() {
    m_serveTitle = addTitle(serveRow);
    for (const Side side : bothSides) {
        QToolButton* button = Controls::iconButton(QStringLiteral("ball"), m_table);
        button->setProperty("kind", QStringLiteral("normal"));
        button->setIconSize(QSize(16, 16));
        button->setCheckable(true);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setObjectName(QStringLiteral("serve%1").arg(teamNumber(side)));
        m_grid->addWidget(button, serveRow, columnOf(side));
        connect(button, &QToolButton::clicked, this, [this, side] {
            edit([side](SportScoreState& score) {
                std::visit([side](auto& state) { state.servingTeam = teamNumber(side); }, score);
            });
            showValues(); // no group: Tab would pass over the one that is off
        });
        fieldsOf(side).serve = button;
    }
}

void ScoreEditor::addSetRow(std::size_t set) {
    const int row = firstSetRow + static_cast<int>(set);
    SetRow steppers{addTitle(row), {}, nullptr};
    for (const Side side : bothSides) {
        steppers.games[indexOf(side)] =
            addStepper({.largest = largestNumber}, row, columnOf(side),
                       [set, side](SportScoreState& score, ValueStepper::Value value) {
                           ofSide(setsIn(score).at(set), side) = *value;
                       });
        steppers.games[indexOf(side)]->setObjectName(
            QStringLiteral("set%1team%2").arg(set + 1).arg(teamNumber(side)));
    }
    if (isTennis()) {
        steppers.tiebreak = addStepper({.largest = largestNumber, .mayBeAbsent = true}, row, tiebreakColumn,
                                       [set](SportScoreState& score, ValueStepper::Value value) {
                                           setsIn(score).at(set).tiebreak = value;
                                       });
        steppers.tiebreak->setObjectName(QStringLiteral("tiebreak%1").arg(set + 1));
        steppers.tiebreak->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }
    m_sets.push_back(steppers);
}

QLabel* ScoreEditor::addTitle(int row) {
    QLabel* title = Controls::label(Controls::TextRole::quiet, m_table);
    m_grid->addWidget(title, row, titleColumn);
    return title;
}

ValueStepper* ScoreEditor::addStepper(const ValueStepper::Kind& kind, int row, int column,
                                      std::function<void(SportScoreState&, ValueStepper::Value)> write) {
    auto* stepper = new ValueStepper(kind, m_table);
    m_grid->addWidget(stepper, row, column);
    connect(stepper, &ValueStepper::valueEdited, this,
            [this, write = std::move(write)](ValueStepper::Value value) {
                edit([&](SportScoreState& score) { write(score, value); });
            });
    return stepper;
}

void ScoreEditor::edit(const std::function<void(SportScoreState&)>& change) {
    SportScoreState edited = m_score;
    change(edited);
    if (edited == m_score)
        return;
    m_score = edited;
    Q_EMIT scoreEdited(edited);
}

void ScoreEditor::showValues() {
    for (const Side side : bothSides) {
        if (const auto* tennis = std::get_if<ScoreState>(&m_score))
            fieldsOf(side).game->setValue(static_cast<int>(ofSide(tennis->currentGame, side)));
        else
            fieldsOf(side).game->setValue(ofSide(std::get<PointScoreState>(m_score).currentGame, side));
        fieldsOf(side).serve->setChecked(servingSide(m_score) == side);
    }
    for (std::size_t set = 0; set < m_sets.size(); ++set) {
        const SetScore& values = setsOf(m_score)[set];
        for (const Side side : bothSides)
            m_sets[set].games[indexOf(side)]->setValue(ofSide(values, side));
        if (m_sets[set].tiebreak)
            m_sets[set].tiebreak->setValue(values.tiebreak);
    }
}

void ScoreEditor::showTexts() {
    const auto title = [](const QString& what, const QString& whose) {
        return what + QStringLiteral(", ") + whose;
    };
    m_gameTitle->setText(m_context.text(isTennis() ? L10nKey::editorGameShort : L10nKey::editorPoints));
    m_serveTitle->setText(m_context.text(L10nKey::editorServeShort));
    if (m_tiebreakTitle) {
        m_tiebreakTitle->setText(m_context.text(L10nKey::editorTiebreakShort));
        m_tiebreakTitle->setToolTip(m_context.text(L10nKey::editorTiebreak));
    }
    for (const Side side : bothSides) {
        const QString name = sideName(m_context, side);
        fieldsOf(side).name->setFullText(name);
        fieldsOf(side).game->setTitle(title(m_context.text(L10nKey::gameScore), name));
        Controls::setName(fieldsOf(side).serve, title(m_context.text(L10nKey::setServe), name));
    }
    for (std::size_t set = 0; set < m_sets.size(); ++set) {
        const SetRow& row = m_sets[set];
        const QString name = QStringLiteral("%1 %2").arg(m_context.text(L10nKey::setLabel)).arg(set + 1);
        row.title->setText(name);
        for (const Side side : bothSides)
            row.games[indexOf(side)]->setTitle(title(name, sideName(m_context, side)));
        if (row.tiebreak)
            row.tiebreak->setTitle(title(name, m_context.text(L10nKey::editorTiebreak)));
    }
}

}
