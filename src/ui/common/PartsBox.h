// The choice of what stays in the exported video, and the length that results.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <optional>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QWidget>

namespace pointloom {

/// Why the session's choice keeps nothing; empty when it keeps something.
std::optional<QString> whyNothingStays(const UiContext& context);

/// Shows and changes AppState::parts.
class PartsBox : public QWidget {
public:
    explicit PartsBox(const UiContext& context, QWidget* parent);

private:
    QDoubleSpinBox* makeSeconds(const char* name, double RallyMargins::*margin);
    void showWords();
    void showChoice();
    void choose(const PartChoice& choice);

    UiContext m_context;
    QCheckBox* m_onlyRallies;
    QDoubleSpinBox* m_before;
    QLabel* m_beforeName;
    QDoubleSpinBox* m_after;
    QLabel* m_afterName;
    QCheckBox* m_withoutCuts;
    QLabel* m_length;
    Bindings m_bindings; // ends first
};

}
