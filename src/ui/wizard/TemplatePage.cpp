#include "ui/wizard/TemplatePage.h"

#include "persistence/DocumentFile.h"
#include "render/ScoreboardImage.h"
#include "render/ScoreboardTemplate.h"
#include "ui/common/ScoreboardView.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/BoardDialog.h"
#include "ui/wizard/BoardPanel.h"

#include <algorithm>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

namespace pointloom {

namespace {

constexpr double largestCardScale = 2; // of the scoreboard's own size

// Names, flags, and enough sets for a tie-break.
MatchConfig exampleMatch(SportID sport) {
    MatchConfig match;
    match.sport = sport;
    match.team1 = {QStringLiteral("Dravnik"), {}, QStringLiteral("FR"), {}};
    match.team2 = {QStringLiteral("Solvane"), {}, QStringLiteral("SE"), {}};
    match.numberOfSets = 3;
    return match;
}

bool fits(TemplateID id, SportID sport) {
    const std::vector<TemplateID> fitting = filteredTemplates(sport);
    return std::ranges::find(fitting, id) != fitting.end();
}

class TemplateCard final : public PickerCard {
public:
    TemplateCard(TemplateID templateID, const std::optional<BoardStyle>& board, SportID sport,
                 QWidget* parent)
        : PickerCard(parent)
        , m_templateID(templateID)
        , m_board(board)
        , m_sport(sport) {}

protected:
    double pictureShape() const override { return 0.46; }

    void paintPicture(QPainter& painter, const QRectF& area) override {
        if (m_pictureSize != area.size() || m_picture.devicePixelRatio() != devicePixelRatioF()) {
            m_picture = drawPicture(area.size());
            m_pictureSize = area.size();
        }
        painter.drawPixmap(area.topLeft(), m_picture);
    }

private:
    QPixmap drawPicture(QSizeF size) const {
        MatchConfig match = exampleMatch(m_sport);
        match.board = m_board;
        const QSizeF natural =
            scoreboardImageSize(TemplateRegistry::templateFor(m_templateID), match.numberOfSets, match);
        const double scale = std::min({largestCardScale, (size.width() - Space::s) / natural.width(),
                                       (size.height() - Space::s) / natural.height()});
        QPixmap picture = courtGround(m_sport, size, devicePixelRatioF());
        QImage scoreboard = renderScoreboardImage(m_templateID, exampleScore(m_sport, match.numberOfSets),
                                                  match, {}, scale * devicePixelRatioF());
        scoreboard.setDevicePixelRatio(devicePixelRatioF());
        const QSizeF shown = scoreboard.deviceIndependentSize();
        QPainter(&picture).drawImage(
            QPointF((size.width() - shown.width()) / 2, (size.height() - shown.height()) / 2), scoreboard);
        return picture;
    }

