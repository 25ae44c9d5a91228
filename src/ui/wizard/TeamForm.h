// One side of the match: names and flags of one player or two.
#pragma once

#include "model/MatchConfig.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QFrame>

class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace pointloom {

class FlagField;

class TeamForm final : public QFrame {
    Q_OBJECT

public:
    TeamForm(const UiContext& context, Side side, QWidget* parent);

    void setTeam(const TeamConfig& team);
    TeamConfig team() const;
    void setFormat(MatchFormat format);

    /// The first name that is still missing.
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
    };

    PlayerRow makeRow(QVBoxLayout* column);
    void showTexts();

    UiContext m_context;
    Side m_side;
    MatchFormat m_format = MatchFormat::singles;
    QLabel* m_title;
    PlayerRow m_players[2];
    Bindings m_bindings;
};

}
