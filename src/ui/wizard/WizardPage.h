// One screen of the wizard, between the step bar and the footer.
#pragma once

#include "ui/wizard/WizardFlow.h"

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace pointloom {

/// Kept free around every card for its focus ring; all that is above and below cards is indented by it.
constexpr int cardMargin = 4; // points

/// Pages lower than this leave out what is not needed.
constexpr int lowPage = 400; // points

/// A column of limited width under a title and a subtitle.
class WizardPage : public QWidget {
    Q_OBJECT

public:
    /// What is missing to continue, in the session's language; empty when nothing is.
    virtual QString obstacle() const { return {}; }

    /// Applies the screen before the next one is shown. False to stay.
    virtual bool confirm() = 0;

    /// Moves the focus to the control to begin with.
    virtual void takeFocus() = 0;

Q_SIGNALS:
    void obstacleChanged();
    void continueRequested(); // Enter on a choice
    void completed();         // nothing is left to do: the focus should move to Continue

protected:
    WizardPage(const UiContext& context, WizardFlow& flow, L10nKey title, L10nKey subtitle, QWidget* parent);

    void resizeEvent(QResizeEvent* event) override;

    void setSubtitle(L10nKey subtitle);

    /// Adds a widget at the end of the title's line.
    void addBesideTitle(QWidget* widget);

    /// Adds `content` in a scroll area, which takes the rest of the height.
    QScrollArea* addScrolled(QWidget* content);

    /// Adds a widget that does not scroll, as wide as those that do.
    void addUnscrolled(QWidget* widget, int stretch = 0);

    UiContext m_context;
    WizardFlow& m_flow;
    QVBoxLayout* m_column;
    Bindings m_bindings;

private:
    L10nKey m_subtitle;
    QHBoxLayout* m_header;
    QLabel* m_subtitleLabel;
};

}
