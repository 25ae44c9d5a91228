// The first screen of the wizard: the sport.
#pragma once

#include "ui/wizard/PickerGrid.h"
#include "ui/wizard/WizardPage.h"

namespace pointloom {

class SportPage final : public WizardPage {
    Q_OBJECT

public:
    SportPage(const UiContext& context, WizardFlow& flow, QWidget* parent);

    bool confirm() override;
    void takeFocus() override;

private:
    void pick(int index);
    void showPicked();

    PickerGrid* m_grid;
    std::vector<PickerCard*> m_cards; // in the order of the sports
};

}
