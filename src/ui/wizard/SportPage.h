// The first screen of the setup: which sport was recorded.
#pragma once

#include "ui/wizard/PickerGrid.h"
#include "ui/wizard/WizardFlow.h"
#include "ui/wizard/WizardPage.h"

namespace pointloom {

class SportPage final : public WizardPage {
    Q_OBJECT

public:
    SportPage(const UiContext& context, WizardFlow& flow, QWidget* parent);

    QString obstacle() const override { return {}; }
    bool confirm() override;
    void takeFocus() override;

private:
    void pick(int index);
    void showPicked();

    UiContext m_context;
    WizardFlow& m_flow;
    PickerGrid* m_grid;
    std::vector<PickerCard*> m_cards; // in the order of the sports
    Bindings m_bindings;
};

}
