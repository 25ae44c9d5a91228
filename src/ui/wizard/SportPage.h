// The first screen of the wizard: the sport, above it the match that was edited last or,
// without one, the way to the sample match.
#pragma once

#include "persistence/LastMatch.h"
#include "ui/style/Controls.h"
#include "ui/wizard/PickerGrid.h"
#include "ui/wizard/WizardPage.h"

namespace pointloom {

class SportPage final : public WizardPage {
    Q_OBJECT

public:
    SportPage(const UiContext& context, WizardFlow& flow, QWidget* parent);

    bool confirm() override;
    void takeFocus() override;

    /// Empty for no offer.
    void offerMatch(const std::optional<LastMatch>& match);
    bool offersMatch() const { return m_offered.has_value(); }

Q_SIGNALS:
    void goOnRequested();
    void newMatchRequested();
    void sampleRequested();

private:
    QWidget* makeOffer();
    QWidget* makeSampleOffer();
    void showOffer();
    void pick(int index);
    void showPicked();

    std::optional<LastMatch> m_offered;
    QFrame* m_offer = nullptr;
    QLabel* m_offerTitle = nullptr;
    ElidedLabel* m_names = nullptr;
    ElidedLabel* m_facts = nullptr;
    QPushButton* m_newMatch = nullptr;
    QWidget* m_sampleOffer = nullptr; // while there is no match to go on with
    QPushButton* m_goOn = nullptr;
    PickerGrid* m_grid;
    std::vector<PickerCard*> m_cards; // in the order of the sports
};

}
