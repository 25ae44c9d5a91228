#include "ui/wizard/MatchPage.h"

#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/BoardPanel.h"
#include "ui/wizard/LogoField.h"
#include "ui/wizard/RulesField.h"
#include "ui/wizard/SegmentedControl.h"

#include <algorithm>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace pointloom {

namespace {

int idOf(MatchFormat format) {
    return static_cast<int>(format);
}

// A label over its control.
QWidget* labelled(QLabel* label, QWidget* control, QWidget* parent) {
    auto* box = new QWidget(parent);
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Space::xs);
    column->addWidget(label);
    column->addWidget(control);
    return box;
}

// The texts name up to five sets; other numbers are put in place of the 5.
QString setsText(const UiContext& context, int count) {
    if (count == 1)
        return context.text(L10nKey::oneSet);
    if (count == 3)
        return context.text(L10nKey::bestOf3);
    return context.text(L10nKey::bestOf5).replace(u'5', QString::number(count));
}

}

MatchPage::MatchPage(const UiContext& context, WizardFlow& flow, QWidget* parent)
    : WizardPage(context, flow, L10nKey::matchConfig, L10nKey::matchConfigSubtitle, parent)
    , m_board(new BoardPanel(context, this)) {
    m_column->setSpacing(Space::m);
    addUnscrolled(m_board);
    addScrolled(makeForm());

    for (TeamForm* team : {m_team1, m_team2}) {
        connect(team, &TeamForm::edited, this, &MatchPage::writeDraft);
        connect(team, &TeamForm::submitted, this, &MatchPage::submit);
    }
    for (SegmentedControl* choice : {m_format, m_sets}) {
        connect(&choice->group(), &QButtonGroup::idToggled, this, [this](int, bool isChosen) {
            if (isChosen)
                writeDraft();
        });
    }
    connect(m_rules, &RulesField::edited, this, [this] { m_flow.setRules(m_rules->rules()); });
    connect(m_logo, &LogoField::logoPicked, this, &MatchPage::writeDraft);
    connect(m_logo, &LogoField::pictureChanged, this, &MatchPage::showBoard);
    connect(&m_flow, &WizardFlow::draftReplaced, this, &MatchPage::readDraft);
    readDraft();
    m_bindings.watch(m_context.state.selectedTemplate, [this] { showBoard(); });
    m_bindings.watch(m_context.state.language, [this] { showTexts(); });
}

// Controls are created in the order of Tab.
QWidget* MatchPage::makeForm() {
    auto* form = new QWidget;
    QWidget* choices = makeChoices(form);
    m_team1 = new TeamForm(m_context, Side::first, form);
    m_team2 = new TeamForm(m_context, Side::second, form);
    m_rules = new RulesField(m_context, form);
    m_logo = new LogoField(m_context, form);
    auto* lines = new QVBoxLayout(form);
    lines->setContentsMargins(cardMargin, 0, cardMargin, Space::l);
    lines->setSpacing(Space::m);
    lines->addWidget(choices);
    auto* teams = new QHBoxLayout;
    teams->setSpacing(Space::m);
    teams->addWidget(m_team1, 1);
    teams->addWidget(m_team2, 1);
    lines->addLayout(teams);
    lines->addWidget(m_rules);
    lines->addWidget(m_logo);
    lines->addStretch(1);
    return form;
}

QWidget* MatchPage::makeChoices(QWidget* form) {
    auto* choices = new QWidget(form);
    m_formatLabel = Controls::label(Controls::TextRole::quiet, choices);
    m_setsLabel = Controls::label(Controls::TextRole::quiet, choices);
    m_format = new SegmentedControl(choices);
    m_format->setValues({idOf(MatchFormat::singles), idOf(MatchFormat::doubles)});
    m_sets = new SegmentedControl(choices);
    m_formatBox = labelled(m_formatLabel, m_format, choices);
    auto* row = new QHBoxLayout(choices);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Space::xl);
    row->addWidget(m_formatBox);
    row->addWidget(labelled(m_setsLabel, m_sets, choices));
    row->addStretch(1);
    return choices;
}

