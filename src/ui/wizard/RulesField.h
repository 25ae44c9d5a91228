// The field for how the points of the match are counted: by hand, or by the rules of the sport with what
// differs from the usual ones.
#pragma once

#include "model/MatchConfig.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QHBoxLayout>
#include <string>
#include <vector>

class QComboBox;

namespace pointloom {

class RulesField final : public QWidget {
    Q_OBJECT

public:
    RulesField(const UiContext& context, QWidget* parent);

    /// Shows `rules`, as `AppState::rules` has them, and what the sport and the number of sets leave to
    /// choose. Emits nothing.
    void setRules(const MatchConfig& match, const std::vector<std::string>& rules);
    const std::vector<std::string>& rules() const { return m_rules; }

Q_SIGNALS:
    void edited();

private:
    /// Words of which one counts, in a list.
    struct Choice {
        std::string_view name;
        std::vector<std::string_view> words; // the usual one first; "" when it has no word
        QWidget* box;
        QComboBox* list;
    };

    QComboBox* addList(QWidget*& box);
    void offerChoices(SportID sport);
    void readLists();
    void showLists();
    void showTexts();

    UiContext m_context;
    MatchConfig m_match;
    std::vector<std::string> m_rules;
    QHBoxLayout* m_row;
    QComboBox* m_counting; // 0: by the rules, 1: by hand
    QWidget* m_countingBox = nullptr;
    std::vector<Choice> m_choices;
    std::optional<SportID> m_offered; // whose choices there are
    Bindings m_bindings;
};

}
