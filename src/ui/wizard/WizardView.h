// The setup: four screens in one frame, from the sport to the video.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"
#include "ui/wizard/WizardFlow.h"

#include <array>
#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace pointloom {

class StepBar;
class WizardPage;

/// Shows the screen that the session's step names, of 0 to 3; its last Continue opens the editor.
class WizardView final : public QWidget {
    Q_OBJECT

public:
    explicit WizardView(const UiContext& context, QWidget* parent = nullptr);

    /// Drops what was entered and not confirmed. Called when the session was replaced.
    void readSession() { m_flow.readSession(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeFooter();
    void addPage(Screen screen, WizardPage* page);
    WizardPage* currentPage() const;
    void showStep();
    void showTexts();
    void showProgress();
    /// Takes over what the page holds; false when it is not ready to be left forward.
    bool leavePage();
    void goOn();
    void goBack();

    UiContext m_context;
    WizardFlow m_flow;
    StepBar* m_bar;
    QStackedWidget* m_stack;
    std::array<WizardPage*, wizardScreens.size()> m_pages{};
    QPushButton* m_back = nullptr;
    QLabel* m_hint = nullptr;
    QPushButton* m_continue = nullptr;
    Bindings m_bindings;
};

}
