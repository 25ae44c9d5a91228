// The second screen of the wizard: the template, with a picture of each.
#pragma once

#include "ui/wizard/PickerGrid.h"
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

    PickerGrid* m_grid;
    QScrollArea* m_scroll;
    std::vector<TemplateID> m_templates; // for the sport
    std::vector<PickerCard*> m_cards;    // one for each, owned by the grid
};

}