    TemplateID m_templateID;
    std::optional<BoardStyle> m_board;
    SportID m_sport;
    QPixmap m_picture; // drawn again when the size changes
    QSizeF m_pictureSize;
};

}

TemplatePage::TemplatePage(const UiContext& context, WizardFlow& flow, QWidget* parent)
    : WizardPage(context, flow, L10nKey::chooseTemplate, L10nKey::chooseTemplateSubtitle, parent)
    , m_grid(new PickerGrid({.narrowest = 480, .fewest = 2, .most = 3}, this))
    , m_add(Controls::button(Controls::ButtonKind::plain, this))
    , m_edit(Controls::button(Controls::ButtonKind::normal, this))
    , m_faults(Controls::label(Controls::TextRole::warning, this)) {
    m_scroll = addScrolled(m_grid);
    m_faults->setWordWrap(true);
    m_faults->setTextFormat(Qt::PlainText);
    addUnscrolled(m_faults);
    addBesideTitle(m_add);
    addBesideTitle(m_edit);
    connect(m_add, &QPushButton::clicked, this, &TemplatePage::addFromFile);
    connect(m_edit, &QPushButton::clicked, this, &TemplatePage::editPicked);
    connect(m_grid, &PickerGrid::picked, this, [this](int index) {
        const Choice choice = m_choices[static_cast<std::size_t>(index)];
        m_flow.pickTemplate(choice.id, choice.board);
    });
    connect(m_grid, &PickerGrid::chosen, this, &WizardPage::continueRequested);
    connect(m_grid, &PickerGrid::currentMoved, m_scroll,
            [this](QWidget* card) { m_scroll->ensureWidgetVisible(card); });
    readBoards();
    m_bindings.watch(m_context.state.selectedSport, [this] { showChoices(); });
    m_bindings.watch(m_context.state.language, [this] {
        nameCards();
        nameButtons();
    });
    connect(&m_flow, &WizardFlow::draftReplaced, this, &TemplatePage::showChoices);
    m_bindings.watch(m_context.state.selectedTemplate, [this] {
        showChoices();
        Q_EMIT obstacleChanged();
    });
}

// Others may have changed the folder.
void TemplatePage::showEvent(QShowEvent* event) {
    WizardPage::showEvent(event);
    readBoards();
    showChoices();
}

void TemplatePage::readBoards() {
    BoardFolder::Content content = BoardFolder::ofUser().read();
    m_boards = std::move(content.boards);
    QStringList lines;
    for (const QString& fault : content.faults)
        lines << format(m_context.text(L10nKey::boardLeftOut), fault);
    m_faults->setText(lines.join(u'\n'));
    m_faults->setVisible(!lines.isEmpty());
}

void TemplatePage::showChoices() {
    const SportID sport = m_context.state.selectedSport;
    std::vector<Choice> choices;
    for (const TemplateID each : filteredTemplates(sport))
        choices.push_back({each});
    for (const KeptBoard& each : m_boards) {
        if (fits(each.file.base, sport))
            choices.push_back({each.file.base, each.file.board, each.path});
    }
    const auto& chosen = m_context.state.selectedTemplate.value();
    const auto& board = m_flow.draft().board;
    if (!chosen)
        m_ofMatch.reset();
    else if (board)
        m_ofMatch = Choice{*chosen, board};
    const bool isListed = std::ranges::any_of(choices, [&](const Choice& each) {
        return m_ofMatch && each.id == m_ofMatch->id && each.board == m_ofMatch->board;
    });
    if (m_ofMatch && !isListed && fits(m_ofMatch->id, sport))
        choices.push_back(*m_ofMatch);
    if (choices != m_choices || sport != m_sport) {
        const bool isOtherSport = sport != m_sport;
        m_choices = std::move(choices);
        m_sport = sport;
        m_cards.clear();
        for (const Choice& each : m_choices)
            m_cards.push_back(new TemplateCard(each.id, each.board, sport, m_grid));
        nameCards();
        m_grid->setCards(m_cards);
        if (isOtherSport)
            m_scroll->verticalScrollBar()->setValue(0);
    }
    showPicked();
}

void TemplatePage::nameCards() {
    for (std::size_t i = 0; i < m_cards.size(); ++i) {
        const Choice& choice = m_choices[i];
        const L10nKey origin = choice.path.isEmpty() ? L10nKey::boardOfMatch : L10nKey::boardFrom;
        if (choice.board)
            m_cards[i]->setTexts(choice.board->name, format(m_context.text(origin), displayName(choice.id)));
        else
            m_cards[i]->setTexts(displayName(choice.id), m_context.text(description(choice.id)));
    }
}

void TemplatePage::nameButtons() {
    const Choice* choice = picked();
    m_add->setText(m_context.text(L10nKey::boardAdd));
    m_edit->setText(m_context.text(choice && choice->board ? L10nKey::boardChange : L10nKey::boardMake));
    m_edit->setEnabled(choice && canBecomeBoard(choice->id));
    m_edit->setToolTip(choice && !canBecomeBoard(choice->id) ? m_context.text(L10nKey::boardStackedHint)
                                                             : QString());
}

void TemplatePage::showPicked() {
    const Choice* choice = picked();
    m_grid->setPicked(choice ? static_cast<int>(choice - m_choices.data()) : -1);
    nameButtons();
}

const TemplatePage::Choice* TemplatePage::picked() const {
    const auto& chosen = m_context.state.selectedTemplate.value();
    const auto found = std::ranges::find_if(m_choices, [&](const Choice& each) {
        return each.id == chosen && each.board == m_flow.draft().board;
    });
    return found == m_choices.end() ? nullptr : &*found;
}

// "My scoreboard", "My scoreboard 2"
QString TemplatePage::freeName() const {
    const QString first = m_context.text(L10nKey::boardFirstName);
    QString name = first;
    const auto isTaken = [&] {
        return std::ranges::any_of(m_boards,
                                   [&](const KeptBoard& each) { return each.file.board.name == name; });
    };
    for (int number = 2; isTaken(); ++number)
        name = QStringLiteral("%1 %2").arg(first).arg(number);
    return name;
}

void TemplatePage::editPicked() {
    const Choice* found = picked();
    if (!found || !canBecomeBoard(found->id))
        return;
    const Choice choice = *found;
    BoardFile file{.base = choice.id, .board = choice.board.value_or(BoardStyle{.name = freeName()})};
    MatchConfig match = m_flow.draft();
    if (!isComplete(match))
        match = exampleMatch(m_sport);
    BoardDialog dialog(m_context, file, match, !choice.path.isEmpty(), window());
    switch (dialog.exec()) {
    case BoardDialog::saved:
        keep(dialog.board(), choice.path);
        break;
    case BoardDialog::deleted:
        deletePicked();
        break;
    default:
        break;
    }
}

void TemplatePage::keep(const BoardFile& file, const QString& path) {
    try {
        BoardFolder::ofUser().save(file, path);
    } catch (const DocumentError& error) {
        m_context.dialogs.alert(window(), m_context.text(L10nKey::boardCannotSave),
                                QString::fromUtf8(error.what()));
    }
    readBoards(); // the match has it also where it could not be kept
    if (fits(file.base, m_sport))
        m_flow.pickTemplate(file.base, file.board);
    showChoices();
    m_grid->takeFocus();
}

void TemplatePage::deletePicked() {
    const Choice choice = *picked();
    try {
        BoardFolder::remove(choice.path);
        m_flow.pickTemplate(choice.id);
        m_ofMatch.reset();
    } catch (const DocumentError& error) {
        m_context.dialogs.alert(window(), m_context.text(L10nKey::boardCannotDelete),
                                QString::fromUtf8(error.what()));
    }
    readBoards();
    showChoices();
    m_grid->takeFocus();
}

void TemplatePage::addFromFile() {
    const auto path = m_context.dialogs.chooseFileToOpen(
        window(), m_context.text(L10nKey::boardAdd),
        {m_context.text(L10nKey::boardFiles) + QStringLiteral(" (*.json *.JSON)")});
    if (!path)
        return;
    try {
        const BoardFile file = BoardFile::load(*path);
        const auto same =
            std::ranges::find_if(m_boards, [&](const KeptBoard& each) { return each.file == file; });
        keep(file, same == m_boards.end() ? QString() : same->path);
        const SportID sport = sportOf(file.base);
        if (!fits(file.base, m_sport))
            m_context.dialogs.alert(window(), m_context.text(L10nKey::boardTitle),
                                    format(m_context.text(L10nKey::boardOtherSport), file.board.name,
                                           m_context.text(sportName(sport))));
    } catch (const DocumentError& error) {
        m_context.dialogs.alert(window(), m_context.text(L10nKey::boardCannotRead),
                                QString::fromUtf8(error.what()));
    }
}

QString TemplatePage::obstacle() const {
    return m_context.state.selectedTemplate.value() ? QString()
                                                    : m_context.text(L10nKey::selectTemplateToContinue);
}

bool TemplatePage::confirm() {
    return m_context.state.selectedTemplate.value().has_value();
}

void TemplatePage::takeFocus() {
    m_grid->takeFocus();
}

}
