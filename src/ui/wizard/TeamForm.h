// The form of one side of a match: names and flags of one player or two.
#pragma once

#include "model/MatchConfig.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QFrame>
#include <QLineEdit>

class QLabel;
class QVBoxLayout;

namespace pointloom {

/// Takes the two letters of a country (ISO 3166-1) and shows its flag while they are typed.
class FlagField final : public QLineEdit {
    Q_OBJECT

public:
    explicit FlagField(QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QLabel* m_flag;
};

class TeamForm final : public QFrame {
    Q_OBJECT

public:
    TeamForm(const UiContext& context, Side side, QWidget* parent);

    void setTeam(const TeamConfig& team);
    TeamConfig team() const;
    void setFormat(MatchFormat format);

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
