// The form of one side of a match: names and flags of one player or two.
#pragma once

#include "ui/wizard/FlagField.h"
#include "ui/wizard/WizardFlow.h"

#include <QFrame>

class QVBoxLayout;

namespace pointloom {

class TeamForm final : public QFrame {
    Q_OBJECT

public:
    TeamForm(const UiContext& context, Side side, QWidget* parent);

    void setTeam(const TeamConfig& team);
    TeamConfig team() const;

    /// Asks for what a match of this sport and format needs.
    void setKind(SportID sport, MatchFormat format);

    /// The first name that is missing; null when none is.
    QLineEdit* firstEmptyName() const;
    QLineEdit* firstName() const { return m_players[0].name; }

Q_SIGNALS:
    void edited();
    void submitted(); // Enter in a field

private:
    struct PlayerRow {
        QWidget* row = nullptr;
        QLabel* nameLabel = nullptr;
        QLineEdit* name = nullptr;
        QLabel* flagLabel = nullptr;
        FlagField* flag = nullptr;
        QLabel* hint = nullptr; // about the flag
    };

    PlayerRow makeRow(QVBoxLayout* column);
    void showTexts();
    void showHint(const PlayerRow& player);

    UiContext m_context;
    Side m_side;
    SportID m_sport = SportID::tennis;
    MatchFormat m_format = MatchFormat::singles;
    QLabel* m_title;
    PlayerRow m_players[2];
    Bindings m_bindings;
};

}
