// The four steps of the setup, which of them are done, and the language of the interface.
#pragma once

#include "ui/style/Bindings.h"
#include "ui/wizard/WizardFlow.h"

#include <QWidget>
#include <vector>

class QToolButton;

namespace pointloom {

class StepButton;

class StepBar final : public QWidget {
    Q_OBJECT

public:
    StepBar(const UiContext& context, WizardFlow& flow, QWidget* parent);

    /// Marks the steps anew; the frame calls it when something has been done.
    void showProgress();

Q_SIGNALS:
    void stepPicked(Screen screen);

private:
    QToolButton* makeLanguageMenu();
    void showTexts();

    UiContext m_context;
    WizardFlow& m_flow;
    std::vector<StepButton*> m_steps;
    QToolButton* m_languageMenu;
    Bindings m_bindings;
};

}