void MatchPage::readDraft() {
    const MatchConfig& match = m_flow.draft();
    offerSets(match);
    m_formatBox->setVisible(supportsDoubles(match.sport));
    m_format->setValue(idOf(match.format));
    m_sets->setValue(static_cast<int>(match.numberOfSets));
    const bool isTeam = isTeamSport(match.sport);
    setSubtitle(isTeam ? L10nKey::matchConfigTeamsSubtitle : L10nKey::matchConfigSubtitle);
    for (TeamForm* team : {m_team1, m_team2})
        team->setKind(match.sport, match.format);
    m_team1->setTeam(match.team1);
    m_team2->setTeam(match.team2);
    m_rules->setRules(match, m_flow.rules());
    m_logo->setLogo(match.logoURL);
    showTexts();
    showBoard();
    Q_EMIT obstacleChanged();
}

// A document may have a number of sets that its sport does not offer: it is offered too, so that it is kept.
void MatchPage::offerSets(const MatchConfig& match) {
    std::vector<int> offered;
    for (const std::int64_t count : numberOfSetsOptions(match.sport))
        offered.push_back(static_cast<int>(count));
    const int current = static_cast<int>(match.numberOfSets);
    if (std::ranges::find(offered, current) == offered.end())
        offered.push_back(current);
    if (offered == m_offeredSets)
        return;
    m_offeredSets = offered;
    m_sets->setValues(offered);
}

void MatchPage::writeDraft() {
    MatchConfig match = m_flow.draft();
    match.format =
        m_format->value() == idOf(MatchFormat::doubles) ? MatchFormat::doubles : MatchFormat::singles;
    match.numberOfSets = m_sets->value();
    match.team1 = m_team1->team();
    match.team2 = m_team2->team();
    match.logoURL = m_logo->logo();
    m_flow.setDraft(match);
    m_rules->setRules(match, m_flow.rules());
    for (TeamForm* team : {m_team1, m_team2})
        team->setKind(match.sport, match.format);
    showBoard();
    Q_EMIT obstacleChanged();
}

void MatchPage::showBoard() {
    m_board->showMatch(m_flow.draft(), m_logo->picture());
}

void MatchPage::showTexts() {
    m_formatLabel->setText(m_context.text(L10nKey::matchFormat));
    m_format->setAccessibleName(m_formatLabel->text());
    m_format->setText(idOf(MatchFormat::singles), m_context.text(L10nKey::singles));
    m_format->setText(idOf(MatchFormat::doubles), m_context.text(L10nKey::doubles));
    m_setsLabel->setText(m_context.text(L10nKey::numberOfSets));
    m_sets->setAccessibleName(m_setsLabel->text());
    for (const int count : m_offeredSets)
        m_sets->setText(count, setsText(m_context, count));
    showBoard(); // with names for sides that have none
}

QString MatchPage::obstacle() const {
    const MatchConfig& match = m_flow.draft();
    if (isComplete(match))
        return {};
    return m_context.text(isTeamSport(match.sport) ? L10nKey::fillTeamNamesToContinue
                                                   : L10nKey::fillNamesToContinue);
}

bool MatchPage::confirm() {
    return m_flow.confirmMatch(window());
}

void MatchPage::takeFocus() {
    for (const TeamForm* team : {m_team1, m_team2}) {
        if (QLineEdit* empty = team->firstEmptyName()) {
            empty->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
    m_team1->firstName()->setFocus(Qt::OtherFocusReason);
}

void MatchPage::editName(Side side) {
    QLineEdit* name = (side == Side::first ? m_team1 : m_team2)->firstName();
    name->setFocus(Qt::OtherFocusReason);
    name->selectAll();
}

void MatchPage::submit() {
    if (obstacle().isEmpty())
        Q_EMIT continueRequested();
    else
        takeFocus();
}

void MatchPage::resizeEvent(QResizeEvent* event) {
    constexpr int lowest = 72;
    constexpr int highest = 200;
    WizardPage::resizeEvent(event);
    m_board->setFixedHeight(height() < lowPage ? lowest : std::min(height() / 4, highest));
}

}
