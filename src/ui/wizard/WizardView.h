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

class StepBar;
class WizardPage;

/// Shows the screen of `AppState::step`. Continue on the last one opens the editor.
class WizardView final : public QWidget {
    Q_OBJECT

public:
    explicit WizardView(const UiContext& context, QWidget* parent = nullptr);

    /// Discards input that is not confirmed. Called when the session was replaced.
    void readSession() { m_flow.readSession(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeFooter();
    void addPage(WizardPage* page);
    WizardPage* currentPage() const;
    void showStep();
    void showTexts();
    void showProgress();
    /// Confirms the page; false when that is not possible yet.
    bool leavePage();
    void goOn();
    void goBack();

    UiContext m_context;
    WizardFlow m_flow;
    StepBar* m_bar;
    QStackedWidget* m_stack;
    QPushButton* m_back = nullptr;
    QLabel* m_hint = nullptr;
    QPushButton* m_continue = nullptr;
    Bindings m_bindings;
};

}
