// The second screen of the wizard: the template or a board of the user's own, with a picture of each.
#pragma once

#include "persistence/BoardFile.h"
#include "ui/wizard/PickerGrid.h"
#include "ui/wizard/WizardPage.h"

class QLabel;
class QPushButton;
class QScrollArea;

namespace pointloom {

class TemplatePage final : public WizardPage {
    Q_OBJECT

public:
    TemplatePage(const UiContext& context, WizardFlow& flow, QWidget* parent);

    QString obstacle() const override;
    bool confirm() override;
    void takeFocus() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// A template, or a board that is made from it.
    struct Choice {
        TemplateID id;
        std::optional<BoardStyle> board{};
        QString path{}; // of a kept board

        bool operator==(const Choice&) const = default;
    };

    void readBoards();
    void showChoices();
    void nameCards();
    void nameButtons();
    void showPicked();
    const Choice* picked() const;
    QString freeName() const;

    void editPicked();
    void addFromFile();
    void keep(const BoardFile& file, const QString& path);
    void deletePicked();

    PickerGrid* m_grid;
    QScrollArea* m_scroll;
    QPushButton* m_add;
    QPushButton* m_edit;
    QLabel* m_faults;
    std::vector<KeptBoard> m_boards;   // of all sports
    SportID m_sport = SportID::tennis; // of the choices
    std::vector<Choice> m_choices;
    std::optional<Choice> m_ofMatch;  // stays while others are tried
    std::vector<PickerCard*> m_cards; // one for each choice, owned by the grid
};

}
