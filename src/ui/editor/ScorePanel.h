// Panel for the score of the selected marker, or the one before the first marker.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/editor/ScoreEditor.h"
#include "ui/style/Bindings.h"
#include "ui/style/Controls.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QToolButton>

namespace pointloom {

class ScorePanel : public QScrollArea {
    Q_OBJECT

public:
    explicit ScorePanel(const UiContext& context, QWidget* parent = nullptr);

    /// Shows the score before the first marker, until a marker is selected.
    void editInitialScore();

    /// Tab goes from `predecessor` to this panel and from it to `successor`.
    void chainTabs(QWidget* predecessor, QWidget* successor);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {200, 132}; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void showMarker(const Marker& marker);
    void showInitialScore();
    void showNothing();
    void storeScore(const SportScoreState& score);
    void storeLabel();
    void removeShown();
    void showPoint(const Marker& marker);
    void showTexts();

    UiContext m_context;
    bool m_isInitial = false;
    QUuid m_shown; // the marker that the label field is about
    ElidedLabel* m_title;
    QLabel* m_time;
    QToolButton* m_swap;
    QToolButton* m_remove;
    QLabel* m_point; // what the marker is in the count
    QLabel* m_hint;
    QLineEdit* m_label;
    ScoreEditor* m_editor;
    Bindings m_bindings;
};

}
