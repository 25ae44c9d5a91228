// Summary of an export before it starts: its range, the parts of it that stay, its markers, what the user
// should know.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QLabel>
#include <QPushButton>
#include <QWidget>

namespace pointloom {

class ExportSummary : public QWidget {
    Q_OBJECT

public:
    ExportSummary(const UiContext& context, QWidget* parent);

private:
    struct Fact {
        QLabel* name;
        QLabel* value;
    };
    struct Notice {
        QWidget* row;
        QLabel* icon;
        QLabel* text;
    };

    Fact makeFact();
    Notice makeNotice();
    void build();
    void bind();
    void showFacts();
    void showNotices();

    UiContext m_context;
    Fact m_range;
    Fact m_duration;
    Fact m_markers;
    Fact m_template;
    Notice m_noMarkers;
    Notice m_cuts;
    Notice m_unlicensed;
    QPushButton* m_licence;
    Bindings m_bindings; // ends first
};

}
