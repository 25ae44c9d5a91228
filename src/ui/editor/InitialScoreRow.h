// The score before the first marker, on one line above the list.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QLabel>
#include <QToolButton>
#include <QWidget>

namespace pointloom {

class InitialScoreRow : public QWidget {
    Q_OBJECT

public:
    explicit InitialScoreRow(const UiContext& context, QWidget* parent = nullptr);

Q_SIGNALS:
    void editRequested();

private:
    UiContext m_context;
    QLabel* m_title;
    QLabel* m_score;
    QToolButton* m_edit;
    Bindings m_bindings;
};

}
