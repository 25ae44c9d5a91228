// The second screen of the setup: which scoreboard, each shown as it will look.
#pragma once

#include "ui/wizard/PickerGrid.h"
#include "ui/wizard/WizardFlow.h"
#include "ui/wizard/WizardPage.h"

class QScrollArea;

namespace pointloom {

class TemplatePage final : public WizardPage {
    Q_OBJECT

public:
    TemplatePage(const UiContext& context, WizardFlow& flow, QWidget* parent);

    QString obstacle() const override;
    bool confirm() override;
    void takeFocus() override;

private:
    void showTemplates();
    void nameCards();
    void showPicked();

    UiContext m_context;
    WizardFlow& m_flow;
    PickerGrid* m_grid;
    QScrollArea* m_scroll;
    std::vector<TemplateID> m_templates; // that fit the sport
    std::vector<PickerCard*> m_cards;    // one for each, owned by the grid
    Bindings m_bindings;
};

}
