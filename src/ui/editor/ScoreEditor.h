// One score as a table: a column for each side, a row for the game, the serve and every set.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/editor/ValueStepper.h"
#include "ui/style/Bindings.h"
#include "ui/style/Controls.h"

#include <array>
#include <QGridLayout>
#include <QToolButton>
#include <QWidget>

namespace pointloom {

/// For both families of scores. Every value is reached by Tab and written as it is entered; no rule of any
/// sport is applied.
class ScoreEditor : public QWidget {
    Q_OBJECT

public:
    explicit ScoreEditor(const UiContext& context, QWidget* parent = nullptr);

    /// Emits no signal.
    void setScore(const SportScoreState& score);
    const SportScoreState& score() const { return m_score; }

    /// Tab goes from `predecessor` to the table, also after its fields were replaced.
    void setTabPredecessor(QWidget* predecessor);

Q_SIGNALS:
    void scoreEdited(const pointloom::SportScoreState& score);

private:
    struct SideFields {
        ElidedLabel* name = nullptr;
        ValueStepper* game = nullptr;
        QToolButton* serve = nullptr;
    };
    struct SetRow {
        QLabel* title;
        std::array<ValueStepper*, 2> games;
        ValueStepper* tiebreak; // null in the point family
    };

    void rebuild();
    void addGameRow();
    void addServeRow();
    void addSetRow(std::size_t set);
    QLabel* addTitle(int row);
    ValueStepper* addStepper(const ValueStepper::Kind& kind, int row, int column,
                             std::function<void(SportScoreState&, ValueStepper::Value)> write);
    void chainTabs();
    void showValues();
    void showTexts();
    void edit(const std::function<void(SportScoreState&)>& change);
    SideFields& fieldsOf(Side side) { return m_sides[static_cast<std::size_t>(side)]; }
    bool isTennis() const { return std::holds_alternative<ScoreState>(m_score); }

    UiContext m_context;
    SportScoreState m_score;
    QWidget* m_tabPredecessor = nullptr;
    QGridLayout* m_grid = nullptr;
    QWidget* m_table = nullptr; // replaced when the score has another shape
    std::array<SideFields, 2> m_sides;
    QLabel* m_tiebreakTitle = nullptr;
    QLabel* m_gameTitle = nullptr;
    QLabel* m_serveTitle = nullptr;
    std::vector<SetRow> m_sets;
    Bindings m_bindings;
};

}
