// The wizard: four screens from the sport to the video, between a bar of steps and a footer.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"
#include "ui/wizard/WizardFlow.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace pointloom {

struct LastMatch;
class MatchPage;
class SportPage;
class StepBar;
class WizardPage;

/// Shows the screen of `AppState::step`. Continue on the last one opens the editor.
class WizardView final : public QWidget {
    Q_OBJECT

public:
    explicit WizardView(const UiContext& context, QWidget* parent = nullptr);

    /// Discards input that is not confirmed. Called when the session was replaced.
    void readSession() { m_flow.readSession(); }

    /// Shows a screen as the bar of steps does: the current page must allow to be left.
    void goTo(Screen screen);
    /// Selects the name of the side on the page of the match, which is shown.
    void editName(Side side);
    /// Moves the focus to what comes next on the current page.
    void takeFocus();

    /// Offers to go on with this match on the first page; empty for no offer.
    void offerMatch(const std::optional<LastMatch>& match);

Q_SIGNALS:
    void goOnRequested(); // with the match that is offered
    void newMatchRequested();
    void sampleRequested();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeFooter();
    void addPage(WizardPage* page);
    WizardPage* currentPage() const;
    void showStep();
    void showTexts();
    void showProgress();
    bool mayLeaveFor(Screen screen);
    void goOn();
    void goBack();

    UiContext m_context;
    WizardFlow m_flow;
    StepBar* m_bar;
    QStackedWidget* m_stack;
    SportPage* m_sport = nullptr;
    MatchPage* m_match = nullptr;
    QPushButton* m_back = nullptr;
    QLabel* m_hint = nullptr;
    QPushButton* m_continue = nullptr;
    Bindings m_bindings;
};

}
