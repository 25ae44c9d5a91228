// The third screen of the wizard: names, flags, format, number of sets and logo.
#pragma once

#include "ui/wizard/TeamForm.h"
#include "ui/wizard/WizardPage.h"

namespace pointloom {

class BoardPanel;
class LogoField;
class RulesField;
class SegmentedControl;

class MatchPage final : public WizardPage {
    Q_OBJECT

public:
    MatchPage(const UiContext& context, WizardFlow& flow, QWidget* parent);

    QString obstacle() const override;
    bool confirm() override;
    void takeFocus() override;

    /// Selects the name of the side, for an edit.
    void editName(Side side);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeForm();
    QWidget* makeChoices(QWidget* form);
    void readDraft();
    void writeDraft();
    void offerSets(const MatchConfig& match);
    void showBoard();
    void showTexts();
    void submit();

    BoardPanel* m_board;
    QWidget* m_formatBox = nullptr;
    QLabel* m_formatLabel = nullptr;
    SegmentedControl* m_format = nullptr;
    QLabel* m_setsLabel = nullptr;
    SegmentedControl* m_sets = nullptr;
    std::vector<int> m_offeredSets;
    TeamForm* m_team1 = nullptr;
    TeamForm* m_team2 = nullptr;
    RulesField* m_rules = nullptr;
    LogoField* m_logo = nullptr;
};

}
