#include "ui/wizard/TeamForm.h"

#include "l10n/Format.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int longestName = 60; // characters; more fit no scoreboard

struct Examples {
    L10nKey player1;
    L10nKey player2;
};

constexpr Examples examplesOf(Side side, bool isTeam) {
    if (isTeam)
        return {side == Side::first ? L10nKey::egTeamFirst : L10nKey::egTeamSecond, L10nKey::player2};
    return side == Side::first ? Examples{L10nKey::egDravnik, L10nKey::egAlbaret}
                               : Examples{L10nKey::egSolvane, L10nKey::egNavorro};
}

std::optional<QString> textOf(const QLineEdit* field) {
    return field->text().isEmpty() ? std::nullopt : std::optional(field->text());
}

// Keeps the cursor where the text is the same.
void setText(QLineEdit* field, const QString& text) {
    if (field->text() != text)
        field->setText(text);
}

}

TeamForm::TeamForm(const UiContext& context, Side side, QWidget* parent)
    : QFrame(parent)
    , m_context(context)
    , m_side(side)
    , m_title(Controls::label(Controls::TextRole::section, this)) {
    setProperty("kind", QStringLiteral("card"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Space::l, Space::m, Space::l, Space::l);
    column->setSpacing(Space::m);
    column->addWidget(m_title);
    for (PlayerRow& player : m_players)
        player = makeRow(column);
    column->addStretch(1);
    m_players[1].row->hide();
    m_bindings.watch(m_context.state.language, [this] { showTexts(); });
}

TeamForm::PlayerRow TeamForm::makeRow(QVBoxLayout* column) {
    PlayerRow player;
    player.row = new QWidget(this);
    player.nameLabel = Controls::label(Controls::TextRole::quiet, player.row);
    player.name = new QLineEdit(player.row);
    player.name->setMaxLength(longestName);
    player.flagLabel = Controls::label(Controls::TextRole::quiet, player.row);
    player.flag = new FlagField(m_context, player.row);
    player.hint = Controls::label(Controls::TextRole::danger, player.row);
    player.hint->setFont(quietFont(player.hint->font()));
    player.hint->setTextFormat(Qt::PlainText);
    player.hint->setWordWrap(true);
    player.hint->hide();
    player.nameLabel->setBuddy(player.name);
    player.flagLabel->setBuddy(player.flag);

    const auto labelled = [](QLabel* label, QWidget* field) {
        auto* lines = new QVBoxLayout;
        lines->setSpacing(Space::xs);
        lines->addWidget(label);
        lines->addWidget(field);
        return lines;
    };
    auto* fields = new QHBoxLayout;
    fields->setSpacing(Space::m);
    fields->addLayout(labelled(player.nameLabel, player.name), 1);
    fields->addLayout(labelled(player.flagLabel, player.flag), 1);
    auto* lines = new QVBoxLayout(player.row);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(Space::xs);
    lines->addLayout(fields);
    lines->addWidget(player.hint);
    column->addWidget(player.row);

    connect(player.name, &QLineEdit::textEdited, this, &TeamForm::edited);
    connect(player.flag, &FlagField::codeEdited, this, [this, player] {
        showHint(player);
        Q_EMIT edited();
    });
    for (QLineEdit* field : {player.name, static_cast<QLineEdit*>(player.flag)})
        connect(field, &QLineEdit::returnPressed, this, &TeamForm::submitted);
    return player;
}

void TeamForm::showTexts() {
    const bool isPair = m_format == MatchFormat::doubles;
    const bool isTeam = isTeamSport(m_sport);
    const Examples examples = examplesOf(m_side, isTeam);
    const QString title = m_context.text(m_side == Side::first ? L10nKey::team1 : L10nKey::team2);
    m_title->setText(title);
    const auto show = [&](const PlayerRow& player, L10nKey name, L10nKey flag, L10nKey example) {
        player.nameLabel->setText(m_context.text(name));
        player.name->setPlaceholderText(m_context.text(example));
        player.name->setAccessibleName(title + QStringLiteral(", ") + m_context.text(name));
        player.flagLabel->setText(m_context.text(flag));
        player.flag->setAccessibleName(title + QStringLiteral(", ") + m_context.text(flag));
        showHint(player);
    };
    const L10nKey only = isTeam ? L10nKey::teamName : L10nKey::playerName;
    show(m_players[0], isPair ? L10nKey::player1 : only, L10nKey::flag, examples.player1);
    show(m_players[1], L10nKey::player2, L10nKey::player2Flag, examples.player2);
}

void TeamForm::showHint(const PlayerRow& player) {
    const QString unknown = player.flag->unknown();
    player.hint->setText(unknown.isEmpty() ? QString()
                                           : format(m_context.text(L10nKey::flagUnknown), unknown));
    player.hint->setVisible(!unknown.isEmpty());
    player.flag->setAccessibleDescription(player.hint->text());
}

void TeamForm::setTeam(const TeamConfig& team) {
    setText(m_players[0].name, team.player1);
    setText(m_players[1].name, team.player2.value_or(QString()));
    m_players[0].flag->setCode(team.flag1);
    m_players[1].flag->setCode(team.flag2);
    for (const PlayerRow& player : m_players)
        showHint(player);
}

TeamConfig TeamForm::team() const {
    return {m_players[0].name->text(), textOf(m_players[1].name), m_players[0].flag->code(),
            m_players[1].flag->code()};
}

void TeamForm::setKind(SportID sport, MatchFormat format) {
    m_sport = sport;
    m_format = format;
    m_players[1].row->setVisible(format == MatchFormat::doubles);
    showTexts();
}

QLineEdit* TeamForm::firstEmptyName() const {
    for (const PlayerRow& player : m_players) {
        const bool isAsked = &player == m_players || m_format == MatchFormat::doubles;
        if (isAsked && player.name->text().trimmed().isEmpty())
            return player.name;
    }
    return nullptr;
}

}
