// Beside the picture: the score of the moment, the markers, and the score of the selected one.
#pragma once

#include "ui/common/BoardView.h"
#include "ui/common/LogoWatch.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QPushButton>
#include <QWidget>

namespace pointloom {

class EditorSidebar : public QWidget {
    Q_OBJECT

public:
    explicit EditorSidebar(const UiContext& context, QWidget* parent = nullptr);

    QSize minimumSizeHint() const override { return {260, 200}; }

Q_SIGNALS:
    void exportRequested();
    void seekRequested(double seconds);

private:
    QWidget* makeButtons();
    void showLiveScore();

    UiContext m_context;
    LogoWatch m_logo;
    BoardView* m_board;
    Bindings m_bindings;
};

}
