#include "ui/wizard/TeamForm.h"

#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QValidator>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr qsizetype codeLength = 2;
constexpr int flagSpace = 34; // points, at the end of the field

// Corrects instead of refusing: keeps the first letters of any input, in capitals.
class CountryCode final : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& text, int& cursor) const override {
        QString letters;
        for (const QChar character : std::as_const(text)) {
            const QChar upper = character.toUpper();
            if (upper >= u'A' && upper <= u'Z' && letters.size() < codeLength)
                letters += upper;
        }
        text = letters;
        cursor = std::min(cursor, static_cast<int>(text.size()));
        return Acceptable;
    }
};

QString flagOf(const QString& code) {
    return TeamConfig{{}, {}, code, {}}.flagDisplayName(MatchFormat::singles).trimmed();
}

constexpr int longestName = 60; // characters; more fit no scoreboard

struct Examples {
    L10nKey player1;
    L10nKey player2;
};

constexpr Examples examplesOf(Side side) {
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

FlagField::FlagField(QWidget* parent)
    : QLineEdit(parent)
    , m_flag(new QLabel(this)) {
    constexpr int fieldWidth = 92;
    setValidator(new CountryCode(this));
    setTextMargins(0, 0, flagSpace - Space::s, 0);
    setFixedWidth(fieldWidth);
    QFont flagFont = font();
    flagFont.setPointSizeF(flagFont.pointSizeF() * TypeScale::section);
    m_flag->setFont(flagFont);
    m_flag->setAlignment(Qt::AlignCenter);
    m_flag->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(this, &QLineEdit::textChanged, m_flag,
            [this](const QString& code) { m_flag->setText(flagOf(code)); });
}

void FlagField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    m_flag->setGeometry(width() - flagSpace, 0, flagSpace, height());
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
    player.flagLabel->setWordWrap(true);
    player.flag = new FlagField(player.row);
    player.nameLabel->setBuddy(player.name);
    player.flagLabel->setBuddy(player.flag);

    auto* flagLine = new QHBoxLayout;
    flagLine->setSpacing(Space::s);
    flagLine->addWidget(player.flagLabel, 1);
    flagLine->addWidget(player.flag);
    auto* lines = new QVBoxLayout(player.row);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(Space::xs);
    lines->addWidget(player.nameLabel);
    lines->addWidget(player.name);
    lines->addSpacing(Space::xs);
    lines->addLayout(flagLine);
    column->addWidget(player.row);

    for (QLineEdit* field : {player.name, static_cast<QLineEdit*>(player.flag)}) {
        connect(field, &QLineEdit::textEdited, this, &TeamForm::edited);
        connect(field, &QLineEdit::returnPressed, this, &TeamForm::submitted);
    }
    return player;
}

void TeamForm::showTexts() {
    const bool isPair = m_format == MatchFormat::doubles;
    const Examples examples = examplesOf(m_side);
    const QString title = m_context.text(m_side == Side::first ? L10nKey::team1 : L10nKey::team2);
    m_title->setText(title);
    const auto show = [&](const PlayerRow& player, L10nKey name, L10nKey flag, L10nKey example) {
        player.nameLabel->setText(m_context.text(name));
        player.name->setPlaceholderText(m_context.text(example));
        player.name->setAccessibleName(title + QStringLiteral(", ") + m_context.text(name));
        player.flagLabel->setText(m_context.text(flag));
        player.flag->setAccessibleName(title + QStringLiteral(", ") + m_context.text(flag));
    };
    show(m_players[0], isPair ? L10nKey::player1 : L10nKey::playerName, L10nKey::flag, examples.player1);
    show(m_players[1], L10nKey::player2, L10nKey::player2Flag, examples.player2);
}

void TeamForm::setTeam(const TeamConfig& team) {
    setText(m_players[0].name, team.player1);
    setText(m_players[0].flag, team.flag1.value_or(QString()));
    setText(m_players[1].name, team.player2.value_or(QString()));
    setText(m_players[1].flag, team.flag2.value_or(QString()));
}

TeamConfig TeamForm::team() const {
    return {m_players[0].name->text(), textOf(m_players[1].name), textOf(m_players[0].flag),
            textOf(m_players[1].flag)};
}

void TeamForm::setFormat(MatchFormat format) {
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
